// Another process that gives up being root.
#include "OtherUser.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <stdexcept>

#include <fcntl.h>
#include <grp.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "ChildProcess.h"

namespace dbase::test {

bool mayBecomeOthers() { return geteuid() == 0; }

std::string as(const User& user, const std::function<std::string()>& work) {
    ChildProcess other([&](const ChildProcess::Link& link) {
        const std::vector<gid_t> groups(user.otherGroups.begin(), user.otherGroups.end());
        umask(022);
        if (setgroups(groups.size(), groups.data()) != 0 ||
            setresgid(user.group, user.group, user.group) != 0 || setresuid(user.id, user.id, user.id) != 0) {
            link.send("cannot become another user");
            return 1;
        }
        try {
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
