// The guard of event handlers.
#include "services/EventGuard.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <new>
#include <stdexcept>

#include "dbase/system/error.h"
#include "services/MessageBox.h"
#include "support/ScriptedMessages.h"

namespace {

using ambrel::guarded;
using ambrel::runGuarded;
using ambrel::test::ScriptedMessages;

TEST(EventGuard, RunsTheBody) {
    bool ran = false;
    runGuarded([&] { ran = true; });
    EXPECT_TRUE(ran);
}

TEST(EventGuard, ShowsAnExceptionOnceAndGoesOn) {
    ScriptedMessages messages;
    messages.expect("/datos/POSTAL.DBF: la tabla está bloqueada", "Atención");
    runGuarded([] {
        throw dbase::Error(dbase::ErrorCode::LockRefused, "/datos/POSTAL.DBF", "la tabla está bloqueada");
    });
    EXPECT_EQ(messages.shown().front().kind, ambrel::MessageKind::Error);
}

TEST(EventGuard, SaysInSpanishThatMemoryIsShort) {
    ScriptedMessages messages;
    messages.expect("No queda memoria para esta operación.", "Atención");
    runGuarded([] { throw std::bad_alloc(); });
}

TEST(EventGuard, InsideAnotherShowsAnExceptionOnce) {
    ScriptedMessages messages;
    messages.expect("dentro", "Atención");
    bool went = false;
    runGuarded([&] {
        runGuarded([] { throw std::runtime_error("dentro"); });
        went = true;
    });
    EXPECT_TRUE(went);
}

TEST(EventGuard, DoesNotShowASilentAbort) {
    ScriptedMessages none;
    bool went = false;
    runGuarded([&] {
        went = true;
        throw ambrel::SilentAbort();
    });
    EXPECT_TRUE(went);
    EXPECT_TRUE(none.shown().empty());
}

TEST(EventGuard, ShowsWhatIsNoStandardException) {
    ScriptedMessages messages;
    messages.expect("Se ha producido un error inesperado.", "Atención");
    runGuarded([] { throw 7; });
}

TEST(EventGuard, SurvivesABoxThatCannotBeShown) {
    QTest::ignoreMessage(QtCriticalMsg, "no va");
    const auto before =
        ambrel::setMessageShower([](const ambrel::MessageBox&) -> ambrel::MessageAnswer { throw 7; });
    runGuarded([] { throw std::runtime_error("no va"); });
    ambrel::setMessageShower(before);
}

TEST(EventGuard, WrapsSlotsWithAndWithoutArguments) {
    ScriptedMessages messages;
    messages.expect("clic", "Atención");
    QPushButton button;
    QString text;
    QLineEdit box;
    QObject::connect(&button, &QPushButton::clicked, &button,
                     guarded([] { throw std::runtime_error("clic"); }));
    QObject::connect(&box, &QLineEdit::textChanged, &box, guarded([&](const QString& now) { text = now; }));
    button.click();
    box.setText("SOL");
    EXPECT_EQ(text, "SOL");
}

} // namespace
