// The import dialog's first mode: files of municipalities with several postal codes.
#include <gtest/gtest.h>

#include <QMouseEvent>
#include <QTest>
#include <sys/stat.h>

#include <filesystem>

#include "import/ImportForm.h"

namespace {

using namespace postal_tests;

class ImportFromFiles : public ImportForm {
protected:
    ImportFromFiles() { addStreetTypes({{"CL", "CALLE"}, {"AV", "AVENIDA"}, {"PZ", "PLAZA"}}); }
    void search(const char* key) {
        choose("CBProvincias", key);
        click("BBBuscarViasPorMunicipio");
    }
};

TEST_F(ImportFromFiles, ListsWhateverTheFolderHoldsByTheNameUpToItsFirstDot) {
    file("28-ALPEDRETE.dat", "");
    file("28-B.C.dat", "");
    file("MADRID/X.xml", "");
    file(".oculto", "");
    show();
    EXPECT_EQ(items("CBProvincias"), (Texts{"", "28-ALPEDRETE", "28-B", "MADRID"}));
}

TEST_F(ImportFromFiles, LeavingAnEmptyListSaysThatFilesAreMissing) {
    std::filesystem::create_directories(postales());
    show();
    expectBox("Le faltan los ficheros correspondientes a los CP múltiples.\r"
              "póngase en contacto con nuestro soporte técnico",
              "Faltan datos");
    combo("CBProvincias").setFocus();
    press(Qt::Key_Tab);
    EXPECT_TRUE(service->requests().empty());
}

TEST_F(ImportFromFiles, LinesBecomeRowsWithCodesAndNumbers) {
    file("28-MADRID.dat", "28001:Mayor, calle (IMPARES DEL 1 AL 33)(PARES DEL 2 AL FINAL)\r\n"
                          "28002:Peña, avenida\r\n");
    show();
    progress.clear();
    search("28-MADRID");
    EXPECT_EQ(rows(), (Texts{"CL|Mayor|28001|1|33|2|9998", "AV|Peña|28002||||"}));
    EXPECT_EQ(message(), "Se han encontrado 2 vías");
    EXPECT_EQ((Texts{progress.begin(), progress.begin() + 2}),
              (Texts{"Importando el listado de vías del municipio...", "28-MADRID"}));
}

TEST_F(ImportFromFiles, KeyOfTheFileChoosesTheHostsPlaces) {
    file("28-ALPEDRETE.dat", "28430:Sol\n");
    show();
    search("28-ALPEDRETE");
    EXPECT_EQ(chosen("CBProvinciasAmbrel"), "MADRID");
    EXPECT_EQ(chosen("CBMunicipiosAmbrel"), "ALPEDRETE");
}

TEST_F(ImportFromFiles, UnderscoreInTheKeyIsASlashOfTheName) {
    file("28-ARANJUEZ_REAL SITIO.dat", "28300:Sol\n");
    show();
    search("28-ARANJUEZ_REAL SITIO");
    EXPECT_EQ(chosen("CBMunicipiosAmbrel"), "ARANJUEZ/REAL SITIO");
}

TEST_F(ImportFromFiles, OfTwoProvincesWithTheCodeTheLaterStaysChosen) {
    addProvinces({{"128", "MADRID SUR"}}); // 128 and 028 are different codes
    addProvinces({{"28", "ZONA MADRID"}});
    file("28-ALPEDRETE.dat", "28430:Sol\n");
    show();
    search("28-ALPEDRETE");
    EXPECT_EQ(chosen("CBProvinciasAmbrel"), "ZONA MADRID");
}

TEST_F(ImportFromFiles, KeyWithoutAKnownProvinceChoosesNothing) {
    file("99-LEJOS.dat", "1:Sol\n");
    show();
    search("99-LEJOS");
    EXPECT_EQ(chosen("CBProvinciasAmbrel"), "");
    EXPECT_EQ(rows().size(), 1U);
}

TEST_F(ImportFromFiles, LeadingBlankLinesAreOverwrittenAndLaterOnesStay) {
    file("28-MADRID.dat", "\n\n28001:Sol\n\n28002:Luna\n");
    show();
    search("28-MADRID");
    EXPECT_EQ(rows(), (Texts{"|Sol|28001||||", "||||||", "|Luna|28002||||"}));
    EXPECT_EQ(message(), "Se han encontrado 3 vías");
}

TEST_F(ImportFromFiles, EmptyFileCountsTheEmptyRow) {
    file("28-MADRID.dat", "");
    show();
    search("28-MADRID");
    EXPECT_EQ(rows(), (Texts{"||||||"}));
    EXPECT_EQ(message(), "Se han encontrado 1 vías");
}

TEST_F(ImportFromFiles, SearchNeedsAChosenFile) {
    file("28-MADRID.dat", "");
    show();
    expectBox("Para importar vías de un municipio es necesario indicarlo en el desplegable", "Faltan datos");
    click("BBBuscarViasPorMunicipio");
}

TEST_F(ImportFromFiles, FileThatCannotBeOpenedIsReportedAndTheHostsPlacesAreChosenAllTheSame) {
    file("28-ALPEDRETE.dat", "");
    show();
    std::filesystem::remove(postales("28-ALPEDRETE.dat"));
    expectBox("Se ha producido un error al leer el fichero de códigos postales del municipio",
              "No se puede realizar la importación", true);
    search("28-ALPEDRETE");
    EXPECT_EQ(message(), "");
    EXPECT_EQ(chosen("CBMunicipiosAmbrel"), "ALPEDRETE"); // reading returns true in every case
}

TEST_F(ImportFromFiles, ExtensionInCapitalsIsReadAlike) {
    file("28-MADRID.DAT", "28001:Pe\xF1"
                          "a, calle\n");
    file("28-ALPEDRETE.Dat", "28430:Sol\n");
    show();
    search("28-MADRID");
    EXPECT_EQ(rows(), (Texts{"CL|Peña|28001||||"}));
    EXPECT_EQ(message(), "Se han encontrado 1 vías");
    search("28-ALPEDRETE");
    EXPECT_EQ(rows(), (Texts{"|Sol|28430||||"}));
}

TEST_F(ImportFromFiles, OfFilesThatDifferInTheirExtensionOnlyNoneIsReadSilently) {
    file("28-MADRID.DAT", "28001:Sol\n");
    file("28-MADRID.dat", "28001:Luna\n");
    show();
    expectBox("Hay más de un fichero de ese municipio: 28-MADRID.DAT, 28-MADRID.dat. Deje sólo el bueno en "
              "la carpeta POSTALES",
              "No se puede realizar la importación", true);
    search("28-MADRID");
    EXPECT_EQ(rows(), (Texts{"||||||"}));
    EXPECT_EQ(message(), "");
}

TEST_F(ImportFromFiles, NameOfTheFileIsTakenToTheLetter) {
    file("28-madrid.dat", "28001:Otra\n");
    file("28-MADRID.2.dat", "28001:Otra\n");
    file("28-M.*D?D.dat", "28001:Otra\n");
    file("28-MADRID.DAT", "28001:Sol\n");
    show();
    search("28-MADRID");
    EXPECT_EQ(rows(), (Texts{"|Sol|28001||||"}));
}

TEST_F(ImportFromFiles, FolderCalledLikeAFileCannotBeOpened) {
    std::filesystem::create_directories(postales("28-ALPEDRETE.dat"));
    show();
    expectBox("Se ha producido un error al leer el fichero de códigos postales del municipio",
              "No se puede realizar la importación", true);
    search("28-ALPEDRETE");
}

TEST_F(ImportFromFiles, PipeAndDeviceCalledLikeAFileCannotBeOpened) {
    file("28-ALPEDRETE.dat", "");
    ASSERT_EQ(::mkfifo(postales("28-TUBO.dat").c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/zero", postales("28-SIN FIN.dat"));
    show();
    for (const char* const key : {"28-TUBO", "28-SIN FIN"}) {
        expectBox("Se ha producido un error al leer el fichero de códigos postales del municipio",
                  "No se puede realizar la importación", true);
        search(key);
    }
}

TEST_F(ImportFromFiles, FileTooLargeForAMunicipalityIsReportedAndNoneOfItListed) {
    file("28-ENORME.dat", "28001:Sol\n");
    file("28-MADRID.dat", "28001:Sol\n28002:Luna\n");
    file("28-LINEAS.dat", std::string(300'000, '\n'));
    std::filesystem::resize_file(postales("28-ENORME.dat"), 200 << 20);
    show();
    for (const char* const key : {"28-ENORME", "28-LINEAS"}) {
        search("28-MADRID");
        expectBox("El fichero es demasiado grande para las vías de un municipio",
                  "No se puede realizar la importación", true);
        search(key);
        EXPECT_EQ(rows(), (Texts{"||||||"})) << key;
        EXPECT_EQ(message(), "") << key;
    }
}

TEST_F(ImportFromFiles, FolderThatWentAwayIsReported) {
    file("28-ALPEDRETE.dat", "");
    show();
    std::filesystem::remove_all(postales());
    expectBox("No existe la carpeta con los ficheros de códigos postales",
              "No se puede realizar la importación", true);
    search("28-ALPEDRETE");
}

TEST_F(ImportFromFiles, StreetTypesThatCannotBeReadAreReportedAndNothingStaysOpen) {
    file("28-ALPEDRETE.dat", "28430:Sol, calle\n");
    show();
    std::filesystem::rename(folder / "TIPO_VIA.DBF", folder / "FUERA.DBF");
    std::filesystem::rename(folder / "TIPO_VIA.MDX", folder / "FUERA.MDX");
    choose("CBProvincias", "28-ALPEDRETE");
    leaveUnchecked();
    const auto boxes = ambrel::test::boxesDuring([this] { click("BBBuscarViasPorMunicipio"); });
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_EQ(boxes[0].title.toStdString(), "Atención");
    EXPECT_TRUE(dialog->isVisible());
}

TEST_F(ImportFromFiles, SavingTheRangesOfAFile) {
    file("28-MADRID.dat", "28001:Mayor, calle (IMPARES DEL 1 AL 33)(PARES DEL 2 AL FINAL)\n"
                          "28002:Sol, plaza\n");
    show();
    search("28-MADRID");
    expectBox("Se han importado 2 calles al módulo de Códigos Postales", "Importación finalizada");
    click("BBGuardarPorMunicipio");
    EXPECT_EQ(stored(), (Texts{"CL MAYOR 28001", "PZ SOL 28002"}));
    EXPECT_TRUE(dialog->isVisible()) << "saving does not close it";
}

// --- The list itself.

TEST_F(ImportFromFiles, LastRowIsCurrentAndInView) {
    std::string lines;
    for (int line = 0; line < 200; ++line) {
        lines += "28001:CALLE " + std::to_string(line) + "\n";
    }
    file("28-MADRID.dat", lines);
    show();
    search("28-MADRID");
    auto& grid = control<ambrel::StreetGrid>("SGVias");
    EXPECT_EQ(grid.currentIndex().row(), 199);
    EXPECT_TRUE(grid.viewport()->rect().contains(grid.visualRect(grid.currentIndex()).center()));
    EXPECT_TRUE(grid.selectionModel()->isRowSelected(199));
}

TEST_F(ImportFromFiles, ListsThatFollowOneAnotherStandBelowEachOther) {
    show("RBUno");
    auto& grid = control<ambrel::StreetGrid>("SGVias");
    grid.append({{.type = "CL", .name = "SOL"}, {.type = "AV", .name = "MAYOR"}});
    grid.append({{.type = "PZ", .name = "LUNA"}});
    EXPECT_EQ(rows(), (Texts{"CL|SOL", "AV|MAYOR", "PZ|LUNA"}));
    EXPECT_EQ(grid.currentIndex().row(), 2);
    grid.clearStreets();
    grid.append({{.type = "GL", .name = "OTRA"}});
    EXPECT_EQ(rows(), (Texts{"GL|OTRA"}));
}

TEST_F(ImportFromFiles, RowsCanBeDraggedToAnotherPlace) {
    file("28-MADRID.dat", "1:A\n2:B\n3:C\n4:D\n");
    show();
    search("28-MADRID");
    auto& grid = control<ambrel::StreetGrid>("SGVias");
    const auto place = [&](int row) { return grid.visualRect(grid.model()->index(row, 1)).center(); };
    const auto drag = [&](int from, int to) {
        QTest::mousePress(grid.viewport(), Qt::LeftButton, {}, place(from));
        QMouseEvent move(QEvent::MouseMove, place(to), grid.viewport()->mapToGlobal(place(to)), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(grid.viewport(), &move);
        QTest::mouseRelease(grid.viewport(), Qt::LeftButton, {}, place(to));
    };
    drag(0, 2);
    EXPECT_EQ(rows(), (Texts{"|B|2||||", "|C|3||||", "|A|1||||", "|D|4||||"}));
    EXPECT_EQ(grid.currentIndex().row(), 2);
    drag(3, 0);
    EXPECT_EQ(rows(), (Texts{"|D|4||||", "|B|2||||", "|C|3||||", "|A|1||||"}));
    EXPECT_EQ(grid.streets().front().postalCode, "4") << "what is saved follows";
}

} // namespace
