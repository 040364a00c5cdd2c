// Main program of the tests with windows: no screen, and no message box that nobody expects.
#include <gtest/gtest.h>

#include <QApplication>

#include "support/ScriptedMessages.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    ::testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    ambrel::test::failOnUnexpectedMessages();
    return RUN_ALL_TESTS();
}
