// Compares the controls and texts of a dialog with a table of the required ones.
#pragma once

#include <QDialog>
#include <QSize>
#include <QString>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace ambrel::test {

/// One control. `text`: title of the dialog or of a group box, text of all other controls that have one.
/// `least`: minimum size in logical pixels, of the dialog its minimumSize; 0 where any size will do.
struct ControlTexts {
    QString name;      // objectName, also of the dialog itself
    QString className; // as in the sources: "QLineEdit", "ambrel::DataGrid"
    QString text;
    QString hint = {}; // tool tip
    QSize least = {0, 0};
};

/// Compares a shown dialog with the table, which must list every named control of it. Also checks each
/// control: an accessible name if it takes the focus, the hint as accessible description, no default button,
/// and enough width and height for its text.
void expectControls(const QDialog& dialog, const std::vector<ControlTexts>& controls);

/// For each way of closing, which is a button's name, "Escape" or "close box": runs a new dialog modally,
/// closes it that way, and expects the result.
void expectModalResults(const std::function<std::unique_ptr<QDialog>()>& make,
                        const std::vector<std::pair<std::string, int>>& results);

} // namespace ambrel::test
