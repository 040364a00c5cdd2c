// The package's message boxes.
#include "services/Mensaje.h"

namespace {

using ambrel::MessageAnswer;
using ambrel::MessageKind;

constexpr int answeredNo = 0;
constexpr int buttonOk = 1;

void inform(MessageKind kind, QWidget* owner, const QString& text, const QString& line,
            const QString& title) {
    ambrel::ask({.kind = kind, .text = text, .line = line, .title = title, .owner = owner});
}

int question(QWidget* owner, const QString& text, const QString& line, const QString& title,
             MessageAnswer defaultButton) {
    const MessageAnswer answer = ambrel::ask({.kind = MessageKind::Question,
                                              .text = text,
                                              .line = line,
                                              .title = title,
                                              .owner = owner,
                                              .defaultButton = defaultButton});
    return answer == MessageAnswer::Yes ? answeredYes : answeredNo;
}

} // namespace

void Mensaje_Error(const QString& text, const QString& title) { Mensaje_Error(nullptr, text, title); }

void Mensaje_Error(QWidget* owner, const QString& text, const QString& title) {
    inform(MessageKind::Error, owner, text, {}, title);
}

void Mensaje_Info(QWidget* owner, const QString& text, const QString& title) {
    inform(MessageKind::Information, owner, text, {}, title);
}

int Mensaje_SiNo(const QString& text, const QString& line, const QString& title) {
    return Mensaje_SiNo(nullptr, text, line, title);
}

int Mensaje_SiNo(QWidget* owner, const QString& text, const QString& line, const QString& title) {
    return question(owner, text, line, title, MessageAnswer::Yes);
}

int Mensaje_NoSi(const QString& text, const QString& line, const QString& title) {
    return question(nullptr, text, line, title, MessageAnswer::No);
}

int Mensajes([[maybe_unused]] int kind, const QString& text, [[maybe_unused]] int icon, const QString& title,
             const QString& secondTitle, [[maybe_unused]] int colour, [[maybe_unused]] int textColour,
             [[maybe_unused]] bool option) {
    inform(MessageKind::Warning, nullptr, text, secondTitle, title);
    return buttonOk;
}
