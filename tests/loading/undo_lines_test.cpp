// The lines of an undo file.
#include "loading/undo_lines.h"

#include <gtest/gtest.h>

namespace loading {
namespace {

using dbase::Column;
using dbase::ColumnType;

UndoTable tableOf(std::vector<Column> columns, std::uint8_t driver = 0x57) {
    UndoTable table{.path = "/datos/CLIENTES.DBF", .schema = {}, .key = {}};
    std::uint16_t offset = 1;
    for (Column& column : columns) {
        column.offset = offset;
        offset = static_cast<std::uint16_t>(offset + column.width);
    }
    table.schema.columns = std::move(columns);
    table.schema.languageDriver = driver;
    table.schema.recordLength = offset;
    return table;
}

UndoTable customers() {
    return tableOf({{"CODIGO", ColumnType::Character, 4, 0, 0}, {"VIA", ColumnType::Character, 10, 0, 0}});
}

std::vector<char> row(const UndoTable& table, const std::string& bytes) {
    std::vector<char> record(table.schema.recordLength, ' ');
    std::copy(bytes.begin(), bytes.end(), record.begin() + 1);
    return record;
}

/// A line as undoValues() takes it.
std::string withoutEnd(std::string line) {
    EXPECT_EQ(line.back(), '\n');
    line.pop_back();
    EXPECT_EQ(line.find('\n'), std::string::npos);
    return line;
}

std::string without(const std::string& line, std::size_t checksum = 18) {
    return line.substr(0, line.size() - checksum);
}

UndoEntry again(const UndoTable& table, const UndoEntry& entry) {
    const std::string line = withoutEnd(undoLine(table, entry));
    return readUndoEntry(undoValues(line), table).value();
}

TEST(UndoLines, OfAChangeHasTheRowAsItWasAndWhatBecameOfIt) {
    const UndoTable table = customers();
    const UndoEntry entry{UndoKind::Change, 0, 17, row(table, "A001MAIOR"), row(table, "A001MAYOR")};
    EXPECT_EQ(without(undoLine(table, entry)), "CAMBIO\t1\t17\tA001\tMAIOR\tVIA=MAYOR");
}

TEST(UndoLines, OfAdditionsAndDeletionsHaveTheRow) {
    const UndoTable table = customers();
    EXPECT_EQ(without(undoLine(table, {UndoKind::Addition, 1, 0, {}, row(table, "A001MAYOR")})),
              "ALTA\t2\t0\tA001\tMAYOR");
    EXPECT_EQ(without(undoLine(table, {UndoKind::Deletion, 1, 9, row(table, "A001MAYOR"), {}})),
              "BAJA\t2\t9\tA001\tMAYOR");
}

TEST(UndoLines, OfEveryKindSayTheSameWhenTheyAreRead) {
    const UndoTable table = customers();
    const auto before = row(table, "A001MAIOR"), after = row(table, "A002MAYOR");
    const UndoEntry change = again(table, {UndoKind::Change, 2, 17, before, after});
    EXPECT_EQ(change.kind, UndoKind::Change);
    EXPECT_EQ(change.table, 2U);
    EXPECT_EQ(change.number, 17U);
    EXPECT_EQ(change.before, before);
    EXPECT_EQ(change.after, after);
    const UndoEntry addition = again(table, {UndoKind::Addition, 0, 0, {}, after});
    EXPECT_TRUE(addition.before.empty());
    EXPECT_EQ(addition.after, after);
    const UndoEntry deletion = again(table, {UndoKind::Deletion, 0, 3, before, {}});
    EXPECT_EQ(deletion.before, before);
    EXPECT_TRUE(deletion.after.empty());
}

TEST(UndoLines, KeepEveryByteInEveryCodePage) {
    for (const unsigned driver : {0x00U, 0x01U, 0x02U, 0x03U, 0x57U, 0x59U, 0x64U, 0xC8U}) {
        const UndoTable table =
            tableOf({{"ENTERA", ColumnType::Character, 256, 0, 0}}, static_cast<std::uint8_t>(driver));
        std::string bytes;
        for (unsigned byte = 0; byte < 256; ++byte) {
            bytes += static_cast<char>(byte);
        }
        const auto all = row(table, bytes);
        const auto reversed = row(table, {bytes.rbegin(), bytes.rend()});
        const UndoEntry entry = again(table, {UndoKind::Change, 0, 1, all, reversed});
        EXPECT_EQ(entry.before, all) << driver;
        EXPECT_EQ(entry.after, reversed) << driver;
    }
}

TEST(UndoLines, WithAnyByteChangedAreNone) {
    const UndoTable table = customers();
    const std::string line = withoutEnd(
        undoLine(table, {UndoKind::Change, 0, 17, row(table, "A001MAIOR"), row(table, "A001MAYOR")}));
    ASSERT_FALSE(undoValues(line).empty());
    for (std::size_t i = 0; i < line.size(); ++i) {
        std::string other = line;
        other[i] = static_cast<char>(other[i] ^ 1);
        EXPECT_TRUE(undoValues(other).empty()) << i;
        EXPECT_TRUE(undoValues(line.substr(0, i)).empty()) << i;
    }
}

TEST(UndoLines, OfTablesSayTheSameWhenTheyAreRead) {
    UndoTable table = tableOf({{"UNA=DOS", ColumnType::Character, 4, 0, 0},
                               {"CON BLANCO", ColumnType::Numeric, 10, 2, 0},
                               {"A\xD1O\\", ColumnType::Date, 8, 0, 0}},
                              0x02);
    table.path = "/datos de \xFF\t\n/CLIENTES.DBF";
    table.key = {0, 2};
    const std::string line = withoutEnd(undoLine(table, 4));
    const auto values = undoValues(line);
    const UndoTable read = readUndoTable(values, {}).value();
    EXPECT_EQ(values[1], "5");
    EXPECT_EQ(read.path, table.path);
    EXPECT_EQ(read.key, table.key);
    EXPECT_EQ(read.schema.languageDriver, 0x02);
    EXPECT_EQ(read.schema.recordLength, table.schema.recordLength);
    ASSERT_EQ(read.schema.columns.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(read.schema.columns[i].name, table.schema.columns[i].name);
        EXPECT_EQ(read.schema.columns[i].type, table.schema.columns[i].type);
        EXPECT_EQ(read.schema.columns[i].width, table.schema.columns[i].width);
        EXPECT_EQ(read.schema.columns[i].decimals, table.schema.columns[i].decimals);
        EXPECT_EQ(read.schema.columns[i].offset, table.schema.columns[i].offset);
    }
    const UndoEntry entry = again(table, {UndoKind::Change, 0, 1, row(table, "1"), row(table, "2")});
    EXPECT_EQ(entry.after, row(table, "2"));
}

TEST(UndoLines, OfTablesOfWholeRowsNameTheirCompanions) {
    UndoTable streets = customers();
    streets.key = {0};
    streets.isOfWholeRows = true;
    UndoTable origins =
        tableOf({{"FUENTE", ColumnType::Character, 3, 0, 0}, {"CODIGO", ColumnType::Character, 4, 0, 0}});
    origins.isOfWholeRows = true;
    ASSERT_TRUE(makeCompanion(origins, std::span(&streets, 1), 0));
    const std::string streetLine = withoutEnd(undoLine(streets, 0)),
                      originLine = withoutEnd(undoLine(origins, 1));
    EXPECT_EQ(without(streetLine, 17),
              "FILAS\t1\t/datos/CLIENTES.DBF\t87\tCODIGO\t\tCODIGO C 4 0\tVIA C 10 0");
    EXPECT_EQ(without(originLine, 17), "FILAS\t2\t/datos/CLIENTES.DBF\t87\t\t1\tFUENTE C 3 0\tCODIGO C 4 0");
    const std::vector<UndoTable> read = {readUndoTable(undoValues(streetLine), {}).value()};
    EXPECT_TRUE(read[0].isOfWholeRows);
    EXPECT_EQ(read[0].companionOf, std::nullopt);
    const UndoTable companion = readUndoTable(undoValues(originLine), read).value();
    EXPECT_TRUE(companion.isOfWholeRows);
    EXPECT_EQ(companion.companionOf, 0U);
    EXPECT_EQ(companion.tie, std::vector<std::size_t>{1});
    EXPECT_FALSE(readUndoTable(undoValues(originLine), {})) << "of a table that the file does not have";
    const UndoTable byColumns = customers();
    EXPECT_FALSE(readUndoTable(undoValues(originLine), std::span(&byColumns, 1)));
}

TEST(UndoLines, OfEarlierVersionsAreRead) {
    using Values = std::vector<std::string_view>;
    EXPECT_TRUE(isUndoHeading(Values{"AMBREL DESHACER 1", "2026", "x"}));
    EXPECT_TRUE(isUndoHeading(Values{"AMBREL DESHACER 2", "2026", "x"}));
    EXPECT_FALSE(isUndoHeading(Values{"AMBREL DESHACER 3", "2026", "x"}));
}

TEST(UndoLines, ThatMakeNoSenseAreRefused) {
    const UndoTable table = customers();
    using Values = std::vector<std::string_view>;
    EXPECT_TRUE(readUndoEntry(Values{"CAMBIO", "1", "2", "A", "B", "VIA=C"}, table));
    for (const Values& values :
         {Values{"CAMBIO", "1", "2", "A", "B"}, Values{"CAMBIO", "1", "2", "A", "B", "VIA"},
          Values{"CAMBIO", "1", "2", "A", "B", "OTRA=C"},
          Values{"CAMBIO", "1", "2", "A", "B", "VIA=12345678901"},
          Values{"CAMBIO", "0", "2", "A", "B", "VIA=C"}, Values{"CAMBIO", "1", "-2", "A", "B", "VIA=C"},
          Values{"CAMBIO", "1", "4294967296", "A", "B", "VIA=C"},
          Values{"CAMBIO", "1", "2", "12345", "B", "VIA=C"}, Values{"CAMBIO", "1", "2", "\\", "B", "VIA=C"},
          Values{"CAMBIO", "1", "2", "\\x4", "B", "VIA=C"}, Values{"ALTA", "1", "2", "A"},
          Values{"ALTA", "1", "2", "A", "B", "VIA=C"}, Values{"OTRA", "1", "2"}, Values{"CAMBIO", "1"},
          Values{}}) {
        EXPECT_FALSE(readUndoEntry(values, table)) << ::testing::PrintToString(values);
    }
    EXPECT_TRUE(readUndoTable(Values{"TABLA", "1", "/t", "87", "A", "A C 4 0"}, {}));
    for (const Values& values :
         {Values{"TABLA", "1", "/t", "87", ""}, Values{"TABLA", "1", "/t", "87", "B", "A C 4 0"},
          Values{"TABLA", "1", "/t", "870", "", "A C 4 0"}, Values{"TABLA", "1", "/t", "87", "", "A C 0 0"},
          Values{"TABLA", "1", "/t", "87", "", "A C 4"}, Values{"TABLA", "1", "/t", "87", "", "A CC 4 0"},
          Values{"TABLA", "1", "/t", "87", "", "A C 65535 0"}}) {
        EXPECT_FALSE(readUndoTable(values, {})) << ::testing::PrintToString(values);
    }
}

} // namespace
} // namespace loading
