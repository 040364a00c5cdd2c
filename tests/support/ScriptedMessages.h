// Message boxes in tests: expected beforehand, answered at once, never shown.
#pragma once

#include <QString>
#include <deque>
#include <functional>
#include <vector>

#include "services/MessageBox.h"

namespace ambrel::test {

/// While it exists, message boxes are answered from a queue. A box that is not expected, comes in another
/// order or has other texts fails the test, as does an expected one that never came.
class ScriptedMessages {
public:
    ScriptedMessages();
    ~ScriptedMessages();
    ScriptedMessages(const ScriptedMessages&) = delete;
    ScriptedMessages& operator=(const ScriptedMessages&) = delete;

    /// A box without an explanatory line.
    void expect(const QString& text, const QString& title, MessageAnswer answer = MessageAnswer::Accept);
    void expect(const QString& text, const QString& line, const QString& title, MessageAnswer answer);

    /// True when every expected box has come.
    [[nodiscard]] bool isDone() const { return expected_.empty(); }
    /// All boxes that came, unexpected ones included.
    [[nodiscard]] const std::vector<MessageBox>& shown() const { return shown_; }

private:
    struct Expected {
        QString text, line, title;
        MessageAnswer answer;
    };
    MessageAnswer answer(const MessageBox& box);

    std::deque<Expected> expected_;
    std::vector<MessageBox> shown_;
    MessageShower previous_;
};

/// The boxes that come during an action, each answered by accepting it: for faults whose texts are the
/// engine's own.
[[nodiscard]] std::vector<MessageBox> boxesDuring(const std::function<void()>& action);

/// For a whole test program: a box that no ScriptedMessages answers fails the test and is not shown.
void failOnUnexpectedMessages();

} // namespace ambrel::test
