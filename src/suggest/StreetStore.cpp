// Keeping provinces, and what places have of them.
#include "suggest/StreetStore.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace ambrel::suggest {
namespace {

/// More places than a user types streets of in a day; an administrator's file has many.
constexpr std::size_t mostViews = 4096;
constexpr std::size_t fewViews = 16;

} // namespace

std::size_t PlacedStreets::bytes() const { return view.bytes() + streets.capacity() * sizeof(PlacedStreet); }

StreetStore::StreetStore(std::string database, std::size_t memory)
    : database_(std::move(database)), memory_(memory), stamps_(database_, "POSTAL") {}

StreetStore::Province& StreetStore::province(const std::string& digits) {
    const auto found = std::ranges::find(provinces_, digits, &Province::digits);
    if (found != provinces_.end()) {
        provinces_.splice(provinces_.begin(), provinces_, found);
    } else {
        provinces_.push_front({digits, Kept<ProvinceNames, ProvinceReading>([this, digits] {
                                   return std::make_unique<ProvinceReading>(database_, digits);
                               })});
    }
    return provinces_.front();
}

bool StreetStore::renew(const std::string& digits, Clock::time_point end) {
    if (!stamps_.isOpen()) {
        stamps_.open();
    }
    Province& wanted = province(digits);
    const std::shared_ptr<ProvinceNames> before = wanted.kept.names();
    const bool isReady = wanted.kept.renew(TableStamp::of(stamps_), end);
    if (wanted.kept.names() != before) {
        dropViewsOf(before);
        keepWithinBudget();
    }
    return isReady;
}

std::shared_ptr<const PlacedStreets> StreetStore::placed(const std::string& digits, const std::string& key,
                                                         const Owner& owner) {
    if (!province(digits).kept.names()) { // another province of the same place took its memory
        static_cast<void>(renew(digits, Clock::time_point::max()));
    }
    const std::shared_ptr<const ProvinceNames> names = province(digits).kept.names();
    const std::string whole = digits + ' ' + key;
    if (const auto known = viewsByKey_.find(whole); known != viewsByKey_.end()) {
        views_.splice(views_.begin(), views_, known->second);
        return views_.front().streets;
    }
    std::vector<const std::string*> owners;
    for (const StreetPlace& place : names->places) {
        owners.push_back(owner(place));
    }
    std::vector<PlacedStreet> streets;
    std::vector<NameNumber> distinct;
    for (const StreetEntry& entry : names->entries) {
        const std::string* const ineCode = owners[entry.place];
        if (ineCode == nullptr) {
            continue;
        }
        const bool isOwn = !ineCode->empty() && names->places[entry.place].ineCode == *ineCode;
        auto same = streets.rbegin();
        while (same != streets.rend() && same->name == entry.name &&
               (same->type != entry.type || same->ineCode != *ineCode)) {
            ++same;
        }
        if (same != streets.rend() && same->name == entry.name) {
            same->isOwn = same->isOwn || isOwn;
            continue;
        }
        if (distinct.empty() || distinct.back() != entry.name) {
            distinct.push_back(entry.name);
        }
        streets.push_back({entry.name, entry.type, isOwn, *ineCode});
    }
    NameView view(names->pool, std::move(distinct));
    views_.push_front({whole, std::make_shared<const PlacedStreets>(
                                  PlacedStreets{names, digits, std::move(streets), std::move(view)})});
    viewsByKey_.emplace(whole, views_.begin());
    viewBytes_ += views_.front().streets->bytes();
    std::shared_ptr<const PlacedStreets> made = views_.front().streets;
    keepWithinBudget();
    return made;
}

bool StreetStore::hasWord(const std::string& digits, std::string_view folded) {
    const std::shared_ptr<ProvinceNames>& names = province(digits).kept.names();
    return names && names->pool.find(folded) < names->pool.wordCount();
}

std::size_t StreetStore::bytes() const {
    std::size_t sum = viewBytes_;
    for (const Province& province : provinces_) {
        sum += province.kept.bytes();
    }
    return sum;
}

void StreetStore::dropOldestView() {
    viewBytes_ -= views_.back().streets->bytes();
    viewsByKey_.erase(views_.back().key);
    views_.pop_back();
}

void StreetStore::dropViewsOf(const std::shared_ptr<const ProvinceNames>& names) {
    for (auto view = views_.begin(); view != views_.end();) {
        if (view->streets->province == names) {
            viewBytes_ -= view->streets->bytes();
            viewsByKey_.erase(view->key);
            view = views_.erase(view);
        } else {
            ++view;
        }
    }
}

/// Places are made anew faster than provinces are read.
void StreetStore::keepWithinBudget() {
    while (views_.size() > mostViews || (views_.size() > fewViews && bytes() > memory_)) {
        dropOldestView();
    }
    while (provinces_.size() > 1 && bytes() > memory_) {
        const std::shared_ptr<const ProvinceNames> leaving = provinces_.back().kept.names();
        provinces_.pop_back();
        dropViewsOf(leaving);
    }
    while (views_.size() > 1 && bytes() > memory_) {
        dropOldestView();
    }
}

} // namespace ambrel::suggest
