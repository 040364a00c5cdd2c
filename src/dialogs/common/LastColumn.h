// The last column of a dialog's grid takes the room that the others leave.
#pragma once

namespace ambrel {

class DataGrid;

/// Width of the last column: what the grid has, less the columns before it. Deliberate: 0 or negative, and
/// the column not shown, where those take all.
void fillLastColumn(DataGrid& grid);

} // namespace ambrel
