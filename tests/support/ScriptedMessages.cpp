// Answers message boxes from a queue.
#include "support/ScriptedMessages.h"

#include <gtest/gtest.h>

#include <utility>

namespace ambrel::test {
namespace {

std::string describe(const QString& text, const QString& line, const QString& title) {
    return '"' + text.toStdString() + "\" / \"" + line.toStdString() + "\" under \"" + title.toStdString() +
           '"';
}

std::string describe(const MessageBox& box) { return describe(box.text, box.line, box.title); }

} // namespace

ScriptedMessages::ScriptedMessages() {
    previous_ = setMessageShower([this](const MessageBox& box) { return answer(box); });
}

ScriptedMessages::~ScriptedMessages() {
    setMessageShower(std::move(previous_));
    for (const Expected& missing : expected_) {
        ADD_FAILURE() << "This box never came: " << describe(missing.text, missing.line, missing.title);
    }
}

void ScriptedMessages::expect(const QString& text, const QString& title, MessageAnswer answer) {
    expect(text, {}, title, answer);
}

void ScriptedMessages::expect(const QString& text, const QString& line, const QString& title,
                              MessageAnswer answer) {
    expected_.push_back({text, line, title, answer});
}

MessageAnswer ScriptedMessages::answer(const MessageBox& box) {
    shown_.push_back(box);
    if (expected_.empty()) {
        ADD_FAILURE() << "Unexpected box: " << describe(box);
        return MessageAnswer::Cancel;
    }
    const Expected next = std::move(expected_.front());
    expected_.pop_front();
    if (next.text != box.text || next.line != box.line || next.title != box.title) {
        ADD_FAILURE() << "This box came: " << describe(box)
                      << "\ninstead of:    " << describe(next.text, next.line, next.title);
    }
    return next.answer;
}

std::vector<MessageBox> boxesDuring(const std::function<void()>& action) {
    std::vector<MessageBox> boxes;
    const MessageShower before = setMessageShower([&](const MessageBox& box) {
        boxes.push_back(box);
        return MessageAnswer::Accept;
    });
    action();
    setMessageShower(before);
    return boxes;
}

void failOnUnexpectedMessages() {
    setMessageShower([](const MessageBox& box) {
        ADD_FAILURE() << "Unexpected box: " << describe(box);
        return MessageAnswer::Cancel;
    });
}

} // namespace ambrel::test
