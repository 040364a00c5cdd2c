// Changes records and tag entries in overlays of both files of a table, or in copies of them.
#include "dbase/table/table_revision.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "dbase/system/error.h"
#include "dbase/system/file_copy.h"
#include "dbase/system/overlay_file.h"
#include "dbase/table/exclusive_use.h"
#include "dbase/table/table.h"
#include "dbase/table/table_replacement.h"
#include "dbase/table/tag_changes.h"

namespace dbase {

namespace {

/// Entries are changed in memory, and written together after this many rows.
constexpr RecordNumber mostGathered = 4096;
/// Building the tags anew costs as much as changing the entries of one row in so many.
constexpr RecordNumber rowsPerChange = 32;
/// A file with more changes is copied: they would take up more than 64 MiB.
constexpr std::size_t mostBlocksInMemory = (std::size_t{64} << 20) / OverlayFile::blockBytes;

} // namespace

struct TableRevision::State {
    explicit State(TableReplacement& files) : replacement(files) {
        files.underOwnNames([&] {
            try {
                table = openApart();
                use.emplace(*table);
                if (use->index() != nullptr) {
                    use->index()->writeStamp(use->index()->stamp().begun(records().recordCount()));
                }
                tags.emplace(records(), use->index());
            } catch (...) {
                discard();
                throw;
            }
        });
        countBefore = records().recordCount();
    }
    ~State() {
        if (!isFinished) {
            discard();
        }
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    /// The table on overlays, or on copies where only new files may take its place.
    [[nodiscard]] std::unique_ptr<Table> openApart() {
        Folders& folders = replacement.folders();
        const std::string& path = replacement.tableFile();
        if (!folders.exists(path)) {
            throw Error(ErrorCode::NotFound, path, "no existe la tabla");
        }
        const auto apart = [&](const std::string& file, auto makeCopy) {
            auto overlay = std::make_unique<OverlayFile>(folders.open(file, OpenMode::ReadOnly), makeCopy,
                                                         mostBlocksInMemory);
            if (!replacement.mayChangeInPlace()) {
                overlay->moveToCopy();
            }
            return overlay;
        };
        const std::optional<std::string> index = findIndexFile(folders, path);
        auto records = apart(path, [this] { return replacement.makeTable(); });
        auto entries = index ? apart(*index, [this] { return replacement.makeIndex(); }) : nullptr;
        recordsApart = records.get();
        indexApart = entries.get();
        auto opened = std::make_unique<Table>(std::move(records), std::move(entries));
        if (opened->isReadOnly()) {
            throw Error(ErrorCode::ReadOnly, path, "sólo se puede leer: " + opened->readOnlyReason());
        }
        return opened;
    }
    /// Writes the changes, unless one of the files is new: then both have to be.
    void settle() {
        if (indexApart != nullptr && !recordsApart->isCopied() && !indexApart->isCopied()) {
            replacement.changeInPlace(*recordsApart, *indexApart);
            return;
        }
        for (OverlayFile* const file : {recordsApart, indexApart}) {
            if (file != nullptr && !file->isCopied()) {
                file->moveToCopy();
            }
        }
    }
    [[nodiscard]] TableFile& records() { return use->records(); }
    void discard() {
        tags.reset();
        use.reset();
        table.reset();
        replacement.discard();
    }
    void gathered() {
        ++changed;
        if (changed > countBefore / rowsPerChange) {
            tags.reset();
        } else if (changed % mostGathered == 0) {
            writeGathered();
        }
    }
    void writeGathered() {
        if (use->index() != nullptr) {
            bool isRestored = false; // what was made is thrown away instead
            use->index()->writeChangesOrRestore(isRestored);
        }
    }

    TableReplacement& replacement;
    OverlayFile *recordsApart = nullptr, *indexApart = nullptr; // those of the table
    std::unique_ptr<Table> table;
    std::optional<ExclusiveUse> use;
    std::optional<TagChanges> tags; // none: they will be rebuilt
    RecordNumber countBefore = 0, changed = 0;
    bool isFinished = false;
};

TableRevision::TableRevision(TableReplacement& replacement) : state_(std::make_unique<State>(replacement)) {}

TableRevision::~TableRevision() = default;

const Schema& TableRevision::schema() const { return state_->table->schema(); }

RecordNumber TableRevision::recordCount() const { return state_->records().recordCount(); }

std::span<const char> TableRevision::row(RecordNumber number) const {
    return state_->replacement.underOwnNames([&] { return state_->records().record(number).bytes; });
}

// After an error, entries and records may disagree.
template<typename Step>
void TableRevision::alter(std::span<const char> record, const Step& step) {
    state_->replacement.underOwnNames([&] {
        if (record.size() != schema().recordLength) {
            throw Error(ErrorCode::BadValue, state_->replacement.tableFile(),
                        "el registro no tiene la longitud de la tabla");
        }
        try {
            step();
        } catch (...) {
            state_->tags.reset();
            throw;
        }
    });
}

// The record follows its entries at once, because that of a unique tag is sought among the records.
void TableRevision::change(RecordNumber number, std::span<const char> record) {
    alter(record, [&] {
        const std::span<const char> bytes = state_->records().record(number).bytes;
        const std::vector<char> stored(bytes.begin(), bytes.end());
        if (std::ranges::equal(stored, record)) {
            return;
        }
        if (state_->tags) {
            state_->tags->replace({&schema(), stored, number}, {&schema(), record, number});
            state_->gathered();
        }
        state_->records().overwrite(number, record);
    });
}

RecordNumber TableRevision::add(std::span<const char> record) {
    const RecordNumber number = recordCount() + 1;
    alter(record, [&] {
        if (state_->tags) {
            state_->tags->add({&schema(), record, number});
            state_->gathered();
        }
        state_->records().writeTail(number, record);
        state_->records().setCount(number);
    });
    return number;
}

void TableRevision::erase(RecordNumber number) {
    const std::span<const char> bytes = row(number);
    std::vector<char> deleted(bytes.begin(), bytes.end());
    deleted.front() = deletedMark;
    change(number, deleted);
}

void TableRevision::finish(const Progress& progress) {
    state_->replacement.underOwnNames([&] {
        ExclusiveUse& use = *state_->use;
        state_->records().settleEnd(recordCount());
        if (!state_->tags) {
            use.rebuildTags(progress);
        } else if (IndexFile* const index = use.index()) {
            state_->writeGathered();
            index->writeStamp(index->stamp().ended(recordCount()));
        }
        state_->settle();
    });
    state_->isFinished = true;
}

} // namespace dbase
