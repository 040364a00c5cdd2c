// Another process that gives up being root.
#include "OtherUser.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <fstream>
#include <stdexcept>

#include <fcntl.h>
#include <grp.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "ChildProcess.h"

namespace dbase::test {

bool mayBecomeOthers() { return geteuid() == 0; }

void UserList::add(const std::string& name, const User& user) {
    users_ += name + ":x:" + std::to_string(user.id) + ':' + std::to_string(user.group) + "::/:/bin/false\n";
    groups_ += name + ":x:" + std::to_string(user.group) + ":\n";
    for (const unsigned group : user.otherGroups) {
        groups_ += name + "s:x:" + std::to_string(group) + ':' + name + '\n';
    }
    std::ofstream(path("passwd")) << users_;
    std::ofstream(path("group")) << groups_;
}

void UserList::use() const {
    if (unshare(CLONE_NEWNS) != 0 || mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount(path("passwd").c_str(), "/etc/passwd", nullptr, MS_BIND, nullptr) != 0 ||
        mount(path("group").c_str(), "/etc/group", nullptr, MS_BIND, nullptr) != 0) {
        throw std::runtime_error("the system gives no mounts of one's own");
    }
}

void become(const User& user) {
    const std::vector<gid_t> groups(user.otherGroups.begin(), user.otherGroups.end());
    umask(022);
    if (setgroups(groups.size(), groups.data()) != 0 || setresgid(user.group, user.group, user.group) != 0 ||
        setresuid(user.id, user.id, user.id) != 0) {
        throw std::runtime_error("cannot become another user");
    }
}

std::string as(const User& user, const std::function<std::string()>& work, const UserList* known) {
    ChildProcess other([&](const ChildProcess::Link& link) {
        try {
            if (known != nullptr) {
                known->use();
            }
            become(user);
            link.send(work());
        } catch (const std::exception& error) {
            link.send(error.what());
        }
        return 0;
    });
    return other.receive();
}

void refuseCreatingWhatMayExist() {
    constexpr auto number = offsetof(seccomp_data, nr), flags = offsetof(seccomp_data, args[2]);
    std::array filter{
        sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, number),
        sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_openat, 0, 4),
        sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, flags),
        sock_filter BPF_STMT(BPF_ALU | BPF_AND | BPF_K, O_CREAT | O_EXCL),
        sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, O_CREAT, 0, 1),
        sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EACCES),
        sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program{filter.size(), filter.data()};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
        throw std::runtime_error("the system filters no calls");
    }
}

} // namespace dbase::test
