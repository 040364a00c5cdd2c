// Keeps what MUNICIPI says.
#include "directory/audit/PlaceBook.h"

#include <algorithm>
#include <numeric>
#include <set>

namespace ambrel::directory {

namespace {

constexpr std::size_t codes = 100'000;
constexpr std::uint32_t lastProvince = 52;

std::uint64_t provinceBit(std::uint32_t province) { return std::uint64_t{1} << (province & 63U); }

char markOf(std::string_view text) { return text.empty() ? ' ' : text.front(); }

} // namespace

std::optional<std::uint32_t> fiveDigits(std::string_view text) {
    if (text.size() != 5 || text.find_first_not_of("0123456789") != std::string_view::npos) {
        return std::nullopt;
    }
    std::uint32_t number = 0;
    for (const char c : text) {
        number = number * 10 + static_cast<std::uint32_t>(c - '0');
    }
    return number;
}

bool isPostalCode(std::string_view text) {
    const auto number = fiveDigits(text);
    return number && *number >= 1000 && *number / 1000 <= lastProvince && *number % 1000 != 0;
}

PlaceBook::PlaceBook() : placeByIne_(codes, -1), firstUse_(codes + 1) {}

void PlaceBook::add(const MunicipalityRow& row) {
    const auto ine = fiveDigits(row.ineCode);
    if (!ine) {
        return;
    }
    std::int32_t& place = placeByIne_[*ine];
    if (place < 0) {
        place = static_cast<std::int32_t>(places_.size());
        places_.push_back({.ineCode = row.ineCode, .name = row.name, .record = row.record});
    }
    const auto number = static_cast<PlaceNumber>(place);
    if (!places_[number].isNamed && !row.isEntity) {
        places_[number].isNamed = true;
        places_[number].name = row.name;
        places_[number].record = row.record;
    }
    if (isPostalCode(row.postalCode)) {
        const std::uint32_t code = *fiveDigits(row.postalCode);
        places_[number].provinces |= provinceBit(code / 1000);
        const char mark = markOf(row.capital);
        uses_.push_back({code, number, mark, row.isEntity});
        if (places_[number].marks.find(mark) == std::string::npos) {
            places_[number].marks += mark;
        }
    }
}

void PlaceBook::finish() {
    std::ranges::sort(uses_);
    for (std::size_t i = 0; i < uses_.size(); ++i) {
        const bool isNew =
            i == 0 || uses_[i].postalCode != uses_[i - 1].postalCode || uses_[i].place != uses_[i - 1].place;
        places_[uses_[i].place].codes += isNew ? 1 : 0;
        ++firstUse_[uses_[i].postalCode + 1];
    }
    std::partial_sum(firstUse_.begin(), firstUse_.end(), firstUse_.begin());
}

std::optional<PlaceNumber> PlaceBook::placeOfIne(std::string_view ineCode) const {
    const auto ine = fiveDigits(ineCode);
    return ine && placeByIne_[*ine] >= 0 ? std::optional(static_cast<PlaceNumber>(placeByIne_[*ine]))
                                         : std::nullopt;
}

std::span<const PlaceBook::Use> PlaceBook::usesOf(std::string_view postalCode) const {
    const auto code = fiveDigits(postalCode);
    if (!code) {
        return {};
    }
    return std::span(uses_).subspan(firstUse_[*code], firstUse_[*code + 1] - firstUse_[*code]);
}

bool PlaceBook::hasCode(PlaceNumber place, std::string_view postalCode) const {
    return std::ranges::any_of(usesOf(postalCode), [&](const Use& use) { return use.place == place; });
}

bool PlaceBook::isOfEntity(PlaceNumber place, std::string_view postalCode) const {
    return std::ranges::any_of(usesOf(postalCode),
                               [&](const Use& use) { return use.place == place && use.isEntity; });
}

bool PlaceBook::hasProvince(PlaceNumber place, std::string_view province) const {
    const auto number = fiveDigits(std::string(province) + "000");
    return number && *number / 1000 <= lastProvince &&
           (places_[place].provinces & provinceBit(*number / 1000)) != 0;
}

bool PlaceBook::hasMark(PlaceNumber place, std::string_view mark) const {
    return places_[place].marks.find(markOf(mark)) != std::string::npos;
}

std::optional<PlaceNumber> PlaceBook::placeOf(const StreetRow& row) const {
    if (const auto place = placeOfIne(row.ineCode)) {
        return place;
    }
    const std::span<const Use> uses = usesOf(row.postalCode);
    if (uses.empty()) {
        return std::nullopt;
    }
    if (uses.front().place == uses.back().place) {
        return uses.front().place;
    }
    std::set<PlaceNumber> named;
    for (const Use& use : uses) {
        if (!row.municipality.empty() && places_[use.place].name == row.municipality) {
            named.insert(use.place);
        }
    }
    return named.size() == 1 ? std::optional(*named.begin()) : std::nullopt;
}

std::optional<char> PlaceBook::capitalOf(const StreetRow& row) const {
    const auto place = placeOfIne(row.ineCode);
    std::set<char> marks;
    for (const Use& use : usesOf(row.postalCode)) {
        if (!place || use.place == *place) {
            marks.insert(use.capital);
        }
    }
    return marks.size() == 1 && *marks.begin() != ' ' ? std::optional(*marks.begin()) : std::nullopt;
}

} // namespace ambrel::directory
