// Writes a new file beside the old one, then renames it.
#include "report/WholeFile.h"

#include <functional>

#include <unistd.h>

#include "dbase/system/error.h"

namespace report {

namespace {

using dbase::Error;
using dbase::ErrorCode;

/// The new file under its temporary name, which never outlives it.
class NewFile {
public:
    NewFile(std::string path, dbase::Folders& folders)
        : folders_(folders), path_(std::move(path)),
          // The process number: another program may be writing the same report.
          temporary_(path_ + '.' + std::to_string(::getpid()) + ".nuevo") {
        const bool exists = folders_.exists(path_);
        if (exists && !folders_.isFile(path_)) {
            throw Error(ErrorCode::Exists, path_, "no es un fichero corriente; elija otro nombre");
        }
        if (exists) {
            folders_.requireReplaceable(path_);
        }
        file_ = exists ? folders_.createTwin(temporary_, path_) : folders_.createCompanion(temporary_, {});
        if (!file_) {
            throw Error(ErrorCode::Exists, path_, "otro programa ha puesto ahí " + temporary_);
        }
    }
    ~NewFile() {
        if (file_) {
            try {
                folders_.remove(temporary_);
            } catch (const Error&) {
                // The error that led here says more.
            }
        }
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    void fill(std::string_view content) {
        file_->write(0, content);
        file_->sync();
        folders_.rename(temporary_, path_);
        file_.reset();
        folders_.syncFolderOf(path_);
    }

private:
    dbase::Folders& folders_;
    std::string path_, temporary_;
    std::unique_ptr<dbase::File> file_;
};

/// Errors name the file that was asked for: its temporary name means nothing to the user.
void namingTheFile(const std::string& path, const std::function<void()>& work) {
    try {
        work();
    } catch (const Error& error) {
        const std::string text = error.what(), place = error.file() + ": ";
        throw Error(error.code(), path, text.starts_with(place) ? text.substr(place.size()) : text);
    }
}

} // namespace

void requireWritable(const std::string& path, dbase::Folders& folders) {
    namingTheFile(path, [&] { const NewFile trial(folders.realPath(path), folders); });
}

void writeWholeFile(const std::string& path, std::string_view content, dbase::Folders& folders) {
    namingTheFile(path, [&] { NewFile(folders.realPath(path), folders).fill(content); });
}

} // namespace report
