// Adding, changing and deleting streets through the controller.
#include "controller/ClasCodPostales.h"
#include "controller/StreetTables.h"
#include "services/EventGuard.h"
#include "support/ScriptedMessages.h"

namespace {

using namespace postal_tests;
using ambrel::MessageAnswer;
using ambrel::test::ScriptedMessages;
using dbase::DatasetState;

class StreetMaintenance : public StreetTables {
protected:
    /// Opens with an ordinary street and two that users added. Madrid is the current municipality.
    void openWithStreets() {
        addStreets({{"28000001", "ARENAL", "CL", "28013"},
                    {"99000000", "SERRANO", "CL", "28006"},
                    {"99000001", "VELAZQUEZ", "CL", "28001"}});
        open();
    }
    void open() {
        controller = std::make_unique<TClassCodPostales>();
        ASSERT_TRUE(controller->BuscaPorNombreMunicipi("MADRID", true));
    }

    [[nodiscard]] dbase::Dataset& streets() const { return controller->DM->tbPostal; }
    [[nodiscard]] std::string name() const { return controller->DM->tbPostalVIA.text(); }
    [[nodiscard]] std::string key() const { return controller->DM->tbPostalCODIGO1.text(); }
    void goTo(const std::string& street) const { goTo(*controller, street); }
    static void goTo(TClassCodPostales& on, const std::string& street) {
        ASSERT_TRUE(on.BuscaPorViaPostal(QString::fromStdString(street), "CL", true)) << street;
    }

    /// Begins a new row with a name.
    void begin(const std::string& street) const {
        ASSERT_TRUE(controller->AnadirVia());
        controller->DM->tbPostalVIA.setText(street);
    }
    /// Keys of all stored rows, in the order of the file.
    static std::vector<std::string> storedKeys() {
        dbase::Dataset table("DB", "POSTAL");
        table.open();
        std::vector<std::string> keys;
        for (; !table.eof() && !table.isEmpty(); table.next()) {
            keys.push_back(table.field("CODIGO1").text());
        }
        return keys;
    }

    static void expectThatThereAreNoStreets(ScriptedMessages& messages) {
        messages.expect("No hay vias introducidas que modificar", "Inserte primero una via.");
    }
    static void expectRefusedLock(ScriptedMessages& messages) {
        messages.expect("Repita nuevamente la última operación", "Acceso concurrente");
    }

    std::unique_ptr<TClassCodPostales> controller;
};

using Keys = std::vector<std::string>;

// --- AnadirVia

TEST_F(StreetMaintenance, AnadirViaStartsARowOfTheProvinceWithOpenRangesAndNothingElse) {
    openWithStreets();
    ASSERT_TRUE(controller->AnadirVia());
    const TDMCodPostales& tables = *controller->DM;
    EXPECT_EQ(streets().state(), DatasetState::Insert);
    EXPECT_EQ(tables.tbPostalPROVINCIA.text(), "28");
    EXPECT_EQ(tables.tbPostalIMPAR_INI.integer(), 1);
    EXPECT_EQ(tables.tbPostalIMPAR_FIN.integer(), 9999);
    EXPECT_EQ(tables.tbPostalPAR_INI.integer(), 2);
    EXPECT_EQ(tables.tbPostalPAR_FIN.integer(), 9998);
    for (const dbase::Field* left : {&tables.tbPostalCAPITAL, &tables.tbPostalVIA, &tables.tbPostalTIPO_VIA,
                                     &tables.tbPostalCODPOSTAL, &tables.tbPostalCODIGO1}) {
        EXPECT_TRUE(left->isNull()) << left->name();
    }
}

TEST_F(StreetMaintenance, AnadirViaThatRaisesLeavesNothingPendingAndAnswersFalse) {
    openWithStreets();
    streets().close();
    ScriptedMessages none;
    EXPECT_FALSE(controller->AnadirVia());
    EXPECT_EQ(streets().state(), DatasetState::Closed);
    EXPECT_FALSE(controller->streetFailure().isEmpty());
}

// --- ModificarVia

TEST_F(StreetMaintenance, ModificarViaOfAnEmptyTableSaysSoAndAnswersFalse) {
    open();
    ScriptedMessages messages;
    expectThatThereAreNoStreets(messages);
    EXPECT_FALSE(controller->ModificarVia());
}

TEST_F(StreetMaintenance, ModificarViaEditsAUserStreet) {
    openWithStreets();
    goTo("SERRANO");
    EXPECT_TRUE(controller->ModificarVia());
    EXPECT_EQ(streets().state(), DatasetState::Edit);
}

TEST_F(StreetMaintenance, ModificarViaRefusesAnOrdinaryStreet) {
    openWithStreets();
    goTo("ARENAL");
    ScriptedMessages messages;
    messages.expect("No puede modificar los datos de esta via", "Via no modificable.");
    EXPECT_FALSE(controller->ModificarVia());
    EXPECT_EQ(streets().state(), DatasetState::Browse);
    EXPECT_TRUE(controller->streetFailure().isEmpty());
}

TEST_F(StreetMaintenance, ModificarViaOfARowThatAnotherWorkstationHoldsAnswersFalse) {
    openWithStreets();
    goTo("SERRANO");
    TClassCodPostales other;
    ASSERT_TRUE(other.BuscaPorNombreMunicipi("MADRID", true));
    goTo(other, "SERRANO");
    ASSERT_TRUE(other.ModificarVia());
    ScriptedMessages none;
    EXPECT_FALSE(controller->ModificarVia());
    EXPECT_EQ(streets().state(), DatasetState::Browse);
    EXPECT_TRUE(controller->streetFailure().contains("otro usuario"));
}

TEST_F(StreetMaintenance, ModificarViaOfARowThatAnotherWorkstationChangedAnswersFalseAndShowsItAsItIs) {
    openWithStreets();
    goTo("SERRANO");
    dbase::Dataset other("DB", "POSTAL");
    other.open();
    other.next();
    other.edit();
    other.field("CODPOSTAL").setText("28099");
    other.post();
    EXPECT_FALSE(controller->ModificarVia());
    EXPECT_EQ(controller->DM->tbPostalCODPOSTAL.text(), "28099");
    EXPECT_TRUE(controller->ModificarVia());
}

// --- BorrarVia

TEST_F(StreetMaintenance, BorrarViaOfAnEmptyTableSaysSoCancelsWhatIsPendingAndAnswersTrue) {
    open();
    begin("NUEVA");
    ScriptedMessages messages;
    expectThatThereAreNoStreets(messages);
    EXPECT_TRUE(controller->BorrarVia(true));
    EXPECT_EQ(streets().state(), DatasetState::Browse);
}

TEST_F(StreetMaintenance, BorrarViaAsksAndDeletesOnYes) {
    openWithStreets();
    goTo("SERRANO");
    ScriptedMessages messages;
    messages.expect("¿Seguro que desea borrar la via SERRANO de la base de datos?", "Eliminar Via",
                    "Atención", MessageAnswer::Yes);
    EXPECT_TRUE(controller->BorrarVia(true));
    EXPECT_EQ(storedKeys(), (Keys{"28000001", "99000001"}));
}

TEST_F(StreetMaintenance, BorrarViaKeepsTheRowOnAnyOtherAnswer) {
    openWithStreets();
    goTo("SERRANO");
    for (const MessageAnswer answer : {MessageAnswer::No, MessageAnswer::Cancel}) {
        ScriptedMessages messages;
        messages.expect("¿Seguro que desea borrar la via SERRANO de la base de datos?", "Eliminar Via",
                        "Atención", answer);
        EXPECT_FALSE(controller->BorrarVia(true));
    }
    EXPECT_EQ(storedKeys().size(), 3U);
}

TEST_F(StreetMaintenance, BorrarViaWithAskFalseDeletesWithoutAQuestion) {
    openWithStreets();
    goTo("SERRANO");
    ScriptedMessages none;
    EXPECT_TRUE(controller->BorrarVia(false));
    EXPECT_EQ(storedKeys(), (Keys{"28000001", "99000001"}));
}

TEST_F(StreetMaintenance, BorrarViaRefusesAnOrdinaryStreet) {
    openWithStreets();
    goTo("ARENAL");
    ScriptedMessages messages;
    messages.expect("No puede borrar los datos de esta via", "Via no modificable.");
    EXPECT_FALSE(controller->BorrarVia(true));
    EXPECT_EQ(storedKeys().size(), 3U);
}

TEST_F(StreetMaintenance, SecondFlagOfBorrarViaHasNoEffect) {
    openWithStreets();
    ScriptedMessages none;
    goTo("SERRANO");
    EXPECT_TRUE(controller->BorrarVia(false, true));
    goTo("VELAZQUEZ");
    EXPECT_TRUE(controller->BorrarVia(false, false));
    EXPECT_EQ(storedKeys(), Keys{"28000001"});
}

TEST_F(StreetMaintenance, BorrarViaThatRaisesCancelsAndAnswersFalse) {
    openWithStreets();
    goTo("SERRANO");
    dbase::Dataset other("DB", "POSTAL");
    other.open();
    other.next();
    other.edit();
    ScriptedMessages none;
    EXPECT_FALSE(controller->BorrarVia(false));
    EXPECT_EQ(streets().state(), DatasetState::Browse);
    EXPECT_EQ(name(), "SERRANO");
    EXPECT_FALSE(controller->streetFailure().isEmpty());
}

// --- AceptarVia, PostInsert

TEST_F(StreetMaintenance, AceptarViaOfARowWithoutNameSaysSoAndDropsIt) {
    openWithStreets();
    for (const char* blank : {"", "   "}) {
        begin(blank);
        ScriptedMessages messages;
        messages.expect("Rellene el campo Nombre de la Via", "ATENCIÓN:");
        EXPECT_FALSE(controller->AceptarVia());
        EXPECT_EQ(streets().state(), DatasetState::Browse);
    }
    EXPECT_EQ(storedKeys().size(), 3U);
}

TEST_F(StreetMaintenance, AceptarViaPostsAnEditedRowUnderItsOwnKey) {
    openWithStreets();
    goTo("SERRANO");
    ASSERT_TRUE(controller->ModificarVia());
    controller->DM->tbPostalVIA.setText("JORGE JUAN");
    EXPECT_TRUE(controller->AceptarVia());
    EXPECT_EQ(streets().state(), DatasetState::Browse);
    EXPECT_EQ(name(), "JORGE JUAN");
    EXPECT_EQ(key(), "99000000");
}

TEST_F(StreetMaintenance, AceptarViaStoresANewRowUnderTheNextKey) {
    openWithStreets();
    begin("NUEVA");
    EXPECT_TRUE(controller->AceptarVia());
    EXPECT_EQ(streets().state(), DatasetState::Browse);
    EXPECT_EQ(name(), "NUEVA");
    EXPECT_EQ(key(), "99000002");
    EXPECT_EQ(storedKeys(), (Keys{"28000001", "99000000", "99000001", "99000002"}));
}

TEST_F(StreetMaintenance, AceptarViaKeepsTheFreeKeyThatAnImportedRowCarries) {
    openWithStreets();
    begin("NUEVA");
    controller->DM->tbPostalCODIGO1.setText("28000002");
    EXPECT_TRUE(controller->AceptarVia());
    EXPECT_EQ(key(), "28000002");
}

TEST_F(StreetMaintenance, AceptarViaThatFailsAnswersFalseAndTheCallerShowsWhyOnce) {
    openWithStreets();
    goTo("SERRANO");
    ScriptedMessages messages;
    EXPECT_FALSE(controller->AceptarVia()); // nothing is pending
    const QString why = controller->streetFailure();
    ASSERT_FALSE(why.isEmpty());
    messages.expect(why, "Atención");
    controller->showStreetFailure();
    controller->showStreetFailure();
    EXPECT_TRUE(controller->streetFailure().isEmpty());
}

TEST_F(StreetMaintenance, SuccessForgetsAnEarlierFailure) {
    openWithStreets();
    goTo("SERRANO");
    ASSERT_FALSE(controller->AceptarVia());
    ASSERT_TRUE(controller->ModificarVia());
    EXPECT_TRUE(controller->streetFailure().isEmpty());
}

TEST_F(StreetMaintenance, RefusedAllocationLockIsReportedAndTheRowStaysInInsert) {
    openWithStreets();
    dbase::Dataset other("DB", "POSTAL");
    other.open();
    ASSERT_TRUE(other.lockCurrent());
    begin("NUEVA");
    {
        ScriptedMessages messages;
        expectRefusedLock(messages);
        EXPECT_FALSE(controller->AceptarVia());
        ASSERT_EQ(messages.shown().size(), 1U);
        EXPECT_EQ(messages.shown().front().kind, ambrel::MessageKind::Warning);
        controller->showStreetFailure(); // there is nothing left to show
    }
    EXPECT_EQ(streets().state(), DatasetState::Insert);
    EXPECT_EQ(name(), "NUEVA");
    other.unlockAll();
    EXPECT_TRUE(controller->AceptarVia());
    EXPECT_EQ(key(), "99000002");
}

TEST_F(StreetMaintenance, RefusedAllocationLockEndsPostInsertByASilentAbort) {
    openWithStreets();
    dbase::Dataset other("DB", "POSTAL");
    other.open();
    ASSERT_TRUE(other.lockCurrent());
    begin("NUEVA");
    ScriptedMessages messages;
    expectRefusedLock(messages);
    EXPECT_THROW(controller->PostInsert(), ambrel::SilentAbort);
}

TEST_F(StreetMaintenance, TwoControllersOfOneProgramNeverGiveOneKeyTwice) {
    open();
    TClassCodPostales other;
    ASSERT_TRUE(other.BuscaPorNombreMunicipi("MADRID", true));
    for (int i = 0; i < 5; ++i) {
        begin("NUEVA"); // both rows are pending at once
        ASSERT_TRUE(other.AnadirVia());
        other.DM->tbPostalVIA.setText("OTRA");
        EXPECT_TRUE(other.AceptarVia());
        EXPECT_TRUE(controller->AceptarVia());
    }
    Keys expected;
    for (int i = 0; i < 10; ++i) {
        expected.push_back(std::to_string(99000000 + i));
    }
    EXPECT_EQ(storedKeys(), expected);
}

TEST_F(StreetMaintenance, ControllerThatEditsTheFirstRowKeepsAnotherOneFromGivingKeys) {
    addStreets({{"99000000", "ALCALA", "CL", "28014"}});
    open();
    TClassCodPostales other;
    ASSERT_TRUE(other.BuscaPorNombreMunicipi("MADRID", true));
    ASSERT_TRUE(other.ModificarVia());
    begin("NUEVA");
    ScriptedMessages messages;
    expectRefusedLock(messages);
    EXPECT_FALSE(controller->AceptarVia());
}

// --- CancelarVia

TEST_F(StreetMaintenance, CancelarViaDropsTheRowOnYesOnly) {
    openWithStreets();
    begin("NUEVA");
    ScriptedMessages messages;
    const auto answer = [&](MessageAnswer given) {
        messages.expect("¿Desea cancelar esta operación (S/N)?", "Esta modificando los datos de una via",
                        "Atención", given);
        return controller->CancelarVia();
    };
    EXPECT_FALSE(answer(MessageAnswer::No));
    EXPECT_FALSE(answer(MessageAnswer::Cancel));
    EXPECT_EQ(streets().state(), DatasetState::Insert);
    EXPECT_EQ(name(), "NUEVA");
    EXPECT_TRUE(answer(MessageAnswer::Yes));
    EXPECT_EQ(streets().state(), DatasetState::Browse);
    EXPECT_EQ(messages.shown().front().defaultButton, MessageAnswer::No);
}

} // namespace
