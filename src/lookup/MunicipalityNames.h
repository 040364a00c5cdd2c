// Municipalities by their exact name: where the first one is, and whether another one has the name as well.
#pragma once

#include <string>

#include "data/MunicipiDM.h"

namespace ambrel {

/// Goes to the first record whose column, which the active tag orders by, holds exactly this text; otherwise
/// to the nearest behind it, with false.
[[nodiscard]] bool goToName(const dbase::Field& column, const std::string& name);

/// Walks MUNICIPI, in the order of names, on from the first record with a name: true as soon as another
/// municipality has it. The same municipality under other postal codes does not count.
[[nodiscard]] bool isNameOfAnother(TDMMunicipi& tables);

/// Walks MUNICIMJ on from the first record with a name to the one in a province; false when there is none.
/// `provinceCode`: the last two characters count, "8" is "08".
[[nodiscard]] bool goToProvince(TDMMunicipi& tables, const std::string& provinceCode);

/// Whether the record behind MUNICIMJ's current one, to which it moves, has the same name.
[[nodiscard]] bool isNameOfNext(TDMMunicipi& tables);

} // namespace ambrel
