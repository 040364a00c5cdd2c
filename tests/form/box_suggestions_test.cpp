// Suggestions under the boxes of an address: what was typed is not what the tables hold.
#include <QListView>
#include <QTest>

#include "form/BoundCustomer.h"
#include "form/BoxSuggestions.h"
#include "form/ShownList.h"
#include "services/Confamb.h"
#include "suggest/Suggestions.h"
#include "support/ShownWindow.h"

namespace {

using ambrel::MessageAnswer;
using ambrel::test::child;
using postal_tests::BoxSuggestions;
using postal_tests::shownList;
using postal_tests::shownRows;

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
