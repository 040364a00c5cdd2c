// Streets found by their numbers.
#include "directory/StreetIndex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

namespace ambrel::directory {
namespace {

TEST(StreetIndex, FindsEveryStreetOfAnyMunicipalityInAnyOrderAndNoOther) {
    std::mt19937 random(5);
    const auto below = [&](std::uint32_t end) { return static_cast<std::uint32_t>(random() % end); };
    const auto anyId = [&] {
        const std::uint32_t highest = below(2) == 0 ? 40 : 99999;
        return streetId(1001 + below(5) * 9000, below(4) == 0, 1 + below(highest));
    };
    StreetIndex index;
    std::set<StreetId> added;
    for (int i = 0; i < 2000; ++i) {
        const StreetId id = anyId();
        index.add(id, "CL", added.insert(id).second ? std::to_string(id) : "OTRA");
    }
    index.finish();
    for (int i = 0; i < 20000; ++i) {
        const StreetId id =
            i % 2 == 0 ? anyId()
                       : *std::next(added.begin(), below(2000) % static_cast<std::ptrdiff_t>(added.size()));
        ASSERT_EQ(index.contains(id), added.contains(id)) << id;
        const StreetIndex::Entry* const found = index.find(id);
        ASSERT_EQ(found != nullptr, added.contains(id)) << id;
        EXPECT_TRUE(found == nullptr || index.name(*found) == std::to_string(id)) << "the first of several";
    }
    EXPECT_FALSE(index.contains(streetId(52001, false, 1)));
}

TEST(StreetIndex, KnowsThoseThatAreAddedLater) {
    StreetIndex index;
    EXPECT_FALSE(index.contains(streetId(28079, false, 1)));
    index.add(streetId(28079, false, 1), "CL", "MAYOR");
    index.finish();
    EXPECT_TRUE(index.contains(streetId(28079, false, 1)));
    EXPECT_FALSE(index.contains(streetId(28079, false, 2)));
    index.add(streetId(28079, false, 2), "CL", "SOL");
    index.finish();
    EXPECT_TRUE(index.contains(streetId(28079, false, 2)));
    EXPECT_FALSE(index.contains(streetId(28079, true, 2)));
}

} // namespace
} // namespace ambrel::directory
