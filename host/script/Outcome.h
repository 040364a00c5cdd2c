// The result of a single action of a script, and the actions that make up a step.
#pragma once

#include <QString>
#include <functional>
#include <vector>

namespace host::script {

struct Outcome {
    enum class Result { Done, NotYet, Failed };

    Result result = Result::Done;
    QString reason; // Spanish; why it was not done

    [[nodiscard]] static Outcome done() { return {}; }
    /// To be tried again until patience ends; the reason is reported then.
    [[nodiscard]] static Outcome notYet(const QString& reason) { return {Result::NotYet, reason}; }
    [[nodiscard]] static Outcome failed(const QString& reason) { return {Result::Failed, reason}; }
};

/// The smallest thing that a user does at once: pressing a key, releasing it, clicking. An action that opens
/// a modal window returns when that window closes.
using Action = std::function<Outcome()>;
using Actions = std::vector<Action>;

} // namespace host::script
