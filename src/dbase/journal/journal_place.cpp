// The journal's file beside its table, and the identity of a boot of the machine.
#include "dbase/journal/journal_place.h"

#include <fstream>

#include <unistd.h>

#include "dbase/journal/journal_trust.h"
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

    std::unique_ptr<File> openExisting() override {
        std::unique_ptr<File> file = openAccepted();
        return file && file->size() > 0 ? std::move(file) : nullptr;
    }

    std::unique_ptr<File> create() override {
        std::unique_ptr<File> file = folders_.createCompanion(path_, table_);
        if (!file) {
            file = openAccepted();
        }
        if (!file || file->size() > 0) {
            throw Error(ErrorCode::Io, path_, "otro programa acaba de cambiarlo; inténtelo otra vez");
        }
        if (!file->isWritable()) {
            throw Error(ErrorCode::AccessDenied, path_, notWritable);
        }
        folders_.syncFolderOf(path_);
        return file;
    }

    void remove() override {
        try {
            folders_.remove(path_);
        } catch (const Error&) {
            empty();
            return;
        }
        // A journal that came back after a power cut would speak of what others have changed since.
        folders_.syncFolderOf(path_);
    }

    std::string objectionToWriting() override {
        if (const std::unique_ptr<File> file = openAccepted()) {
            return file->isWritable() ? std::string() : path_ + ": " + notWritable;
        }
        const std::string objection = folders_.objectionToNamesAt(path_);
        return objection.empty() ? objection : objection + ", y ahí hace falta el diario de la tabla";
    }

private:
    static constexpr const char* notWritable = "no se puede escribir en el diario (no hay permiso)";

    [[nodiscard]] std::unique_ptr<File> openAccepted() {
        std::unique_ptr<File> file = folders_.openCompanion(path_);
        const std::optional<FileStatus> table = file ? folders_.statusOf(table_) : std::nullopt;
        if (table) {
            if (const std::string objection = objectionTo(file->status(), *table); !objection.empty()) {
                throw Error(ErrorCode::AccessDenied, path_,
                            objection + "; compruebe quién lo ha puesto ahí y bórrelo");
            }
        }
        return file;
    }

    // In a sticky folder only the owners of file and folder may remove it.
    void empty() {
        const std::unique_ptr<File> file = openAccepted();
        if (file && file->size() > 0) {
            if (!file->isWritable()) {
                throw Error(ErrorCode::AccessDenied, path_, notWritable);
            }
            file->resize(0);
            file->sync();
        }
    }

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
