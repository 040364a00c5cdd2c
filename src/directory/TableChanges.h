// What a load does to the rows of the directory's tables.
#pragma once

#include <span>

#include "dbase/dbf/schema.h"

namespace ambrel::directory {

enum class DirectoryTable { Streets, Provenance, Places };

/// Receives the rows, which live as long as the call.
class TableChanges {
public:
    virtual ~TableChanges() = default;
    TableChanges() = default;
    TableChanges(const TableChanges&) = delete;
    TableChanges& operator=(const TableChanges&) = delete;

    virtual void add(DirectoryTable table, std::span<const char> row) = 0;
    virtual void change(DirectoryTable table, dbase::RecordNumber number, std::span<const char> before,
                        std::span<const char> after) = 0;
    virtual void erase(DirectoryTable table, dbase::RecordNumber number, std::span<const char> row) = 0;
};

/// Of a load that is only tried.
class NoTableChanges final : public TableChanges {
public:
    void add(DirectoryTable, std::span<const char>) override {}
    void change(DirectoryTable, dbase::RecordNumber, std::span<const char>, std::span<const char>) override {}
    void erase(DirectoryTable, dbase::RecordNumber, std::span<const char>) override {}
};

} // namespace ambrel::directory
