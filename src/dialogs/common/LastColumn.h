// Lets the last column of a dialog's grid fill the remaining width.
#pragma once

namespace ambrel {

class DataGrid;

/// Sets the last column's width to the grid's, less the columns before it. Deliberate: 0 or negative, with
/// the column hidden, if those take up everything.
void fillLastColumn(DataGrid& grid);

} // namespace ambrel
