// Capitals and maximum lengths of typed text.
#include "dialogs/common/TypingRules.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <algorithm>

#include "services/Text.h"

namespace ambrel {
namespace {

bool isPrintable(const QKeyEvent& event) { return !event.text().isEmpty() && event.text().front().isPrint(); }

/// Whether a key press enters text into a box, rather than being a command.
bool typesText(const QKeyEvent& event) {
    return !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) &&
           isPrintable(event);
}

/// The tables store Windows-1252. A letter that it lacks is stored as the nearest one; one that has none is
/// refused with a beep, when typed rather than when saved.
bool canBeKept(const QString& typed) {
    if (!losesCharacters(typed)) {
        return true;
    }
    QApplication::beep();
    return false;
}

} // namespace

TypingRules::TypingRules(QLineEdit* box, int maximalLength, Capitals capitals)
    : QObject(box), box_(box), typedInto_(box->focusProxy() ? box->focusProxy() : box),
      maximalLength_(maximalLength), capitals_(capitals) {
    typedInto_->installEventFilter(this);
}

bool TypingRules::eventFilter(QObject* watched, QEvent* event) {
    if (watched == typedInto_ && !passing_) {
        if (event->type() == QEvent::KeyPress) {
            return filterKey(*static_cast<QKeyEvent*>(event));
        }
        if (event->type() == QEvent::InputMethod) {
            return filterInput(*static_cast<QInputMethodEvent*>(event));
        }
    }
    return QObject::eventFilter(watched, event);
}

bool TypingRules::hasRoomFor(const QString& typed) const {
    const auto kept = box_->text().size() - box_->selectedText().size();
    return maximalLength_ == anyLength || kept + typed.size() <= maximalLength_;
}

QString TypingRules::withCapitals(const QString& typed) const {
    QString text = typed;
    // Letter by letter: a capital that needs two letters (ß) would shift the rest. A capital that the tables
    // lack (that of µ) would be lost.
    if (capitals_ == Capitals::Yes) {
        std::ranges::transform(text, text.begin(), [](QChar letter) {
            const QChar capital = letter.toUpper();
            return toWindows1252(capital) ? capital : letter;
        });
    }
    return text;
}

bool TypingRules::filterKey(const QKeyEvent& event) {
    if ((event.modifiers() == Qt::AltModifier || event.modifiers() == Qt::MetaModifier) &&
        isPrintable(event)) {
        return true; // an unused mnemonic or shortcut, which an edit box would take for a letter
    }
    if (!typesText(event)) {
        return false;
    }
    if (!hasRoomFor(event.text()) || !canBeKept(event.text())) {
        return true;
    }
    const QString text = withCapitals(event.text());
    if (text == event.text()) {
        return false;
    }
    QKeyEvent capital(event.type(), event.key(), event.modifiers(), event.nativeScanCode(),
                      event.nativeVirtualKey(), event.nativeModifiers(), text, event.isAutoRepeat(),
                      static_cast<quint16>(event.count()));
    const QScopedValueRollback passing(passing_, true);
    QCoreApplication::sendEvent(typedInto_, &capital);
    return true;
}

bool TypingRules::filterInput(const QInputMethodEvent& event) {
    if (event.commitString().isEmpty()) {
        return false;
    }
    const QString text = withCapitals(event.commitString());
    const bool fits = hasRoomFor(text) && canBeKept(text);
    if (fits && text == event.commitString()) {
        return false;
    }
    QInputMethodEvent changed(event.preeditString(), event.attributes());
    if (fits) {
        changed.setCommitString(text, event.replacementStart(), event.replacementLength());
    }
    const QScopedValueRollback passing(passing_, true);
    QCoreApplication::sendEvent(typedInto_, &changed);
    return true;
}

} // namespace ambrel
