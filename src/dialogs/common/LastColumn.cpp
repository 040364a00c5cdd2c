// The width of the last column.
#include "dialogs/common/LastColumn.h"

#include "dialogs/common/DataGrid.h"

namespace ambrel {

void fillLastColumn(DataGrid& grid) {
    const int last = grid.columnCount() - 1;
    int room = grid.clientWidth();
    for (int column = 0; column < last; ++column) {
        room -= grid.columnWidth(column);
    }
    grid.setColumnWidth(last, room);
}

} // namespace ambrel
