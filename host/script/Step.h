// One step of a script, as read from its line.
#pragma once

#include <QString>

namespace host::script {

enum class Verb {
    Type,
    Paste,
    Clear,
    Key,
    Click,
    DoubleClick,
    ClickTitle,
    Choose,
    Answer,
    Show,
    Window,
    Messages,
    Resize,
    Capture
};

struct Step {
    Verb verb = Verb::Window;
    QString object;   // objectName; empty for the verbs that have none
    QString argument; // text, key, item, answer or file; empty for the verbs that have none
    int line = 0;     // 1-based, in its file
    QString source;   // the line, for messages
};

} // namespace host::script
