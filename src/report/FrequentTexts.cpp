// Counts texts; drops the rare ones when there are too many.
#include "report/FrequentTexts.h"

#include <algorithm>
#include <functional>

namespace report {

void FrequentTexts::add(std::string_view text) {
    if (const auto known = times_.find(text); known != times_.end()) {
        ++known->second;
        return;
    }
    if (times_.size() >= 2 * kept_) {
        dropRare();
    }
    times_.emplace(text, 1);
}

// Half of the texts go at once, so that each addition pays for a few of them only.
void FrequentTexts::dropRare() {
    std::vector<std::uint64_t> counts;
    counts.reserve(times_.size());
    for (const auto& [text, times] : times_) {
        counts.push_back(times);
    }
    const auto firstDropped = counts.begin() + static_cast<std::ptrdiff_t>(kept_);
    std::ranges::nth_element(counts, firstDropped, std::greater{});
    const std::uint64_t taken = *firstDropped;
    missed_ += taken;
    for (auto& [text, times] : times_) {
        times -= std::min(times, taken);
    }
    std::erase_if(times_, [](const auto& entry) { return entry.second == 0; });
}

std::vector<FrequentTexts::Counted> FrequentTexts::most(std::size_t number) const {
    std::vector<Counted> found;
    found.reserve(times_.size());
    for (const auto& [text, times] : times_) {
        found.push_back({text, times});
    }
    const auto end = found.begin() + static_cast<std::ptrdiff_t>(std::min(number, found.size()));
    std::ranges::partial_sort(found, end, [](const Counted& one, const Counted& other) {
        return one.times != other.times ? one.times > other.times : one.text < other.text;
    });
    found.erase(end, found.end());
    return found;
}

} // namespace report
