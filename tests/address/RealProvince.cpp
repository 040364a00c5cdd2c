// Loads one real province into the tables.
#include "address/RealProvince.h"

#include <cstdlib>

#include "dbase/dbf/codepage.h"
#include "services/Rnumcad.h"
#include "support/Tables.h"
#include "tools/callejero/CsvRows.h"

namespace postal_tests {
namespace {

namespace fs = std::filesystem;
using ambrel::test::ansi;
using callejero::CsvRow;

constexpr std::size_t streetNameWidth = 45;
constexpr const char* province = "26";
constexpr const char* capital = "26089";

std::vector<CsvRow> rowsOf(const fs::path& file) {
    return callejero::csvRows(loading::fileSource(file.string()), file.filename().string());
}

std::string capitals(const std::string& utf8) {
    return dbase::CodePage::windows1252().toUtf8(UpperCase(ansi(utf8)));
}

} // namespace

void RealProvince::SetUp() {
    const char* const given = std::getenv("AMBREL_REAL_DATA");
    if (!given || !fs::is_directory(given)) {
        GTEST_SKIP() << "wants AMBREL_REAL_DATA, a folder with a real province's data";
    }
    folder_ = given;
    readMunicipalities();
    readStreets();
}

void RealProvince::load(bool withIneCodes) {
    std::vector<StreetRow> rows = streets_;
    for (std::size_t i = 0; withIneCodes && i < rows.size(); ++i) {
        rows[i].ineCode = owners_[i];
    }
    addMunicipalities(municipalities_);
    addStreets(rows);
    for (const auto& [name, code] : types_) {
        addStreetTypes({{code, code}});
    }
}

std::vector<KnownAddress> RealProvince::addresses() const {
    return addressesOf(streets_, owners_, municipalities_);
}

/// Reads one row per postal code, followed by those of entities with codes of their own.
void RealProvince::readMunicipalities() {
    std::map<std::string, int> codes;
    const std::vector<CsvRow> all = rowsOf(folder_ / "codigos_postales.csv");
    for (const CsvRow& row : all) {
        ++codes[row.at("cod_ine")];
    }
    for (const CsvRow& row : all) {
        if (row.at("cod_ine").starts_with(province)) {
            municipalities_.push_back({row.at("cod_ine"), row.at("codpostal"), capitals(row.at("nombre")),
                                       codes[row.at("cod_ine")] == 1 ? "S" : "N",
                                       row.at("cod_ine") == capital ? "0" : "9"});
        }
    }
    for (const CsvRow& row : rowsOf(folder_ / "entidades.csv")) {
        if (row.at("cod_ine").starts_with(province)) {
            municipalities_.push_back({row.at("cod_ine"), row.at("codpostal"),
                                       capitals(row.at("entidad_singular")), "N", "9", true});
        }
    }
}

void RealProvince::readStreets() {
    const auto number = [](const std::string& text) { return text.empty() ? 0 : Cad_Int(text); };
    for (const CsvRow& row : rowsOf(folder_ / "callejero/tramos_rioja.csv")) {
        const std::string next = std::to_string(10 + types_.size());
        const std::string type = types_.try_emplace(row.at("tipo"), next).first->second;
        const std::string name = ansi(capitals(row.at("nombre"))).substr(0, streetNameWidth);
        streets_.push_back({.codigo1 = Int_Cad(26000000 + static_cast<int>(streets_.size())),
                            .via = dbase::CodePage::windows1252().toUtf8(name),
                            .tipo = type,
                            .codPostal = row.at("codpostal"),
                            .odd = {number(row.at("impar_ini")), number(row.at("impar_fin"))},
                            .even = {number(row.at("par_ini")), number(row.at("par_fin"))},
                            .provincia = province,
                            .capital = "9"});
        owners_.push_back(row.at("cod_ine"));
    }
}

} // namespace postal_tests
