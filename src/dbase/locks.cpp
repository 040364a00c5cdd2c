#include "dbase/locks.h"

#include <algorithm>
#include <thread>

#include "dbase/error.h"

namespace dbase {

namespace {
std::chrono::milliseconds patience{10000};
}

std::chrono::milliseconds lockPatience() { return patience; }
void setLockPatience(std::chrono::milliseconds value) { patience = value; }

void holdLock(File& file, LockRange range, LockKind kind) {
    using Clock = std::chrono::steady_clock;
    if (file.tryLock(range, kind)) {
        return;
    }
    const Clock::time_point deadline = Clock::now() + patience;
    auto pause = std::chrono::microseconds(20);
    while (!file.tryLock(range, kind)) {
        if (Clock::now() >= deadline) {
            throw Error(ErrorCode::LockTimeout, file.path(),
                        "otro programa mantiene bloqueada la tabla; espere y repita la operación");
        }
        std::this_thread::sleep_for(pause);
        pause = std::min(pause * 2, std::chrono::microseconds(2000));
    }
}

} // namespace dbase
