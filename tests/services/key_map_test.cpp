// The map from Qt's keys to the 16-bit key codes.
#include "services/KeyMap.h"

#include <gtest/gtest.h>

#include <QKeyEvent>

#include "services/KeyCodes.h"

namespace {

std::uint16_t code(int key, const QString& text = {}, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    return ambrel::keyCode(QKeyEvent(QEvent::KeyRelease, key, modifiers, text));
}

TEST(KeyMap, NamedKeysHaveTheirFixedCodes) {
    EXPECT_EQ(code(Qt::Key_Return), 13);
    EXPECT_EQ(code(Qt::Key_Enter, "\r", Qt::KeypadModifier), 13);
    EXPECT_EQ(code(Qt::Key_Escape), 27);
    EXPECT_EQ(code(Qt::Key_Space, " "), 32);
    EXPECT_EQ(code(Qt::Key_PageUp), 33);
    EXPECT_EQ(code(Qt::Key_PageDown), 34);
    EXPECT_EQ(code(Qt::Key_Up), 38);
    EXPECT_EQ(code(Qt::Key_Down), 40);
    EXPECT_EQ(code(Qt::Key_Print), 44);
    EXPECT_EQ(code(Qt::Key_Insert), 45);
    EXPECT_EQ(code(Qt::Key_Delete), 46);
    EXPECT_EQ(code(Qt::Key_Comma, ","), 188);
}

TEST(KeyMap, DigitsOfBothBlocksHaveTheSameCodes) {
    EXPECT_EQ(code(Qt::Key_0, "0"), 48);
    EXPECT_EQ(code(Qt::Key_9, "9"), 57);
    EXPECT_EQ(code(Qt::Key_5, "5", Qt::KeypadModifier), 53);
}

TEST(KeyMap, LettersHaveTheirCapitalsCode) {
    EXPECT_EQ(code(Qt::Key_A, "a"), 65);
    EXPECT_EQ(code(Qt::Key_Z, "Z", Qt::ShiftModifier), 90);
    EXPECT_EQ(code(Qt::Key_C, "\x03", Qt::ControlModifier), 67);
}

TEST(KeyMap, OtherLettersHaveTheirCapitalsByteInWindows1252) {
    EXPECT_EQ(code(Qt::Key_Ntilde, "ñ"), 209);
    EXPECT_EQ(code(Qt::Key_Ntilde, "Ñ", Qt::ShiftModifier), 209);
    EXPECT_EQ(code(Qt::Key_Ccedilla, "ç"), 199);
    EXPECT_EQ(code(0x0160, "š"), 0x8A);
    EXPECT_EQ(code(Qt::Key_unknown, "á"), 193);
    EXPECT_EQ(code(Qt::Key_masculine, "º"), 186);
}

TEST(KeyMap, LetterTogetherWithCtrlIsKnownByItsKey) {
    EXPECT_EQ(code(Qt::Key_Ntilde, "\x11", Qt::ControlModifier), 209);
    EXPECT_EQ(code(Qt::Key_Ntilde, {}, Qt::AltModifier), 209);
}

TEST(KeyMap, OtherKeysHaveNoCode) {
    for (const int key : {Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Shift, Qt::Key_F1, Qt::Key_Home, Qt::Key_Left,
                          Qt::Key_Backspace, Qt::Key_Period, Qt::Key_Minus, Qt::Key_unknown}) {
        EXPECT_EQ(code(key), ambrel::key_code::none) << key;
    }
    EXPECT_EQ(code(Qt::Key_Period, "."), 0);
    EXPECT_EQ(code(Qt::Key_Dead_Acute), 0);
}

TEST(KeyMap, SignsAreNoLettersWhateverTheirByte) {
    EXPECT_EQ(code(Qt::Key_onequarter, "¼"), 0); // its byte is the comma key's code
    EXPECT_EQ(code(Qt::Key_onesuperior, "¹"), 0);
    EXPECT_EQ(code(Qt::Key_multiply, "×"), 0);
}

TEST(KeyMap, LettersThatWindows1252LacksHaveNoCode) {
    EXPECT_EQ(code(0x0416, "ж"), 0);
    EXPECT_EQ(code(0x0141, "ł"), 0);
}

} // namespace
