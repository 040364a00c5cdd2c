// Municipalities by exact name: where the first one is, and whether another one shares the name.
#pragma once

#include <string>

#include "data/MunicipiDM.h"

namespace ambrel {

/// Goes to the first record whose column, by which the active tag orders, holds exactly this text; otherwise
/// returns false and goes to the nearest record after it.
[[nodiscard]] bool goToName(const dbase::Field& column, const std::string& name);

/// Walks MUNICIPI, in name order, from the first record with a name: true as soon as another municipality has
/// it. The same municipality under other postal codes does not count.
[[nodiscard]] bool isNameOfAnother(TDMMunicipi& tables);

/// Walks MUNICIMJ from the first record with a name to the one in a province; false if there is none.
/// `provinceCode`: the last two characters count, "8" is "08".
[[nodiscard]] bool goToNameInProvince(TDMMunicipi& tables, const std::string& provinceCode);

/// Moves to the record after MUNICIMJ's current one; true if it has the same name.
[[nodiscard]] bool isNameOfNext(TDMMunicipi& tables);

} // namespace ambrel
