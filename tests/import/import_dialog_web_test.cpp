// The import dialog and the web service: lists, streets and faults.
#include <gtest/gtest.h>

#include <QFile>
#include <QProgressBar>
#include <QTest>
#include <filesystem>
#include <fstream>

#include "import/ImportForm.h"
#include "import/ResponseFolder.h"

namespace {

using namespace postal_tests;
using callejero::Fault;
using callejero::Operation;

constexpr const char* errorTitle = "Error al importar datos";
constexpr const char* loadTitle = "Error al importar los datos";
constexpr const char* nothingFound = "No se ha podido importar ningún nombre de vía";
constexpr const char* noProvinces =
    "No se han podido cargar las provincias.Salga de la ventana y vuelva a intentarlo de nuevo más tarde";
constexpr const char* noMunicipalities = "No se han podido cargar los municipios asociados a la provincia "
                                         "indicada.Inténtelo de nuevo más tarde";

class ImportFromTheWeb : public ImportForm {
protected:
    /// Shows the second mode, with a municipality of Madrid chosen.
    void showMunicipality(const char* name = "ALPEDRETE") {
        show("RBUno");
        choose("CBProvincias", "MADRID");
        press(Qt::Key_Tab);
        choose("CBMunicipios", name);
        progress.clear();
    }
    [[nodiscard]] static std::string copyOfAnswer() {
        std::ifstream file(ambrel::scratchFile());
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void expectNotFound(bool whileProgress = true) {
        expectBox(nothingFound, "Inténtelo de nuevo", whileProgress);
    }
    void expectStreetsFail() {
        expectBox("Se ha producido un error al localizar las vías del municipio seleccionado ALPEDRETE\r"
                  "Reinténtelo más tarde",
                  errorTitle, true);
        expectNotFound(false);
    }
};

// --- Lists.

TEST_F(ImportFromTheWeb, ProgressNamesTheProvinces) {
    show("RBUno");
    EXPECT_EQ(progress, (Texts{"Importando el listado de provincias", "Importando listado de provincias...",
                               "Cargando listado de provincias"}));
    EXPECT_FALSE(isProgressOpen());
}

TEST_F(ImportFromTheWeb, LeavingTheProvinceLoadsItsMunicipalities) {
    show("RBUno");
    choose("CBProvincias", "MADRID");
    progress.clear();
    press(Qt::Key_Tab);
    EXPECT_EQ(items("CBMunicipios"), (Texts{"ALPEDRETE", "EL ESCORIAL", "MADRID", "PARLA"}));
    EXPECT_EQ(chosen("CBMunicipios"), "");
    EXPECT_EQ(focused(), "CBMunicipios");
    EXPECT_EQ(progress,
              (Texts{"Importando el listado de municipios de...", "MADRID",
                     "Importando municipios de la provincia MADRID", "Cargando datos de municipios"}));
}

TEST_F(ImportFromTheWeb, ErrorForTheProvincesComesWhenTheProgressWindowIsClosed) {
    service->setFault(Operation::Provinces, Fault::Status500);
    expectBox("Se ha producido un error al localizar las provincias.\rReinténtelo más tarde", errorTitle);
    expectBox(noProvinces, loadTitle);
    show("RBUno");
    EXPECT_EQ(items("CBProvincias"), Texts());
    EXPECT_EQ(focused(), "BBCancelar");
}

TEST_F(ImportFromTheWeb, ErrorForTheMunicipalitiesClosesTheProgressWindowFirstAndForgetsTheProvince) {
    show("RBUno");
    choose("CBProvincias", "MADRID");
    service->setFault(Operation::Municipalities, Fault::Refuse);
    expectBox("Se ha producido un error al localizar los municipios de la provincia seleccionada MADRID\r"
              "Reinténtelo más tarde",
              errorTitle);
    expectBox(noMunicipalities, loadTitle);
    press(Qt::Key_Tab);
    EXPECT_EQ(chosen("CBProvincias"), "");
    EXPECT_EQ(items("CBMunicipios"), Texts());
    EXPECT_EQ(focused(), "CBMunicipios");
}

TEST_F(ImportFromTheWeb, MunicipalitiesOfTheProvinceBeforeAreForgottenAfterAnAnswerThatIsNone) {
    show("RBUno");
    choose("CBProvincias", "MADRID");
    press(Qt::Key_Tab);
    choose("CBProvincias", "LA RIOJA");
    service->setFault(Operation::Municipalities, Fault::HtmlPage);
    expectBox(noMunicipalities, loadTitle);
    press(Qt::Key_Tab);
    EXPECT_EQ(items("CBMunicipios"), Texts());
}

TEST_F(ImportFromTheWeb, FaultEnvelopeWithoutAnErrorOfTheExchangeIsAnEmptyList) {
    service->setFault(Operation::Provinces, Fault::SoapFaultOk);
    show("RBUno");
    EXPECT_EQ(items("CBProvincias"), Texts());
}

TEST_F(ImportFromTheWeb, AnswerOfSomebodyElseIsReportedOnce) {
    service->setFault(Operation::Provinces, Fault::HtmlPage);
    expectBox(noProvinces, loadTitle);
    show("RBUno");
    EXPECT_EQ(items("CBProvincias"), Texts());
}

TEST_F(ImportFromTheWeb, EmptyDocumentIsAFailureForTheLists) {
    service->setFault(Operation::Provinces, Fault::EmptyBody);
    expectBox(noProvinces, loadTitle);
    show("RBUno");
}

TEST_F(ImportFromTheWeb, ErrorAnswerIsAnEmptyListAndNoFailure) {
    service->setFault(Operation::Provinces, Fault::ErrorAnswer);
    show("RBUno");
    EXPECT_EQ(items("CBProvincias"), Texts());
    EXPECT_EQ(focused(), "CBProvincias");
}

TEST_F(ImportFromTheWeb, ListWithFewerEntriesThanCountedIsShownAndStillAFailure) {
    service->setFault(Operation::Provinces, Fault::MoreCounted);
    expectBox(noProvinces, loadTitle);
    show("RBUno");
    EXPECT_EQ(items("CBProvincias"), (Texts{"LA RIOJA", "MADRID"}));
}

// --- Streets of a municipality.

TEST_F(ImportFromTheWeb, FindsStreetsAndChoosesTheHostsMunicipality) {
    showMunicipality();
    click("BBBuscarViasPorMunicipio");
    EXPECT_EQ(rows(), (Texts{"CL|ALPISTE", "AV|MAYOR", "PZ|SOL"}));
    EXPECT_EQ(message(), "Se han encontrado 3 vías");
    EXPECT_EQ(control<ambrel::StreetGrid>("SGVias").currentIndex().row(), 2);
    EXPECT_EQ(chosen("CBProvinciasAmbrel"), "MADRID");
    EXPECT_EQ(chosen("CBMunicipiosAmbrel"), "ALPEDRETE");
    EXPECT_EQ(progress, (Texts{"Importando el listado de vías del municipio...", "ALPEDRETE",
                               "Importando datos del municipio ALPEDRETE", "Cargando datos de vías"}));
    EXPECT_EQ(focused(), "CBMunicipiosAmbrel");
}

TEST_F(ImportFromTheWeb, SearchingAgainEmptiesTheListFirst) {
    showMunicipality();
    click("BBBuscarViasPorMunicipio");
    click("BBBuscarViasPorMunicipio");
    EXPECT_EQ(rows().size(), 3U);
}

TEST_F(ImportFromTheWeb, HostProvinceThatIsCalledOtherwiseIsLeftToTheUser) {
    show("RBUno");
    choose("CBProvincias", "LA RIOJA");
    press(Qt::Key_Tab);
    choose("CBMunicipios", "HARO");
    click("BBBuscarViasPorMunicipio");
    EXPECT_EQ(rows(), (Texts{"CL|VEGA LA"}));
    EXPECT_EQ(chosen("CBProvinciasAmbrel"), "");
}

TEST_F(ImportFromTheWeb, SearchNeedsProvinceAndMunicipality) {
    show("RBUno");
    choose("CBProvincias", "MADRID");
    press(Qt::Key_Tab);
    expectBox(
        "Para importar vías de un municipio es necesario indicar la provincia y el nombre del municipio",
        "Faltan datos");
    click("BBBuscarViasPorMunicipio");
    EXPECT_EQ(rows(), (Texts{"|"}));
}

TEST_F(ImportFromTheWeb, ErrorForTheStreetsComesWhileTheProgressWindowIsOpen) {
    showMunicipality();
    service->setFault(Operation::Streets, Fault::Cut);
    expectStreetsFail();
    click("BBBuscarViasPorMunicipio");
    EXPECT_EQ(rows(), (Texts{"|"}));
    EXPECT_EQ(chosen("CBProvinciasAmbrel"), "");
}

TEST_F(ImportFromTheWeb, EveryFaultOfTheExchangeIsReportedAlikeAndTheNextTrySucceeds) {
    showMunicipality();
    for (const Fault fault :
         {Fault::Refuse, Fault::CutChunked, Fault::Status500, Fault::SoapFault, Fault::Huge}) {
        service->setFault(Operation::Streets, fault);
        expectStreetsFail();
        click("BBBuscarViasPorMunicipio");
        EXPECT_EQ(rows(), (Texts{"|"})) << static_cast<int>(fault);
    }
    service->clearFaults();
    click("BBBuscarViasPorMunicipio");
    EXPECT_EQ(rows().size(), 3U);
}

TEST_F(ImportFromTheWeb, GarbageIsReportedAndThenThatNothingWasFound) {
    showMunicipality();
    service->setFault(Operation::Streets, Fault::Garbage);
    expectBox("La respuesta no es un documento XML válido (byte 19).", "Atención", true);
    expectNotFound();
    click("BBBuscarViasPorMunicipio");
}

TEST_F(ImportFromTheWeb, StreetsFewerThanCountedFillTheListAndFailWithTheProgressWindowClosed) {
    showMunicipality();
    service->setFault(Operation::Streets, Fault::MoreCounted);
    expectNotFound(false);
    click("BBBuscarViasPorMunicipio");
    EXPECT_EQ(rows().size(), 3U);
    EXPECT_EQ(message(), "Se han encontrado 4 vías");
}

TEST_F(ImportFromTheWeb, AnswerWithoutCountFillsNothingLeavesTheLabelAndSucceeds) {
    showMunicipality();
    service->setFault(Operation::Streets, Fault::NoCount);
    click("BBBuscarViasPorMunicipio");
    EXPECT_EQ(rows(), (Texts{"|"}));
    EXPECT_EQ(message(), "");
    EXPECT_EQ(chosen("CBMunicipiosAmbrel"), "ALPEDRETE");
}

TEST_F(ImportFromTheWeb, EmptyDocumentIsNoFailureForTheStreets) {
    showMunicipality();
    service->setFault(Operation::Streets, Fault::EmptyBody);
    click("BBBuscarViasPorMunicipio");
    EXPECT_EQ(rows(), (Texts{"|"}));
    EXPECT_EQ(chosen("CBMunicipiosAmbrel"), "ALPEDRETE");
}

TEST_F(ImportFromTheWeb, ScratchCopyIsReplacedByEveryAnswerAndStaysUntilTheEnd) {
    show("RBUno");
    EXPECT_NE(copyOfAnswer().find("<np>MADRID</np>"), std::string::npos);
    choose("CBProvincias", "MADRID");
    press(Qt::Key_Tab);
    EXPECT_EQ(copyOfAnswer().find("<np>"), std::string::npos);
    EXPECT_NE(copyOfAnswer().find("\n        <soap:Body>"), std::string::npos) << "eight blanks a level";
    choose("CBMunicipios", "ALPEDRETE");
    click("BBBuscarViasPorMunicipio");
    EXPECT_NE(copyOfAnswer().find("<nv>ALPISTE</nv>"), std::string::npos);
}

// --- All municipalities of a province.

TEST_F(ImportFromTheWeb, FilesTheAnswersOfAllMunicipalitiesOfTheProvince) {
    show("RBTodosConUno");
    choose("CBProvincias", "MADRID");
    progress.clear();
    click("BBBuscarViasPorProvincia");
    for (const char* const name : {"ALPEDRETE", "EL ESCORIAL", "MADRID", "PARLA"}) {
        EXPECT_TRUE(std::filesystem::exists(postales("MADRID/" + std::string(name) + ".xml"))) << name;
    }
    EXPECT_EQ(rows(), (Texts{"|"})) << "nothing is shown";
    // Deliberate: no blank between the text and the name.
    EXPECT_NE(std::ranges::find(progress, "Importando el listado de vías del municipioALPEDRETE"),
              progress.end());
    EXPECT_FALSE(isProgressOpen());
}

TEST_F(ImportFromTheWeb, ProvinceSearchShowsHowFarItIsAndAtItsEndWhatWasDone) {
    show("RBTodosConUno");
    choose("CBProvincias", "MADRID");
    click("BBBuscarViasPorProvincia");
    EXPECT_EQ(bar, (Texts{"0/4 1 de 4", "1/4 2 de 4 · queda menos de un minuto",
                          "2/4 3 de 4 · queda menos de un minuto", "3/4 4 de 4 · queda menos de un minuto"}));
    EXPECT_EQ(dialog->findChild<QProgressBar*>(), nullptr);
    EXPECT_TRUE(control<QLabel>("LMensaje_").isVisible());
    EXPECT_EQ(message(), "MADRID. Municipios archivados: 4 de 4.");
}

TEST_F(ImportFromTheWeb, ProvinceSearchSaysAtItsEndWhatWasNotDone) {
    show("RBTodosConUno");
    choose("CBProvincias", "MADRID");
    std::filesystem::create_directories(postales("MADRID/PARLA.xml/dentro"));
    service->setFault(Operation::Streets, Fault::Cut, "EL ESCORIAL");
    expectBox("Se ha producido un error al localizar las vías del municipio seleccionado EL ESCORIAL\r"
              "Reinténtelo más tarde",
              errorTitle, true);
    expectNotFound(false);
    click("BBBuscarViasPorProvincia");
    EXPECT_EQ(message(), "MADRID. Municipios archivados: 2 de 4. Sin respuesta válida: 1. Sin archivar: 1.");
}

TEST_F(ImportFromTheWeb, MunicipalityThatFailsIsReportedAndTheOthersAreFiled) {
    show("RBTodosConUno");
    choose("CBProvincias", "MADRID");
    service->setFault(Operation::Streets, Fault::Status500, "EL ESCORIAL");
    expectBox("Se ha producido un error al localizar las vías del municipio seleccionado EL ESCORIAL\r"
              "Reinténtelo más tarde",
              errorTitle, true);
    expectNotFound(false);
    click("BBBuscarViasPorProvincia");
    EXPECT_FALSE(std::filesystem::exists(postales("MADRID/EL ESCORIAL.xml")));
    EXPECT_TRUE(std::filesystem::exists(postales("MADRID/PARLA.xml")));
}

TEST_F(ImportFromTheWeb, RedirectionThatLeadsNowhereLeavesTheAnswerThatWasFiledBefore) {
    file("MADRID/PARLA.xml", answer({{"CL", "SOL"}}));
    show("RBTodosConUno");
    choose("CBProvincias", "MADRID");
    service->setFault(Operation::Streets, Fault::Redirection, "PARLA");
    expectBox("Se ha producido un error al localizar las vías del municipio seleccionado PARLA\r"
              "Reinténtelo más tarde",
              errorTitle, true);
    expectNotFound(false);
    click("BBBuscarViasPorProvincia");
    std::ifstream filed(postales("MADRID/PARLA.xml"));
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(filed), {}), answer({{"CL", "SOL"}}));
    EXPECT_EQ(message(), "MADRID. Municipios archivados: 3 de 4. Sin respuesta válida: 1.");
}

TEST_F(ImportFromTheWeb, ProvinceSearchSucceedsAlsoWhenNothingCanBeFiled) {
    folder.write("POSTALES", "a file where the folder should be");
    show("RBTodosConUno");
    choose("CBProvincias", "LA RIOJA");
    click("BBBuscarViasPorProvincia"); // no message
    EXPECT_FALSE(std::filesystem::is_directory(postales()));
}

TEST_F(ImportFromTheWeb, AnswerThatCannotBeWrittenEndsTheProvinceSearchAndIsReportedOnce) {
    std::filesystem::create_directories(postales());
    std::filesystem::create_directory_symlink("/proc", postales("MADRID"));
    show("RBTodosConUno");
    choose("CBProvincias", "MADRID");
    expectBox(("No se puede guardar " + postales("MADRID/ALPEDRETE.xml") + ".").c_str(), "Atención");
    click("BBBuscarViasPorProvincia");
    EXPECT_FALSE(isProgressOpen());
    EXPECT_EQ(chosen("CBMunicipios"), "ALPEDRETE") << "those that follow are not asked for";
    EXPECT_EQ(message(), "MADRID. Municipios archivados: 0 de 4. Con error: 1. Sin hacer: 3.");
    EXPECT_EQ(dialog->findChild<QProgressBar*>(), nullptr);
}

TEST_F(ImportFromTheWeb, ProvinceSearchNeedsAProvince) {
    show("RBTodosConUno");
    expectBox("Para importar las vías de todos los \rmunicipios de una provincia es necesario indicarla",
              "Faltan datos");
    click("BBBuscarViasPorProvincia");
}

TEST_F(ImportFromTheWeb, ProvinceSearchOutsideModeThreeNamesItsOption) {
    show("RBUno");
    expectBox("Para importar las vías de todos los municipios de una \r"
              "provincia es necesario marcar la opción 3ª",
              "Faltan datos");
    control<QPushButton>("BBBuscarViasPorProvincia").click();
}

} // namespace
