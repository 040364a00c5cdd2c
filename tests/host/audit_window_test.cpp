// Auditing the tables in the window: totals, classes, the card of a street, repairs and the report.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "data/TableDefinitions.h"
#include "dbase/dataset/dataset.h"
#include "dbase/dbf/codec.h"
#include "dbase/system/databases.h"
#include "dbase/table/bulk_loader.h"
#include "host/FormTest.h"
#include "host/audit/AuditWindow.h"
#include "support/ScriptedMessages.h"

namespace {

using ambrel::MessageAnswer;
using host_tests::FormTest;

class AuditWindowTest : public FormTest {
protected:
    AuditWindowTest() { addCustomers({{"Ana", "CL", "ALCALA", "60", "28009", "MADRID", "MADRID"}}); }

    [[nodiscard]] static QDialog* dialog() {
        for (QWidget* const one : QApplication::topLevelWidgets()) {
            if (auto* const found = qobject_cast<host::AuditWindow*>(one)) {
                return found;
            }
        }
        return nullptr;
    }
    template<class Widget>
    [[nodiscard]] static Widget& part(const char* name) {
        return *dialog()->findChild<Widget*>(QLatin1String(name));
    }
    [[nodiscard]] static QString says(const char* name) { return part<QLabel>(name).text(); }
    [[nodiscard]] static bool mayClick(const char* name) { return part<QPushButton>(name).isEnabled(); }
    static void clickIn(const char* name) { QTest::mouseClick(&part<QPushButton>(name), Qt::LeftButton); }
    static bool waitForTheEnd() {
        return QTest::qWaitFor([] { return mayClick("BBEmpezar"); }, 30000);
    }
    /// Presses a button by its letter: it is seen pressed for a moment before it acts.
    static bool runByKey(Qt::Key key) {
        QTest::keyClick(dialog(), key, Qt::AltModifier);
        return QTest::qWaitFor([] { return !mayClick("BBEmpezar"); }) && waitForTheEnd();
    }
    /// Opens the window from the menu and waits until the audit is whole.
    void audit() {
        open();
        choose("MIRevisarTablas");
        ASSERT_TRUE(waitForTheEnd());
    }
    [[nodiscard]] static QStringList rowsOf(const char* table, const std::vector<int>& columns) {
        QStringList rows;
        const QAbstractItemModel& model = *part<QTableView>(table).model();
        for (int row = 0; row < model.rowCount(); ++row) {
            QStringList cells;
            for (const int column : columns) {
                cells << model.index(row, column).data().toString();
            }
            rows << cells.join(QLatin1Char('|'));
        }
        return rows;
    }
    /// Severity, row and proposal of each finding.
    [[nodiscard]] static QStringList findings() { return rowsOf("GHallazgos", {0, 1, 3}); }
    /// Chooses a class by keys.
    static void chooseClass(const QString& title) {
        auto& classes = part<QTableView>("GClases");
        classes.setFocus();
        QTest::keyClick(&classes, Qt::Key_Home, Qt::ControlModifier);
        for (int row = 1; classes.currentIndex().siblingAtColumn(0).data().toString() != title; ++row) {
            ASSERT_LT(row, classes.model()->rowCount()) << title.toStdString();
            QTest::keyClick(&classes, Qt::Key_Down);
        }
    }
    [[nodiscard]] static std::string storedStreet(const char* key, const char* column) {
        dbase::Dataset table("DB", "POSTAL", "CODIGO1");
        table.open();
        goToStreet(table, key);
        return table.field(column).text();
    }
    [[nodiscard]] std::filesystem::path file(const char* name) const {
        return std::filesystem::path(folder.path()) / name;
    }
};

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
    const QString line =
        "VIA=SOL (POSTAL 9)\nVIA=LUNA (POSTAL 10)\nLo que hay se guarda antes en un fichero, con "
        "el que «ambcp deshacer» lo devuelve.";
    messages.expect("¿Desea cambiar 2 filas?", line, "Revisar las tablas", MessageAnswer::No);
    ASSERT_TRUE(runByKey(Qt::Key_R));
    EXPECT_EQ(storedStreet("28000006", "VIA"), "sol");
    EXPECT_TRUE(says("LProgreso").startsWith("Revisado: ")) << "the last audit's summary is back";
    EXPECT_FALSE(std::filesystem::exists(file("revisar.deshacer")));
    messages.expect("¿Desea cambiar 2 filas?", line, "Revisar las tablas", MessageAnswer::Yes);
    const QString undo = QString::fromStdString(file("revisar.deshacer").string());
    messages.expect("Cambiado: 2 filas.\nLo que había está en " + undo + "; lo devuelve: ambcp deshacer " +
                        undo,
                    "Revisar las tablas");
    clickIn("BBReparar");
    ASSERT_TRUE(QTest::qWaitFor([] { return findings().size() == 1 && mayClick("BBEmpezar"); }, 20000))
        << findings().join('\n').toStdString();
    EXPECT_EQ(storedStreet("28000006", "VIA"), "SOL");
    EXPECT_EQ(storedStreet("28000008", "IMPAR_INI"), "99") << "another class";
    EXPECT_TRUE(std::filesystem::exists(file("revisar.deshacer")));
}

TEST_F(FaultyStreets, ARowThatSomebodyHoldsIsLeftAloneAndCounted) {
    audit();
    dbase::Dataset table("DB", "POSTAL", "CODIGO1");
    table.open();
    goToStreet(table, "28000006");
    table.edit();
    chooseClass("Nombre en minúsculas");
    ambrel::test::ScriptedMessages messages;
    messages.expect(
        "¿Desea cambiar 2 filas?",
        "VIA=SOL (POSTAL 9)\nVIA=LUNA (POSTAL 10)\nLo que hay se guarda antes en un fichero, con el que "
        "«ambcp deshacer» lo devuelve.",
        "Revisar las tablas", MessageAnswer::Yes);
    const QString undo = QString::fromStdString(file("revisar.deshacer").string());
    messages.expect(
        "Cambiado: 1 fila. Sin tocar, porque otro puesto lo impide: 1 fila.\nLo que había está en " + undo +
            "; lo devuelve: ambcp deshacer " + undo,
        "Revisar las tablas");
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

class ManyFindings : public AuditWindowTest {
protected:
    static constexpr int rows = 120'000;

    ManyFindings() {
        dbase::BulkLoader loader(*dbase::findTableFile(folder.path(), "POSTAL"),
                                 dbase::BulkLoader::Mode::Append);
        const dbase::Schema& schema = loader.schema();
        std::string record(schema.recordLength, ' ');
        const auto set = [&](const char* column, const std::string& value) {
            const dbase::Column& one = schema.columns.at(schema.find(column).value());
            dbase::encodeText(std::span(record).subspan(one.offset, one.width), value);
        };
        set("PROVINCIA", "28");
        set("CAPITAL", "0");
        set("TIPO_VIA", "CL");
        set("CODPOSTAL", "28005");
        for (int row = 0; row < rows; ++row) {
            set("CODIGO1", std::to_string(28'100'000 + row));
            set("VIA", "calle " + std::to_string(row));
            loader.add(record);
        }
        loader.finish();
    }
    void startAndSeeProgress() {
        open();
        choose("MIRevisarTablas");
        ASSERT_TRUE(QTest::qWaitFor([] { return says("LProgreso").contains("faltan"); }, 20000))
            << says("LProgreso").toStdString();
    }
};

TEST_F(ManyFindings, AreAllCountedAndAHundredThousandOfAClassListed) {
    audit();
    EXPECT_EQ(part<QTableView>("GHallazgos").model()->rowCount(), 100'003);
    EXPECT_TRUE(rowsOf("GClases", {0, 1}).contains("Nombre en minúsculas|120.000"));
    EXPECT_TRUE(says("LGuardados").startsWith("Se enseñan los 100.000 primeros"))
        << says("LGuardados").toStdString();
    EXPECT_TRUE(part<QLabel>("LGuardados").isVisible());
    chooseClass("Nombre en minúsculas");
    auto& list = part<QTableView>("GHallazgos");
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(list.currentIndex().row(), 99'999);
}

TEST_F(ManyFindings, CanBeInterrupted) {
    startAndSeeProgress();
    clickIn("BBInterrumpir");
    ASSERT_TRUE(waitForTheEnd());
    EXPECT_EQ(says("LProgreso"), "Interrumpido: los hallazgos no son todos.");
    EXPECT_FALSE(mayClick("BBInforme")) << "a report would pass for whole";
    EXPECT_FALSE(mayClick("BBReparar"));
}

TEST_F(ManyFindings, EscapeInterruptsFirstAndClosesThen) {
    startAndSeeProgress();
    QTest::keyClick(dialog(), Qt::Key_Escape);
    ASSERT_TRUE(waitForTheEnd());
    QTest::keyClick(dialog(), Qt::Key_Escape);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(dialog());
}

TEST_F(ManyFindings, AnInterruptedDryRunChangesNothing) {
    audit();
    chooseClass("Nombre en minúsculas");
    const auto shown = ambrel::test::boxesDuring([&] {
        clickIn("BBReparar");
        clickIn("BBInterrumpir");
        ASSERT_TRUE(waitForTheEnd());
    });
    ASSERT_EQ(shown.size(), 1U);
    EXPECT_EQ(shown.front().text, "Interrumpido. Cambiado: 0 filas.");
    EXPECT_FALSE(std::filesystem::exists(file("revisar.deshacer")));
}

TEST_F(ManyFindings, TheProgramEndsInTheMiddleOfAnAudit) {
    startAndSeeProgress();
    close();
    EXPECT_FALSE(dialog());
}

} // namespace
