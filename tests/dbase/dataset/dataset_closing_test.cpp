// Listeners and hooks that close the table, or reopen it, during an operation.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <utility>
#include <vector>

#include "dbase/table/towns_fixture.h"

namespace dbase {
namespace {

TEST_F(TownsTest, AnOperationWhoseListenerClosesTheTableIsRefused) {
    const auto closing = towns.listen([this](DatasetChange change) {
        if (change == DatasetChange::Moved && towns.state() == DatasetState::Browse) {
            towns.close(); // during the cancelling with which every move begins
        }
    });
    const std::vector<std::function<void()>> operations{
        [this] { towns.first(); },
        [this] { towns.last(); },
        [this] { towns.next(); },
        [this] { towns.prior(); },
        [this] { towns.refresh(); },
        [this] { towns.append(); },
        [this] {
            static_cast<void>(exact(towns, {{"CODE", "28005"}}));
        },
        [this] { static_cast<void>(towns.goTo(Bookmark(1))); },
        [this] { static_cast<void>(towns.goToPlace(0.5)); },
        [this] { towns.setTag(towns.tag() == "NAME" ? "CODE" : "NAME"); },
        [this] { towns.setFilter("PROV='28'"); },
        [this] {
            towns.setRange({{towns.tag(), "0"}}, {{towns.tag(), "Z"}});
        },
    };
    for (std::size_t i = 0; i < operations.size(); ++i) {
        towns.open();
        towns.append();
        EXPECT_EQ(codeOf(operations[i]), ErrorCode::BadState) << i;
        EXPECT_FALSE(towns.isOpen()) << i;
        EXPECT_EQ(towns.state(), DatasetState::Closed) << i;
    }
}

TEST_F(TownsTest, AnOperationWhoseListenerOpensTheTableAnewGoesOnInIt) {
    bool isAwaited = false;
    const auto reopening = towns.listen([&](DatasetChange change) {
        if (change == DatasetChange::Moved && std::exchange(isAwaited, false)) {
            towns.close();
            towns.open();
        }
    });
    towns.open();
    towns.append();
    isAwaited = true;
    towns.setTag("NAME");
    EXPECT_FALSE(isAwaited);
    EXPECT_EQ(walk(towns), (Records{5, 7, 3, 2, 8, 4, 1, 6}));
    towns.append();
    isAwaited = true;
    towns.setRange({{"NAME", "C"}}, {{"NAME", "H"}});
    EXPECT_FALSE(isAwaited);
    EXPECT_EQ(walk(towns), (Records{8}));
}

TEST_F(TownsTest, AnEditIsRefusedAsAnyOtherWhenAListenerThenClosesTheTable) {
    towns.open();
    place(towns, 3);
    other.open();
    place(other, 3);
    change(other, {{"NAME", "X"}});
    const auto closing = towns.listen([this](DatasetChange) { towns.close(); });
    EXPECT_EQ(codeOf([this] { towns.edit(); }), ErrorCode::RecordChanged);
}

TEST_F(TownsTest, AnAfterOpenHookThatClosesTheTableRefusesTheOpening) {
    towns.setAfterOpen([](Dataset& table) { table.close(); });
    EXPECT_EQ(codeOf([this] { towns.open(); }), ErrorCode::BadState);
    EXPECT_FALSE(towns.isOpen());
    towns.setAfterOpen({});
    towns.open();
    EXPECT_EQ(name(towns), "BARCELONA");
}

// A host opens and closes its tables for months.
TEST_F(TownsTest, OpeningChangingAndClosingLeavesNeitherMappingsNorFiles) {
    const auto change = [&] {
        towns.open();
        append(towns, {{"CODE", "28001"}, {"NAME", "NUEVO"}});
        towns.close();
    };
    const auto held = [] {
        std::ifstream maps("/proc/self/maps");
        const std::filesystem::directory_iterator files("/proc/self/fd");
        return std::pair(std::count(std::istreambuf_iterator<char>(maps), {}, '\n'),
                         std::distance(begin(files), end(files)));
    };
    change();
    const auto [mappings, files] = held();
    for (int i = 0; i < 100; ++i) {
        change();
    }
    EXPECT_LT(held().first, mappings + 20); // some may be the memory of the program's own objects
    EXPECT_EQ(held().second, files);
}

} // namespace
} // namespace dbase
