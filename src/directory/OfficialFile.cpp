// Opens official files through libzip where they are packed.
#include "directory/OfficialFile.h"

#include <filesystem>
#include <memory>
#include <span>
#include <string_view>

#include <zip.h>

#include "directory/Layout.h"

namespace ambrel::directory {
namespace {

namespace fs = std::filesystem;

using loading::Failure;

[[noreturn]] void failOnZip(const std::string& name, const std::string& reason) {
    throw Failure(name + ": no se puede leer el ZIP: " + reason);
}

std::string reasonOf(int code) {
    zip_error_t error;
    zip_error_init_with_code(&error, code);
    std::string text = zip_error_strerror(&error);
    zip_error_fini(&error);
    return text;
}

using Archive = std::shared_ptr<zip_t>;

Archive openArchive(const std::string& path) {
    int code = 0;
    zip_t* const opened = zip_open(path.c_str(), ZIP_RDONLY, &code);
    if (opened == nullptr) {
        failOnZip(path, reasonOf(code));
    }
    return {opened, zip_discard};
}

/// Source over an entry, whose check sum is compared at its end.
loading::TextSource entrySource(const std::string& path, zip_uint64_t index, const std::string& name) {
    const Archive archive = openArchive(path);
    zip_file_t* const opened = zip_fopen_index(archive.get(), index, 0);
    if (opened == nullptr) {
        failOnZip(name, zip_strerror(archive.get()));
    }
    const std::shared_ptr<zip_file_t> entry(opened, zip_fclose);
    return [archive, entry, name](std::span<char> room) {
        const zip_int64_t got = zip_fread(entry.get(), room.data(), room.size());
        if (got < 0) {
            failOnZip(name, zip_file_strerror(entry.get()));
        }
        return static_cast<std::size_t>(got);
    };
}

bool isZip(const std::string& path) {
    std::string head(4, '\0');
    const loading::TextSource source = loading::fileSource(path);
    const std::size_t size = source(head);
    const std::string_view read = std::string_view(head).substr(0, size);
    return read == "PK\3\4" || read == "PK\5\6"; // the second begins an empty one
}

std::vector<OfficialFile> filesInZip(const std::string& path) {
    const Archive archive = openArchive(path);
    std::vector<OfficialFile> files;
    const zip_int64_t count = zip_get_num_entries(archive.get(), 0);
    for (zip_uint64_t index = 0; index < static_cast<zip_uint64_t>(count); ++index) {
        zip_stat_t entry;
        if (zip_stat_index(archive.get(), index, 0, &entry) != 0) {
            failOnZip(path, zip_strerror(archive.get()));
        }
        const std::string_view inside = entry.name;
        if (inside.ends_with('/')) {
            continue; // a folder
        }
        const std::string name = path + ": " + std::string(inside);
        std::string edition = editionOfName(inside);
        if (edition.empty()) {
            edition = editionOfName(fs::path(path).filename().string());
        }
        files.push_back({.name = name,
                         .baseName = fs::path(inside).filename().string(),
                         .edition = edition,
                         .size = entry.size,
                         .open = [path, index, name] { return entrySource(path, index, name); }});
    }
    if (files.empty()) {
        failOnZip(path, "está vacío");
    }
    return files;
}

} // namespace

std::vector<OfficialFile> officialFiles(const std::string& path) {
    std::error_code problem;
    if (fs::is_directory(path, problem)) {
        throw Failure("«" + path + "» es una carpeta, no un fichero");
    }
    if (isZip(path)) {
        return filesInZip(path);
    }
    const std::string baseName = fs::path(path).filename().string();
    const std::uintmax_t size = fs::file_size(path, problem);
    return {{.name = path,
             .baseName = baseName,
             .edition = editionOfName(baseName),
             .size = problem ? 0 : size,
             .open = [path] { return loading::fileSource(path); },
             .path = path}};
}

} // namespace ambrel::directory
