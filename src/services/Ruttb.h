// Table access: the operations that the package's routines use on a table, each a thin step onto the dataset.
//
// A key is a list of (field name, value) pairs of the active tag; a value is a text, or an integer that
// stands for its decimal digits filled up with zeros to the width of a character column. All of them pass on
// the engine's dbase::Error.
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

/// Selects an index tag; the table may be open or closed. Record and filter stay, a range goes; the tag that
/// is active already changes nothing.
AMBREL_EXPORT void TBIndexa(const std::string& tag, dbase::Dataset& table);

/// Selects an index tag and hands back in the same argument the one that was active before, so that the same
/// call once more restores it. The argument stays as it was when this raises.
AMBREL_EXPORT void TBIndexa(dbase::Dataset& table, std::string& tag);

/// Exact: goes to the first record with the key, or answers false and moves nothing. Nearest: goes to the
/// first record at or after the key; past the last one it answers false, with the last record current and the
/// end of the table set.
[[nodiscard]] AMBREL_EXPORT bool TBBusca(dbase::Dataset& table, const dbase::Key& key, bool exact);

/// Restricts the table to the records whose key lies between both, included.
AMBREL_EXPORT void TBRango(dbase::Dataset& table, const dbase::Key& low, const dbase::Key& high);

/// Shows only the records for which a condition such as "ENT_MENOR=False" holds. The old filter stays when
/// this raises.
AMBREL_EXPORT void TBFiltra(dbase::Dataset& table, const std::string& condition);

/// Writes the pending row; it stays pending when this raises. As Config.AsegurarEnDisco says, what TBPost and
/// TBDelete did is safe from a power cut at their return. Who stores many rows posts each with
/// dbase::Durability::Process and calls dbase::Dataset::sync() behind them.
AMBREL_EXPORT void TBPost(dbase::Dataset& table);

/// Deletes the current record; the next one, else the last, is current afterwards.
AMBREL_EXPORT void TBDelete(dbase::Dataset& table);

/// Locks the current record for this user; false when somebody else holds it.
[[nodiscard]] AMBREL_EXPORT bool BloqueaActual(dbase::Dataset& table);

/// Releases every record lock that this table took.
AMBREL_EXPORT void DesbloqueaAll(dbase::Dataset& table);

/// A new table of a database, with a tag selected and, with `open`, opened. `reserved` has no effect; callers
/// pass false.
[[nodiscard]] AMBREL_EXPORT std::unique_ptr<dbase::Dataset> CreaTabla(const std::string& database,
                                                                      const std::string& tableFile,
                                                                      const std::string& tag, bool reserved,
                                                                      bool open);
