// TFImportarVias: its contents in its three modes, its keys and its end.
#include <gtest/gtest.h>

#include <QFile>
#include <QHeaderView>
#include <QMenu>
#include <QScopeGuard>
#include <QScrollBar>
#include <QStatusBar>
#include <QTest>
#include <filesystem>

#include "dialogs/DialogTexts.h"
#include "import/ImportForm.h"
#include "import/ResponseFolder.h"
#include "support/ShownWindow.h"

namespace {

using namespace postal_tests;
using ambrel::test::ControlTexts;

class ImportDialog : public ImportForm {
protected:
    [[nodiscard]] bool isShown(const char* name) const { return control<QWidget>(name).isVisible(); }
    [[nodiscard]] QTableView& grid() const { return control<ambrel::StreetGrid>("SGVias"); }
    [[nodiscard]] Texts titles() const {
        Texts texts;
        for (int column = 0; column < grid().model()->columnCount(); ++column) {
            texts.push_back(grid().model()->headerData(column, Qt::Horizontal).toString().toStdString());
        }
        return texts;
    }
    [[nodiscard]] std::string help() const {
        return control<QStatusBar>("SBAyuda").currentMessage().toStdString();
    }
    void expectTexts(const char* listLabel) const;
};

void ImportDialog::expectTexts(const char* listLabel) const {
    const QString buttonClass = QStringLiteral("QPushButton");
    ambrel::test::expectControls(
        *dialog,
        {{"TFImportarVias", "TFImportarVias", "Importación de vías a través de la web", "", {570, 600}},
         {"PImportar", "QWidget", ""},
         {"POperaciones", "QWidget", ""},
         {"GBModo", "QGroupBox", "  Eliga la forma de importación de calles  "},
         {"RBMasDeUno", "QRadioButton", "1.  Importar calles de municipios con más de un código postal  "},
         {"RBUno", "QRadioButton",
          "2.  Importar calles de municipios con un único código postal  /  Revisar tipos de vía con más "
          "de un código"},
         {"RBTodosConUno", "QRadioButton",
          "3.  Importar calles de todos los municipios, con un único código postal , de la provincia "
          "seleccionada"},
         {"GBDatosBusqueda", "QGroupBox", "  Selección de provincia y municipios. Búsqueda  "},
         {"LProvincia_", "QLabel", listLabel},
         {"CBProvincias", "QComboBox", "", "", {297, 0}},
         {"LMunicipio_", "QLabel", "Municipio:"},
         {"CBMunicipios", "QComboBox", ""},
         {"BBBuscarViasPorProvincia", buttonClass,
          "Buscar las vías de los municipios de la provincia seleccionada",
          "Pinche el botón para realizar importar las vias de todos los municipios de la provincia "
          "seleccionada"},
         {"BBBuscarViasPorMunicipio", buttonClass, "Buscar las vías del municipio seleccionado",
          "Pinche el botón para realizar una búsqueda de las vías del municipio seleccionado"},
         {"BBGuardarPorProvincia", buttonClass, "&Guardar las vías de la provincia",
          "Almacena las vías de los municipios de la provincia seleccionada arriba"},
         {"SGVias", "ambrel::StreetGrid", ""},
         {"GBDatosAmbrel", "QGroupBox",
          "  Indique el municipio del programa en el que importar las vías y  pinche en Guardar  "},
         {"LProvinciaAmbrel_", "QLabel", "Provincia:"},
         {"CBProvinciasAmbrel", "QComboBox", ""},
         {"LMunicipioAmbrel_", "QLabel", "Municipio:"},
         {"CBMunicipiosAmbrel", "QComboBox", ""},
         {"BBGuardarPorMunicipio", buttonClass, "&Guardar vías del municipio",
          "Almacena las vías importadas al programa y cierra la pantalla"},
         {"LMensaje_", "QLabel", "", "", {460, 0}},
         {"BBCancelar",
          buttonClass,
          "&Salir",
          "Pinche el botón si desea cancelar la importación y salir de la pantalla",
          {85, 30}},
         {"PMGuardarPorProvincia", "QMenu", ""},
         {"SBAyuda", "QStatusBar", ""}});
}

TEST_F(ImportDialog, HasItsTextsHintsAndSizesInEveryMode) {
    show();
    expectTexts("Municipio:");
    chooseMode("RBUno");
    expectTexts("Provincia:");
    chooseMode("RBTodosConUno");
    expectTexts("Provincia:");
    const QAction& item = ambrel::test::child<QAction>(*dialog, "MIGuardarPorProvincia");
    EXPECT_EQ(item.text().toStdString(), "Guardar las vias de todas las provincias importadas previamente");
}

TEST_F(ImportDialog, BeginsInTheFirstModeWithTheHostsProvinces) {
    file("28-ALPEDRETE.dat", "");
    show();
    EXPECT_TRUE(control<QRadioButton>("RBMasDeUno").isChecked());
    EXPECT_EQ(focused(), "RBMasDeUno");
    EXPECT_EQ(items("CBProvincias"), (Texts{"28-ALPEDRETE"}));
    EXPECT_EQ(chosen("CBProvincias"), "");
    EXPECT_EQ(items("CBProvinciasAmbrel"), (Texts{"MADRID", "RIOJA, LA"})) << "no countries";
    EXPECT_EQ(combo("CBProvinciasAmbrel").itemData(0).toInt(), 28);
    EXPECT_EQ(chosen("CBProvinciasAmbrel"), "");
    EXPECT_EQ(items("CBMunicipiosAmbrel"), Texts());
    EXPECT_EQ(rows(), (Texts{"||||||"}));
    EXPECT_TRUE(service->requests().empty()) << "nothing is asked of the web";
}

TEST_F(ImportDialog, ModeOneShowsFilesAndSevenColumns) {
    show();
    EXPECT_FALSE(isShown("CBMunicipios"));
    EXPECT_FALSE(isShown("LMunicipio_"));
    EXPECT_TRUE(isShown("BBBuscarViasPorMunicipio"));
    EXPECT_FALSE(isShown("BBBuscarViasPorProvincia"));
    EXPECT_FALSE(isShown("BBGuardarPorProvincia"));
    EXPECT_TRUE(isShown("GBDatosAmbrel"));
}

TEST_F(ImportDialog, SevenColumnHeaderShowsImparIniTwice) {
    show();
    EXPECT_EQ(titles(), (Texts{"Tipo de vía", "Nombre de la vía", "Código postal", "Impar INI", "Impar INI",
                               "Par INI", "Par FIN"}));
}

TEST_F(ImportDialog, ModeTwoShowsProvinceAndMunicipalityAndTwoColumns) {
    show("RBUno");
    EXPECT_TRUE(isShown("CBMunicipios"));
    EXPECT_TRUE(isShown("LMunicipio_"));
    EXPECT_TRUE(isShown("BBBuscarViasPorMunicipio"));
    EXPECT_FALSE(isShown("BBBuscarViasPorProvincia"));
    EXPECT_FALSE(isShown("BBGuardarPorProvincia"));
    EXPECT_TRUE(isShown("GBDatosAmbrel"));
    EXPECT_EQ(titles(), (Texts{"Tipo de vía", "Nombre de la vía"}));
    EXPECT_EQ(items("CBProvincias"), (Texts{"LA RIOJA", "MADRID"}));
    EXPECT_EQ(chosen("CBProvincias"), "");
    EXPECT_EQ(focused(), "CBProvincias");
}

TEST_F(ImportDialog, ModeThreeShowsTheProvinceButtonsAndNoHostPlaces) {
    show("RBTodosConUno");
    EXPECT_FALSE(isShown("CBMunicipios"));
    EXPECT_FALSE(isShown("LMunicipio_"));
    EXPECT_FALSE(isShown("BBBuscarViasPorMunicipio"));
    EXPECT_TRUE(isShown("BBBuscarViasPorProvincia"));
    EXPECT_TRUE(isShown("BBGuardarPorProvincia"));
    EXPECT_FALSE(isShown("GBDatosAmbrel"));
    EXPECT_EQ(titles(), (Texts{"Tipo de vía", "Nombre de la vía"}));
    EXPECT_EQ(items("CBProvincias"), (Texts{"LA RIOJA", "MADRID"}));
}

TEST_F(ImportDialog, ChangingTheModeReloadsTheListAlsoByKeys) {
    show();
    press(Qt::Key_Down);
    QCoreApplication::processEvents();
    EXPECT_EQ(items("CBProvincias"), (Texts{"LA RIOJA", "MADRID"}));
    EXPECT_EQ(focused(), "CBProvincias");
    EXPECT_EQ(service->requests().size(), 1U);
}

TEST_F(ImportDialog, AltAndItsNumberChoosesAModeFromEverywhere) {
    file("28-ALPEDRETE.dat", "");
    show();
    press(Qt::Key_3, Qt::AltModifier);
    EXPECT_TRUE(control<QRadioButton>("RBTodosConUno").isChecked());
    EXPECT_EQ(focused(), "CBProvincias");
    press(Qt::Key_2, Qt::AltModifier);
    EXPECT_TRUE(control<QRadioButton>("RBUno").isChecked());
    EXPECT_EQ(items("CBProvincias"), (Texts{"LA RIOJA", "MADRID"}));
    press(Qt::Key_1, Qt::AltModifier);
    EXPECT_TRUE(control<QRadioButton>("RBMasDeUno").isChecked());
    EXPECT_EQ(focused(), "RBMasDeUno");
    EXPECT_EQ(items("CBProvincias"), (Texts{"28-ALPEDRETE"}));
    EXPECT_EQ(service->requests().size(), 2U) << "the two lists of provinces, and no municipalities";
}

TEST_F(ImportDialog, ChoosingAModeByAltAsksForNothingThatIsLeft) {
    std::filesystem::create_directories(postales());
    show();
    for (const char* const box :
         {"CBProvincias", "CBProvinciasAmbrel"}) { // both show a message when left empty
        chooseMode("RBMasDeUno");
        const QPalette before = combo(box).palette();
        combo(box).setFocus();
        press(Qt::Key_3, Qt::AltModifier);
        EXPECT_EQ(focused(), "CBProvincias") << box;
        press(Qt::Key_1, Qt::AltModifier);
        EXPECT_EQ(focused(), "RBMasDeUno") << box;
        EXPECT_EQ(combo(box).palette(), before) << "the focus colour is taken off";
    }
    EXPECT_EQ(control<QRadioButton>("RBUno").accessibleDescription().toStdString(), "Alt+2 la elige");
}

TEST_F(ImportDialog, LeavingTheProvinceForAnotherModeSaysNothingAndDisturbsNoOtherBox) {
    show("RBUno");
    EXPECT_EQ(focused(), "CBProvincias");
    chooseMode("RBTodosConUno"); // the focus passes through the municipalities, which are then hidden
    EXPECT_EQ(focused(), "CBProvincias");
    chooseMode("RBMasDeUno");
    EXPECT_EQ(focused(), "RBMasDeUno");
}

TEST_F(ImportDialog, ColumnsAreAsWideAsTheirTitlesAndTheNameTakesTheRest) {
    show();
    const auto expectFilled = [this] {
        int total = 0;
        for (int column = 0; column < grid().model()->columnCount(); ++column) {
            EXPECT_GE(grid().columnWidth(column),
                      grid().fontMetrics().horizontalAdvance(
                          grid().model()->headerData(column, Qt::Horizontal).toString()))
                << column;
            total += grid().columnWidth(column);
        }
        EXPECT_EQ(total, grid().viewport()->width() - 8);
    };
    expectFilled();
    EXPECT_GE(grid().columnWidth(2), 70);
    EXPECT_GE(grid().columnWidth(3), 55);
    dialog->resize(1100, 700);
    expectFilled();
    chooseMode("RBUno");
    expectFilled();
}

TEST_F(ImportDialog, NothingIsCutInTheSmallestSize) {
    show();
    dialog->resize(570, 600);
    EXPECT_GE(dialog->width(), 570);
    EXPECT_EQ(grid().horizontalScrollBar()->maximum(), 0);
    expectTexts("Municipio:");
}

TEST_F(ImportDialog, NoCaptionIsCutInAHostThatPadsItsButtons) {
    const QString before = qApp->styleSheet();
    qApp->setStyleSheet(QStringLiteral("QPushButton { padding: 5px 60px; }"));
    const auto restore = qScopeGuard([&before] { qApp->setStyleSheet(before); });
    show();
    for (const char* const mode : {"RBMasDeUno", "RBUno", "RBTodosConUno"}) {
        chooseMode(mode);
        QCoreApplication::processEvents();
        dialog->resize(dialog->minimumSize());
        QCoreApplication::processEvents();
        for (const auto* const button : dialog->findChildren<QPushButton*>()) {
            EXPECT_TRUE(!button->isVisible() || button->width() >= button->sizeHint().width())
                << mode << " " << button->text().toStdString();
        }
    }
}

// --- Keys, focus, hints.

TEST_F(ImportDialog, EnterMovesOnAndNeverClicks) {
    show();
    control<QPushButton>("BBBuscarViasPorMunicipio").setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(focused(), "CBProvinciasAmbrel") << "the list is no tab stop";
    EXPECT_TRUE(dialog->isVisible());
}

TEST_F(ImportDialog, ButtonsShowTheirHintsAndCombosAreColoured) {
    show();
    control<QPushButton>("BBCancelar").setFocus();
    EXPECT_EQ(help(), "Pinche el botón si desea cancelar la importación y salir de la pantalla");
    const QPalette before = combo("CBMunicipiosAmbrel").palette();
    combo("CBMunicipiosAmbrel").setFocus();
    EXPECT_EQ(help(), "");
    EXPECT_NE(combo("CBMunicipiosAmbrel").palette(), before);
    control<QPushButton>("BBCancelar").setFocus();
    EXPECT_EQ(combo("CBMunicipiosAmbrel").palette(), before);
}

TEST_F(ImportDialog, MenuOfTheProvinceButtonComesByKeyboardToo) {
    show("RBTodosConUno");
    QPushButton& button = control<QPushButton>("BBGuardarPorProvincia");
    const QPoint place = button.rect().center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, place, button.mapToGlobal(place));
    QApplication::sendEvent(&button, &event);
    QMenu& menu = ambrel::test::child<QMenu>(*dialog, "PMGuardarPorProvincia");
    EXPECT_TRUE(menu.isVisible());
    menu.close();
}

TEST_F(ImportDialog, EveryWayOutAnswersTwo) {
    ambrel::test::expectModalResults(
        [this] { return std::make_unique<TFImportarVias>(nullptr, *controller); },
        {{"BBCancelar", 2}, {"Escape", 2}, {"close box", 2}});
}

TEST_F(ImportDialog, ClosingRemovesTempCallesThatItDidNotCreate) {
    show();
    const QString copy = QString::fromStdString(ambrel::scratchFile());
    EXPECT_TRUE(copy.endsWith(QStringLiteral("/TempCalles.XML")));
    QFile stranger(copy);
    ASSERT_TRUE(stranger.open(QIODevice::WriteOnly));
    stranger.close();
    dialog->reject();
    EXPECT_FALSE(QFile::exists(copy));
    EXPECT_EQ(items("CBProvinciasAmbrel"), Texts());
}

// --- The host's places.

TEST_F(ImportDialog, HostMunicipalitiesAreSortedInSpanishWithTheirCodes) {
    show();
    choose("CBProvinciasAmbrel", "MADRID");
    press(Qt::Key_Tab);
    EXPECT_EQ(items("CBMunicipiosAmbrel"), (Texts{"ÁLAMOS, LOS", "ALPEDRETE", "ARANJUEZ/REAL SITIO",
                                                  "ESCORIAL (EL)", "MADRID", "MADRID", "PARLA", "PARLA"}))
        << "accents do not matter; minor entities are there";
    EXPECT_EQ(combo("CBMunicipiosAmbrel").itemData(4).toInt(), 28001) << "equal names as they were loaded";
    EXPECT_EQ(combo("CBMunicipiosAmbrel").itemData(5).toInt(), 28002);
    EXPECT_EQ(chosen("CBMunicipiosAmbrel"), "");
    EXPECT_EQ(focused(), "CBMunicipiosAmbrel");
    EXPECT_EQ(progress, (Texts{"Cargando el listado de municipios de MADRID"}));
    EXPECT_FALSE(isProgressOpen());
}

TEST_F(ImportDialog, LeavingTheHostProvinceWithoutOneSaysSo) {
    show();
    expectBox("Indique una provincia para poder seleccionar el municipio", "Faltan datos");
    combo("CBProvinciasAmbrel").setFocus();
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), "CBMunicipiosAmbrel");
}

// --- Opened from the list of streets.

TEST_F(ImportDialog, SearchDialogOpensItModallyAndFreesIt) {
    ASSERT_TRUE(controller->BuscaPorNombreMunicipi("ALPEDRETE", true));
    ambrel::test::ModalScript script;
    script.expect("TFBuscarDireccionPostal", [&](QDialog& list) {
        script.expect("TFImportarVias", [](QDialog& import) {
            EXPECT_TRUE(import.isModal());
            ambrel::test::child<QPushButton>(import, "BBCancelar").click();
        });
        ambrel::test::child<QPushButton>(list, "BBImportar").click();
        EXPECT_EQ(list.findChild<TFImportarVias*>(), nullptr);
        list.reject();
    });
    EXPECT_FALSE(controller->BuscarDireccionPostal(false));
    EXPECT_TRUE(script.isDone());
}

} // namespace
