// Answers message boxes as the script says.
#include "host/script/ScriptedMessages.h"

#include <optional>
#include <utility>

namespace host::script {
namespace {

using ambrel::MessageAnswer;
using ambrel::MessageBox;
using ambrel::MessageKind;

QString kindName(MessageKind kind) {
    switch (kind) {
    case MessageKind::Error:
        return QStringLiteral("error");
    case MessageKind::Information:
        return QStringLiteral("información");
    case MessageKind::Warning:
        return QStringLiteral("aviso");
    case MessageKind::Question:
        break;
    }
    return QStringLiteral("pregunta");
}

/// The answer that a word stands for in a box; null when the box has no such button.
std::optional<MessageAnswer> answerOf(const QString& word, MessageKind kind) {
    if (word == QLatin1String("cancelar")) {
        return MessageAnswer::Cancel;
    }
    if (kind != MessageKind::Question) {
        return word == QLatin1String("aceptar") ? std::optional(MessageAnswer::Accept) : std::nullopt;
    }
    if (word == QLatin1String("si")) {
        return MessageAnswer::Yes;
    }
    return word == QLatin1String("no") ? std::optional(MessageAnswer::No) : std::nullopt;
}

QString oneLine(QString text) {
    return text.replace(QLatin1Char('\n'), QLatin1Char(' ')).replace(QLatin1Char('\t'), QLatin1Char(' '));
}

QString describe(const MessageBox& box, const QString& answer) {
    const QStringList columns{kindName(box.kind), oneLine(box.text), oneLine(box.title), answer};
    return columns.join(QLatin1Char('\t'));
}

} // namespace

ScriptedMessages::ScriptedMessages(Unanswered unanswered) : unanswered_(std::move(unanswered)) {
    before_ = ambrel::setMessageShower([this](const MessageBox& box) { return show(box); });
}

ScriptedMessages::~ScriptedMessages() { ambrel::setMessageShower(before_); }

void ScriptedMessages::answer(const QString& word) { answers_.push_back(word); }

QStringList ScriptedMessages::takeShown() { return std::exchange(shown_, {}); }

MessageAnswer ScriptedMessages::show(const MessageBox& box) {
    if (answers_.empty()) {
        unanswered_(describe(box, {}),
                    QStringLiteral("nadie responde al mensaje «%1»").arg(oneLine(box.text)));
        return MessageAnswer::Cancel;
    }
    const QString word = answers_.front();
    answers_.pop_front();
    const auto answer = answerOf(word, box.kind);
    if (!answer) {
        unanswered_(describe(box, {}),
                    QStringLiteral("el mensaje «%1» no admite «%2»").arg(oneLine(box.text), word));
        return MessageAnswer::Cancel;
    }
    shown_.append(describe(box, word));
    return *answer;
}

} // namespace host::script
