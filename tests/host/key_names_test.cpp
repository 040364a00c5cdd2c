// The key names of scripts.
#include "host/script/KeyNames.h"

#include <gtest/gtest.h>

namespace {

using host::script::keyStroke;
using host::script::KeyStroke;

KeyStroke known(const char* name) {
    const auto stroke = keyStroke(QString::fromUtf8(name));
    EXPECT_TRUE(stroke) << name;
    return stroke.value_or(KeyStroke{});
}

TEST(KeyNames, KeysThatTypeNothingHaveNames) {
    EXPECT_EQ(known("Tab").key, Qt::Key_Tab);
    EXPECT_EQ(known("Escape").key, Qt::Key_Escape);
    EXPECT_EQ(known("PageDown").key, Qt::Key_PageDown);
    EXPECT_EQ(known("Insert").key, Qt::Key_Insert);
    EXPECT_EQ(known("Space").text, QStringLiteral(" "));
}

TEST(KeyNames, FunctionKeysAreNumberedFrom1To24) {
    EXPECT_EQ(known("F1").key, Qt::Key_F1);
    EXPECT_EQ(known("F12").key, Qt::Key_F12);
    EXPECT_FALSE(keyStroke(QStringLiteral("F0")));
    EXPECT_FALSE(keyStroke(QStringLiteral("F25")));
}

TEST(KeyNames, ASmallLetterIsTheKeyOfItsCapitalWithoutShift) {
    EXPECT_EQ(known("a").key, Qt::Key_A);
    EXPECT_EQ(known("a").text, QStringLiteral("a"));
    EXPECT_EQ(known("a").modifiers, Qt::NoModifier);
    EXPECT_EQ(known("ñ").key, Qt::Key_Ntilde);
}

TEST(KeyNames, ACapitalIsTypedWithShift) {
    EXPECT_EQ(known("A").modifiers, Qt::ShiftModifier);
    EXPECT_EQ(known("Shift+a").text, QStringLiteral("A"));
}

TEST(KeyNames, CtrlAndAltTypeNothing) {
    const KeyStroke stroke = known("Ctrl+Shift+s");
    EXPECT_EQ(stroke.key, Qt::Key_S);
    EXPECT_EQ(stroke.modifiers, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(stroke.text.isEmpty());
    EXPECT_EQ(known("Alt+G").modifiers, Qt::AltModifier);
}

TEST(KeyNames, ShiftTabIsAKeyOfItsOwn) { EXPECT_EQ(known("Shift+Tab").key, Qt::Key_Backtab); }

TEST(KeyNames, PlusIsAKeyToo) {
    EXPECT_EQ(known("+").key, Qt::Key_Plus);
    EXPECT_EQ(known("Ctrl++").key, Qt::Key_Plus);
}

TEST(KeyNames, OtherNamesAreUnknown) {
    EXPECT_FALSE(keyStroke(QStringLiteral("Tabulador")));
    EXPECT_FALSE(keyStroke(QStringLiteral("Ctrl+")));
    EXPECT_FALSE(keyStroke(QString()));
}

} // namespace
