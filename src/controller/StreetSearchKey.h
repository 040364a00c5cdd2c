// Search keys of the street directory.
#pragma once

#include <string>
#include <string_view>

#include "dbase/dataset/dataset.h"

namespace ambrel {

/// The municipality whose streets a search covers.
struct StreetPlace {
    std::string postalCode; // its first two characters are the province
    std::string capital;    // capital mark
};

/// Key of a street with the name unpadded.
[[nodiscard]] dbase::Key streetSearchKey(const StreetPlace& place, const std::string& name,
                                         const std::string& type);

/// The same, with the padded name.
[[nodiscard]] dbase::Key paddedStreetSearchKey(const StreetPlace& place, const std::string& name,
                                               const std::string& type);

/// A name padded with blanks, or cut, to the width of the column.
[[nodiscard]] std::string paddedName(const std::string& name);

/// The name that a key of paddedStreetSearchKey stands for, as a row shows it: cut, without trailing blanks.
[[nodiscard]] std::string_view nameInKey(std::string_view name);

} // namespace ambrel
