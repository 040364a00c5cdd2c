// Keeps and finds the names of streets.
#include "directory/StreetIndex.h"

#include <algorithm>

#include "dbase/system/large_memory.h"

namespace ambrel::directory {
namespace {

constexpr StreetId idsOfPlace = streetId(1, false, 0);

PlaceCode placeOfEntry(const StreetIndex::Entry& entry) { return placeOf(entry.id); }

} // namespace

void StreetIndex::reserve(std::size_t streets) {
    constexpr std::size_t usualName = 20;
    entries_.reserve(streets);
    names_.reserve(streets * usualName);
    dbase::preferLargePages(entries_.data(), streets * sizeof(Entry));
    dbase::preferLargePages(names_.data(), streets * usualName);
}

void StreetIndex::add(StreetId id, std::string_view type, std::string_view name) {
    near_ = {}; // the entries may move
    marked_ = {};
    marks_.clear();
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

std::span<const StreetIndex::Entry> StreetIndex::entriesOf(PlaceCode place) const {
    return {std::ranges::lower_bound(entries_, place, {}, placeOfEntry),
            std::ranges::upper_bound(entries_, place, {}, placeOfEntry)};
}

void StreetIndex::mark(bool isThere) {
    for (const Entry& entry : marked_) {
        marks_[entry.id % idsOfPlace] = isThere;
    }
}

bool StreetIndex::contains(StreetId id) {
    if (marked_.empty() || placeOfEntry(marked_.front()) != placeOf(id)) {
        marks_.resize(idsOfPlace);
        mark(false);
        marked_ = entriesOf(placeOf(id));
        mark(true);
    }
    return marks_[id % idsOfPlace];
}

const StreetIndex::Entry* StreetIndex::find(StreetId id) {
    constexpr int few = 4;
    if (near_.empty() || placeOfEntry(near_.front()) != placeOf(id)) {
        near_ = entriesOf(placeOf(id));
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
