// Tables as files: records, orders, findings.
#include "StoredTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "dbase/dbf/table_header.h"
#include "dbase/lock/locks.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/mdx/tree_cursor.h"
#include "dbase/table/empty_table.h"
#include "support/TemporaryFolder.h"

namespace dbase::test {

namespace {

const Column& columnOf(const Schema& schema, std::string_view name) {
    return schema.columns[schema.find(name).value()];
}

void putValue(std::span<char> raw, const Column& column, std::string_view value) {
    if (value.size() > column.width) {
        throw std::invalid_argument(column.name + " cannot hold " + std::string(value));
    }
    std::fill(raw.begin(), raw.end(), ' ');
    const std::size_t indent = column.isNumber() ? raw.size() - value.size() : 0;
    std::copy(value.begin(), value.end(), raw.begin() + static_cast<std::ptrdiff_t>(indent));
}

template<typename Start, typename Step>
std::vector<RecordNumber> walk(Table& table, std::string_view name, Start start, Step step) {
    const Tag* tag = table.findTag(name);
    if (tag == nullptr) {
        throw std::invalid_argument("no tag " + std::string(name));
    }
    return table.read([&] {
        std::vector<RecordNumber> numbers;
        TreeCursor cursor(*table.index(), *tag);
        for (bool on = start(cursor); on; on = step(cursor)) {
            numbers.push_back(cursor.record());
        }
        return numbers;
    });
}

} // namespace

Bytes readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void writeFile(const std::string& path, std::span<const char> bytes) {
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

Bytes makeRecord(const Schema& schema, const std::vector<std::string>& values) {
    Bytes record(schema.recordLength, ' ');
    for (std::size_t i = 0; i < values.size(); ++i) {
        const Column& column = schema.columns.at(i);
        putValue(std::span(record).subspan(column.offset, column.width), column, values[i]);
    }
    return record;
}

Bytes storedRecord(Table& table, RecordNumber number) {
    return table.read([&] {
        const RecordView view = table.records().record(number);
        return Bytes(view.bytes.begin(), view.bytes.end());
    });
}

std::string valueOf(const Schema& schema, std::span<const char> record, std::string_view column) {
    const std::string raw(RecordView{&schema, record, 1}.raw(columnOf(schema, column)));
    const std::size_t begin = raw.find_first_not_of(' ');
    return begin == std::string::npos ? std::string()
                                      : raw.substr(begin, raw.find_last_not_of(' ') - begin + 1);
}

Bytes withValue(const Schema& schema, Bytes record, std::string_view column, std::string_view value) {
    const Column& target = columnOf(schema, column);
    putValue(std::span(record).subspan(target.offset, target.width), target, value);
    return record;
}

std::vector<RecordNumber> order(Table& table, std::string_view tag) {
    return walk(
        table, tag, [](TreeCursor& cursor) { return cursor.first(); },
        [](TreeCursor& cursor) { return cursor.next(); });
}

std::vector<RecordNumber> orderBackwards(Table& table, std::string_view tag) {
    return walk(
        table, tag, [](TreeCursor& cursor) { return cursor.last(); },
        [](TreeCursor& cursor) { return cursor.prior(); });
}

RecordNumber seek(Table& table, std::string_view tag, std::string_view key) {
    return table.read([&] {
        TreeCursor cursor(*table.index(), *table.findTag(tag));
        return cursor.seek(key) ? cursor.record() : 0;
    });
}

std::string findingsOf(const CheckResult& result) {
    std::string text;
    for (const Finding& finding : result.findings) {
        text += finding.file + ": " + finding.place + ": " + finding.text + '\n';
    }
    return text;
}

std::string findings(const std::string& tableFile) { return findingsOf(checkTable(tableFile)); }

std::unique_ptr<ChildProcess> openInAnotherProcess(const std::string& tableFile) {
    auto other = std::make_unique<ChildProcess>([&](const ChildProcess::Link& link) {
        const auto table = Table::open(tableFile);
        link.tell();
        link.await();
        return 0;
    });
    other->await();
    return other;
}

Error errorOf(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const Error& error) {
        return error;
    }
    ADD_FAILURE() << "nothing was raised";
    return {ErrorCode::BadState, {}, {}};
}

MemoryTable::MemoryTable(const TableDefinition& definition, unsigned blockPages) {
    Schema schema;
    schema.columns = definition.columns;
    schema.languageDriver = static_cast<std::uint8_t>(definition.languageDriver);
    MemoryFile table(records), tags(index, "MEMORIA.MDX");
    writeEmptyTable(table, definition.tags.empty() ? nullptr : &tags, schema, definition.name,
                    definition.tags);
    if (blockPages != 2) {
        completeLayout(schema, {});
        IndexFile::format(tags, schema, definition.name, definition.tags, UpdateStamp{true, false, 0, 2},
                          blockPages);
    }
}

MemoryTable::MemoryTable(Bytes tableBytes, Bytes indexBytes) {
    records->bytes = std::move(tableBytes);
    index->bytes = std::move(indexBytes);
}

std::unique_ptr<Table> MemoryTable::open() const { return open(std::make_shared<Faults>()); }

std::unique_ptr<Table> MemoryTable::open(const std::shared_ptr<Faults>& faults) const {
    const auto opened = [&](const std::shared_ptr<MemoryContent>& content, const char* path) {
        return std::make_unique<FaultyFile>(std::make_unique<MemoryFile>(content, path), faults);
    };
    auto table = opened(records, "MEMORIA.DBF");
    holdLock(*table, presenceLock, LockKind::Shared); // as every opener of a table by its name does
    return std::make_unique<Table>(
        std::move(table), index->bytes.empty() ? nullptr : opened(index, "MEMORIA.MDX"), std::string(),
        std::make_unique<FaultyJournal>(std::make_unique<MemoryJournal>(journal), faults));
}

std::unique_ptr<Table> MemoryTable::openReadOnly() const {
    return std::make_unique<Table>(std::make_unique<MemoryFile>(records, "MEMORIA.DBF", false),
                                   std::make_unique<MemoryFile>(index, "MEMORIA.MDX", false), std::string(),
                                   std::make_unique<MemoryJournal>(journal, false));
}

std::string MemoryTable::findings() const {
    const TemporaryFolder folder;
    std::string name = "MEMORIA";
    if (!index->bytes.empty()) {
        name = index->bytes.data() + mdx::tableName; // the index keeps the name
        writeFile(folder / (name + ".MDX"), index->bytes);
    }
    writeFile(folder / (name + ".DBF"), records->bytes);
    return test::findings(folder / (name + ".DBF"));
}

} // namespace dbase::test
