// Trying the package's routines from the menus: arguments in, results out.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

#include "host/FormTest.h"
#include "host/routines/Catalogue.h"
#include "services/Confamb.h"
#include "support/ModalScript.h"

namespace {

using ambrel::test::child;
using ambrel::test::ModalScript;
using host_tests::clickIn;
using host_tests::FormTest;

constexpr const char* routineDialog = "host::routines::RoutineDialog";

void give(QDialog& dialog, const char* argument, const QString& text) {
    auto& edit = child<QLineEdit>(dialog, argument);
    edit.setFocus();
    edit.selectAll();
    QTest::keyClicks(&edit, text);
    if (text.isEmpty()) {
        QTest::keyClick(&edit, Qt::Key_Delete);
    }
}

void give(QDialog& dialog, const char* argument, int number) {
    auto& box = child<QSpinBox>(dialog, argument);
    box.setFocus();
    box.selectAll();
    QTest::keyClicks(&box, QString::number(number));
}

QString shown(QDialog& dialog, const char* result) { return child<QLineEdit>(dialog, result).text(); }

class RoutinesTest : public FormTest {
protected:
    RoutinesTest() {
        addStreetTypes({{"AL", "ALDEA, ALAMEDA"}});
        addAlternativeMunicipalities({{"28", "MADRID"}, {"33", "MIERES"}, {"17", "MIERES"}});
    }

    /// Opens the dialog of a menu entry, runs a step in it, and closes it.
    void attempt(const char* entry, const ModalScript::Step& step) {
        dialogs.expect(routineDialog, [step](QDialog& dialog) {
            step(dialog);
            clickIn(dialog, "BBCerrar");
        });
        choose(entry);
    }

    ambrel::test::ScriptedMessages messages;
    ModalScript dialogs;
};

/// Sets the font size of a desktop.
class DesktopFont {
public:
    DesktopFont() {
        QFont font = usual_;
        font.setPointSize(9);
        QApplication::setFont(font);
    }
    ~DesktopFont() { QApplication::setFont(usual_); }
    DesktopFont(const DesktopFont&) = delete;
    DesktopFont& operator=(const DesktopFont&) = delete;

private:
    const QFont usual_ = QApplication::font();
};

TEST_F(RoutinesTest, EveryDialogFitsOnASmallScreen) {
    const DesktopFont font;
    open();
    for (const auto& list : {host::routines::municipalityLists(), host::routines::otherLists(),
                             host::routines::streetLists(), host::routines::utilities()}) {
        for (const host::routines::Routine& routine : list) {
            attempt(qPrintable(routine.object), [&](QDialog& dialog) {
                EXPECT_LE(dialog.height(), 470) << routine.object.toStdString();
                EXPECT_LE(dialog.width(), 790) << routine.object.toStdString();
                for (const auto* line : dialog.findChildren<QLineEdit*>()) {
                    EXPECT_GE(line->width(), line->fontMetrics().averageCharWidth() * 16)
                        << routine.object.toStdString() << ' ' << line->objectName().toStdString();
                }
                for (const auto* label : dialog.findChildren<QLabel*>()) {
                    EXPECT_GE(label->width(), label->wordWrap() ? 1 : label->sizeHint().width())
                        << routine.object.toStdString() << ' ' << label->text().toStdString();
                }
            });
        }
    }
}

TEST_F(RoutinesTest, EveryRoutineHasItsEntryAndItsDialog) {
    open();
    int count = 0;
    for (const auto& list : {host::routines::municipalityLists(), host::routines::otherLists(),
                             host::routines::streetLists(), host::routines::utilities()}) {
        for (const host::routines::Routine& routine : list) {
            SCOPED_TRACE(routine.object.toStdString());
            attempt(qPrintable(routine.object), [&](QDialog& dialog) {
                EXPECT_EQ(child<QLabel>(dialog, "LRutina").text(), routine.name);
                for (const auto& argument : routine.arguments) {
                    const auto* editor = dialog.findChild<QWidget*>(argument.object);
                    ASSERT_TRUE(editor) << argument.object.toStdString();
                    EXPECT_FALSE(editor->accessibleName().isEmpty());
                }
                for (const auto& result : routine.results) {
                    EXPECT_TRUE(child<QLineEdit>(dialog, qPrintable(result.object)).isReadOnly());
                }
                ++count;
            });
        }
    }
    EXPECT_EQ(count, 14);
    EXPECT_EQ(window().menuBar()->actions().size(), 2);
}

TEST_F(RoutinesTest, Tipo_ViaGivesTheNameUpToTheComma) {
    open();
    attempt("MITipo_Via", [](QDialog& dialog) {
        give(dialog, "EAbreviatura", "AL");
        clickIn(dialog, "BBEjecutar");
        EXPECT_EQ(shown(dialog, "RResultado"), QStringLiteral("ALDEA"));
    });
}

TEST_F(RoutinesTest, Tipo_ViaMayAskAndShowItsList) {
    open();
    messages.expect(QStringLiteral("¿Desea buscarlo en la relación alfabética (S/N)?"),
                    QStringLiteral("No se ha encontrado ningún tipo de vía con esta abreviatura"),
                    QStringLiteral("Atención"), ambrel::MessageAnswer::Yes);
    attempt("MITipo_Via", [&](QDialog& dialog) {
        give(dialog, "EAbreviatura", "XX");
        dialogs.expect("TFTipoViasLista", [](QDialog& list) { clickIn(list, "BBAceptar"); });
        clickIn(dialog, "BBEjecutar");
        EXPECT_EQ(shown(dialog, "RResultado"), QStringLiteral("AL"));
        child<QCheckBox>(dialog, "CHPregunta").setChecked(false);
        clickIn(dialog, "BBEjecutar");
        EXPECT_EQ(shown(dialog, "RResultado"), QString());
    });
}

TEST_F(RoutinesTest, Tipo_Via2FillsTheNameOfAKnownAbbreviation) {
    open();
    attempt("MITipo_Via2", [](QDialog& dialog) {
        give(dialog, "EAbreviatura", "AL");
        clickIn(dialog, "BBEjecutar");
        EXPECT_EQ(shown(dialog, "RResultado"), QString());
        EXPECT_EQ(shown(dialog, "RNombre"), QStringLiteral("ALDEA, ALAMEDA"));
    });
}

TEST_F(RoutinesTest, IMunicipiosShowsItsListAndFillsAllResults) {
    open();
    attempt("MIIMunicipios", [&](QDialog& dialog) {
        give(dialog, "ENombre", "H");
        dialogs.expect("TFMunicipiLista", [](QDialog& list) {
            EXPECT_EQ(list.windowTitle(), QStringLiteral("Municipios"));
            clickIn(list, "BBAceptar");
        });
        clickIn(dialog, "BBEjecutar");
        EXPECT_EQ(shown(dialog, "RAceptado"), QStringLiteral("sí"));
        EXPECT_EQ(shown(dialog, "RCodIne"), QStringLiteral("26071"));
        EXPECT_EQ(shown(dialog, "RCodPostal"), QStringLiteral("26200"));
        EXPECT_EQ(shown(dialog, "RNombre"), QStringLiteral("HARO"));
        EXPECT_EQ(shown(dialog, "RProvincia"), QStringLiteral("RIOJA, LA"));
        EXPECT_EQ(shown(dialog, "RCodProvincia"), QStringLiteral("026"));
    });
}

TEST_F(RoutinesTest, IMunicipiosWithoutChoiceChangesNothing) {
    open();
    attempt("MIIMunicipios", [&](QDialog& dialog) {
        child<QComboBox>(dialog, "CBOrden").setCurrentText(QStringLiteral("CODPOSTAL"));
        give(dialog, "ECodPostal", "28001");
        give(dialog, "ENombre", "");
        dialogs.expect("TFMunicipiLista", [](QDialog& list) { clickIn(list, "BBCancelar"); });
        clickIn(dialog, "BBEjecutar");
        EXPECT_EQ(shown(dialog, "RAceptado"), QStringLiteral("no"));
        EXPECT_EQ(shown(dialog, "RCodPostal"), QStringLiteral("28001"));
        EXPECT_EQ(shown(dialog, "RNombre"), QString());
    });
}

TEST_F(RoutinesTest, IMunicipiosMJShowsTheAlternativeList) {
    open();
    attempt("MIIMunicipiosMJ", [&](QDialog& dialog) {
        give(dialog, "ENombre", "MA");
        dialogs.expect("TFMunicipiListaMJ", [](QDialog& list) { clickIn(list, "BBAceptar"); });
        clickIn(dialog, "BBEjecutar");
        EXPECT_EQ(shown(dialog, "RAceptado"), QStringLiteral("sí"));
        EXPECT_EQ(shown(dialog, "RNombre"), QStringLiteral("MADRID"));
        EXPECT_EQ(shown(dialog, "RCodProvincia"), QStringLiteral("28"));
    });
}

TEST_F(RoutinesTest, IBuscaMunicipioResolvesANameOfOneWithoutAsking) {
    open();
    attempt("MIIBuscaMunicipio", [](QDialog& dialog) {
        give(dialog, "ENombre", "MADRID");
        clickIn(dialog, "BBEjecutar");
        EXPECT_EQ(shown(dialog, "RHallado"), QStringLiteral("sí"));
        EXPECT_EQ(shown(dialog, "RCodIne"), QStringLiteral("28079"));
        EXPECT_EQ(shown(dialog, "RCapital"), QStringLiteral("0"));
    });
}

TEST_F(RoutinesTest, IBuscaMunicipioShowsTheListForANameOfTwo) {
    open();
    attempt("MIIBuscaMunicipio", [&](QDialog& dialog) {
        give(dialog, "ENombre", "MIERES");
        dialogs.expect("TFMunicipiLista", [](QDialog& list) { clickIn(list, "BBCancelar"); });
        clickIn(dialog, "BBEjecutar");
        EXPECT_EQ(shown(dialog, "RHallado"), QStringLiteral("no"));
    });
}

TEST_F(RoutinesTest, IBuscaMunicipioMJTellsTownsApartByTheirProvince) {
    open();
    attempt("MIIBuscaMunicipioMJ", [](QDialog& dialog) {
        give(dialog, "ENombre", "MIERES");
        give(dialog, "ECodProvincia", "33");
        clickIn(dialog, "BBEjecutar");
        EXPECT_EQ(shown(dialog, "RHallado"), QStringLiteral("sí"));
        EXPECT_EQ(shown(dialog, "RCodProvincia"), QStringLiteral("33"));
    });
}

TEST_F(RoutinesTest, BuscarMunicipiosLeavesTheFormsControllerAlone) {
    open();
    fill("EMunicipio", "mad");
    attempt("MIBuscarMunicipios", [&](QDialog& dialog) {
        dialogs.expect("TFBuscarMunicipios", [](QDialog& list) { clickIn(list, "BBAceptar"); });
        clickIn(dialog, "BBEjecutar");
        EXPECT_EQ(shown(dialog, "RNombre"), QStringLiteral("HARO")) << "the first in the order of names";
    });
    fill("EVia", "alc");
    EXPECT_EQ(text("EVia"), QStringLiteral("ALCALA"));
}

TEST_F(RoutinesTest, SeleccionaProvinciaFallsBackOnTheConfiguredProvince) {
    Config.setProvince(33, "ASTURIAS", "ASTURIAS");
    open();
    attempt("MISeleccionaProvincia", [&](QDialog& dialog) {
        give(dialog, "ECodigo", 0);
        dialogs.expect("TFProvList", [](QDialog& list) { clickIn(list, "BBCancelar"); });
        clickIn(dialog, "BBEjecutar");
        EXPECT_EQ(shown(dialog, "RCodigo"), QStringLiteral("33"));
        EXPECT_EQ(shown(dialog, "RNombre"), QStringLiteral("ASTURIAS"));
        EXPECT_EQ(shown(dialog, "RGrupo"), QStringLiteral("0"));
        dialogs.expect("TFProvList", [](QDialog& list) { clickIn(list, "BBAceptar"); });
        clickIn(dialog, "BBEjecutar");
        EXPECT_EQ(shown(dialog, "RCodigo"), QStringLiteral("17"));
        EXPECT_EQ(shown(dialog, "RGrupo"), QStringLiteral("1"));
    });
}

TEST_F(RoutinesTest, NamesAndAbbreviationsOfStreetTypes) {
    open();
    attempt("MITipo_ViaPorNombre", [](QDialog& dialog) {
        give(dialog, "ENombre", "PLAZA");
        clickIn(dialog, "BBEjecutar");
        EXPECT_EQ(shown(dialog, "RResultado"), QStringLiteral("PZ"));
    });
    attempt("MINombre_Via", [](QDialog& dialog) {
        give(dialog, "EAbreviatura", "AL");
        QTest::keyClick(&child<QLineEdit>(dialog, "EAbreviatura"), Qt::Key_Return); // runs it, too
        EXPECT_EQ(shown(dialog, "RResultado"), QStringLiteral("ALDEA, ALAMEDA"));
        give(dialog, "EAbreviatura", " AL");
        clickIn(dialog, "BBEjecutar");
        EXPECT_EQ(shown(dialog, "RResultado"), QString());
    });
}

TEST_F(RoutinesTest, DomicilioWritesTheCustomerThatIsShown) {
    addCustomers({{"Ana", "PZ", "MAYOR", "3", "28012", "MADRID", "MADRID"}});
    open();
    attempt("MIDomicilio", [](QDialog& dialog) {
        clickIn(dialog, "BBEjecutar");
        EXPECT_EQ(shown(dialog, "RResultado"), QStringLiteral("PLAZA MAYOR, 3 28012 MADRID"));
        give(dialog, "EAncho", 40);
        clickIn(dialog, "BBEjecutar");
        EXPECT_EQ(shown(dialog, "RLargo"), QStringLiteral("40"));
        give(dialog, "EAncho", -1);
        give(dialog, "EVecindad", 0);
        give(dialog, "ECodPostal", 0);
        clickIn(dialog, "BBEjecutar");
        EXPECT_EQ(shown(dialog, "RResultado"), QStringLiteral("PLAZA MAYOR NÚMERO 3"));
    });
}

TEST_F(RoutinesTest, BothRoutinesThatLocateAProvince) {
    open();
    attempt("MILocalizaProvincia", [](QDialog& dialog) {
        give(dialog, "ECodPostal", "26001");
        clickIn(dialog, "BBEjecutar");
        EXPECT_EQ(shown(dialog, "RCodigo"), QStringLiteral("026"));
        EXPECT_EQ(shown(dialog, "RNombre"), QStringLiteral("RIOJA, LA"));
    });
    attempt("MINombreProvincia", [](QDialog& dialog) {
        give(dialog, "ECodPostal", "33001");
        clickIn(dialog, "BBEjecutar");
        EXPECT_EQ(shown(dialog, "RNombre"), QStringLiteral("ASTURIAS"));
    });
}

} // namespace
