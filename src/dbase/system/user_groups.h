// The users of the machine, as its lists of users know them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace dbase {

/// All groups of a user; of one whom the machine does not know, none.
[[nodiscard]] std::vector<std::uint32_t> groupsOf(std::uint32_t user);

/// The user's name, or number if the machine knows none.
[[nodiscard]] std::string nameOfUser(std::uint32_t user);

} // namespace dbase
