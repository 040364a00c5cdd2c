// Writes the sample tables and the folder POSTALES.
#include "sample/Sample.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include "dbase/dbf/codepage.h"
#include "dbase/system/system_reason.h"
#include "loading/new_tables.h"
#include "loading/table_loading.h"
#include "sample/SampleData.h"

namespace ambrel {

namespace {

/// A municipality file as programs on other systems write it: Windows-1252, lines ended by CR LF.
std::string asMunicipalityFile(std::string_view utf8) {
    const std::string lines = dbase::CodePage::windows1252().fromUtf8(utf8).value();
    std::string text;
    for (const char c : lines) {
        (text += c == '\n' ? "\r" : "") += c;
    }
    return text;
}

[[noreturn]] void refuse(const std::filesystem::path& path, int number) {
    throw std::runtime_error("no se puede escribir «" + path.string() + "»: " + dbase::systemReason(number));
}

void writePostales(const std::filesystem::path& folder, dbase::IfExists ifExists) {
    for (const SampleFile& file : postalesFiles()) {
        const std::filesystem::path path = folder / file.name;
        std::error_code failure;
        std::filesystem::create_directories(path.parent_path(), failure);
        if (failure) {
            refuse(path.parent_path(), failure.value());
        }
        if (ifExists == dbase::IfExists::Refuse && std::filesystem::exists(path, failure)) {
            continue;
        }
        errno = 0;
        std::ofstream stream(path, std::ios::binary);
        stream << (path.extension() == ".dat" ? asMunicipalityFile(file.text()) : std::string(file.text()));
        stream.close();
        if (!stream) {
            refuse(path, errno);
        }
    }
}

} // namespace

void addSampleRows(const std::string& name, const std::string& tableFile) {
    const std::string csvName = name + ".csv";
    for (const SampleFile& file : tableFiles()) {
        if (file.name == csvName) {
            loading::CsvReader csv(loading::textSource(file.text()), csvName);
            loading::loadCsv(csv, tableFile, dbase::BulkLoader::Mode::Append);
        }
    }
}

void createSample(const std::string& folder, dbase::IfExists ifExists) {
    loading::createPostalTables(folder, ifExists, addSampleRows);
    writePostales(std::filesystem::path(folder) / "POSTALES", ifExists);
}

} // namespace ambrel
