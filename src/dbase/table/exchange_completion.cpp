// Goes on with the exchange of a program that was stopped: each of its tables is found before, amid or after
// its renames.
#include "dbase/table/exchange_completion.h"

#include <algorithm>
#include <optional>

#include "dbase/journal/journal_place.h"
#include "dbase/lock/locks.h"
#include "dbase/system/companion_file.h"
#include "dbase/system/error.h"
#include "dbase/system/notify.h"
#include "dbase/system/paths.h"
#include "dbase/table/recovery.h"
#include "dbase/table/replaced_files.h"
#include "dbase/table/table_claim.h"
#include "dbase/table/table_exchange.h"
#include "dbase/table/table_patch.h"

namespace dbase {

namespace {

constexpr LockRange intentionLock{0, 1};

/// One table of a stopped exchange, held for this program.
class StoppedTable {
public:
    StoppedTable(const std::string& folder, const Intention& intention, const IntendedTable& intended,
                 Folders& folders)
        : folders_(folders), intention_(intention), intended_(intended),
          claim_(pathIn(folder, intended.table), folders, TableClaim::Remains::Leave),
          files_(replacedFiles(pathIn(folder, intended.table), pathIn(folder, intended.index))) {
        if (!isMarked()) { // somebody else's table by now, and perhaps open
            isBegun_ = intended_.rest && isHalfChanged();
            return;
        }
        for (const std::string* file : {&files_.table, &files_.index}) {
            if (folders_.exists(*file)) {
                folders_.requireReplaceable(*file);
            }
        }
        if (folders_.exists(files_.table)) {
            held_ = openAlone(folders_, files_.table);
            requireUnused(*held_);
        }
        if (folders_.exists(files_.newTable)) {
            heldNew_ = folders_.open(files_.newTable, OpenMode::ReadWrite);
            holdLock(*heldNew_, openingLock, LockKind::Exclusive);
        }
        if (intended_.rest) {
            isRight_ = hasRightPatch();
            return;
        }
        const bool areRecordsRight = hasRightRecords();
        isRight_ = hasRightIndex() && areRecordsRight; // the index alone may show that it was exchanged
    }

    /// Whether its files are those of the intention.
    [[nodiscard]] bool isRight() const { return isRight_; }
    /// Whether any of them has its new name, or may have been changed in place.
    [[nodiscard]] bool isBegun() const { return isBegun_; }
    /// Whether it may have rows of both, and cannot be completed.
    [[nodiscard]] bool isSpoilt() const { return intended_.rest && isBegun_ && !isRight_; }
    [[nodiscard]] const std::string& path() const { return files_.table; }

    void complete() {
        if (heldNew_) { // else the records were exchanged, and a journal would be theirs
            journalBeside(files_.table, folders_)->remove();
        }
        if (patch_) {
            const auto index = folders_.open(files_.index, OpenMode::ReadWrite);
            markHalfChanged(*index, intention_.newSession());
            patch_->applyToRecords(*held_);
            patch_->applyToIndex(*index, intention_.newSession());
            setMark(*index, true);
        } else {
            takeNames(folders_, files_, intended_.indexAfter.has_value());
        }
    }
    void endMark() {
        if (patch_ || intended_.indexAfter) {
            setMark(*folders_.open(files_.index, OpenMode::ReadWrite), false, 0);
        }
        if (patch_) {
            removeNewFiles();
        }
    }
    void removeNewFiles() {
        folders_.remove(files_.newTable);
        folders_.remove(files_.newIndex);
    }

private:
    [[nodiscard]] static std::string pathIn(const std::string& folder, const std::string& name) {
        return (folder == "/" ? folder : folder + '/') + name;
    }
    /// Whether an index bears the mark of this exchange.
    [[nodiscard]] bool isMarked(const std::string& index, std::uint64_t session) const {
        if (!folders_.exists(index)) {
            return false;
        }
        const UpdateStamp stamp = stampOf(folders_.open(index, OpenMode::ReadOnly).get());
        return stamp.inUpdate && stamp.session == session;
    }
    [[nodiscard]] bool isMarked() const {
        return !folders_.exists(files_.index) || isMarked(files_.index, intention_.oldSession()) ||
               isMarked(files_.index, intention_.newSession());
    }
    /// Once the index says that the patch is being applied, only what that leaves alone can be compared.
    [[nodiscard]] bool hasRightPatch() {
        isBegun_ = isMarked(files_.index, intention_.newSession());
        if (!held_ || !heldNew_ || fingerprintOf(*heldNew_) != intended_.recordsAfter) {
            return false;
        }
        patch_ = TablePatch::in(*heldNew_);
        if (!patch_) {
            return false;
        }
        if (isBegun_) {
            return patch_->restAmid(*held_, fingerprintOf(*held_)) == intended_.rest;
        }
        if (!folders_.exists(files_.index)) {
            isBegun_ = isHalfChanged(*held_, *patch_);
            return false;
        }
        return fingerprintOf(*held_) == intended_.recordsBefore;
    }
    /// Whether the records show that they were changed, without the index by which that is known.
    [[nodiscard]] bool isHalfChanged(const File& records, const TablePatch& patch) const {
        const Fingerprint present = fingerprintOf(records);
        return present != intended_.recordsBefore && patch.restAmid(records, present) == intended_.rest;
    }
    [[nodiscard]] bool isHalfChanged() const {
        if (!folders_.exists(files_.table) || !folders_.exists(files_.newTable)) {
            return false;
        }
        const auto file = folders_.open(files_.newTable, OpenMode::ReadOnly);
        const auto patch =
            fingerprintOf(*file) == intended_.recordsAfter ? TablePatch::in(*file) : std::nullopt;
        return patch && isHalfChanged(*folders_.open(files_.table, OpenMode::ReadOnly), *patch);
    }
    [[nodiscard]] bool hasRightRecords() {
        if (!heldNew_) {
            isBegun_ = held_ && fingerprintOf(*held_) == intended_.recordsAfter;
            return isBegun_;
        }
        return fingerprintOf(*heldNew_) == intended_.recordsAfter &&
               (held_ ? intended_.recordsBefore == fingerprintOf(*held_) : !intended_.recordsBefore);
    }
    [[nodiscard]] bool hasRightIndex() {
        const bool isOld = !folders_.exists(files_.index) ||
                           (intended_.hadIndex && isMarked(files_.index, intention_.oldSession()));
        if (!intended_.indexAfter) {
            return isOld;
        }
        if (folders_.exists(files_.newIndex)) {
            return isOld && isMarked(files_.newIndex, intention_.newSession()) &&
                   folders_.open(files_.newIndex, OpenMode::ReadOnly)->size() == *intended_.indexAfter;
        }
        const bool isNew = isMarked(files_.index, intention_.newSession());
        isBegun_ = isBegun_ || isNew;
        return isNew;
    }

    Folders& folders_;
    const Intention& intention_;
    const IntendedTable& intended_;
    TableClaim claim_;
    ReplacedFiles files_;
    std::unique_ptr<File> held_, heldNew_; // the table under its name and the new one, or its patch
    std::optional<TablePatch> patch_;
    bool isRight_ = false, isBegun_ = false;
};

using StoppedTables = std::vector<std::unique_ptr<StoppedTable>>;

// Where somebody has changed one of the tables since, all stay, unless another one has been exchanged before.
void conclude(const StoppedTables& tables, const File& intention, Folders& folders) {
    const bool areRight = std::ranges::all_of(tables, [](const auto& table) { return table->isRight(); });
    const bool isBegun = std::ranges::any_of(tables, [](const auto& table) { return table->isBegun(); });
    std::string left, spoilt;
    for (const auto& table : tables) {
        if (table->isRight() && (areRight || isBegun)) {
            table->complete();
        } else {
            table->removeNewFiles();
            std::string& names = table->isSpoilt() ? spoilt : left;
            names += (names.empty() ? "" : ", ") + table->path();
        }
    }
    removeIntention(intention, folders);
    for (const auto& table : tables) {
        if (table->isRight() && (areRight || isBegun)) {
            table->endMark();
        }
    }
    if (!spoilt.empty()) {
        warnOfHalfChanges(spoilt);
    }
    if (!left.empty()) {
        notify(isBegun
                   ? left + ": otro programa la ha cambiado o restaurado mientras quedaba por sustituir "
                            "junto con otras tablas, que ya se han sustituido; se queda como está"
                   : left +
                         ": quedaba por terminar su sustitución, y alguna de ellas o de sus ficheros nuevos "
                         "no es ya la misma; se quedan como están");
    }
}

void lockIntention(File& file) { holdLock(file, intentionLock, LockKind::Exclusive); }

// Names are remembered here for up to a minute, also those that did not exist; creating one asks the server.
// Nobody is waited for, because this program holds locks of the table.
void askServerFor(const std::string& path, Folders& folders) {
    bool isLocked = false;
    const auto file = holdCompanion(folders, path, folderOf(path), [&](File& found) {
        isLocked = found.isWritable() && found.tryLock(intentionLock, LockKind::Exclusive);
    });
    if (isLocked && file->size() == 0) {
        removeIntention(*file, folders);
    }
}

/// Locked, and still there; null if there is none.
std::unique_ptr<File> holdIntention(const std::string& path, Folders& folders) {
    while (std::unique_ptr<File> file = folders.openCompanion(path)) {
        if (!file->isWritable()) {
            throw Error(ErrorCode::AccessDenied, path,
                        "no hay permiso para terminar la sustitución de tablas que otro usuario empezó");
        }
        lockIntention(*file);
        if (folders.isStillThere(*file)) {
            return file;
        }
    }
    return nullptr;
}

} // namespace

bool isInExchange(const std::string& tableFile, Folders& folders, bool isRemote) {
    try {
        const std::string path = intentionFileIn(folderOf(tableFile));
        if (isRemote) {
            askServerFor(path, folders);
        }
        const std::unique_ptr<File> file = folders.openCompanion(path);
        const std::optional<Intention> intention = file ? readIntention(*file) : std::nullopt;
        return intention && intention->names(tableFile) && isTrusted(*file, *intention, folders);
    } catch (const Error& error) {
        if (error.code() != ErrorCode::AccessDenied) { // like one that is not trusted
            throw;
        }
        return false;
    }
}

void concludeExchangeOf(const std::string& tableFile, Folders& folders) {
    try {
        completeExchange(folderOf(tableFile), folders);
    } catch (const Error& error) {
        if (error.code() != ErrorCode::AccessDenied) {
            throw;
        }
        throw Error(
            ErrorCode::StaleIndex, tableFile,
            std::string("un programa terminó mientras la sustituía junto con otras tablas, y aquí no se "
                        "puede seguir (") +
                error.what() + "). Ábrala con permiso de escritura en la carpeta");
    }
}

std::unique_ptr<File> createIntention(const std::string& folder, const Intention& intention,
                                      Folders& folders) {
    const std::string path = intentionFileIn(folder);
    std::vector<std::string> models;
    for (const IntendedTable& table : intention.tables) {
        if (const std::string model = folder + '/' + table.table; folders.exists(model)) {
            models.push_back(model);
        }
    }
    if (models.empty()) {
        models.push_back(folder);
    }
    for (const std::string& model : models) { // the one that fewest may write will do
        std::unique_ptr<File> file;
        do {
            file.reset(); // with the lock of an intention that others left, which has to be completed first
            completeExchange(folder, folders);
            file = holdCompanion(folders, path, model, lockIntention);
        } while (file->size() > 0);
        if (isTrusted(*file, intention, folders)) {
            return file;
        }
        removeIntention(*file, folders);
    }
    throw Error(ErrorCode::AccessDenied, folder,
                "las tablas no son de las mismas personas y no se pueden sustituir a la vez");
}

void removeIntention(const File& file, Folders& folders) {
    folders.remove(file.path());
    folders.syncFolderOf(file.path());
}

void completeExchange(const std::string& folder) { completeExchange(folder, diskFolders()); }

void completeExchange(const std::string& folder, Folders& folders) {
    const LockWaits waits;
    const std::string real = folders.realPath(folder);
    const std::unique_ptr<File> file = holdIntention(intentionFileIn(real), folders);
    if (!file) {
        return;
    }
    const std::optional<Intention> intention = readIntention(*file);
    if (!intention) { // the program was stopped before it had decided anything
        removeIntention(*file, folders);
        return;
    }
    if (!isTrusted(*file, *intention, folders)) {
        throw Error(
            ErrorCode::AccessDenied, file->path(),
            "es de un usuario que no puede escribir en todas las tablas que nombra; compruebe quién lo "
            "ha puesto ahí y bórrelo");
    }
    StoppedTables tables;
    for (const IntendedTable& table : intention->tables) {
        tables.push_back(std::make_unique<StoppedTable>(real, *intention, table, folders));
    }
    conclude(tables, *file, folders);
}

} // namespace dbase
