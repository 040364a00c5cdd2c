// Keeps and finds the names of streets.
#include "directory/StreetIndex.h"

#include <algorithm>

namespace ambrel::directory {
namespace {

/// As std::lower_bound, without branches: which half it is no processor can foresee.
std::ptrdiff_t placeAmong(std::span<const StreetIndex::Entry> entries, StreetId id) {
    const StreetIndex::Entry* first = entries.data();
    for (std::size_t size = entries.size(); size > 0;) {
        const std::size_t half = (size + 1) / 2;
        first += half * static_cast<std::size_t>(first[half - 1].id < id);
        size -= half;
    }
    return first - entries.data();
}

} // namespace

void StreetIndex::add(StreetId id, std::string_view type, std::string_view name) {
    near_ = {}; // the entries may move
    const auto [known, isNew] =
        typeNumbers_.try_emplace(std::string(type), static_cast<std::uint32_t>(types_.size()));
    if (isNew) {
        types_.emplace_back(type);
    }
    entries_.push_back({id, known->second, static_cast<std::uint32_t>(names_.size()),
                        static_cast<std::uint8_t>(name.size())});
    names_ += name;
}

void StreetIndex::finish() {
    if (!std::ranges::is_sorted(entries_, {}, &Entry::id)) {
        std::ranges::stable_sort(entries_, {}, &Entry::id);
    }
}

const StreetIndex::Entry* StreetIndex::find(StreetId id) {
    constexpr int few = 4;
    const auto placeOfEntry = [](const Entry& entry) { return placeOf(entry.id); };
    if (near_.empty() || placeOfEntry(near_.front()) != placeOf(id)) {
        near_ = {std::ranges::lower_bound(entries_, placeOf(id), {}, placeOfEntry),
                 std::ranges::upper_bound(entries_, placeOf(id), {}, placeOfEntry)};
        next_ = near_.begin();
    }
    for (int tried = 0; tried < few && next_ != near_.end() && next_->id < id; ++tried) {
        ++next_;
    }
    if (next_ == near_.end() || next_->id != id) {
        next_ = near_.begin() + placeAmong(near_, id);
    }
    return next_ != near_.end() && next_->id == id ? &*next_ : nullptr;
}

} // namespace ambrel::directory
