// The list of streets and the street card without a mouse.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QDialog>
#include <QPushButton>
#include <QTest>

#include "accessibility/Forms.h"
#include "data/CodPostalesDM.h"
#include "services/TagProperty.h"
#include "support/ModalScript.h"
#include "support/ScriptedMessages.h"
#include "support/ShownWindow.h"

namespace accessibility_tests {
namespace {

class KeyboardStreets : public Forms {
protected:
    /// The question that a card asks before it discards changes.
    static void expectCancelQuestion(ambrel::test::ScriptedMessages& messages) {
        messages.expect(QStringLiteral("¿Desea cancelar esta operación (S/N)?"),
                        QStringLiteral("Esta modificando los datos de una via"), QStringLiteral("Atención"),
                        ambrel::MessageAnswer::Yes);
    }
    static void leave(QDialog& dialog) { press(dialog, Qt::Key_Escape); }

    [[nodiscard]] std::string street() const { return controller->DM->tbPostalVIA.text(); }
};

TEST_F(KeyboardStreets, AStreetIsSearchedInAProvinceChosenAndAccepted) {
    show(Form::BuscarDireccionPostal, [this](QWidget& window) {
        ASSERT_EQ(focused(window), "EVia");
        press(window, Qt::Key_Tab);
        const auto& provinces = ambrel::test::child<QComboBox>(window, "CBProvincia");
        while (!provinces.currentText().startsWith(QStringLiteral("MADRID"))) {
            press(window, Qt::Key_Down);
        }
        press(window, Qt::Key_Backtab, Qt::ShiftModifier);
        type(window, QStringLiteral("ALC"));
        EXPECT_EQ(street(), "ALCALA");
        press(window, Qt::Key_Down);
        press(window, Qt::Key_Tab);
        press(window, Qt::Key_Tab);
        press(window, Qt::Key_Tab);
        ASSERT_EQ(focused(window), "DBGPostal");
        EXPECT_EQ(street(), "GRAN VIA");
        press(window, Qt::Key_Down);
        EXPECT_EQ(street(), "MAYOR");
        pressAltToClose(window, Qt::Key_A);
        EXPECT_EQ(ambrel::tagOf(window), 1);
        EXPECT_EQ(street(), "MAYOR");
    });
}

TEST_F(KeyboardStreets, EachOperationOnAStreetHasAKey) {
    show(Form::BuscarDireccionPostal, [this](QWidget& window) {
        type(window, QStringLiteral("GRAN"));
        while (focused(window) != "DBGPostal") {
            press(window, Qt::Key_Tab);
        }
        ambrel::test::ModalScript script;
        ambrel::test::ScriptedMessages messages;
        expectCancelQuestion(messages); // for the two that change something
        expectCancelQuestion(messages);
        const auto expectCard = [&](const char* caption) {
            script.expect("TFFichaVia", [=](QDialog& card) {
                EXPECT_EQ(ambrel::test::child<QPushButton>(card, "BBAceptar").text().toStdString(), caption);
                leave(card);
            });
        };
        const auto pressIn = [&](Qt::Key key, Qt::KeyboardModifiers modifiers) {
            ambrel::test::showActive(window);
            press(window, key, modifiers);
        };
        expectCard("&Aceptar");
        pressIn(Qt::Key_Space, {});
        expectCard("&Borrar");
        pressIn(Qt::Key_Delete, {});
        expectCard("&Aceptar");
        pressIn(Qt::Key_Insert, Qt::ShiftModifier);
        expectCard("&Aceptar");
        pressIn(Qt::Key_Insert, {});
        EXPECT_TRUE(script.isDone());
    });
}

/// On these two buttons Space shows the street, and Enter moves on.
TEST_F(KeyboardStreets, ImportAndUpdateHaveALetterOfTheirOwn) {
    show(Form::BuscarDireccionPostal, [](QWidget& window) {
        {
            ambrel::test::ModalScript script;
            script.expect("TFImportarVias", leave);
            press(window, Qt::Key_I, Qt::AltModifier);
        }
        ambrel::test::showActive(window);
        ambrel::test::ScriptedMessages messages;
        messages.expect(QStringLiteral("¿Seguro que desea actualizar los Códigos INE de las vías?"),
                        QStringLiteral("Esta operación tomará varios minutos"),
                        QStringLiteral("Actualizar la tabla Postales"), ambrel::MessageAnswer::No);
        press(window, Qt::Key_C, Qt::AltModifier);
    });
}

TEST_F(KeyboardStreets, ANewStreetIsFilledInAndAccepted) {
    show(Form::FichaViaNueva, [this](QWidget& window) {
        ASSERT_EQ(focused(window), "EVecindad");
        type(window, QStringLiteral("alpedrete"));
        press(window, Qt::Key_Tab);
        ASSERT_EQ(focused(window), "CBProvincia");
        const auto& provinces = ambrel::test::child<QComboBox>(window, "CBProvincia");
        while (!provinces.currentText().startsWith(QStringLiteral("MADRID"))) {
            press(window, Qt::Key_Down);
        }
        press(window, Qt::Key_Tab);
        const auto& types = ambrel::test::child<QComboBox>(window, "CBTipoVia");
        while (!types.currentText().startsWith(QStringLiteral("PZ"))) {
            press(window, Qt::Key_Down);
        }
        press(window, Qt::Key_Tab);
        type(window, QStringLiteral("nueva"));
        press(window, Qt::Key_Return);
        ASSERT_EQ(focused(window), "DBECodPostal");
        pressAltToClose(window, Qt::Key_A);
        EXPECT_EQ(dynamic_cast<QDialog&>(window).result(), 1);
    });
    dbase::Dataset table("DB", "POSTAL");
    table.open();
    table.last();
    EXPECT_EQ(table.field("VIA").text(), "NUEVA");
    EXPECT_EQ(table.field("TIPO_VIA").text(), "PZ");
    EXPECT_EQ(table.field("CODPOSTAL").text(), "28430");
}

TEST_F(KeyboardStreets, TheArrowOpensTheListOfMunicipalities) {
    show(Form::FichaViaNueva, [](QWidget& window) {
        ambrel::test::ModalScript script;
        script.expect("TFMunicipiLista", leave);
        press(window, Qt::Key_Down);
        EXPECT_TRUE(script.isDone());
    });
}

TEST_F(KeyboardStreets, ACardIsLeftByEscapeOrItsLetter) {
    for (const Form form : {Form::FichaViaNueva, Form::FichaViaConsulta}) {
        SCOPED_TRACE(nameOf(form));
        ambrel::test::ScriptedMessages messages;
        if (form == Form::FichaViaNueva) {
            expectCancelQuestion(messages);
            expectCancelQuestion(messages);
        }
        show(form, [](QWidget& window) {
            leave(dynamic_cast<QDialog&>(window));
            EXPECT_FALSE(window.isVisible());
        });
        show(form, [](QWidget& window) { pressAltToClose(window, Qt::Key_S); });
    }
}

} // namespace
} // namespace accessibility_tests
