// Auditing the tables in the window: totals, classes, the card of a street, repairs and the report.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QProgressBar>
#include <QTableView>
#include <QTest>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "dbase/dataset/dataset.h"
#include "host/AuditWindowTest.h"
#include "support/ScriptedMessages.h"

namespace {

using ambrel::MessageAnswer;
using host_tests::AuditWindowTest;

TEST_F(AuditWindowTest, SoundTablesAreSaidToBeSound) {
    addStreets({{"17000001", "NOVA", "CL", "17830", {1, 9999}, {2, 9998}, "17", "9"},
                {"33000001", "NUEVA", "CL", "33600", {1, 9999}, {2, 9998}, "33", "9"}});
    addMunicipalities({{"33037", "33619", "MIERES", "N"}});
    audit();
    EXPECT_EQ(findings(), QStringList());
    EXPECT_TRUE(says("LProgreso").startsWith("Revisado: ")) << says("LProgreso").toStdString();
    EXPECT_TRUE(says("LProgreso").contains("10 filas de MUNICIPI y 8 filas de POSTAL"))
        << says("LProgreso").toStdString();
    EXPECT_TRUE(says("LProgreso").endsWith("El bloque «99» está sin usar. Sin hallazgos."));
    EXPECT_EQ(part<QProgressBar>("BRProgreso").value(), part<QProgressBar>("BRProgreso").maximum());
    EXPECT_TRUE(mayClick("BBInforme"));
    EXPECT_FALSE(mayClick("BBFicha"));
}

class FaultyStreets : public AuditWindowTest {
protected:
    FaultyStreets() {
        addStreets({{"17000001", "NOVA", "CL", "17830", {1, 9999}, {2, 9998}, "17", "9"},
                    {"33000001", "NUEVA", "CL", "33600", {1, 9999}, {2, 9998}, "33", "9"},
                    {"28000006", "sol", "CL", "28005"},
                    {"99000000", "Luna", "CL", "28005"},
                    {"28000008", "MAR", "CL", "28005", {99, 1}}});
        addMunicipalities({{"33037", "33619", "MIERES", "N"}});
    }

    /// The question before the names in small letters are repaired.
    static void expectQuestion(ambrel::test::ScriptedMessages& messages, MessageAnswer answer) {
        messages.expect(
            "¿Desea cambiar 2 filas?",
            "VIA=SOL (POSTAL 9)\nVIA=LUNA (POSTAL 10)\nLo que hay se guarda antes en un fichero, con el que "
            "«ambcp deshacer» lo devuelve.",
            "Revisar las tablas", answer);
    }
    /// What is said afterwards.
    void expectChanged(ambrel::test::ScriptedMessages& messages, const QString& rows) const {
        const QString undo = QString::fromStdString(file("revisar.deshacer").string());
        messages.expect("Cambiado: " + rows + ".\nLo que había está en " + undo +
                            "; lo devuelve: ambcp deshacer " + undo,
                        "Revisar las tablas");
    }
};

TEST_F(FaultyStreets, AreListedAndCountedByClassAndSeverity) {
    audit();
    EXPECT_EQ(
        rowsOf("GClases", {0, 1, 2, 3}),
        (QStringList{"Todos los hallazgos|3|–|–", "Tramo al revés|1|–|–", "Nombre en minúsculas|2|–|–"}));
    EXPECT_EQ(findings(),
              (QStringList{"Grave|POSTAL 10|VIA=LUNA", "Grave|POSTAL 11|IMPAR_INI=1, IMPAR_FIN=99",
                           "Grave|POSTAL 9|VIA=SOL"}));
    EXPECT_TRUE(says("LProgreso").contains("Bloque «99»: 1 clave, la más alta 99000000; quedan 999.999."))
        << says("LProgreso").toStdString();
}

TEST_F(FaultyStreets, AreReadAsAWholeBelowTheList) {
    audit();
    EXPECT_EQ(says("LHallazgo"), "Nombre en minúsculas, clave 99000000: «Luna» lleva minúsculas. Páselo a "
                                 "mayúsculas. Propuesta: VIA=LUNA");
    QTest::keyClick(&part<QTableView>("GHallazgos"), Qt::Key_Down);
    EXPECT_TRUE(says("LHallazgo").startsWith("Tramo al revés, clave 28000008: "))
        << says("LHallazgo").toStdString();
}

TEST_F(FaultyStreets, AreFilteredByTheClassThatIsChosen) {
    audit();
    chooseClass("Nombre en minúsculas");
    EXPECT_EQ(findings().size(), 2);
    chooseClass("Todos los hallazgos");
    EXPECT_EQ(findings().size(), 3);
}

TEST_F(FaultyStreets, AnotherAuditSeesWhatHasChangedSinceAndShowsAllClasses) {
    audit();
    chooseClass("Tramo al revés");
    {
        dbase::Dataset table("DB", "POSTAL", "CODIGO1");
        table.open();
        goToStreet(table, "28000008");
        table.erase();
    }
    ASSERT_TRUE(runByKey(Qt::Key_N));
    EXPECT_EQ(findings().size(), 2);
}

TEST_F(FaultyStreets, ReturnOpensTheCardOfAUsersStreetToBeCorrected) {
    audit();
    chooseClass("Nombre en minúsculas");
    auto& list = part<QTableView>("GHallazgos");
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Home, Qt::ControlModifier);
    ambrel::test::ModalScript script;
    script.expect("TFFichaVia", [](QDialog& card) {
        auto& name = ambrel::test::child<QLineEdit>(card, "DBEVia");
        EXPECT_EQ(name.text(), "Luna");
        EXPECT_EQ(ambrel::test::child<QLineEdit>(card, "EVecindad").text(), "MADRID");
        name.setFocus();
        name.selectAll();
        QTest::keyClicks(&name, "luna");
        host_tests::clickIn(card, "BBAceptar");
    });
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_TRUE(script.isDone());
    EXPECT_EQ(storedStreet("99000000", "VIA"), "LUNA");
    EXPECT_EQ(text("EVia"), "ALCALA") << "the form's own street stays";
}

TEST_F(FaultyStreets, AStreetOfTheDirectoryIsOnlyShown) {
    audit();
    chooseClass("Tramo al revés");
    ambrel::test::ModalScript script;
    script.expect("TFFichaVia", [](QDialog& card) {
        EXPECT_EQ(ambrel::test::child<QLineEdit>(card, "DBEVia").text(), "MAR");
        EXPECT_FALSE(ambrel::test::child<QLineEdit>(card, "DBEVia").isEnabled());
        host_tests::clickIn(card, "BBAceptar");
    });
    clickIn("BBFicha");
    EXPECT_TRUE(script.isDone());
}

TEST_F(FaultyStreets, ARowThatIsGoneHasNoCardAndThatIsSaid) {
    audit();
    {
        dbase::Dataset table("DB", "POSTAL", "CODIGO1");
        table.open();
        goToStreet(table, "28000008");
        table.erase();
    }
    chooseClass("Tramo al revés");
    ambrel::test::ScriptedMessages messages;
    messages.expect("La fila ya no es la que se revisó. Revise de nuevo.", "Revisar las tablas");
    auto& list = part<QTableView>("GHallazgos");
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Return);
}

TEST_F(AuditWindowTest, AMunicipalityHasNoCard) {
    audit();
    chooseClass("Municipio sin vías");
    EXPECT_FALSE(mayClick("BBFicha"));
    auto& list = part<QTableView>("GHallazgos");
    list.setFocus();
    const ambrel::test::ModalScript script; // fails if a card comes
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_FALSE(mayClick("BBReparar")) << "nor has it one right repair";
}

TEST_F(FaultyStreets, AClassIsRepairedAfterADryRunAndAQuestion) {
    audit();
    EXPECT_FALSE(mayClick("BBReparar")) << "all classes together are not";
    chooseClass("Nombre en minúsculas");
    ambrel::test::ScriptedMessages messages;
    expectQuestion(messages, MessageAnswer::No);
    ASSERT_TRUE(runByKey(Qt::Key_R));
    EXPECT_EQ(storedStreet("28000006", "VIA"), "sol");
    EXPECT_TRUE(says("LProgreso").startsWith("Revisado: ")) << "the last audit's summary is back";
    EXPECT_FALSE(std::filesystem::exists(file("revisar.deshacer")));
    expectQuestion(messages, MessageAnswer::Yes);
    expectChanged(messages, "2 filas");
    clickIn("BBReparar");
    ASSERT_TRUE(QTest::qWaitFor([] { return findings().size() == 1 && mayClick("BBEmpezar"); }, 20000))
        << findings().join('\n').toStdString();
    EXPECT_EQ(storedStreet("28000006", "VIA"), "SOL");
    EXPECT_EQ(storedStreet("28000008", "IMPAR_INI"), "99") << "another class";
    EXPECT_TRUE(std::filesystem::exists(file("revisar.deshacer")));
}

TEST_F(FaultyStreets, ARepairIsReportedEvenIfTheWindowIsClosedMeanwhile) {
    audit();
    chooseClass("Nombre en minúsculas");
    ambrel::test::ScriptedMessages messages;
    expectQuestion(messages, MessageAnswer::Yes);
    expectChanged(messages, "2 filas");
    clickIn("BBReparar");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !messages.shown().empty(); }, 20000));
    dialog()->close();
    EXPECT_TRUE(QTest::qWaitFor([&] { return messages.isDone(); }, 20000));
    EXPECT_EQ(storedStreet("28000006", "VIA"), "SOL");
}

TEST_F(FaultyStreets, ARowThatSomebodyHoldsIsLeftAloneAndCounted) {
    audit();
    dbase::Dataset table("DB", "POSTAL", "CODIGO1");
    table.open();
    goToStreet(table, "28000006");
    table.edit();
    chooseClass("Nombre en minúsculas");
    ambrel::test::ScriptedMessages messages;
    expectQuestion(messages, MessageAnswer::Yes);
    expectChanged(messages, "1 fila. Sin tocar, porque otro puesto lo impide: 1 fila");
    clickIn("BBReparar");
    ASSERT_TRUE(QTest::qWaitFor([] { return findings().size() == 2 && mayClick("BBEmpezar"); }, 20000));
    table.cancel();
}

TEST_F(AuditWindowTest, AClassOfWhichNoRowHasOneRightRepairIsSaidToHaveNone) {
    addStreets({{"28000006", "CASTA\\AR", "CL", "28005"}});
    audit();
    chooseClass("Letras rotas");
    ambrel::test::ScriptedMessages messages;
    messages.expect("Ninguna fila de «Letras rotas» se puede reparar de una sola manera.",
                    "Revisar las tablas");
    clickIn("BBReparar");
    ASSERT_TRUE(waitForTheEnd());
}

TEST_F(FaultyStreets, TheReportIsSavedWhereTheUserSays) {
    audit();
    ambrel::test::ModalScript script;
    const QString path = QString::fromStdString(file("informe.html").string());
    script.expect("QFileDialog", [path](QDialog& chooser) {
        auto& name = ambrel::test::child<QLineEdit>(chooser, "fileNameEdit");
        name.setFocus();
        name.selectAll();
        QTest::keyClicks(&name, path);
        QTest::keyClick(&name, Qt::Key_Return);
    });
    QTest::keyClick(dialog(), Qt::Key_G, Qt::AltModifier);
    ASSERT_TRUE(QTest::qWaitFor([&] { return says("LProgreso").startsWith("El informe"); }));
    EXPECT_TRUE(script.isDone());
    std::ostringstream text;
    text << std::ifstream(file("informe.html")).rdbuf();
    EXPECT_NE(text.str().find("«sol» lleva minúsculas"), std::string::npos);
    EXPECT_NE(text.str().find("MADRID"), std::string::npos) << "provinces by their names";
    EXPECT_EQ(says("LProgreso"), "El informe está en " + path + ".");
}

TEST_F(AuditWindowTest, ATableThatCannotBeReadIsSaid) {
    leaveUnchecked();
    open();
    for (const char* const name : {"MUNICIPI.DBF", "MUNICIPI.MDX"}) {
        std::filesystem::remove(file(name));
    }
    const auto shown = ambrel::test::boxesDuring([&] {
        choose("MIRevisarTablas");
        ASSERT_TRUE(waitForTheEnd());
    });
    ASSERT_EQ(shown.size(), 1U);
    EXPECT_TRUE(shown.front().text.contains("MUNICIPI")) << shown.front().text.toStdString();
    EXPECT_EQ(says("LProgreso"), "No se ha terminado: los hallazgos no son todos.");
    EXPECT_FALSE(mayClick("BBInforme"));
}

TEST_F(AuditWindowTest, TheMenuBringsTheOpenWindowForward) {
    audit();
    QDialog* const first = dialog();
    choose("MIRevisarTablas");
    EXPECT_EQ(dialog(), first);
    EXPECT_TRUE(mayClick("BBEmpezar")) << "it does not begin again by itself";
}

TEST_F(AuditWindowTest, TabGoesFromTheClassesOverTheFindingsToTheButtons) {
    audit();
    part<QTableView>("GClases").setFocus();
    QStringList order;
    for (int step = 0; step < 4; ++step) {
        QTest::keyClick(dialog()->focusWidget(), Qt::Key_Tab);
        order << dialog()->focusWidget()->objectName();
    }
    EXPECT_EQ(order, (QStringList{"GHallazgos", "BBInforme", "BBEmpezar", "BBCerrar"}));
}

TEST_F(AuditWindowTest, ClosesWithTheForm) {
    audit();
    window().close();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(dialog());
}

} // namespace
