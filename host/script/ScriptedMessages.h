// Message boxes while a script runs: the script answers them, nothing is shown.
#pragma once

#include <QString>
#include <QStringList>
#include <deque>
#include <functional>

#include "services/MessageBox.h"

namespace host::script {

/// Takes the place of the message boxes for as long as it lives.
class ScriptedMessages {
public:
    /// Told of a box that no answer was queued for, or none that it has a button for: the box as `takeShown`
    /// would say it, and the reason in Spanish. The box then counts as not answered.
    using Unanswered = std::function<void(const QString& box, const QString& reason)>;

    explicit ScriptedMessages(Unanswered unanswered);
    ~ScriptedMessages();
    ScriptedMessages(const ScriptedMessages&) = delete;
    ScriptedMessages& operator=(const ScriptedMessages&) = delete;

    /// Queues the answer to the next box: si, no, aceptar or cancelar.
    void answer(const QString& word);

    /// The boxes shown so far, which are forgotten: kind, text, title and answer, separated by tabs.
    [[nodiscard]] QStringList takeShown();

private:
    ambrel::MessageAnswer show(const ambrel::MessageBox& box);

    Unanswered unanswered_;
    ambrel::MessageShower before_;
    std::deque<QString> answers_;
    QStringList shown_;
};

} // namespace host::script
