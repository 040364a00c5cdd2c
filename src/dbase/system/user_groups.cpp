// Users and their groups, wherever the machine keeps them (files, a directory server).
#include "dbase/system/user_groups.h"

#include <algorithm>
#include <cerrno>
#include <optional>

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

namespace dbase {

namespace {

struct KnownUser {
    std::string name;
    gid_t group;
};

std::optional<KnownUser> find(uid_t user) {
    constexpr std::size_t most = std::size_t{1} << 20;
    for (std::vector<char> buffer(1024); buffer.size() <= most; buffer.resize(buffer.size() * 4)) {
        passwd entry = {};
        passwd* found = nullptr;
        const int error = getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found);
        if (error != ERANGE) {
            return found == nullptr ? std::nullopt : std::optional(KnownUser{found->pw_name, found->pw_gid});
        }
    }
    return std::nullopt;
}

std::vector<std::uint32_t> ownGroups() {
    std::vector<gid_t> groups(static_cast<std::size_t>(std::max(getgroups(0, nullptr), 0)));
    const int count = getgroups(static_cast<int>(groups.size()), groups.data());
    groups.resize(static_cast<std::size_t>(std::max(count, 0)));
    groups.push_back(getegid());
    return {groups.begin(), groups.end()};
}

} // namespace

std::vector<std::uint32_t> groupsOf(std::uint32_t user) {
    if (user == geteuid()) {
        return ownGroups();
    }
    const std::optional<KnownUser> known = find(user);
    if (!known) {
        return {};
    }
    int count = 64;
    std::vector<gid_t> groups(static_cast<std::size_t>(count));
    while (getgrouplist(known->name.c_str(), known->group, groups.data(), &count) < 0) {
        groups.resize(std::max(groups.size() * 2, static_cast<std::size_t>(count)));
        count = static_cast<int>(groups.size());
    }
    groups.resize(static_cast<std::size_t>(count));
    return {groups.begin(), groups.end()};
}

std::string nameOfUser(std::uint32_t user) {
    const std::optional<KnownUser> known = find(user);
    return known ? known->name : "número " + std::to_string(user);
}

} // namespace dbase
