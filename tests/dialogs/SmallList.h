// A small list, with its search edit and its grid under their own names, and what users do with it.
#pragma once

#include <QLineEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QTest>

#include "dialogs/common/DataGrid.h"
#include "support/ModalScript.h"
#include "support/Typing.h"

namespace dialog_tests {

/// Part of a fixture.
template<class List>
class SmallList {
protected:
    SmallList(const char* searchName, const char* gridName)
        : search(ambrel::test::child<QLineEdit>(list, searchName)),
          grid(ambrel::test::child<ambrel::DataGrid>(list, gridName)) {}

    void type(const QString& text) { ambrel::test::typeInto(search, text); }
    void press(int key) { QTest::keyClick(&search, static_cast<Qt::Key>(key)); }
    void doubleClickCurrentRow() {
        const int lastColumn = grid.columnCount() - 1;
        QTest::mouseDClick(&grid, Qt::LeftButton, {}, grid.cellRect(grid.currentRow(), lastColumn).center());
    }

    List list;
    QLineEdit& search;
    ambrel::DataGrid& grid;
    QPushButton& accept = ambrel::test::child<QPushButton>(list, "BBAceptar");
    QPushButton& cancel = ambrel::test::child<QPushButton>(list, "BBCancelar");
    QStatusBar& help = ambrel::test::child<QStatusBar>(list, "SBAyuda");
};

} // namespace dialog_tests
