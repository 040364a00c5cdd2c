// The import dialog: saving whole provinces from the answers filed before.
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QProgressBar>
#include <QTest>
#include <sys/stat.h>

#include <filesystem>

#include "import/Document.h"
#include "import/ImportForm.h"
#include "import/ResponseFolder.h"
#include "services/Rficheros.h"

namespace {

using namespace postal_tests;

constexpr const char* missingFiles = "Para importar las calles de los municipios de una provincia\r"
                                     "es necesario antes pinchar en buscar vías";
constexpr const char* missingTitle = "Faltan los ficheros XML";

class ImportBatch : public ImportForm {
protected:
    ~ImportBatch() override { ambrel::setAttributeFunction({}); }

    void showProvince(const char* province = "MADRID") {
        show("RBTodosConUno");
        choose("CBProvincias", province);
        progress.clear();
    }
    void save() { click("BBGuardarPorProvincia"); }
    /// Expects the list of municipalities, with this caption.
    void expectList(const char* caption, const std::function<void(QDialog&)>& answer) {
        script.expect("TFMunicipiLista", [=](QDialog& list) {
            EXPECT_EQ(list.windowTitle().toStdString(), caption);
            answer(list);
        });
    }
    static void cancel(QDialog& list) { list.reject(); }

    ambrel::test::ModalScript script;
};

// --- The province's button.

TEST_F(ImportBatch, SavesEveryFileOfTheProvinceWithoutAWord) {
    file("MADRID/ALPEDRETE.xml", answer({{"CL", "ALPISTE"}, {"AV", "MAYOR"}}));
    file("MADRID/ARANJUEZ()REAL SITIO.xml", answer({{"CL", "INFANTAS"}}));
    showProvince();
    save();
    EXPECT_EQ(stored(), (Texts{"CL ALPISTE 28430", "AV MAYOR 28430", "CL INFANTAS 28300"}));
    EXPECT_NE(std::ranges::find(progress, "Importando las calles de " + postales("MADRID/ALPEDRETE.xml")),
              progress.end());
    EXPECT_NE(std::ranges::find(progress, "Importando las calles de ALPEDRETE"), progress.end());
    EXPECT_NE(std::ranges::find(progress, "Importando las calles... 2 de 2 de ALPEDRETE"), progress.end());
    EXPECT_FALSE(isProgressOpen());
    EXPECT_EQ(rows(), (Texts{"CL|INFANTAS"})) << "the last one stays in view";
}

TEST_F(ImportBatch, BracketsOfAFileNameAreTheSlashesOfTheMunicipality) {
    file("MADRID/ARANJUEZ()REAL SITIO.xml", answer({{"CL", "INFANTAS"}}));
    file("MADRID/ARANJUEZ)(REAL SITIO.xml", answer({{"CL", "OTRA"}}));
    showProvince();
    expectList("Seleccione el municipio donde importar las vias de ARANJUEZ\\REAL SITIO (MADRID)", cancel);
    save();
    EXPECT_EQ(stored(), (Texts{"CL INFANTAS 28300"}));
}

TEST_F(ImportBatch, SavesWhatTheProvinceSearchHasFiled) {
    showProvince();
    click("BBBuscarViasPorProvincia");
    expectBox("Rellene el campo Nombre de la Via", "ATENCIÓN:", true);
    std::filesystem::remove(postales("MADRID/PARLA.xml"));
    file("MADRID/ARANJUEZ()REAL SITIO.xml", answer({}));
    save();
    EXPECT_EQ(stored(), (Texts{"CL ALPISTE 28430", "AV MAYOR 28430", "PZ SOL 28430", "CL REAL 28280"}))
        << "MADRID has several codes and is passed over";
}

TEST_F(ImportBatch, ShowsHowFarItIsAndAtItsEndWhatWasDone) {
    addStreets({{"99000000", "ALPISTE", "CL", "28430"}});
    file("MADRID/ALPEDRETE.xml", answer({{"CL", "ALPISTE"}, {"AV", "MAYOR"}, {"PZ", "SOL"}}));
    file("MADRID/DESCONOCIDO.xml", answer({{"CL", "SOL"}}));
    file("MADRID/EL ESCORIAL.xml", "no es XML");
    file("MADRID/MADRID.xml", answer({{"CL", "ALCALA"}}));
    showProvince();
    expectList("Seleccione el municipio donde importar las vias de DESCONOCIDO (MADRID)", cancel);
    save();
    EXPECT_EQ(bar, (Texts{"0/4 1 de 4", "1/4 2 de 4 · queda menos de un minuto",
                          "2/4 3 de 4 · queda menos de un minuto", "3/4 4 de 4 · queda menos de un minuto"}));
    EXPECT_EQ(dialog->findChild<QProgressBar*>(), nullptr);
    EXPECT_TRUE(control<QLabel>("LMensaje_").isVisible());
    EXPECT_EQ(message(),
              "MADRID. Municipios guardados: 1 de 4. Calles nuevas: 2. Con varios códigos postales: 1. "
              "Sin municipio elegido: 1. Ilegibles: 1.");
}

TEST_F(ImportBatch, StreetThatIsRefusedIsNoNewOne) {
    file("MADRID/ALPEDRETE.xml", answer({}));
    showProvince();
    expectBox("Rellene el campo Nombre de la Via", "ATENCIÓN:", true);
    save();
    EXPECT_EQ(message(), "MADRID. Municipios guardados: 1 de 1. Calles nuevas: 0.");
}

TEST_F(ImportBatch, NamesAreSavedAsTheyWereShownWhateverEncodingTheAnswerDeclared) {
    std::string declared = answer({{"CL", "CAÑÓN"}});
    const std::size_t begin = declared.find("?>");
    declared = R"(<?xml version="1.0" encoding="ISO-8859-1")" +
               (begin == std::string::npos ? "?>" + declared : declared.substr(begin));
    ambrel::DirectoryDocument document;
    document.load(declared);
    ASSERT_TRUE(ambrel::fileAnswer(document, "DB", "MADRID", "ALPEDRETE"));
    showProvince();
    save();
    EXPECT_EQ(rows(), (Texts{"CL|CAÑÓN"}));
    EXPECT_EQ(stored(), (Texts{"CL CAÑÓN 28430"}));
}

TEST_F(ImportBatch, EscorialWithItsArticleInFrontIsFoundWithItAtTheEnd) {
    file("MADRID/EL ESCORIAL.xml", answer({{"CL", "REAL"}}));
    showProvince();
    save();
    EXPECT_EQ(stored(), (Texts{"CL REAL 28280"}));
    EXPECT_NE(std::ranges::find(progress, "Importando las calles de ESCORIAL (EL)"), progress.end());
}

TEST_F(ImportBatch, MunicipalityWithSeveralCodesIsPassedOverSilently) {
    addStreets({{"99000000", "ALCALA", "", "28001"}});
    file("MADRID/MADRID.xml", answer({{"CL", "ALCALA"}}));
    showProvince();
    save();
    EXPECT_EQ(stored(), (Texts{" ALCALA 28001"})) << "no type is completed either";
}

TEST_F(ImportBatch, UnknownMunicipalityIsAskedForAndTheChosenOneTakesTheStreets) {
    file("MADRID/LOS DESCONOCIDOS.xml", answer({{"CL", "SOL"}}));
    showProvince();
    expectList("Seleccione el municipio donde importar las vias de DESCONOCIDOS (LOS) (MADRID)",
               [](QDialog& list) {
                   auto& name = ambrel::test::child<QLineEdit>(list, "ENOMBRE");
                   name.setFocus();
                   QTest::keyClicks(&name, "ALPEDRETE");
                   ambrel::test::child<QPushButton>(list, "BBAceptar").click();
               });
    save();
    EXPECT_EQ(stored(), (Texts{"CL SOL 28430"}));
}

TEST_F(ImportBatch, CancellingTheQuestionSkipsThatFileOnly) {
    file("MADRID/AAA.xml", answer({{"CL", "SOL"}}));
    file("MADRID/ALPEDRETE.xml", answer({{"CL", "LUNA"}}));
    showProvince();
    expectList("Seleccione el municipio donde importar las vias de AAA (MADRID)", cancel);
    save();
    EXPECT_EQ(stored(), (Texts{"CL LUNA 28430"}));
}

TEST_F(ImportBatch, ProvinceThatTheHostCallsOtherwiseIsAskedForUntilAnAnswerSettlesIt) {
    file("LA RIOJA/HARO.xml", answer({{"CL", "VEGA LA"}}));
    file("LA RIOJA/HARO.1.xml", answer({{"CL", "OTRA"}}));
    showProvince("LA RIOJA");
    expectList("Seleccione el municipio donde importar las vias de HARO (LA RIOJA)",
               [](QDialog& list) { ambrel::test::child<QPushButton>(list, "BBAceptar").click(); });
    save();
    EXPECT_EQ(stored().size(), 2U) << "the host's province is kept for the files that follow";
}

TEST_F(ImportBatch, WhateverTheFolderHoldsTheRunGoesOn) {
    file("MADRID/ALPEDRETE.xml", "no es XML");
    file("MADRID/ALPEDRETE.1.xml", "<html><body>Acepte</body></html>");
    file("MADRID/ALPEDRETE.2.xml", std::string(2000, '<'));
    std::filesystem::create_directories(postales("MADRID/ALPEDRETE.3.xml"));
    std::filesystem::create_symlink("nada", postales("MADRID/ALPEDRETE.4.xml"));
    std::filesystem::create_symlink("ALPEDRETE.5.xml", postales("MADRID/ALPEDRETE.5.xml"));
    std::filesystem::create_symlink("/dev/zero", postales("MADRID/ALPEDRETE.6.xml"));
    ASSERT_EQ(::mkfifo(postales("MADRID/ALPEDRETE.7.xml").c_str(), 0600), 0);
    file("MADRID/ALPEDRETE.9.xml", answer({{"CL", "SOL"}}));
    showProvince();
    save();
    EXPECT_EQ(stored(), (Texts{"CL SOL 28430"}));
}

// Deliberate: an answer without nodes counts as read, so that the list's empty row is offered.
TEST_F(ImportBatch, EmptyFileOffersTheEmptyRowWhichIsRefusedAloud) {
    file("MADRID/ALPEDRETE.xml", "");
    file("MADRID/EL ESCORIAL.xml", answer({{"CL", "SOL"}}));
    showProvince();
    expectBox("Rellene el campo Nombre de la Via", "ATENCIÓN:", true);
    save();
    EXPECT_EQ(stored(), (Texts{"CL SOL 28280"}));
}

TEST_F(ImportBatch, FileWithFewerStreetsThanCountedIsNotSaved) {
    std::string cut = answer({{"CL", "SOL"}});
    cut.replace(cut.find("<cuca>1<"), 8, "<cuca>2<");
    file("MADRID/ALPEDRETE.xml", cut);
    showProvince();
    save();
    EXPECT_EQ(stored(), Texts());
}

TEST_F(ImportBatch, FaultOfTheTablesIsReportedOnceForTheWholeRun) {
    file("MADRID/ALPEDRETE.xml", answer({{"CL", "SOL"}}));
    file("MADRID/EL ESCORIAL.xml", answer({{"CL", "SOL"}}));
    showProvince();
    controller->DM->tbMunicipi.close();
    controller->DM->tbMunicipiAux.close();
    std::filesystem::rename(folder / "MUNICIPI.DBF", folder / "FUERA.DBX");
    const auto boxes = ambrel::test::boxesDuring([this] { save(); });
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_EQ(boxes[0].title.toStdString(), "Atención");
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(message(), "MADRID. Municipios guardados: 0 de 2. Calles nuevas: 0. Con error: 2.");
}

TEST_F(ImportBatch, OutsideModeThreeTheButtonNamesTheSecondOption) {
    show("RBUno");
    expectBox("Para importar las vías de todos los municipios de una \r"
              "provincia es necesario marcar la opción 2ª",
              "Faltan datos");
    control<QPushButton>("BBGuardarPorProvincia").click();
}

TEST_F(ImportBatch, ButtonNeedsAProvince) {
    show("RBTodosConUno");
    expectBox("Para importar las vías de todos los \rmunicipios de una provincia es necesario indicarla",
              "Faltan datos");
    save();
}

TEST_F(ImportBatch, ButtonSaysWhenThereIsNoFolderNoProvinceOrNoFile) {
    showProvince();
    expectBox(missingFiles, missingTitle);
    save();
    std::filesystem::create_directories(postales());
    expectBox(missingFiles, missingTitle);
    save();
    file("MADRID/ALPEDRETE.txt", "");
    expectBox(missingFiles, missingTitle);
    save();
}

TEST_F(ImportBatch, NothingIsDrawnBehindWhileItRuns) {
    file("MADRID/ALPEDRETE.xml", answer({{"CL", "SOL"}}));
    file("MADRID/EL ESCORIAL.xml", answer({{"CL", "SOL"}}));
    showProvince();
    int told = 0;
    const auto subscription = controller->DM->tbPostal.listen([&](dbase::DatasetChange) { ++told; });
    save();
    EXPECT_EQ(told, 1);
}

// --- The menu.

TEST_F(ImportBatch, MenuSavesEveryProvinceFolder) {
    addProvinces({{"044", "TERUEL"}});
    file("MADRID/ALPEDRETE.xml", answer({{"CL", "SOL"}}));
    file("LA RIOJA/HARO.xml", answer({{"CL", "VEGA LA"}}));
    file("28-ALPEDRETE.dat", "");
    show("RBTodosConUno");
    expectList("Seleccione el municipio donde importar las vias de HARO (LA RIOJA)", cancel);
    chooseMenuItem();
    EXPECT_EQ(stored(), (Texts{"CL SOL 28430"}));
    EXPECT_EQ(chosen("CBProvincias"), "MADRID");
    EXPECT_EQ(bar, (Texts{"0/2 1 de 2", "1/2 2 de 2"})) << "how long the user takes to answer tells nothing";
    EXPECT_EQ(message(), "Municipios guardados: 1 de 2. Calles nuevas: 1. Sin municipio elegido: 1.");
}

TEST_F(ImportBatch, FolderThatIsNoProvinceIsAskedForFileByFile) {
    file("SORIA/A.xml", answer({{"CL", "SOL"}}));
    file("SORIA/B.xml", answer({{"CL", "SOL"}}));
    show("RBTodosConUno");
    expectList("Seleccione el municipio donde importar las vias de A ()", cancel);
    expectList("Seleccione el municipio donde importar las vias de B ()", cancel);
    chooseMenuItem();
    EXPECT_EQ(chosen("CBProvincias"), "");
    EXPECT_EQ(stored(), Texts());
}

TEST_F(ImportBatch, FolderWithAnotherAttributeIsPassedOver) {
    file("MADRID/ALPEDRETE.xml", answer({{"CL", "SOL"}}));
    ambrel::setAttributeFunction([](const std::string& path) {
        const int attributes = ambrel::attributesOnDisk(path);
        return path.ends_with("MADRID") ? attributes | ambrel::file_attribute::readOnly : attributes;
    });
    show("RBTodosConUno");
    chooseMenuItem();
    EXPECT_EQ(stored(), Texts());
}

TEST_F(ImportBatch, FirstEntryOfTheFolderIsNeverLookedAt) {
    file("MADRID/ALPEDRETE.xml", answer({{"CL", "SOL"}}));
    // Where "." and ".." are not folders the province is the first entry.
    ambrel::setAttributeFunction([](const std::string& path) {
        const bool isDots = path.ends_with("/.") || path.ends_with("/..");
        return isDots ? ambrel::file_attribute::hidden : ambrel::attributesOnDisk(path);
    });
    show("RBTodosConUno");
    chooseMenuItem();
    EXPECT_EQ(stored(), Texts());
}

TEST_F(ImportBatch, FolderWithoutFilesIsReportedAndTheNextOneFollows) {
    std::filesystem::create_directories(postales("LA RIOJA"));
    file("MADRID/ALPEDRETE.xml", answer({{"CL", "SOL"}}));
    std::filesystem::create_directories(postales("SORIA"));
    show("RBTodosConUno");
    expectBox(missingFiles, missingTitle);
    expectBox(missingFiles, missingTitle);
    chooseMenuItem();
    EXPECT_EQ(stored(), (Texts{"CL SOL 28430"}));
}

TEST_F(ImportBatch, MenuSaysWhenThereIsNoFolder) {
    show("RBTodosConUno");
    expectBox(missingFiles, missingTitle);
    chooseMenuItem();
}

// Deliberate: the menu does not depend on the mode; in the first one streets are saved without a postal code.
TEST_F(ImportBatch, MenuWorksInAnyMode) {
    file("MADRID/ALPEDRETE.xml", answer({{"CL", "SOL"}}));
    show("RBUno");
    chooseMenuItem();
    EXPECT_EQ(stored(), (Texts{"CL SOL 28430"}));
}

} // namespace
