// Looking municipalities up once.
#include "address/MunicipalityBook.h"

#include <algorithm>

#include "dbase/dataset/row_walk.h"
#include "dbase/lock/read_scope.h"

namespace ambrel {
namespace {

/// More than a country has; a file of nonsense has more names.
constexpr std::size_t mostKept = 20'000;
constexpr std::size_t mostLately = std::size_t{1} << 15;

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
    std::ranges::fill(lately_, nullptr);
}

void MunicipalityBook::keepWithinBounds() {
    if (byName_.size() + byPostalCode_.size() > mostKept) {
        forget();
    }
}

const std::vector<MunicipalityPointer>& MunicipalityBook::named(std::string_view name) {
    const std::size_t place = suggest::TextHash()(name) % mostLately;
    if (const Named* const known = lately_[place]; known != nullptr && known->first == name) {
        return known->second;
    }
    auto known = byName_.find(name);
    if (known == byName_.end()) {
        keepWithinBounds();
        Some found;
        for (const Municipality& one : directory_.municipalitiesNamed(std::string(name))) {
            found.push_back(find(one.ineCode));
        }
        known = byName_.emplace(name, std::move(found)).first;
    }
    lately_[place] = &*known;
    return known->second;
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
