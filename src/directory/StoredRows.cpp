// Reads rows in slices, between which others can work. Never through the view in memory: all that is read
// there once counts as the program's own.
#include "directory/StoredRows.h"

#include <algorithm>
#include <utility>

#include "dbase/system/folders.h"

namespace ambrel::directory {

StoredRows::StoredRows(const std::string& tableFile, Others others) {
    if (others == Others::Change) {
        table_ = dbase::Table::open(tableFile);
    } else {
        file_ = std::make_unique<dbase::TableFile>(
            dbase::diskFolders().open(tableFile, dbase::OpenMode::ReadOnly));
    }
}

const std::string& StoredRows::tableFile() const { return records().path(); }

template<typename Operation>
auto StoredRows::read(const Operation& operation) const {
    return table_ ? table_->read(operation) : operation();
}

dbase::RecordNumber StoredRows::readFrom(dbase::RecordNumber first, std::span<char> bytes) const {
    const std::size_t length = schema().recordLength;
    return read([&] {
        const dbase::RecordNumber count = recordCount(),
                                  most = static_cast<dbase::RecordNumber>(bytes.size() / length),
                                  rows = first > count ? 0 : std::min(most, count - first + 1);
        if (rows > 0) {
            records().file().read(records().offsetOf(first), bytes.first(rows * length));
        }
        return rows;
    });
}

void StoredRows::forEach(const Visit& visit, const Visit& visitDeleted,
                         const std::function<void()>& release) const {
    constexpr dbase::RecordNumber slice = 4096;
    const std::size_t length = schema().recordLength;
    std::vector<char> bytes(slice * length);
    for (dbase::RecordNumber first = 1; first != 0;) {
        const dbase::RecordNumber size = readFrom(first, bytes);
        for (dbase::RecordNumber i = 0; i < size; ++i) {
            const std::span<const char> row = std::span(bytes).subspan(i * length, length);
            if (row.front() != dbase::deletedMark) {
                visit(first + i, row);
            } else if (visitDeleted) {
                visitDeleted(first + i, row);
            }
        }
        if (release) {
            release();
        }
        first = size < slice ? 0 : first + size;
    }
}

std::vector<char> StoredRows::row(dbase::RecordNumber number) const {
    return read([&] {
        std::vector<char> bytes;
        if (number <= recordCount()) {
            bytes.resize(schema().recordLength);
            records().file().read(records().offsetOf(number), bytes);
        }
        if (!bytes.empty() && bytes.front() == dbase::deletedMark) {
            bytes.clear();
        }
        return bytes;
    });
}

} // namespace ambrel::directory
