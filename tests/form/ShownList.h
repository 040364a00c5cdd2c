// The list of suggestions that the user sees.
#pragma once

#include <QApplication>
#include <QListView>
#include <QStringList>

namespace postal_tests {

/// Null if there is none.
inline QListView* shownList() {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (auto* const list = qobject_cast<QListView*>(window); list && list->isVisible()) {
            return list;
        }
    }
    return nullptr;
}

/// Its rows as they are read out; none if it is closed.
inline QStringList shownRows() {
    QStringList rows;
    if (const QListView* const list = shownList()) {
        for (int row = 0; row < list->model()->rowCount(); ++row) {
            rows << list->model()->index(row, 0).data(Qt::AccessibleTextRole).toString();
        }
    }
    return rows;
}

} // namespace postal_tests
