// Names that were read once and are kept while their table stands.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "suggest/TableStamp.h"

namespace ambrel::suggest {

/// Reads in pieces, keeps what was read, and reads again when the table has changed. While another station
/// writes without pause, reading again takes a tenth of the time at most, and what is kept is up to a second
/// old.
template<class Names, class Reading>
class Kept {
public:
    using Clock = std::chrono::steady_clock;

    explicit Kept(std::function<std::unique_ptr<Reading>()> begin) : begin_(std::move(begin)) {}

    /// Reads until a moment what a table in this state makes necessary; true when nothing is missing.
    [[nodiscard]] bool renew(const TableStamp& now, Clock::time_point end) {
        if (names_ && !reading_ && (names_->stamp == now || isEnough())) {
            return true;
        }
        const Clock::time_point start = Clock::now();
        if (!reading_) {
            reading_ = begin_();
        }
        const bool isDone = reading_->readUntil(end);
        if (names_) {
            spent_ += Clock::now() - start;
        }
        if (!isDone) {
            return false;
        }
        names_ = reading_->take();
        reading_.reset();
        return true;
    }

    /// Null before renew() has returned true.
    [[nodiscard]] const std::shared_ptr<Names>& names() const { return names_; }
    [[nodiscard]] std::size_t bytes() const { return names_ ? names_->bytes() : 0; }

private:
    /// Whether reading again has taken long enough of this second.
    [[nodiscard]] bool isEnough() {
        const Clock::time_point now = Clock::now();
        if (now - second_ >= std::chrono::seconds(1)) {
            second_ = now;
            spent_ = {};
        }
        return spent_ >= std::chrono::milliseconds(100);
    }

    std::function<std::unique_ptr<Reading>()> begin_;
    std::shared_ptr<Names> names_;
    std::unique_ptr<Reading> reading_; // not finished
    Clock::time_point second_{};
    Clock::duration spent_{};
};

} // namespace ambrel::suggest
