// What has become of the rows of earlier editions.
#include "directory/StoredStreets.h"

#include <gtest/gtest.h>

#include "data/TableDefinitions.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/table_creation.h"
#include "support/TemporaryFolder.h"

namespace ambrel::directory {
namespace {

constexpr dbase::RecordNumber rowCount = 9001; // read in several slices, the last of them odd

class StoredStreetsTest : public testing::Test {
protected:
    static bool isChanged(dbase::RecordNumber row) { return row % 7 == 3 || row > rowCount - 3; }
    static bool isDeleted(dbase::RecordNumber row) { return row % 11 == 5; }

    StoredStreetsTest() {
        dbase::createTable(folder.path(), streetTable());
        dbase::BulkLoader loader(folder / "POSTAL.DBF", dbase::BulkLoader::Mode::Append);
        StreetRecord record(loader.schema());
        for (dbase::RecordNumber row = 1; row <= rowCount; ++row) {
            const std::string name = nameOf(row);
            const OfficialStreet street{
                .id = streetId(28079, false, row), .type = "CL", .name = name, .municipality = "MADRID"};
            const std::span<const char> written = record.write(row, street, {.postalCode = 28013});
            std::vector<char> bytes(written.begin(), written.end());
            bytes.front() = isDeleted(row) ? dbase::deletedMark : dbase::liveMark;
            loader.add(bytes);
            earlier.streets.push_back({.street = street.id,
                                       .fingerprint = record.fingerprint(bytes) + (isChanged(row) ? 1 : 0),
                                       .key = row,
                                       .postalCode = 28013});
        }
        loader.finish();
    }
    static std::string nameOf(dbase::RecordNumber row) {
        return "VIA " + std::string(row % 30, 'A') + std::to_string(row);
    }
    StoredStreets read() {
        const StoredRows table(folder / "POSTAL.DBF", StoredRows::Others::AreKeptOut);
        return readStoredStreets(
            table, earlier, [](std::string_view, std::string_view) { return std::vector<PlaceCode>(); }, {});
    }
    TemporaryFolder folder;
    EarlierEdition earlier;
};

TEST_F(StoredStreetsTest, EveryRowIsFoundAsItCameOrChangedOrDeleted) {
    const StoredStreets stored = read();
    for (dbase::RecordNumber row = 1; row <= rowCount; ++row) {
        const EarlierRow& one = earlier.streets[row - 1];
        const RowState state = isDeleted(row)   ? RowState::Deleted
                               : isChanged(row) ? RowState::Changed
                                                : RowState::Untouched;
        ASSERT_EQ(one.state, state) << row;
        EXPECT_EQ(one.record, isDeleted(row) ? 0 : row);
        const auto own = stored.own.find(28079, nameOf(row));
        ASSERT_EQ(own.size(), state == RowState::Changed ? 1 : 0) << row;
        EXPECT_TRUE(own.empty() || own.front().record == row);
    }
}

} // namespace
} // namespace ambrel::directory
