// What each step of a script does.
#pragma once

#include <functional>

#include "host/script/Input.h"
#include "host/script/ObjectLookup.h"
#include "host/script/Outcome.h"
#include "host/script/ScriptedMessages.h"
#include "host/script/Step.h"

namespace host::script {

/// Receives one line of output.
using Printer = std::function<void(const QString& line)>;

class StepActions {
public:
    StepActions(const ObjectLookup& lookup, ScriptedMessages& messages, Printer print);

    /// The actions of a step, to be run one after another.
    [[nodiscard]] Actions of(const Step& step) const;

private:
    [[nodiscard]] Outcome show(const QString& object) const;
    [[nodiscard]] Outcome showWindow() const;
    [[nodiscard]] Outcome showMessages() const;
    [[nodiscard]] Outcome resize(const QString& size) const;
    [[nodiscard]] Action capture(const QString& file) const;

    const ObjectLookup& lookup_;
    ScriptedMessages& messages_;
    Printer print_;
    Input input_;
};

} // namespace host::script
