// Generates the small and the large directory.
#include "directory_folder.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>

#include "data/TableDefinitions.h"
#include "dbase/dbf/codec.h"
#include "dbase/system/databases.h"

#include "our_postal.h"
#include "table_filling.h"

namespace bench {

namespace {

std::string printed(const char* format, unsigned first, unsigned second = 0) {
    char text[64];
    std::snprintf(text, sizeof text, format, first, second);
    return text;
}

void makeProvinces(const std::string& folder) {
    makeTable(folder, ambrel::provinceTable(), [](dbase::BulkLoader& loader, std::span<char> record) {
        const Columns columns(loader.schema(), record);
        for (unsigned province = 1; province <= provinceCount; ++province) {
            columns.set("PROVINCIA", provinceName(province));
            columns.set("CODIGO", printed("%03u", province));
            static_cast<void>(dbase::encodeInteger(columns.raw("GRUPO"), 1));
            loader.add(record);
        }
    });
}

void makeMunicipalities(const std::string& folder) {
    makeTable(folder, ambrel::municipalityTable(), [](dbase::BulkLoader& loader, std::span<char> record) {
        const Columns columns(loader.schema(), record);
        for (unsigned number = 0; number < provinceCount * codesOfProvince; ++number) {
            const MunicipalityRow row = municipalityRow(number);
            columns.set("COD_INE", row.ineCode);
            columns.set("COD_PROV", row.ineCode.substr(0, 2));
            columns.set("CODPOSTAL", row.postalCode);
            columns.set("NOMBRE", row.name);
            columns.set("UNICO", "N");
            columns.set("CAPITAL", row.isCapital ? "0" : "1");
            dbase::encodeLogical(columns.raw("ENT_MENOR"), false);
            loader.add(record);
        }
    });
}

constexpr std::size_t smallDirectory = 1'000; // streets

// Numbers of the rows in the small directory.
const std::vector<std::uint32_t>& smallRows() {
    static const std::vector<std::uint32_t> numbers = [] {
        std::vector<std::uint32_t> found;
        for (std::uint32_t number = 0; found.size() < smallDirectory && number < rowCount; ++number) {
            if (std::stoul(postalRow(number).provincia) == shownProvince) {
                found.push_back(number);
            }
        }
        return found;
    }();
    return numbers;
}

void makeStreets(const std::string& folder, Directory directory) {
    makeTable(folder, ambrel::streetTable(), [&](dbase::BulkLoader& loader, std::span<char> record) {
        const auto add = [&](std::uint32_t number) {
            encodeRow(postalRow(number), loader.schema(), record);
            loader.add(record);
        };
        if (directory == Directory::Small) {
            std::ranges::for_each(smallRows(), add);
            return;
        }
        for (std::uint32_t number = 0; number < rowCount; ++number) {
            add(number);
        }
    });
}

} // namespace

MunicipalityRow municipalityRow(unsigned number) {
    const unsigned province = 1 + number / codesOfProvince, code = number % codesOfProvince;
    return {.ineCode = printed("%02u%03u", province, (code * 7 + 3) % codesOfProvince),
            .postalCode = printed("%02u%03u", province, code),
            .name = printed("VILLA %u DE LA PROVINCIA %u", code, province),
            .isCapital = code == 1};
}

std::string provinceName(unsigned province) { return printed("PROVINCIA %02u", province); }

const std::vector<std::string>& smallDirectoryNames() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> found;
        for (const std::uint32_t number : smallRows()) {
            found.push_back(postalRow(number).via);
        }
        return found;
    }();
    return names;
}

const std::string& directoryFolder(Directory directory) {
    static std::map<Directory, std::string> made;
    const char* const name = directory == Directory::Small ? "/vias-1k" : "/vias-1m5";
    const auto [found, isNew] = made.try_emplace(directory, workFolder + name);
    if (isNew) {
        std::filesystem::create_directories(found->second);
        makeProvinces(found->second);
        makeMunicipalities(found->second);
        makeStreets(found->second, directory);
    }
    return found->second;
}

DirectoryInUse::DirectoryInUse(Directory directory) {
    dbase::setDatabaseFolder("DB", directoryFolder(directory));
}

DirectoryInUse::~DirectoryInUse() { dbase::setDatabaseFolder("DB", ourFolder()); }

} // namespace bench
