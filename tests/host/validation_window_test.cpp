// Validating a file of addresses in the window, and taking a failure into the form.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "host/FormTest.h"
#include "host/validation/ValidationWindow.h"
#include "support/ScriptedMessages.h"

namespace {

using ambrel::MessageAnswer;
using host_tests::FormTest;

class ValidationWindowTest : public FormTest {
protected:
    ValidationWindowTest() {
        addCustomers({{"Ana", "CL", "ALCALA", "60", "28009", "MADRID", "MADRID"}});
        write("clientes.csv", "NOMBRE;DIRECCION;POBLACION;CP\n"
                              "Uno;Calle Alcalá 60;Madrid;28009\n"
                              "Dos;Calle Inventada 5;Madrid;28012\n"
                              "Tres;Calle Corta 95;Madrid;28005\n"
                              "Cuatro;Calle Vega 3;Haro;\n"
                              "Cinco;Calle Rara 7;Villanada;\n");
    }

    void write(const std::string& name, const std::string& text) const {
        std::ofstream(std::filesystem::path(folder.path()) / name) << text;
    }
    [[nodiscard]] std::string read(const std::string& name) const {
        std::ostringstream text;
        text << std::ifstream(std::filesystem::path(folder.path()) / name).rdbuf();
        return text.str();
    }
    [[nodiscard]] bool exists(const std::string& name) const {
        return std::filesystem::exists(std::filesystem::path(folder.path()) / name);
    }
    [[nodiscard]] QString pathOf(const char* name) const {
        return QString::fromStdString((std::filesystem::path(folder.path()) / name).string());
    }

    [[nodiscard]] static QDialog* dialog() {
        for (QWidget* const one : QApplication::topLevelWidgets()) {
            if (auto* const found = qobject_cast<host::ValidationWindow*>(one)) {
                return found;
            }
        }
        return nullptr;
    }
    template<class Widget>
    [[nodiscard]] Widget& part(const char* name) {
        return *dialog()->findChild<Widget*>(QLatin1String(name));
    }
    [[nodiscard]] QString says(const char* name) { return part<QLabel>(name).text(); }
    void clickIn(const char* name) { QTest::mouseClick(&part<QPushButton>(name), Qt::LeftButton); }
    /// Opens the window and types the name of a file.
    void openOn(const char* file) {
        open();
        choose("MIValidarFichero");
        auto& input = part<QLineEdit>("EFichero");
        input.setFocus();
        QTest::keyClicks(&input, pathOf(file));
        static_cast<void>(QTest::qWaitFor(
            [&] { return part<QPushButton>("BBEmpezar").isEnabled() || !says("LProblema").isEmpty(); }));
    }
    /// Goes down in the list of a column to what it holds.
    void choosePart(const char* list, const QString& use) {
        auto& column = part<QComboBox>(list);
        column.setFocus();
        for (int step = 0; step < column.count() && column.currentText() != use; ++step) {
            QTest::keyClick(&column, Qt::Key_Down);
        }
        ASSERT_EQ(column.currentText(), use);
    }
    void run() {
        clickIn("BBEmpezar");
        ASSERT_TRUE(QTest::qWaitFor([&] { return !part<QPushButton>("BBInterrumpir").isEnabled(); }, 20000));
    }
    [[nodiscard]] QStringList failures() {
        QStringList rows;
        const QAbstractItemModel& model = *part<QTableView>("GFilas").model();
        for (int row = 0; row < model.rowCount(); ++row) {
            rows << model.index(row, 0).data().toString() + ' ' + model.index(row, 1).data().toString();
        }
        return rows;
    }
};

TEST_F(ValidationWindowTest, ShowsWhatEachColumnIsTakenFor) {
    openOn("clientes.csv");
    EXPECT_EQ(part<QComboBox>("CBColumna1").currentText(), "(no se usa)");
    EXPECT_EQ(part<QComboBox>("CBColumna3").currentText(), "Municipio");
    EXPECT_EQ(part<QComboBox>("CBColumna4").currentText(), "Código postal");
    EXPECT_TRUE(says("LFormato").contains(";"));
    EXPECT_EQ(says("LProblema"), "");
    EXPECT_EQ(part<QLineEdit>("EResultado").text(), pathOf("clientes-validado.csv"));
}

TEST_F(ValidationWindowTest, TabGoesFromTheFileOverItsColumnsToTheResult) {
    openOn("clientes.csv");
    QStringList order;
    for (int step = 0; step < 6; ++step) {
        QTest::keyClick(dialog()->focusWidget(), Qt::Key_Tab);
        order << dialog()->focusWidget()->objectName();
    }
    EXPECT_EQ(order, (QStringList{"BBFichero", "CBColumna1", "CBColumna2", "CBColumna3", "CBColumna4",
                                  "EResultado"}));
}

TEST_F(ValidationWindowTest, WritesTheResultTheReportAndTheTotals) {
    openOn("clientes.csv");
    QTest::keyClicks(&part<QLineEdit>("EInforme"), pathOf("informe.html"));
    run();
    const std::string result = read("clientes-validado.csv");
    EXPECT_EQ(std::count(result.begin(), result.end(), '\n'), 6);
    EXPECT_NE(result.find("Uno;Calle Alcalá 60;Madrid;28009;"), std::string::npos);
    EXPECT_NE(read("informe.html").find("<html"), std::string::npos);
    EXPECT_TRUE(says("LProgreso").startsWith("5 filas leídas, 2 resueltas"))
        << says("LProgreso").toStdString();
    const QString bars = part<QWidget>("GVeredictos").accessibleDescription();
    EXPECT_TRUE(bars.contains("Vía desconocida 1 (20")) << bars.toStdString();
    EXPECT_EQ(part<QTabWidget>("PValidacion").currentIndex(), 1);
}

TEST_F(ValidationWindowTest, ListsTheFailuresAndFiltersThem) {
    openOn("clientes.csv");
    run();
    EXPECT_EQ(failures(),
              (QStringList{"2 Vía desconocida", "3 Número fuera de tramo", "5 Municipio desconocido"}));
    auto& filter = part<QComboBox>("CBVeredicto");
    ASSERT_EQ(filter.count(), 4);
    filter.setFocus();
    QTest::keyClick(&filter, Qt::Key_End);
    EXPECT_EQ(failures().size(), 1);
    QTest::keyClick(&filter, Qt::Key_Home);
    EXPECT_EQ(failures().size(), 3);
}

TEST_F(ValidationWindowTest, AnotherRunShowsAllRowsThatAreNotSettled) {
    openOn("clientes.csv");
    run();
    auto& filter = part<QComboBox>("CBVeredicto");
    filter.setFocus();
    QTest::keyClick(&filter, Qt::Key_End);
    ASSERT_EQ(failures().size(), 1);
    ambrel::test::ScriptedMessages messages;
    messages.expect("¿Desea sustituirlo?", "Ya existe " + pathOf("clientes-validado.csv") + ".",
                    "Validar un fichero", MessageAnswer::Yes);
    run();
    EXPECT_EQ(filter.currentIndex(), 0);
    EXPECT_EQ(failures().size(), 3);
}

TEST_F(ValidationWindowTest, ReturnTakesAFailureIntoANewRowWithoutSavingIt) {
    openOn("clientes.csv");
    run();
    auto& list = part<QTableView>("GFilas");
    ASSERT_TRUE(list.currentIndex().isValid());
    list.setCurrentIndex(list.model()->index(1, 0));
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(text("EMunicipio"), "MADRID");
    EXPECT_EQ(text("EVia"), "CORTA");
    EXPECT_EQ(text("ENumero"), "95");
    EXPECT_EQ(text("ECodPostal"), "28005");
    EXPECT_EQ(tag("ECodPostal"), 0);
    EXPECT_EQ(text("ENombre"), "");
    EXPECT_EQ(label("LEstado"), "Cliente nuevo");
    EXPECT_EQ(stored("", "DOMICILIO"), "") << "nothing is posted";
    EXPECT_EQ(stored("Ana", "DOMICILIO"), "ALCALA");
    EXPECT_TRUE(status().contains("fila 3"));
    ambrel::test::ScriptedMessages messages;
    messages.expect(QStringLiteral("¿Desea descartar los cambios?"),
                    QStringLiteral("Los datos de este cliente no se han guardado."),
                    QStringLiteral("Atención"), MessageAnswer::No);
    list.setCurrentIndex(list.model()->index(0, 0));
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(text("EVia"), "CORTA") << "the user keeps the pending changes";
    messages.expect(QStringLiteral("¿Desea descartar los cambios?"),
                    QStringLiteral("Los datos de este cliente no se han guardado."),
                    QStringLiteral("Atención"), MessageAnswer::Yes);
    clickIn("BBLlevar");
    EXPECT_EQ(text("EVia").toUpper(), "INVENTADA");
    EXPECT_EQ(stored("", "DOMICILIO"), "");
}

TEST_F(ValidationWindowTest, TheUserMaySayWhatAColumnHolds) {
    write("raro.csv", "A,B\n\"Calle Alcalá 60, 28009 Madrid\",x\n\"Calle Corta 3, 28005 Madrid\",y\n");
    openOn("raro.csv");
    EXPECT_FALSE(part<QPushButton>("BBEmpezar").isEnabled());
    EXPECT_NE(says("LProblema"), "");
    auto& first = part<QComboBox>("CBColumna1");
    first.setFocus();
    QTest::keyClick(&first, Qt::Key_Down);
    EXPECT_EQ(first.currentText(), "Dirección entera");
    EXPECT_TRUE(part<QPushButton>("BBEmpezar").isEnabled()) << says("LProblema").toStdString();
    auto& second = part<QComboBox>("CBColumna2");
    second.setFocus();
    QTest::keyClick(&second, Qt::Key_Down);
    EXPECT_EQ(first.currentText(), "(no se usa)") << "a part stands in one column";
    first.setFocus();
    QTest::keyClick(&first, Qt::Key_Down);
    run();
    EXPECT_TRUE(says("LProgreso").startsWith("2 filas leídas, 2 resueltas"))
        << says("LProgreso").toStdString();
}

TEST_F(ValidationWindowTest, CountsOneRowInTheSingular) {
    write("uno.csv", "DIRECCION;POBLACION;CP\nCalle Alcalá 60;Madrid;28009\n");
    openOn("uno.csv");
    run();
    EXPECT_TRUE(says("LProgreso").startsWith("1 fila leída, 1 resuelta, en"))
        << says("LProgreso").toStdString();
}

TEST_F(ValidationWindowTest, AColumnThatIsChosenIsNotTakenForOneNamedByItsNumber) {
    write("numeros.csv", "X;Y;1\n"
                         "Calle Alcalá 60;28009 Madrid;Calle Corta 95\n");
    openOn("numeros.csv");
    choosePart("CBColumna2", QStringLiteral("Municipio")); // first: on the way down it takes all other parts
    choosePart("CBColumna1", QStringLiteral("Vía"));
    run();
    EXPECT_TRUE(read("numeros-validado.csv").find(";ALCALA;60;") != std::string::npos)
        << read("numeros-validado.csv");
}

TEST_F(ValidationWindowTest, AFileThatCannotBeReadIsSaid) {
    openOn("falta.csv");
    EXPECT_NE(says("LProblema"), "");
    EXPECT_FALSE(part<QPushButton>("BBEmpezar").isEnabled());
}

TEST_F(ValidationWindowTest, NeverWritesOverTheFileThatItReads) {
    openOn("clientes.csv");
    const std::string before = read("clientes.csv");
    part<QLineEdit>("EResultado").setText(pathOf("clientes.csv"));
    ambrel::test::ScriptedMessages messages;
    messages.expect("El fichero que se lee, el resultado y el informe han de ser distintos.",
                    "Validar un fichero");
    clickIn("BBEmpezar");
    EXPECT_EQ(read("clientes.csv"), before);
}

TEST_F(ValidationWindowTest, AResultThatCannotBeWrittenIsSaidInSpanish) {
    std::filesystem::create_directory(pathOf("carpeta").toStdString());
    openOn("clientes.csv");
    auto& output = part<QLineEdit>("EResultado");
    for (const auto& [file, reason] :
         {std::pair("carpeta", "no es un fichero corriente"), std::pair("nada/fuera.csv", "no existe")}) {
        output.setText(pathOf(file));
        const auto shown = ambrel::test::boxesDuring([&] { run(); });
        ASSERT_EQ(shown.size(), 1U) << file << ": a folder is not asked about either";
        EXPECT_TRUE(shown.front().text.contains(reason)) << shown.front().text.toStdString();
    }
}

TEST_F(ValidationWindowTest, AsksBeforeItReplacesAResult) {
    write("clientes-validado.csv", "antes");
    openOn("clientes.csv");
    ambrel::test::ScriptedMessages messages;
    const QString line = "Ya existe " + pathOf("clientes-validado.csv") + ".";
    messages.expect("¿Desea sustituirlo?", line, "Validar un fichero", MessageAnswer::No);
    clickIn("BBEmpezar");
    EXPECT_EQ(read("clientes-validado.csv"), "antes");
    messages.expect("¿Desea sustituirlo?", line, "Validar un fichero", MessageAnswer::Yes);
    run();
    EXPECT_NE(read("clientes-validado.csv"), "antes");
}

class LongValidation : public ValidationWindowTest {
protected:
    LongValidation() {
        std::string rows = "DIRECCION;POBLACION\n";
        for (int row = 0; row < 200'000; ++row) {
            rows += "Calle Alcalé " + std::to_string(row % 900) + ";Madrit\n";
        }
        write("muchos.csv", rows);
    }
    void startAndSeeProgress() {
        openOn("muchos.csv");
        clickIn("BBEmpezar");
        ASSERT_TRUE(QTest::qWaitFor([&] { return says("LProgreso").contains("faltan"); }, 20000))
            << says("LProgreso").toStdString();
        EXPECT_GT(part<QProgressBar>("BRProgreso").maximum(), 0);
    }
};

TEST_F(LongValidation, CountsRowsAsTheyAreJudged) {
    startAndSeeProgress();
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return says("LProgreso").contains("faltan") && !says("LProgreso").startsWith("0 filas, 0"); },
        20000));
    EXPECT_TRUE(part<QPushButton>("BBInterrumpir").isEnabled()) << "it has not ended";
}

TEST_F(LongValidation, CanBeInterrupted) {
    startAndSeeProgress();
    clickIn("BBInterrumpir");
    ASSERT_TRUE(QTest::qWaitFor([&] { return part<QPushButton>("BBEmpezar").isEnabled(); }, 20000));
    EXPECT_TRUE(says("LProgreso").startsWith("Interrumpido: no se ha escrito el resultado."));
    EXPECT_FALSE(says("LProgreso").contains("leídas")) << "nobody knows how many";
    EXPECT_FALSE(says("LGuardadas").contains("resultado")) << "there is none";
    EXPECT_FALSE(exists("muchos-validado.csv"));
}

TEST_F(LongValidation, AfterAnInterruptionTheKeyboardStartsAgain) {
    startAndSeeProgress();
    QTest::keyClick(dialog(), Qt::Key_Escape);
    ASSERT_TRUE(QTest::qWaitFor([&] { return part<QPushButton>("BBEmpezar").isEnabled(); }, 20000));
    EXPECT_EQ(dialog()->focusWidget()->objectName(), "BBEmpezar") << "and does not close the window";
}

TEST_F(LongValidation, ClosingTheWindowCancels) {
    startAndSeeProgress();
    QTest::keyClick(dialog(), Qt::Key_Escape); // interrupts first
    ASSERT_TRUE(QTest::qWaitFor([&] { return part<QPushButton>("BBEmpezar").isEnabled(); }, 20000));
    clickIn("BBEmpezar");
    dialog()->close();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(dialog());
    EXPECT_FALSE(exists("muchos-validado.csv"));
}

TEST_F(ValidationWindowTest, ClosesWithTheForm) {
    openOn("clientes.csv");
    ASSERT_TRUE(dialog());
    window().close();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(dialog());
}

TEST_F(LongValidation, TheProgramEndsInTheMiddleOfARun) {
    startAndSeeProgress();
    close();
    EXPECT_FALSE(exists("muchos-validado.csv"));
}

} // namespace
