// Sends keyboard and mouse events as a user would cause them.
#include "host/script/Input.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>
#include <optional>

#include "dialogs/common/DataGrid.h"

namespace host::script {
namespace {

/// Calls act with the widget of that name, unless the user cannot reach it.
template<class Act>
Outcome onReachable(const ObjectLookup& lookup, const QString& name, Act act) {
    QObject* object = lookup.find(name);
    if (!object) {
        return Outcome::failed(reasonNotFound(name));
    }
    auto* widget = qobject_cast<QWidget*>(object);
    if (!widget) {
        return Outcome::failed(QStringLiteral("«%1» no es un control").arg(name));
    }
    if (const QString reason = reasonNotReachable(*widget); !reason.isEmpty()) {
        return Outcome::failed(reason);
    }
    return act(widget);
}

/// The widget that receives a key sent to another one: a window passes it to its focused control.
QWidget* keyReceiver(QWidget* widget) {
    QWidget* focused = widget->window()->focusWidget();
    if (focused && focused != widget && widget->isAncestorOf(focused)) {
        return focused;
    }
    return widget;
}

/// The open list or menu, which takes the keyboard from all other widgets.
QWidget* popupReceiver() {
    QWidget* popup = QApplication::activePopupWidget();
    if (!popup) {
        return nullptr;
    }
    return popup->focusWidget() ? popup->focusWidget() : popup;
}

bool isReadOnly(const QWidget& widget) {
    const auto* edit = qobject_cast<const QLineEdit*>(&widget);
    return edit && edit->isReadOnly();
}

/// Sends a release to the widget that has the focus by then, as a keyboard does.
Outcome release(const KeyStroke& key, const QPointer<QWidget>& pressed) {
    QWidget* receiver = popupReceiver();
    if (!receiver) {
        receiver = QApplication::focusWidget();
    }
    if (!receiver) {
        receiver = pressed;
    }
    if (receiver) {
        QTest::sendKeyEvent(QTest::Release, receiver, key.key, key.text, key.modifiers);
    }
    return Outcome::done();
}

/// The place in a grid that the user would point at; null when no row is current.
std::optional<QPoint> currentRowPoint(const ambrel::DataGrid& grid) {
    if (grid.currentRow() < 0) {
        return std::nullopt;
    }
    return grid.cellRect(grid.currentRow(), 0).intersected(grid.rect()).center();
}

std::optional<QPoint> currentRowPoint(const QAbstractItemView& view) {
    const QModelIndex current = view.currentIndex();
    if (!current.isValid()) {
        return std::nullopt;
    }
    return view.visualRect(current).intersected(view.viewport()->rect()).center();
}

Outcome clickAt(QWidget* widget, QPoint point, bool twice) {
    if (twice) {
        QTest::mouseDClick(widget, Qt::LeftButton, {}, point);
    } else {
        QTest::mouseClick(widget, Qt::LeftButton, {}, point);
    }
    return Outcome::done();
}

/// A grid is made of inner widgets: the one at the place gets the click.
Outcome clickInside(ambrel::DataGrid& grid, QPoint place, bool twice) {
    QWidget* part = grid.childAt(place);
    return part ? clickAt(part, part->mapFrom(&grid, place), twice) : clickAt(&grid, place, twice);
}

/// Clicks in the middle of a widget; in a grid or list, on its current row.
Outcome clickOn(QWidget* widget, bool twice) {
    const QString noRow = QStringLiteral("«%1» no tiene fila actual").arg(widget->objectName());
    if (const auto* view = qobject_cast<QAbstractItemView*>(widget)) {
        const auto point = currentRowPoint(*view);
        return point ? clickAt(view->viewport(), *point, twice) : Outcome::failed(noRow);
    }
    if (auto* grid = qobject_cast<ambrel::DataGrid*>(widget)) {
        const auto point = currentRowPoint(*grid);
        return point ? clickInside(*grid, *point, twice) : Outcome::failed(noRow);
    }
    return clickAt(widget, widget->rect().center(), twice);
}

Outcome takeItem(QComboBox& combo, const QString& item) {
    const int index = combo.findText(item);
    if (index < 0) {
        return Outcome::failed(QStringLiteral("«%1» no tiene «%2»").arg(combo.objectName(), item));
    }
    combo.showPopup();
    QAbstractItemView* list = combo.view();
    list->setCurrentIndex(combo.model()->index(index, combo.modelColumn(), combo.rootModelIndex()));
    QTest::keyClick(list, Qt::Key_Return);
    return Outcome::done();
}

} // namespace

Action Input::focus(const QString& name) const {
    return [this, name] {
        return onReachable(lookup_, name, [&](QWidget* widget) {
            if (popupReceiver()) {
                return Outcome::done();
            }
            if (!widget->isActiveWindow()) {
                widget->activateWindow();
                if (!widget->isActiveWindow()) {
                    return Outcome::notYet(QStringLiteral("la ventana de «%1» no se activa").arg(name));
                }
            }
            QWidget* receiver = keyReceiver(widget);
            if (!receiver->hasFocus() && receiver->focusPolicy() != Qt::NoFocus) {
                receiver->setFocus(Qt::OtherFocusReason);
            }
            return Outcome::done();
        });
    };
}

Action Input::press(const QString& name, const KeyStroke& key) const {
    return [this, name, key] {
        const auto pressIn = [&key](QWidget* receiver) {
            QTest::sendKeyEvent(QTest::Press, receiver, key.key, key.text, key.modifiers);
            return Outcome::done();
        };
        if (QWidget* popup = popupReceiver()) {
            return pressIn(popup);
        }
        return onReachable(lookup_, name, [&](QWidget* widget) { return pressIn(keyReceiver(widget)); });
    };
}

Actions Input::strokes(const QString& name, const std::vector<KeyStroke>& keys) const {
    Actions actions{focus(name)};
    for (const KeyStroke& key : keys) {
        actions.push_back(press(name, key));
        actions.push_back(
            [this, name, key] { return release(key, qobject_cast<QWidget*>(lookup_.find(name))); });
    }
    return actions;
}

Action Input::mustTakeText(const QString& name) const {
    return [this, name] {
        const auto* widget = qobject_cast<QWidget*>(lookup_.find(name));
        return widget && isReadOnly(*widget)
                   ? Outcome::failed(QStringLiteral("en «%1» no se puede escribir").arg(name))
                   : Outcome::done();
    };
}

Actions Input::type(const QString& name, const QString& text) const {
    std::vector<KeyStroke> keys;
    for (const QChar character : text) {
        keys.push_back(strokeOf(character));
    }
    Actions actions = strokes(name, keys);
    actions.insert(actions.begin(), mustTakeText(name));
    return actions;
}

Actions Input::paste(const QString& name, const QString& text) const {
    Actions actions = strokes(name, {keyStroke(QStringLiteral("Ctrl+V")).value_or(KeyStroke{})});
    actions.insert(actions.begin(), [text] {
        QGuiApplication::clipboard()->setText(text);
        return Outcome::done();
    });
    actions.insert(actions.begin(), mustTakeText(name));
    return actions;
}

Actions Input::clear(const QString& name) const {
    // These keys have no meaning for completion, unlike Ctrl+A, which is a letter.
    Actions actions =
        strokes(name, {*keyStroke(QStringLiteral("Home")), *keyStroke(QStringLiteral("Shift+End")),
                       *keyStroke(QStringLiteral("Delete"))});
    actions.insert(actions.begin(), mustTakeText(name));
    return actions;
}

Actions Input::key(const QString& name, const KeyStroke& key) const { return strokes(name, {key}); }

Action Input::clickAction(const QString& name, bool twice) const {
    return [this, name, twice] {
        if (auto* action = qobject_cast<QAction*>(lookup_.find(name))) {
            if (!action->isEnabled()) {
                return Outcome::failed(QStringLiteral("«%1» está inactivo").arg(name));
            }
            action->trigger();
            return Outcome::done();
        }
        return onReachable(lookup_, name, [twice](QWidget* widget) { return clickOn(widget, twice); });
    };
}

Actions Input::clickTitle(const QString& name, int column) const {
    return {[this, name, column] {
        return onReachable(lookup_, name, [&](QWidget* widget) {
            auto* grid = qobject_cast<ambrel::DataGrid*>(widget);
            if (!grid) {
                return Outcome::failed(QStringLiteral("«%1» no es una rejilla").arg(name));
            }
            if (column >= grid->columnCount()) {
                return Outcome::failed(QStringLiteral("«%1» no tiene columna %2").arg(name).arg(column));
            }
            return clickInside(*grid, grid->titleRect(column).center(), false);
        });
    }};
}

Actions Input::click(const QString& name) const { return {clickAction(name, false)}; }

Actions Input::doubleClick(const QString& name) const { return {clickAction(name, true)}; }

Actions Input::choose(const QString& name, const QString& item) const {
    return {focus(name), [this, name, item] {
                return onReachable(lookup_, name, [&](QWidget* widget) {
                    auto* combo = qobject_cast<QComboBox*>(widget);
                    if (!combo) {
                        return Outcome::failed(QStringLiteral("«%1» no es una lista desplegable").arg(name));
                    }
                    return takeItem(*combo, item);
                });
            }};
}

} // namespace host::script
