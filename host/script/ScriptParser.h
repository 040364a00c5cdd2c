// Parses the text of a script into steps.
#pragma once

#include <QSize>
#include <QString>
#include <optional>
#include <vector>

#include "host/script/Step.h"

namespace host::script {

/// Why a line is not a step.
struct ScriptError {
    int line = 0;
    QString source;
    QString reason; // Spanish
};

struct ParsedScript {
    std::vector<Step> steps;
    std::optional<ScriptError> error; // of the first line that is not understood; steps holds those before it
};

/// One step per line; blank lines and lines that begin with '#' are ignored. The text to type is the rest of
/// its line after one blank, blanks included.
[[nodiscard]] ParsedScript parseScript(const QString& text);

/// A size in logical pixels, such as 800x600; null for anything else.
[[nodiscard]] std::optional<QSize> sizeOf(const QString& text);

} // namespace host::script
