// What the monkey does.
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

#include "monkey/Monkey.h"
#include "monkey/Screen.h"
#include "monkey/Texts.h"

namespace monkey {
namespace {

QString nameOf(const QWidget& widget) {
    return widget.objectName().isEmpty() ? QLatin1String(widget.metaObject()->className())
                                         : widget.objectName();
}

} // namespace

QWidget& Monkey::windowInFront() {
    if (QWidget* const front = foremost()) {
        return *front;
    }
    QWidget* const active = QApplication::activeWindow();
    return active != nullptr ? *active : *window_;
}

/// Mostly short ones: the long ones take many keys.
QString Monkey::anyText() {
    const QString text = pick(texts());
    return text.size() < 100 || roll(10) == 0 ? text : text.left(40);
}

void Monkey::typeText() {
    const QString text = anyText().left(120);
    did(QStringLiteral("types «%1»").arg(text));
    if (roll(2) == 0) {
        hand_.selectAll();
    }
    hand_.type(text);
}

void Monkey::pasteText() {
    const QString text = pick(texts());
    did(QStringLiteral("pastes «%1»").arg(text.left(60)));
    QGuiApplication::clipboard()->setText(text);
    if (roll(2) == 0) {
        hand_.selectAll();
    }
    hand_.strike(Qt::Key_V, Qt::ControlModifier);
}

void Monkey::strikeAnyKey() {
    static const std::vector<int> keys{
        Qt::Key_Tab,    Qt::Key_Tab,      Qt::Key_Tab,  Qt::Key_Backtab, Qt::Key_Return,    Qt::Key_Return,
        Qt::Key_Escape, Qt::Key_Escape,   Qt::Key_F4,   Qt::Key_F4,      Qt::Key_Down,      Qt::Key_Up,
        Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End,     Qt::Key_Backspace, Qt::Key_Delete,
        Qt::Key_Space,  Qt::Key_Left,     Qt::Key_F2,   Qt::Key_F1,      Qt::Key_Insert,    Qt::Key_Menu};
    const int key = pick(keys);
    const Qt::KeyboardModifiers modifiers =
        roll(10) == 0 ? pick(std::vector<Qt::KeyboardModifier>{Qt::ShiftModifier, Qt::ControlModifier})
                      : Qt::NoModifier;
    did(QStringLiteral("strikes %1").arg(QKeySequence(key | static_cast<int>(modifiers)).toString()));
    const QString text = key == Qt::Key_Return  ? QStringLiteral("\r")
                         : key == Qt::Key_Space ? QStringLiteral(" ")
                                                : QString();
    hand_.strike(key, modifiers, text);
}

void Monkey::strikeShortcut() {
    static const std::vector<int> letters{Qt::Key_A, Qt::Key_C, Qt::Key_D, Qt::Key_E, Qt::Key_F,
                                          Qt::Key_G, Qt::Key_I, Qt::Key_L, Qt::Key_M, Qt::Key_N,
                                          Qt::Key_O, Qt::Key_P, Qt::Key_R, Qt::Key_S, Qt::Key_T,
                                          Qt::Key_U, Qt::Key_V, Qt::Key_X, Qt::Key_Y, Qt::Key_Z};
    const int key = pick(letters);
    const auto modifier = roll(2) == 0 ? Qt::ControlModifier : Qt::AltModifier;
    did(QStringLiteral("strikes %1").arg(QKeySequence(key | static_cast<int>(modifier)).toString()));
    hand_.strike(key, modifier);
}

void Monkey::clickControl() {
    QWidget& window = windowInFront();
    const QList<QWidget*> controls = controlsOf(window);
    if (controls.isEmpty()) {
        return clickAnywhere();
    }
    QWidget& control = *pick(controls);
    const QPoint place(roll(qMax(1, control.width())), roll(qMax(1, control.height())));
    const int kind = roll(10);
    did(QStringLiteral("clicks %1 in %2, kind %3").arg(nameOf(control), nameOf(window)).arg(kind));
    if (kind < 2) {
        return hand_.doubleClick(control, place);
    }
    hand_.click(control, place, kind == 2 ? Qt::RightButton : Qt::LeftButton);
}

void Monkey::clickAnywhere() {
    QList<QWidget*> windows;
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (window->isVisible()) {
            windows << window; // also one that a modal window blocks
        }
    }
    QWidget& window = *pick(windows);
    const QPoint place(roll(qMax(1, window.width())), roll(qMax(1, window.height())));
    QWidget* const part = window.childAt(place);
    did(QStringLiteral("clicks into %1").arg(nameOf(window)));
    hand_.click(part != nullptr ? *part : window, part != nullptr ? part->mapFrom(&window, place) : place);
}

void Monkey::openMenuEntry() {
    if (foremost() != nullptr) {
        return strikeAnyKey();
    }
    QList<QAction*> entries;
    for (QAction* const entry : window_->findChildren<QAction*>()) {
        if (entry->objectName().startsWith(QLatin1String("MI")) && entry->isEnabled()) {
            entries << entry;
        }
    }
    QAction* const entry = pick(entries);
    did(QStringLiteral("opens %1").arg(entry->objectName()));
    entry->trigger();
}

void Monkey::fill(const char* box, const QString& text) {
    auto* const edit = window_->findChild<QLineEdit*>(QLatin1String(box));
    hand_.click(*edit, edit->rect().center());
    hand_.selectAll();
    hand_.type(text);
}

/// Box by box, as it is printed on a letter.
void Monkey::enterAddress() {
    if (foremost() != nullptr) {
        return strikeAnyKey();
    }
    const SampleAddress& address = addressAt(roll(addressCount()));
    did(QStringLiteral("enters %1, %2")
            .arg(QString::fromUtf8(address.town), QString::fromUtf8(address.street)));
    fill("EMunicipio", QString::fromUtf8(address.town));
    fill("ETipoVia", QString::fromUtf8(address.streetType));
    fill("EVia", QString::fromUtf8(address.street));
    fill("ENumero", roll(3) == 0 ? QString::number(roll(300)) : QString::fromUtf8(address.number));
    hand_.strike(Qt::Key_Tab);
}

/// Types what is not quite in the tables and takes one of the rows under the box, or none.
void Monkey::trySuggestions() {
    if (foremost() != nullptr) {
        return strikeAnyKey();
    }
    const bool isTown = roll(2) == 0;
    const QString text = isTown
                             ? pick(QStringList{QStringLiteral("meires"), QStringLiteral("vitorai"),
                                                QStringLiteral("28014"), QStringLiteral("alcala henares")})
                             : pick(QStringList{QStringLiteral("alcaal"), QStringLiteral("c/ goia 88"),
                                                QStringLiteral("avda diagnal 442"), QStringLiteral("mayor")});
    did(QStringLiteral("tries «%1»").arg(text));
    fill(isTown ? "EMunicipio" : "EVia", text);
    for (int count = roll(4); count > 0; --count) {
        hand_.strike(pick(std::vector<int>{Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_PageDown}));
    }
    hand_.strike(pick(std::vector<int>{Qt::Key_Return, Qt::Key_Tab, Qt::Key_Escape}));
}

void Monkey::validateFile() {
    if (foremost() != nullptr) {
        return strikeAnyKey();
    }
    did(QStringLiteral("validates a file"));
    window_->findChild<QAction*>(QStringLiteral("MIValidarFichero"))->trigger();
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        auto* const file = window->findChild<QLineEdit*>(QStringLiteral("EFichero"));
        auto* const start = window->findChild<QWidget*>(QStringLiteral("BBEmpezar"));
        if (window->isVisible() && file != nullptr && start != nullptr) {
            hand_.click(*file, file->rect().center());
            hand_.selectAll();
            hand_.type(QStringLiteral("clientes.csv"));
            hand_.click(*start, start->rect().center());
        }
    }
}

void Monkey::changeWindow() {
    QList<QWidget*> windows;
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->windowType() == Qt::Window) {
            windows << window;
        }
    }
    if (!windows.isEmpty()) {
        QWidget* const window = pick(windows);
        did(QStringLiteral("activates %1").arg(nameOf(*window)));
        window->activateWindow();
    }
}

void Monkey::resizeWindow() {
    QWidget& window = windowInFront();
    const QSize size(roll(1400), roll(900));
    did(QStringLiteral("resizes %1 to %2 x %3").arg(nameOf(window)).arg(size.width()).arg(size.height()));
    window.resize(size);
}

void Monkey::rest() { rest_ = 20 + roll(200); }

void Monkey::closeWindow() {
    QWidget& window = windowInFront();
    if (&window != window_ || roll(5) == 0) {
        did(QStringLiteral("closes %1").arg(nameOf(window)));
        window.close();
    }
}

} // namespace monkey
