// Views of files in memory, and the signal handler that keeps a truncated file from ending the program.
#include "dbase/system/mapped_view.h"

#include <array>
#include <csignal>
#include <cstdint>
#include <fstream>
#include <mutex>

#include <sys/mman.h>
#include <unistd.h>

#include "dbase/system/file_pieces.h"

namespace dbase {

namespace {

// What the signal handler knows of a view. Lock-free words, because a handler must not take locks.
struct Slot {
    std::atomic<std::uintptr_t> begin{0};
    std::atomic<std::uintptr_t> end{0};
    std::atomic<int> protection{PROT_READ};
    std::atomic<bool> torn{false};
};
static_assert(std::atomic<std::uintptr_t>::is_always_lock_free && std::atomic<int>::is_always_lock_free &&
              std::atomic<bool>::is_always_lock_free);

constexpr std::size_t slotCount = 1024;
std::array<Slot, slotCount> slots;
struct sigaction previousAction;
std::uintptr_t pageSize = 4096;

void passOn(int signal, siginfo_t* info, void* context) {
    if ((previousAction.sa_flags & SA_SIGINFO) != 0) {
        previousAction.sa_sigaction(signal, info, context);
    } else if (previousAction.sa_handler != SIG_DFL && previousAction.sa_handler != SIG_IGN) {
        previousAction.sa_handler(signal);
    } else {
        sigaction(signal, &previousAction, nullptr); // the fault recurs and takes its usual course
    }
}

void onBusError(int signal, siginfo_t* info, void* context) {
    const auto address = reinterpret_cast<std::uintptr_t>(info->si_addr);
    for (Slot& slot : slots) {
        const std::uintptr_t begin = slot.begin.load(std::memory_order_relaxed);
        if (begin == 0 || address < begin || address >= slot.end.load(std::memory_order_relaxed)) {
            continue;
        }
        void* page = reinterpret_cast<void*>(address & ~(pageSize - 1));
        if (mmap(page, pageSize, slot.protection.load(std::memory_order_relaxed),
                 MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) != MAP_FAILED) {
            slot.torn.store(true, std::memory_order_relaxed);
            return;
        }
    }
    passOn(signal, info, context);
}

void installHandler() {
    static std::once_flag once;
    std::call_once(once, [] {
        pageSize = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
        struct sigaction action = {};
        action.sa_sigaction = onBusError;
        action.sa_flags = SA_SIGINFO | SA_NODEFER;
        sigemptyset(&action.sa_mask);
        sigaction(SIGBUS, &action, &previousAction);
    });
}

/// Of threads that take or leave a slot, or go through the views; the handler looks only at slots with a
/// beginning.
std::mutex slotMutex;

int takeSlot(std::uintptr_t begin, std::uintptr_t end, int protection) {
    const std::lock_guard lock(slotMutex);
    for (std::size_t i = 0; i < slotCount; ++i) {
        if (slots[i].begin.load() == 0) {
            slots[i].torn.store(false, std::memory_order_relaxed);
            slots[i].end.store(end, std::memory_order_relaxed);
            slots[i].protection.store(protection, std::memory_order_relaxed);
            slots[i].begin.store(begin);
            return static_cast<int>(i);
        }
    }
    return -1;
}

} // namespace

namespace {

/// Maps the file between two pages that nobody may touch: a host that writes beyond the end of a neighbouring
/// array must not write into a table. It begins at a multiple of a piece: a system that keeps files in large
/// pages then makes a whole one writable at the first store into it; otherwise the first store into each of
/// its 512 parts walks all of them. Null if the system refuses.
char* mapBetweenFences(int descriptor, std::size_t length) {
    const std::size_t pages =
        (length + pageSize - 1) / pageSize * pageSize; // only whole pages can be released
    const std::size_t whole = pages + 2 * pieceBytes;
    void* reserved = mmap(nullptr, whole, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (reserved == MAP_FAILED) {
        return nullptr;
    }
    char* const begin = static_cast<char*>(reserved);
    char* const data = begin + (pieceBytes - reinterpret_cast<std::uintptr_t>(begin) % pieceBytes);
    if (mmap(data, length, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, descriptor, 0) == MAP_FAILED) {
        munmap(reserved, whole);
        return nullptr;
    }
    const auto release = [](char* from, const char* to) {
        if (from != to) {
            munmap(from, static_cast<std::size_t>(to - from));
        }
    };
    release(begin, data - pageSize);
    release(data + pages + pageSize, begin + whole);
    return data;
}

char* mapForReading(int descriptor, std::size_t length) {
    void* address = mmap(nullptr, length, PROT_READ, MAP_SHARED, descriptor, 0);
    return address == MAP_FAILED ? nullptr : static_cast<char*>(address);
}

} // namespace

MappedView::MappedView(int descriptor, std::size_t length, Access access)
    : descriptor_(descriptor), length_(length), access_(access) {
    installHandler();
    char* data =
        access == Access::Write ? mapBetweenFences(descriptor, length) : mapForReading(descriptor, length);
    if (data == nullptr) {
        return;
    }
    const auto begin = reinterpret_cast<std::uintptr_t>(data);
    slot_ = takeSlot(begin, begin + length_, protection());
    if (slot_ < 0) { // an unguarded view is not worth the risk
        unmap(data);
        return;
    }
    data_ = data;
}

MappedView::~MappedView() {
    if (data_ != nullptr) {
        const std::lock_guard lock(slotMutex); // nobody may use the addresses once they are another's
        slots[static_cast<std::size_t>(slot_)].begin.store(0);
        unmap(data_);
    }
}

int MappedView::protection() const { return access_ == Access::Write ? PROT_READ | PROT_WRITE : PROT_READ; }

void MappedView::unmap(char* data) const {
    const std::size_t fence = access_ == Access::Write ? pageSize : 0;
    munmap(data - fence, length_ + 2 * fence);
}

bool MappedView::isTorn() const {
    return slot_ >= 0 && slots[static_cast<std::size_t>(slot_)].torn.load(std::memory_order_relaxed);
}

void MappedView::renew() {
    if (data_ != nullptr &&
        mmap(data_, length_, protection(), MAP_SHARED | MAP_FIXED, descriptor_, 0) != MAP_FAILED) {
        slots[static_cast<std::size_t>(slot_)].torn.store(false, std::memory_order_relaxed);
    }
}

void releaseViewedPages() {
    const std::lock_guard lock(slotMutex);
    for (const Slot& slot : slots) {
        if (const std::uintptr_t begin = slot.begin.load(); begin != 0) {
            // Failing, it releases nothing, which is no harm.
            static_cast<void>(
                madvise(reinterpret_cast<void*>(begin), slot.end.load() - begin, MADV_DONTNEED));
        }
    }
}

void boundViewedPages(std::size_t bytes) {
    std::ifstream memory("/proc/self/statm");
    std::size_t all = 0, resident = 0, ofFiles = 0; // in pages
    if (!(memory >> all >> resident >> ofFiles) || ofFiles * pageSize > bytes) {
        releaseViewedPages();
    }
}

} // namespace dbase
