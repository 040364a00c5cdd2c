// Moving between customers, saving and discarding.
#include <gtest/gtest.h>

#include <QClipboard>
#include <QCloseEvent>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include "host/FormTest.h"
#include "host/HostTable.h"
#include "support/DiskWaits.h"
#include "support/ScriptedMessages.h"

namespace {

using ambrel::MessageAnswer;
using host_tests::FormTest;

class MainWindowTest : public FormTest {
protected:
    void addThree() {
        addCustomers({{"Berta", "", "", "", "", "HARO", ""},
                      {"Ana", "", "", "", "", "MADRID", ""},
                      {"Carlos", "", "", "", "", "", ""}});
    }
    static void expectQuestion(ambrel::test::ScriptedMessages& messages, MessageAnswer answer) {
        messages.expect(QStringLiteral("¿Desea descartar los cambios?"),
                        QStringLiteral("Los datos de este cliente no se han guardado."),
                        QStringLiteral("Atención"), answer);
    }
};

TEST_F(MainWindowTest, CustomersComeInTheOrderOfTheirNames) {
    addThree();
    open();
    EXPECT_EQ(text("ENombre"), QStringLiteral("Ana"));
    press(Qt::Key_PageDown);
    EXPECT_EQ(text("ENombre"), QStringLiteral("Berta"));
    EXPECT_EQ(text("EMunicipio"), QStringLiteral("HARO"));
    click("BBSiguiente");
    click("BBSiguiente");
    EXPECT_EQ(text("ENombre"), QStringLiteral("Carlos"));
    EXPECT_EQ(status(), QStringLiteral("Es el último cliente."));
    press(Qt::Key_PageUp);
    click("BBAnterior");
    click("BBAnterior");
    EXPECT_EQ(text("ENombre"), QStringLiteral("Ana"));
    EXPECT_EQ(status(), QStringLiteral("Es el primer cliente."));
}

TEST_F(MainWindowTest, ACustomerThatWasSavedIsOnTheDisk) {
    addThree();
    open();
    const auto save = [this](const char* name) {
        const int before = ambrel::test::diskWaits();
        fill("ENombre", name);
        press(Qt::Key_S, Qt::ControlModifier);
        EXPECT_EQ(status(), QStringLiteral("Cliente guardado."));
        return ambrel::test::diskWaits() - before;
    };
    save("Ana María"); // the first change of a table waits more often
    EXPECT_EQ(save("Ana Luz"), 1);
}

TEST_F(MainWindowTest, AMnemonicActsBeforeTheNextKey) {
    addThree();
    open();
    press(Qt::Key_U, Qt::AltModifier);
    EXPECT_EQ(text("ENombre"), QString());
}

TEST_F(MainWindowTest, AnEmptyTableTakesWhatIsTypedAsANewCustomer) {
    open();
    fill("ENombre", "Ana");
    fill("EMunicipio", "haro");
    press(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(stored("Ana", "VECINDAD"), "HARO");
    EXPECT_EQ(stored("Ana", "CODPOSTAL"), "26200");
    EXPECT_EQ(stored("Ana", "PROVINCIA"), "RIOJA, LA");
}

TEST_F(MainWindowTest, SavesTheSixColumnsOfAnAddress) {
    addThree();
    open();
    click("BBNuevo");
    EXPECT_EQ(text("ENombre"), QString());
    fill("ENombre", "Zoe Núñez");
    fill("EMunicipio", "mad");
    fill("ETipoVia", "CL");
    fill("EVia", "alc");
    fill("ENumero", "60");
    fill("EPiso", "2º B");
    click("BBGuardar");
    EXPECT_EQ(status(), QStringLiteral("Cliente guardado."));
    EXPECT_EQ(text("ENombre"), QStringLiteral("Zoe Núñez"));
    EXPECT_EQ(stored("Zoe Núñez", "TIPO_VIA"), "CL");
    EXPECT_EQ(stored("Zoe Núñez", "DOMICILIO"), "ALCALA");
    EXPECT_EQ(stored("Zoe Núñez", "NUMERO"), "60");
    EXPECT_EQ(stored("Zoe Núñez", "PISO"), ambrel::test::ansi("2º B"));
    EXPECT_EQ(stored("Zoe Núñez", "CODPOSTAL"), "28009");
    EXPECT_EQ(stored("Zoe Núñez", "VECINDAD"), "MADRID");
}

TEST_F(MainWindowTest, SavingByShortcutSettlesTheBoxBeingTypedIn) {
    open();
    fill("ENombre", "Ana");
    fill("EMunicipio", "mad");
    fill("EVia", "alc");
    enter("ENumero");
    type("60");
    press(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(stored("Ana", "CODPOSTAL"), "28009");
}

TEST_F(MainWindowTest, ATextThatTheColumnWouldCutIsNotSaved) {
    addCustomers({{"Ana", "CL", "ALCALA", "60", "28009", "MADRID", "MADRID"}});
    open();
    ambrel::test::ScriptedMessages messages;
    messages.expect(QStringLiteral("¿Desea buscarlo en la relación alfabética (S/N)?"),
                    QStringLiteral("No se ha encontrado ningún tipo de vía con esta abreviatura"),
                    QStringLiteral("Atención"), MessageAnswer::No);
    fill("ETipoVia", "CLAUSTRO");
    messages.expect(QStringLiteral("«CLAUSTRO» no cabe en la ficha: escríbalo más corto."),
                    QStringLiteral("Atención"));
    click("BBGuardar");
    EXPECT_EQ(stored("Ana", "TIPO_VIA"), "CL");
    EXPECT_EQ(text("ETipoVia"), QStringLiteral("CLAUSTRO"));
    EXPECT_TRUE(box("ETipoVia")->hasFocus());
}

TEST_F(MainWindowTest, ATextWithSignsThatNoTableHoldsIsNotSaved) {
    addCustomers({{"Ana", "CL", "ALCALA", "60", "28009", "MADRID", "MADRID"}});
    open();
    enter("EPiso");
    QGuiApplication::clipboard()->setText(QStringLiteral("2º ★"));
    press(Qt::Key_V, Qt::ControlModifier);
    ambrel::test::ScriptedMessages messages;
    messages.expect(QStringLiteral("«2º ★» tiene signos que la ficha no guarda: quítelos."),
                    QStringLiteral("Atención"));
    click("BBGuardar");
    EXPECT_EQ(stored("Ana", "PISO"), "");
    EXPECT_EQ(text("EPiso"), QStringLiteral("2º ★"));
    EXPECT_TRUE(box("EPiso")->hasFocus());
}

TEST_F(MainWindowTest, MovingWithUnsavedChangesAsks) {
    addThree();
    open();
    enter("ENombre");
    press(Qt::Key_End);
    type("x");
    {
        ambrel::test::ScriptedMessages messages;
        expectQuestion(messages, MessageAnswer::No);
        click("BBSiguiente");
    }
    EXPECT_EQ(text("ENombre"), QStringLiteral("Anax"));
    {
        ambrel::test::ScriptedMessages messages;
        expectQuestion(messages, MessageAnswer::Yes);
        click("BBSiguiente");
    }
    EXPECT_EQ(text("ENombre"), QStringLiteral("Berta"));
    EXPECT_EQ(stored("Anax", "VECINDAD"), "");
    EXPECT_EQ(stored("Ana", "VECINDAD"), "MADRID");
}

TEST_F(MainWindowTest, AChangeTakenBackIsNoChange) {
    addThree();
    open();
    enter("ENombre");
    press(Qt::Key_End);
    type("x");
    press(Qt::Key_Backspace);
    click("BBSiguiente");
    EXPECT_EQ(text("ENombre"), QStringLiteral("Berta"));
}

TEST_F(MainWindowTest, ClosingWithUnsavedChangesAsks) {
    addThree();
    open();
    fill("ENombre", "Otra");
    ambrel::test::ScriptedMessages messages;
    expectQuestion(messages, MessageAnswer::No);
    EXPECT_FALSE(window().close());
    expectQuestion(messages, MessageAnswer::Yes);
    EXPECT_TRUE(window().close());
}

TEST_F(MainWindowTest, UndoBringsTheStoredTextsBack) {
    addThree();
    open();
    fill("ENombre", "Otra");
    click("BBDeshacer");
    EXPECT_EQ(text("ENombre"), QStringLiteral("Ana"));
    EXPECT_EQ(tag("EMunicipio"), 28079);
    click("BBSiguiente");
    EXPECT_EQ(text("ENombre"), QStringLiteral("Berta"));
}

TEST_F(MainWindowTest, UndoAsksBeforeItThrowsANewCustomerAway) {
    addThree();
    open();
    click("BBNuevo");
    fill("ENombre", "Zoe");
    ambrel::test::ScriptedMessages messages;
    expectQuestion(messages, MessageAnswer::No);
    click("BBDeshacer");
    EXPECT_EQ(text("ENombre"), QStringLiteral("Zoe"));
    expectQuestion(messages, MessageAnswer::No);
    press(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(text("ENombre"), QStringLiteral("Zoe"));
    expectQuestion(messages, MessageAnswer::Yes);
    click("BBDeshacer");
    EXPECT_EQ(text("ENombre"), QStringLiteral("Ana"));
    EXPECT_EQ(stored("Zoe", "NOMBRE"), "");
}

TEST_F(MainWindowTest, UndoDoesNotAskForABlankNewCustomer) {
    addThree();
    open();
    click("BBNuevo");
    const ambrel::test::ScriptedMessages none;
    click("BBDeshacer");
    EXPECT_EQ(text("ENombre"), QStringLiteral("Ana"));
}

TEST_F(MainWindowTest, TheFormStopsGrowingAtAReadableWidth) {
    open();
    const auto* card = window().findChild<QFrame*>(QStringLiteral("MarcoFicha"));
    const auto settle = [&](int width) {
        window().resize(width, 600);
        QCoreApplication::processEvents();
        return card->width();
    };
    EXPECT_GT(settle(900), settle(720)) << "it grows at first";
    const int widest = settle(1400);
    EXPECT_LE(widest, 140 * window().fontMetrics().averageCharWidth());
    EXPECT_EQ(settle(2400), widest);
    const QRect place(card->mapTo(&window(), QPoint()), card->size());
    EXPECT_NEAR(place.center().x(), window().width() / 2, 1) << "in the middle";
    for (const char* name : {"BBAnterior", "BBGuardar", "LTitulo", "LEstado"}) {
        const auto* part = window().findChild<QWidget*>(QLatin1String(name));
        const QRect there(part->mapTo(&window(), QPoint()), part->size());
        EXPECT_GE(there.left(), place.left()) << name;
        EXPECT_LE(there.right(), place.right()) << name;
    }
}

TEST_F(MainWindowTest, ANewCustomerLeftBlankIsForgotten) {
    addThree();
    open();
    click("BBNuevo");
    click("BBAnterior");
    EXPECT_EQ(text("ENombre"), QStringLiteral("Ana"));
}

TEST_F(MainWindowTest, ARowLeftUnchangedIsFreeForOthers) {
    addCustomers({{"Ana", "CL", "ALCALA", "60", "28009", "MADRID", "MADRID"}});
    open();
    enter("ENumero");
    press(Qt::Key_Tab);
    host::HostTable other("AMBREL");
    other.data.open();
    EXPECT_NO_THROW(other.data.edit());
}

TEST_F(MainWindowTest, TextsBeyondTheColumnsPageAreStoredAsNearAsPossible) {
    open();
    fill("ENombre", QStringLiteral("Łódź €"));
    click("BBGuardar");
    EXPECT_EQ(stored("Lódz €", "NOMBRE"), ambrel::test::ansi("Lódz €"));
}

TEST_F(MainWindowTest, SaysWhetherTheRowIsSaved) {
    addThree();
    open();
    const auto* state = window().findChild<QLabel*>(QStringLiteral("LEstado"));
    EXPECT_EQ(state->text(), QStringLiteral("Guardado"));
    fill("ENombre", "Otra");
    EXPECT_EQ(state->text(), QStringLiteral("Con cambios sin guardar"));
    click("BBGuardar");
    EXPECT_EQ(state->text(), QStringLiteral("Guardado"));
}

} // namespace
