// What is wrong with the rows of MUNICIPI.
#pragma once

#include "directory/audit/Finding.h"
#include "directory/audit/PlaceBook.h"

namespace ambrel::directory {

/// One row, once the book is finished.
void auditMunicipalityRow(const MunicipalityRow& row, const PlaceBook& book, const FindingSink& sink);

/// UNICO of a row of this municipality as its postal codes say: 'S' or 'N'.
[[nodiscard]] char singleMarkOf(const PlaceBook::Place& place);

/// Whether UNICO of a row is there and says the contrary.
[[nodiscard]] bool hasWrongSingleMark(const MunicipalityRow& row, const PlaceBook::Place& place);

/// A finding about a municipality that says where it is.
[[nodiscard]] Finding aboutMunicipality(const PlaceBook::Place& place);

} // namespace ambrel::directory
