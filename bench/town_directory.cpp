// Loading invented towns.
#include "town_directory.h"

#include <algorithm>
#include <filesystem>

#include "data/TableDefinitions.h"
#include "dbase/dbf/codec.h"
#include "dbase/system/databases.h"
#include "dbase/table/bulk_loader.h"

#include "postal_rows.h"

namespace bench {

namespace {

constexpr std::uint32_t townCount = 12'700;
constexpr std::uint32_t smallRows = 100'000;

class Rows {
public:
    Rows(const std::string& folder, const char* table)
        : loader_(*dbase::findTableFile(folder, table), dbase::BulkLoader::Mode::Append),
          record_(loader_.schema().recordLength, ' ') {}
    void set(const char* column, const std::string& value) { dbase::encodeText(raw(column), value); }
    void set(const char* column, int value) { static_cast<void>(dbase::encodeInteger(raw(column), value)); }
    void add() { loader_.add(record_); }
    void finish() { loader_.finish(); }

private:
    [[nodiscard]] std::span<char> raw(const char* column) {
        const auto& columns = loader_.schema().columns;
        const auto& one = *std::ranges::find(columns, std::string(column), &dbase::Column::name);
        return std::span<char>(record_).subspan(one.offset, one.width);
    }

    dbase::BulkLoader loader_;
    std::string record_;
};

} // namespace

TownDirectory::TownDirectory(std::string name, std::uint32_t rows, std::uint32_t count)
    : database(std::move(name)), towns(suggestTowns(rows, count)) {
    const std::string folder = workFolder + "/" + database;
    std::filesystem::create_directories(folder);
    for (const dbase::TableDefinition& table : ambrel::tableDefinitions()) {
        dbase::createTable(folder, table);
    }
    loadTowns(folder);
    loadStreets(folder);
    dbase::setDatabaseFolder(database, folder);
}

const TownDirectory& TownDirectory::large() {
    static const TownDirectory made("towns-large", rowCount, townCount);
    return made;
}

const TownDirectory& TownDirectory::small() {
    static const TownDirectory made("towns-small", std::min(smallRows, rowCount), townCount / 15);
    return made;
}

const SuggestTown& TownDirectory::largest() const {
    return *std::ranges::find(towns, std::string(largestTown), &SuggestTown::ineCode);
}

void TownDirectory::loadTowns(const std::string& folder) const {
    Rows rows(folder, "MUNICIPI");
    for (const SuggestTown& town : towns) {
        for (const std::string& code : town.postalCodes) {
            rows.set("COD_INE", town.ineCode);
            rows.set("CODPOSTAL", code);
            rows.set("NOMBRE", town.name);
            rows.set("COD_PROV", town.ineCode.substr(0, 2));
            rows.set("ENT_MENOR", "F");
            rows.add();
        }
    }
    rows.finish();
}

void TownDirectory::loadStreets(const std::string& folder) const {
    Rows rows(folder, "POSTAL");
    rows.set("IMPAR_INI", 1);
    rows.set("IMPAR_FIN", 9999);
    rows.set("PAR_INI", 2);
    rows.set("PAR_FIN", 9998);
    std::uint32_t key = 10'000'000;
    for (const SuggestTown& town : towns) {
        for (const SuggestStreet& street : town.streets) {
            rows.set("CODIGO1", std::to_string(key++));
            rows.set("PROVINCIA", town.ineCode.substr(0, 2));
            rows.set("TIPO_VIA", street.type);
            rows.set("VIA", street.name);
            rows.set("CODPOSTAL", street.postalCode);
            rows.set("COD_INE", town.ineCode);
            rows.add();
        }
    }
    rows.finish();
}

} // namespace bench
