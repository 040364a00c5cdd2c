// Holds the three tables, and writes each row twice: into its table and into the undo file.
#include "directory/DirectoryStoring.h"

#include <algorithm>

#include "dbase/system/databases.h"
#include "dbase/system/error.h"
#include "dbase/system/folders.h"
#include "directory/DirectoryRecords.h"

namespace ambrel::directory {
namespace {

/// In the order of DirectoryTable.
constexpr std::array<const char*, 3> tableNames = {"POSTAL", "PROCEDEN", "MUNICIPI"};
const std::array<std::vector<std::string>, 3> keyColumns = {
    {{"CODIGO1"}, {"CODIGO1", "CLAVE"}, {"COD_INE", "CODPOSTAL", "NOMBRE", "ENT_MENOR"}}};

/// Those that the system grants no thread run one after another: what has been decided must not stop there.
void runSideBySide(const dbase::TableExchange::Steps& steps) {
    std::vector<std::future<void>> running;
    std::ranges::transform(steps, std::back_inserter(running),
                           [](const auto& step) { return std::async(step); });
    std::ranges::for_each(running, &std::future<void>::get);
}

std::vector<std::string> tableFiles(const std::string& folder) {
    dbase::completeExchange(folder); // before names are looked for
    std::vector<std::string> files;
    for (const char* const name : tableNames) {
        files.push_back(dbase::findTableFile(folder, name).value_or(folder + '/' + name + ".DBF"));
    }
    return files;
}

} // namespace

void DirectoryStoring::requirePossible(const std::string& folder) {
    const dbase::TableExchange held(tableFiles(folder));
}

DirectoryStoring::DirectoryStoring(const std::string& folder) : exchange_(tableFiles(folder)) {
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        Part& part = parts_.at(i);
        const std::string& file = exchange_.table(i).tableFile();
        const bool mayBeMissing = static_cast<DirectoryTable>(i) == DirectoryTable::Provenance;
        if (!mayBeMissing || dbase::diskFolders().exists(file)) {
            part.present = std::make_unique<StoredRows>(file, StoredRows::Others::AreKeptOut);
            part.writing = std::make_unique<TableWriting>(exchange_.table(i), part.present->recordCount());
        } else {
            part.writing = std::make_unique<TableWriting>(exchange_.table(i), 0, provenanceTable());
        }
    }
}

void DirectoryStoring::keepUndo(const std::string& undoFile, const std::string& order) {
    if (undoFile.empty()) {
        return;
    }
    undo_.emplace(undoFile, exchange_.table(0).tableFile(), order);
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        Part& part = parts_.at(i);
        const bool isProvenance = static_cast<DirectoryTable>(i) == DirectoryTable::Provenance;
        part.undoTable = undo_->addTableOfWholeRows(
            exchange_.table(i).tableFile(), part.present ? part.present->schema() : provenanceSchema(),
            keyColumns.at(i), isProvenance ? std::optional(parts_.front().undoTable) : std::nullopt);
    }
}

/// What was not carried out needs no undo file.
DirectoryStoring::~DirectoryStoring() {
    if (undo_ && !isCommitted_ && !exchange_.isDecided()) {
        const std::string file = undo_->path();
        undo_.reset();
        try {
            dbase::diskFolders().remove(file);
        } catch (const dbase::Error&) {
            // It describes rows that nobody finds, and undoes nothing.
        }
    }
}

StoredTables DirectoryStoring::present() const {
    return {.streets = parts_[0].present.get(),
            .places = parts_[2].present.get(),
            .provenance = parts_[1].present.get()};
}

void DirectoryStoring::beginSums() {
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        dbase::TableReplacement& files = exchange_.table(i);
        summing_.push_back(std::async([&files] { files.sumOld(); }));
    }
}

void DirectoryStoring::add(DirectoryTable table, std::span<const char> row) {
    Part& its = part(table);
    const dbase::RecordNumber number = its.writing->add(row);
    if (undo_) {
        undo_->addition(its.undoTable, number, row);
    }
}

void DirectoryStoring::change(DirectoryTable table, dbase::RecordNumber number, std::span<const char> before,
                              std::span<const char> after) {
    Part& its = part(table);
    its.writing->change(number, after);
    if (undo_) {
        undo_->change(its.undoTable, number, before, after);
    }
}

void DirectoryStoring::erase(DirectoryTable table, dbase::RecordNumber number, std::span<const char> row) {
    Part& its = part(table);
    its.writing->erase(number);
    if (undo_) {
        undo_->deletion(its.undoTable, number, row);
    }
}

// The disk takes long, and summing long files does: both go on beside each other.
void DirectoryStoring::commit(const LoadingProgress& progress) {
    std::ranges::for_each(summing_, &std::future<void>::get);
    std::vector<std::future<void>> settling;
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        dbase::TableReplacement& files = exchange_.table(i);
        parts_.at(i).writing->finish(progress);
        settling.push_back(std::async([&files] { files.settle(); }));
    }
    if (undo_) {
        undo_->sync();
    }
    std::ranges::for_each(settling, &std::future<void>::get);
    exchange_.commit(runSideBySide);
    isCommitted_ = true;
}

} // namespace ambrel::directory
