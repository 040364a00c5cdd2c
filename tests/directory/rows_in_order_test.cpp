// Rows read many at a time, and whether a record says what an edition says.
#include "directory/RowsInOrder.h"

#include <array>
#include <optional>

#include <gtest/gtest.h>

#include "data/TableDefinitions.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/table_creation.h"
#include "directory/DirectoryRecords.h"
#include "support/TemporaryFolder.h"

namespace ambrel::directory {
namespace {

constexpr dbase::RecordNumber rowCount = 3000, deletedRow = 1700;

class RowsInOrderTest : public testing::Test {
protected:
    RowsInOrderTest() {
        dbase::createTable(folder.path(), streetTable());
        dbase::BulkLoader loader(folder / "POSTAL.DBF", dbase::BulkLoader::Mode::Append);
        StreetRecord record(loader.schema());
        for (dbase::RecordNumber number = 1; number <= rowCount; ++number) {
            const std::span<const char> row = record.write(number, street, stretch);
            std::vector<char> bytes(row.begin(), row.end());
            bytes.front() = number == deletedRow ? dbase::deletedMark : ' ';
            loader.add(bytes);
        }
        loader.finish();
    }

    /// The key of the row found; 0 for none.
    std::uint32_t keyAt(dbase::RecordNumber number) {
        const std::span<const char> row = rows().find(number);
        return row.empty() ? 0 : StreetRecord(stored->schema()).key(row).value();
    }
    RowsInOrder& rows() {
        if (!inOrder) {
            stored.emplace(folder / "POSTAL.DBF", StoredRows::Others::AreKeptOut);
            inOrder.emplace(*stored);
        }
        return *inOrder;
    }

    TemporaryFolder folder;
    const OfficialStreet street{
        .id = streetId(28079, false, 5), .type = "CL", .name = "MAYOR", .municipality = "MADRID"};
    const JoinedStretch stretch{.postalCode = 28013, .bounds = {1, 99, 2, 1200}};
    std::optional<StoredRows> stored;
    std::optional<RowsInOrder> inOrder;
};

TEST_F(RowsInOrderTest, FindsEveryRowInTheOrderOfTheirRecordsExceptTheDeletedOne) {
    for (dbase::RecordNumber number = 1; number <= rowCount; ++number) {
        EXPECT_EQ(keyAt(number), number == deletedRow ? 0 : number);
    }
    EXPECT_EQ(keyAt(rowCount + 1), 0U);
}

TEST_F(RowsInOrderTest, LeavesOutOneThatIsFarAwayAndGoesOnWithItsNeighbours) {
    EXPECT_EQ(keyAt(1), 1U);
    EXPECT_EQ(keyAt(rowCount), 0U);
    EXPECT_EQ(keyAt(2), 2U);
}

TEST_F(RowsInOrderTest, MovesWhereSeveralAreAskedForOneAfterAnother) {
    EXPECT_EQ(keyAt(1), 1U);
    std::uint32_t found = 0;
    for (dbase::RecordNumber number = 2000; number < 2100; ++number) {
        found += keyAt(number) == number ? 1 : 0;
    }
    EXPECT_GT(found, 80U);
}

TEST_F(RowsInOrderTest, ARecordSaysWhatIsWrittenThereAndNothingElse) {
    const std::span<const char> row = rows().find(1);
    StreetRecord record(stored->schema());
    record.expect(street);
    EXPECT_TRUE(record.says(row, 1, stretch));
    EXPECT_FALSE(record.says(row, 2, stretch));
    const auto saysOf = [&](const OfficialStreet& other) {
        record.expect(other);
        return record.says(row, 1, stretch);
    };
    OfficialStreet other = street;
    for (const std::string_view name : {"MAYO", "MAYOR ALTA", ""}) {
        other.name = name;
        EXPECT_FALSE(saysOf(other)) << name;
    }
    other = street;
    other.type = "";
    EXPECT_FALSE(saysOf(other));
    other = street;
    other.municipality = "MADRI";
    EXPECT_FALSE(saysOf(other));
    other = street;
    other.id = streetId(28080, false, 5);
    EXPECT_FALSE(saysOf(other)) << "a capital's mark and code";
    record.expect(street);
    const auto saysWith = [&](const JoinedStretch& next) { return record.says(row, 1, next); };
    for (std::size_t bound = 0; bound < stretch.bounds.size(); ++bound) {
        for (const Bounds::value_type value : std::array<Bounds::value_type, 5>{0, 9, 200, 1201, 11200}) {
            JoinedStretch next = stretch;
            next.bounds.at(bound) = value;
            EXPECT_FALSE(saysWith(next)) << bound << ' ' << value;
            EXPECT_TRUE(saysWith(stretch)) << "after another one";
        }
    }
    JoinedStretch next = stretch;
    next.postalCode = 8013;
    EXPECT_FALSE(saysWith(next));
    EXPECT_TRUE(saysWith(stretch));
}

} // namespace
} // namespace ambrel::directory
