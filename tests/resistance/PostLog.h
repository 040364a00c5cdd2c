// The posts acknowledged to a writer, in memory that outlives it.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <optional>

#include "StreetRows.h"

namespace resistance {

enum class PostKind : std::uint8_t { Append, Overwrite, Erase, Rebuild, Load, Replace, Together };
inline constexpr std::size_t postKinds = 7;

/// One change of the table. A load, and rows stored together, add `rows` rows with ascending serials, a
/// replacement leaves only those.
struct Post {
    PostKind kind = PostKind::Append;
    StreetVersion row;              // the row after the change; the first of several
    dbase::RecordNumber number = 0; // of new rows: once acknowledged
    std::uint32_t rows = 1;
};

/// Shared with the processes forked after it was created. One of them writes, the parent reads.
class PostLog {
public:
    PostLog();
    ~PostLog();
    PostLog(const PostLog&) = delete;
    PostLog& operator=(const PostLog&) = delete;

    // --- The writer's side.
    void announce(const Post& post);
    /// Acknowledges the last announced post, whose first record is `number`.
    void acknowledge(dbase::RecordNumber number);
    [[nodiscard]] bool isFull() const { return shared_->announced == capacity; }
    [[nodiscard]] bool mustStop() const { return shared_->stop; }

    // --- The parent's side.
    void clear();
    void stop() { shared_->stop = true; }
    [[nodiscard]] std::size_t acknowledged() const { return shared_->acknowledged; }
    [[nodiscard]] const Post& post(std::size_t i) const { return shared_->posts.at(i); }
    /// The post that is announced and not acknowledged.
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
