// The journal's file beside its table, and the identity of a boot of the machine.
#include "dbase/journal/journal_place.h"

#include <algorithm>
#include <fstream>

#include <unistd.h>

#include "dbase/journal/journal_trust.h"
#include "dbase/journal/largest_journal.h"
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

constexpr const char* journalExtension = ".AMJ";
constexpr const char* asideSuffix = ".apartado";

class FolderPlace final : public JournalPlace {
public:
    FolderPlace(const std::string& tableFile, Folders& folders)
        : folders_(folders), table_(tableFile), path_(withExtension(table_, journalExtension)) {}

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

    std::string setAside() override {
        std::string aside = path_ + asideSuffix;
        for (int number = 2; folders_.exists(aside); ++number) { // earlier ones stay
            aside = path_ + asideSuffix + std::to_string(number);
        }
        try {
            folders_.rename(path_, aside);
            folders_.syncFolderOf(path_);
        } catch (const Error&) { // another user's, in a folder where only owners rename
            copyTo(aside);
            remove();
        }
        return aside;
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

    void copyTo(const std::string& path) {
        const std::unique_ptr<File> from = openAccepted(), copy = folders_.createCompanion(path, table_);
        if (!from || !copy) {
            throw Error(ErrorCode::AccessDenied, path_, "no se puede apartar");
        }
        try {
            const std::uint64_t size = std::min(from->size(), largestJournal);
            std::vector<char> piece(std::size_t{64} << 10);
            for (std::uint64_t at = 0; at < size; at += piece.size()) {
                piece.resize(static_cast<std::size_t>(std::min<std::uint64_t>(piece.size(), size - at)));
                from->read(at, piece);
                copy->write(at, piece);
            }
            copy->sync();
        } catch (...) {
            folders_.remove(path);
            throw;
        }
    }

    Folders& folders_;
    std::string table_, path_;
};

class AsidePlace final : public JournalPlace {
public:
    explicit AsidePlace(std::string path) : path_(std::move(path)) {}

    std::unique_ptr<File> openExisting() override { return diskFolders().openCompanion(path_); }
    std::unique_ptr<File> create() override { refuse(); }
    void remove() override { refuse(); }
    std::string setAside() override { refuse(); }

private:
    [[noreturn]] void refuse() const { throw Error(ErrorCode::ReadOnly, path_, "sólo se puede leer"); }

    std::string path_;
};

} // namespace

std::string bootIdentity() { return identity(); }
void setBootIdentity(std::string other) { identity() = std::move(other); }

std::vector<std::string> journalsSetAside(const std::string& tableFile, const Folders& folders) {
    const std::size_t slash = tableFile.rfind('/');
    const std::string folder = slash == std::string::npos ? std::string() : tableFile.substr(0, slash + 1);
    const std::string prefix = baseName(tableFile) + journalExtension + asideSuffix;
    std::vector<std::string> paths;
    for (const std::string& name : folders.namesIn(folder.empty() ? "." : folder)) {
        if (name.starts_with(prefix)) {
            paths.push_back(folder + name);
        }
    }
    std::ranges::sort(paths);
    return paths;
}

std::unique_ptr<JournalPlace> journalSetAside(const std::string& path) {
    return std::make_unique<AsidePlace>(path);
}

std::unique_ptr<JournalPlace> journalBeside(const std::string& tableFile, Folders& folders) {
    return std::make_unique<FolderPlace>(tableFile, folders);
}

} // namespace dbase
