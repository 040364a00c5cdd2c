// Notices of the engine as boxes.
#include <gtest/gtest.h>

#include <QApplication>
#include <stdexcept>

#include "dbase/system/notices.h"
#include "dbase/system/notify.h"
#include "services/MessageBox.h"
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

TEST_F(Notices, FailureOfAHostsBoxStaysOutOfTheEventLoop) {
    int asked = 0;
    const ambrel::MessageShower before =
        ambrel::setMessageShower([&](const ambrel::MessageBox&) -> ambrel::MessageAnswer {
            ++asked;
            throw std::runtime_error("no hay pantalla");
        });
    dbase::notify("POSTAL.DBF: se ha recuperado");
    EXPECT_NO_THROW(QApplication::processEvents());
    EXPECT_GT(asked, 0);
    ambrel::setMessageShower(before);
}

TEST_F(Notices, GoToAHostThatWantsThem) {
    std::string received;
    dbase::setNoticeHandler([&](const std::string& text) { received = text; });
    dbase::notify("una tabla");
    EXPECT_EQ(received, "una tabla");
}

} // namespace
