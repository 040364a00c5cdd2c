// Keys that a dialog handles before its controls.
#include "dialogs/common/FormKeys.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QTextEdit>
#include <QVBoxLayout>
#include <algorithm>
#include <stdexcept>
#include <vector>

#include "support/ScriptedMessages.h"
#include "support/ShownWindow.h"

namespace {

using ambrel::FormKeys;
using ambrel::test::showActive;

/// A dialog with an edit inside a box that may have the focus itself, a text, a table, a combo and two
/// buttons.
class FormKeysTest : public ::testing::Test {
protected:
    FormKeysTest() {
        auto* const layout = new QVBoxLayout(&dialog);
        auto* const inside = new QVBoxLayout(box);
        inside->addWidget(edit);
        for (QWidget* const widget :
             std::initializer_list<QWidget*>{box, text, table, combo, accept, cancel}) {
            layout->addWidget(widget);
        }
        combo->addItems({"MADRID", "BARCELONA"});
        accept->setDefault(true);
        QObject::connect(accept, &QPushButton::clicked, &dialog, [this] { ++accepted; });
        QObject::connect(cancel, &QPushButton::clicked, &dialog, [this] { ++cancelled; });
    }

    /// Records every key, and uses up those in `used`.
    FormKeys::Handler noting() {
        return [this](std::uint16_t key, Qt::KeyboardModifiers) {
            told.push_back(key);
            return std::find(used.begin(), used.end(), key) != used.end();
        };
    }
    /// Records every key; Enter moves on.
    FormKeys::Handler moving() {
        return [this](std::uint16_t key, Qt::KeyboardModifiers) {
            told.push_back(key);
            return ambrel::enterMovesOn(dialog, key);
        };
    }
    void show(QWidget* focused) {
        showActive(dialog);
        focused->setFocus();
    }

    using Keys = std::vector<std::uint16_t>;
    QDialog dialog;
    QGroupBox* box = new QGroupBox("Buscar");
    QLineEdit* edit = new QLineEdit;
    QTextEdit* text = new QTextEdit;
    QTableWidget* table = new QTableWidget(2, 2);
    QComboBox* combo = new QComboBox;
    QPushButton* accept = new QPushButton("Aceptar");
    QPushButton* cancel = new QPushButton("Salir");
    int accepted = 0, cancelled = 0;
    Keys told, used;
};

TEST_F(FormKeysTest, NoButtonIsADefault) {
    new FormKeys(dialog, *cancel);
    show(edit);
    QTest::keyClick(edit, Qt::Key_Return);
    EXPECT_EQ(accepted + cancelled, 0);
    EXPECT_FALSE(accept->isDefault() || accept->autoDefault() || cancel->isDefault());
    EXPECT_TRUE(dialog.isVisible());
}

TEST_F(FormKeysTest, EscapeClicksCancelWhateverHasTheFocus) {
    new FormKeys(dialog, *cancel);
    showActive(dialog);
    int count = 0;
    for (QWidget* const control : std::initializer_list<QWidget*>{edit, text, table, combo, accept, cancel}) {
        control->setFocus();
        QTest::keyClick(control, Qt::Key_Escape);
        EXPECT_EQ(cancelled, ++count) << control->metaObject()->className();
    }
    EXPECT_TRUE(dialog.isVisible()) << "the button's handler closes, nobody else";
}

TEST_F(FormKeysTest, EscapeCallsTheHandlerOfADisabledCancel) {
    new FormKeys(dialog, *cancel);
    cancel->setEnabled(false);
    show(edit);
    QTest::keyClick(edit, Qt::Key_Escape);
    EXPECT_EQ(cancelled, 1);
}

TEST_F(FormKeysTest, EscapeIsNotReportedToTheDialog) {
    new FormKeys(dialog, *cancel, noting());
    show(edit);
    QTest::keyClick(edit, Qt::Key_Escape);
    EXPECT_EQ(told, Keys{});
}

TEST_F(FormKeysTest, EscapeWithAnotherKeyHeldCancelsNothing) {
    new FormKeys(dialog, *cancel, noting());
    show(edit);
    QTest::keyClick(edit, Qt::Key_Escape, Qt::ControlModifier);
    EXPECT_EQ(cancelled, 0);
    EXPECT_EQ(told, (Keys{0, 27})) << "the key that is held, and then this one";
}

TEST_F(FormKeysTest, DialogSeesKeysBeforeTheControl) {
    used = {'B'};
    new FormKeys(dialog, *cancel, [this](std::uint16_t key, Qt::KeyboardModifiers held) {
        EXPECT_EQ(edit->text(), told.empty() ? "" : "a");
        return noting()(key, held);
    });
    show(edit);
    QTest::keyClick(edit, 'a');
    QTest::keyClick(edit, 'b');
    EXPECT_EQ(told, (Keys{'A', 'B'}));
    EXPECT_EQ(edit->text(), "a") << "a key that was used does not reach the control";
}

TEST_F(FormKeysTest, KeyThatTheControlLeavesIsReportedOnce) {
    new FormKeys(dialog, *cancel, noting());
    show(edit);
    QTest::keyClick(edit, Qt::Key_PageDown); // goes from the edit to the box and then to the dialog
    QTest::keyClick(edit, Qt::Key_F5);
    QTest::keyClick(edit, Qt::Key_PageDown);
    EXPECT_EQ(told, (Keys{34, 0, 34}));
}

TEST_F(FormKeysTest, KeyInAControlAfterOneInsideOfItIsReported) {
    box->setFocusPolicy(Qt::StrongFocus);
    new FormKeys(dialog, *cancel, noting());
    show(edit);
    QTest::keyPress(edit, 'a');
    box->setFocus();
    QTest::keyPress(box, 'b');
    EXPECT_EQ(told, (Keys{'A', 'B'}));
}

TEST_F(FormKeysTest, EnterClicksTheButtonThatHasTheFocus) {
    new FormKeys(dialog, *cancel, noting());
    show(accept);
    QTest::keyClick(accept, Qt::Key_Return);
    QTest::keyClick(accept, Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(accepted, 2);
    EXPECT_EQ(told, (Keys{13, 13}));
}

TEST_F(FormKeysTest, EnterThatWasUsedClicksNoButton) {
    used = {13};
    new FormKeys(dialog, *cancel, noting());
    show(accept);
    QTest::keyClick(accept, Qt::Key_Return);
    EXPECT_EQ(accepted, 0);
}

TEST_F(FormKeysTest, EnterMovesOnAsTabDoesWhateverHasTheFocus) {
    new FormKeys(dialog, *cancel, moving());
    show(edit);
    const std::vector<QWidget*> order = {edit, text, table, combo, accept, cancel, edit};
    for (std::size_t i = 1; i < order.size(); ++i) {
        QTest::keyClick(order[i - 1], Qt::Key_Return);
        EXPECT_EQ(dialog.focusWidget(), order[i]) << "step " << i;
    }
    EXPECT_EQ(told, Keys(6, 13)) << "the move itself is not told";
    EXPECT_EQ(text->toPlainText(), "") << "Enter never reaches the controls";
    EXPECT_EQ(accepted + cancelled, 0);
}

TEST_F(FormKeysTest, OtherKeysDoNotMoveOn) {
    new FormKeys(dialog, *cancel, moving());
    show(edit);
    QTest::keyClick(edit, 'a');
    EXPECT_EQ(dialog.focusWidget(), edit);
    EXPECT_EQ(edit->text(), "a");
}

TEST_F(FormKeysTest, OpenDropDownListKeepsItsKeys) {
    new FormKeys(dialog, *cancel, noting());
    show(combo);
    combo->showPopup();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(combo->view()->window()));
    QTest::keyClick(combo->view(), Qt::Key_Escape);
    EXPECT_EQ(cancelled, 0);
    EXPECT_FALSE(combo->view()->isVisible());
}

TEST_F(FormKeysTest, KeysOfAnotherWindowAreItsOwn) {
    new FormKeys(dialog, *cancel, noting());
    showActive(dialog);
    QDialog above(&dialog);
    auto* const inner = new QLineEdit(&above);
    showActive(above);
    QTest::keyClick(inner, 'a');
    QTest::keyClick(inner, Qt::Key_Escape);
    EXPECT_EQ(told, Keys{});
    EXPECT_EQ(cancelled, 0);
}

TEST_F(FormKeysTest, FailureOfTheHandlerIsShownAndTheKeyIsNotUsed) {
    ambrel::test::ScriptedMessages messages;
    messages.expect("tabla cerrada", "Atención");
    new FormKeys(dialog, *cancel, [](std::uint16_t, Qt::KeyboardModifiers) -> bool {
        throw std::runtime_error("tabla cerrada");
    });
    show(edit);
    QTest::keyClick(edit, 'a');
    EXPECT_EQ(edit->text(), "a");
}

TEST_F(FormKeysTest, HandlerMayDeleteTheDialog) {
    auto* const shortLived = new QDialog;
    auto* const inner = new QPushButton("Salir", shortLived);
    QObject::connect(inner, &QPushButton::clicked, shortLived, [shortLived] { shortLived->deleteLater(); });
    new FormKeys(*shortLived, *inner, [shortLived](std::uint16_t, Qt::KeyboardModifiers) {
        delete shortLived;
        return true;
    });
    const QPointer<QDialog> alive = shortLived;
    showActive(*shortLived);
    QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a");
    QApplication::sendEvent(inner, &key);
    EXPECT_FALSE(alive);
}

} // namespace
