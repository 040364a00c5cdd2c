// The monkey's turns.
#include "monkey/Monkey.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "monkey/Screen.h"
#include "monkey/Texts.h"

namespace monkey {
namespace {

constexpr std::chrono::seconds patience{60}; // with a table or the core held by others
constexpr qint64 mostMillisecondsHome = 60'000;
constexpr int exitFound = 1;

} // namespace

/// Something that it does, and how often.
struct Monkey::Habit {
    void (Monkey::*act)();
    int weight;
};

Monkey::Monkey(const Plan& plan) : plan_(plan), random_(plan.seed), watchdog_(patience), judge_(plan.folder) {
    clock_.start();
}

Monkey::~Monkey() = default;

void Monkey::use(QMainWindow& window) {
    window_ = &window;
    ++starts_;
    did(QStringLiteral("start"));
    schedule();
}

bool Monkey::isOver() const { return clock_.hasExpired(std::chrono::milliseconds(plan_.time).count()); }

/// Modal windows run loops of their own inside a turn: the next one is always scheduled before. Not at once,
/// which would be no timer but a call that waiting code lets through, as it never does a user's input.
void Monkey::schedule() {
    const int pause = std::exchange(rest_, roll(8) == 0 ? 5 : 0);
    QTimer::singleShot(std::max(pause, 1), this, [this] { turn(); });
}

void Monkey::turn() {
    if (!window_ || !window_->isVisible()) {
        return; // closed; a new one schedules again
    }
    schedule();
    watchdog_.alive(screenText().toStdString());
    noteMessage();
    if (hand_.isBusy()) {
        return hand_.move();
    }
    judge();
    if (isOver() && !goingHome_.isValid()) {
        goingHome_.start();
    }
    if (goingHome_.isValid()) {
        return goHome();
    }
    if (auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget())) {
        return inFileDialog(*dialog);
    }
    if (QWidget* const popup = QApplication::activePopupWidget()) {
        return inPopup(*popup);
    }
    if (foremost() == nullptr && !window_->isActiveWindow() && roll(4) == 0) {
        return window_->activateWindow(); // else one of the other windows may stay in front for long
    }
    choose();
}

void Monkey::choose() {
    static const std::vector<Habit> habits{
        {&Monkey::typeText, 10},      {&Monkey::pasteText, 6},     {&Monkey::strikeAnyKey, 24},
        {&Monkey::strikeShortcut, 6}, {&Monkey::clickControl, 24}, {&Monkey::clickAnywhere, 5},
        {&Monkey::openMenuEntry, 4},  {&Monkey::enterAddress, 8},  {&Monkey::trySuggestions, 4},
        {&Monkey::validateFile, 1},   {&Monkey::changeWindow, 2},  {&Monkey::resizeWindow, 2},
        {&Monkey::rest, 2},           {&Monkey::closeWindow, 1}};
    int sum = 0;
    for (const Habit& habit : habits) {
        sum += habit.weight;
    }
    ++actions_;
    if (roll(400) == 0) {
        did(QStringLiteral("goes home"));
        goingHome_.start();
        return;
    }
    int place = roll(sum);
    for (const Habit& habit : habits) {
        if ((place -= habit.weight) < 0) {
            return (this->*habit.act)();
        }
    }
}

/// Closes whatever is in front; at the end of the time all windows.
void Monkey::goHome() {
    if (goingHome_.hasExpired(mostMillisecondsHome)) {
        fail("A window in front does not close.");
    }
    if (QWidget* const front = foremost()) {
        rest_ = 5;
        return leave(*front);
    }
    if (!isOver()) {
        return goingHome_.invalidate();
    }
    rest_ = 5;
    did(QStringLiteral("closes the host"));
    window_->close();
}

/// Escape, the window's buttons, or its frame.
void Monkey::leave(QWidget& window) {
    switch (window.windowType() == Qt::Popup ? 0 : roll(4)) {
    case 0:
        did(QStringLiteral("Escape in %1").arg(window.objectName()));
        return hand_.strike(Qt::Key_Escape);
    case 1:
        did(QStringLiteral("closes %1").arg(window.objectName()));
        window.close();
        return;
    default:
        break;
    }
    static const QStringList leaving{QStringLiteral("BBCancelar"), QStringLiteral("BBCerrar"),
                                     QStringLiteral("BBSalir"),    QStringLiteral("BBSi"),
                                     QStringLiteral("BBNo"),       QStringLiteral("BBAceptar")};
    auto* const button = window.findChild<QAbstractButton*>(pick(leaving));
    if (button != nullptr && button->isVisible() && button->isEnabled()) {
        did(QStringLiteral("%1 in %2").arg(button->objectName(), window.objectName()));
        hand_.click(*button, button->rect().center());
    }
}

void Monkey::inPopup(QWidget& popup) {
    did(QStringLiteral("in the open %1").arg(QLatin1String(popup.metaObject()->className())));
    ++actions_;
    auto* const menu = qobject_cast<QMenu*>(&popup);
    if (menu != nullptr && !menu->actions().isEmpty() && roll(2) == 0) {
        return hand_.click(*menu, menu->actionGeometry(pick(menu->actions())).center());
    }
    if (menu == nullptr && roll(3) == 0) {
        return hand_.click(popup, QPoint(roll(popup.width() + 1), roll(popup.height() + 1)));
    }
    hand_.strike(pick(std::vector<int>{Qt::Key_Down, Qt::Key_Up, Qt::Key_PageDown, Qt::Key_End,
                                       Qt::Key_Return, Qt::Key_Escape, Qt::Key_A, Qt::Key_M}));
}

/// Only a file of its own or none: the dialog could rename and delete any file of the machine.
void Monkey::inFileDialog(QFileDialog& dialog) {
    auto* const name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    if (name == nullptr || roll(2) == 0) {
        did(QStringLiteral("cancels the file dialog"));
        return dialog.reject();
    }
    const QString file = pick(QStringList{QStringLiteral("clientes.csv"), QStringLiteral("resultado.csv"),
                                          QStringLiteral("informe.html"), QStringLiteral("no-hay.csv")});
    did(QStringLiteral("takes %1 in the file dialog").arg(file));
    name->setText(QDir::current().filePath(file));
    hand_.strike(Qt::Key_Return);
    if (roll(2) == 0) {
        hand_.strike(Qt::Key_Escape); // of a question, or of the dialog that refused the name
    }
}

void Monkey::judge() {
    if (foremost() != nullptr) {
        return;
    }
    judge_.see(*window_);
    if (roll(6) == 0) {
        if (const std::string fault = judge_.verdict(*window_); !fault.empty()) {
            fail("A wrong address: " + fault);
        }
    }
}

/// Counts each message box once.
void Monkey::noteMessage() {
    QWidget* const modal = QApplication::activeModalWidget();
    if (modal == noted_) {
        return;
    }
    noted_ = modal;
    windowsInFront_ += modal != nullptr ? 1 : 0;
    if (modal != nullptr && modal->objectName() == QLatin1String("Mensaje")) {
        QStringList lines;
        for (const QLabel* const label : modal->findChildren<QLabel*>()) {
            lines << label->text().left(100).simplified();
        }
        const QString text = lines.join(QStringLiteral(" / "));
        ++messages_[text];
        did(QStringLiteral("sees: %1").arg(text));
        if (text.contains(QLatin1String("inesperado"))) {
            fail("An unexpected error was shown.");
        }
    }
}

QString Monkey::report() const {
    QString text =
        QStringLiteral("resistance: monkey seed=%1 seconds=%2 actions=%3 windows=%4 codes=%5 starts=%6\n")
            .arg(plan_.seed)
            .arg(clock_.elapsed() / 1000)
            .arg(actions_)
            .arg(windowsInFront_)
            .arg(judge_.rightCodes())
            .arg(starts_);
    for (auto message = messages_.begin(); message != messages_.end(); ++message) {
        text += QStringLiteral("  %1 x %2\n").arg(message.value()).arg(message.key());
    }
    return text;
}

/// Ends at once: what is open cannot be trusted to close.
void Monkey::fail(const std::string& reason) {
    std::fprintf(stderr, "%s\nseed %u, action %d, %s", reason.c_str(), plan_.seed, actions_,
                 watchdog_.story().c_str());
    std::fflush(stderr);
    std::_Exit(exitFound);
}

void Monkey::did(const QString& action) { watchdog_.did(action.toStdString()); }

} // namespace monkey
