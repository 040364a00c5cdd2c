// A column of a data grid.
#pragma once

#include <QString>
#include <Qt>
#include <string>

namespace ambrel {

/// What a column shows, and how.
struct GridColumn {
    std::string field; // of the dataset; calculated ones too
    QString title;     // shown above the column
    int width = 64;    // logical pixels at first
    Qt::Alignment alignment = Qt::AlignLeft;
};

} // namespace ambrel
