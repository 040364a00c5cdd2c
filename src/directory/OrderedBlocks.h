// Blocks of work that several threads make, and one uses in their order.
#pragma once

#include <array>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>

namespace ambrel::directory {

/// The thread that uses the blocks makes some, too, rather than wait; so one that the system grants no second
/// thread makes all of them. Never more than `count` are made ahead.
template<class Block, std::size_t count = 16>
class OrderedBlocks {
public:
    OrderedBlocks() = default;
    OrderedBlocks(const OrderedBlocks&) = delete;
    OrderedBlocks& operator=(const OrderedBlocks&) = delete;

    /// `claim(block)` says what a block is of, one after another; false at the end. `make(block)` is called
    /// for several of them side by side, `use(block)` by the calling thread. Errors: anything these throw.
    template<typename Claim, typename Make, typename Use>
    void run(const Claim& claim, const Make& make, const Use& use) {
        const std::jthread helper = startHelper([&] { makeAll(claim, make); });
        const StopAtEnd stop{*this};
        std::unique_lock lock(mutex_);
        while (true) {
            if (problem_ != nullptr) {
                std::rethrow_exception(problem_);
            }
            if (used_ < claimed_ && slots_[used_ % count].isMade) {
                Slot& slot = slots_[used_ % count];
                lock.unlock();
                use(slot.block);
                lock.lock();
                slot.isMade = false;
                if (claimed_ - ++used_ <= count - several) {
                    changed_.notify_one();
                }
            } else if (isEnded_ && used_ == claimed_) {
                return;
            } else if (!makeNext(lock, claim, make)) {
                changed_.wait(lock);
            }
        }
    }

private:
    struct Slot {
        Block block;
        bool isMade = false;
    };
    struct StopAtEnd {
        OrderedBlocks& blocks;
        ~StopAtEnd() {
            const std::lock_guard lock(blocks.mutex_);
            blocks.isEnded_ = true;
            blocks.changed_.notify_one();
        }
    };

    template<typename Work>
    [[nodiscard]] static std::jthread startHelper(const Work& work) {
        try {
            return std::jthread(work);
        } catch (const std::system_error&) {
            return {};
        }
    }
    template<typename Claim, typename Make>
    void makeAll(const Claim& claim, const Make& make) {
        std::unique_lock lock(mutex_);
        while (!isEnded_) {
            if (!makeNext(lock, claim, make)) {
                changed_.wait(lock);
            }
        }
    }
    /// False if there is none to make now.
    template<typename Claim, typename Make>
    [[nodiscard]] bool makeNext(std::unique_lock<std::mutex>& lock, const Claim& claim, const Make& make) {
        if (isEnded_ || isClaiming_ || claimed_ - used_ == count) {
            return false;
        }
        Slot& slot = slots_[claimed_ % count];
        isClaiming_ = true;
        const auto unlocked = [&](const auto& step) {
            lock.unlock();
            try {
                step();
            } catch (...) {
                lock.lock();
                problem_ = std::current_exception();
                isEnded_ = true;
                return;
            }
            lock.lock();
        };
        bool isThere = false;
        unlocked([&] { isThere = claim(slot.block); });
        isClaiming_ = false;
        isEnded_ = isEnded_ || !isThere;
        changed_.notify_one(); // it may claim the next one while this one is made
        if (isThere && !isEnded_) {
            ++claimed_;
            unlocked([&] { make(slot.block); });
            slot.isMade = true;
        }
        changed_.notify_one(); // there are two threads, so that it is the other one
        return true;
    }

    static constexpr std::size_t several = 8;
    static_assert(count > several);

    std::array<Slot, count> slots_;
    std::mutex mutex_; // guards all that follows, and the slots' marks
    std::condition_variable changed_;
    std::uint64_t claimed_ = 0, used_ = 0;
    bool isClaiming_ = false, isEnded_ = false;
    std::exception_ptr problem_;
};

} // namespace ambrel::directory
