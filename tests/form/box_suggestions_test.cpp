// Suggestions under the boxes of an address: what was typed is not what the tables hold.
#include <QIntValidator>
#include <QListView>
#include <QTest>

#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "form/BoundCustomer.h"
#include "form/BoxesTest.h"
#include "form/ShownList.h"
#include "services/Confamb.h"
#include "suggest/Suggestions.h"
#include "support/ShownWindow.h"

namespace {

using ambrel::MessageAnswer;
using ambrel::test::child;
using postal_tests::shownList;
using postal_tests::shownRows;

class BoxSuggestions : public postal_tests::BoxesTest {
protected:
    BoxSuggestions() {
        addProvinces({{"015", "CORUÑA, A"}, {"029", "MALAGA"}});
        addMunicipalities({{"08101", "08901", "HOSPITALET DE LLOBREGAT, L'"},
                           {"15030", "15001", "CORUÑA, A", "N", "0"},
                           {"28079", "28039", "TETUAN DE LAS VICTORIAS", "N", "0", true},
                           {"29067", "29001", "MÁLAGA", "N", "0"}});
        addStreets({{"28000010", "GRAN VIA", "CL", "28013"},
                    {"28000011", "CONSTITUCION", "AV", "28014"},
                    {"28000012", "SANTA TERESA", "CL", "28012", {1, 9}, {2, 8}},
                    {"28000013", "SANTA TERESA", "CL", "28014", {11, 9999}, {10, 9998}},
                    {"28000014", "HORNO VIEJO", "CL", "28012"}});
    }
    ~BoxSuggestions() override { Config.EntidadesMenores = false; }

    /// Replaces a box's text by typing; the box keeps the focus.
    void write(Box which, const QString& text) {
        enter(which);
        box(which).selectAll();
        press(Qt::Key_Delete);
        type(text);
        QApplication::processEvents();
    }
    [[nodiscard]] static bool listCame() {
        return QTest::qWaitFor([] { return shownList() != nullptr; });
    }
    [[nodiscard]] static bool noListComes() {
        QTest::qWait(50); // the streets of these tables are read in less
        return shownList() == nullptr;
    }
    /// Types, chooses a row with Down and takes it with Return.
    void choose(Box which, const QString& text, int row = 0) {
        write(which, text);
        ASSERT_TRUE(listCame()) << text.toStdString();
        for (int downs = 0; downs <= row; ++downs) {
            press(Qt::Key_Down);
        }
        press(Qt::Key_Return);
        EXPECT_FALSE(shownList());
        EXPECT_TRUE(box(which).hasFocus());
    }
};

TEST_F(BoxSuggestions, AStreetIsFoundAsPeopleWriteIt) {
    open();
    fill(Box::Municipality, "mad");
    for (const auto& [typed, name] :
         {std::pair("c/ gran via", "GRAN VIA"), std::pair("avda. de la constitucion", "CONSTITUCION"),
          std::pair("sta. teresa", "SANTA TERESA"), std::pair("garn via", "GRAN VIA"),
          std::pair("hormo biejo", "HORNO VIEJO")}) {
        choose(Box::Street, typed);
        EXPECT_EQ(text(Box::Street), name);
        EXPECT_EQ(state(Box::Street), State::Validated) << name;
    }
    EXPECT_EQ(text(Box::StreetType), "CL");
    EXPECT_EQ(text(Box::PostalCode), "28012");
}

TEST_F(BoxSuggestions, AMunicipalityIsFoundAsPeopleWriteIt) {
    open();
    for (const auto& [typed, name, tagged] :
         {std::tuple("Malaga", "MÁLAGA", 29067), std::tuple("la coruna", "CORUÑA, A", 15030),
          std::tuple("l'hospitalet", "HOSPITALET DE LLOBREGAT, L'", 8101),
          std::tuple("madird", "MADRID", 28079)}) {
        choose(Box::Municipality, typed);
        EXPECT_EQ(text(Box::Municipality), QString::fromUtf8(name));
        EXPECT_EQ(tag(Box::Municipality), tagged);
        EXPECT_EQ(state(Box::Municipality), State::Validated) << name;
    }
    EXPECT_EQ(text(Box::Province), "MADRID");
}

TEST_F(BoxSuggestions, TheListKeepsOutOfTheWayOfTheExactLookUp) {
    open();
    write(Box::Municipality, "madr");
    ASSERT_EQ(text(Box::Municipality), "MADRID");
    EXPECT_TRUE(noListComes());
    press(Qt::Key_Tab);
    write(Box::Street, "gran");
    ASSERT_EQ(text(Box::Street), "GRAN VIA");
    EXPECT_TRUE(noListComes());
}

TEST_F(BoxSuggestions, AnOpenListClosesWhenTheExactLookUpCompletes) {
    open();
    write(Box::Municipality, "madird");
    ASSERT_TRUE(listCame());
    for (int letters = 0; letters < 3; ++letters) {
        press(Qt::Key_Backspace);
    }
    type("ri");
    EXPECT_EQ(text(Box::Municipality), "MADRID");
    QApplication::processEvents();
    EXPECT_FALSE(shownList());
}

TEST_F(BoxSuggestions, DownShowsWhatElseBeginsLikeACompletedText) {
    open();
    fill(Box::Municipality, "mad");
    write(Box::Street, "ma");
    ASSERT_EQ(text(Box::Street), "MAYOR");
    press(Qt::Key_Down);
    ASSERT_TRUE(listCame());
    EXPECT_EQ(shownRows().filter("MAYOR"),
              (QStringList{"CL MAYOR, MADRID, 28013", "PZ MAYOR, MADRID, 28012"}));
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(text(Box::StreetType), "PZ");
    EXPECT_EQ(text(Box::PostalCode), "28012");
    EXPECT_EQ(state(Box::PostalCode), State::Validated);
}

TEST_F(BoxSuggestions, TheNumberBehindAStreetMovesIntoItsBox) {
    open();
    fill(Box::Municipality, "mad");
    choose(Box::Street, "Sta. Teresa 15");
    EXPECT_EQ(text(Box::Street), "SANTA TERESA");
    EXPECT_EQ(text(Box::Number), "15");
    EXPECT_EQ(text(Box::PostalCode), "28014");
    for (const Box which : {Box::Street, Box::StreetType, Box::Number, Box::PostalCode}) {
        EXPECT_EQ(state(which), State::Validated);
    }
    choose(Box::Street, "Sta. Teresa 5");
    EXPECT_EQ(text(Box::Number), "5");
    EXPECT_EQ(text(Box::PostalCode), "28012");
}

TEST_F(BoxSuggestions, UndoGivesBackWhatWasTyped) {
    open();
    choose(Box::Municipality, "madird");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(Box::Municipality), "MADIRD");
    EXPECT_EQ(tag(Box::Municipality), 0);
    EXPECT_EQ(state(Box::Municipality), State::NotValidated);
    fill(Box::Municipality, "mad");
    choose(Box::Street, "sta. teresa 5");
    ASSERT_EQ(text(Box::Street), "SANTA TERESA");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(Box::Street), "STA. TERESA 5");
    EXPECT_EQ(tag(Box::Street), 0);
    EXPECT_EQ(text(Box::Number), "") << "it stands behind the street again";
    press(Qt::Key_Escape);
}

TEST_F(BoxSuggestions, UndoGivesBackEverythingThatAChosenStreetHasSet) {
    open();
    fill(Box::PostalCode, "28013");
    fill(Box::StreetType, "av");
    choose(Box::Street, "c/ gran via 7");
    ASSERT_EQ(text(Box::Municipality), "MADRID");
    ASSERT_EQ(text(Box::StreetType), "CL");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(Box::Street), "C/ GRAN VIA 7");
    for (const auto& [which, before] :
         {std::pair(Box::Municipality, ""), std::pair(Box::Province, ""), std::pair(Box::StreetType, "AV"),
          std::pair(Box::Number, ""), std::pair(Box::PostalCode, "28013")}) {
        EXPECT_EQ(text(which), before);
    }
    EXPECT_EQ(tag(Box::Municipality), 0);
    EXPECT_EQ(state(Box::Municipality), State::Empty);
    EXPECT_EQ(state(Box::StreetType), State::Validated) << "AV is a type";
    EXPECT_EQ(state(Box::Street), State::NotValidated);
    press(Qt::Key_Escape);
}

TEST_F(BoxSuggestions, UndoGivesBackAMunicipalityThatWasValidated) {
    open();
    fill(Box::Municipality, "aranj");
    ASSERT_EQ(tag(Box::Municipality), 28013);
    ASSERT_EQ(text(Box::PostalCode), "28300");
    fill(Box::Number, "8");
    choose(Box::Municipality, "madird");
    ASSERT_EQ(text(Box::Province), "MADRID");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(Box::Municipality), "MADIRD");
    EXPECT_EQ(text(Box::PostalCode), "28300");
    EXPECT_EQ(text(Box::Number), "8");
    press(Qt::Key_Escape);
}

TEST_F(BoxSuggestions, UndoBringsAStreetBackThatWasValidated) {
    addStreets({{"28000020", "ALCALA DE HENARES", "AV", "28012"}});
    open();
    fillAddress("mad", "CL", "alcala", "250");
    enter(Box::Street);
    press(Qt::Key_Down);
    ASSERT_TRUE(listCame());
    ASSERT_TRUE(shownRows().at(1).startsWith("AV ALCALA DE HENARES")) << shownRows().join('|').toStdString();
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    ASSERT_EQ(text(Box::PostalCode), "28012");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(Box::Street), "ALCALA");
    EXPECT_EQ(text(Box::PostalCode), "28027");
    for (const Box which : {Box::Street, Box::StreetType, Box::Number, Box::PostalCode}) {
        EXPECT_EQ(state(which), State::Validated);
    }
}

TEST_F(BoxSuggestions, RedoTakesTheChoiceAgainWithAllItHadSet) {
    open();
    fill(Box::PostalCode, "28013");
    choose(Box::Street, "c/ gran via 7");
    press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_EQ(text(Box::Number), "");
    press(Qt::Key_Y, Qt::ControlModifier);
    if (text(Box::Street) != "GRAN VIA") { // the keys of another desktop
        press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    }
    ASSERT_EQ(text(Box::Street), "GRAN VIA");
    EXPECT_EQ(text(Box::Number), "7");
    EXPECT_EQ(text(Box::Municipality), "MADRID");
    EXPECT_EQ(text(Box::Province), "MADRID");
    EXPECT_EQ(text(Box::StreetType), "CL");
    EXPECT_EQ(tag(Box::Street), 28000010);
    for (const Box which :
         {Box::Municipality, Box::Province, Box::StreetType, Box::Street, Box::Number, Box::PostalCode}) {
        EXPECT_EQ(state(which), State::Validated);
    }
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(Box::Number), "") << "undone once more";
    EXPECT_EQ(text(Box::Municipality), "");
    press(Qt::Key_Escape);
}

TEST_F(BoxSuggestions, TypingAfterAnUndoForgetsTheChoice) {
    open();
    fill(Box::Municipality, "mad");
    choose(Box::Street, "sta. teresa 5");
    press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_EQ(text(Box::Street), "STA. TERESA 5");
    write(Box::Street, "santa teresa");
    EXPECT_EQ(text(Box::Number), "") << "nobody has said 5 again";
    press(Qt::Key_Tab);
}

TEST_F(BoxSuggestions, ALongNumberBehindAStreetIsNotLost) {
    open();
    fill(Box::Municipality, "mad");
    for (const auto& [typed, number] :
         {std::pair("sta teresa 28013", "28013"), std::pair("Sta. Teresa, 123456 B", "123456 B"),
          std::pair("garn via 5 28013", "5 28013")}) {
        choose(Box::Street, typed);
        EXPECT_EQ(text(Box::Number), number);
        if (QString(number).front() != '5') {
            EXPECT_EQ(state(Box::Number), State::NotValidated) << number;
            EXPECT_EQ(address->reason(Box::Number), "No se entiende como número de la vía.");
        }
    }
}

TEST_F(BoxSuggestions, UndoLeavesANumberAloneThatTheUserHasChangedSince) {
    open();
    fill(Box::Municipality, "mad");
    choose(Box::Street, "sta. teresa 5");
    fill(Box::Number, "7");
    enter(Box::Street);
    press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_EQ(text(Box::Street), "STA. TERESA 5");
    EXPECT_EQ(text(Box::Number), "7");
    press(Qt::Key_Escape);
}

TEST_F(BoxSuggestions, AnotherStoredAddressWithTheSameStreetClosesTheList) {
    open();
    fill(Box::Municipality, "mad");
    write(Box::Street, "garn via");
    ASSERT_TRUE(listCame());
    boxes.municipality->setText("HARO");
    boxes.province->setText("RIOJA, LA");
    address->takeStored();
    EXPECT_FALSE(shownList()) << "its rows are streets of Madrid";
    press(Qt::Key_Return);
    EXPECT_EQ(text(Box::Municipality), "HARO");
    EXPECT_EQ(text(Box::Street), "GARN VIA");
}

TEST_F(BoxSuggestions, UndoLeavesTheNumberOfAnotherStoredAddressAlone) {
    open();
    fill(Box::Municipality, "mad");
    fill(Box::Number, "40");
    choose(Box::Street, "sta. teresa 5");
    ASSERT_EQ(text(Box::Number), "5");
    address->takeStored(); // an address with the same number
    write(Box::Street, "sta. teresa 5");
    EXPECT_EQ(text(Box::Number), "5") << "40 was that of the address before";
    press(Qt::Key_Escape);
}

TEST_F(BoxSuggestions, ANumberGoesWholeIntoABoxWithAValidator) {
    boxes.number->setValidator(new QIntValidator(boxes.number));
    open();
    fill(Box::Municipality, "mad");
    choose(Box::Street, "Sta. Teresa 15 bis");
    EXPECT_EQ(text(Box::Number), "15 BIS");
    EXPECT_EQ(text(Box::PostalCode), "28014");
}

TEST_F(BoxSuggestions, WhatIsNotTheNumberOfTheHouseIsNotTakenForIt) {
    open();
    fill(Box::Municipality, "mad");
    for (const auto& [typed, number] :
         {std::pair("Sta. Teresa km 15", "KM 15"), std::pair("sta teresa piso 3", "PISO 3")}) {
        choose(Box::Street, typed);
        EXPECT_EQ(text(Box::Street), "SANTA TERESA");
        EXPECT_EQ(text(Box::Number), number);
        EXPECT_EQ(state(Box::Number), State::NotValidated) << number;
        EXPECT_EQ(state(Box::PostalCode), State::NotValidated) << number;
    }
}

TEST_F(BoxSuggestions, APastedTextMayHaveLettersThatTheTablesLack) {
    open();
    fill(Box::Municipality, "mad");
    for (const QString& pasted : {QString("GRAN VI") + QChar(0x0131), QString("ALCALA") + QChar(0x0301)}) {
        enter(Box::Street);
        box(Box::Street).selectAll();
        box(Box::Street).insert(pasted);
        press(Qt::Key_Down);
        EXPECT_TRUE(listCame()) << pasted.toStdString();
        press(Qt::Key_Return);
        EXPECT_EQ(state(Box::Street), State::Validated) << pasted.toStdString();
    }
}

TEST_F(BoxSuggestions, AStreetThatNobodyHasIsInsertedWithTheListOpen) {
    open();
    fill(Box::Municipality, "mad");
    fill(Box::StreetType, "CL");
    fill(Box::PostalCode, "28013");
    write(Box::Street, "horno nuevo");
    ASSERT_TRUE(listCame());
    expectInsertion(MessageAnswer::Yes);
    dialogs.expect("TFFichaVia", [](QDialog& card) {
        EXPECT_FALSE(shownList());
        QTest::mouseClick(&child<QPushButton>(card, "BBAceptar"), Qt::LeftButton);
    });
    press(Qt::Key_Tab);
    EXPECT_EQ(text(Box::Street), "HORNO NUEVO");
    EXPECT_EQ(state(Box::Street), State::Validated);
    EXPECT_EQ(tag(Box::Street), 99000000);
    EXPECT_FALSE(shownList());
}

TEST_F(BoxSuggestions, ABoxThatIsLeftWithoutAChoiceAsksAsEver) {
    open();
    write(Box::Municipality, "madird");
    ASSERT_TRUE(listCame());
    expectMunicipalityQuestion(MessageAnswer::No);
    press(Qt::Key_Tab);
    EXPECT_EQ(text(Box::Municipality), "MADIRD");
    EXPECT_EQ(tag(Box::Municipality), 0);
    fill(Box::Municipality, "mad");
    write(Box::Street, "garn via");
    ASSERT_TRUE(listCame());
    expectStreetDeclined();
    press(Qt::Key_Tab);
    EXPECT_EQ(text(Box::Street), "GARN VIA");
    EXPECT_EQ(tag(Box::Street), 0);
}

TEST_F(BoxSuggestions, EscapeLeavesTextAndTagAlone) {
    open();
    fill(Box::Municipality, "mad");
    fill(Box::Street, "gran");
    enter(Box::Street);
    press(Qt::Key_Down);
    ASSERT_TRUE(listCame());
    press(Qt::Key_Down);
    press(Qt::Key_Escape);
    EXPECT_EQ(text(Box::Street), "GRAN VIA");
    EXPECT_EQ(tag(Box::Street), 28000010);
    EXPECT_EQ(state(Box::Street), State::Validated);
}

TEST_F(BoxSuggestions, ACodeInTheMunicipalitysBoxSuggestsItsMunicipalities) {
    open();
    choose(Box::Municipality, "28014");
    EXPECT_EQ(text(Box::Municipality), "MADRID");
    choose(Box::Municipality, "26071");
    EXPECT_EQ(text(Box::Municipality), "HARO");
    EXPECT_EQ(text(Box::PostalCode), "26200");
    expectMunicipalityQuestion(MessageAnswer::No);
    fill(Box::Municipality, "28014");
    EXPECT_EQ(text(Box::Municipality), "28014");
}

TEST_F(BoxSuggestions, MunicipalitiesOfOneNameAreShownWithTheirProvinces) {
    open();
    write(Box::Municipality, "mieres");
    ASSERT_TRUE(listCame());
    EXPECT_EQ(shownRows().filter("MIERES"),
              (QStringList{"MIERES, GIRONA, 17830", "MIERES, ASTURIAS, 33600, 33610"}));
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(tag(Box::Municipality), 33037);
    EXPECT_EQ(state(Box::Municipality), State::Validated);
    EXPECT_EQ(text(Box::Province), "ASTURIAS");
}

TEST_F(BoxSuggestions, TheProvinceThatTheUserTypedNarrowsTheMunicipalities) {
    open();
    fill(Box::Province, "ASTURIAS");
    write(Box::Municipality, "mieress");
    ASSERT_TRUE(listCame());
    EXPECT_EQ(shownRows(), QStringList{"MIERES, ASTURIAS, 33600, 33610"});
}

TEST_F(BoxSuggestions, AStreetOfAPostalCodeBringsItsMunicipality) {
    open();
    fill(Box::PostalCode, "28013");
    choose(Box::Street, "c/ gran via 7");
    EXPECT_EQ(text(Box::Municipality), "MADRID");
    EXPECT_EQ(text(Box::Province), "MADRID");
    EXPECT_EQ(text(Box::Street), "GRAN VIA");
    EXPECT_EQ(text(Box::Number), "7");
    for (const Box which : {Box::Municipality, Box::Province, Box::Street, Box::Number, Box::PostalCode}) {
        EXPECT_EQ(state(which), State::Validated);
    }
}

TEST_F(BoxSuggestions, OnlyStreetsOfTheMunicipalityAreSuggested) {
    open();
    fill(Box::Municipality, "aranj");
    write(Box::Street, "c/ gran via");
    EXPECT_TRUE(noListComes());
}

TEST_F(BoxSuggestions, WithoutAnyPlaceNoStreetIsSuggested) {
    open();
    write(Box::Street, "c/ gran via");
    EXPECT_TRUE(noListComes());
}

TEST_F(BoxSuggestions, LocalitiesComeWithTheConfigurationThatShowsThem) {
    open();
    write(Box::Municipality, "tetuan de la victoria");
    static_cast<void>(noListComes());
    EXPECT_EQ(shownRows().filter("TETUAN"), QStringList()); // if anything, another municipality
    Config.EntidadesMenores = true;
    address.reset();
    open();
    choose(Box::Municipality, "tetuan de la victoria");
    EXPECT_EQ(text(Box::Municipality), "TETUAN DE LAS VICTORIAS");
    EXPECT_EQ(tag(Box::Municipality), 28079);
    EXPECT_EQ(state(Box::Municipality), State::Validated);
}

TEST_F(BoxSuggestions, CanBeSwitchedOff) {
    open();
    address->setSuggestions(nullptr);
    write(Box::Municipality, "madird");
    press(Qt::Key_Down);
    EXPECT_TRUE(noListComes());
}

TEST_F(BoxSuggestions, FormsMayShareThem) {
    const auto shared = std::make_shared<ambrel::Suggestions>();
    open();
    address->setSuggestions(shared);
    choose(Box::Municipality, "madird");
    EXPECT_GT(shared->memoryInUse(), 0U);
    address.reset();
    EXPECT_EQ(shared.use_count(), 1);
}

TEST_F(BoxSuggestions, ARowThatIsGoneWhenItIsChosenChangesNothing) {
    open();
    fill(Box::Municipality, "mad");
    write(Box::Street, "garn via");
    ASSERT_TRUE(listCame());
    {
        dbase::Dataset streets("DB", "POSTAL");
        streets.open();
        goToStreet(streets, "28000010");
        streets.erase();
    }
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(text(Box::Street), "GARN VIA");
    EXPECT_EQ(tag(Box::Street), 0);
    expectStreetDeclined();
    press(Qt::Key_Tab);
}

TEST_F(BoxSuggestions, ARowThatOthersHoldStaysAsItIs) {
    storeCustomer("MADIRD");
    postal_tests::BoundCustomer customer(boxes);
    open();
    customer.showIn(*address);
    enter(Box::Municipality);
    press(Qt::Key_Down);
    ASSERT_TRUE(listCame());
    customer.hold();
    const auto boxesShown = ambrel::test::boxesDuring([&] { press(Qt::Key_Return); });
    EXPECT_EQ(boxesShown.size(), 1U);
    EXPECT_EQ(text(Box::Municipality), "MADIRD");
    EXPECT_EQ(tag(Box::Municipality), 0);
    EXPECT_EQ(text(Box::Province), "");
    customer.release();
    press(Qt::Key_Down);
    ASSERT_TRUE(listCame());
    press(Qt::Key_Return);
    EXPECT_EQ(customer.municipality(), "MADRID");
    EXPECT_EQ(tag(Box::Municipality), 28079);
}

TEST_F(BoxSuggestions, TheBoxsListOpensOverIt) {
    open();
    fill(Box::Municipality, "mad");
    write(Box::Street, "garn via");
    ASSERT_TRUE(listCame());
    expectStreetDeclined();
    dialogs.expect("TFBuscarDireccionPostal", [](QDialog& list) {
        EXPECT_FALSE(shownList());
        auto& name = child<QLineEdit>(list, "EVia");
        name.setFocus();
        name.selectAll();
        QTest::keyClicks(&name, "GARN VIA");
        QTest::keyClick(&name, Qt::Key_Down);
        QTest::qWait(50);
        EXPECT_FALSE(shownList()) << "the dialog has its own";
        list.reject();
    });
    press(Qt::Key_F4);
    press(Qt::Key_Tab);
}

TEST_F(BoxSuggestions, AClickElsewhereWhileTheListIsOpenIsNotLost) {
    int clicks = 0;
    QObject::connect(elsewhere, &QPushButton::clicked, elsewhere, [&] { ++clicks; });
    open();
    write(Box::Municipality, "madird");
    ASSERT_TRUE(listCame());
    expectMunicipalityQuestion(MessageAnswer::No);
    QTest::mouseClick(form.windowHandle(), Qt::LeftButton, {}, elsewhere->geometry().center());
    QApplication::processEvents();
    EXPECT_EQ(clicks, 1);
    EXPECT_FALSE(shownList());
}

TEST_F(BoxSuggestions, AClickTakesASuggestion) {
    open();
    write(Box::Municipality, "madird");
    ASSERT_TRUE(listCame());
    QListView& list = *shownList();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      list.visualRect(list.model()->index(0, 0)).center());
    EXPECT_EQ(tag(Box::Municipality), 28079);
    EXPECT_TRUE(box(Box::Municipality).hasFocus());
    press(Qt::Key_Tab);
    EXPECT_EQ(state(Box::Municipality), State::Validated);
}

TEST_F(BoxSuggestions, SettlingAsksAboutATextWithTheListOpen) {
    open();
    write(Box::Municipality, "madird");
    ASSERT_TRUE(listCame());
    expectMunicipalityQuestion(MessageAnswer::No);
    address->settle();
    EXPECT_EQ(tag(Box::Municipality), 0);
}

} // namespace
