// Keeps and finds the names of streets.
#include "directory/StreetIndex.h"

#include <algorithm>

namespace ambrel::directory {

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
        next_ = std::ranges::lower_bound(near_, id, {}, &Entry::id);
    }
    return next_ != near_.end() && next_->id == id ? &*next_ : nullptr;
}

} // namespace ambrel::directory
