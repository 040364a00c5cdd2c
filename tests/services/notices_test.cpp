// Notices of the engine as boxes.
#include <gtest/gtest.h>

#include <QApplication>

#include "dbase/system/notices.h"
#include "dbase/system/notify.h"
#include "services/Notices.h"
#include "support/ScriptedMessages.h"

namespace {

using ambrel::test::ScriptedMessages;

class Notices : public ::testing::Test {
protected:
    Notices() { ambrel::showNotices(); }
    ~Notices() override { dbase::setNoticeHandler({}); }
};

/// At once it would wait for the user while the table is locked.
TEST_F(Notices, AreShownOnceTheEventLoopRuns) {
    ScriptedMessages messages;
    messages.expect(QStringLiteral("POSTAL.DBF: se ha recuperado"), QStringLiteral("Tablas"));
    dbase::notify("POSTAL.DBF: se ha recuperado");
    EXPECT_TRUE(messages.shown().empty());
    QApplication::processEvents();
    EXPECT_TRUE(messages.isDone());
    QApplication::processEvents();
    EXPECT_EQ(messages.shown().size(), 1U);
}

TEST_F(Notices, GoToAHostThatWantsThem) {
    std::string received;
    dbase::setNoticeHandler([&](const std::string& text) { received = text; });
    dbase::notify("una tabla");
    EXPECT_EQ(received, "una tabla");
}

} // namespace
