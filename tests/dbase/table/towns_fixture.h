// The small table that the tests of datasets share.
#pragma once

#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "dbase/dataset/dataset.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "support/TableTest.h"

namespace dbase {

/// A folder with the table TOWNS: eight unordered records, a tag of every kind, two equal keys in CODE.
class TownsTest : public ambrel::test::TableTest {
protected:
    using Row = ambrel::test::Row;
    using Records = std::vector<RecordNumber>;

    TownsTest() {
        createTable(layout(), {{"28079", "28", "MADRID", "10", "100.50", "20200115", "F"},   // 1
                               {"08019", "08", "BARCELONA", "10", "-7.25", "19991231", "F"}, // 2
                               {"28013", "28", "ARANJUEZ", "2", "", "", "T"},                // 3
                               {"08101", "08", "HOSPITALET", "3", "0", "20210301", "F"},     // 4
                               {"28005", "28", "ALCALA", "5", "5", "20000229", "F"},         // 5
                               {"46250", "46", "VALENCIA", "10", "1", "20200114", "F"},      // 6
                               {"28013", "28", "APEADERO", "1", "2", "19000101", "T"},       // 7
                               {"15030", "15", "CORUNA", "", "3", "20991231", ""}});         // 8
    }

    /// Creates a table of the same layout without records.
    void createEmpty() { createTable(layout("NONE"), {}); }

    static TableDefinition layout(std::string name = "TOWNS") {
        TableDefinition definition = ambrel::test::defineTable(
            std::move(name),
            {"CODE C5", "PROV C2", "NAME C12", "GROUP N6", "BALANCE N9.2", "SINCE D", "MINOR L"},
            {"CODE", "NAME", "PROVNAME=PROV+NAME", "GROUP", "SINCE", "THREE=PROV+NAME+CODE"});
        definition.tags.push_back({.name = "FALLING", .expression = "NAME", .descending = true});
        definition.tags.push_back({.name = "ONCE", .expression = "PROV", .unique = true});
        definition.tags.push_back({.name = "BIG", .expression = "NAME", .condition = "GROUP >= 10"});
        return definition;
    }

    /// Record numbers from the first to the last, as stepping shows them.
    static Records walk(Dataset& table) {
        Records records;
        table.first();
        for (bool on = !table.isEmpty(); on; on = table.next()) {
            records.push_back(table.recordNumber());
        }
        return records;
    }
    static Records walkBack(Dataset& table) {
        Records records;
        table.last();
        for (bool on = !table.isEmpty(); on; on = table.prior()) {
            records.push_back(table.recordNumber());
        }
        return records;
    }
    static void append(Dataset& table, std::initializer_list<std::pair<const char*, const char*>> values) {
        table.append();
        set(table, values);
        table.post();
    }
    static void change(Dataset& table, std::initializer_list<std::pair<const char*, const char*>> values) {
        table.edit();
        set(table, values);
        table.post();
    }
    static void set(Dataset& table, std::initializer_list<std::pair<const char*, const char*>> values) {
        for (const auto& [name, value] : values) {
            table.field(name).setText(value);
        }
    }
    static std::string name(Dataset& table) { return table.field("NAME").text(); }

    /// Moves a dataset to a record of the file.
    static void place(Dataset& table, RecordNumber record) { ASSERT_TRUE(table.goTo(Bookmark(record))); }

    static bool exact(Dataset& table, const Key& key) { return table.seek(key, SeekMode::Exact); }
    static bool nearest(Dataset& table, const Key& key) { return table.seek(key, SeekMode::Nearest); }

    Dataset towns{"DB", "TOWNS", "CODE"};
    Dataset other{"DB", "TOWNS", "CODE"};
    Dataset none{"DB", "NONE", "CODE"};
};

using test::errorOf;

/// The code of the error that an operation throws; empty when it throws none.
inline std::optional<ErrorCode> codeOf(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const Error& error) {
        return error.code();
    }
    return std::nullopt;
}

} // namespace dbase
