// Looking municipalities up once.
#include "address/MunicipalityBook.h"

#include <algorithm>

#include "dbase/dataset/row_walk.h"
#include "dbase/lock/read_scope.h"

namespace ambrel {
namespace {

/// More than a country has; a file of nonsense has more names.
constexpr std::size_t mostKept = 20'000;
constexpr std::size_t mostLately = std::size_t{1} << 14; // remainders

} // namespace

MunicipalityBook::MunicipalityBook(const std::string& database, AddressDirectory& directory)
    : directory_(directory), rows_(database, "MUNICIPI", "CODPOSTAL"), lately_(mostLately) {
    rows_.open();
    stamp_ = suggest::TableStamp::of(rows_);
}

void MunicipalityBook::renew() {
    if (const suggest::TableStamp now = suggest::TableStamp::of(rows_); now != stamp_) {
        stamp_ = now;
        forget();
        byIneCode_.clear();
    }
}

void MunicipalityBook::forget() {
    byName_.clear();
    byPostalCode_.clear();
    std::ranges::fill(lately_, std::array<Lately, 2>());
}

void MunicipalityBook::keepWithinBounds() {
    if (byName_.size() + byPostalCode_.size() > mostKept) {
        forget();
    }
}

/// Null if it was not asked for lately.
const MunicipalityBook::Named* MunicipalityBook::latelyNamed(std::size_t hash) const {
    const auto& [last, before] = lately_[hash % mostLately];
    return last.hash == hash ? last.named : before.hash == hash ? before.named : nullptr;
}

// Each leads to the next: the hash, the name, the list, the municipality, its texts.
void MunicipalityBook::expect(std::span<const std::string_view> names) {
    expected_.clear();
    expectedHashes_.clear();
    for (const std::string_view name : names) {
        expectedHashes_.push_back(suggest::TextHash()(name));
        __builtin_prefetch(&lately_[expectedHashes_.back() % mostLately]);
    }
    for (const std::size_t hash : expectedHashes_) {
        if (const Named* const known = latelyNamed(hash)) {
            expected_.push_back(known);
            __builtin_prefetch(known);
            __builtin_prefetch(&known->second);
        }
    }
    for (const Named* const known : expected_) {
        __builtin_prefetch(known->first.data());
        __builtin_prefetch(known->second.data());
    }
    // Plain loops: the compiler drops calls of a lambda that does nothing but request.
    for (const Named* const known : expected_) {
        if (!known->second.empty()) {
            __builtin_prefetch(known->second.front());
            __builtin_prefetch(&known->second.front()->provinces);
        }
    }
    for (const Named* const known : expected_) {
        if (!known->second.empty()) {
            __builtin_prefetch(known->second.front()->provinces.data());
            __builtin_prefetch(known->second.front()->postalCodes.data());
        }
    }
}

const std::vector<MunicipalityPointer>& MunicipalityBook::named(std::string_view name) {
    const std::size_t hash = suggest::TextHash()(name);
    if (const Named* const known = latelyNamed(hash); known != nullptr && known->first == name) {
        return known->second;
    }
    const Named& found = findNamed(name);
    auto& [last, before] = lately_[hash % mostLately];
    before = last;
    last = {hash, &found};
    return found.second;
}

const MunicipalityBook::Named& MunicipalityBook::findNamed(std::string_view name) {
    if (const auto known = byName_.find(name); known != byName_.end()) {
        return *known;
    }
    keepWithinBounds();
    Some found;
    for (const Municipality& one : directory_.municipalitiesNamed(std::string(name))) {
        found.push_back(find(one.ineCode));
    }
    return *byName_.emplace(name, std::move(found)).first;
}

const std::vector<MunicipalityPointer>& MunicipalityBook::withPostalCode(std::string_view code) {
    if (const auto known = byPostalCode_.find(code); known != byPostalCode_.end()) {
        return known->second;
    }
    keepWithinBounds();
    std::vector<std::string> ineCodes;
    {
        const dbase::ReadScope scope;
        if (rows_.seek({{"CODPOSTAL", std::string(code)}}, dbase::SeekMode::Exact)) {
            dbase::forEachRowWhile(
                rows_, [&] { return postalCode_.view() == code; },
                [&] { ineCodes.push_back(ineCode_.text()); });
        }
    }
    std::ranges::sort(ineCodes);
    ineCodes.erase(std::unique(ineCodes.begin(), ineCodes.end()), ineCodes.end());
    Some found;
    for (const std::string& ineCode : ineCodes) {
        if (MunicipalityPointer one = find(ineCode)) {
            found.push_back(std::move(one));
        }
    }
    return byPostalCode_.emplace(code, std::move(found)).first->second;
}

MunicipalityPointer MunicipalityBook::find(const std::string& ineCode) {
    const auto [entry, isNew] = byIneCode_.try_emplace(ineCode);
    if (isNew) {
        if (auto one = directory_.municipality(ineCode)) {
            entry->second = std::make_unique<const Municipality>(std::move(*one));
        }
    }
    return entry->second.get();
}

} // namespace ambrel
