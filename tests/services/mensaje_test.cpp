// The boxes that the message routines ask for.
#include "services/Mensaje.h"

#include <gtest/gtest.h>

#include "support/ScriptedMessages.h"

namespace {

using ambrel::MessageAnswer;
using ambrel::MessageBox;
using ambrel::MessageKind;
using ambrel::test::ScriptedMessages;

/// The only box that came.
const MessageBox& only(const ScriptedMessages& messages) {
    EXPECT_EQ(messages.shown().size(), 1U);
    return messages.shown().front();
}

TEST(Mensaje, ErrorHasTextThenTitle) {
    ScriptedMessages messages;
    messages.expect("No se puede buscar en la lista de vías", "Error");
    Mensaje_Error("No se puede buscar en la lista de vías", "Error");
    EXPECT_EQ(only(messages).kind, MessageKind::Error);
    EXPECT_EQ(only(messages).defaultButton, MessageAnswer::Accept);
    EXPECT_FALSE(only(messages).owner);
}

TEST(Mensaje, ErrorMayHaveAnOwner) {
    QWidget owner;
    ScriptedMessages messages;
    messages.expect("texto", "título");
    Mensaje_Error(&owner, "texto", "título");
    EXPECT_EQ(only(messages).owner, &owner);
    EXPECT_EQ(only(messages).kind, MessageKind::Error);
}

TEST(Mensaje, InfoIsInformation) {
    QWidget owner;
    ScriptedMessages messages;
    messages.expect("texto", "título");
    Mensaje_Info(&owner, "texto", "título");
    EXPECT_EQ(only(messages).owner, &owner);
    EXPECT_EQ(only(messages).kind, MessageKind::Information);
}

TEST(Mensaje, SiNoReturnsOneForYesAndHasYesAsDefault) {
    ScriptedMessages messages;
    messages.expect("¿Desea ver la lista de municipios actuales?", "ATENCIÓN", "Atención",
                    MessageAnswer::Yes);
    EXPECT_EQ(Mensaje_SiNo("¿Desea ver la lista de municipios actuales?", "ATENCIÓN", "Atención"), 1);
    EXPECT_EQ(only(messages).kind, MessageKind::Question);
    EXPECT_EQ(only(messages).defaultButton, MessageAnswer::Yes);
}

TEST(Mensaje, SiNoMayHaveAnOwner) {
    QWidget owner;
    ScriptedMessages messages;
    messages.expect("¿Seguro?", "línea", "título", MessageAnswer::Yes);
    EXPECT_EQ(Mensaje_SiNo(&owner, "¿Seguro?", "línea", "título"), 1);
    EXPECT_EQ(only(messages).owner, &owner);
}

TEST(Mensaje, NoSiReturnsOneForYesAndHasNoAsDefault) {
    ScriptedMessages messages;
    messages.expect("¿Desea cancelar esta operación (S/N)?", "línea", "Atención", MessageAnswer::Yes);
    EXPECT_EQ(Mensaje_NoSi("¿Desea cancelar esta operación (S/N)?", "línea", "Atención"), 1);
    EXPECT_EQ(only(messages).defaultButton, MessageAnswer::No);
}

TEST(Mensaje, QuestionsDoNotReturnOneForAnythingButYes) {
    for (const MessageAnswer answer : {MessageAnswer::No, MessageAnswer::Cancel, MessageAnswer::Accept}) {
        ScriptedMessages messages;
        messages.expect("¿Sí?", {}, "a", answer);
        messages.expect("¿Sí?", {}, "b", answer);
        EXPECT_NE(Mensaje_SiNo("¿Sí?", {}, "a"), answeredYes);
        EXPECT_NE(Mensaje_NoSi("¿Sí?", {}, "b"), answeredYes);
    }
}

TEST(Mensaje, MensajesWarnsAndReturnsItsOnlyButton) {
    ScriptedMessages messages;
    messages.expect("Repita nuevamente la última operación", "Acceso concurrente");
    EXPECT_EQ(Mensajes(0, "Repita nuevamente la última operación", 0, "Acceso concurrente", "",
                       buttonFaceColour, buttonTextColour, false),
              1);
    EXPECT_EQ(only(messages).kind, MessageKind::Warning);
}

} // namespace
