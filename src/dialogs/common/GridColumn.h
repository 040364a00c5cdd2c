// A column of a data grid.
#pragma once

#include <QFontMetrics>
#include <QString>
#include <Qt>
#include <string>
#include <vector>

namespace ambrel {

/// What a column shows, and how.
struct GridColumn {
    std::string field;                       // of the dataset; calculated ones too
    QString title;                           // shown above the column
    int width = 64;                          // logical pixels, initially
    Qt::Alignment alignment = Qt::AlignLeft; // of cells and title; numbers are aligned right
    /// Index tags that order the rows by this column: its title has an arrow while one of them is active.
    std::vector<std::string> tags = {};
};

/// Logical pixels of a title taken up by the order arrow.
[[nodiscard]] inline int arrowRoom(const QFontMetrics& font) { return font.height() / 2 + 12; }

} // namespace ambrel
