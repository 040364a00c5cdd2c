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
    int width = 64;                          // logical pixels at first
    Qt::Alignment alignment = Qt::AlignLeft; // of cells and title: numbers stand to the right
    /// Index tags that order the rows by what it shows: its title bears an arrow while one of them is active.
    std::vector<std::string> tags = {};
};

/// Logical pixels that the arrow of the order takes from a title.
[[nodiscard]] inline int arrowRoom(const QFontMetrics& font) { return font.height() / 2 + 12; }

} // namespace ambrel
