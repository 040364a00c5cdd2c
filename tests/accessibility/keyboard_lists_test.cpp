// The pick lists without a mouse: searching, choosing a row, another order, accepting and leaving.
#include <gtest/gtest.h>

#include <QDialog>
#include <QKeyEvent>
#include <QTest>

#include "accessibility/Forms.h"
#include "data/CodPostalesDM.h"
#include "data/MunicipiDM.h"
#include "data/ViasDM.h"
#include "dialogs/ProvList.h"
#include "services/TagProperty.h"

namespace accessibility_tests {
namespace {

class KeyboardLists : public Forms {
protected:
    static int resultOf(const QWidget& window) { return dynamic_cast<const QDialog&>(window).result(); }
};

TEST_F(KeyboardLists, AMunicipalityIsSearchedChosenAndAccepted) {
    show(Form::MunicipiLista, [](QWidget& window) {
        ASSERT_EQ(focused(window), "ENOMBRE");
        type(window, QStringLiteral("BAR"));
        EXPECT_EQ(DMMunicipi->tbMunicipiNOMBRE.text(), "BARCELONA");
        press(window, Qt::Key_Tab);
        ASSERT_EQ(focused(window), "DBGMUNICIPI");
        press(window, Qt::Key_End);
        press(window, Qt::Key_Up);
        EXPECT_EQ(DMMunicipi->tbMunicipiCODPOSTAL.text(), "28001");
        pressAltToClose(window, Qt::Key_A);
        EXPECT_EQ(resultOf(window), 1);
        EXPECT_EQ(DMMunicipi->tbMunicipiNOMBRE.text(), "MADRID");
    });
}

TEST_F(KeyboardLists, GoingToABoxOrdersTheMunicipalitiesAsItsTitleDoes) {
    show(Form::MunicipiLista, [](QWidget& window) {
        press(window, Qt::Key_Backtab, Qt::ShiftModifier);
        EXPECT_EQ(DMMunicipi->tbMunicipi.tag(), "CODPOSTAL");
        press(window, Qt::Key_Backtab, Qt::ShiftModifier);
        EXPECT_EQ(DMMunicipi->tbMunicipi.tag(), "COD_INE");
        press(window, Qt::Key_Tab);
        press(window, Qt::Key_Tab);
        EXPECT_EQ(DMMunicipi->tbMunicipi.tag(), "NOMBRE");
    });
}

TEST_F(KeyboardLists, AListIsLeftByEscapeOrItsLetter) {
    for (const Form form : {Form::MunicipiLista, Form::BuscarMunicipios, Form::MunicipiListaMJ,
                            Form::ProvList, Form::TipoViasLista, Form::BuscarDireccionPostal}) {
        SCOPED_TRACE(nameOf(form));
        show(form, [](QWidget& window) {
            press(window, Qt::Key_Escape);
            EXPECT_FALSE(window.isVisible());
            EXPECT_EQ(resultOf(window), 2);
        });
        show(form, [](QWidget& window) {
            pressAltToClose(window, Qt::Key_S);
            EXPECT_EQ(resultOf(window), 2);
        });
    }
}

TEST_F(KeyboardLists, AnAcceptButtonIsPressedByTheSpaceKeyToo) {
    for (const Form form : {Form::MunicipiLista, Form::BuscarMunicipios, Form::MunicipiListaMJ,
                            Form::ProvList, Form::TipoViasLista}) {
        SCOPED_TRACE(nameOf(form));
        show(form, [](QWidget& window) {
            while (focused(window) != "BBAceptar") {
                press(window, Qt::Key_Tab);
            }
            press(window, Qt::Key_Space);
            EXPECT_FALSE(window.isVisible());
            EXPECT_EQ(resultOf(window), 1);
        });
    }
}

TEST_F(KeyboardLists, TheControllersListIsSearchedAndAccepted) {
    show(Form::BuscarMunicipios, [this](QWidget& window) {
        press(window, Qt::Key_Backtab, Qt::ShiftModifier);
        ASSERT_EQ(focused(window), "ECODPOSTAL");
        type(window, QStringLiteral("2843"));
        EXPECT_EQ(controller->DM->tbMunicipiNOMBRE.text(), "ALPEDRETE");
        press(window, Qt::Key_Down);
        EXPECT_NE(controller->DM->tbMunicipiNOMBRE.text(), "ALPEDRETE");
        press(window, Qt::Key_Up);
        pressAltToClose(window, Qt::Key_A);
        EXPECT_EQ(ambrel::tagOf(window), 1);
        EXPECT_EQ(controller->DM->tbMunicipiNOMBRE.text(), "ALPEDRETE");
    });
}

TEST_F(KeyboardLists, TheAlternativeListIsSearchedAndAccepted) {
    show(Form::MunicipiListaMJ, [](QWidget& window) {
        type(window, QStringLiteral("SAN"));
        press(window, Qt::Key_Tab);
        press(window, Qt::Key_Up);
        pressAltToClose(window, Qt::Key_A);
        EXPECT_EQ(resultOf(window), 1);
        EXPECT_EQ(DMMunicipi->tbMunicipiMJPOBLLITE.text(), "MADRID");
    });
}

TEST_F(KeyboardLists, AProvinceIsSearchedByNameOrCodeAndAccepted) {
    show(Form::ProvList, [](QWidget& window) {
        press(window, Qt::Key_A, Qt::ControlModifier);
        type(window, QStringLiteral("MAD"));
        press(window, Qt::Key_Up);
        press(window, Qt::Key_Down);
        pressAltToClose(window, Qt::Key_A);
        EXPECT_EQ(dynamic_cast<TFProvList&>(window).chosenName().toStdString(), "MADRID");
    });
    show(Form::ProvList, [](QWidget& window) {
        press(window, Qt::Key_A, Qt::ControlModifier);
        type(window, QStringLiteral("38"));
        press(window, Qt::Key_Tab);
        ASSERT_EQ(focused(window), "DBGProvincias");
        press(window, Qt::Key_Home);
        pressAltToClose(window, Qt::Key_A);
        EXPECT_EQ(dynamic_cast<TFProvList&>(window).chosenCode(), 8);
    });
}

/// The release of the letter must not search for the typed text again.
TEST_F(KeyboardLists, TheRowAfterASearchIsTheOneAccepted) {
    show(Form::TipoViasLista, [](QWidget& window) {
        type(window, QStringLiteral("C"));
        press(window, Qt::Key_Down);
        QWidget* const box = window.focusWidget();
        QTest::keyPress(box, Qt::Key_A, Qt::AltModifier);
        EXPECT_EQ(resultOf(window), 1);
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_A, Qt::AltModifier);
        QCoreApplication::sendEvent(box, &release);
        EXPECT_EQ(DMVias->tbTipo_Via.field("CODIGO").text(), "PZ");
    });
}

} // namespace
} // namespace accessibility_tests
