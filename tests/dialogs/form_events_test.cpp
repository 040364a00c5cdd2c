// Showing, resizing and closing of a dialog.
#include "dialogs/common/FormEvents.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QShowEvent>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <stdexcept>

#include "dialogs/common/FormKeys.h"
#include "support/ScriptedMessages.h"
#include "support/ShownWindow.h"

namespace {

using ambrel::FormEvents;
using ambrel::test::showActive;

class FormEventsTest : public ::testing::Test {
protected:
    FormEventsTest() {
        new FormEvents(
            dialog, [this] { ++shown; }, [this] { resizedTo = dialog.size(); });
    }

    /// The result of a modal dialog that ends like this.
    template<typename End>
    int resultOf(End end) {
        QTimer::singleShot(0, &dialog, end);
        return dialog.exec();
    }

    QDialog dialog;
    int shown = 0;
    QSize resizedTo;
};

TEST_F(FormEventsTest, FormShowRunsEachTimeThatTheDialogIsShown) {
    EXPECT_EQ(shown, 0);
    showActive(dialog);
    EXPECT_EQ(shown, 1);
    dialog.hide();
    showActive(dialog);
    EXPECT_EQ(shown, 2);
}

TEST_F(FormEventsTest, WindowRestoredToTheScreenIsNotShownAnew) {
    showActive(dialog);
    QShowEvent restored;
    QSpontaneKeyEvent::setSpontaneous(&restored); // as the window system marks it
    static_cast<void>(qApp->notify(&dialog, &restored));
    EXPECT_EQ(shown, 1);
}

TEST_F(FormEventsTest, FormResizeRunsWithTheNewSize) {
    showActive(dialog);
    EXPECT_EQ(resizedTo, dialog.size()) << "once when it is first shown";
    dialog.resize(517, 311);
    EXPECT_EQ(resizedTo, QSize(517, 311));
}

TEST_F(FormEventsTest, CloseButtonEndsItAsCancelled) {
    const QSignalSpy finished(&dialog, &QDialog::finished), rejected(&dialog, &QDialog::rejected);
    EXPECT_EQ(resultOf([this] { EXPECT_TRUE(dialog.close()); }), ambrel::cancelledResult);
    EXPECT_FALSE(dialog.isVisible());
    ASSERT_EQ(finished.size(), 1);
    EXPECT_EQ(finished[0][0].toInt(), ambrel::cancelledResult);
    EXPECT_EQ(rejected.size(), 0);
}

TEST_F(FormEventsTest, RejectingEndsItAsCancelled) {
    EXPECT_EQ(resultOf([this] { dialog.reject(); }), ambrel::cancelledResult);
}

TEST_F(FormEventsTest, AcceptButtonsResultStays) {
    EXPECT_EQ(resultOf([this] { dialog.done(ambrel::acceptedResult); }), ambrel::acceptedResult);
}

TEST_F(FormEventsTest, DialogThatIsNotShownCanBeClosed) {
    EXPECT_TRUE(dialog.close());
    EXPECT_EQ(dialog.result(), 0) << "it never ran";
}

TEST_F(FormEventsTest, DialogDeletedByItsOwnEndIsClosedOnce) {
    auto* const other = new QDialog;
    new FormEvents(
        *other, [] {}, [] {});
    QObject::connect(other, &QDialog::finished, [other] { delete other; });
    other->show();
    other->close();
}

TEST_F(FormEventsTest, FailureOfFormShowIsShownToTheUserAndTheDialogStays) {
    ambrel::test::ScriptedMessages messages;
    QDialog failing;
    new FormEvents(
        failing, [] { throw std::runtime_error("no hay tabla"); }, [] {});
    messages.expect("no hay tabla", "Atención");
    showActive(failing);
    EXPECT_TRUE(failing.isVisible());
}

} // namespace
