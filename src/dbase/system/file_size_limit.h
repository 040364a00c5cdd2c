// Makes a write beyond the limit on the size of files fail instead of ending the program.
#pragma once

#include <atomic>

#include <csignal>

namespace dbase {

/// Surrounds writes: one beyond the limit (RLIMIT_FSIZE) fails with EFBIG, and the signal SIGXFSZ that the
/// system sends with it is taken back. The host's handlers are not touched. Costs nothing without a limit.
class FileSizeSignal {
public:
    FileSizeSignal() noexcept {
        if (isLimited_.load(std::memory_order_relaxed)) {
            holdBack();
        }
    }
    ~FileSizeSignal() {
        if (isHeldBack_) {
            takeBack();
        }
    }
    FileSizeSignal(const FileSizeSignal&) = delete;
    FileSizeSignal& operator=(const FileSizeSignal&) = delete;

    /// Queries whether there is a limit, which a host may set at any time: for the start of an operation, as
    /// it is a system call.
    static void lookForLimit() noexcept;

private:
    void holdBack() noexcept;
    void takeBack() noexcept;

    static inline std::atomic<bool> isLimited_{true}; // until the first look
    bool isHeldBack_ = false;
    bool wasPending_ = false; // a signal of somebody else's
    sigset_t before_ = {};
};

} // namespace dbase
