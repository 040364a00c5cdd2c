// TFFichaVia: choosing the municipality, and what it brings along.
#include <gtest/gtest.h>

#include <QTest>

#include "data/MunicipiDM.h"
#include "dialogs/StreetCardForm.h"
#include "services/Confamb.h"
#include "services/TagProperty.h"
#include "support/ModalScript.h"

namespace {

using ambrel::MessageAnswer;
using ambrel::tagOf;
using ambrel::test::child;
using ambrel::test::ModalScript;

class StreetCardMunicipality : public postal_tests::StreetCardForm {
protected:
    void expectPostalCodeQuestion(MessageAnswer answer) {
        messages.expect("¿Desea actualizar el código código postal?",
                        "El código postal difiere al que hay establecido", "Atención", answer);
    }
    void expectListQuestion(MessageAnswer answer) {
        messages.expect("¿Desea ver la lista de municipios actuales?", "ATENCIÓN", "Atención", answer);
    }
    /// Types into an empty EVecindad and leaves it.
    void leaveWith(const QString& municipality) {
        enter("EVecindad");
        edit("EVecindad").clear();
        typeInto("EVecindad", municipality);
        leaveByTab();
    }
    /// Expects the list, with `nearest` as the current row, and accepts the row `chosen`.
    void expectList(const std::string& tag, const std::string& nearest, const std::string& chosen) {
        script.expect("TFMunicipiLista", [=](QDialog& list) {
            EXPECT_EQ(DMMunicipi->tbMunicipi.tag(), tag);
            EXPECT_EQ(DMMunicipi->tbMunicipiCOD_INE.text(), nearest);
            for (DMMunicipi->tbMunicipi.first(); DMMunicipi->tbMunicipiCOD_INE.text() != chosen;) {
                ASSERT_TRUE(DMMunicipi->tbMunicipi.next());
            }
            child<QPushButton>(list, "BBAceptar").click();
        });
    }
    void expectCancelledList() {
        script.expect("TFMunicipiLista",
                      [](QDialog& list) { child<QPushButton>(list, "BBCancelar").click(); });
    }

    ModalScript script;
};

// --- Typing

TEST_F(StreetCardMunicipality, TheTagHoldsThePostalCodeOfAWholeName) {
    openCard(opAlta);
    edit("EVecindad").setText("MADRID");
    EXPECT_EQ(tagOf(edit("EVecindad")), 28013);
    edit("EVecindad").setText("MADRI");
    EXPECT_EQ(tagOf(edit("EVecindad")), 0);
    edit("EVecindad").clear();
    typeInto("EVecindad", "madrid");
    EXPECT_EQ(tagOf(edit("EVecindad")), 28013) << "also when nothing was left to complete";
}

TEST_F(StreetCardMunicipality, TypingCompletesTheName) {
    openCard(opAlta);
    typeInto("EVecindad", "alcob");
    EXPECT_EQ(textOf("EVecindad"), "ALCOBENDAS");
    EXPECT_EQ(edit("EVecindad").selectedText(), "ENDAS");
    EXPECT_EQ(tagOf(edit("EVecindad")), 28100);
}

// --- Leaving

TEST_F(StreetCardMunicipality, LeavingFillsAnEmptyProvinceWithTheMunicipalityAndTheCode) {
    openCard(opAlta);
    leaveWith("ALCOBENDAS");
    EXPECT_EQ(textOf("CBProvincia"), "ALCOBENDAS [28]");
    EXPECT_EQ(value("CODPOSTAL"), "28100");
    EXPECT_EQ(textOf("DBECodPostal"), "28100");
}

TEST_F(StreetCardMunicipality, TheNameOfTheProvinceStaysAndOnlyItsCodeChanges) {
    openCard(opAlta);
    combo("CBProvincia").setEditText("MADRID [28]");
    leaveWith("BARCELONA");
    EXPECT_EQ(textOf("CBProvincia"), "MADRID [08]");
}

TEST_F(StreetCardMunicipality, TheNumberOfTheTagHasNoLeadingZero) {
    openCard(opAlta);
    leaveWith("BARCELONA");
    EXPECT_EQ(textOf("DBECodPostal"), "8001");
}

TEST_F(StreetCardMunicipality, AnUnknownMunicipalityGivesThePostalCode0) {
    openCard(opAlta);
    expectListQuestion(MessageAnswer::No);
    leaveWith("NINGUNO");
    EXPECT_TRUE(messages.isDone());
    EXPECT_EQ(textOf("DBECodPostal"), "0");
}

TEST_F(StreetCardMunicipality, AMunicipalityWithOnePostalCodeAsksBeforeItReplacesAnother) {
    openCard(opModificacion);
    expectPostalCodeQuestion(MessageAnswer::Yes);
    leaveWith("ALCALA DE HENARES");
    EXPECT_TRUE(messages.isDone());
    EXPECT_EQ(textOf("DBECodPostal"), "28801");
    EXPECT_EQ(value("CODPOSTAL"), "28801");
    EXPECT_EQ(textOf("CBProvincia"), "MADRID [28]");
}

TEST_F(StreetCardMunicipality, NoKeepsPostalCodeAndProvince) {
    openCard(opModificacion);
    combo("CBProvincia").setEditText("MADRID [99]");
    expectPostalCodeQuestion(MessageAnswer::No);
    leaveWith("ALCALA DE HENARES");
    EXPECT_TRUE(messages.isDone());
    EXPECT_EQ(textOf("DBECodPostal"), "28013");
    EXPECT_EQ(textOf("CBProvincia"), "MADRID [99]");
}

TEST_F(StreetCardMunicipality, TheSamePostalCodeAsksNothing) {
    openCard(opModificacion);
    leaveWith("BARCELONA"); // it has several codes, so the code stays
    EXPECT_EQ(textOf("DBECodPostal"), "28013");
    EXPECT_EQ(textOf("CBProvincia"), "MADRID [08]");
}

TEST_F(StreetCardMunicipality, LeavingTakesTheFocusColourAway) {
    openCard(opModificacion);
    enter("EVecindad");
    const QColor focusedColour = edit("EVecindad").palette().color(QPalette::Base);
    leaveByTab();
    EXPECT_NE(edit("EVecindad").palette().color(QPalette::Base), focusedColour);
}

// --- The list

TEST_F(StreetCardMunicipality, TheListSearchesByTheKeyThatTheConfigurationNames) {
    struct Way {
        int number;
        std::string tag, nearest;
    };
    for (const Way& way :
         {Way{1, "CODPOSTAL", "28079"}, Way{2, "COD_INE", "28079"}, Way{3, "NOMBRE", "28006"},
          Way{0, "NOMBRE", "28006"}, Way{28079, "NOMBRE", "28006"}}) {
        SCOPED_TRACE(way.number);
        Config.setMunicipality(way.number, "");
        openCard(opModificacion, "ALCOBENDAS");
        controller->BuscaPorNombreMunicipi("ALCOBENDAS", true);
        expectList(way.tag, way.nearest, way.nearest);
        if (way.nearest != "28079") {
            expectPostalCodeQuestion(MessageAnswer::No);
        }
        QTest::mouseClick(&button("BBListar"), Qt::LeftButton);
        EXPECT_TRUE(messages.isDone());
        streets().cancel();
        card.reset();
        chooseMunicipality("MADRID");
    }
}

TEST_F(StreetCardMunicipality, TheListSearchesTheHostsOwnMunicipalityWhereTheCardHasNone) {
    for (const auto& [number, own] : {std::pair(1, "08001"), std::pair(3, "BARCELONA")}) {
        SCOPED_TRACE(number);
        Config.setMunicipality(number, own);
        openCard(opAlta);
        expectList(number == 1 ? "CODPOSTAL" : "NOMBRE", "08019", "08019");
        QTest::mouseClick(&button("BBListar"), Qt::LeftButton);
        EXPECT_EQ(textOf("EVecindad"), "BARCELONA");
        EXPECT_EQ(textOf("DBECodPostal"), "08001");
        EXPECT_EQ(textOf("CBProvincia"), "BARCELONA [08]");
        streets().cancel();
        card.reset();
        chooseMunicipality("MADRID");
    }
}

TEST_F(StreetCardMunicipality, DownOpensTheListAndTheChoiceAsksBeforeItReplacesThePostalCode) {
    openCard(opModificacion);
    expectList("NOMBRE", "28079", "28005");
    expectPostalCodeQuestion(MessageAnswer::Yes);
    enter("EVecindad");
    press(Qt::Key_Down);
    EXPECT_TRUE(messages.isDone());
    EXPECT_EQ(textOf("EVecindad"), "ALCALA DE HENARES");
    EXPECT_EQ(textOf("DBECodPostal"), "28801");
}

TEST_F(StreetCardMunicipality, AListThatIsCancelledChangesNothing) {
    openCard(opModificacion);
    expectCancelledList();
    QTest::mouseClick(&button("BBListar"), Qt::LeftButton);
    EXPECT_TRUE(script.isDone());
    EXPECT_EQ(textOf("EVecindad"), "MADRID");
    EXPECT_EQ(textOf("DBECodPostal"), "28013");
}

TEST_F(StreetCardMunicipality, OfTwoWithOneNameTheChosenOneIsCurrent) {
    openCard(opAlta);
    expectList("NOMBRE", "28005", "31213");
    QTest::mouseClick(&button("BBListar"), Qt::LeftButton);
    EXPECT_EQ(textOf("EVecindad"), "SADA");
    EXPECT_EQ(textOf("DBECodPostal"), "31491");
    EXPECT_EQ(controller->DM->tbMunicipiCOD_INE.text(), "31213");
    combo("CBProvincia").setEditText("NAVARRA [31]");
    combo("CBTipoVia").setEditText("CL");
    edit("DBEVia").setText("MAYOR");
    button("BBAceptar").click();
    EXPECT_FALSE(card->isVisible());
    EXPECT_EQ(stored("99000004", "PROVINCIA"), "31");
}

TEST_F(StreetCardMunicipality, OfTwoWithOneNameTheFirstCanBeChosenAgain) {
    openCard(opAlta);
    expectList("NOMBRE", "28005", "31213");
    QTest::mouseClick(&button("BBListar"), Qt::LeftButton);
    expectList("NOMBRE", "15075", "15075");
    expectPostalCodeQuestion(MessageAnswer::Yes);
    QTest::mouseClick(&button("BBListar"), Qt::LeftButton);
    EXPECT_EQ(textOf("DBECodPostal"), "15160");
    EXPECT_EQ(controller->DM->tbMunicipiCOD_INE.text(), "15075");
}

TEST_F(StreetCardMunicipality, OfTwoWithOneNameTheOneChosenOnLeavingIsCurrent) {
    openCard(opAlta);
    expectListQuestion(MessageAnswer::Yes);
    script.expect("TFBuscarMunicipios", [&](QDialog& list) {
        dbase::Dataset& municipalities = controller->DM->tbMunicipi;
        for (municipalities.first(); controller->DM->tbMunicipiCOD_INE.text() != "31213";) {
            ASSERT_TRUE(municipalities.next());
        }
        child<QPushButton>(list, "BBAceptar").click();
    });
    leaveWith("XX");
    EXPECT_EQ(textOf("EVecindad"), "SADA");
    EXPECT_EQ(controller->DM->tbMunicipiCOD_INE.text(), "31213");
    EXPECT_EQ(textOf("CBProvincia"), "XX [31]");
}

TEST_F(StreetCardMunicipality, OfTwoWithOneNameTheStreetsOwnIsCurrent) {
    dbase::Dataset table("DB", "POSTAL", "CODIGO1");
    table.open();
    ASSERT_TRUE(table.seek({{"CODIGO1", "99000000"}}, dbase::SeekMode::Exact));
    table.edit();
    table.field("CODPOSTAL").setText("31491");
    table.field("PROVINCIA").setText("31");
    table.post();
    openCard(opModificacion, "SADA");
    EXPECT_EQ(controller->DM->tbMunicipiCOD_INE.text(), "31213");
    button("BBAceptar").click();
    EXPECT_FALSE(card->isVisible());
    EXPECT_EQ(stored("99000000", "PROVINCIA"), "31");
}

} // namespace
