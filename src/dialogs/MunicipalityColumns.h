// What the two lists over MUNICIPI share: their columns, and the keys that these stand for.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "dialogs/common/DataGrid.h"

class QLineEdit;

namespace ambrel {

/// INE code, postal code and whole name.
[[nodiscard]] std::vector<GridColumn> municipalityColumns();

/// For the moment when the dialog is shown and the grid has its font: room for the codes, and the title of
/// the names, which tells of the entities while the configuration shows them.
void settleMunicipalityColumns(DataGrid& grid);

/// Index tag, and key field, of a number that a search edit's Tag and a column share. Empty for any other.
[[nodiscard]] std::string municipalityKey(int number);

/// Gives the focus to the edit that searches the active tag; leaves it alone for any other tag.
void focusEditOfTag(const std::string& tag, std::initializer_list<QLineEdit*> edits);

} // namespace ambrel
