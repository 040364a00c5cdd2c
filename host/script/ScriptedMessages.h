// Message boxes while a script runs: the script answers them, and nothing is shown.
#pragma once

#include <QString>
#include <QStringList>
#include <deque>
#include <functional>

#include "services/MessageBox.h"

namespace host::script {

/// Replaces the message boxes as long as it exists.
class ScriptedMessages {
public:
    /// Called for a box without a queued answer, or without a button for it, with the box as `takeShown`
    /// would list it and the reason in Spanish. The box then counts as not answered.
    using Unanswered = std::function<void(const QString& box, const QString& reason)>;

    explicit ScriptedMessages(Unanswered unanswered);
    ~ScriptedMessages();
    ScriptedMessages(const ScriptedMessages&) = delete;
    ScriptedMessages& operator=(const ScriptedMessages&) = delete;

    /// Queues the answer to the next box: si, no, aceptar or cancelar.
    void answer(const QString& word);

    /// Returns the boxes shown so far and forgets them: kind, text, title and answer, separated by tabs.
    [[nodiscard]] QStringList takeShown();

private:
    ambrel::MessageAnswer show(const ambrel::MessageBox& box);

    Unanswered unanswered_;
    ambrel::MessageShower before_;
    std::deque<QString> answers_;
    QStringList shown_;
};

} // namespace host::script
