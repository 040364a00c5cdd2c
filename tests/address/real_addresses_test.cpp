// The addresses of one real province in the tables of all its municipalities. The data are no part of the
// project: a folder that has them is named by the environment variable AMBREL_DATOS, and without it these
// tests skip themselves.
#include <cstdlib>
#include <filesystem>
#include <map>

#include "AddressTrial.h"
#include "dbase/codepage.h"
#include "services/Rnumcad.h"
#include "support/Tables.h"
#include "tools/callejero/CsvRows.h"

namespace {

namespace fs = std::filesystem;
using ambrel::test::ansi;
using callejero::CsvRow;
using namespace postal_tests;

constexpr std::size_t streetNameWidth = 45;

class RealAddresses : public PostalTables {
protected:
    void SetUp() override {
        const char* const given = std::getenv("AMBREL_DATOS");
        if (!given || !fs::is_directory(given))
            GTEST_SKIP() << "AMBREL_DATOS names no folder";
        folder_ = given;
        readMunicipalities();
        readStreets();
    }

    /// Fills POSTAL, with or without the column that the INE pass fills.
    void loadStreets(bool withIneCodes) {
        std::vector<StreetRow> rows = streets_;
        for (std::size_t i = 0; withIneCodes && i < rows.size(); ++i)
            rows[i].ineCode = owners_[i];
        addMunicipalities(municipalities_);
        addStreets(rows);
    }

    [[nodiscard]] std::vector<KnownAddress> addresses() const {
        return addressesOf(streets_, owners_, municipalities_);
    }

private:
    [[nodiscard]] std::vector<CsvRow> rows(const fs::path& file) const {
        return callejero::csvRows(ambcp::fileSource((folder_ / file).string()), file.string());
    }

    static std::string capitals(const std::string& utf8) {
        return dbase::CodePage::windows1252().toUtf8(UpperCase(ansi(utf8)));
    }

    /// One row a postal code, and behind them those of entities with codes of their own.
    void readMunicipalities() {
        std::map<std::string, int> codes;
        const std::vector<CsvRow> all = rows("codigos_postales.csv");
        for (const CsvRow& row : all)
            ++codes[row.at("cod_ine")];
        for (const CsvRow& row : all)
            if (row.at("cod_ine").starts_with(province))
                municipalities_.push_back({row.at("cod_ine"), row.at("codpostal"), capitals(row.at("nombre")),
                                           codes[row.at("cod_ine")] == 1 ? "S" : "N",
                                           row.at("cod_ine") == capital ? "0" : "9"});
        for (const CsvRow& row : rows("entidades.csv"))
            if (row.at("cod_ine").starts_with(province))
                municipalities_.push_back({row.at("cod_ine"), row.at("codpostal"),
                                           capitals(row.at("entidad_singular")), "N", "9", true});
    }

    void readStreets() {
        std::map<std::string, std::string> types; // any two characters do
        const auto number = [](const std::string& text) { return text.empty() ? 0 : Cad_Int(text); };
        for (const CsvRow& row : rows("callejero/tramos_rioja.csv")) {
            const std::string next = std::to_string(10 + types.size());
            const std::string type = types.try_emplace(row.at("tipo"), next).first->second;
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

    static constexpr const char* province = "26";
    static constexpr const char* capital = "26089";

    fs::path folder_;
    std::vector<MunicipalityRow> municipalities_;
    std::vector<StreetRow> streets_;
    std::vector<std::string> owners_; // INE code of each street
};

void expectRight(const Tally& tally) {
    EXPECT_GE(tally.exact, 19000);
    EXPECT_GE(tally.foundShare(), 0.99) << tally.found << " of " << tally.exact;
    for (const std::string& wrong : tally.wrong)
        ADD_FAILURE() << wrong;
}

TEST_F(RealAddresses, AreFoundInTheTablesOfAWholeProvince) {
    loadStreets(false);
    expectRight(tryAddresses(addresses()));
}

TEST_F(RealAddresses, AreFoundWhereEveryRowNamesItsMunicipality) {
    loadStreets(true);
    expectRight(tryAddresses(addresses()));
}

} // namespace
