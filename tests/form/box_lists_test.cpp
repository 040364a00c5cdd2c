// The lists of the boxes, by F4 and by the host's buttons, and the street's card.
#include <QTest>

#include "dialogs/common/DataGrid.h"
#include "form/BoxesTest.h"
#include "services/Confamb.h"

namespace {

using ambrel::test::child;
using ambrel::test::ModalScript;

class BoxLists : public postal_tests::BoxesTest {
protected:
    static ModalScript::Step typeAndClick(const char* box, const QString& text, const char* button) {
        return [=](QDialog& dialog) {
            auto& edit = child<QLineEdit>(dialog, box);
            edit.setFocus();
            edit.selectAll();
            QTest::keyClicks(&edit, text);
            QTest::mouseClick(&child<QPushButton>(dialog, button), Qt::LeftButton);
        };
    }
};

TEST_F(BoxLists, F4OpensTheListOfEachBox) {
    open();
    dialogs.expect("TFBuscarMunicipios", typeAndClick("ENOMBRE", "HAR", "BBAceptar"));
    enter(Box::Municipality);
    press(Qt::Key_F4);
    EXPECT_EQ(tag(Box::Municipality), 26071);
    EXPECT_EQ(text(Box::PostalCode), "26200");
    dialogs.expect("TFProvList", typeAndClick("E_BUSQUEDA", "M", "BBAceptar"));
    enter(Box::Province);
    press(Qt::Key_F4);
    EXPECT_EQ(text(Box::Province), "MADRID");
    EXPECT_EQ(state(Box::Province), State::NotValidated);
    dialogs.expect("TFTipoViasLista", typeAndClick("EBUSCA", "PZ", "BBAceptar"));
    enter(Box::StreetType);
    press(Qt::Key_F4);
    EXPECT_EQ(text(Box::StreetType), "PZ");
    EXPECT_EQ(state(Box::StreetType), State::Validated);
}

class ProvinceList : public BoxLists {
protected:
    /// Opens the list of the province's box; answers what it stands on, and leaves it.
    QString shownFirst() {
        QString shown;
        dialogs.expect("TFProvList", [&](QDialog& list) {
            const auto& grid = child<ambrel::DataGrid>(list, "DBGProvincias");
            shown = grid.cellText(grid.currentRow(), 0);
            EXPECT_EQ(child<QLineEdit>(list, "E_BUSQUEDA").text(), "");
            QTest::mouseClick(&child<QPushButton>(list, "BBCancelar"), Qt::LeftButton);
        });
        enter(Box::Province);
        press(Qt::Key_F4);
        return shown;
    }
};

TEST_F(ProvinceList, OpensAtTheProvinceOfTheMunicipality) {
    open();
    fill(Box::Municipality, "haro");
    EXPECT_EQ(shownFirst(), "026.- RIOJA, LA");
}

TEST_F(ProvinceList, OpensAtTheProvinceThatStandsInTheBox) {
    open();
    fill(Box::Municipality, "haro");
    enter(Box::Province);
    box(Box::Province).setText("BARCELONA");
    EXPECT_EQ(shownFirst(), "008.- BARCELONA");
}

TEST_F(ProvinceList, OpensAtTheHostsProvinceWhereTheAddressHasNone) {
    Config.setProvince(17, "GIRONA", "GIRONA");
    open();
    EXPECT_EQ(shownFirst(), "017.- GIRONA");
}

TEST_F(ProvinceList, OpensAtTheFirstWhereNothingSaysWhich) {
    Config.setProvince(0, "", "");
    open();
    EXPECT_EQ(shownFirst(), "001.- ALAVA");
}

TEST_F(BoxLists, TheHostsButtonsOpenThem) {
    open();
    address->setListButtons({.street = elsewhere});
    elsewhere->setFocusPolicy(Qt::NoFocus);
    fill(Box::Municipality, "mad");
    dialogs.expect("TFBuscarDireccionPostal", typeAndClick("EVia", "MAY", "BBAceptar"));
    QTest::mouseClick(elsewhere, Qt::LeftButton);
    EXPECT_EQ(text(Box::Street), "MAYOR");
    EXPECT_EQ(text(Box::StreetType), "CL");
    EXPECT_EQ(text(Box::PostalCode), "28013");
    EXPECT_EQ(state(Box::PostalCode), State::Validated);
    EXPECT_EQ(tag(Box::Municipality), 28079);
}

TEST_F(BoxLists, AListLeftWithoutChoiceChangesNothing) {
    open();
    fillAddress("mad", "CL", "alcala", "300");
    dialogs.expect("TFBuscarMunicipios", typeAndClick("ENOMBRE", "HAR", "BBCancelar"));
    enter(Box::Municipality);
    press(Qt::Key_F4);
    dialogs.expect("TFBuscarDireccionPostal", typeAndClick("EVia", "MAY", "BBCancelar"));
    enter(Box::Street);
    press(Qt::Key_F4);
    EXPECT_EQ(tag(Box::Municipality), 28079);
    EXPECT_EQ(text(Box::Street), "ALCALA");
    EXPECT_EQ(text(Box::PostalCode), "28027");
    EXPECT_EQ(state(Box::PostalCode), State::Validated);
    fill(Box::Number, "5");
    EXPECT_EQ(text(Box::PostalCode), "28014") << "streets are still those of the form's municipality";
}

TEST_F(BoxLists, TheListOfStreetsBringsAMunicipalityWhereThereIsNone) {
    open();
    dialogs.expect("TFBuscarDireccionPostal", [](QDialog& list) {
        auto& edit = child<QLineEdit>(list, "EVia");
        edit.setFocus();
        QTest::keyClicks(&edit, "ABET");
        QTest::mouseClick(&child<QPushButton>(list, "BBAceptar"), Qt::LeftButton);
    });
    Config.setProvince(1, "ALAVA", "ALAVA");
    enter(Box::Street);
    press(Qt::Key_F4);
    EXPECT_EQ(text(Box::Street), "ABETXUKO");
    EXPECT_EQ(tag(Box::Municipality), 1059);
    EXPECT_EQ(text(Box::Province), "ALAVA");
    EXPECT_EQ(state(Box::PostalCode), State::Validated);
}

TEST_F(BoxLists, WithoutAKnownStreetThereIsNoCard) {
    open();
    messages.expect(QStringLiteral("Elija antes una vía que esté en las tablas."),
                    QStringLiteral("Ficha de la vía"));
    address->openStreetCard();
}

TEST_F(BoxLists, TheCardOfADirectorysStreetLeavesTheFormAlone) {
    open();
    fillAddress("mad", "CL", "alcala", "300");
    dialogs.expect("TFFichaVia", [](QDialog& card) {
        EXPECT_EQ(child<QLineEdit>(card, "DBECodPostal").text(), "28027") << "the stretch of the number";
        QTest::mouseClick(&child<QPushButton>(card, "BBCancelar"), Qt::LeftButton);
    });
    address->openStreetCard();
    EXPECT_EQ(tag(Box::Municipality), 28079);
    EXPECT_EQ(state(Box::PostalCode), State::Validated);
}

} // namespace
