// Capitals and lengths of typed text.
#include "dialogs/common/TypingRules.h"

#include <gtest/gtest.h>

#include <QInputMethodEvent>
#include <QLineEdit>
#include <QTest>

namespace {

using ambrel::Capitals;
using ambrel::TypingRules;

TEST(TypingRules, TypedLettersBecomeCapitals) {
    QLineEdit box;
    new TypingRules(&box, 20, Capitals::Yes);
    QTest::keyClicks(&box, QStringLiteral("gran via 2"));
    QTest::sendKeyEvent(QTest::Click, &box, Qt::Key_Ntilde, QStringLiteral("ñ"), Qt::NoModifier);
    EXPECT_EQ(box.text(), QStringLiteral("GRAN VIA 2Ñ"));
}

TEST(TypingRules, LettersOfAnInputMethodBecomeCapitals) {
    QLineEdit box;
    new TypingRules(&box, 20, Capitals::Yes);
    QInputMethodEvent event;
    event.setCommitString(QStringLiteral("é"));
    QCoreApplication::sendEvent(&box, &event);
    EXPECT_EQ(box.text(), QStringLiteral("É"));
}

TEST(TypingRules, TextSetByTheProgramStaysAsItIs) {
    QLineEdit box;
    new TypingRules(&box, 3, Capitals::Yes);
    box.setText(QStringLiteral("de la Rúa"));
    EXPECT_EQ(box.text(), QStringLiteral("de la Rúa"));
}

TEST(TypingRules, TypingStopsAtTheLength) {
    QLineEdit box;
    new TypingRules(&box, 3, Capitals::No);
    QTest::keyClicks(&box, QStringLiteral("abcd"));
    EXPECT_EQ(box.text(), QStringLiteral("abc"));
}

TEST(TypingRules, ASelectedTailMakesRoom) {
    QLineEdit box;
    new TypingRules(&box, 3, Capitals::No);
    box.setText(QStringLiteral("abc"));
    box.setSelection(3, -2);
    QTest::keyClicks(&box, QStringLiteral("x"));
    EXPECT_EQ(box.text(), QStringLiteral("ax"));
}

TEST(TypingRules, ALetterThatTheTablesCannotKeepIsRefused) {
    QLineEdit box;
    new TypingRules(&box, 20, Capitals::No);
    QTest::sendKeyEvent(QTest::Click, &box, Qt::Key_unknown, QStringLiteral("日"), Qt::NoModifier);
    QInputMethodEvent event;
    event.setCommitString(QStringLiteral("本"));
    QCoreApplication::sendEvent(&box, &event);
    QTest::keyClicks(&box, QStringLiteral("a"));
    EXPECT_EQ(box.text(), QStringLiteral("a"));
}

TEST(TypingRules, AMnemonicThatNothingHasTypesNothing) {
    QLineEdit box;
    new TypingRules(&box, 20, Capitals::No);
    QTest::sendKeyEvent(QTest::Click, &box, Qt::Key_N, QStringLiteral("n"), Qt::AltModifier);
    EXPECT_TRUE(box.text().isEmpty());
}

TEST(TypingRules, CommandKeysWorkInAFullBox) {
    QLineEdit box;
    new TypingRules(&box, 3, Capitals::Yes);
    box.setText(QStringLiteral("abc"));
    QTest::keyClick(&box, Qt::Key_Backspace);
    EXPECT_EQ(box.text(), QStringLiteral("ab"));
    QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(box.selectedText(), QStringLiteral("ab"));
}

TEST(TypingRules, ALetterWhoseCapitalTheTablesCannotKeepStaysSmall) {
    QLineEdit box;
    new TypingRules(&box, 20, Capitals::Yes);
    QTest::sendKeyEvent(QTest::Click, &box, Qt::Key_mu, QStringLiteral("µ"), Qt::NoModifier);
    QInputMethodEvent event;
    event.setCommitString(QStringLiteral("µ"));
    QCoreApplication::sendEvent(&box, &event);
    EXPECT_EQ(box.text(), QStringLiteral("µµ"));
}

} // namespace
