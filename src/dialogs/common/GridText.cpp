// Formats rows for the clipboard.
#include "dialogs/common/GridText.h"

#include <algorithm>

namespace ambrel {
namespace {

/// A stray control character in a table would split a cell or a line.
QString lineOf(QStringList cells) {
    for (QString& cell : cells) {
        std::ranges::replace_if(
            cell, [](QChar letter) { return letter.category() == QChar::Other_Control; }, QChar::Space);
    }
    return cells.join(QLatin1Char('\t'));
}

} // namespace

QString gridText(const std::vector<GridColumn>& columns, const std::vector<QStringList>& rows,
                 GridTitles titles) {
    QStringList lines;
    if (titles == GridTitles::Always || rows.size() > 1) {
        QStringList cells;
        for (const GridColumn& column : columns) {
            cells.push_back(column.title);
        }
        lines.push_back(lineOf(cells));
    }
    for (const QStringList& row : rows) {
        lines.push_back(lineOf(row));
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace ambrel
