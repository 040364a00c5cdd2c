// Writes an undo file.
#include "loading/undo_writer.h"

#include <array>
#include <ctime>
#include <utility>

#include "dbase/system/error.h"
#include "dbase/system/quoted.h"

namespace loading {

namespace {

constexpr std::size_t pieceSize = std::size_t{1} << 20;

std::string now() {
    const std::time_t time = std::time(nullptr);
    std::tm parts = {};
    localtime_r(&time, &parts);
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &parts)};
}

std::vector<char> copyOf(std::span<const char> row) { return {row.begin(), row.end()}; }

} // namespace

UndoWriter::UndoWriter(const std::string& path, const std::string& model, const std::string& order,
                       dbase::Folders& folders)
    : folders_(folders), path_(path), file_(folders.createCompanion(path, model)) {
    if (!file_) {
        throw dbase::Error(dbase::ErrorCode::Exists, path,
                           "ya existe, y un fichero de deshacer no se sobrescribe; dé otro nombre");
    }
    pending_ = undoHeading(now(), order);
}

UndoWriter::~UndoWriter() {
    try {
        if (isEmpty()) {
            folders_.remove(path_);
        } else if (isSynced_ && pending_.empty()) {
            end();
        }
    } catch (const dbase::Error&) {
        // An empty file undoes nothing; one without its end is undone all the same, with a word about it.
    }
}

std::size_t UndoWriter::addTable(const std::string& tableFile, const dbase::Schema& schema,
                                 const std::vector<std::string>& key) {
    return add(tableOf(tableFile, schema, key));
}

std::size_t UndoWriter::addTableOfWholeRows(const std::string& tableFile, const dbase::Schema& schema,
                                            const std::vector<std::string>& key,
                                            std::optional<std::size_t> companionOf) {
    UndoTable table = tableOf(tableFile, schema, key);
    table.isOfWholeRows = true;
    if (companionOf && !makeCompanion(table, tables_, *companionOf)) {
        throw dbase::Error(dbase::ErrorCode::NotFound, tableFile,
                           "no tiene las columnas que distinguen las filas de la tabla a la que acompaña");
    }
    return add(std::move(table));
}

UndoTable UndoWriter::tableOf(const std::string& tableFile, const dbase::Schema& schema,
                              const std::vector<std::string>& key) const {
    UndoTable table{.path = folders_.realPath(tableFile), .schema = schema, .key = {}};
    for (const std::string& column : key) {
        const auto position = schema.find(column);
        if (!position) {
            throw dbase::Error(dbase::ErrorCode::NotFound, tableFile,
                               "no tiene la columna " + dbase::inQuotes(column));
        }
        table.key.push_back(*position);
    }
    return table;
}

std::size_t UndoWriter::add(UndoTable table) {
    pending_ += undoLine(table, tables_.size());
    tables_.push_back(std::move(table));
    return tables_.size() - 1;
}

void UndoWriter::change(std::size_t table, dbase::RecordNumber number, std::span<const char> before,
                        std::span<const char> after) {
    if (!agree(before, after)) {
        write({UndoKind::Change, table, number, copyOf(before), copyOf(after)});
    }
}

void UndoWriter::addition(std::size_t table, dbase::RecordNumber number, std::span<const char> row) {
    write({UndoKind::Addition, table, number, {}, copyOf(row)});
}

void UndoWriter::deletion(std::size_t table, dbase::RecordNumber number, std::span<const char> row) {
    write({UndoKind::Deletion, table, number, copyOf(row), {}});
}

void UndoWriter::unmade(std::size_t table, dbase::RecordNumber number) {
    write({UndoKind::Unmade, table, number, {}, {}});
}

void UndoWriter::write(const UndoEntry& entry) {
    const UndoTable& table = tables_.at(entry.table);
    const bool needsKey = entry.kind == UndoKind::Addition || entry.kind == UndoKind::Deletion;
    if (needsKey && table.key.empty()) {
        throw dbase::Error(dbase::ErrorCode::BadState, table.path,
                           "sin columnas que distingan sus filas no se pueden deshacer altas ni bajas");
    }
    pending_ += undoLine(table, entry);
    ++entries_;
    if (pending_.size() >= pieceSize) {
        send();
    }
}

void UndoWriter::end() {
    pending_ = undoEnd(entries_);
    sync();
}

/// What a failure has written stays in place to be written again.
void UndoWriter::send() {
    isSynced_ = false;
    file_->write(end_, pending_);
    end_ += pending_.size();
    pending_.clear();
}

void UndoWriter::sync() {
    if (pending_.empty() && isSynced_) {
        return;
    }
    send();
    file_->sync();
    if (!isNameSynced_) {
        folders_.syncFolderOf(path_);
        isNameSynced_ = true;
    }
    isSynced_ = true;
}

} // namespace loading
