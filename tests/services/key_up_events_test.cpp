// Key-up handlers, with real keys in real boxes.
#include "services/KeyUpEvents.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>
#include <stdexcept>
#include <vector>

#include "support/ScriptedMessages.h"
#include "support/ShownWindow.h"

namespace {

using ambrel::KeyUpEvents;

class KeyUps : public ::testing::Test {
protected:
    KeyUps() {
        auto* const layout = new QVBoxLayout(&window);
        layout->addWidget(box);
        layout->addWidget(combo);
        combo->setEditable(true);
        ambrel::test::showActive(window);
        box->setFocus();
    }

    KeyUpEvents::Handler record() {
        return [this](std::uint16_t& key, Qt::KeyboardModifiers modifiers) {
            keys.push_back(key);
            texts.push_back(box->text());
            if (key != 0) {
                lastModifiers = modifiers;
            }
        };
    }

    QWidget window;
    QLineEdit* box = new QLineEdit;
    QComboBox* combo = new QComboBox;
    std::vector<std::uint16_t> keys;
    std::vector<QString> texts;
    Qt::KeyboardModifiers lastModifiers;
};

TEST_F(KeyUps, AreReportedAfterTheBoxHasTheText) {
    KeyUpEvents::watch(box, record());
    QTest::keyClicks(box, "Ma");
    QTest::sendKeyEvent(QTest::Click, box, Qt::Key_Ntilde, QString("ñ"), Qt::NoModifier);
    EXPECT_EQ(keys, (std::vector<std::uint16_t>{77, 65, 209}));
    EXPECT_EQ(texts, (std::vector<QString>{"M", "Ma", "Mañ"}));
}

TEST_F(KeyUps, OfAnEditableComboAreReportedOnce) {
    KeyUpEvents::watch(combo, record());
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Down);
    EXPECT_EQ(keys, std::vector<std::uint16_t>{40});
}

TEST_F(KeyUps, TellTheModifiers) {
    KeyUpEvents::watch(box, record());
    QTest::keyClick(box, Qt::Key_A, Qt::ShiftModifier);
    EXPECT_EQ(lastModifiers, Qt::ShiftModifier);
}

TEST_F(KeyUps, OfAutoRepeatAreNotReported) {
    KeyUpEvents::watch(box, record());
    constexpr bool isRepeat = true;
    QTest::keyPress(box, Qt::Key_A);
    QTest::simulateEvent(box, false, Qt::Key_A, Qt::NoModifier, "a", isRepeat);
    QTest::simulateEvent(box, true, Qt::Key_A, Qt::NoModifier, "a", isRepeat);
    EXPECT_TRUE(keys.empty());
    QTest::keyRelease(box, Qt::Key_A);
    EXPECT_EQ(keys.size(), 1U);
}

TEST_F(KeyUps, ThatAHandlerUsedAreSwallowed) {
    auto* const button = new QPushButton(&window); // passes unknown keys to its parent
    button->show();
    KeyUpEvents::watch(&window, record());
    KeyUpEvents::watch(button, [](std::uint16_t& key, Qt::KeyboardModifiers) {
        if (key == 27) {
            key = 0;
        }
    });
    QTest::keyClick(button, Qt::Key_Escape);
    EXPECT_TRUE(keys.empty());
    QTest::keyClick(button, Qt::Key_PageDown);
    EXPECT_EQ(keys, std::vector<std::uint16_t>{34});
}

TEST_F(KeyUps, AreReportedNoMoreWhenTheWatchIsDeleted) {
    delete KeyUpEvents::watch(box, record());
    QTest::keyClicks(box, "M");
    EXPECT_TRUE(keys.empty());
}

TEST_F(KeyUps, AHandlerMayDeleteItsBox) {
    auto* const watch =
        KeyUpEvents::watch(box, [this](std::uint16_t&, Qt::KeyboardModifiers) { delete box; });
    QTest::keyPress(box, Qt::Key_A);
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_A, Qt::NoModifier);
    const QPointer<QLineEdit> alive = box;
    EXPECT_FALSE(watch->eventFilter(box, &release));
    EXPECT_FALSE(alive);
}

TEST_F(KeyUps, OfAKeyThatWasPressedElsewhereAreNotReported) {
    KeyUpEvents::watch(box, record());
    QTest::keyRelease(box, Qt::Key_Return);
    EXPECT_TRUE(keys.empty());
}

TEST_F(KeyUps, OfAKeyThatWasHeldWhenTheFocusCameAreNotReported) {
    KeyUpEvents::watch(box, record());
    QTest::keyPress(box, Qt::Key_A);
    combo->setFocus();
    box->setFocus();
    QTest::keyRelease(box, Qt::Key_A);
    EXPECT_TRUE(keys.empty());
}

TEST_F(KeyUps, OfAKeyWhoseRepetitionOnlyCameHereAreNotReported) {
    KeyUpEvents::watch(box, record());
    constexpr bool isRepeat = true;
    QTest::simulateEvent(box, true, Qt::Key_Return, Qt::NoModifier, "\r", isRepeat);
    QTest::keyRelease(box, Qt::Key_Return);
    EXPECT_TRUE(keys.empty());
}

TEST_F(KeyUps, OfAHiddenControlAreNotReported) {
    KeyUpEvents::watch(box, record());
    QTest::keyPress(box, Qt::Key_A);
    box->hide();
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_A, Qt::NoModifier);
    QApplication::sendEvent(box, &release);
    EXPECT_TRUE(keys.empty());
}

TEST_F(KeyUps, AreNotReportedInAWindowThatIsNotActive) {
    KeyUpEvents::watch(box, record());
    QTest::keyPress(box, Qt::Key_A);
    QWidget other;
    ambrel::test::showActive(other);
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_A, Qt::NoModifier);
    QApplication::sendEvent(box, &release);
    EXPECT_TRUE(keys.empty());
}

TEST_F(KeyUps, TellTheModifiersOfThePressWhicheverKeyGoesUpFirst) {
    KeyUpEvents::watch(box, record());
    QTest::keyPress(box, Qt::Key_C, Qt::ControlModifier);
    QTest::keyRelease(box, Qt::Key_C, Qt::NoModifier);
    EXPECT_EQ(keys, std::vector<std::uint16_t>{'C'});
    EXPECT_EQ(lastModifiers, Qt::ControlModifier);
    QTest::keyPress(box, Qt::Key_M, Qt::NoModifier);
    QTest::keyRelease(box, Qt::Key_M, Qt::AltModifier);
    EXPECT_EQ(lastModifiers, Qt::NoModifier);
}

TEST_F(KeyUps, KnowAKeyThatChangesItsNameWhenShiftGoesUpFirst) {
    KeyUpEvents::watch(box, record());
    constexpr quint32 scanCode = 11;
    QKeyEvent press(QEvent::KeyPress, Qt::Key_QuoteDbl, Qt::ShiftModifier, scanCode, 0, 0, "\"");
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_2, Qt::NoModifier, scanCode, 0, 0, "2");
    QApplication::sendEvent(box, &press);
    QApplication::sendEvent(box, &release);
    EXPECT_EQ(keys, std::vector<std::uint16_t>{0}); // the typed character has no code
}

TEST_F(KeyUps, OfAShortcutsLetterAreNotReported) {
    auto* const button = new QPushButton("&Modificar", &window);
    button->show();
    bool isClicked = false;
    QObject::connect(button, &QPushButton::clicked, [&] { isClicked = true; });
    KeyUpEvents::watch(box, record());
    QTest::keyPress(box, Qt::Key_M, Qt::AltModifier);
    QTest::keyRelease(box, Qt::Key_M, Qt::AltModifier);
    ASSERT_TRUE(QTest::qWaitFor([&] { return isClicked; }));
    EXPECT_EQ(keys, std::vector<std::uint16_t>{0}); // for Alt alone
}

TEST_F(KeyUps, OfALetterThatAnInputMethodComposedIsReported) {
    KeyUpEvents::watch(box, record());
    // The press of a dead key goes to the input method alone.
    QKeyEvent deadKey(QEvent::KeyRelease, Qt::Key_Dead_Acute, Qt::NoModifier);
    QApplication::sendEvent(box, &deadKey);
    QInputMethodEvent composed;
    composed.setCommitString("á");
    QApplication::sendEvent(box, &composed);
    QTest::keyRelease(box, Qt::Key_A);
    QTest::keyRelease(box, Qt::Key_Return);
    EXPECT_EQ(keys, std::vector<std::uint16_t>{193});
    EXPECT_EQ(texts, std::vector<QString>{"á"});
}

TEST_F(KeyUps, PendingLettersAreReportedAtOnceAndNotOnceMore) {
    KeyUpEvents* const watch = KeyUpEvents::watch(box, record());
    QTest::keyPress(box, Qt::Key_Shift);
    QTest::keyPress(box, Qt::Key_D);
    QTest::keyPress(box, Qt::Key_R, Qt::ControlModifier);
    QTest::keyPress(box, Qt::Key_Down);
    combo->setFocus();
    watch->releasePending();
    EXPECT_EQ(keys, (std::vector<std::uint16_t>{'D', 'R'}));
    EXPECT_EQ(lastModifiers, Qt::ControlModifier);
    watch->releasePending();
    box->setFocus();
    QTest::keyRelease(box, Qt::Key_D);
    EXPECT_EQ(keys.size(), 2U);
}

TEST_F(KeyUps, AComposedLetterPends) {
    KeyUpEvents* const watch = KeyUpEvents::watch(box, record());
    QInputMethodEvent composed;
    composed.setCommitString("Ñ");
    QApplication::sendEvent(box, &composed);
    watch->releasePending();
    EXPECT_EQ(keys, std::vector<std::uint16_t>{209});
}

TEST_F(KeyUps, AHandlerOfPendingLettersMayDeleteItsBox) {
    auto* const watch =
        KeyUpEvents::watch(box, [this](std::uint16_t&, Qt::KeyboardModifiers) { delete box; });
    const QPointer<QLineEdit> alive = box;
    QTest::keyPress(box, Qt::Key_A);
    QTest::keyPress(box, Qt::Key_B);
    watch->releasePending();
    EXPECT_FALSE(alive);
}

TEST_F(KeyUps, AnExceptionOfAHandlerIsShown) {
    ambrel::test::ScriptedMessages messages;
    messages.expect("no va", "Atención");
    KeyUpEvents::watch(box, [](std::uint16_t&, Qt::KeyboardModifiers) { throw std::runtime_error("no va"); });
    QTest::keyClicks(box, "M");
    EXPECT_EQ(box->text(), "M");
}

} // namespace
