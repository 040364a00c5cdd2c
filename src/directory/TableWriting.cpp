// Fills or revises a table.
#include "directory/TableWriting.h"

#include "dbase/system/mapped_view.h"
#include "dbase/system/paths.h"
#include "dbase/table/table_replacement.h"

namespace ambrel::directory {

TableWriting::TableWriting(dbase::TableReplacement& replacement, dbase::RecordNumber present,
                           std::optional<dbase::TableDefinition> ifMissing)
    : replacement_(replacement), ifMissing_(std::move(ifMissing)), present_(present) {}

dbase::BulkLoader& TableWriting::loader() {
    if (!loader_ && ifMissing_) {
        loader_.emplace(replacement_, *ifMissing_);
    } else if (!loader_) {
        loader_.emplace(replacement_);
    }
    return *loader_;
}

dbase::TableRevision& TableWriting::revision() {
    if (!revision_) {
        revision_.emplace(replacement_);
    }
    return *revision_;
}

/// Rows all over a table that change one by one bring nearly all of both files into memory.
void TableWriting::noteChange() {
    constexpr dbase::RecordNumber interval = 512;
    if (++revised_ % interval == 0) {
        dbase::releaseViewedPages();
    }
}

dbase::RecordNumber TableWriting::add(std::span<const char> row) {
    if (present_ == 0) {
        loader().add(row);
    } else {
        revision().add(row);
        noteChange();
    }
    return present_ + ++added_;
}

void TableWriting::change(dbase::RecordNumber number, std::span<const char> row) {
    revision().change(number, row);
    noteChange();
}

void TableWriting::erase(dbase::RecordNumber number) {
    revision().erase(number);
    noteChange();
}

void TableWriting::finish(const LoadingProgress& progress) {
    const std::string name = dbase::baseName(replacement_.tableFile());
    const auto report = [&](std::uint64_t done, std::uint64_t total) {
        if (progress && total > 0) {
            progress({name, done, static_cast<double>(done) / static_cast<double>(total)});
        }
    };
    if (loader_) {
        loader_->finish(report);
    }
    if (revised_ == 0) {
        revision_.reset();
    }
    if (revision_) {
        revision_->finish(report);
    }
}

} // namespace ambrel::directory
