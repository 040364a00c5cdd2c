// The name that a user may have meant by an unknown one.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ambcp {

/// The name nearest to a mistyped one: the one that it begins, or the one with the fewest slips (letters
/// wrong, missing, too many or exchanged). Null when none is near. Letter case does not count.
[[nodiscard]] std::optional<std::string> nearestName(std::string_view typed,
                                                     const std::vector<std::string>& names);

} // namespace ambcp
