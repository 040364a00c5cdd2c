// Lists the controls and mnemonics of a form.
#include "accessibility/FormControls.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAction>
#include <QComboBox>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QMenuBar>
#include <QRadioButton>
#include <QScrollArea>
#include <QSpinBox>

#include "dialogs/common/DataGrid.h"

namespace accessibility_tests {
namespace {

/// These contain only parts of their own.
bool isWhole(const QWidget& widget) {
    return qobject_cast<const QComboBox*>(&widget) || qobject_cast<const QAbstractSpinBox*>(&widget) ||
           (qobject_cast<const QAbstractScrollArea*>(&widget) &&
            !qobject_cast<const QScrollArea*>(&widget)) ||
           qobject_cast<const ambrel::DataGrid*>(&widget);
}

bool isPart(const QWidget& widget, const QWidget& window) {
    for (const QWidget* parent = widget.parentWidget(); parent && parent != &window;
         parent = parent->parentWidget()) {
        if (isWhole(*parent) || parent->isWindow()) {
            return true;
        }
    }
    return false;
}

QChar letterOf(const QString& text) {
    const QString keys = QKeySequence::mnemonic(text).toString(QKeySequence::PortableText);
    return keys.isEmpty() ? QChar() : keys.back().toLower();
}

} // namespace

std::vector<QWidget*> controlsOf(const QWidget& window) {
    std::vector<QWidget*> controls;
    for (QWidget* const widget : window.findChildren<QWidget*>()) {
        const bool isButton = qobject_cast<QAbstractButton*>(widget);
        if (!widget->isVisibleTo(&window) || isPart(*widget, window) ||
            widget->objectName().startsWith(QStringLiteral("qt_")) ||
            (widget->focusPolicy() == Qt::NoFocus && !isButton)) {
            continue;
        }
        controls.push_back(widget);
    }
    return controls;
}

bool isTabStop(const QWidget& control) {
    if (const auto* choice = qobject_cast<const QRadioButton*>(&control); choice && !choice->isChecked()) {
        return false;
    }
    return control.isEnabled() && (control.focusPolicy() & Qt::TabFocus);
}

std::string spoken(QWidget& control, QAccessible::Text what) {
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(&control);
    return interface ? interface->text(what).toStdString() : std::string();
}

std::vector<Mnemonic> mnemonicsOf(const QWidget& window) {
    std::vector<Mnemonic> mnemonics;
    const auto add = [&](const QString& text, QWidget* bearer, QWidget* target) {
        if (const QChar letter = letterOf(text); !letter.isNull()) {
            mnemonics.push_back({letter, bearer, target});
        }
    };
    for (QWidget* const widget : window.findChildren<QWidget*>()) {
        if (!widget->isVisibleTo(&window)) {
            continue;
        }
        if (auto* const label = qobject_cast<QLabel*>(widget)) {
            add(label->text(), label, label->buddy());
        } else if (auto* const button = qobject_cast<QAbstractButton*>(widget)) {
            add(button->shortcut().isEmpty() ? QString() : u'&' + button->shortcut().toString().right(1),
                button, button);
        } else if (auto* const frame = qobject_cast<QGroupBox*>(widget)) {
            add(frame->title(), frame, frame);
        } else if (auto* const bar = qobject_cast<QMenuBar*>(widget)) {
            for (const QAction* const menu : bar->actions()) {
                add(menu->text(), bar, bar);
            }
        }
    }
    return mnemonics;
}

} // namespace accessibility_tests
