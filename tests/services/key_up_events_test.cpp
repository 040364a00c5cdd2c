// Key-up handlers, with real keys in real boxes.
#include "services/KeyUpEvents.h"

#include <gtest/gtest.h>

#include <QComboBox>
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
            if (key != 0)
                lastModifiers = modifiers;
        };
    }

    QWidget window;
    QLineEdit* box = new QLineEdit;
    QComboBox* combo = new QComboBox;
    std::vector<std::uint16_t> keys;
    std::vector<QString> texts;
    Qt::KeyboardModifiers lastModifiers;
};

TEST_F(KeyUps, AreToldAfterTheBoxHasTheText) {
    KeyUpEvents::watch(box, record());
    QTest::keyClicks(box, "Ma");
    QTest::sendKeyEvent(QTest::Click, box, Qt::Key_Ntilde, QString("ñ"), Qt::NoModifier);
    EXPECT_EQ(keys, (std::vector<std::uint16_t>{77, 65, 209}));
    EXPECT_EQ(texts, (std::vector<QString>{"M", "Ma", "Mañ"}));
}

TEST_F(KeyUps, OfAnEditableComboAreToldOnce) {
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

TEST_F(KeyUps, OfAutoRepeatAreNotTold) {
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
    auto* const button = new QPushButton(&window); // passes what it does not know to its parent
    KeyUpEvents::watch(&window, record());
    KeyUpEvents::watch(button, [](std::uint16_t& key, Qt::KeyboardModifiers) {
        if (key == 27)
            key = 0;
    });
    QTest::keyClick(button, Qt::Key_Escape);
    EXPECT_TRUE(keys.empty());
    QTest::keyClick(button, Qt::Key_PageDown);
    EXPECT_EQ(keys, std::vector<std::uint16_t>{34});
}

TEST_F(KeyUps, AreToldNoMoreWhenTheWatchIsDeleted) {
    delete KeyUpEvents::watch(box, record());
    QTest::keyClicks(box, "M");
    EXPECT_TRUE(keys.empty());
}

TEST_F(KeyUps, AHandlerMayDeleteItsBox) {
    auto* const watch =
        KeyUpEvents::watch(box, [this](std::uint16_t&, Qt::KeyboardModifiers) { delete box; });
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_A, Qt::NoModifier);
    const QPointer<QLineEdit> alive = box;
    EXPECT_FALSE(watch->eventFilter(box, &release));
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
