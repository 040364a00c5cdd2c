// From the text of a script to its steps.
#pragma once

#include <QSize>
#include <QString>
#include <optional>
#include <vector>

#include "host/script/Step.h"

namespace host::script {

/// Why a line is no step.
struct ScriptError {
    int line = 0;
    QString source;
    QString reason; // Spanish
};

struct ParsedScript {
    std::vector<Step> steps;
    std::optional<ScriptError> error; // of the first line that is not understood; the steps before it stand
};

/// One step a line; blank lines and lines that begin with '#' say nothing. The text to type is the rest of
/// its line behind one blank, blanks included.
[[nodiscard]] ParsedScript parseScript(const QString& text);

/// A size in logical pixels, such as 800x600; null for anything else.
[[nodiscard]] std::optional<QSize> sizeOf(const QString& text);

} // namespace host::script
