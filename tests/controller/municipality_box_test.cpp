// The municipality box: typing, leaving, and its list.
#include <QPushButton>
#include <QTest>

#include "controller/AddressForm.h"
#include "data/CodPostalesDM.h"
#include "services/TagProperty.h"
#include "support/ModalScript.h"
#include "support/ScriptedMessages.h"
#include "support/ShownWindow.h"
#include "support/Typing.h"

namespace {

using namespace postal_tests;
using ambrel::setTag;
using ambrel::tagOf;
using ambrel::test::ScriptedMessages;

class MunicipalityBox : public AddressForm {
protected:
    void SetUp() override {
        addProvinces({{"028", "MADRID"}, {"008", "BARCELONA"}});
        addMunicipalities({{"28084", "28840", "MEJORADA DEL CAMPO"}, {"15030", "15001", "CORUÑA, A"}});
        openForm();
    }

    void leave() { controller->ExitMunicipi(municipalityBox, province, postalCode, asks); }
};

TEST_F(MunicipalityBox, TypingCompletesAndSelectsTheTail) {
    QTest::keyClicks(municipalityBox, "MA");
    EXPECT_EQ(municipalityBox->text(), "MADRID");
    EXPECT_EQ(municipalityBox->selectedText(), "DRID");
    EXPECT_EQ(municipalityBox->cursorPosition(), 2) << "the caret stays where the user types";
    EXPECT_EQ(tagOf(*municipalityBox), 28079);
}

TEST_F(MunicipalityBox, NextKeyOverwritesTheTail) {
    QTest::keyClicks(municipalityBox, "ME");
    EXPECT_EQ(municipalityBox->text(), "MEJORADA DEL CAMPO");
    EXPECT_EQ(municipalityBox->selectedText(), "JORADA DEL CAMPO");
    EXPECT_EQ(tagOf(*municipalityBox), 28084);
}

TEST_F(MunicipalityBox, KeysPressedBeforeTheFirstIsReleasedComplete) {
    QTest::keyPress(municipalityBox, 'M');
    QTest::keyPress(municipalityBox, 'A');
    QTest::keyRelease(municipalityBox, 'M');
    QTest::keyRelease(municipalityBox, 'A');
    EXPECT_EQ(municipalityBox->text(), "MADRID");
    EXPECT_EQ(municipalityBox->cursorPosition(), 2);
    EXPECT_EQ(municipalityBox->selectedText(), "DRID");
    QTest::keyClicks(municipalityBox, "D");
    EXPECT_EQ(municipalityBox->selectedText(), "RID");
}

TEST_F(MunicipalityBox, AccentedLettersComplete) {
    ambrel::test::typeInto(*municipalityBox, "CORUÑ");
    EXPECT_EQ(municipalityBox->text(), QStringLiteral("CORUÑA, A"));
    EXPECT_EQ(municipalityBox->cursorPosition(), 5);
    EXPECT_EQ(tagOf(*municipalityBox), 15030);
}

TEST_F(MunicipalityBox, TextThatMatchesNoPrefixClearsTheTagAndStaysAsTyped) {
    QTest::keyClicks(municipalityBox, "MADX");
    EXPECT_EQ(municipalityBox->text(), "MADX");
    EXPECT_EQ(tagOf(*municipalityBox), 0);
    EXPECT_FALSE(municipalityBox->hasSelectedText());
}

TEST_F(MunicipalityBox, TextThatTheCodePageCannotHoldMatchesNothing) {
    municipalityBox->setText(QStringLiteral("Ł"));
    setTag(*municipalityBox, 5);
    std::uint16_t key = 'L';
    controller->KeyUpMunicipi(municipalityBox, key, Qt::NoModifier);
    EXPECT_EQ(municipalityBox->text(), QStringLiteral("Ł"));
    EXPECT_EQ(tagOf(*municipalityBox), 0);
}

TEST_F(MunicipalityBox, EmptyTextIsNoPrefix) {
    setTag(*municipalityBox, 5);
    std::uint16_t key = 'A';
    controller->KeyUpMunicipi(municipalityBox, key, Qt::NoModifier);
    EXPECT_EQ(municipalityBox->text(), "");
    EXPECT_EQ(tagOf(*municipalityBox), 0);
}

TEST_F(MunicipalityBox, PrintScreenKeyCompletes) {
    municipalityBox->setText("MAD");
    QTest::keyClick(municipalityBox, Qt::Key_Print);
    EXPECT_EQ(municipalityBox->text(), "MADRID");
    EXPECT_EQ(tagOf(*municipalityBox), 28079);
}

TEST_F(MunicipalityBox, CommaKeyDoesNotComplete) {
    QTest::keyClicks(municipalityBox, "CORU,");
    EXPECT_EQ(municipalityBox->text(), "CORU,");
    EXPECT_EQ(tagOf(*municipalityBox), 15030) << "the Tag is as the last letter left it";
}

TEST_F(MunicipalityBox, MovingAndErasingKeysDoNotComplete) {
    municipalityBox->setText("MAD");
    for (const Qt::Key key :
         {Qt::Key_Left, Qt::Key_Home, Qt::Key_Space, Qt::Key_Backspace, Qt::Key_Escape, Qt::Key_Shift}) {
        QTest::keyClick(municipalityBox, key);
        EXPECT_NE(municipalityBox->text(), "MADRID") << key;
    }
    EXPECT_EQ(tagOf(*municipalityBox), 0);
}

TEST_F(MunicipalityBox, CompletionFollowsTheOrderByPostalCode) {
    controller->OrdenaPorCodPostalMunicipi();
    QTest::keyClicks(municipalityBox, "284");
    EXPECT_EQ(municipalityBox->text(), "28430");
    EXPECT_EQ(tagOf(*municipalityBox), 28010);
}

TEST_F(MunicipalityBox, LongNameIsCompletedWholeWhateverItsLength) {
    const std::string name(53, 'X');
    addMunicipalities({{"50001", "50001", name}});
    QTest::keyClicks(municipalityBox, "X");
    EXPECT_EQ(municipalityBox->text(), QString::fromStdString(name));
}

TEST_F(MunicipalityBox, LeavingBlanksClearsTheTagAndAsksNothing) {
    ScriptedMessages none;
    municipalityBox->setText("   ");
    setTag(*municipalityBox, 28079);
    leave();
    EXPECT_EQ(tagOf(*municipalityBox), 0);
    EXPECT_EQ(province, "?");
    EXPECT_EQ(postalCode, "?");
}

TEST_F(MunicipalityBox, LeavingAnUnknownMunicipalityWithoutAskingChangesNothing) {
    ScriptedMessages none;
    municipalityBox->setText("NINGUNA");
    asks = false;
    leave();
    EXPECT_EQ(municipalityBox->text(), "NINGUNA");
    EXPECT_EQ(tagOf(*municipalityBox), 0);
    EXPECT_EQ(province, "?");
    EXPECT_EQ(postalCode, "?");
}

TEST_F(MunicipalityBox, LeavingAKnownMunicipalityFillsTheProvince) {
    QTest::keyClicks(municipalityBox, "BARC");
    leave();
    EXPECT_EQ(province, "BARCELONA");
}

TEST_F(MunicipalityBox, ProvinceThatIsNotInTheTableComesOutEmpty) {
    QTest::keyClicks(municipalityBox, "CORU");
    leave();
    EXPECT_EQ(province, "");
}

TEST_F(MunicipalityBox, EmptyProvinceIsLeftAlone) {
    QTest::keyClicks(municipalityBox, "BARC");
    province.clear();
    leave();
    EXPECT_EQ(province, "");
}

TEST_F(MunicipalityBox, PostalCodeIsFilledWhereTheMunicipalityHasOnlyOne) {
    QTest::keyClicks(municipalityBox, "ALPE");
    leave();
    EXPECT_EQ(postalCode, "28430");
}

TEST_F(MunicipalityBox, PostalCodeIsNeverOverwrittenWhereTheMunicipalityHasSeveral) {
    QTest::keyClicks(municipalityBox, "MADRID");
    postalCode = "28013";
    leave();
    EXPECT_EQ(postalCode, "28013");
}

TEST_F(MunicipalityBox, EmptyPostalCodeIsLeftAlone) {
    QTest::keyClicks(municipalityBox, "ALPE");
    postalCode.clear();
    leave();
    EXPECT_EQ(postalCode, "");
}

TEST_F(MunicipalityBox, TabLeavesTheBoxAndFillsTheForm) {
    ambrel::test::showActive(form);
    municipalityBox->setFocus();
    QTest::keyClicks(municipalityBox, "ALPE");
    QTest::keyClick(municipalityBox, Qt::Key_Tab);
    EXPECT_EQ(municipalityBox->text(), "ALPEDRETE");
    EXPECT_EQ(province, "MADRID");
    EXPECT_EQ(postalCode, "28430");
}

/// The box is left with an unknown name; the user is asked, and may choose from the list.
class UnknownMunicipality : public MunicipalityBox {
protected:
    void SetUp() override {
        MunicipalityBox::SetUp();
        addMunicipalities({{"09221", "09500", "MEDINA", "S"}, {"47085", "47400", "MEDINA", "S"}});
        municipalityBox->setText("MEDI");
    }

    void answer(ambrel::MessageAnswer given) {
        messages.expect(QStringLiteral("¿Desea ver la lista de municipios actuales?"),
                        QStringLiteral("ATENCIÓN"), QStringLiteral("Atención"), given);
    }
    void expectList(const ambrel::test::ModalScript::Step& step) {
        dialogs.expect("TFBuscarMunicipios", step);
    }
    static void type(const QDialog& list, const char* name, const char* text) {
        auto& edit = ambrel::test::child<QLineEdit>(list, name);
        edit.setFocus();
        QTest::keyClicks(&edit, text);
    }
    static void press(const QDialog& list, const char* button) {
        QTest::mouseClick(&ambrel::test::child<QPushButton>(list, button), Qt::LeftButton);
    }
    void expectUnsettled() {
        EXPECT_EQ(municipalityBox->text(), "MEDI");
        EXPECT_EQ(tagOf(*municipalityBox), 0);
        EXPECT_EQ(province, "?");
        EXPECT_EQ(postalCode, "?");
    }

    ScriptedMessages messages;
    ambrel::test::ModalScript dialogs;
};

TEST_F(UnknownMunicipality, AnsweringNoShowsNoListAndChangesNothing) {
    for (const auto given : {ambrel::MessageAnswer::No, ambrel::MessageAnswer::Cancel}) {
        answer(given);
        leave();
        expectUnsettled();
    }
}

TEST_F(UnknownMunicipality, MunicipalityFromTheListSettlesTheBox) {
    answer(ambrel::MessageAnswer::Yes);
    expectList([](QDialog& list) {
        type(list, "ENOMBRE", "ALPE");
        press(list, "BBAceptar");
    });
    leave();
    EXPECT_EQ(municipalityBox->text(), "ALPEDRETE");
    EXPECT_EQ(tagOf(*municipalityBox), 28010);
    EXPECT_EQ(province, "MADRID");
    EXPECT_EQ(postalCode, "28430");
    EXPECT_EQ(controller->DM->tbMunicipi.tag(), "NOMBRE");
}

TEST_F(UnknownMunicipality, EachOfTwoMunicipalitiesWithOneNameIsReachable) {
    for (const auto& [code, tag, postal] : {std::tuple{"09221", 9221, "09500"}, {"47085", 47085, "47400"}}) {
        municipalityBox->setText("MEDINA");
        setTag(*municipalityBox, 0);
        answer(ambrel::MessageAnswer::Yes);
        expectList([code = code](QDialog& list) {
            type(list, "ECODINE", code);
            press(list, "BBAceptar");
        });
        leave();
        EXPECT_EQ(municipalityBox->text(), "MEDINA");
        EXPECT_EQ(tagOf(*municipalityBox), tag);
        EXPECT_EQ(postalCode, postal);
        EXPECT_EQ(controller->DM->tbMunicipiCODPOSTAL.text(), postal);
        EXPECT_EQ(controller->DM->tbMunicipi.tag(), "NOMBRE");
    }
}

TEST_F(UnknownMunicipality, LeavingTheListWithoutAnswerSettlesNothing) {
    const std::vector<ambrel::test::ModalScript::Step> waysOut{
        [](QDialog& list) { press(list, "BBCancelar"); },
        [](QDialog& list) { QTest::keyClick(list.focusWidget(), Qt::Key_Escape); },
        [](QDialog& list) { list.close(); }};
    for (const auto& wayOut : waysOut) {
        answer(ambrel::MessageAnswer::Yes);
        expectList(wayOut);
        leave();
        expectUnsettled();
    }
}

TEST_F(UnknownMunicipality, KnownMunicipalityIsNotAskedAbout) {
    QTest::keyClicks(municipalityBox, "NA");
    municipalityBox->setText("NAVACERRADA");
    setTag(*municipalityBox, 28093);
    leave();
    EXPECT_TRUE(messages.shown().empty());
}

TEST_F(UnknownMunicipality, EmptyProvinceAndPostalCodeAreLeftAloneAlsoAfterTheList) {
    province.clear();
    postalCode.clear();
    answer(ambrel::MessageAnswer::Yes);
    expectList([](QDialog& list) { press(list, "BBAceptar"); });
    leave();
    EXPECT_NE(tagOf(*municipalityBox), 0);
    EXPECT_EQ(province, "");
    EXPECT_EQ(postalCode, "");
}

TEST_F(UnknownMunicipality, TabAsksShowsTheListAndGoesOnToTheNextBox) {
    ambrel::test::showActive(form);
    municipalityBox->setFocus();
    answer(ambrel::MessageAnswer::Yes);
    expectList([](QDialog& list) {
        type(list, "ECODPOSTAL", "474");
        press(list, "BBAceptar");
    });
    QTest::keyClick(municipalityBox, Qt::Key_Tab);
    EXPECT_EQ(municipalityBox->text(), "MEDINA");
    EXPECT_EQ(tagOf(*municipalityBox), 47085);
    QApplication::setActiveWindow(&form);
    EXPECT_EQ(form.focusWidget(), streetBox);
}

TEST_F(UnknownMunicipality, ListKeepsTheChosenRecordUnderTheOrderThatWasActive) {
    controller->OrdenaPorCodPostalMunicipi();
    expectList([](QDialog& list) {
        type(list, "ENOMBRE", "NAVA");
        press(list, "BBAceptar");
    });
    EXPECT_TRUE(controller->BuscarMunicipios());
    EXPECT_EQ(controller->DM->tbMunicipi.tag(), "CODPOSTAL");
    EXPECT_EQ(municipality(), "NAVACERRADA");
}

TEST_F(UnknownMunicipality, OrderComesBackAlsoAfterCancelling) {
    expectList([](QDialog& list) {
        type(list, "ECODINE", "28093");
        press(list, "BBCancelar");
    });
    EXPECT_FALSE(controller->BuscarMunicipios());
    EXPECT_EQ(controller->DM->tbMunicipi.tag(), "NOMBRE");
}

TEST_F(UnknownMunicipality, AnswerIsTheTagOfTheListNotItsResult) {
    expectList([](QDialog& list) {
        setTag(list, 1);
        list.close();
    });
    EXPECT_TRUE(controller->BuscarMunicipios());
    expectList([](QDialog& list) { list.done(1); });
    EXPECT_FALSE(controller->BuscarMunicipios());
}

TEST_F(UnknownMunicipality, ListBelongsToThePadreOrElseToTheActiveWindow) {
    QWidget padre;
    ambrel::test::showActive(form);
    for (QWidget* given : {static_cast<QWidget*>(nullptr), &padre}) {
        controller->Padre = given;
        expectList([this, given](QDialog& list) {
            EXPECT_EQ(list.parentWidget(), given ? given : &form);
            list.close();
        });
        EXPECT_FALSE(controller->BuscarMunicipios());
    }
    EXPECT_TRUE(form.findChildren<QDialog*>().isEmpty());
    EXPECT_TRUE(padre.findChildren<QDialog*>().isEmpty());
}

TEST_F(MunicipalityBox, FailureIsShownOnceAndTheProgramGoesOn) {
    ScriptedMessages messages;
    controller->DM->tbMunicipi.close();
    QTest::keyPress(municipalityBox, 'M');
    try {
        static_cast<void>(controller->BuscaPorNombreMunicipi("M", false));
        FAIL() << "a closed table was searched";
    } catch (const std::exception& error) {
        messages.expect(QString::fromUtf8(error.what()), QStringLiteral("Atención"));
    }
    QTest::keyRelease(municipalityBox, 'M');
    EXPECT_TRUE(messages.isDone());
    controller->DM->tbMunicipi.open();
    QTest::keyClicks(municipalityBox, "A");
    EXPECT_EQ(tagOf(*municipalityBox), 28079);
}

} // namespace
