// MUNICIPI, POSTAL and PROCEDEN in memory, for editions of the official directory.
#pragma once

#include <array>
#include <vector>

#include "Trial.h"
#include "directory/StoredRows.h"
#include "directory/TableChanges.h"

namespace trial {

using ambrel::directory::DirectoryTable;

/// Rows as records; a deleted one keeps its place.
class DirectoryTables {
public:
    using Rows = std::vector<Bytes>;
    using AllRows = std::array<Rows, 3>; // in the order of DirectoryTable

    DirectoryTables();

    [[nodiscard]] Rows& of(DirectoryTable table) { return rows_.at(static_cast<std::size_t>(table)); }
    [[nodiscard]] const dbase::Schema& schema(DirectoryTable table) const;
    [[nodiscard]] AllRows& all() { return rows_; }

    /// Calls a function with the tables as files.
    template<typename Use>
    void use(const Use& function) const {
        using ambrel::directory::StoredRows;
        putFiles();
        const auto open = [this](DirectoryTable table) {
            return StoredRows(file(table), StoredRows::Others::AreKeptOut);
        };
        const StoredRows streets = open(DirectoryTable::Streets), places = open(DirectoryTable::Places),
                         provenance = open(DirectoryTable::Provenance);
        function(ambrel::directory::StoredTables{&streets, &places, &provenance});
    }

private:
    struct File {
        NamedBytes bytes;
        dbase::Schema schema;
        Bytes header;
    };
    void putFiles() const;
    [[nodiscard]] const std::string& file(DirectoryTable table) const;

    static std::array<File, 3>& files();
    AllRows rows_;
};

/// Carries out changes on a copy of the rows. What is said to be there before has to be there.
class PlayedChanges final : public ambrel::directory::TableChanges {
public:
    explicit PlayedChanges(const DirectoryTables::AllRows& rows) : rows_(rows) {}

    void add(DirectoryTable table, std::span<const char> row) override;
    void change(DirectoryTable table, dbase::RecordNumber number, std::span<const char> before,
                std::span<const char> after) override;
    void erase(DirectoryTable table, dbase::RecordNumber number, std::span<const char> row) override;

    [[nodiscard]] const DirectoryTables::AllRows& rows() const { return rows_; }
    [[nodiscard]] unsigned count() const { return count_; }

private:
    [[nodiscard]] Bytes& rowBefore(DirectoryTable table, dbase::RecordNumber number,
                                   std::span<const char> before);

    DirectoryTables::AllRows rows_;
    unsigned count_ = 0;
};

} // namespace trial
