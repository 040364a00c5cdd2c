// Scripts on real widgets: keys, clicks, modal windows, message boxes, output.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QImage>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "dbase/dataset/data_source.h"
#include "dialogs/common/DataGrid.h"
#include "host/ScriptPlay.h"
#include "services/Mensaje.h"
#include "services/TagProperty.h"
#include "support/TableTest.h"
#include "support/TemporaryFolder.h"

namespace {

using host_tests::play;
using host_tests::Played;

/// Records which keys are released in a widget.
class ReleaseLog : public QObject {
public:
    explicit ReleaseLog(QWidget* widget) : QObject(widget) { widget->installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::KeyRelease) {
            released.append(static_cast<QKeyEvent*>(event)->text());
        }
        return false;
    }
    QStringList released;
};

class ScriptRunnerTest : public ::testing::Test {
protected:
    ScriptRunnerTest() : layout_(&window) {
        window.setObjectName(QStringLiteral("Ventana"));
        window.setWindowTitle(QStringLiteral("Prueba"));
        first = add<QLineEdit>("EUno");
        second = add<QLineEdit>("EDos");
        button = add<QPushButton>("BBAbrir");
        button->setText(QStringLiteral("&Abrir"));
    }

    template<class Widget>
    Widget* add(const char* name) {
        auto* widget = new Widget(&window);
        widget->setObjectName(QLatin1String(name));
        layout_.addWidget(widget);
        return widget;
    }

    Played run(const char* script) { return play(window, QString::fromUtf8(script)); }

    QTableWidget* addGrid() {
        auto* grid = add<QTableWidget>("DBG");
        grid->setColumnCount(2);
        grid->setRowCount(3);
        for (int row = 0; row < 3; ++row) {
            grid->setItem(row, 0, new QTableWidgetItem(QString::number(row)));
            grid->setItem(row, 1, new QTableWidgetItem(QStringLiteral("CORUÑA, A")));
        }
        return grid;
    }

    /// A dialog with a box and a button that closes it.
    void openDialog() {
        QDialog dialog(&window);
        dialog.setObjectName(QStringLiteral("FDialogo"));
        dialog.setWindowTitle(QStringLiteral("Lista"));
        ambrel::setTag(dialog, 7);
        QVBoxLayout column(&dialog);
        QLineEdit box;
        box.setObjectName(QStringLiteral("EDentro"));
        QPushButton close;
        close.setObjectName(QStringLiteral("BBCerrar"));
        QObject::connect(&close, &QPushButton::clicked, &dialog, &QDialog::accept);
        column.addWidget(&box);
        column.addWidget(&close);
        dialog.exec();
        typedInDialog = box.text();
    }

    QWidget window;
    QLineEdit* first;
    QLineEdit* second;
    QPushButton* button;
    QString typedInDialog;

private:
    QVBoxLayout layout_;
};

TEST_F(ScriptRunnerTest, AnEmptyScriptIsDone) { EXPECT_EQ(run("").exitCode, 0); }

TEST_F(ScriptRunnerTest, TypesIntoTheNamedBox) {
    EXPECT_EQ(run("escribe EDos Núñez").exitCode, 0);
    EXPECT_EQ(second->text(), QStringLiteral("Núñez"));
    EXPECT_TRUE(second->hasFocus());
}

TEST_F(ScriptRunnerTest, EachTypedCharacterIsPressedAndReleased) {
    const ReleaseLog log(first);
    (void)run("escribe EUno ab");
    EXPECT_EQ(log.released, QStringList({QStringLiteral("a"), QStringLiteral("b")}));
}

TEST_F(ScriptRunnerTest, TypingGoesOnWhereTheCaretIs) {
    (void)run("escribe EUno AB\ntecla EUno Home\nescribe EUno C");
    EXPECT_EQ(first->text(), QStringLiteral("CAB"));
}

TEST_F(ScriptRunnerTest, ClearsABoxByKeys) {
    first->setText(QStringLiteral("ABC"));
    (void)run("vacia EUno");
    EXPECT_EQ(first->text(), QString());
}

TEST_F(ScriptRunnerTest, TabMovesTheFocus) {
    (void)run("tecla EUno Tab");
    EXPECT_TRUE(second->hasFocus());
    (void)run("tecla EDos Shift+Tab");
    EXPECT_TRUE(first->hasFocus());
}

TEST_F(ScriptRunnerTest, MnemonicsAndSpacePressButtons) {
    int clicks = 0;
    QObject::connect(button, &QPushButton::clicked, button, [&] { ++clicks; });
    EXPECT_EQ(run("tecla EUno Alt+A\ntecla BBAbrir Space\nmuestra EUno").exitCode, 0);
    EXPECT_EQ(clicks, 2);
}

TEST_F(ScriptRunnerTest, AMnemonicHasActedBeforeTheNextStep) {
    QObject::connect(button, &QPushButton::clicked, button, [&] { first->setText(QStringLiteral("ya")); });
    EXPECT_EQ(run("tecla EDos Alt+A\nmuestra EUno").lines,
              QStringList(QStringLiteral("EUno\tya\t0\tactivo")));
}

TEST_F(ScriptRunnerTest, StepsGoOnInsideAModalWindow) {
    QObject::connect(button, &QPushButton::clicked, button, [this] { openDialog(); });
    const Played played =
        run("pulsa BBAbrir\nventana\nescribe EDentro X\npulsa BBCerrar\nventana\nescribe EUno Y");
    EXPECT_EQ(played.exitCode, 0) << played.complaints.join(QLatin1Char('\n')).toStdString();
    EXPECT_EQ(played.lines,
              QStringList({QStringLiteral("QDialog\tLista\t7"), QStringLiteral("QWidget\tPrueba\t0")}));
    EXPECT_EQ(typedInDialog, QStringLiteral("X"));
    EXPECT_EQ(first->text(), QStringLiteral("Y"));
}

TEST_F(ScriptRunnerTest, AStepInsideANestedLoopWithoutWindowWaits) {
    QObject::connect(button, &QPushButton::clicked, button, [this] {
        for (int turn = 0; turn < 20; ++turn) {
            QCoreApplication::processEvents();
        }
        first->setText(QStringLiteral("terminado"));
    });
    EXPECT_EQ(run("pulsa BBAbrir\nmuestra EUno").lines,
              QStringList(QStringLiteral("EUno\tterminado\t0\tactivo")));
}

TEST_F(ScriptRunnerTest, WhatIsBehindAModalWindowIsOutOfReach) {
    QObject::connect(button, &QPushButton::clicked, button, [this] { openDialog(); });
    const Played played = run("pulsa BBAbrir\nmuestra EUno\nescribe EUno X");
    EXPECT_EQ(played.exitCode, 3);
    EXPECT_EQ(played.lines.size(), 1);
    EXPECT_EQ(played.complaints, QStringList(QStringLiteral(
                                     "guion:3: escribe EUno X: «EUno» queda detrás de la ventana «Lista»")));
}

TEST_F(ScriptRunnerTest, AScriptMayEndInsideAModalWindow) {
    QObject::connect(button, &QPushButton::clicked, button, [this] { openDialog(); });
    EXPECT_EQ(run("pulsa BBAbrir").exitCode, 0);
}

TEST_F(ScriptRunnerTest, AnUnknownObjectEndsTheScript) {
    const Played played = run("ventana\nmuestra ENadie\nventana");
    EXPECT_EQ(played.exitCode, 3);
    EXPECT_EQ(played.lines.size(), 1);
    EXPECT_EQ(played.complaints,
              QStringList(QStringLiteral("guion:2: muestra ENadie: no hay ningún objeto «ENadie»")));
}

TEST_F(ScriptRunnerTest, AScriptWithAnErrorIsNotBegun) {
    const Played played = run("escribe EUno A\nbaila");
    EXPECT_EQ(played.exitCode, 3);
    EXPECT_EQ(first->text(), QString());
    EXPECT_EQ(played.complaints, QStringList(QStringLiteral("guion:2: baila: no se conoce el paso «baila»")));
}

TEST_F(ScriptRunnerTest, DisabledHiddenAndReadOnlyWidgetsCannotBeUsed) {
    button->setEnabled(false);
    EXPECT_EQ(run("pulsa BBAbrir").exitCode, 3);
    second->hide();
    EXPECT_EQ(run("escribe EDos A").exitCode, 3);
    first->setReadOnly(true);
    EXPECT_EQ(run("escribe EUno A").exitCode, 3);
}

TEST_F(ScriptRunnerTest, ShowsTextTagAndState) {
    first->setText(QStringLiteral("MADRID"));
    ambrel::setTag(*first, 28079);
    button->setEnabled(false);
    EXPECT_EQ(run("muestra EUno\nmuestra BBAbrir").lines,
              QStringList({QStringLiteral("EUno\tMADRID\t28079\tactivo"),
                           QStringLiteral("BBAbrir\t&Abrir\t0\tinactivo")}));
}

TEST_F(ScriptRunnerTest, ShowsTheCurrentRowOfAGridAsCsv) {
    addGrid()->setCurrentCell(1, 0);
    EXPECT_EQ(run("muestra DBG").lines, QStringList(QStringLiteral("DBG\t1,\"CORUÑA, A\"\t0\tactivo")));
}

TEST_F(ScriptRunnerTest, ClicksAndDoubleClicksTheCurrentRow) {
    auto* grid = addGrid();
    int clickedRow = -1, doubleClickedRow = -1;
    QObject::connect(grid, &QTableWidget::cellClicked, grid, [&](int row, int) { clickedRow = row; });
    QObject::connect(grid, &QTableWidget::cellDoubleClicked, grid,
                     [&](int row, int) { doubleClickedRow = row; });
    grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid->setCurrentCell(2, 1);
    EXPECT_EQ(run("pulsa DBG").exitCode, 0);
    EXPECT_EQ(clickedRow, 2);
    EXPECT_EQ(doubleClickedRow, -1);
    EXPECT_EQ(run("pulsa2 DBG").exitCode, 0);
    EXPECT_EQ(doubleClickedRow, 2);
}

TEST_F(ScriptRunnerTest, AGridWithoutCurrentRowCannotBeClicked) {
    addGrid()->setCurrentCell(-1, -1);
    EXPECT_EQ(run("pulsa DBG").complaints,
              QStringList(QStringLiteral("guion:1: pulsa DBG: «DBG» no tiene fila actual")));
}

TEST_F(ScriptRunnerTest, ChoosesAComboItemAsTheUserDoes) {
    auto* combo = add<QComboBox>("CB");
    combo->addItems({QStringLiteral("MADRID"), QStringLiteral("LA RIOJA")});
    QStringList chosen;
    QObject::connect(combo, &QComboBox::textActivated, combo,
                     [&](const QString& text) { chosen.append(text); });
    EXPECT_EQ(run("elige CB LA RIOJA\nmuestra CB").lines,
              QStringList(QStringLiteral("CB\tLA RIOJA\t0\tactivo")));
    EXPECT_EQ(chosen, QStringList(QStringLiteral("LA RIOJA")));
    EXPECT_EQ(run("elige CB CUENCA").exitCode, 3);
}

TEST_F(ScriptRunnerTest, AnswersMessagesInTheirOrder) {
    QObject::connect(button, &QPushButton::clicked, button, [this] {
        const int answer = Mensaje_SiNo(QStringLiteral("¿Sigue?"), QString(), QStringLiteral("Atención"));
        Mensaje_Info(&window, QString::number(answer), QStringLiteral("Aviso"));
    });
    const Played played = run("responde no\nresponde aceptar\npulsa BBAbrir\nmensajes\nmensajes");
    EXPECT_EQ(played.exitCode, 0);
    EXPECT_EQ(played.lines.value(0), QStringLiteral("pregunta\t¿Sigue?\tAtención\tno"));
    EXPECT_TRUE(played.lines.value(1).startsWith(QStringLiteral("información\t")));
    EXPECT_EQ(played.lines.size(), 2);
}

TEST_F(ScriptRunnerTest, AMessageThatNobodyAnswersEndsTheScript) {
    QObject::connect(button, &QPushButton::clicked, button,
                     [] { Mensaje_Error(QStringLiteral("Se ha roto."), QStringLiteral("Atención")); });
    const Played played = run("pulsa BBAbrir\nventana");
    EXPECT_EQ(played.exitCode, 3);
    EXPECT_EQ(played.lines, QStringList(QStringLiteral("error\tSe ha roto.\tAtención\t")));
    EXPECT_EQ(played.complaints,
              QStringList(QStringLiteral("guion:1: pulsa BBAbrir: nadie responde al mensaje «Se ha roto.»")));
}

TEST_F(ScriptRunnerTest, AnAnswerThatTheBoxHasNoButtonForEndsTheScript) {
    QObject::connect(button, &QPushButton::clicked, button,
                     [] { Mensaje_Error(QStringLiteral("Se ha roto."), QStringLiteral("Atención")); });
    EXPECT_EQ(run("responde si\npulsa BBAbrir").exitCode, 3);
}

TEST_F(ScriptRunnerTest, TakesPictures) {
    const TemporaryFolder folder;
    const QString file = QString::fromStdString(folder / "ventana.png");
    EXPECT_EQ(run(("captura " + file.toStdString()).c_str()).exitCode, 0);
    EXPECT_EQ(QImage(file).size(), window.size());
    EXPECT_EQ(run(("captura " + (folder / "no/esta.png")).c_str()).exitCode, 3);
}

TEST_F(ScriptRunnerTest, GivesTheActiveWindowASize) {
    EXPECT_EQ(run("medida 640x480").exitCode, 0);
    EXPECT_EQ(window.size(), QSize(640, 480));
}

TEST_F(ScriptRunnerTest, APictureIsTheSameEachTime) {
    const TemporaryFolder folder;
    const auto picture = [&](const char* name) {
        const QString file = QString::fromStdString(folder / name);
        EXPECT_EQ(run(qPrintable(QStringLiteral("escribe EUno a\nvacia EUno\ncaptura ") + file)).exitCode, 0);
        return QImage(file);
    };
    QApplication::setCursorFlashTime(0);
    const QImage once = picture("uno.png");
    EXPECT_FALSE(once.isNull());
    EXPECT_EQ(once, picture("dos.png"));
}

/// The dialogs' grid on a small table.
class ScriptGridTest : public ambrel::test::TableTest {
protected:
    ScriptGridTest() : layout_(&window) {
        createTable(ambrel::test::defineTable("LETRAS", {"LETRA C2", "NOMBRE C10"}, {"LETRA"}),
                    {{"A", "ALFA"}, {"B", "BETA, B"}, {"G", "GAMMA"}});
        grid.setObjectName(QStringLiteral("DBG"));
        grid.setColumns({{.field = "LETRA", .title = "Letra"}, {.field = "NOMBRE", .title = "Nombre"}});
        layout_.addWidget(&grid);
        table.open();
        source.setDataset(&table);
        grid.setDataSource(&source);
        window.resize(400, 300);
    }
    ~ScriptGridTest() override { grid.setDataSource(nullptr); }

    dbase::Dataset table{"DB", "LETRAS", "LETRA"};
    dbase::DataSource source;
    QWidget window;
    ambrel::DataGrid grid;

private:
    QVBoxLayout layout_;
};

TEST_F(ScriptGridTest, KeysMoveItsRowWhichIsShownAsCsv) {
    const Played played = play(window, "tecla DBG Down\nmuestra DBG");
    EXPECT_EQ(played.exitCode, 0);
    EXPECT_EQ(played.lines, QStringList(QStringLiteral("DBG\tB,\"BETA, B\"\t0\tactivo")));
}

TEST_F(ScriptGridTest, ADoubleClickIsOnTheCurrentRow) {
    table.last();
    int count = 0;
    QObject::connect(&grid, &ambrel::DataGrid::rowDoubleClicked, &grid, [&] { ++count; });
    EXPECT_EQ(play(window, "pulsa DBG\npulsa2 DBG").exitCode, 0);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(table.field("LETRA").text(), "G");
}

TEST_F(ScriptGridTest, TitlesAreClickedByTheirColumn) {
    std::vector<int> columns;
    QObject::connect(&grid, &ambrel::DataGrid::titleClicked, &grid,
                     [&](int column) { columns.push_back(column); });
    EXPECT_EQ(play(window, "titulo DBG 1\ntitulo DBG 0").exitCode, 0);
    EXPECT_EQ(columns, (std::vector<int>{1, 0}));
    const Played missing = play(window, "titulo DBG 2");
    EXPECT_EQ(missing.exitCode, 3);
    EXPECT_TRUE(missing.complaints.join(QString()).contains(QStringLiteral("no tiene columna 2")));
}

TEST_F(ScriptGridTest, AnEmptyGridHasNoRowToClick) {
    table.setFilter("LETRA='Z'");
    EXPECT_EQ(play(window, "pulsa DBG").exitCode, 3);
}

} // namespace
