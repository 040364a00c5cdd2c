// Enter and exit handlers, with real windows, keys and clicks.
#include "services/FocusEvents.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>
#include <functional>
#include <memory>
#include <stdexcept>
#include <vector>

#include "support/ScriptedMessages.h"
#include "support/ShownWindow.h"

namespace {

using ambrel::FocusEvents;
using ambrel::test::showActive;

using Log = std::vector<std::string>;

/// A window with two watched boxes, a watched combo and an unwatched button.
class Focus : public ::testing::Test {
protected:
    Focus() {
        auto* const central = new QWidget;
        auto* const layout = new QVBoxLayout(central);
        for (QWidget* const widget : std::initializer_list<QWidget*>{first, second, combo, button}) {
            layout->addWidget(widget);
        }
        combo->setEditable(true);
        combo->addItems({"CL", "AV"});
        watch(first, "first");
        watch(second, "second");
        watch(combo, "combo");
        window->setCentralWidget(central);
    }

    void watch(QWidget* control, const std::string& name) {
        FocusEvents::watch(
            control, [this, name] { log.push_back("+" + name); },
            [this, name] { log.push_back("-" + name); });
    }

    /// Shows the window and forgets the events of that.
    void show() {
        showActive(*window);
        first->setFocus();
        log.clear();
    }

    std::unique_ptr<QMainWindow> window = std::make_unique<QMainWindow>();
    QLineEdit* first = new QLineEdit;
    QLineEdit* second = new QLineEdit;
    QComboBox* combo = new QComboBox;
    QPushButton* button = new QPushButton("Guardar");
    Log log;
};

TEST_F(Focus, TheFirstControlOfAShownWindowIsEntered) {
    showActive(*window);
    EXPECT_EQ(log, Log{"+first"});
}

TEST_F(Focus, TabLeavesOneControlAndEntersTheNext) {
    show();
    QTest::keyClick(first, Qt::Key_Tab);
    EXPECT_EQ(log, (Log{"-first", "+second"}));
    QTest::keyClick(second, Qt::Key_Backtab);
    EXPECT_EQ(log, (Log{"-first", "+second", "-second", "+first"}));
}

TEST_F(Focus, AClickLeavesAndEnters) {
    show();
    QTest::mouseClick(second, Qt::LeftButton);
    EXPECT_EQ(log, (Log{"-first", "+second"}));
}

TEST_F(Focus, AControlWithoutHandlersOnlyEndsTheStay) {
    show();
    button->setFocus();
    EXPECT_EQ(log, Log{"-first"});
    second->setFocus();
    EXPECT_EQ(log, (Log{"-first", "+second"}));
}

TEST_F(Focus, ActivatingAnotherWindowIsNoMove) {
    show();
    QWidget other;
    showActive(other);
    ASSERT_FALSE(first->hasFocus());
    showActive(*window);
    ASSERT_TRUE(first->hasFocus());
    EXPECT_EQ(log, Log{});
}

TEST_F(Focus, AModalDialogIsNoMove) {
    show();
    QDialog dialog(window.get());
    QTimer::singleShot(0, &dialog, &QDialog::reject);
    dialog.exec();
    EXPECT_EQ(log, Log{});
}

TEST_F(Focus, AMoveMadeWhileTheWindowWasNotActiveIsReportedWhenItIsAgain) {
    show();
    QWidget other;
    showActive(other);
    second->setFocus();
    EXPECT_EQ(log, Log{});
    showActive(*window);
    EXPECT_EQ(log, (Log{"-first", "+second"}));
}

TEST_F(Focus, EachWindowHasItsOwnCurrentControl) {
    show();
    QWidget other;
    auto* const layout = new QVBoxLayout(&other);
    auto* const box = new QLineEdit;
    layout->addWidget(box);
    watch(box, "other");
    showActive(other);
    EXPECT_EQ(log, Log{"+other"});
    showActive(*window);
    showActive(other);
    EXPECT_EQ(log, Log{"+other"});
}

TEST_F(Focus, AContextMenuIsNoMove) {
    show();
    QMenu menu(window.get());
    menu.addAction("Copiar");
    menu.popup(QPoint());
    QTest::keyClick(&menu, Qt::Key_Escape);
    EXPECT_EQ(log, Log{});
}

TEST_F(Focus, TheMenuBarIsNoMove) {
    QMenu* const menu = window->menuBar()->addMenu("&Listas");
    menu->addAction("Municipios");
    show();
    window->menuBar()->setFocus(Qt::MenuBarFocusReason);
    ASSERT_FALSE(first->hasFocus());
    first->setFocus(Qt::MenuBarFocusReason);
    EXPECT_EQ(log, Log{});
}

TEST_F(Focus, ADropDownListIsNoMove) {
    show();
    combo->setFocus();
    log.clear();
    combo->showPopup();
    combo->hidePopup();
    EXPECT_EQ(log, Log{});
}

TEST_F(Focus, TheEditInsideAComboIsTheCombo) {
    show();
    QTest::mouseClick(combo->lineEdit(), Qt::LeftButton);
    EXPECT_EQ(log, (Log{"-first", "+combo"}));
}

TEST_F(Focus, AnExitHandlerThatTakesTheFocusBackKeepsTheOtherFromBeingEntered) {
    FocusEvents::watch(
        first, [this] { log.push_back("+first"); },
        [this] {
            log.push_back("-first");
            first->setFocus();
            log.push_back("back");
        });
    show();
    second->setFocus();
    EXPECT_EQ(log, (Log{"-first", "back", "+first"}));
    EXPECT_TRUE(first->hasFocus());
}

TEST_F(Focus, AHandlerIsFinishedBeforeTheNextOneRuns) {
    FocusEvents::watch(
        second,
        [this] {
            log.push_back("+second");
            combo->setFocus();
            log.push_back("second entered");
        },
        [this] { log.push_back("-second"); });
    show();
    second->setFocus();
    EXPECT_EQ(log, (Log{"-first", "+second", "second entered", "-second", "+combo"}));
}

TEST_F(Focus, ADialogOfAnExitHandlerDoesNotRunItAgain) {
    FocusEvents::watch(first, {}, [this] {
        log.push_back("-first");
        QDialog dialog(window.get());
        QTimer::singleShot(0, &dialog, &QDialog::accept);
        dialog.exec();
        log.push_back("answered");
    });
    show();
    QTest::keyClick(first, Qt::Key_Tab);
    EXPECT_EQ(log, (Log{"-first", "answered", "+second"}));
}

TEST_F(Focus, TwoHandlersThatSendTheFocusToEachOtherAreStopped) {
    show();
    constexpr int endless = 10'000;
    int turns = 0;
    const auto sendTo = [&turns](QWidget* other) {
        return [&turns, other] {
            if (++turns < endless) {
                other->setFocus();
            }
        };
    };
    FocusEvents::watch(first, sendTo(second), {});
    FocusEvents::watch(second, sendTo(first), {});
    second->setFocus();
    EXPECT_GT(turns, 1);
    EXPECT_LT(turns, endless);
}

TEST_F(Focus, WatchedWhileItHasTheFocusAControlIsLeftButNotEntered) {
    showActive(*window);
    button->setFocus();
    log.clear();
    watch(button, "button");
    EXPECT_EQ(log, Log{});
    first->setFocus();
    EXPECT_EQ(log, (Log{"-button", "+first"}));
}

TEST_F(Focus, AnUnwatchedControlReportsNothing) {
    show();
    FocusEvents::unwatch(second);
    second->setFocus();
    EXPECT_EQ(log, Log{"-first"});
}

TEST_F(Focus, AControlThatGoesIsForgotten) {
    show();
    delete first;
    log.clear();
    second->setFocus();
    combo->setFocus();
    EXPECT_EQ(log.back(), "+combo");
}

TEST_F(Focus, AHandlerMayDeleteTheWindow) {
    show();
    FocusEvents::watch(first, {}, [this] { window.release()->deleteLater(); });
    const QPointer<QWidget> alive = window.get();
    second->setFocus();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(alive);
}

TEST_F(Focus, AnExceptionOfAHandlerIsShownAndTheNextHandlerRuns) {
    ambrel::test::ScriptedMessages messages;
    messages.expect("no va", "Atención");
    FocusEvents::watch(first, {}, [] { throw std::runtime_error("no va"); });
    show();
    second->setFocus();
    EXPECT_EQ(log, Log{"+second"});
}

/// The first box shows a question when it is left; a button beside it counts its clicks.
class ClickedAway : public Focus {
protected:
    ClickedAway() {
        QObject::connect(button, &QPushButton::clicked, button, [this] { ++clicks; });
        FocusEvents::watch(first, {}, [this] {
            QDialog question(window.get());
            QPushButton yes("Sí", &question);
            QObject::connect(&yes, &QPushButton::clicked, &question, &QDialog::accept);
            QTimer::singleShot(0, &question, [&] { answer(yes); });
            log.push_back("asked");
            question.exec();
            afterwards();
        });
        show();
    }

    void mouse(void (*act)(QWindow*, Qt::MouseButton, Qt::KeyboardModifiers, QPoint, int), QWidget* control,
               QPoint place) const {
        QWidget* const native = control->windowHandle() ? control : control->window();
        act(native->windowHandle(), Qt::LeftButton, {}, control->mapTo(native, place), -1);
    }
    void press(QWidget* control) const { mouse(&QTest::mousePress, control, control->rect().center()); }
    void release(QWidget* control) const { mouse(&QTest::mouseRelease, control, control->rect().center()); }

    /// What the user does with the question: releases the mouse button, and clicks the answer.
    std::function<void(QPushButton&)> answer = [this](QPushButton& yes) {
        release(button);
        press(&yes);
        release(&yes);
    };
    std::function<void()> afterwards = [] {};
    int clicks = 0;
};

TEST_F(ClickedAway, TheControlUnderTheMouseActsOnceAfterTheAnswer) {
    press(button);
    QCoreApplication::processEvents();
    EXPECT_EQ(log, Log{"asked"});
    EXPECT_EQ(clicks, 1);
    EXPECT_FALSE(button->isDown());
    press(button);
    release(button);
    EXPECT_EQ(clicks, 2) << "the next click is one like any other";
}

TEST_F(ClickedAway, AControlWithANativeWindowOfItsOwnActsOnceAfterTheAnswerToo) {
    button->winId();
    ASSERT_TRUE(button->windowHandle());
    press(button);
    QCoreApplication::processEvents();
    EXPECT_EQ(log, Log{"asked"});
    EXPECT_EQ(clicks, 1);
    EXPECT_FALSE(button->isDown());
}

TEST_F(ClickedAway, TheControlUnderTheMouseIsLetGoWhenTheAnswerMovedTheFocus) {
    afterwards = [this] { second->setFocus(); };
    press(button);
    QCoreApplication::processEvents();
    EXPECT_EQ(clicks, 0);
    EXPECT_FALSE(button->isDown());
    EXPECT_EQ(window->focusWidget(), second);
    press(button);
    release(button);
    EXPECT_EQ(clicks, 1) << "the next click is one like any other";
}

TEST_F(ClickedAway, AnAnswerByKeyWhileTheMouseButtonIsHeldMakesNoDifference) {
    answer = [](QPushButton& yes) { QTest::keyClick(&yes, Qt::Key_Space); };
    press(button);
    QCoreApplication::processEvents();
    EXPECT_EQ(clicks, 1);
    release(button);
    EXPECT_EQ(clicks, 1);
    EXPECT_FALSE(button->isDown());
}

TEST_F(ClickedAway, AWindowThatTheAnswerClosedIsNotClicked) {
    afterwards = [this] { window->hide(); };
    press(button);
    QCoreApplication::processEvents();
    EXPECT_EQ(clicks, 0);
}

TEST_F(ClickedAway, ABoxUnderTheMouseIsEnteredAndHasItsCaretWhereTheMouseWas) {
    second->setText("Alcalá de Henares");
    press(second);
    QCoreApplication::processEvents();
    EXPECT_EQ(window->focusWidget(), second);
    EXPECT_EQ(log, (Log{"asked", "+second"}));
    EXPECT_GT(second->cursorPosition(), 0);
    EXPECT_FALSE(second->hasSelectedText());
    QTest::mouseMove(window->windowHandle(), second->mapTo(window.get(), QPoint(2, 2)));
    EXPECT_FALSE(second->hasSelectedText()) << "the mouse button is up: nothing is being dragged";
}

TEST_F(ClickedAway, AListOpensAndStaysOpen) {
    combo->setEditable(false);
    press(combo);
    QCoreApplication::processEvents();
    EXPECT_TRUE(QApplication::activePopupWidget());
    EXPECT_EQ(combo->currentText(), "CL");
    combo->hidePopup();
}

} // namespace
