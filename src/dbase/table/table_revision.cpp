// Copies both files of a table, and changes records and tag entries of the copy.
#include "dbase/table/table_revision.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "dbase/system/error.h"
#include "dbase/system/file_copy.h"
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

std::unique_ptr<Table> copyOf(TableReplacement& replacement) {
    Folders& folders = replacement.folders();
    const auto copy = [&](const std::string& path, std::unique_ptr<File> to) {
        copyContents(*folders.open(path, OpenMode::ReadOnly), *to);
        return to;
    };
    const std::string& path = replacement.tableFile();
    if (!folders.exists(path)) {
        throw Error(ErrorCode::NotFound, path, "no existe la tabla");
    }
    const std::optional<std::string> index = findIndexFile(folders, path);
    std::unique_ptr<File> records = copy(path, replacement.makeTable());
    auto table =
        std::make_unique<Table>(std::move(records), index ? copy(*index, replacement.makeIndex()) : nullptr);
    if (table->isReadOnly()) {
        throw Error(ErrorCode::ReadOnly, path, "sólo se puede leer: " + table->readOnlyReason());
    }
    return table;
}

} // namespace

struct TableRevision::State {
    explicit State(TableReplacement& files) : replacement(files) {
        files.underOwnNames([&] {
            try {
                table = copyOf(files);
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
            bool isRestored = false; // the copy is thrown away instead
            use->index()->writeChangesOrRestore(isRestored);
        }
    }

    TableReplacement& replacement;
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
    });
    state_->isFinished = true;
}

} // namespace dbase
