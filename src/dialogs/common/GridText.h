// Rows of a grid as a text for the clipboard.
#pragma once

#include <QStringList>
#include <vector>

#include "dialogs/common/GridColumn.h"

namespace ambrel {

/// Whether the titles of the columns stand above the rows.
enum class GridTitles { OfSeveralRows, Always };

/// One line a row, its cells parted by tabs, as spreadsheets take them. `rows`: one text a column in each.
[[nodiscard]] QString gridText(const std::vector<GridColumn>& columns, const std::vector<QStringList>& rows,
                               GridTitles titles);

} // namespace ambrel
