// Rows of a grid as text for the clipboard.
#pragma once

#include <QStringList>
#include <vector>

#include "dialogs/common/GridColumn.h"

namespace ambrel {

/// When the column titles precede the rows.
enum class GridTitles { OfSeveralRows, Always };

/// One line per row, cells separated by tabs, as spreadsheets expect. `rows`: each has one text per column.
[[nodiscard]] QString gridText(const std::vector<GridColumn>& columns, const std::vector<QStringList>& rows,
                               GridTitles titles);

} // namespace ambrel
