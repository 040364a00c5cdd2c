// Finding and ranking municipalities.
#include "suggest/MunicipalitySuggester.h"

#include <algorithm>
#include <set>
#include <tuple>

#include "data/Province.h"
#include "dbase/system/trim.h"
#include "suggest/Letters.h"
#include "suggest/Marks.h"

namespace ambrel::suggest {
namespace {

constexpr double least = 0.5;
/// A locality comes after every municipality whose name is as near.
constexpr double localityShare = 0.85;

} // namespace

struct MunicipalitySuggester::Candidate {
    double points;
    const Municipality* municipality;
    NameNumber name; // that led to it
    NameKind kind;
    bool isBeginning;
    std::uint32_t farness;
    std::size_t length;

    [[nodiscard]] auto rank() const {
        return std::tuple(-points, kind == NameKind::Locality, !isBeginning, farness, length, kind,
                          std::string_view(municipality->name), std::string_view(municipality->ineCode));
    }
};

MunicipalitySuggester::MunicipalitySuggester(std::string database, const std::string& otherNames,
                                             ProvinceText& provinces)
    : database_(std::move(database)), otherNames_(otherNames), provinces_(provinces), kept_([this] {
          return std::make_unique<MunicipalityReading>(
              database_, otherNames_.empty() ? std::vector<OtherName>() : readOtherNames(otherNames_));
      }) {}

void MunicipalitySuggester::openCursor() {
    if (!cursor_) {
        cursor_.emplace(database_);
    }
}

bool MunicipalitySuggester::renew(Clock::time_point end) {
    if (!stamps_) {
        stamps_.emplace(database_, "MUNICIPI");
    }
    if (!stamps_->isOpen()) {
        stamps_->open();
    }
    const bool isReady = kept_.renew(TableStamp::of(*stamps_), end);
    if (isReady && indexed_ != kept_.names()) {
        indexed_ = kept_.names();
        ++generation_;
        byPostalCode_.clear();
        for (std::uint32_t i = 0; i < indexed_->municipalities.size(); ++i) {
            for (const std::string& code : indexed_->municipalities[i].postalCodes) {
                byPostalCode_.emplace(code, i);
            }
        }
    }
    return isReady;
}

const Municipality* MunicipalitySuggester::find(const std::string& ineCode) const {
    return kept_.names()->find(ineCode);
}

const Municipality* MunicipalitySuggester::onlyOneWith(const std::string& postalCode) const {
    const auto [first, last] = byPostalCode_.equal_range(postalCode);
    return first != last && std::next(first) == last ? &indexed_->municipalities[first->second] : nullptr;
}

std::optional<Municipality> MunicipalitySuggester::now(const std::string& ineCode) {
    openCursor();
    return cursor_->find(ineCode);
}

std::vector<MunicipalitySuggester::Candidate>
MunicipalitySuggester::byCode(const std::string& digits, const std::string& province) const {
    std::vector<Candidate> found;
    const double share = 0.9 * static_cast<double>(digits.size()) / postalCodeDigits;
    const bool isWhole = digits.size() == postalCodeDigits;
    std::set<const Municipality*> seen;
    const auto add = [&](const Municipality& one, double points, std::uint32_t farness) {
        if ((province.empty() || provinceOf(one.ineCode) == province) && seen.insert(&one).second) {
            found.push_back({points, &one, 0, NameKind::Own, true, farness, 0});
        }
    };
    for (auto entry = byPostalCode_.lower_bound(digits);
         entry != byPostalCode_.end() && entry->first.starts_with(digits); ++entry) {
        add(indexed_->municipalities[entry->second], isWhole ? 1.0 : share, 0);
    }
    const std::vector<Municipality>& all = indexed_->municipalities;
    for (auto one = std::ranges::lower_bound(all, digits, {}, &Municipality::ineCode);
         one != all.end() && one->ineCode.starts_with(digits); ++one) {
        add(*one, isWhole ? 1.0 : share, 1);
    }
    return found;
}

std::vector<MunicipalitySuggester::Candidate>
MunicipalitySuggester::byName(const MunicipalityQuery& query, const std::string& province) const {
    const std::vector<NameWord> words = foldName(query.text);
    if (words.empty()) {
        return {};
    }
    const std::vector<TypedStreet::Reading> whole{{0, words.size(), 0, {}}};
    const NameView& view = query.withLocalities ? *indexed_->all : *indexed_->own;
    std::map<std::uint32_t, Candidate> best;
    for (const NameMatch& match : matchNames(view, {words, whole}, least)) {
        const MunicipalityNames::Alias& alias = indexed_->aliases[match.name];
        const Municipality& municipality = indexed_->municipalities[alias.municipality];
        if (!province.empty() && provinceOf(municipality.ineCode) != province) {
            continue;
        }
        const double points = alias.kind == NameKind::Locality ? localityShare * match.points : match.points;
        const Candidate candidate{points,
                                  &municipality,
                                  match.name,
                                  alias.kind,
                                  match.isBeginning,
                                  match.farness,
                                  indexed_->pool.joined(match.name).size()};
        const auto [entry, isNew] = best.try_emplace(alias.municipality, candidate);
        if (!isNew && candidate.rank() < entry->second.rank()) {
            entry->second = candidate;
        }
    }
    std::vector<Candidate> found;
    for (const auto& [number, candidate] : best) {
        if (candidate.points >= least) {
            found.push_back(candidate);
        }
    }
    return found;
}

std::optional<SuggestedMunicipality> MunicipalitySuggester::readAgain(const Candidate& candidate,
                                                                      const std::string& typed) {
    const std::string& ineCode = candidate.municipality->ineCode;
    const std::optional<Municipality> live = now(ineCode);
    if (!live) {
        return std::nullopt;
    }
    SuggestedMunicipality suggestion;
    suggestion.points = candidate.points;
    suggestion.name = live->name;
    suggestion.ineCode = ineCode;
    suggestion.province = provinceOf(ineCode);
    suggestion.postalCodes = live->postalCodes;
    if (candidate.length == 0) { // by a code
        return suggestion;
    }
    const std::string_view name = indexed_->pool.stored(candidate.name);
    if (candidate.kind == NameKind::Locality && !cursor_->mentions(ineCode, name)) {
        return std::nullopt; // the locality is gone
    }
    suggestion.isLocality = candidate.kind == NameKind::Locality;
    if (name != live->name) {
        suggestion.found = name;
    }
    suggestion.marks = matchingLetters(name, typed);
    return suggestion;
}

std::vector<SuggestedMunicipality> MunicipalitySuggester::suggest(const MunicipalityQuery& query,
                                                                  std::size_t most) {
    static_cast<void>(renew(Clock::time_point::max()));
    const std::string province = provinces_.digitsOf(query.province);
    if (!query.province.empty() && province.empty()) {
        return {};
    }
    const std::string typed(dbase::trimmedLine(query.text));
    const bool isCode =
        typed.size() >= 2 && typed.size() <= postalCodeDigits && std::ranges::all_of(typed, isDigit);
    std::vector<Candidate> candidates = isCode ? byCode(typed, province) : byName(query, province);
    std::ranges::sort(candidates, {}, &Candidate::rank);
    std::vector<SuggestedMunicipality> suggestions;
    for (const Candidate& candidate : candidates) {
        if (suggestions.size() == most) {
            break;
        }
        if (auto suggestion = readAgain(candidate, typed)) {
            suggestions.push_back(std::move(*suggestion));
        }
    }
    return suggestions;
}

} // namespace ambrel::suggest
