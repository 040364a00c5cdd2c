// The municipality's box: completion, namesakes, and choices that must be kept.
#include <QTest>

#include "form/BoxesTest.h"

namespace {

using ambrel::MessageAnswer;
using ambrel::test::child;

class MunicipalityBoxes : public postal_tests::BoxesTest {
protected:
    /// Chooses from the list, where the second MIERES is that of Asturias.
    void chooseSecondMieres() {
        dialogs.expect("TFBuscarMunicipios", [](QDialog& list) {
            auto& name = child<QLineEdit>(list, "ENOMBRE");
            name.setFocus();
            name.selectAll();
            QTest::keyClicks(&name, "MIERES");
            QTest::keyClick(&name, Qt::Key_Down);
            QTest::mouseClick(&child<QPushButton>(list, "BBAceptar"), Qt::LeftButton);
        });
        enter(Box::Municipality);
        press(Qt::Key_F4);
    }
};

TEST_F(MunicipalityBoxes, IsCompletedWhileItIsTypedAndFillsItsProvince) {
    open();
    enter(Box::Municipality);
    type("ma");
    EXPECT_EQ(text(Box::Municipality), "MADRID");
    EXPECT_EQ(box(Box::Municipality).selectedText(), "DRID");
    EXPECT_EQ(tag(Box::Municipality), 28079);
    press(Qt::Key_Tab);
    EXPECT_EQ(text(Box::Province), "MADRID");
    EXPECT_EQ(text(Box::PostalCode), "");
}

TEST_F(MunicipalityBoxes, OneCodeAloneIsFilledIn) {
    open();
    fill(Box::Municipality, "haro");
    EXPECT_EQ(text(Box::PostalCode), "26200");
    EXPECT_EQ(state(Box::PostalCode), State::Validated);
}

TEST_F(MunicipalityBoxes, AKeyWithCtrlAltOrMetaNeverCompletesWhicheverGoesUpFirst) {
    open();
    for (const auto& [modifier, key] : {std::pair{Qt::ControlModifier, Qt::Key_Control},
                                        {Qt::AltModifier, Qt::Key_Alt},
                                        {Qt::MetaModifier, Qt::Key_Meta}}) {
        enter(Box::Municipality);
        box(Box::Municipality).setText("MA");
        QTest::keyPress(&box(Box::Municipality), key);
        QTest::keyPress(&box(Box::Municipality), Qt::Key_C, modifier);
        QTest::keyRelease(&box(Box::Municipality), key);
        QTest::keyRelease(&box(Box::Municipality), Qt::Key_C); // its modifier has already been released
        EXPECT_EQ(text(Box::Municipality), "MA");
    }
}

TEST_F(MunicipalityBoxes, TheMunicipalityChosenIsKeptUntilItsTextIsEdited) {
    open();
    chooseSecondMieres();
    ASSERT_EQ(tag(Box::Municipality), 33037);
    enter(Box::Municipality);
    box(Box::Municipality).selectAll();
    press(Qt::Key_C, Qt::ControlModifier);
    press(Qt::Key_M, Qt::AltModifier);
    press(Qt::Key_Tab);
    EXPECT_EQ(tag(Box::Municipality), 33037);
    EXPECT_EQ(text(Box::Province), "ASTURIAS");
    EXPECT_EQ(text(Box::PostalCode), "");
}

TEST_F(MunicipalityBoxes, AKeyThatChangesNothingLooksNothingUp) {
    open();
    chooseSecondMieres();
    enter(Box::Municipality);
    press(Qt::Key_End);
    type(QStringLiteral("日")); // the tables cannot hold it
    QTest::keyRelease(&box(Box::Municipality), Qt::Key_S);
    EXPECT_EQ(tag(Box::Municipality), 33037);
    press(Qt::Key_Tab);
    EXPECT_EQ(tag(Box::Municipality), 33037);
    EXPECT_EQ(text(Box::Province), "ASTURIAS");
}

TEST_F(MunicipalityBoxes, ANameThatSeveralHaveIsAskedAboutAndNotGuessed) {
    open();
    expectMunicipalityQuestion(MessageAnswer::No);
    fill(Box::Municipality, "MIERES");
    EXPECT_EQ(state(Box::Municipality), State::NotValidated);
    EXPECT_EQ(tag(Box::Municipality), 0);
    EXPECT_EQ(text(Box::PostalCode), "");
    EXPECT_TRUE(address->reason(Box::Municipality).contains("varios municipios"));
}

TEST_F(MunicipalityBoxes, AProvinceThatTheUserTypesChoosesAmongNamesakes) {
    open();
    fill(Box::Province, "ASTURIAS");
    fill(Box::Municipality, "MIERES");
    EXPECT_EQ(tag(Box::Municipality), 33037);
}

TEST_F(MunicipalityBoxes, AProvinceTypedAfterwardsChoosesAmongNamesakesWithoutAQuestion) {
    open();
    expectMunicipalityQuestion(MessageAnswer::No);
    fill(Box::Municipality, "MIERES");
    fill(Box::Province, "GIRONA");
    EXPECT_EQ(tag(Box::Municipality), 17105);
    EXPECT_EQ(text(Box::PostalCode), "17830");
}

TEST_F(MunicipalityBoxes, TheProvinceOfTheMunicipalityBeforeChoosesNothing) {
    open();
    chooseSecondMieres();
    expectMunicipalityQuestion(MessageAnswer::No);
    fill(Box::Municipality, "MIERES");
    EXPECT_EQ(tag(Box::Municipality), 0);
}

TEST_F(MunicipalityBoxes, ALetterStillHeldWhenTheBoxIsLeftCountsAsReleased) {
    open();
    enter(Box::Municipality);
    type("mad");
    box(Box::Municipality).clear();
    type("MAD");
    QTest::keyPress(&box(Box::Municipality), Qt::Key_R, {});
    press(Qt::Key_Tab);
    EXPECT_EQ(text(Box::Municipality), "MADRID");
    EXPECT_EQ(tag(Box::Municipality), 28079);
}

TEST_F(MunicipalityBoxes, WhatIsPastedIsLookedUpTrimmedWithSingleBlanksAndInCapitals) {
    open();
    paste(Box::Municipality, "  madrid ");
    EXPECT_EQ(text(Box::Municipality), "MADRID");
    EXPECT_EQ(tag(Box::Municipality), 28079);
}

TEST_F(MunicipalityBoxes, WhatIsPastedIsNeverCompleted) {
    open();
    expectMunicipalityQuestion(MessageAnswer::No);
    paste(Box::Municipality, "MADR");
    EXPECT_EQ(text(Box::Municipality), "MADR");
    EXPECT_EQ(tag(Box::Municipality), 0);
}

TEST_F(MunicipalityBoxes, UndoGivesBackWhatWasTypedBeforeACompletion) {
    open();
    enter(Box::Municipality);
    type("mad");
    ASSERT_EQ(text(Box::Municipality), "MADRID");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(Box::Municipality), "MAD");
    expectMunicipalityQuestion(MessageAnswer::No);
    press(Qt::Key_Tab);
    EXPECT_EQ(text(Box::Municipality), "MAD") << "what was undone is looked up, not completed";
}

TEST_F(MunicipalityBoxes, AnUnknownMunicipalityIsAskedAboutOnce) {
    open();
    expectMunicipalityQuestion(MessageAnswer::No);
    fill(Box::Municipality, "NINGUNO");
    enter(Box::Municipality);
    press(Qt::Key_Tab);
    EXPECT_TRUE(messages.isDone());
}

TEST_F(MunicipalityBoxes, AnotherMunicipalityLeavesStreetAndCodeAsTheyAreAndNotValidated) {
    open();
    fillAddress("mad", "CL", "alcala", "5");
    ASSERT_EQ(text(Box::PostalCode), "28014");
    fill(Box::Municipality, "alba");
    EXPECT_EQ(text(Box::Street), "ALCALA");
    EXPECT_EQ(text(Box::PostalCode), "28014");
    EXPECT_EQ(state(Box::Street), State::NotValidated);
    EXPECT_EQ(tag(Box::Street), 0);
    EXPECT_EQ(state(Box::PostalCode), State::NotValidated);
}

TEST_F(MunicipalityBoxes, TheSameMunicipalityTypedAgainValidatesItsStreetAgain) {
    open();
    fillAddress("mad", "CL", "alcala", "5");
    fill(Box::Municipality, "madrid");
    EXPECT_EQ(state(Box::Street), State::Validated);
    EXPECT_EQ(state(Box::PostalCode), State::Validated);
}

} // namespace
