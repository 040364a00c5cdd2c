// Finds and writes files in the folder POSTALES.
#include "import/ResponseFolder.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStandardPaths>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "import/Document.h"
#include "services/Confamb.h"
#include "services/Rficheros.h"

namespace ambrel {
namespace {

namespace fs = std::filesystem;

constexpr char separator = '\\';
constexpr const char* scratchName = "TempCalles.XML";

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
}

/// The service's names are not paths: a name that would lead elsewhere is refused.
bool staysInside(const std::string& name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of(std::string_view("/\\\0", 3)) == std::string::npos;
}

bool makeFolder(const std::string& path) {
    std::error_code failure;
    fs::create_directory(path, failure);
    return fs::is_directory(path, failure);
}

} // namespace

std::string postalesFolder(const std::string& database) {
    return nativePath(SlashSep(Config.DatabasePath(database), "POSTALES", separator));
}

std::vector<std::string> municipalityFiles(const std::string& database, const std::string& key) {
    std::vector<std::string> files;
    FindFileNoRecursivo(SlashSep(postalesFolder(database), "*.dat", separator), file_attribute::any, files);
    std::erase_if(files, [&key](const std::string& path) { return fs::path(path).stem().string() != key; });
    return files;
}

std::string filedName(const std::string& municipality) {
    std::string name = municipality;
    replaceAll(name, "/", "()");
    replaceAll(name, "\\", ")(");
    return name;
}

std::string municipalityOfFile(const std::string& path) {
    const std::string file = fs::path(path).filename().string();
    std::string name = file.substr(0, file.find('.'));
    replaceAll(name, "()", "/");
    replaceAll(name, ")(", "\\");
    return name;
}

std::string provinceFolder(const std::string& database, const std::string& province) {
    return staysInside(province) ? (fs::path(postalesFolder(database)) / province).string() : std::string();
}

bool fileAnswer(const DirectoryDocument& answer, const std::string& database, const std::string& province,
                const std::string& municipality) {
    const std::string name = filedName(municipality);
    const std::string folder = provinceFolder(database, province);
    if (folder.empty() || !staysInside(name + ".xml") || !makeFolder(postalesFolder(database)) ||
        !makeFolder(folder)) {
        return false;
    }
    const fs::path file = fs::path(folder) / (name + ".xml");
    std::error_code failure;
    fs::remove(file, failure);
    if (fs::exists(fs::symlink_status(file, failure))) {
        return false;
    }
    try {
        answer.save(file.string());
    } catch (const std::exception& failed) {
        throw FilingError(failed.what());
    }
    return true;
}

std::string scratchFile() {
    QString folder = QCoreApplication::applicationDirPath();
    if (!QFileInfo(folder).isWritable()) {
        folder = QStandardPaths::writableLocation(QStandardPaths::CacheLocation);
    }
    return (folder + QLatin1Char('/') + QLatin1String(scratchName)).toStdString();
}

} // namespace ambrel
