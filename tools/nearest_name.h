// What somebody may have meant by a name that is not known.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ambcp {

/// The name that a mistyped one comes nearest to: the one that it begins, or the one with the fewest slips
/// (letters wrong, missing, too many or exchanged). Null when it is near none. Letter case does not count.
[[nodiscard]] std::optional<std::string> nearestName(std::string_view typed,
                                                     const std::vector<std::string>& names);

} // namespace ambcp
