// Main program of the tests with windows: no screen, and no unexpected message boxes.
#include <gtest/gtest.h>

#include <QApplication>

#include "support/ScriptedMessages.h"

int main(int argc, char** argv) {
    // A run may ask for a screen of another size.
    if (!qgetenv("QT_QPA_PLATFORM").startsWith("offscreen")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    ::testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    ambrel::test::failOnUnexpectedMessages();
    return RUN_ALL_TESTS();
}
