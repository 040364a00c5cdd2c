// Work done as another user of the machine, in another process.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace dbase::test {

/// Numbers suffice; the machine's list of users need not have them.
struct User {
    unsigned id, group;
    std::vector<unsigned> otherGroups = {};
};

/// Whether this program may become others; if not, a test skips itself with wantsRoot.
[[nodiscard]] bool mayBecomeOthers();
inline constexpr const char* wantsRoot = "wants root, to work as several users";

/// The text that the work returns, or that of the exception it throws.
[[nodiscard]] std::string as(const User& user, const std::function<std::string()>& work);

/// Ends the process's right to create files that may exist already, as fs.protected_regular does for other
/// users' files in sticky folders: O_CREAT without O_EXCL fails with EACCES from now on.
void refuseCreatingWhatMayExist();

} // namespace dbase::test
