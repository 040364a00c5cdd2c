// What a writer was told to have stored, kept in memory that outlives it.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <optional>

#include "StreetRows.h"

namespace resistance {

enum class PostKind : std::uint8_t { Append, Overwrite, Erase, Rebuild, Load, Replace };
inline constexpr std::size_t postKinds = 6;

/// One change of the table. A load adds, a replacement leaves, `rows` rows with ascending serials.
struct Post {
    PostKind kind = PostKind::Append;
    StreetVersion row;              // as it is afterwards; the first one of several
    dbase::RecordNumber number = 0; // of an append and a load: once it is acknowledged
    std::uint32_t rows = 1;
};

/// Shared with the processes that are forked after it was made. One of them writes, the parent reads.
class PostLog {
public:
    PostLog();
    ~PostLog();
    PostLog(const PostLog&) = delete;
    PostLog& operator=(const PostLog&) = delete;

    // --- The writer's side.
    void announce(const Post& post);
    /// The last one announced is stored, `number` its first record.
    void acknowledge(dbase::RecordNumber number);
    [[nodiscard]] bool isFull() const { return shared_->announced == capacity; }
    [[nodiscard]] bool mustStop() const { return shared_->stop; }

    // --- The parent's side.
    void clear();
    void stop() { shared_->stop = true; }
    [[nodiscard]] std::size_t acknowledged() const { return shared_->acknowledged; }
    [[nodiscard]] const Post& post(std::size_t i) const { return shared_->posts.at(i); }
    /// Announced and not acknowledged.
    [[nodiscard]] std::optional<Post> inFlight() const;

private:
    static constexpr std::size_t capacity = 1 << 16;
    struct Shared {
        std::atomic<std::size_t> announced, acknowledged;
        std::atomic<bool> stop;
        std::array<Post, capacity> posts;
    };
    static_assert(std::atomic<std::size_t>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

    Shared* shared_;
};

} // namespace resistance
