// usage: invented_report FILE [ROWS [NAME]]    writes the report on a validation of the file NAME that never
// was: every verdict and every province, and customers whose names are meant to break the page.
#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "address/ValidatedRow.h"
#include "address/ValidationReport.h"
#include "dbase/dbf/codepage.h"
#include "report/ProvinceNames.h"

namespace {

using namespace ambrel;
using report_tests::provinceNames;

constexpr std::array streets = {
    "ALCALÁ",           "MAYOR",        "GRAN VÍA",  "DEL DOCTOR FEDERICO RUBIO Y GALÍ",
    "PEÑÓN DE LA MATA", "CONSTITUCIÓN", "SAN ROQUE", "REAL",
    "JUAN DE LA CIERVA"};
constexpr std::array misspelt = {
    "ALCLÁ",       "MALLOR",   "GRANVIA", "DR. FEDERICO RUBIO", "PENON DE LA MATA",
    "CONSTITUCON", "S. ROQUE", "RAEL",    "JUAN DE LA CIERBA"};
constexpr std::array towns = {"MADRID", "GETAFE", "SAN SEBASTIÁN DE LOS REYES", "ALCALÁ DE HENARES",
                              "VILLAR DEL POZO"};
constexpr std::array types = {"CL", "AV", "PZ", "CM", "PS"};

const std::array hostile = {
    std::string("<script>alert(1)</script> & Hijos"),
    std::string("</td></table><h1>Fin</h1>"),
    std::string("\"><img src=x onerror=alert(1)>"),
    std::string("CL MAYOR\r\n5\x01\x1B[31m\x81\x8D"),
    std::string(400, 'W'),
    std::string("https://example.org/") + std::string(90, 'x') + "?a=1&amp;b=2",
};

std::string latin(std::string_view utf8) { return dbase::CodePage::windows1252().fromUtf8(utf8).value(); }

class Invention {
public:
    void run(ValidationReport& report, std::uint64_t rows) {
        for (std::uint64_t row = 1; row <= rows; ++row) {
            invent(row);
            report.add({row, row + 1, given_, judged_});
        }
    }

private:
    std::size_t any(std::size_t count) { return random_() % count; }

    void invent(std::uint64_t row) {
        // Out of a thousand; in the order of the verdicts.
        static constexpr std::array shares = {2, 5, 14, 11, 37, 28, 19, 9, 22, 121, 243, 489};
        std::size_t lot = any(1000), verdict = 0;
        while (lot >= static_cast<std::size_t>(shares.at(verdict))) {
            lot -= static_cast<std::size_t>(shares.at(verdict++));
        }
        const std::size_t street = any(streets.size()), province = any(any(provinceNames.size()) + 1);
        judged_ = {};
        judged_.verdict = static_cast<Verdict>(verdict);
        judged_.confidence = isSettled(judged_.verdict) ? 0.97 : 0.4 + static_cast<double>(any(50)) / 100;
        const std::string code = std::to_string(province + 1);
        judged_.province = code.size() == 1 ? "0" + code : code;
        judged_.municipality = latin(towns.at(any(towns.size())));
        judged_.type = types.at(any(types.size()));
        judged_.street = latin(streets.at(street));
        judged_.number = std::to_string(1 + any(200));
        judged_.rest = any(3) == 0 ? latin("3º B") : "";
        judged_.postalCode = judged_.province + "0" + std::to_string(10 + any(90));
        given_ = {.type = "C/",
                  .street = latin(misspelt.at(street)),
                  .number = judged_.number,
                  .rest = judged_.rest,
                  .municipality = judged_.municipality,
                  .province = judged_.province};
        detail(row, street);
    }

    void detail(std::uint64_t row, std::size_t street) {
        switch (judged_.verdict) {
        case Verdict::BrokenRow:
            given_ = {};
            judged_.province.clear();
            judged_.reason = latin("línea " + std::to_string(row + 1) + ": unas comillas que no se cierran");
            break;
        case Verdict::Empty:
            given_ = {};
            judged_.province.clear();
            break;
        case Verdict::UnknownMunicipality:
            given_.municipality = judged_.municipality = latin("VILLANADA DE ARRIBA");
            judged_.province.clear();
            judged_.postalCode.clear();
            break;
        case Verdict::OtherCode:
            given_.postalCode = "28001";
            judged_.changes = {{JudgedPart::PostalCode, "28001", judged_.postalCode}};
            break;
        case Verdict::Corrected:
            judged_.changes = {{JudgedPart::Street, latin(misspelt.at(street)), latin(streets.at(street))}};
            break;
        case Verdict::Completed:
            judged_.changes = {
                {any(3) == 0 ? JudgedPart::Municipality : JudgedPart::PostalCode, "", judged_.postalCode}};
            break;
        default:
            break;
        }
        if (judged_.verdict == Verdict::Ambiguous || judged_.verdict == Verdict::Doubtful ||
            judged_.verdict == Verdict::UnknownStreet) {
            offerAlternatives();
        }
        if (!isSettled(judged_.verdict) && judged_.verdict != Verdict::BrokenRow && any(12) == 0) {
            given_ = {.line = hostile.at(any(hostile.size()))};
            judged_.street = given_.line;
        }
    }

    void offerAlternatives() {
        for (std::size_t i = any(3) + 1; i > 0; --i) {
            judged_.alternatives.push_back(
                {.points = 0.8,
                 .municipality = judged_.municipality,
                 .province = judged_.province,
                 .type = "CL",
                 .street = latin(streets.at(any(streets.size()))),
                 .postalCodes = {judged_.province + "001", judged_.province + "002"}});
        }
    }

    std::mt19937 random_{20250101};
    GivenAddress given_;
    JudgedAddress judged_;
};

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs("usage: invented_report FILE [ROWS [NAME]]\n", stderr);
        return 2;
    }
    try {
        ambrel::ValidationReport report(
            {.input = argc > 3 ? argv[3] : "clientes & <socios> 2026.csv",
             .tables = "/srv/ambrel/postales",
             .provinceName =
                 [](const std::string& code) {
                     const auto number = static_cast<std::size_t>(std::stoul(code));
                     return number <= provinceNames.size() ? latin(provinceNames.at(number - 1)) : "";
                 },
             .begun = 1'790'000'000});
        Invention().run(report, argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 5000);
        report.write(argv[1]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "invented_report: %s\n", error.what());
        return 1;
    }
    return 0;
}
