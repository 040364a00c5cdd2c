// The journal's file beside its table, and the identity of a boot of the machine.
#include "dbase/journal/journal_place.h"

#include <cerrno>
#include <cstdio>
#include <fstream>

#include <sys/stat.h>
#include <unistd.h>

#include "dbase/system/error.h"
#include "dbase/system/paths.h"
#include "dbase/system/system_reason.h"

namespace dbase {

namespace {

std::string readBootIdentity() {
    std::ifstream file("/proc/sys/kernel/random/boot_id");
    std::string identity;
    // Without one every process counts as another boot: journals are then redone more often than needed.
    return std::getline(file, identity) ? identity : "proceso " + std::to_string(getpid());
}

std::string& identity() {
    static std::string current = readBootIdentity();
    return current;
}

class FolderPlace final : public JournalPlace {
public:
    explicit FolderPlace(std::string tableFile)
        : table_(std::move(tableFile)), path_(withExtension(table_, ".AMJ")) {}

    std::unique_ptr<File> openExisting() override {
        if (access(path_.c_str(), F_OK) != 0) {
            return nullptr;
        }
        try {
            return openFile(path_, OpenMode::ReadWrite);
        } catch (const Error& error) {
            if (error.code() == ErrorCode::NotFound) { // deleted meanwhile
                return nullptr;
            }
            if (error.code() != ErrorCode::AccessDenied) {
                throw;
            }
        }
        return openFile(path_, OpenMode::ReadOnly);
    }

    std::unique_ptr<File> create() override {
        std::unique_ptr<File> file = openFile(path_, OpenMode::Create);
        struct stat table = {};
        if (stat(table_.c_str(), &table) == 0) { // all who may write the table may continue its journal
            static_cast<void>(chmod(path_.c_str(), table.st_mode & 0666));
        }
        syncFolderOf(path_);
        return file;
    }

    void remove() override {
        if (std::remove(path_.c_str()) != 0 && errno != ENOENT) {
            throw Error(ErrorCode::Io, path_,
                        std::string("no se puede borrar el diario: ") + systemReason(errno));
        }
        syncFolderOf(path_); // reappearing after a power cut, it would describe outdated records
    }

private:
    std::string table_, path_;
};

} // namespace

std::string bootIdentity() { return identity(); }
void setBootIdentity(std::string other) { identity() = std::move(other); }

std::unique_ptr<JournalPlace> journalBeside(const std::string& tableFile) {
    return std::make_unique<FolderPlace>(tableFile);
}

} // namespace dbase
