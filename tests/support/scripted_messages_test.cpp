// The queue of expected message boxes reports every mismatch.
#include "support/ScriptedMessages.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "services/Mensaje.h"

namespace {

using ambrel::MessageAnswer;
using ambrel::test::ScriptedMessages;

TEST(ScriptedMessages, AnswerInOrder) {
    ScriptedMessages messages;
    messages.expect("¿uno?", {}, "t", MessageAnswer::Yes);
    messages.expect("¿dos?", {}, "t", MessageAnswer::No);
    EXPECT_EQ(Mensaje_SiNo("¿uno?", {}, "t"), 1);
    EXPECT_FALSE(messages.isDone());
    EXPECT_NE(Mensaje_SiNo("¿dos?", {}, "t"), 1);
    EXPECT_TRUE(messages.isDone());
}

TEST(ScriptedMessages, AnUnexpectedBoxFails) {
    EXPECT_NONFATAL_FAILURE(
        {
            ScriptedMessages messages;
            Mensaje_Error("texto", "título");
        },
        "Unexpected box: \"texto\"");
}

TEST(ScriptedMessages, AMissingBoxFails) {
    EXPECT_NONFATAL_FAILURE(
        {
            ScriptedMessages messages;
            messages.expect("texto", "título");
        },
        "never came: \"texto\"");
}

TEST(ScriptedMessages, AnotherTitleOrLineFails) {
    EXPECT_NONFATAL_FAILURE(
        {
            ScriptedMessages messages;
            messages.expect("texto", "título");
            Mensaje_Error("texto", "otro");
        },
        "instead of");
    EXPECT_NONFATAL_FAILURE(
        {
            ScriptedMessages messages;
            messages.expect("¿?", "línea", "título", MessageAnswer::Yes);
            static_cast<void>(Mensaje_SiNo("¿?", "otra", "título"));
        },
        "instead of");
}

TEST(ScriptedMessages, WithoutThemABoxFailsAndIsNotShown) {
    EXPECT_NONFATAL_FAILURE(Mensaje_Error("texto", "título"), "Unexpected box");
}

} // namespace
