// Keeping provinces, and what places have of them.
#include "suggest/StreetStore.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace ambrel::suggest {
namespace {

/// More places than a user types streets of in a day; an administrator's file has many.
constexpr std::size_t mostViews = 256;

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
        views_.remove_if([&](const View& view) { return view.streets->province == before; });
        keepWithinBudget();
    }
    return isReady;
}

std::shared_ptr<const PlacedStreets> StreetStore::placed(const std::string& digits, const std::string& key,
                                                         const Owner& owner) {
    const std::shared_ptr<const ProvinceNames> names = province(digits).kept.names();
    const std::string whole = digits + ' ' + key;
    const auto known = std::ranges::find(views_, whole, &View::key);
    if (known != views_.end() && known->streets->province == names) {
        views_.splice(views_.begin(), views_, known);
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
    keepWithinBudget();
    return views_.front().streets;
}

std::size_t StreetStore::bytes() const {
    std::size_t sum = 0;
    for (const Province& province : provinces_) {
        sum += province.kept.bytes();
    }
    for (const View& view : views_) {
        sum += view.streets->bytes();
    }
    return sum;
}

void StreetStore::keepWithinBudget() {
    while (views_.size() > mostViews || (views_.size() > 1 && bytes() > memory_ && provinces_.size() == 1)) {
        views_.pop_back();
    }
    while (provinces_.size() > 1 && bytes() > memory_) {
        const std::shared_ptr<ProvinceNames> leaving = provinces_.back().kept.names();
        provinces_.pop_back();
        views_.remove_if([&](const View& view) { return view.streets->province == leaving; });
    }
}

} // namespace ambrel::suggest
