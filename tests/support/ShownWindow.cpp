// Shows windows in tests.
#include "support/ShownWindow.h"

#include <gtest/gtest.h>

#include <QTest>

namespace ambrel::test {

void showActive(QWidget& window) {
    window.show();
    window.activateWindow();
    if (!QTest::qWaitForWindowActive(&window)) {
        ADD_FAILURE() << "The window does not become active.";
    }
}

} // namespace ambrel::test
