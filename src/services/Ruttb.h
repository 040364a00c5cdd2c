// Table access: the operations that the package's routines use on a table, thin layers over the dataset.
//
// A key is a list of (field name, value) pairs of the active tag; a value is a text, or an integer that
// stands for its decimal digits, zero-padded to the width of a character column. All functions pass on the
// engine's dbase::Error.
#pragma once

#include <memory>
#include <string>

#include "AmbrelExport.h"
#include "dbase/dataset/dataset.h"

/// Last argument of TBBusca.
inline constexpr bool exactSearch = true;
inline constexpr bool nearestSearch = false;

/// Last argument of CreaTabla.
inline constexpr bool openNow = true;
inline constexpr bool leaveClosed = false;

/// Selects an index tag; the table may be open or closed. Record and filter are kept, a range is dropped;
/// selecting the active tag changes nothing.
AMBREL_EXPORT void TBIndexa(const std::string& tag, dbase::Dataset& table);

/// Selects an index tag and returns the previously active one in the same argument, so that repeating the
/// call restores it. The argument is unchanged if this throws.
AMBREL_EXPORT void TBIndexa(dbase::Dataset& table, std::string& tag);

/// Exact: goes to the first record with the key, or returns false without moving. Nearest: goes to the first
/// record at or after the key; past the last one it returns false, with the last record current and the table
/// at its end.
[[nodiscard]] AMBREL_EXPORT bool TBBusca(dbase::Dataset& table, const dbase::Key& key, bool exact);

/// Restricts the table to the records whose key lies between both, inclusive.
AMBREL_EXPORT void TBRango(dbase::Dataset& table, const dbase::Key& low, const dbase::Key& high);

/// Shows only the records for which a condition such as "ENT_MENOR=False" holds. The old filter is kept if
/// this throws.
AMBREL_EXPORT void TBFiltra(dbase::Dataset& table, const std::string& condition);

/// Writes the pending row; it stays pending if this throws. Subject to Config.AsegurarEnDisco, the effect of
/// TBPost and TBDelete is safe from a power cut when they return. To store many rows, post each with
/// dbase::Durability::Process and call dbase::Dataset::sync() after them.
AMBREL_EXPORT void TBPost(dbase::Dataset& table);

/// Deletes the current record; afterwards the next one, or else the last, is current.
AMBREL_EXPORT void TBDelete(dbase::Dataset& table);

/// Locks the current record for this user; false if another user holds it.
[[nodiscard]] AMBREL_EXPORT bool BloqueaActual(dbase::Dataset& table);

/// Releases every record lock taken through this table.
AMBREL_EXPORT void DesbloqueaAll(dbase::Dataset& table);

/// Creates a table object of a database with a tag selected and, with `open`, opened. `reserved` has no
/// effect; callers pass false.
[[nodiscard]] AMBREL_EXPORT std::unique_ptr<dbase::Dataset> CreaTabla(const std::string& database,
                                                                      const std::string& tableFile,
                                                                      const std::string& tag, bool reserved,
                                                                      bool open);
