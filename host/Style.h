// How the demo host looks.
#pragma once

class QApplication;

namespace host {

/// One look on every desktop. A dark desktop stays dark.
void applyStyle(QApplication& application);

} // namespace host
