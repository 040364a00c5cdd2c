// The application that benchmarks with widgets need, and typing in it.
#pragma once

#include <QChar>
#include <QWidget>

namespace bench {

/// Creates the application at the first call, without a display, for the rest of the run.
void ensureApplication();

/// Presses and releases the key of a letter.
void typeLetter(QWidget& target, QChar letter);

} // namespace bench
