// Holds back the signal of a write beyond the limit on the size of files, for this thread and this write
// only.
#include "dbase/system/file_size_limit.h"

#include <cerrno>
#include <ctime>

#include <sys/resource.h>

namespace dbase {

namespace {

sigset_t sizeSignal() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGXFSZ);
    return set;
}

} // namespace

void FileSizeSignal::lookForLimit() noexcept {
    rlimit limit = {};
    isLimited_.store(getrlimit(RLIMIT_FSIZE, &limit) != 0 || limit.rlim_cur != RLIM_INFINITY,
                     std::memory_order_relaxed);
}

void FileSizeSignal::holdBack() noexcept {
    const sigset_t held = sizeSignal();
    isHeldBack_ = pthread_sigmask(SIG_BLOCK, &held, &before_) == 0;
    sigset_t pending;
    wasPending_ = sigismember(&before_, SIGXFSZ) == 1 && sigpending(&pending) == 0 &&
                  sigismember(&pending, SIGXFSZ) == 1;
}

void FileSizeSignal::takeBack() noexcept {
    const int number = errno; // of the write
    const sigset_t held = sizeSignal();
    const timespec atOnce = {};
    while (!wasPending_ && sigtimedwait(&held, nullptr, &atOnce) < 0 && errno == EINTR) {
    }
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    errno = number;
}

} // namespace dbase
