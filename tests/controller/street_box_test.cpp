// The street box: typing, leaving, and its questions.
#include <QTest>
#include <filesystem>

#include "controller/AddressForm.h"
#include "services/TagProperty.h"
#include "support/FileSizeLimit.h"
#include "support/ModalScript.h"
#include "support/ScriptedMessages.h"
#include "support/ShownWindow.h"

namespace {

using namespace postal_tests;
using ambrel::MessageAnswer;
using ambrel::setTag;
using ambrel::tagOf;
using ambrel::test::ModalScript;
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

    static void expectInsertionOffer(ScriptedMessages& messages, MessageAnswer answer) {
        messages.expect("¿Desea insertarla como una nueva via?", "ATENCIÓN", "Atención", answer);
    }
    static void expectListOffer(ScriptedMessages& messages, MessageAnswer answer) {
        messages.expect("¿Desea ver la lista de direcciones actuales?", "ATENCIÓN", "Atención", answer);
    }
    static void expectCancellation(ScriptedMessages& messages) {
        messages.expect("¿Desea cancelar esta operación (S/N)?", "Esta modificando los datos de una via",
                        "Atención", MessageAnswer::Yes);
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

TEST_F(StreetBox, LeavingAnUnknownStreetWithAskFalseAndNoToTheInsertionAsksNothingMoreAndLeavesTheTagAt0) {
    ScriptedMessages messages;
    expectInsertionOffer(messages, MessageAnswer::No);
    asks = false;
    QTest::keyClicks(streetBox, "NINGUNA");
    leave();
    EXPECT_EQ(tagOf(*streetBox), 0);
    EXPECT_EQ(streetBox->text(), "NINGUNA");
    EXPECT_EQ(hostPostalCode(), "00000");
}

TEST_F(StreetBox, LeavingAnUnknownStreetWithNoToBothQuestionsLeavesTheTagAt0AndWritesNothing) {
    ScriptedMessages messages;
    expectInsertionOffer(messages, MessageAnswer::No);
    expectListOffer(messages, MessageAnswer::No);
    QTest::keyClicks(streetBox, "NINGUNA");
    leave();
    EXPECT_EQ(tagOf(*streetBox), 0);
    EXPECT_EQ(hostPostalCode(), "00000");
}

TEST_F(StreetBox, YesInsertsTheTextAsANewStreetAndShowsItsCard) {
    ScriptedMessages messages;
    ModalScript dialogs;
    expectInsertionOffer(messages, MessageAnswer::Yes);
    postalCode = "28045";
    dialogs.expect("TFFichaVia", [&](QDialog& card) {
        EXPECT_EQ(controller->DM->tbPostal.state(), dbase::DatasetState::Edit);
        EXPECT_EQ(ambrel::test::child<QLineEdit>(card, "DBEVia").text(), "NUEVA");
        EXPECT_EQ(ambrel::test::child<QLineEdit>(card, "EVecindad").text(), "MADRID");
        expectCancellation(messages);
        card.reject();
    });
    streetBox->setText("NUEVA");
    leave();
    EXPECT_EQ(tagOf(*streetBox), 1);
    EXPECT_EQ(row(), "99000000");
    const TDMCodPostales& tables = *controller->DM;
    EXPECT_EQ(tables.tbPostalVIA.text(), "NUEVA");
    EXPECT_EQ(tables.tbPostalTIPO_VIA.text(), "CL");
    EXPECT_EQ(tables.tbPostalCODPOSTAL.text(), "28045");
    EXPECT_EQ(tables.tbPostalPROVINCIA.text(), "28");
    EXPECT_EQ(tables.tbPostalPAR_FIN.integer(), 9998);
    EXPECT_EQ(hostPostalCode(), "28045");
}

TEST_F(StreetBox, NewStreetTakesTheTextAsItStandsInTheBoxAndLettersThatTheColumnCanHold) {
    ScriptedMessages messages;
    ModalScript dialogs;
    expectInsertionOffer(messages, MessageAnswer::Yes);
    dialogs.expect("TFFichaVia", [&](QDialog& card) {
        expectCancellation(messages);
        card.reject();
    });
    streetBox->setText(QStringLiteral(" ŁÓDŹ"));
    leave();
    EXPECT_EQ(controller->DM->tbPostalVIA.text(), ambrel::test::ansi(" LÓDZ"));
}

TEST_F(StreetBox, RefusedAllocationLockEndsTheInsertionSilentlyAndLeavesTheTagAt0) {
    dbase::Dataset other("DB", "POSTAL");
    other.open();
    ASSERT_TRUE(other.lockCurrent());
    ScriptedMessages messages;
    ModalScript noCard;
    expectInsertionOffer(messages, MessageAnswer::Yes);
    messages.expect("Repita nuevamente la última operación", "Acceso concurrente");
    streetBox->setText("NUEVA");
    leave();
    EXPECT_EQ(tagOf(*streetBox), 0);
    EXPECT_EQ(hostPostalCode(), "00000");
    EXPECT_EQ(controller->DM->tbPostal.state(), dbase::DatasetState::Insert);
}

TEST_F(StreetBox, LeavingAgainAfterARefusedAllocationLockAsksAgainAndInsertsTheStreetOnce) {
    dbase::Dataset other("DB", "POSTAL");
    other.open();
    ASSERT_TRUE(other.lockCurrent());
    ScriptedMessages messages;
    expectInsertionOffer(messages, MessageAnswer::Yes);
    messages.expect("Repita nuevamente la última operación", "Acceso concurrente");
    streetBox->setText("NUEVA");
    leave();
    other.unlockAll();
    ModalScript dialogs;
    expectInsertionOffer(messages, MessageAnswer::Yes);
    dialogs.expect("TFFichaVia", [&](QDialog& card) {
        expectCancellation(messages);
        card.reject();
    });
    leave();
    EXPECT_EQ(tagOf(*streetBox), 1);
    EXPECT_EQ(controller->DM->tbPostalVIA.text(), "NUEVA");
    dbase::Dataset stored("DB", "POSTAL");
    stored.open();
    stored.setFilter("VIA = 'NUEVA'");
    EXPECT_FALSE(stored.isEmpty());
    EXPECT_FALSE(stored.next());
}

TEST_F(StreetBox, StreetThatTheDiskHasNoRoomForIsReportedOnceWithoutACardAndLeavesTheTagAt0) {
    QStringList shown;
    const auto before = ambrel::setMessageShower([&](const ambrel::MessageBox& box) {
        shown += box.text;
        return MessageAnswer::Yes;
    });
    ModalScript noCard;
    streetBox->setText("NUEVA");
    {
        const ambrel::test::FileSizeLimit full(std::filesystem::file_size(folder / "POSTAL.DBF"));
        leave();
    }
    ambrel::setMessageShower(before);
    ASSERT_EQ(shown.size(), 2);
    EXPECT_EQ(shown[0], "¿Desea insertarla como una nueva via?");
    EXPECT_TRUE(shown[1].contains("libere espacio")) << shown[1].toStdString();
    EXPECT_EQ(tagOf(*streetBox), 0);
    EXPECT_EQ(hostPostalCode(), "00000");
}

TEST_F(StreetBox, StreetThatCannotBeInsertedIsReportedOnceAndLeavesTheTagAt0) {
    ScriptedMessages messages;
    expectInsertionOffer(messages, MessageAnswer::Yes);
    controller->DM->tbPostal.close();
    EXPECT_FALSE(controller->AnadirVia());
    messages.expect(controller->streetFailure(), "Atención");
    streetBox->setText("NUEVA");
    leave();
    EXPECT_EQ(tagOf(*streetBox), 0);
}

TEST_F(StreetBox, StreetChosenFromTheListIsTaken) {
    ScriptedMessages messages;
    ModalScript dialogs;
    expectInsertionOffer(messages, MessageAnswer::No);
    expectListOffer(messages, MessageAnswer::Yes);
    dialogs.expect("TFBuscarDireccionPostal", [this](QDialog& list) {
        goToRow("6");
        setTag(list, 1);
        list.done(1);
    });
    streetBox->setText("NINGUNA");
    leave();
    EXPECT_EQ(streetBox->text(), "SERRANO");
    EXPECT_EQ(tagOf(*streetBox), 6);
    EXPECT_EQ(hostPostalCode(), "28006");
}

TEST_F(StreetBox, ListLeftWithoutAChoiceLeavesTextAndTag) {
    ScriptedMessages messages;
    ModalScript dialogs;
    expectInsertionOffer(messages, MessageAnswer::No);
    expectListOffer(messages, MessageAnswer::Yes);
    dialogs.expect("TFBuscarDireccionPostal", [](QDialog& list) { QTest::keyClick(&list, Qt::Key_Escape); });
    streetBox->setText("NINGUNA");
    leave();
    EXPECT_EQ(streetBox->text(), "NINGUNA");
    EXPECT_EQ(tagOf(*streetBox), 0);
    EXPECT_EQ(hostPostalCode(), "00000");
}

TEST_F(StreetBox, LeavingAKnownStreetAsksNothing) {
    ScriptedMessages none;
    QTest::keyClicks(streetBox, "SERRANO");
    leave();
    EXPECT_TRUE(none.shown().empty());
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
