// Writes many rows after the last record, and counts and indexes them all at the end, or not at all.
#include "dbase/table/bulk_loader.h"

#include <optional>
#include <utility>

#include "dbase/system/error.h"
#include "dbase/system/file_pieces.h"
#include "dbase/system/paths.h"
#include "dbase/table/empty_table.h"
#include "dbase/table/exclusive_use.h"
#include "dbase/table/table.h"
#include "dbase/table/table_definition.h"
#include "dbase/table/table_replacement.h"

namespace dbase {

struct BulkLoader::State {
    std::shared_ptr<Table> table; // the table to extend, or the new one
    std::optional<TableReplacement> ownReplacement;
    TableReplacement* replacement = nullptr; // that one, or the caller's
    std::optional<ExclusiveUse> use;
    std::uint32_t countBefore = 0;
    std::uint32_t added = 0;
    std::vector<char> pending;
    std::uint64_t written = 0; // end of the rows in the file, where the pending ones follow
    char firstMark = ' ';      // of the first row; until all rows are written the file has its end mark there
    bool finished = false;

    State() = default;
    ~State() {
        if (!finished && replacement != nullptr) { // or its owner could commit half a table
            use.reset();
            table.reset();
            replacement->discard();
        }
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    [[nodiscard]] std::uint64_t end() const { return written + pending.size(); }

    /// Errors name the table, not the temporary file that will replace it.
    template<typename Step>
    void run(const Step& step) {
        if (replacement) {
            replacement->underOwnNames(step);
        } else {
            step();
        }
    }
    /// Writes as many of the pending bytes; a piece may end inside a row.
    void write(std::size_t size) {
        use->records().writeTailPiece(written, std::span(pending).first(size));
        use->records().file().beginSync(); // the disk works while the next rows are read
        written += size;
        pending.erase(pending.begin(), pending.begin() + static_cast<std::ptrdiff_t>(size));
    }
};

namespace {

// Creates an empty table with the columns and tags of another one, in the files that will replace it.
std::shared_ptr<Table> makeTwin(const Schema& schema, const IndexFile* index, TableReplacement& files) {
    std::vector<TagDefinition> tags;
    if (index != nullptr) {
        for (const Tag& tag : index->tags()) {
            tags.push_back(tag.definition);
        }
    }
    std::unique_ptr<File> newTable = files.makeTable();
    std::unique_ptr<File> newIndex = tags.empty() ? nullptr : files.makeIndex();
    writeEmptyTable(*newTable, newIndex.get(), schema, baseName(files.tableFile()), tags);
    return std::make_shared<Table>(std::move(newTable), std::move(newIndex));
}

// The same for a table that nobody has open.
std::shared_ptr<Table> makeTwin(TableReplacement& files) {
    Folders& folders = files.folders();
    const TableFile old(folders.open(files.tableFile(), OpenMode::ReadOnly));
    std::optional<IndexFile> index;
    if (const auto path = findIndexFile(folders, files.tableFile())) {
        index.emplace(folders.open(*path, OpenMode::ReadOnly), old.schema());
    }
    return makeTwin(old.schema(), index ? &*index : nullptr, files);
}

std::shared_ptr<Table> openNew(const TableReplacement& files) {
    Folders& folders = files.folders();
    const std::string& index = files.newIndexFile();
    return std::make_shared<Table>(folders.open(files.newTableFile(), OpenMode::ReadWrite),
                                   folders.exists(index) ? folders.open(index, OpenMode::ReadWrite)
                                                         : nullptr);
}

} // namespace

BulkLoader::BulkLoader(const std::string& tableFile, Mode mode)
    : BulkLoader(tableFile, mode, diskFolders()) {}

BulkLoader::BulkLoader(const std::string& tableFile, Mode mode, Folders& folders)
    : state_(std::make_unique<State>()) {
    const LockWaits waits;
    state_->table = Table::open(tableFile, folders);
    if (state_->table->isReadOnly()) {
        throw Error(ErrorCode::ReadOnly, tableFile, "sólo se puede leer: " + state_->table->readOnlyReason());
    }
    if (mode == Mode::Replace) {
        const std::shared_ptr<Table> old = std::move(state_->table);
        if (old.use_count() > 1) {
            throw Error(ErrorCode::LockTimeout, tableFile,
                        "la tabla está abierta; ciérrela para poder sustituirla");
        }
        old->leave(); // our own opening must not count as another program's
        state_->replacement = &state_->ownReplacement.emplace(tableFile, folders);
        old->requireInPlace(); // another program may have replaced it in between
        state_->run([&] { state_->table = makeTwin(old->schema(), old->index(), *state_->replacement); });
    }
    begin();
}

BulkLoader::BulkLoader(TableReplacement& replacement) : state_(std::make_unique<State>()) {
    state_->replacement = &replacement;
    state_->run([&] { state_->table = makeTwin(replacement); });
    begin();
}

BulkLoader::BulkLoader(TableReplacement& replacement, const TableDefinition& definition)
    : state_(std::make_unique<State>()) {
    state_->replacement = &replacement;
    state_->run([&] {
        makeEmptyTable(replacement, definition);
        state_->table = openNew(replacement);
    });
    begin();
}

void BulkLoader::begin() {
    state_->run([&] {
        state_->use.emplace(*state_->table);
        state_->use->beginLoad();
        if (!state_->replacement) {
            state_->use->shareLoad();
        }
    });
    state_->countBefore = state_->table->records().recordCount();
    state_->written = state_->table->records().offsetOf(state_->countBefore + 1);
}

BulkLoader::~BulkLoader() {
    if (!state_->finished && state_->replacement == nullptr && state_->added > 0) {
        try {
            state_->use->withdrawRows(state_->countBefore);
        } catch (...) {
            // The rows do not count; the next program to add a record overwrites them.
        }
    }
}

const Schema& BulkLoader::schema() const { return state_->table->schema(); }

void BulkLoader::add(std::span<const char> record) {
    if (record.size() != schema().recordLength) {
        state_->run([&] {
            throw Error(ErrorCode::BadValue, state_->table->path(),
                        "el registro no tiene la longitud de la tabla");
        });
    }
    state_->pending.insert(state_->pending.end(), record.begin(), record.end());
    if (state_->added++ == 0) {
        state_->firstMark = std::exchange(state_->pending.front(), endMark);
    }
    if (state_->end() / pieceBytes != state_->written / pieceBytes) {
        state_->run([&] { state_->write(state_->pending.size() - state_->end() % pieceBytes); });
    }
}

void BulkLoader::finish(const Progress& progress) {
    state_->run([&] {
        if (state_->added > 0) {
            state_->pending.push_back(endMark);
            state_->write(state_->pending.size());
            state_->use->addRows(state_->countBefore + state_->added, state_->firstMark, progress);
        }
        state_->use->sync();
        if (state_->ownReplacement) {
            state_->ownReplacement->commit();
        }
    });
    state_->finished = true;
    state_->use.reset();
    if (state_->ownReplacement) { // which keeps the new table from being opened
        state_->replacement = nullptr;
        state_->ownReplacement.reset();
    }
}

} // namespace dbase
