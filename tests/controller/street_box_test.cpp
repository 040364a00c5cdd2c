#include <QTest>

#include "controller/AddressForm.h"
#include "services/TagProperty.h"
#include "support/ScriptedMessages.h"
#include "support/ShownWindow.h"

namespace {

using namespace postal_tests;
using ambrel::setTag;
using ambrel::tagOf;
using ambrel::test::ScriptedMessages;

class StreetBox : public AddressForm {
protected:
    void SetUp() override {
        addStreets({{"1", "ARENAL", "CL", "28013"},
                    {"2", "MAYOR", "AV", "28022"},
                    {"3", "MAYOR", "CL", "28013"},
                    {"4", "MAYOR", "PZ", "28012"},
                    {"5", "PRADO, DEL", "PO", "28014"},
                    {"6", "SERRANO", "CL", "28006"},
                    {.codigo1 = "7", .via = "SIERRA", .tipo = "CL", .codPostal = "28491", .capital = "9"}});
        openForm();
        choose("MADRID");
    }

    void leave(dbase::Field* field) {
        controller->ExitDireccionPostal(streetBox, field, nullptr, asks, postalCode, streetType);
    }
    void leave() { leave(postalCodeField); }
};

TEST_F(StreetBox, TypingCompletesWithinTheMunicipalityAndSelectsTheTail) {
    QTest::keyClicks(streetBox, "SER");
    EXPECT_EQ(streetBox->text(), "SERRANO");
    EXPECT_EQ(streetBox->selectedText(), "RANO");
    EXPECT_EQ(streetBox->cursorPosition(), 3);
    EXPECT_EQ(tagOf(*streetBox), 6);
}

TEST_F(StreetBox, KeysPressedBeforeTheFirstIsReleasedComplete) {
    QTest::keyPress(streetBox, 'S');
    QTest::keyPress(streetBox, 'E');
    QTest::keyRelease(streetBox, 'S');
    QTest::keyRelease(streetBox, 'E');
    EXPECT_EQ(streetBox->text(), "SERRANO");
    EXPECT_EQ(streetBox->cursorPosition(), 2);
    EXPECT_EQ(streetBox->selectedText(), "RRANO");
}

TEST_F(StreetBox, TextThatMatchesNoPrefixClearsTheTagAndStaysAsTyped) {
    QTest::keyClicks(streetBox, "SERX");
    EXPECT_EQ(streetBox->text(), "SERX");
    EXPECT_EQ(tagOf(*streetBox), 0);
}

TEST_F(StreetBox, CommaKeyCompletes) {
    streetBox->setText("PRADO");
    QTest::keyClicks(streetBox, ",");
    EXPECT_EQ(streetBox->text(), "PRADO, DEL");
    EXPECT_EQ(streetBox->selectedText(), " DEL");
    EXPECT_EQ(tagOf(*streetBox), 5);
}

TEST_F(StreetBox, PrintScreenKeyDoesNotComplete) {
    streetBox->setText("SER");
    QTest::keyClick(streetBox, Qt::Key_Print);
    EXPECT_EQ(streetBox->text(), "SER");
    EXPECT_EQ(tagOf(*streetBox), 0);
}

TEST_F(StreetBox, TypedTypeChoosesAmongStreetsOfOneName) {
    streetType = "PZ";
    QTest::keyClicks(streetBox, "MAYOR");
    EXPECT_EQ(tagOf(*streetBox), 4);
}

TEST_F(StreetBox, InAMunicipalityWithOneCodeAStreetWithAnotherCodeLeavesTheFirstRow) {
    choose("ALPEDRETE");
    QTest::keyClicks(streetBox, "SIERRA");
    EXPECT_EQ(streetBox->text(), "SIERRA");
    EXPECT_EQ(tagOf(*streetBox), 0);
    EXPECT_EQ(row(), "1");
}

TEST_F(StreetBox, TextThatTheCodePageCannotHoldMatchesNothing) {
    streetBox->setText(QStringLiteral("Ł"));
    setTag(*streetBox, 5);
    std::uint16_t key = 'L';
    controller->KeyUpDireccionPostal(streetBox, key, Qt::NoModifier, "CL");
    EXPECT_EQ(tagOf(*streetBox), 0);
    EXPECT_EQ(streetBox->text(), QStringLiteral("Ł"));
}

TEST_F(StreetBox, LeavingAKnownStreetWritesItsPostalCode) {
    QTest::keyClicks(streetBox, "SERRANO");
    leave();
    EXPECT_EQ(hostPostalCode(), "28006");
    EXPECT_EQ(tagOf(*streetBox), 6);
}

TEST_F(StreetBox, LeavingGoesForwardToTheRowOfTheType) {
    streetType = "";
    QTest::keyClicks(streetBox, "MAYOR");
    ASSERT_EQ(row(), "2");
    streetType = "CL";
    leave();
    EXPECT_EQ(row(), "3");
    EXPECT_EQ(hostPostalCode(), "28013");
}

TEST_F(StreetBox, LeavingWithATypeThatTheStreetLacksStaysOnItsRow) {
    streetType = "ZZ";
    QTest::keyClicks(streetBox, "MAYOR");
    leave();
    EXPECT_EQ(row(), "2");
    EXPECT_EQ(hostPostalCode(), "28022");
}

TEST_F(StreetBox, LeavingAnEmptyBoxClearsTheTagAndWritesNothing) {
    ScriptedMessages none;
    streetBox->setText("   ");
    setTag(*streetBox, 6);
    leave();
    EXPECT_EQ(tagOf(*streetBox), 0);
    EXPECT_EQ(hostPostalCode(), "00000");
}

TEST_F(StreetBox, LeavingAnUnknownStreetLeavesTheTagAt0AndWritesNothing) {
    ScriptedMessages none;
    asks = false;
    QTest::keyClicks(streetBox, "NINGUNA");
    leave();
    EXPECT_EQ(tagOf(*streetBox), 0);
    EXPECT_EQ(hostPostalCode(), "00000");
}

TEST_F(StreetBox, WithoutAFieldNothingIsWritten) {
    QTest::keyClicks(streetBox, "SERRANO");
    leave(nullptr);
    EXPECT_EQ(hostPostalCode(), "00000");
    EXPECT_EQ(tagOf(*streetBox), 6);
}

TEST_F(StreetBox, ErrorsOfTheNeighbourStepsAreSwallowed) {
    QTest::keyClicks(streetBox, "SERRANO");
    controller->DM->tbPostal.close();
    ScriptedMessages none;
    leave(nullptr);
    EXPECT_EQ(tagOf(*streetBox), 6);
}

TEST_F(StreetBox, FailureIsShownOnceAndTheProgramGoesOn) {
    QTest::keyClicks(streetBox, "SERRANO");
    host.cancel();
    ScriptedMessages messages;
    try {
        postalCodeField->setText("28006");
        FAIL() << "a row that is not in edit was written";
    } catch (const std::exception& error) {
        messages.expect(QString::fromUtf8(error.what()), QStringLiteral("Atención"));
    }
    leave();
    EXPECT_TRUE(messages.isDone());
    host.edit();
    leave();
    EXPECT_EQ(hostPostalCode(), "28006");
}

TEST_F(StreetBox, TabLeavesTheBoxAndWritesThePostalCode) {
    ambrel::test::showActive(form);
    streetBox->setFocus();
    QTest::keyClicks(streetBox, "ARE");
    QTest::keyClick(streetBox, Qt::Key_Tab);
    EXPECT_EQ(streetBox->text(), "ARENAL");
    EXPECT_EQ(hostPostalCode(), "28013");
}

} // namespace
