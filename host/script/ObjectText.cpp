// The text that an object shows.
#include "host/script/ObjectText.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAction>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QStringList>

#include "dialogs/common/DataGrid.h"
#include "services/TagProperty.h"

namespace host::script {
namespace {

QString csvCell(QString text) {
    const bool needsQuotes = text.contains(QLatin1Char(',')) || text.contains(QLatin1Char('"')) ||
                             text.contains(QLatin1Char('\n')) || text.contains(QLatin1Char('\r'));
    if (!needsQuotes) {
        return text;
    }
    return QLatin1Char('"') + text.replace(QLatin1Char('"'), QStringLiteral("\"\"")) + QLatin1Char('"');
}

QString currentRow(const QAbstractItemView& view) {
    const QModelIndex current = view.currentIndex();
    if (!current.isValid()) {
        return {};
    }
    QStringList cells;
    for (int column = 0; column < view.model()->columnCount(current.parent()); ++column) {
        cells.append(csvCell(current.siblingAtColumn(column).data().toString()));
    }
    return cells.join(QLatin1Char(','));
}

QString currentRow(const ambrel::DataGrid& grid) {
    if (grid.currentRow() < 0) {
        return {};
    }
    QStringList cells;
    for (int column = 0; column < grid.columnCount(); ++column) {
        cells.append(csvCell(grid.cellText(grid.currentRow(), column)));
    }
    return cells.join(QLatin1Char(','));
}

/// The text of an object by its class, tested in this order.
QString shownText(const QObject& object) {
    if (const auto* edit = qobject_cast<const QLineEdit*>(&object)) {
        return edit->text();
    }
    if (const auto* view = qobject_cast<const QAbstractItemView*>(&object)) {
        return currentRow(*view);
    }
    if (const auto* grid = qobject_cast<const ambrel::DataGrid*>(&object)) {
        return currentRow(*grid);
    }
    if (const auto* number = qobject_cast<const QAbstractSpinBox*>(&object)) {
        return number->text();
    }
    if (const auto* combo = qobject_cast<const QComboBox*>(&object)) {
        return combo->currentText();
    }
    if (const auto* label = qobject_cast<const QLabel*>(&object)) {
        return label->text();
    }
    if (const auto* button = qobject_cast<const QAbstractButton*>(&object)) {
        return button->text();
    }
    if (const auto* action = qobject_cast<const QAction*>(&object)) {
        return action->text();
    }
    if (const auto* group = qobject_cast<const QGroupBox*>(&object)) {
        return group->title();
    }
    if (const auto* text = qobject_cast<const QPlainTextEdit*>(&object)) {
        return text->toPlainText();
    }
    if (const auto* bar = qobject_cast<const QStatusBar*>(&object)) {
        return bar->currentMessage();
    }
    if (const auto* widget = qobject_cast<const QWidget*>(&object)) {
        return widget->windowTitle();
    }
    return {};
}

bool isEnabled(const QObject& object) {
    if (const auto* action = qobject_cast<const QAction*>(&object)) {
        return action->isEnabled();
    }
    const auto* widget = qobject_cast<const QWidget*>(&object);
    return widget && widget->isEnabled();
}

} // namespace

QString textOf(const QObject& object) {
    QString text = shownText(object);
    for (QChar& character : text) {
        if (character == QLatin1Char('\t') || character == QLatin1Char('\n') ||
            character == QLatin1Char('\r')) {
            character = QLatin1Char(' ');
        }
    }
    return text;
}

QString describe(const QObject& object) {
    const QString state = isEnabled(object) ? QStringLiteral("activo") : QStringLiteral("inactivo");
    const QStringList columns{object.objectName(), textOf(object), QString::number(ambrel::tagOf(object)),
                              state};
    return columns.join(QLatin1Char('\t'));
}

} // namespace host::script
