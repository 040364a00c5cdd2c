// The province of a postal code, from the municipalities that share its first digits.
#pragma once

#include <string>

#include "data/Province.h"

namespace dbase {
class Dataset;
}

namespace ambrel {

/// The name is that of the province; if PROVIN lacks it in group 1, that of the provincial capital among the
/// municipalities whose postal codes begin alike; otherwise that of the record where the cursor was. The
/// cursor, on MUNICIPI, keeps its tag but not its record; the province table is left as it was. Errors:
/// dbase::Error of either table.
[[nodiscard]] Province locateProvince(dbase::Dataset& municipalities, dbase::Dataset& provinces,
                                      const std::string& postalCode);

} // namespace ambrel
