// The directory in our own tables.
#pragma once

#include <span>
#include <string>

#include "dbase/dataset/dataset.h"

#include "postal_rows.h"

namespace bench {

/// The folder of the loaded table, created at the first call.
[[nodiscard]] const std::string& ourFolder();
/// Loads all rows into a new folder through the bulk loader; returns the table's path.
std::string loadOurs(const std::string& folder);
/// Encodes a row by the table's schema.
void encodeRow(const PostalRow& row, const dbase::Schema& schema, std::span<char> record);
/// Sets the fields of a row that is being added.
void assignRow(const PostalRow& row, dbase::Dataset& table);
/// Opens a cursor on the loaded table.
void openOurs(dbase::Dataset& table, const std::string& tag);

} // namespace bench
