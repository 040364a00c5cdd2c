// Tables as files: records written inline, orders read back, both files in memory.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ChildProcess.h"
#include "FaultyFile.h"
#include "MemoryFile.h"
#include "MemoryJournal.h"
#include "dbase/table/check.h"
#include "dbase/table/table.h"
#include "dbase/table/table_definition.h"

namespace dbase::test {

using Bytes = std::vector<char>;

[[nodiscard]] Bytes readFile(const std::string& path);
void writeFile(const std::string& path, std::span<const char> bytes);

/// A record from one value per column, in the order of the schema; numbers and dates as in the file, without
/// padding.
[[nodiscard]] Bytes makeRecord(const Schema& schema, const std::vector<std::string>& values);
/// The stored record, deleted or not.
[[nodiscard]] Bytes storedRecord(Table& table, RecordNumber number);
/// Text of a column without the blanks around it.
[[nodiscard]] std::string valueOf(const Schema& schema, std::span<const char> record,
                                  std::string_view column);
/// The record with one value changed.
[[nodiscard]] Bytes withValue(const Schema& schema, Bytes record, std::string_view column,
                              std::string_view value);

/// Record numbers in a tag's order, from the front and from the back.
[[nodiscard]] std::vector<RecordNumber> order(Table& table, std::string_view tag);
[[nodiscard]] std::vector<RecordNumber> orderBackwards(Table& table, std::string_view tag);
/// The first record at or after the key; 0 after the last one.
[[nodiscard]] RecordNumber seek(Table& table, std::string_view tag, std::string_view key);

/// The findings, one per line; empty when the table is sound.
[[nodiscard]] std::string findingsOf(const CheckResult& result);
[[nodiscard]] std::string findings(const std::string& tableFile);

/// Starts another process that has a table open until it is told to end.
[[nodiscard]] std::unique_ptr<ChildProcess> openInAnotherProcess(const std::string& tableFile);

/// The error that the operation throws. Fails the test when it throws none.
[[nodiscard]] Error errorOf(const std::function<void()>& operation);

/// The files of a table, and any number of openings of them.
struct MemoryTable {
    explicit MemoryTable(const TableDefinition& definition, unsigned blockPages = 2);
    /// From the bytes of two files; an empty index means none.
    MemoryTable(Bytes tableBytes, Bytes indexBytes);

    [[nodiscard]] std::unique_ptr<Table> open() const;
    [[nodiscard]] std::unique_ptr<Table> open(const std::shared_ptr<Faults>& faults) const;
    [[nodiscard]] std::unique_ptr<Table> openReadOnly() const;
    /// The full check, through files on the disk.
    [[nodiscard]] std::string findings() const;

    std::shared_ptr<MemoryContent> records = std::make_shared<MemoryContent>();
    std::shared_ptr<MemoryContent> index = std::make_shared<MemoryContent>();
    std::shared_ptr<MemoryName> journal = std::make_shared<MemoryName>();
};

} // namespace dbase::test
