// The progress window.
#include "services/Pantalla.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLabel>
#include <QThread>
#include <QVBoxLayout>
#include <QWindow>
#include <utility>

#include "dbase/lock/read_scope.h"

namespace ambrel {
namespace {

constexpr int minimumWidth = 312; // of the text
constexpr int margin = 24;
constexpr const char* labelName = "LMensaje";
constexpr int readingPause = 40; // milliseconds; nobody reads faster
constexpr int mostQuickTexts = 4;

/// The window. Each of a few texts is drawn; of thousands that come faster than anybody can read, only some,
/// or drawing would take longer than the work they report.
class ProgressBox : public QWidget {
public:
    using QWidget::QWidget;

    /// Whether the next text is drawn at once. If not, it appears with the next drawing.
    [[nodiscard]] bool drawsNext() {
        const bool isQuick = sinceDrawn_.isValid() && sinceDrawn_.elapsed() < readingPause;
        if (isQuick && quickTexts_ >= mostQuickTexts) {
            return false;
        }
        quickTexts_ = isQuick ? quickTexts_ + 1 : 0;
        sinceDrawn_.start();
        return true;
    }

private:
    QElapsedTimer sinceDrawn_;
    int quickTexts_ = 0;
};

/// How long a desktop may take to show or enlarge a window before the program goes on without waiting.
constexpr int patience = 500; // milliseconds

/// Processes drawing only: no keys, mouse, timers or network.
void processDrawing() {
    dbase::ReadScope::letGo();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers |
                                    QEventLoop::X11ExcludeTimers);
}

/// Observes whether a window has appeared on the screen at its current size.
class ExposeWatch : public QObject {
public:
    /// `window`: null for a host's own widget that has none; there is nothing to wait for then.
    explicit ExposeWatch(QWindow* window) : isExposed_(window == nullptr) {
        if (window) {
            window->installEventFilter(this);
        }
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        isExposed_ |= event->type() == QEvent::Expose && static_cast<QWindow*>(watched)->isExposed();
        return false;
    }

    /// Waits, because window managers take their time, and until then what is drawn is lost.
    void wait() const {
        for (const QDeadlineTimer deadline(patience); !isExposed_ && !deadline.hasExpired();) {
            processDrawing();
            QThread::msleep(1);
        }
    }

private:
    bool isExposed_;
};

void drawNow(QWidget& window) {
    window.repaint();
    processDrawing();
}

void setText(QWidget& window, const QString& text) {
    if (auto* const label = window.findChild<QLabel*>(QLatin1String(labelName))) {
        label->setText(text);
        // Wide enough for the whole text, which a window that adjusts itself to two thirds of a small screen
        // would cut; and never narrower again, so that it does not jump from name to name.
        label->setMinimumWidth(qMax(label->minimumWidth(), label->sizeHint().width()));
    }
    window.setAccessibleDescription(text);
    window.adjustSize();
}

ProgressWindow showWindow(const QString& text, QWidget* owner) {
    const QPointer<QWidget> active = QApplication::activeWindow();
    QWidget* const parent = owner ? owner->window() : active.data();
    auto* const window = new ProgressBox(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    window->setObjectName(QStringLiteral("Progreso"));
    window->setWindowTitle(QStringLiteral("Un momento, por favor"));
    window->setAccessibleName(window->windowTitle());
    window->setAttribute(Qt::WA_ShowWithoutActivating);

    auto* const label = new QLabel(window);
    label->setObjectName(QLatin1String(labelName));
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    label->setMinimumWidth(minimumWidth);
    auto* const layout = new QVBoxLayout(window);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->addWidget(label);

    setText(*window, text);
    const ProgressWindow shown = window;
    window->winId(); // creates the native window to watch
    const ExposeWatch watch(window->windowHandle());
    window->show();
    watch.wait();
    if (shown) {
        drawNow(*window);
    }
    if (active && shown && QApplication::activeWindow() == shown) {
        active->activateWindow(); // some platforms activate every window that is shown
    }
    return shown;
}

void changeText(const QString& text, QWidget& window) {
    const QPointer<QWidget> alive = &window;
    const QSize before = window.size();
    const ExposeWatch watch(window.windowHandle());
    setText(window, text);
    const bool hasGrown = before.expandedTo(window.size()) != before;
    auto* const box = dynamic_cast<ProgressBox*>(&window);
    if (box && !box->drawsNext() && !hasGrown) {
        return;
    }
    if (hasGrown && window.isVisible()) {
        watch.wait();
    }
    if (alive) {
        drawNow(window);
    }
}

void closeWindow(QWidget& window) {
    window.hide();
    delete &window;
}

ProgressDisplay& display() {
    static ProgressDisplay functions = windowProgressDisplay();
    return functions;
}

} // namespace

ProgressDisplay windowProgressDisplay() { return {showWindow, changeText, closeWindow}; }

ProgressDisplay setProgressDisplay(ProgressDisplay functions) {
    return std::exchange(display(), std::move(functions));
}

} // namespace ambrel

ambrel::ProgressWindow MuestraMensaje(const QString& text, QWidget* owner) {
    return ambrel::display().show(text, owner);
}

void CambiaMensaje(const QString& text, const ambrel::ProgressWindow& window) {
    if (window) {
        ambrel::display().change(text, *window);
    }
}

void CierraMensaje(const ambrel::ProgressWindow& window) {
    if (window) {
        ambrel::display().close(*window);
    }
}
