// While the service is waited for, windows are drawn and input is discarded.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointingDevice>
#include <QTest>
#include <QWindow>
#include <atomic>
#include <chrono>
#include <thread>

#include "import/ImportForm.h"
#include "import/InputPause.h"
#include "support/ShownWindow.h"

namespace {

using namespace postal_tests;
using callejero::Fault;
using callejero::Operation;

/// Leaves the events of a click on a button, and of Escape after it, in a window's queue.
void leaveInput(QWindow* window, QPoint place, QPointF global) {
    QCoreApplication::postEvent(window, new QMouseEvent(QEvent::MouseButtonPress, place, global,
                                                        Qt::LeftButton, Qt::LeftButton, Qt::NoModifier));
    QCoreApplication::postEvent(window, new QMouseEvent(QEvent::MouseButtonRelease, place, global,
                                                        Qt::LeftButton, Qt::NoButton, Qt::NoModifier));
    QCoreApplication::postEvent(window, new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier));
}

/// A window with a button that counts its clicks.
class InputPauseTest : public ::testing::Test {
protected:
    InputPauseTest() {
        button_.resize(200, 100);
        QObject::connect(&button_, &QPushButton::clicked, &button_, [this] { ++clicks; });
        ambrel::test::showActive(button_);
    }
    void leaveClick() {
        const QPoint place = button_.rect().center();
        leaveInput(button_.windowHandle(), place, button_.mapToGlobal(place));
    }
    QPushButton button_{"Pulse"};
    int clicks = 0;
};

TEST_F(InputPauseTest, WithoutAPauseTheQueueIsActedOn) {
    leaveClick();
    QCoreApplication::processEvents();
    EXPECT_EQ(clicks, 1);
}

TEST_F(InputPauseTest, InputDuringThePauseIsLost) {
    {
        const ambrel::InputPause pause;
        leaveClick();
        pause.letDraw();
        EXPECT_EQ(clicks, 0);
        leaveClick(); // not processed again before the end
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(clicks, 0);
    leaveClick();
    QCoreApplication::processEvents();
    EXPECT_EQ(clicks, 1) << "afterwards the user is heard again";
}

TEST_F(InputPauseTest, WindowsAreDrawn) {
    const ambrel::InputPause pause;
    struct Probe : QWidget {
        int paints = 0;
        void paintEvent(QPaintEvent*) override { ++paints; }
    } probe;
    probe.show();
    pause.letDraw();
    EXPECT_GT(probe.paints, 0);
}

TEST_F(InputPauseTest, ModalDialogThatComesMeanwhileIsUsable) {
    const ambrel::InputPause pause;
    QDialog dialog;
    dialog.setModal(true);
    ambrel::test::showActive(dialog);
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
}

TEST_F(InputPauseTest, ClosingAWindowIsLost) {
    {
        const ambrel::InputPause pause;
        button_.close();
    }
    EXPECT_TRUE(button_.isVisible());
    button_.close();
    EXPECT_FALSE(button_.isVisible());
}

// --- The dialog.

class ImportWaiting : public ImportForm {
protected:
    /// Runs an action of the dialog whose request is held until an impatient user has clicked Salir
    /// and pressed Escape.
    void runWithImpatientUser(Operation operation, const std::function<void()>& action) {
        service->setFault(operation, Fault::Stall);
        const std::size_t before = service->requests().size();
        QPushButton& exit = control<QPushButton>("BBCancelar");
        const QPoint place = exit.mapTo(dialog.get(), exit.rect().center());
        const QPointF global = exit.mapToGlobal(exit.rect().center());
        QWindow* const window = dialog->windowHandle();
        // Created at their first use, so that they belong to this thread.
        static_cast<void>(QInputDevice::primaryKeyboard());
        static_cast<void>(QPointingDevice::primaryPointingDevice());
        std::atomic<bool> wasAlive = false, isOver = false;
        QObject probe;
        QObject::connect(&probe, &QObject::objectNameChanged, &probe, [&] { wasAlive = true; });
        std::thread user([&] {
            const auto wait = [] { std::this_thread::sleep_for(std::chrono::milliseconds(1)); };
            while (service->requests().size() == before) {
                wait();
            }
            leaveInput(window, place, global);
            QMetaObject::invokeMethod(
                &probe, [&] { probe.setObjectName("alive"); }, Qt::QueuedConnection);
            while (!wasAlive) {
                wait();
            }
            while (!isOver) { // the answer may not be held yet
                service->release();
                wait();
            }
        });
        action();
        isOver = true;
        user.join();
        EXPECT_TRUE(wasAlive) << "the program looked hung";
        QCoreApplication::processEvents();
        EXPECT_TRUE(dialog->isVisible()) << "stray input was acted on";
    }
};

TEST_F(ImportWaiting, RequestForProvincesKeepsTheProgramAliveAndLosesInput) {
    show();
    runWithImpatientUser(Operation::Provinces, [this] { chooseMode("RBUno"); });
    EXPECT_EQ(items("CBProvincias").size(), 2U);
}

TEST_F(ImportWaiting, RequestForStreetsKeepsTheProgramAliveAndLosesInput) {
    show("RBUno");
    choose("CBProvincias", "MADRID");
    press(Qt::Key_Tab);
    choose("CBMunicipios", "ALPEDRETE");
    runWithImpatientUser(Operation::Streets, [this] { click("BBBuscarViasPorMunicipio"); });
    EXPECT_EQ(rows().size(), 3U);
}

TEST_F(ImportWaiting, ButtonWhosePressBeganTheRequestIsLetGo) {
    show("RBUno");
    choose("CBProvincias", "MADRID");
    QPushButton& exit = control<QPushButton>("BBCancelar");
    const QPoint place = exit.mapTo(dialog.get(), exit.rect().center());
    // The press takes the focus from the province, which requests its municipalities; the release comes
    // while the request is under way.
    QWindow* const window = dialog->windowHandle();
    const QPointF global = exit.mapToGlobal(exit.rect().center());
    QTest::mousePress(window, Qt::LeftButton, {}, place);
    QCoreApplication::postEvent(window, new QMouseEvent(QEvent::MouseButtonRelease, place, global,
                                                        Qt::LeftButton, Qt::NoButton, Qt::NoModifier));
    QCoreApplication::processEvents();
    EXPECT_FALSE(exit.isDown());
}

} // namespace
