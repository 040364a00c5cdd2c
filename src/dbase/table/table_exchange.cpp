// Writes the intention of an exchange, then carries it out.
#include "dbase/table/table_exchange.h"

#include <algorithm>
#include <map>

#include "dbase/lock/locks.h"
#include "dbase/system/names.h"
#include "dbase/system/paths.h"
#include "dbase/table/exchange_completion.h"
#include "dbase/table/exchange_intention.h"

namespace dbase {

namespace {

constexpr const char* willGoOn =
    "; el cambio de las tablas se terminará la próxima vez que se abra una de ellas";
constexpr const char* mayGoOn =
    "; al abrir una de las tablas se verá si se han cambiado todas o se queda todo como estaba";

} // namespace

TableExchange::TableExchange(const std::vector<std::string>& tableFiles)
    : TableExchange(tableFiles, diskFolders()) {}

TableExchange::TableExchange(const std::vector<std::string>& tableFiles, Folders& folders)
    : folders_(folders), folder_(folderOf(folders.realPath(tableFiles.at(0)))) {
    const LockWaits waits;
    hold(tableFiles);
    for (const auto& claim : claims_) {
        claim->removeLeftOvers();
        tables_.push_back(std::make_unique<TableReplacement>(*claim));
        tables_.back()->isExchanged_ = true;
    }
    requireOneFolder();
}

TableExchange::~TableExchange() = default;

// All claims in one order, so that two exchanges do not wait for each other; without one while waiting for a
// program that concludes an exchange of the same tables.
void TableExchange::hold(const std::vector<std::string>& tableFiles) {
    std::map<std::string, std::size_t> order;
    for (std::size_t i = 0; i < tableFiles.size(); ++i) {
        order.emplace(upperName(folders_.realPath(tableFiles[i])), i);
    }
    if (order.size() < tableFiles.size()) {
        throw Error(ErrorCode::BadState, folder_, "una tabla no se puede sustituir dos veces");
    }
    const auto isIntended = [&](const auto& claim) { return isInExchange(claim->tableFile(), folders_); };
    do {
        claims_.clear();
        completeExchange(folder_, folders_);
        claims_.resize(tableFiles.size());
        for (const auto& [name, i] : order) {
            claims_[i] = std::make_unique<TableClaim>(tableFiles[i], folders_, TableClaim::Remains::Leave);
        }
    } while (std::ranges::any_of(claims_, isIntended));
}

void TableExchange::requireOneFolder() const {
    for (const auto& table : tables_) {
        for (const std::string* file : {&table->newTableFile(), &table->newIndexFile()}) {
            if (folderOf(*file) != folder_) {
                throw Error(ErrorCode::BadState, table->tableFile(),
                            "para cambiarla junto con otras, tabla e índice tienen que estar en " + folder_);
            }
        }
    }
}

void TableExchange::runInTurn(const Steps& steps) {
    for (const auto& step : steps) {
        step();
    }
}

void TableExchange::commit(const StepRunner& runner) {
    std::vector<TableReplacement*> made;
    for (const auto& table : tables_) {
        if (table->hasNewTable()) {
            made.push_back(table.get());
        }
    }
    if (made.empty()) {
        return;
    }
    const std::unique_ptr<File> intention = decide(made);
    for (TableReplacement* table : made) { // from here on the new files are needed
        table->isCommitted_ = true;
    }
    try {
        carryOut(made, runner);
        removeIntention(*intention, folders_);
        for (TableReplacement* table : made) {
            table->endMark();
        }
    } catch (const Error& error) {
        release();
        throw Error(error.code(), {}, error.what() + std::string(willGoOn));
    }
    release();
}

void TableExchange::carryOut(const std::vector<TableReplacement*>& made, const StepRunner& runner) {
    Steps beginnings, changes, ends;
    for (TableReplacement* table : made) {
        if (table->isChangedInPlace()) {
            beginnings.push_back([table] { table->beginChanges(); });
            changes.push_back([table] { table->changeRecords(); });
            changes.push_back([table] { table->changeIndex(); });
            ends.push_back([table] { table->endChanges(); });
        } else {
            table->takeNames();
        }
    }
    runner(beginnings);
    runner(changes);
    runner(ends);
}

// Errors that name a new file name the one that it would have become.
std::unique_ptr<File> TableExchange::decide(const std::vector<TableReplacement*>& made) {
    Intention intention{newExchangeNumber(), {}};
    try {
        for (TableReplacement* table : made) {
            table->underOwnNames([&] {
                intention.tables.push_back(table->intended());
                table->markFor(intention);
            });
        }
        folders_.syncFolderOf(made.front()->newTableFile()); // or the intention could arrive without them
        return writeIntention(intention);
    } catch (...) {
        for (TableReplacement* table : made) {
            table->unmark();
        }
        throw;
    }
}

void TableExchange::release() {
    tables_.clear();
    claims_.clear();
}

// Once its name is on the disk, the exchange is decided. It is locked until it is removed.
std::unique_ptr<File> TableExchange::writeIntention(const Intention& intention) {
    const std::string text = encodeIntention(intention);
    if (!decodeIntention(text)) {
        throw Error(ErrorCode::BadValue, folder_, "los nombres de las tablas no se pueden apuntar");
    }
    std::unique_ptr<File> file = createIntention(folder_, intention, folders_);
    try {
        isDecided_ = true;
        file->write(0, text);
        file->sync();
        folders_.syncFolderOf(file->path());
    } catch (const Error& error) {
        try {
            removeIntention(*file, folders_);
        } catch (...) {
            throw Error(error.code(), {}, error.what() + std::string(mayGoOn));
        }
        isDecided_ = false;
        throw;
    }
    return file;
}

} // namespace dbase
