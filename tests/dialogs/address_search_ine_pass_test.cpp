// TFBuscarDireccionPostal: the button that writes the INE codes.
#include <gtest/gtest.h>

#include <QTest>
#include <filesystem>

#include "dbase/system/error.h"
#include "dialogs/AddressSearchForm.h"
#include "services/Pantalla.h"
#include "services/Ruttb.h"
#include "support/ScriptedMessages.h"

namespace {

using namespace postal_tests;
using ambrel::MessageAnswer;
using ambrel::test::ScriptedMessages;

/// Counts progress windows instead of showing them.
class CountedProgress {
public:
    CountedProgress() : before_(ambrel::setProgressDisplay(display())) {}
    ~CountedProgress() { ambrel::setProgressDisplay(std::move(before_)); }
    CountedProgress(const CountedProgress&) = delete;
    CountedProgress& operator=(const CountedProgress&) = delete;

    int shown = 0, open = 0;
    QString text;

private:
    ambrel::ProgressDisplay display() {
        return {[this](const QString& first, QWidget* owner) -> ambrel::ProgressWindow {
                    ++shown, ++open;
                    text = first;
                    return new QWidget(owner);
                },
                [this](const QString& next, QWidget&) { text = next; },
                [this](QWidget& window) {
                    --open;
                    delete &window;
                }};
    }
    ambrel::ProgressDisplay before_;
};

class AddressSearchInePass : public AddressSearchForm {
protected:
    void click(MessageAnswer answer, Qt::KeyboardModifiers held = {}) {
        ScriptedMessages messages;
        expectQuestion(messages, answer);
        QTest::mouseClick(&button("BBActualizarCOD_INE"), Qt::LeftButton, held);
    }
    static void expectQuestion(ScriptedMessages& messages, MessageAnswer answer) {
        messages.expect("¿Seguro que desea actualizar los Códigos INE de las vías?",
                        "Esta operación tomará varios minutos", "Actualizar la tabla Postales", answer);
    }
    /// MUNICIPI and COD_INE of a street as stored.
    static std::string stored(const std::string& codigo1) {
        dbase::Dataset streets("DB", "POSTAL", "CODIGO1");
        streets.open();
        EXPECT_TRUE(streets.seek({{"CODIGO1", codigo1}}, dbase::SeekMode::Exact));
        return streets.field("MUNICIPI").text() + "/" + streets.field("COD_INE").text();
    }
    static void store(const std::string& codigo1, const std::string& municipality) {
        dbase::Dataset streets("DB", "POSTAL", "CODIGO1");
        streets.open();
        EXPECT_TRUE(streets.seek({{"CODIGO1", codigo1}}, dbase::SeekMode::Exact));
        streets.edit();
        streets.field("MUNICIPI").setText(municipality);
        streets.post();
    }
};

TEST_F(AddressSearchInePass, NoLeavesTheStreetsAsTheyAre) {
    show();
    const CountedProgress progress;
    click(MessageAnswer::No);
    EXPECT_EQ(stored("28000001"), "/");
    EXPECT_EQ(progress.shown, 0);
}

TEST_F(AddressSearchInePass, YesWritesEveryStreetAndShowsItsProgress) {
    store("28000001", "VIEJO");
    show();
    const CountedProgress progress;
    click(MessageAnswer::Yes);
    EXPECT_EQ(stored("28000001"), "MADRID/28079");
    EXPECT_EQ(stored("08000002"), "BARCELONA/08019");
    EXPECT_EQ(progress.shown, 1);
    EXPECT_EQ(progress.open, 0);
    EXPECT_EQ(progress.text.toStdString(), "Actualizando los códigos INE de las vías: 0 %");
}

TEST_F(AddressSearchInePass, ItsEndSaysHowManyStreetsWereFilledAndHowManyWereInUse) {
    show();
    dbase::Dataset streets("DB", "POSTAL", "CODIGO1");
    streets.open();
    ASSERT_TRUE(streets.seek({{"CODIGO1", "28000001"}}, dbase::SeekMode::Exact));
    streets.edit();
    click(MessageAnswer::Yes);
    EXPECT_EQ(help(), "Vías rellenadas: 6. En uso por otros, que se quedan como estaban: 1.");
    EXPECT_EQ(stored("28000001"), "/");
    streets.cancel();
    click(MessageAnswer::Yes);
    EXPECT_EQ(help(), "Vías rellenadas: 7. En uso por otros, que se quedan como estaban: 0.");
}

TEST_F(AddressSearchInePass, WhatItsEndSaidIsReadAgainWhereNoHintStands) {
    show();
    click(MessageAnswer::Yes);
    const std::string outcome = help();
    QPushButton& accept = button("BBAceptar");
    QEvent enter(QEvent::Enter), leave(QEvent::Leave);
    QCoreApplication::sendEvent(&accept, &enter);
    EXPECT_EQ(help(), accept.toolTip().toStdString());
    QCoreApplication::sendEvent(&accept, &leave);
    EXPECT_EQ(help(), outcome);
}

TEST_F(AddressSearchInePass, WhatItsEndSaidStaysWhileTheMouseRestsOnTheButton) {
    show();
    click(MessageAnswer::Yes);
    const std::string outcome = help();
    QPushButton& pass = button("BBActualizarCOD_INE");
    const QPointF rest = QCursor::pos();
    QEnterEvent back(pass.mapFromGlobal(rest), rest, rest); // the question is gone, the mouse is still there
    QCoreApplication::sendEvent(&pass, &back);
    EXPECT_EQ(help(), outcome);
    const QPointF elsewhere = rest + QPointF(1, 0);
    QEnterEvent moved(pass.mapFromGlobal(elsewhere), elsewhere, elsewhere);
    QCoreApplication::sendEvent(&pass, &moved);
    EXPECT_EQ(help(), pass.toolTip().toStdString());
}

TEST_F(AddressSearchInePass, AnswerNoSaysNothing) {
    show();
    click(MessageAnswer::No);
    EXPECT_EQ(help(), "Actualiza el campo COD_INE en las vías");
}

TEST_F(AddressSearchInePass, CtrlHeldWritesOnlyStreetsWithoutData) {
    store("28000001", "VIEJO");
    show();
    click(MessageAnswer::Yes, Qt::ControlModifier);
    EXPECT_EQ(stored("28000001"), "VIEJO/");
    EXPECT_EQ(stored("28000002"), "MADRID/28079");
}

TEST_F(AddressSearchInePass, CurrentStreetCanBeModifiedAfterwards) {
    addStreets({{"99000001", "NUEVA", "CL", "28001"}});
    show();
    goToStreet("99000001");
    click(MessageAnswer::Yes);
    EXPECT_EQ(street(), "NUEVA");
    EXPECT_TRUE(controller->ModificarVia());
    tables().tbPostal.cancel();
}

TEST_F(AddressSearchInePass, FaultIsShownOnceAndTheProgressWindowGoes) {
    show();
    std::filesystem::rename(folder / "MUNICIPI.DBF", folder / "AUSENTE");
    std::string fault;
    try {
        static_cast<void>(CreaTabla("DB", "MUNICIPI.DBF", "CODPOSTAL", false, openNow));
    } catch (const dbase::Error& error) {
        fault = error.what();
    }
    const CountedProgress progress;
    ScriptedMessages messages;
    expectQuestion(messages, MessageAnswer::Yes);
    messages.expect(QString::fromStdString(fault), "Atención");
    QTest::mouseClick(&button("BBActualizarCOD_INE"), Qt::LeftButton);
    EXPECT_TRUE(messages.isDone());
    EXPECT_EQ(progress.open, 0);
    std::filesystem::rename(folder / "AUSENTE", folder / "MUNICIPI.DBF");
}

} // namespace
