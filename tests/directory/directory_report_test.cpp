// The page that the load of an edition leaves.
#include "directory/DirectoryPage.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "support/Tables.h"
#include "support/TemporaryFolder.h"

namespace ambrel::directory {
namespace {

class DirectoryReportTest : public testing::Test {
protected:
    [[nodiscard]] std::string page() const { return directoryPage(report, summary, notes); }
    [[nodiscard]] bool holds(std::string_view part) const { return page().find(part) != std::string::npos; }

    void comes(PlaceCode place, const std::string& name) {
        report.add(DirectoryChange{.kind = ChangeKind::Comes,
                                   .place = place,
                                   .municipality = "MADRID",
                                   .key = 28000001,
                                   .type = "CL",
                                   .name = name,
                                   .code = "28009",
                                   .bounds = {1, 9999, 2, 9998}});
        ++summary.streets.comes;
        ++summary.byMunicipality[place].comes;
    }
    void changes(DirectoryChange change) {
        change.kind = ChangeKind::Changes;
        change.key = 28000002;
        change.municipality = "MADRID";
        report.add(change);
        ++summary.streets.changes;
        ++summary.byMunicipality[28079].changes;
        summary.renamed += change.isRenamed ? 1 : 0;
        summary.otherCode += change.hasOtherCode ? 1 : 0;
        summary.otherRange += change.hasOtherRange ? 1 : 0;
    }
    void conflicts(ConflictKind kind, const std::string& ours) {
        report.add(DirectoryConflict{.kind = kind,
                                     .place = 28079,
                                     .municipality = "MADRID",
                                     .key = 99000001,
                                     .name = "MAYOR",
                                     .ours = ours,
                                     .official = "MAYOR, 28013"});
        ++summary.conflicts;
        ++summary.byMunicipality[28079].conflicts;
    }

    TemporaryFolder folder;
    DirectoryReport report{{.tables = "/datos/<1>",
                            .files = {"caj_esp_012026.zip"},
                            .edition = "2025-12-31",
                            .provinceName = [](const std::string& code) {
                                return code == "05" ? test::ansi("ÁVILA") : std::string();
                            }}};
    LoadSummary summary;
    EditionNotes notes;
};

TEST_F(DirectoryReportTest, NamesTheSourceAndItsLicenceAndWhatWasLoaded) {
    comes(28079, "MAYOR");
    summary.previousEdition = "2025-06-30";
    EXPECT_TRUE(holds("Fuente: Instituto Nacional de Estadística"));
    EXPECT_TRUE(holds("CC BY 4.0"));
    EXPECT_TRUE(holds("edición de 2025-12-31"));
    EXPECT_TRUE(holds("2025-06-30"));
    EXPECT_TRUE(holds("caj_esp_012026.zip"));
    EXPECT_TRUE(holds("/datos/&lt;1&gt;"));
    EXPECT_TRUE(holds("extremos abiertos"));
    EXPECT_TRUE(holds("Carga del callejero oficial"));
    EXPECT_FALSE(holds("No se ha cambiado nada"));
}

TEST_F(DirectoryReportTest, ATrialSaysThatNothingWasChanged) {
    report.run().isTrial = true;
    comes(28079, "MAYOR");
    EXPECT_TRUE(holds("Simulación de una carga del callejero"));
    EXPECT_TRUE(holds("No se ha cambiado nada: esto es lo que pasaría."));
}

TEST_F(DirectoryReportTest, HasProvincesAsBarsAndTheirMunicipalities) {
    for (int i = 0; i < 3; ++i) {
        comes(28079, "MAYOR");
    }
    comes(5001, "REAL");
    summary.byMunicipality[5001].name = test::ansi("ADRADA, LA");
    const std::string html = page();
    EXPECT_NE(html.find("ÁVILA"), std::string::npos);
    EXPECT_NE(html.find("Provincia 28"), std::string::npos);
    EXPECT_NE(html.find("75,0\u00a0%"), std::string::npos) << "three of four";
    EXPECT_NE(html.find("width:100.0%"), std::string::npos);
    EXPECT_NE(html.find("width:33.3%"), std::string::npos) << "a third of the longest one";
    EXPECT_NE(html.find("05001"), std::string::npos);
    EXPECT_NE(html.find("ADRADA, LA"), std::string::npos);
}

TEST_F(DirectoryReportTest, ShowsTheHundredMunicipalitiesOfAProvinceInWhichMostHappens) {
    for (PlaceCode place = 9001; place <= 9101; ++place) {
        summary.byMunicipality[place] = {.name = "PUEBLO " + std::to_string(place), .changes = place - 9000};
    }
    EXPECT_TRUE(holds("los 100 primeros de 101"));
    EXPECT_TRUE(holds("PUEBLO 9101<"));
    EXPECT_FALSE(holds("PUEBLO 9001<"));
}

TEST_F(DirectoryReportTest, ShowsARowThatChangesBeforeAndAfterInEachListItBelongsTo) {
    const std::string before = test::ansi("PEÑÓN & CIA");
    changes({.typeBefore = "CL",
             .nameBefore = before,
             .codeBefore = "28001",
             .boundsBefore = {1, 9, 0, 0},
             .type = "AV",
             .name = "NUEVA",
             .code = "28002",
             .bounds = {1, 9, 0, 0},
             .isRenamed = true,
             .hasOtherCode = true});
    EXPECT_TRUE(holds("CL PEÑÓN &amp; CIA, impares 1 a 9, 28001"));
    EXPECT_TRUE(holds("AV NUEVA, impares 1 a 9, 28002"));
    EXPECT_TRUE(holds("Con otro nombre"));
    EXPECT_TRUE(holds("Con otro código postal"));
    EXPECT_FALSE(holds("Con otros números"));
    EXPECT_TRUE(holds("28000002"));
}

TEST_F(DirectoryReportTest, RowsOfMunicipiHaveAListOfTheirOwn) {
    report.add(DirectoryChange{.kind = ChangeKind::Changes,
                               .place = 28079,
                               .municipality = "MADRID",
                               .nameBefore = "EL PARDO",
                               .codeBefore = "28048",
                               .name = "EL PARDO",
                               .code = "28049",
                               .hasOtherCode = true});
    ++summary.municipalities.changes;
    EXPECT_TRUE(holds("Municipios y localidades"));
    EXPECT_TRUE(holds("EL PARDO, 28048"));
    EXPECT_TRUE(holds("EL PARDO, 28049"));
    EXPECT_FALSE(holds("Con otro código postal"));
    EXPECT_FALSE(holds("Sin cambios."));
}

TEST_F(DirectoryReportTest, KeepsTheFirstHundredOfEachKindAndCountsAll) {
    for (int i = 1; i <= 101; ++i) {
        conflicts(ConflictKind::OwnStreet, "fila " + std::to_string(i) + '.');
        comes(28079, "CALLE " + std::to_string(i) + '.');
    }
    conflicts(ConflictKind::DeletedByHand, "");
    const std::string html = page();
    EXPECT_NE(html.find("fila 100."), std::string::npos);
    EXPECT_EQ(html.find("fila 101."), std::string::npos);
    EXPECT_NE(html.find("CALLE 100."), std::string::npos);
    EXPECT_EQ(html.find("CALLE 101."), std::string::npos);
    EXPECT_NE(html.find("las 100 primeras de 101"), std::string::npos);
    EXPECT_NE(html.find("Borradas por alguien"), std::string::npos);
    EXPECT_EQ(html.find("Municipios propios"), std::string::npos);
}

TEST_F(DirectoryReportTest, ListsUnknownTypesBadLinesAndWhatWasLeftOut) {
    comes(28079, "MAYOR");
    summary.unknownTypes = {{"QQQQQ", 7}};
    summary.openedRows = 12;
    notes.badLines = {"TRAM: línea 200: no empieza por <una provincia>\nTRAM: línea 400: otra"};
    notes.withoutMunicipality = 5;
    const std::string html = page();
    EXPECT_NE(html.find("QQQQQ"), std::string::npos);
    EXPECT_NE(html.find("TRAM: línea 200: no empieza por &lt;una provincia&gt;<"), std::string::npos);
    EXPECT_NE(html.find("TRAM: línea 400: otra<"), std::string::npos);
    EXPECT_NE(html.find("Tramos de municipios que ningún fichero nombra"), std::string::npos);
    EXPECT_EQ(html.find("Tramos de seudovías"), std::string::npos);
}

TEST_F(DirectoryReportTest, HasItsWarningsBeforeAllFigures) {
    report.run().warnings = {"TIPO_VIA está vacía"};
    notes.otherDates = {"el fichero VIAS.<1> es de la edición de 2025-06-30, y los tramos son de otra"};
    notes.ofPseudoStreets = 1;
    summary.isOlder = true;
    summary.previousEdition = "2026-06-30";
    summary.unlikelyLosses = "POSTAL, provincia 26: se irían 4 filas\nMUNICIPI: se irían 9 filas\n";
    const std::string html = page(), head = html.substr(0, html.find("Vienen"));
    for (const std::string_view warning :
         {"<strong>Avisos.</strong>", "<li>TIPO_VIA está vacía.</li>",
          "<li>El fichero VIAS.&lt;1&gt; es de la edición de 2025-06-30, y los tramos son de otra.</li>",
          "<li>La edición es anterior a la que ya está cargada, de 2026-06-30.</li>",
          "<li>¿Están enteros los ficheros?\nPOSTAL, provincia 26: se irían 4 filas\n"
          "MUNICIPI: se irían 9 filas.</li>",
          "<li>1 tramo de una seudovía no se carga, porque no se da --seudovias.</li>"}) {
        EXPECT_NE(head.find(warning), std::string::npos) << warning << " in\n" << head;
    }
}

TEST_F(DirectoryReportTest, SaysNothingOfWarningsWhereThereAreNone) {
    comes(28079, "MAYOR");
    EXPECT_FALSE(holds("Aviso"));
}

TEST_F(DirectoryReportTest, SaysWhenTheTablesAreAsTheEditionAlready) {
    summary.streetRows = 10;
    EXPECT_TRUE(holds("Sin cambios."));
    EXPECT_FALSE(holds("Por provincia"));
}

TEST_F(DirectoryReportTest, IsWrittenToAFileThatIsThereWhole) {
    const std::string file = folder / "informe.html";
    DirectoryReport::requireWritable(file);
    report.write(file, summary, notes);
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    EXPECT_EQ(text.str(), page());
    EXPECT_ANY_THROW(DirectoryReport::requireWritable(folder / "no/hay/informe.html"));
}

} // namespace
} // namespace ambrel::directory
