// Work done as another user of the machine, in another process.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace dbase::test {

/// Numbers suffice; the machine's list of users need not have them.
struct User {
    unsigned id, group;
    std::vector<unsigned> otherGroups = {};
};

/// Users and groups whom the machine does not know, in files of a folder of the test.
class UserList {
public:
    explicit UserList(std::string folder) : folder_(std::move(folder)) {}
    void add(const std::string& name, const User& user);
    /// Puts them in the place of the machine's own, for this process and those that it starts. Needs root,
    /// and a system that gives the process mounts of its own.
    void use() const;

private:
    [[nodiscard]] std::string path(const char* file) const { return folder_ + '/' + file; }
    std::string folder_, users_, groups_;
};

/// Whether this program may become others; if not, a test skips itself with wantsRoot.
[[nodiscard]] bool mayBecomeOthers();
inline constexpr const char* wantsRoot = "wants root, to work as several users";

/// The text that the work returns, or that of the exception it throws.
[[nodiscard]] std::string as(const User& user, const std::function<std::string()>& work,
                             const UserList* known = nullptr);
/// Makes this process the user's.
void become(const User& user);

/// Ends the process's right to create files that may exist already, as fs.protected_regular does for other
/// users' files in sticky folders: O_CREAT without O_EXCL fails with EACCES from now on.
void refuseCreatingWhatMayExist();

} // namespace dbase::test
