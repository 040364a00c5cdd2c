// The lists of municipalities on a small table, shown as their callers show them.
#pragma once

#include <QDialog>
#include <QLineEdit>
#include <QStatusBar>
#include <memory>
#include <string>

#include "controller/ClasCodPostales.h"
#include "data/MunicipiDM.h"
#include "data/PostalTables.h"
#include "dialogs/common/DataGrid.h"
#include "support/Typing.h"

namespace postal_tests {

enum class MunicipalityDialog { Lista, Buscar, ListaMJ };

/// A dialog over its own cursor. Rows in the order of their names: ALPEDRETE, BARCELONA, "CORUÑA, A", LOS
/// NEGRALES (a minor entity of ALPEDRETE), MADRID under two postal codes, MEJORADA DEL CAMPO and "ÑORA, LA".
class MunicipalityListFixture : public PostalTables {
protected:
    MunicipalityListFixture();
    ~MunicipalityListFixture() override;

    /// Opens the table and creates the dialog, not shown yet.
    void make(MunicipalityDialog which, const std::string& tag);
    /// Creates only the dialog, over the existing table.
    [[nodiscard]] std::unique_ptr<QDialog> makeDialog();
    /// make(), then shows and activates the dialog.
    void open(MunicipalityDialog which, const std::string& tag);

    [[nodiscard]] dbase::Dataset& table();
    [[nodiscard]] ambrel::DataGrid& grid() const;
    [[nodiscard]] QLineEdit& edit(const char* name) const;
    [[nodiscard]] std::string focused() const; // objectName
    [[nodiscard]] std::string help() const;
    /// A column of the current record.
    [[nodiscard]] std::string current(const char* field);
    /// Text of a column of the grid's current row.
    [[nodiscard]] std::string shown(int column) const;

    static void type(QLineEdit& edit, const QString& text) { ambrel::test::typeInto(edit, text); }
    /// Presses in the focused control, and releases in the one that has the focus by then.
    void press(Qt::Key key) const;
    void hover(const QWidget& control) const;
    void clickTitle(int column) const;
    void doubleClickRow(int row) const;

    std::unique_ptr<TDMMunicipi> module;
    std::unique_ptr<TClassCodPostales> controller;
    std::unique_ptr<QDialog> dialog;

private:
    MunicipalityDialog which_ = MunicipalityDialog::Lista;
};

} // namespace postal_tests
