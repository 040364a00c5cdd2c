// What a dialog shows, compared with a table of what it has to show.
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

/// One control. `text`: title of the dialog or of a group box, text of everything else that has one. `least`:
/// logical pixels that it must have at least, of the dialog its minimum size; 0 where any size will do.
struct ControlTexts {
    QString name;      // objectName; that of the dialog for the dialog itself
    QString className; // as in the sources: "QLineEdit", "ambrel::DataGrid"
    QString text;
    QString hint = {}; // tool tip
    QSize least = {0, 0};
};

/// Compares a dialog that is shown with the table, which must name every named control of it. Checks of each,
/// too: an accessible name where the focus can go, the hint as accessible description, no default button,
/// nothing narrower or lower than its text needs.
void expectControls(const QDialog& dialog, const std::vector<ControlTexts>& controls);

/// For each way of closing, a button's name, "Escape" or "close box": a dialog just made is run modally,
/// closed in that way, and must answer the result.
void expectModalResults(const std::function<std::unique_ptr<QDialog>()>& make,
                        const std::vector<std::pair<std::string, int>>& results);

} // namespace ambrel::test
