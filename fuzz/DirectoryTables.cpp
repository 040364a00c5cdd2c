// Files of headers and rows.
#include "DirectoryTables.h"

#include <algorithm>

#include "data/TableDefinitions.h"
#include "directory/DirectoryRecords.h"

namespace trial {

using namespace ambrel::directory;

std::array<DirectoryTables::File, 3>& DirectoryTables::files() {
    static std::array<File, 3> files;
    if (files.front().header.empty()) {
        const std::array definitions{ambrel::streetTable(), provenanceTable(), ambrel::municipalityTable()};
        for (std::size_t i = 0; i < files.size(); ++i) {
            File& one = files.at(i);
            one.header = emptyTable(definitions.at(i));
            one.bytes.put({one.header.data(), one.header.size()});
            one.schema = StoredRows(one.bytes.path(), StoredRows::Others::AreKeptOut).schema();
            one.header.resize(one.schema.headerLength);
        }
    }
    return files;
}

DirectoryTables::DirectoryTables() { static_cast<void>(files()); }

const dbase::Schema& DirectoryTables::schema(DirectoryTable table) const {
    return files().at(static_cast<std::size_t>(table)).schema;
}

const std::string& DirectoryTables::file(DirectoryTable table) const {
    return files().at(static_cast<std::size_t>(table)).bytes.path();
}

void DirectoryTables::putFiles() const {
    constexpr std::size_t countPlace = 4, countBytes = 4;
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        const File& one = files().at(i);
        std::string bytes(one.header.begin(), one.header.end());
        for (std::size_t byte = 0; byte < countBytes; ++byte) {
            bytes.at(countPlace + byte) = static_cast<char>(rows_.at(i).size() >> 8 * byte);
        }
        for (const Bytes& row : rows_.at(i)) {
            bytes.append(row.begin(), row.end());
        }
        one.bytes.put(bytes + '\x1A');
    }
}

void PlayedChanges::add(DirectoryTable table, std::span<const char> row) {
    rows_.at(static_cast<std::size_t>(table)).emplace_back(row.begin(), row.end());
    ++count_;
}

Bytes& PlayedChanges::rowBefore(DirectoryTable table, dbase::RecordNumber number,
                                std::span<const char> before) {
    DirectoryTables::Rows& rows = rows_.at(static_cast<std::size_t>(table));
    require(number > 0 && number <= rows.size());
    require(std::ranges::equal(rows[number - 1], before) && before.front() != dbase::deletedMark);
    ++count_;
    return rows[number - 1];
}

void PlayedChanges::change(DirectoryTable table, dbase::RecordNumber number, std::span<const char> before,
                           std::span<const char> after) {
    rowBefore(table, number, before).assign(after.begin(), after.end());
}

void PlayedChanges::erase(DirectoryTable table, dbase::RecordNumber number, std::span<const char> row) {
    rowBefore(table, number, row).front() = dbase::deletedMark;
}

} // namespace trial
