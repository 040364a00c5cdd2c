// What the two MUNICIPI lists share: their columns, and the keys that these stand for.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "dialogs/common/DataGrid.h"

class QLineEdit;

namespace ambrel {

/// INE code, postal code and whole name.
[[nodiscard]] std::vector<GridColumn> municipalityColumns();

/// Called when the dialog is shown and the grid has its font: makes room for the codes, and sets the title of
/// the names, which mentions entities if the configuration shows them.
void fitMunicipalityColumns(DataGrid& grid);

/// Index tag and key field for a number shared by a search edit's Tag and a column. Empty for any other.
[[nodiscard]] std::string municipalityKey(int number);

/// Gives the focus to the edit that searches the active tag; does nothing for any other tag.
void focusEditOfTag(const std::string& tag, std::initializer_list<QLineEdit*> edits);

} // namespace ambrel
