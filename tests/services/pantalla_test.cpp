// The progress window.
#include "services/Pantalla.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>
#include <memory>
#include <vector>

#include "support/ShownWindow.h"

namespace {

using ambrel::ProgressWindow;

QString textOf(const ProgressWindow& window) {
    const auto* const label = window->findChild<QLabel*>("LMensaje");
    return label ? label->text() : QString();
}

/// Counts the paint events.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QObject* watched) { watched->installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == QEvent::Paint;
        return false;
    }
    int count = 0;
};

TEST(Pantalla, ShowsASmallNonModalWindowWithTheText) {
    const ProgressWindow window = MuestraMensaje("Importando el listado de provincias");
    ASSERT_TRUE(window);
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(window->isWindow());
    EXPECT_FALSE(window->isModal());
    EXPECT_EQ(window->objectName(), "Progreso");
    EXPECT_EQ(textOf(window), "Importando el listado de provincias");
    CierraMensaje(window);
}

TEST(Pantalla, CambiaMensajeRepaintsAtOnce) {
    const ProgressWindow window = MuestraMensaje("uno");
    const PaintCounter paints(window->findChild<QLabel*>("LMensaje"));
    CambiaMensaje("dos", window);
    EXPECT_EQ(textOf(window), "dos");
    EXPECT_GT(paints.count, 0);
    CierraMensaje(window);
}

TEST(Pantalla, AFewTextsInQuickSuccessionAreAllPainted) {
    const ProgressWindow window = MuestraMensaje("uno");
    const PaintCounter paints(window->findChild<QLabel*>("LMensaje"));
    for (const char* const text : {"dos", "tres", "cuatro"}) {
        const int before = paints.count;
        CambiaMensaje(text, window);
        EXPECT_GT(paints.count, before) << text;
    }
    CierraMensaje(window);
}

TEST(Pantalla, OfVeryManyTextsEachIsSetAndOnlySomeArePainted) {
    constexpr int texts = 2000;
    const ProgressWindow window = MuestraMensaje("0");
    const PaintCounter paints(window->findChild<QLabel*>("LMensaje"));
    for (int i = 1; i <= texts; ++i) {
        CambiaMensaje(QString::number(i), window);
        ASSERT_EQ(textOf(window), QString::number(i));
    }
    EXPECT_LT(paints.count, texts / 2);
    const int painted = paints.count;
    QCoreApplication::processEvents();
    EXPECT_GT(paints.count, painted) << "the last one is seen by then";
    CierraMensaje(window);
}

TEST(Pantalla, GrowsWithItsText) {
    const ProgressWindow window = MuestraMensaje("uno");
    const int width = window->width();
    CambiaMensaje(QString(200, 'm'), window);
    EXPECT_GT(window->width(), width);
    CierraMensaje(window);
}

TEST(Pantalla, CierraMensajeClosesAndFrees) {
    const ProgressWindow window = MuestraMensaje("uno");
    CierraMensaje(window);
    EXPECT_FALSE(window);
}

TEST(Pantalla, AWindowThatIsGoneIsLeftAlone) {
    auto owner = std::make_unique<QWidget>();
    const ProgressWindow window = MuestraMensaje("uno", owner.get());
    owner.reset();
    EXPECT_FALSE(window);
    CambiaMensaje("dos", window);
    CierraMensaje(window);
    CierraMensaje(nullptr);
}

TEST(Pantalla, LeavesTheFocusWhereItIs) {
    QWidget owner;
    auto* const layout = new QVBoxLayout(&owner);
    auto* const box = new QLineEdit;
    layout->addWidget(box);
    ambrel::test::showActive(owner);
    box->setFocus();
    const ProgressWindow window = MuestraMensaje("uno", &owner);
    EXPECT_TRUE(QTest::qWaitFor([box] { return box->hasFocus(); }));
    CierraMensaje(window);
}

TEST(Pantalla, RunsNoTimersWhileItDraws) {
    int fired = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] { ++fired; });
    timer.start(0);
    const ProgressWindow window = MuestraMensaje("uno");
    CambiaMensaje("dos", window);
    CierraMensaje(window);
    EXPECT_EQ(fired, 0);
}

TEST(Pantalla, AHostMayShowProgressInItsOwnWay) {
    QWidget own;
    std::vector<QString> log;
    const auto before = ambrel::setProgressDisplay({
        .show =
            [&](const QString& text, QWidget*) {
                log.push_back("show " + text);
                return ProgressWindow(&own);
            },
        .change = [&](const QString& text, QWidget&) { log.push_back("change " + text); },
        .close = [&](QWidget&) { log.push_back("close"); },
    });
    const ProgressWindow window = MuestraMensaje("uno");
    CambiaMensaje("dos", window);
    CierraMensaje(window);
    ambrel::setProgressDisplay(before);
    EXPECT_EQ(log, (std::vector<QString>{"show uno", "change dos", "close"}));
}

TEST(Pantalla, AHostMayShowAWindowOfItsOwnAndLeaveTheRest) {
    ambrel::ProgressDisplay display = ambrel::windowProgressDisplay();
    display.show = [](const QString&, QWidget*) {
        auto* const own = new QWidget; // as yet without a window of the desktop
        (new QLabel(own))->setObjectName("LMensaje");
        return ProgressWindow(own);
    };
    const auto before = ambrel::setProgressDisplay(display);
    const ProgressWindow window = MuestraMensaje("uno");
    CambiaMensaje("dos", window);
    EXPECT_EQ(window->findChild<QLabel*>()->text(), "dos");
    CierraMensaje(window);
    EXPECT_FALSE(window);
    ambrel::setProgressDisplay(before);
}

} // namespace
