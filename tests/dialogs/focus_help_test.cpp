// Colours and hints of a dialog's controls, with real focus and a real mouse.
#include "dialogs/common/FocusHelp.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QTest>
#include <QVBoxLayout>
#include <stdexcept>

#include "services/Rvarias.h"
#include "support/ScriptedMessages.h"
#include "support/ShownWindow.h"

namespace {

using ambrel::FocusHelp;
using ambrel::test::showActive;

class FocusHelpTest : public ::testing::Test {
protected:
    FocusHelpTest() {
        auto* const layout = new QVBoxLayout(&dialog);
        for (QWidget* const widget : std::initializer_list<QWidget*>{edit, other, button, bar}) {
            layout->addWidget(widget);
        }
        edit->setToolTip("Escriba el nombre");
        other->setToolTip("Escriba el código");
        button->setToolTip("Salir de la pantalla");
        button->setAutoDefault(false);
    }

    void show() {
        showActive(dialog);
        edit->setFocus();
    }
    void moveMouseTo(const QWidget& control) {
        for (const QPoint offset : {QPoint(1, 1), QPoint(0, 0)}) { // two: the mouse may be on one of them
            QTest::mouseMove(dialog.windowHandle(), control.geometry().center() + offset);
        }
    }
    [[nodiscard]] std::string help() const { return bar->currentMessage().toStdString(); }
    [[nodiscard]] static QColor background(const QWidget& control) {
        return control.palette().color(QPalette::Base);
    }

    QDialog dialog;
    QLineEdit* edit = new QLineEdit;
    QLineEdit* other = new QLineEdit;
    QPushButton* button = new QPushButton("Salir");
    QStatusBar* bar = new QStatusBar;
};

TEST_F(FocusHelpTest, FocusColoursAnEditAndShowsItsHint) {
    FocusHelp help_(dialog, *bar);
    help_.watchEdit(edit);
    help_.watchEdit(other);
    const QColor normal = background(*edit);
    show();
    EXPECT_EQ(help(), "Escriba el nombre");
    EXPECT_NE(background(*edit), normal);
    QTest::keyClick(edit, Qt::Key_Tab);
    EXPECT_EQ(help(), "Escriba el código");
    EXPECT_EQ(background(*edit), normal);
    EXPECT_NE(background(*other), normal);
}

TEST_F(FocusHelpTest, LeavingTheLastEditEmptiesTheStatusBar) {
    FocusHelp help_(dialog, *bar);
    help_.watchEdit(edit);
    show();
    QTest::keyClick(edit, Qt::Key_Tab); // to one that is not watched
    EXPECT_EQ(help(), "");
}

TEST_F(FocusHelpTest, HandlersOfTheDialogReplaceBothSteps) {
    std::string log;
    FocusHelp help_(dialog, *bar);
    help_.watchEdit(
        edit, [&] { log += "+"; }, [&] { log += "-"; });
    const QColor normal = background(*edit);
    show();
    EXPECT_EQ(help(), "");
    EXPECT_EQ(background(*edit), normal);
    QTest::keyClick(edit, Qt::Key_Tab);
    EXPECT_EQ(log, "+-");
}

TEST_F(FocusHelpTest, FocusOnAButtonShowsItsHintWithoutColour) {
    FocusHelp help_(dialog, *bar);
    help_.watchButton(button);
    const QColor normal = background(*button);
    show();
    button->setFocus();
    EXPECT_EQ(help(), "Salir de la pantalla");
    EXPECT_EQ(background(*button), normal);
    edit->setFocus();
    EXPECT_EQ(help(), "");
}

TEST_F(FocusHelpTest, MouseOverAButtonShowsItsHint) {
    FocusHelp help_(dialog, *bar);
    help_.watchEdit(edit);
    help_.watchButton(button);
    show();
    moveMouseTo(*edit);
    moveMouseTo(*button);
    EXPECT_EQ(help(), "Salir de la pantalla");
}

TEST_F(FocusHelpTest, MouseLeavingAButtonEmptiesTheStatusBarOfAFocusedEdit) {
    FocusHelp help_(dialog, *bar);
    help_.watchEdit(edit);
    help_.watchButton(button);
    show();
    moveMouseTo(*edit);
    moveMouseTo(*button);
    moveMouseTo(*edit);
    EXPECT_TRUE(edit->hasFocus());
    EXPECT_EQ(help(), "");
}

TEST_F(FocusHelpTest, FocusOnAGridShowsItsHint) {
    FocusHelp help_(dialog, *bar);
    help_.watchGrid(other);
    show();
    other->setFocus();
    EXPECT_EQ(help(), "Escriba el código");
}

TEST_F(FocusHelpTest, HintsAreReadByScreenReadersUnlessThereIsMoreToSay) {
    other->setAccessibleDescription("Cinco cifras");
    const FocusHelp help_(dialog, *bar);
    EXPECT_EQ(edit->accessibleDescription(), "Escriba el nombre");
    EXPECT_EQ(other->accessibleDescription(), "Cinco cifras");
}

TEST_F(FocusHelpTest, FailureOfAHandlerIsShownOnce) {
    ambrel::test::ScriptedMessages messages;
    messages.expect("no hay tabla", "Atención");
    FocusHelp help_(dialog, *bar);
    help_.watchEdit(edit, [] { throw std::runtime_error("no hay tabla"); });
    show();
}

} // namespace
