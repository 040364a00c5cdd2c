// Which province a postal code belongs to, from the municipalities that share its first digits.
#pragma once

#include <string>

#include "data/Province.h"

namespace dbase {
class Dataset;
}

namespace ambrel {

/// The name is that of the province; where PROVIN lacks it in group 1, that of the provincial capital among
/// the municipalities whose postal codes begin alike; else that of the record on which the cursor stood. The
/// cursor, on MUNICIPI, keeps its tag but not its record; the province table is left as it was found. Errors:
/// dbase::Error of either table.
[[nodiscard]] Province locateProvince(dbase::Dataset& municipalities, dbase::Dataset& provinces,
                                      const std::string& postalCode);

} // namespace ambrel
