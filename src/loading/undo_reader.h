// Reads an undo file, the last entry first if need be.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "dbase/system/file.h"
#include "loading/undo_lines.h"

namespace loading {

class UndoReader {
public:
    /// Reads through the whole file and keeps the places of its entries. Errors: Failure for a file that is
    /// something else or of a later version; dbase::Error.
    explicit UndoReader(const std::string& path);

    [[nodiscard]] const std::string& path() const { return file_->path(); }
    [[nodiscard]] const std::vector<UndoTable>& tables() const { return tables_; }
    /// Entries, in the order in which they were written, without those that were not carried out.
    [[nodiscard]] std::size_t size() const { return places_.size(); }
    [[nodiscard]] UndoEntry entry(std::size_t index) const;
    /// Numbers of lines, from 1, that cannot be read, except the last one of a run that was stopped in the
    /// middle of it: what that line announces was never done.
    [[nodiscard]] const std::vector<std::uint64_t>& damagedLines() const { return damaged_; }
    /// Whether its end was written; that of a run that died was not, nor has a file that was cut one.
    [[nodiscard]] bool isEnded() const { return announced_.has_value(); }
    /// Entries that its end announces and that it has not.
    [[nodiscard]] std::uint64_t missingEntries() const;

private:
    struct Place {
        std::uint64_t offset;
        std::uint32_t length;
        dbase::RecordNumber number;
        std::size_t table;
    };

    struct Unmade {
        std::size_t places; // there were so many before it
        dbase::RecordNumber number;
        std::size_t table;
    };

    void readLines();
    void take(std::string_view line, std::uint64_t offset);
    void takeHeading(std::string_view line) const;
    void dropUnmade();

    std::unique_ptr<dbase::File> file_;
    std::vector<UndoTable> tables_;
    std::vector<Place> places_;
    std::vector<Unmade> unmade_; // while the lines are read
    std::vector<std::uint64_t> damaged_;
    std::uint64_t line_ = 0;    // read so far
    std::uint64_t entries_ = 0; // that could be read, those that were not carried out too
    std::optional<std::uint64_t> announced_;
};

} // namespace loading
