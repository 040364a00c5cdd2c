// The look of the demo host.
#pragma once

class QApplication;

namespace host {

/// One look on every desktop. The colours of a dark desktop, or of one in high contrast, stay.
void applyStyle(QApplication& application);

/// Gives the same picture on every machine: one font, and a caret that does not blink.
void applyFixedLook(QApplication& application);

} // namespace host
