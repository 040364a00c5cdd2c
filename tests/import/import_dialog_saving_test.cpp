// The import dialog: saving the streets of one municipality.
#include <gtest/gtest.h>

#include <filesystem>

#include "import/ImportForm.h"
#include "support/FileSizeLimit.h"

namespace {

using namespace postal_tests;
constexpr const char* doneTitle = "Importación finalizada";

class ImportSaving : public ImportForm {
protected:
    void find(const char* municipality) {
        show("RBUno");
        choose("CBProvincias", "MADRID");
        press(Qt::Key_Tab);
        choose("CBMunicipios", municipality);
        click("BBBuscarViasPorMunicipio");
    }
    void expectDone(int count) {
        expectBox(
            ("Se han importado " + std::to_string(count) + " calles al módulo de Códigos Postales").c_str(),
            doneTitle);
    }
};

TEST_F(ImportSaving, WritesTheStreetsAndSaysHowMany) {
    find("ALPEDRETE");
    progress.clear();
    expectDone(3);
    click("BBGuardarPorMunicipio");
    EXPECT_EQ(stored(), (Texts{"CL ALPISTE 28430", "AV MAYOR 28430", "PZ SOL 28430"}));
    EXPECT_TRUE(dialog->isVisible());
    ASSERT_FALSE(progress.empty());
    EXPECT_EQ(progress.front(), "Importando las calles de ALPEDRETE");
    EXPECT_EQ(progress[1], "Importando las calles... 1 de 3 de ALPEDRETE");
    EXPECT_EQ(progress.back(), "Importando las calles... 3 de 3 de ALPEDRETE");
}

TEST_F(ImportSaving, ReportsEveryRowToTheProgressDisplay) {
    constexpr int streets = 120;
    std::string lines;
    for (int i = 1; i <= streets; ++i) {
        lines += "28430:Calle " + std::to_string(i) + "\n";
    }
    file("28-ALPEDRETE.dat", lines);
    show();
    choose("CBProvincias", "28-ALPEDRETE");
    click("BBBuscarViasPorMunicipio");
    progress.clear();
    expectDone(streets);
    click("BBGuardarPorMunicipio");
    Texts expected{"Importando las calles de ALPEDRETE"};
    for (int i = 1; i <= streets; ++i) {
        expected.push_back("Importando las calles... " + std::to_string(i) + " de 120 de ALPEDRETE");
    }
    EXPECT_EQ(progress, expected);
}

TEST_F(ImportSaving, SavingTwiceAddsNothingTheSecondTime) {
    find("ALPEDRETE");
    expectDone(3);
    expectDone(0);
    click("BBGuardarPorMunicipio");
    click("BBGuardarPorMunicipio");
    EXPECT_EQ(stored().size(), 3U);
}

TEST_F(ImportSaving, NeedsProvinceAndMunicipalityOfTheHost) {
    find("ALPEDRETE");
    combo("CBMunicipiosAmbrel").setCurrentIndex(-1);
    expectBox("No ha indicado correctamente el nombre de la provincia o el municipio",
              "Seleccione donde importar las calles");
    click("BBGuardarPorMunicipio");
    EXPECT_EQ(stored(), Texts());
}

TEST_F(ImportSaving, EmptyListIsOfferedAsOneStreetWithoutName) {
    show();
    choose("CBProvinciasAmbrel", "MADRID");
    press(Qt::Key_Tab);
    choose("CBMunicipiosAmbrel", "ALPEDRETE");
    expectBox("Rellene el campo Nombre de la Via", "ATENCIÓN:", true);
    expectDone(1);
    click("BBGuardarPorMunicipio");
    EXPECT_EQ(stored(), Texts());
}

TEST_F(ImportSaving, MunicipalityWithSeveralCodesGetsStreetTypesOnly) {
    addStreets({{"99000000", "ALCALA", "", "28002"}, {"99000001", "OTRA", "", "28001"}});
    find("MADRID");
    EXPECT_EQ(chosen("CBMunicipiosAmbrel"), "MADRID");
    expectDone(1);
    click("BBGuardarPorMunicipio");
    EXPECT_EQ(stored(), (Texts{"CL ALCALA 28002", " OTRA 28001"}));
}

TEST_F(ImportSaving, FirstOfTheListHasNoPostalCodesSoThatNothingHappens) {
    addStreets({{"99000000", "ALPISTE", "", "28430"}});
    find("ALPEDRETE");
    choose("CBMunicipiosAmbrel", "ÁLAMOS, LOS"); // index 0, several codes
    click("BBGuardarPorMunicipio");
    EXPECT_EQ(stored(), (Texts{" ALPISTE 28430"}));
}

TEST_F(ImportSaving, FullDiskIsReportedOnceAfterTheLoopAndNothingSavedBeforeIsLost) {
    addStreets({{"99000000", "ANTERIOR", "CL", "28430"}});
    find("ALPEDRETE");
    Texts titles;
    {
        const ambrel::test::FileSizeLimit full(std::filesystem::file_size(folder / "POSTAL.DBF"));
        for (const auto& box : ambrel::test::boxesDuring([this] { click("BBGuardarPorMunicipio"); })) {
            titles.push_back(box.title.toStdString());
        }
    }
    EXPECT_EQ(titles, (Texts{"Atención", doneTitle}));
    EXPECT_EQ(stored(), (Texts{"CL ANTERIOR 28430"}));
    EXPECT_EQ(controller->DM->tbPostal.state(), dbase::DatasetState::Browse) << "no row is left pending";
    expectDone(3);
    click("BBGuardarPorMunicipio");
    EXPECT_EQ(stored().size(), 4U);
}

} // namespace
