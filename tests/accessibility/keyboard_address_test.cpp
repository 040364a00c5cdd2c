// The host's form, its menus, the dialog of the routines and the message boxes without a mouse.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

#include "accessibility/Forms.h"
#include "host/DataFolder.h"
#include "host/HostTable.h"
#include "services/MessageBox.h"
#include "support/ModalScript.h"
#include "support/ShownWindow.h"

namespace accessibility_tests {
namespace {

using ambrel::test::child;

class KeyboardAddress : public Forms {
protected:
    static std::string text(const QWidget& window, const char* box) {
        return child<QLineEdit>(window, box).text().toStdString();
    }
    static ambrel::MessageAnswer answerBy(const std::function<void(QDialog&)>& keys) {
        ambrel::test::ModalScript script;
        script.expect("QMessageBox", [&](QDialog& box) {
            keys(box);
            EXPECT_TRUE(QTest::qWaitFor([&] { return !box.isVisible(); })) << "is still open";
        });
        return ambrel::showMessageBox({.kind = ambrel::MessageKind::Question,
                                       .text = QStringLiteral("¿Desea borrar la vía?"),
                                       .line = {},
                                       .title = QStringLiteral("Atención"),
                                       .owner = nullptr});
    }
};

TEST_F(KeyboardAddress, ANewAddressIsTypedAndSaved) {
    show(Form::Clientes, [](QWidget& window) {
        press(window, Qt::Key_N, Qt::ControlModifier);
        ASSERT_EQ(focused(window), "ENombre");
        typeAndTab(window, "Taller");
        typeAndTab(window, "madr");
        EXPECT_EQ(text(window, "EMunicipio"), "MADRID");
        EXPECT_EQ(text(window, "EProvincia"), "MADRID");
        press(window, Qt::Key_T, Qt::AltModifier);
        ASSERT_EQ(focused(window), "ETipoVia");
        typeAndTab(window, "cl");
        typeAndTab(window, "alc");
        type(window, QStringLiteral("7"));
        press(window, Qt::Key_S, Qt::ControlModifier);
        EXPECT_EQ(text(window, "EVia"), "ALCALA");
        EXPECT_EQ(text(window, "ECodPostal"), "28001");
    });
    host::HostTable table(host::hostDatabase);
    table.data.open();
    EXPECT_TRUE(table.data.seek({{"NOMBRE", "Taller"}}, dbase::SeekMode::Exact));
}

TEST_F(KeyboardAddress, F4OpensTheListOfEachBoxThatHasOne) {
    show(Form::Clientes, [](QWidget& window) {
        ambrel::test::ModalScript script;
        for (const auto& [letter, list] :
             {std::pair(Qt::Key_P, "TFProvList"), std::pair(Qt::Key_T, "TFTipoViasLista"),
              std::pair(Qt::Key_V, "TFBuscarDireccionPostal")}) {
            script.expect(list, [](QDialog& dialog) { press(dialog, Qt::Key_Escape); });
            ambrel::test::showActive(window);
            press(window, letter, Qt::AltModifier);
            press(window, Qt::Key_F4);
            EXPECT_TRUE(script.isDone()) << list;
        }
    });
}

TEST_F(KeyboardAddress, AltAndALetterOpensAMenuAndAnotherTakesItsEntry) {
    show(Form::Clientes, [](QWidget& window) {
        press(window, Qt::Key_L, Qt::AltModifier);
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_TRUE(menu);
        ambrel::test::ModalScript script;
        script.expect("TFProvList", [](QDialog& dialog) { press(dialog, Qt::Key_Escape); });
        QTest::keyClick(menu, Qt::Key_P);
        EXPECT_TRUE(script.isDone());
    });
}

TEST_F(KeyboardAddress, ARoutineIsTriedAndItsDialogLeft) {
    show(Form::Rutina, [](QWidget& window) {
        const auto results = window.findChildren<QLineEdit*>();
        ASSERT_FALSE(results.empty());
        press(window, Qt::Key_Return);
        EXPECT_FALSE(results.back()->text().isEmpty() && results.back()->placeholderText().isEmpty());
        press(window, Qt::Key_Escape);
        EXPECT_FALSE(window.isVisible());
    });
}

TEST_F(KeyboardAddress, EnterOnTheButtonThatClosesClosesAndExecutesNothing) {
    show(Form::Rutina, [](QWidget& window) {
        while (focused(window) != "BBCerrar") {
            press(window, Qt::Key_Tab);
        }
        press(window, Qt::Key_Return);
        EXPECT_FALSE(window.isVisible());
        for (const QLineEdit* const box : window.findChildren<QLineEdit*>()) {
            EXPECT_TRUE(box->placeholderText().isEmpty());
        }
    });
}

TEST_F(KeyboardAddress, AQuestionIsAnsweredByItsLetters) {
    using ambrel::MessageAnswer;
    EXPECT_EQ(answerBy([](QDialog& box) { press(box, Qt::Key_S, Qt::AltModifier); }), MessageAnswer::Yes);
    EXPECT_EQ(answerBy([](QDialog& box) { press(box, Qt::Key_N, Qt::AltModifier); }), MessageAnswer::No);
    EXPECT_EQ(answerBy([](QDialog& box) { press(box, Qt::Key_Escape); }), MessageAnswer::No);
    EXPECT_EQ(answerBy([](QDialog& box) { press(box, Qt::Key_Return); }), MessageAnswer::Yes);
    EXPECT_EQ(answerBy([](QDialog& box) {
                  press(box, Qt::Key_Tab);
                  press(box, Qt::Key_Return);
              }),
              MessageAnswer::No);
}

} // namespace
} // namespace accessibility_tests
