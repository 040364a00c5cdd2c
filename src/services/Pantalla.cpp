// The progress window.
#include "services/Pantalla.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLabel>
#include <QVBoxLayout>
#include <utility>

namespace ambrel {
namespace {

constexpr int minimumWidth = 312; // of the text
constexpr int margin = 24;
constexpr const char* labelName = "LMensaje";
constexpr int readingPause = 40; // milliseconds; nobody reads faster
constexpr int mostQuickTexts = 4;

/// The window. It is drawn with each of a few texts; of thousands that come faster than anybody reads only
/// with some, or drawing would take longer than the work that they tell of.
class ProgressBox : public QWidget {
public:
    using QWidget::QWidget;

    /// Whether the next text is drawn at once. Otherwise it is seen with the next drawing.
    [[nodiscard]] bool drawsNext() {
        const bool isQuick = sinceDrawn_.isValid() && sinceDrawn_.elapsed() < readingPause;
        if (isQuick && quickTexts_ >= mostQuickTexts)
            return false;
        quickTexts_ = isQuick ? quickTexts_ + 1 : 0;
        sinceDrawn_.start();
        return true;
    }

private:
    QElapsedTimer sinceDrawn_;
    int quickTexts_ = 0;
};

/// Lets the window appear and be drawn, and nothing else happen: no keys, no mouse, no timers, no network.
void drawNow(QWidget& window) {
    window.repaint();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers |
                                    QEventLoop::X11ExcludeTimers);
}

void setText(QWidget& window, const QString& text) {
    if (auto* const label = window.findChild<QLabel*>(QLatin1String(labelName))) {
        label->setText(text);
        // Whole, also where a window that adjusts itself would stay within two thirds of a small screen.
        label->setMinimumWidth(qMax(minimumWidth, label->sizeHint().width()));
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
    auto* const layout = new QVBoxLayout(window);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->addWidget(label);

    setText(*window, text);
    const ProgressWindow shown = window;
    window->show();
    drawNow(*window);
    if (active && shown && QApplication::activeWindow() == shown)
        active->activateWindow(); // some platforms make everything active that is shown
    return shown;
}

void changeText(const QString& text, QWidget& window) {
    setText(window, text);
    auto* const box = dynamic_cast<ProgressBox*>(&window);
    if (!box || box->drawsNext())
        drawNow(window);
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
    if (window)
        ambrel::display().change(text, *window);
}

void CierraMensaje(const ambrel::ProgressWindow& window) {
    if (window)
        ambrel::display().close(*window);
}
