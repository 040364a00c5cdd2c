// The journal's file beside its table, and the identity of a boot of the machine.
#include "dbase/journal/journal_place.h"

#include <fstream>

#include <unistd.h>

#include "dbase/system/error.h"
#include "dbase/system/paths.h"

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
    FolderPlace(const std::string& tableFile, Folders& folders)
        : folders_(folders), table_(tableFile), path_(withExtension(table_, ".AMJ")) {}

    std::unique_ptr<File> openExisting() override { return folders_.openCompanion(path_); }

    std::unique_ptr<File> create() override {
        std::unique_ptr<File> file = folders_.createCompanion(path_, table_);
        if (!file) {
            throw Error(ErrorCode::Exists, path_, "otro programa acaba de crearlo; inténtelo otra vez");
        }
        folders_.syncFolderOf(path_);
        return file;
    }

    void remove() override {
        folders_.remove(path_);
        // A journal that came back after a power cut would speak of what others have changed since.
        folders_.syncFolderOf(path_);
    }

private:
    Folders& folders_;
    std::string table_, path_;
};

} // namespace

std::string bootIdentity() { return identity(); }
void setBootIdentity(std::string other) { identity() = std::move(other); }

std::unique_ptr<JournalPlace> journalBeside(const std::string& tableFile, Folders& folders) {
    return std::make_unique<FolderPlace>(tableFile, folders);
}

} // namespace dbase
