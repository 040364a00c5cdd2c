// The most frequent of any number of texts, in bounded memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace report {

/// Counts exactly while there are no more different texts than it keeps. Beyond, the rare ones are dropped,
/// by taking the same from every count: a count may then be too small by mostMissed() at most, and a text
/// more frequent than that is never missing.
class FrequentTexts {
public:
    /// `kept`: texts kept at the least; twice as many may be in memory.
    explicit FrequentTexts(std::size_t kept = 4096) : kept_(kept) {}

    void add(std::string_view text);

    struct Counted {
        std::string text;
        std::uint64_t times; // at least
    };
    /// The most frequent ones first; of equals in the order of their bytes.
    [[nodiscard]] std::vector<Counted> most(std::size_t number) const;
    /// 0 if the counts are exact.
    [[nodiscard]] std::uint64_t mostMissed() const { return missed_; }
    /// The different texts in memory.
    [[nodiscard]] std::size_t size() const { return times_.size(); }

private:
    struct Hash : std::hash<std::string_view> {
        using is_transparent = void;
    };

    void dropRare();

    std::size_t kept_;
    std::uint64_t missed_ = 0;
    std::unordered_map<std::string, std::uint64_t, Hash, std::equal_to<>> times_;
};

} // namespace report
