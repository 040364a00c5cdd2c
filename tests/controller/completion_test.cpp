// The text, selection and keys of a completion.
#include "controller/Completion.h"

#include <gtest/gtest.h>

namespace {

using namespace ambrel;

EditedText typed(const std::string& text) { return {.text = text, .caret = text.size()}; }

TEST(Completion, SelectsTheTailAfterTheCaret) {
    const auto completion = complete(typed("MAD"), "MADRID");
    ASSERT_TRUE(completion);
    EXPECT_EQ(completion->text, "MADRID");
    EXPECT_EQ(completion->caret, 3u);
    EXPECT_EQ(completion->selectionLength, 3u);
}

TEST(Completion, WholeTextLeavesNothingSelected) {
    const auto completion = complete(typed("MADRID"), "MADRID");
    ASSERT_TRUE(completion);
    EXPECT_EQ(completion->caret, 6u);
    EXPECT_EQ(completion->selectionLength, 0u);
}

TEST(Completion, TextThatIsNoPrefixIsNotCompleted) {
    EXPECT_FALSE(complete(typed("MADX"), "MADRID"));
    EXPECT_FALSE(complete(typed("ADRID"), "MADRID")) << "inside the name is not at its beginning";
    EXPECT_FALSE(complete(typed("MADRIDEJOS"), "MADRID"));
    EXPECT_FALSE(complete(typed("madrid"), "MADRID")) << "names are compared as stored";
}

TEST(Completion, EmptyTextIsNoPrefix) {
    EXPECT_FALSE(complete(typed(""), "MADRID"));
    EXPECT_FALSE(complete(typed(""), ""));
}

TEST(Completion, WithASelectionTheCaretIsTheSelectionsStart) {
    const EditedText completed{.text = "MADRID", .caret = 6, .selectionStart = 2, .selectionLength = 4};
    const auto completion = complete(completed, "MADRID");
    ASSERT_TRUE(completion);
    EXPECT_EQ(completion->caret, 2u);
    EXPECT_EQ(completion->selectionLength, 4u);
}

TEST(Completion, CaretInsideTheTextStaysThere) {
    const auto completion = complete({.text = "MADR", .caret = 1}, "MADRID");
    ASSERT_TRUE(completion);
    EXPECT_EQ(completion->caret, 1u);
    EXPECT_EQ(completion->selectionLength, 5u);
}

TEST(CompletionKeys, LettersAndDigitsCompleteBothBoxes) {
    for (const int key : {48 /* 0 */, 57 /* 9 */, 65 /* A */, 90 /* Z */, 209 /* Ñ */, 201 /* É */}) {
        EXPECT_TRUE(completesMunicipality(static_cast<std::uint16_t>(key))) << key;
        EXPECT_TRUE(completesStreet(static_cast<std::uint16_t>(key))) << key;
    }
}

TEST(CompletionKeys, OtherKeysCompleteNeither) {
    for (const int key : {0, 13, 27, 32, 33, 34, 38, 40, 45, 46}) {
        EXPECT_FALSE(completesMunicipality(static_cast<std::uint16_t>(key))) << key;
        EXPECT_FALSE(completesStreet(static_cast<std::uint16_t>(key))) << key;
    }
}

TEST(CompletionKeys, Key44CompletesTheMunicipalityOnly) {
    EXPECT_TRUE(completesMunicipality(44));
    EXPECT_FALSE(completesStreet(44));
}

TEST(CompletionKeys, Key188CompletesTheStreetOnly) {
    EXPECT_TRUE(completesStreet(188));
    EXPECT_FALSE(completesMunicipality(188));
}

TEST(CompletionKeys, TheLowByteDecidesExceptForTheCommaKey) {
    EXPECT_TRUE(completesMunicipality(0x0100 + 'A'));
    EXPECT_TRUE(completesMunicipality(0x0100 + 44));
    EXPECT_TRUE(completesStreet(0x0100 + 'A'));
    EXPECT_FALSE(completesStreet(0x0100 + 188)) << "the comma key is compared whole";
}

} // namespace
