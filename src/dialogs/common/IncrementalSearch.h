// The search of the list dialogs: each key released in a search edit moves the browsed table.
#pragma once

#include <cstdint>
#include <string>

class QLineEdit;

namespace dbase {
class Dataset;
}

namespace ambrel {

class DataGrid;

/// Removes leading blanks from the edit's text; then Page Up, Page Down, Up and Down move the table, and any
/// other key seeks the typed text, nearest, in a key field. An empty text, or one that Windows-1252 cannot
/// hold, moves nothing. Refreshes the grid after a move.
void searchWhileTyping(QLineEdit& edit, std::uint16_t key, dbase::Dataset& table, const std::string& keyField,
                       DataGrid& grid);

/// Up, Down: one row, unless the table is at its end. Page Up, Page Down: first and last row. Refreshes the
/// grid. False for any other key.
bool moveByKey(std::uint16_t key, dbase::Dataset& table, DataGrid& grid);

/// Removes leading blanks from the edit's text; caret and selection stay on their letters.
void removeLeadingBlanks(QLineEdit& edit);

} // namespace ambrel
