// Changes that another thread carries out: in their order, with their bytes, and with its errors.
#include "directory/ChangesApart.h"

#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace ambrel::directory {
namespace {

std::string text(std::span<const char> row) { return {row.begin(), row.end()}; }

/// Writes down what it receives.
class WrittenChanges final : public TableChanges {
public:
    void add(DirectoryTable table, std::span<const char> row) override {
        note("+" + std::to_string(static_cast<int>(table)) + ' ' + text(row));
    }
    void change(DirectoryTable, dbase::RecordNumber number, std::span<const char> before,
                std::span<const char> after) override {
        note(std::to_string(number) + ' ' + text(before) + ">" + text(after));
    }
    void erase(DirectoryTable, dbase::RecordNumber number, std::span<const char> row) override {
        note("-" + std::to_string(number) + ' ' + text(row));
    }
    std::vector<std::string> lines;
    std::size_t most = ~std::size_t{};

private:
    void note(std::string line) {
        if (lines.size() == most) {
            throw std::runtime_error("disk full");
        }
        lines.push_back(std::move(line));
    }
};

TEST(ChangesApart, AllAreCarriedOutInTheirOrder) {
    WrittenChanges written;
    ChangesApart changes(written);
    changes.add(DirectoryTable::Provenance, std::string("one"));
    changes.change(DirectoryTable::Streets, 7, std::string("old"), std::string("new"));
    changes.erase(DirectoryTable::Places, 9, std::string("gone"));
    changes.finish();
    EXPECT_EQ(written.lines, (std::vector<std::string>{"+1 one", "7 old>new", "-9 gone"}));
}

TEST(ChangesApart, MoreThanFitsIntoItsBlocksArrivesWhole) {
    constexpr std::size_t count = 200'000;
    const std::string tail(100, '.');
    WrittenChanges written;
    ChangesApart changes(written);
    for (std::size_t i = 0; i < count; ++i) {
        changes.add(DirectoryTable::Streets, std::to_string(i) + tail);
    }
    changes.finish();
    ASSERT_EQ(written.lines.size(), count);
    for (std::size_t i = 0; i < count; ++i) {
        ASSERT_EQ(written.lines[i], "+0 " + std::to_string(i) + tail);
    }
}

TEST(ChangesApart, AFailureIsThrownAtTheEndIfNotBefore) {
    WrittenChanges written;
    written.most = 1;
    ChangesApart changes(written);
    changes.add(DirectoryTable::Streets, std::string("one"));
    changes.add(DirectoryTable::Streets, std::string("two"));
    EXPECT_THROW(changes.finish(), std::runtime_error);
    EXPECT_EQ(written.lines.size(), 1U);
}

TEST(ChangesApart, AFailureEndsALoadThatGoesOn) {
    WrittenChanges written;
    written.most = 1;
    ChangesApart changes(written);
    const std::string row(1000, '.');
    EXPECT_THROW(
        while (true) { changes.add(DirectoryTable::Streets, row); }, std::runtime_error);
}

TEST(ChangesApart, WithoutFinishNothingWaitsForTheRest) {
    WrittenChanges written;
    {
        ChangesApart changes(written);
        changes.add(DirectoryTable::Streets, std::string("one"));
    }
    EXPECT_TRUE(written.lines.empty());
}

} // namespace
} // namespace ambrel::directory
