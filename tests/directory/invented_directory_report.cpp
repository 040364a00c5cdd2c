// usage: invented_directory_report FILE [TABLES]    writes the report on an edition that never was, in the
// folder TABLES: every province, every kind of change and conflict, and names that are meant to break the
// page.
#include <array>
#include <cstdio>
#include <exception>
#include <string>

#include "directory/DirectoryReport.h"
#include "loading/ansi_text.h"
#include "report/ProvinceNames.h"

namespace {

using namespace ambrel::directory;

std::string latin(const std::string& utf8) { return loading::ansiFromUtf8(utf8).value(); }

const std::array<std::string, 5> names = {"PEÑÓN DE LA MATA", "DEL DOCTOR FEDERICO RUBIO Y GALÍ",
                                          "<script>alert(1)</script> & Hijos", std::string(45, 'W'),
                                          "SUPERCALIFRAGILÍSTICAYDEUNASOLAPALABRA"};

class Invention {
public:
    explicit Invention(const std::string& tables) {
        report_.run().tables = tables;
        report_.run().isTrial = true;
        report_.run().provinceName = [](const std::string& code) {
            return latin(report_tests::provinceNames.at(std::stoul(code) - 1));
        };
        summary_.previousEdition = "2025-06-30";
        notes_.badLines = {"TRAM.D251231.G260105: línea 200: no empieza por una provincia y un municipio\n"
                           "TRAM.D251231.G260105: línea 4711: el código postal no lo es"};
        notes_.otherDates = {"el fichero VIAS.D250630.G250702 es de la edición de 2025-06-30, y los tramos "
                             "son de la de 2025-12-31"};
        summary_.isOlder = true;
        summary_.unlikelyLosses =
            "POSTAL, provincia 26: se irían 4000 filas de las 9000 que trajo una edición\n"
            "MUNICIPI: se irían 812 filas de las 2000 que trajo una edición\n";
        notes_.ofPseudoStreets = 102830;
        summary_.unknownTypes = {{"QQQQQ", 700}, {latin("AÑ<&>"), 3}};
        summary_.shortenedNames = 1234;
    }

    void run(const std::string& file) {
        for (unsigned province = 1; province <= 52; ++province) {
            for (PlaceCode number = 1; number <= 3; ++number) {
                inventMunicipality(province * 1000 + number);
            }
        }
        summary_.streetRows = 1'400'000;
        summary_.openedRows = 1'000'000;
        summary_.kept = 1729;
        report_.write(file, summary_, notes_);
    }

private:
    void inventMunicipality(PlaceCode place) {
        const std::string town = latin("VILLANADA DE ARRIBA Y DEL PEÑÓN");
        MunicipalitySummary& counts = summary_.byMunicipality[place];
        counts = {
            .name = town, .comes = place % 97, .goes = place % 7, .changes = place % 31, .conflicts = 4};
        const std::string name = latin(names.at(place % names.size()));
        DirectoryChange change{.place = place,
                               .municipality = town,
                               .key = place * 1000,
                               .typeBefore = "CL",
                               .nameBefore = "ALTA",
                               .codeBefore = "28001",
                               .boundsBefore = {1, 99, 2, 98},
                               .type = "AV",
                               .name = name,
                               .code = "28002",
                               .bounds = {1, 9999, 0, 0}};
        for (const ChangeKind kind : {ChangeKind::Comes, ChangeKind::Goes, ChangeKind::Changes}) {
            change.kind = kind;
            change.isRenamed = change.hasOtherCode = change.hasOtherRange = kind == ChangeKind::Changes;
            report_.add(change);
        }
        change.key = 0; // a row of MUNICIPI
        report_.add(change);
        ++summary_.municipalities.changes;
        for (std::size_t kind = 0; kind < DirectoryReport::conflictKinds; ++kind) {
            report_.add(DirectoryConflict{.kind = static_cast<ConflictKind>(kind),
                                          .place = place,
                                          .municipality = town,
                                          .key = 99'000'000 + place,
                                          .name = name,
                                          .ours = kind == 1 ? std::string_view() : name,
                                          .official = "ALTA, 28001"});
            ++summary_.conflicts;
        }
        summary_.streets.comes += counts.comes;
        summary_.streets.goes += counts.goes;
        summary_.streets.changes += counts.changes;
        summary_.renamed = summary_.otherCode = summary_.otherRange = summary_.streets.changes / 3;
    }

    DirectoryReport report_{{.tables = {},
                             .files = {"caj_esp_012026.zip", "municipios.csv"},
                             .edition = "2025-12-31",
                             .begun = 1'790'000'000}};
    LoadSummary summary_;
    EditionNotes notes_;
};

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs("usage: invented_directory_report FILE [TABLES]\n", stderr);
        return 2;
    }
    try {
        Invention(argc > 2 ? argv[2] : "/srv/datos/empresa <1>").run(argv[1]);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "invented_directory_report: %s\n", error.what());
        return 1;
    }
}
