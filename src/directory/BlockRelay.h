// Blocks of work that go round between two threads.
#pragma once

#include <array>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "loading/failure.h"

namespace ambrel::directory {

/// One thread fills blocks, another empties them in the same order, never more than `count` behind. One that
/// waits goes on once several are ready for it, as waking it for each would take longer than many a block.
/// What one of them fails with is thrown in the other at its next wait.
template<class Block, std::size_t count = 16>
class BlockRelay {
public:
    BlockRelay() = default;
    BlockRelay(const BlockRelay&) = delete;
    BlockRelay& operator=(const BlockRelay&) = delete;

    /// Begins one side in a thread of its own, which fails where `work` throws. Errors: loading::Failure if
    /// the system has no more threads.
    template<typename Work>
    [[nodiscard]] std::jthread start(Work work) {
        try {
            return std::jthread([this, work = std::move(work)] {
                try {
                    work();
                } catch (...) {
                    fail(std::current_exception());
                }
            });
        } catch (const std::system_error&) {
            throw loading::Failure(
                "el sistema no deja trabajar en dos hilos a la vez; cierre otros programas");
        }
    }

    // --- The thread that fills
    /// Waits for an empty block; the same one until it is passed on.
    [[nodiscard]] Block& toFill() {
        std::unique_lock lock(mutex_);
        wait(lock, [&] { return filled_ - emptied_ < count; });
        return blocks_[filled_ % count];
    }
    void passOn() {
        note([&] { return ++filled_ - emptied_ >= several; });
    }
    /// After the last block.
    void end() {
        note([&] { return isEnded_ = true; });
    }

    // --- The thread that empties
    /// Waits for full blocks, and uses each until the end; `use` ends it where it throws.
    template<typename Use>
    void useAll(const Use& use) {
        try {
            while (Block* const block = toEmpty()) {
                use(*block);
                note([&] { return filled_ - ++emptied_ <= count - several; });
            }
        } catch (...) {
            fail(std::current_exception());
            throw;
        }
    }

    // --- Either of them
    void fail(const std::exception_ptr& problem) {
        note([&] {
            problem_ = problem_ != nullptr ? problem_ : problem;
            return true;
        });
    }
    /// Throws what one of them has failed with.
    void requireSuccess() {
        std::unique_lock lock(mutex_);
        wait(lock, [] { return true; });
    }

private:
    /// Null at the end.
    [[nodiscard]] Block* toEmpty() {
        std::unique_lock lock(mutex_);
        wait(lock, [&] { return emptied_ < filled_ || isEnded_; });
        return emptied_ < filled_ ? &blocks_[emptied_ % count] : nullptr;
    }
    template<typename Condition>
    void wait(std::unique_lock<std::mutex>& lock, const Condition& isMet) {
        changed_.wait(lock, [&] { return problem_ != nullptr || isMet(); });
        if (problem_ != nullptr) {
            std::rethrow_exception(problem_);
        }
    }
    template<typename Step>
    void note(const Step& step) {
        const std::lock_guard lock(mutex_);
        if (step()) {
            changed_.notify_one(); // never do both wait
        }
    }

    static constexpr std::size_t several = 8;
    static_assert(count > several);

    std::array<Block, count> blocks_;
    std::mutex mutex_; // guards all that follows
    std::condition_variable changed_;
    std::uint64_t filled_ = 0, emptied_ = 0;
    bool isEnded_ = false;
    std::exception_ptr problem_;
};

} // namespace ambrel::directory
