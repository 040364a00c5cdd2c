// Windows in tests.
#pragma once

#include <QWidget>

namespace ambrel::test {

/// Shows a window and waits until it is the active one; adds a test failure when it does not become active.
void showActive(QWidget& window);

} // namespace ambrel::test
