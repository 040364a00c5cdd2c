// Trying the readings of an address, exactly first and by suggestions then.
#include "address/AddressValidator.h"

#include <algorithm>
#include <array>
#include <optional>
#include <tuple>

#include "address/AddressDirectory.h"
#include "address/AddressLine.h"
#include "address/GivenReadings.h"
#include "address/MunicipalityBook.h"
#include "address/OptionVerdict.h"
#include "address/OptionWeight.h"
#include "address/PlaceSearch.h"
#include "address/PlainText.h"
#include "address/StreetSearch.h"
#include "address/StreetTypeMatch.h"
#include "address/TidyText.h"
#include "data/Province.h"
#include "dbase/lock/read_scope.h"
#include "services/Rnumcad.h"

namespace ambrel {
namespace {

/// Readings that are worth asking the suggestions about.
constexpr std::size_t mostNearReadings = 4;
/// Municipalities whose streets are compared where the name of the municipality is not certain.
constexpr std::size_t mostNearPlaces = 4;
/// From here on a street is near enough to be shown as doubtful.
constexpr double leastNear = 0.6;
/// Writings of provinces that are remembered: a file may hold anything in that column.
constexpr std::size_t mostProvinceTexts = 1'000;

bool isEmpty(const GivenAddress& given) {
    for (const std::string* part : {&given.line, &given.type, &given.street, &given.number, &given.rest,
                                    &given.postalCode, &given.municipality, &given.province}) {
        if (!withoutBlanks(*part).empty()) {
            return false;
        }
    }
    return true;
}

/// What was found for one reading.
struct Finding {
    AddressQuestion question;
    std::vector<PlaceOption> places;
    std::vector<AddressOption> options; // the likeliest first
};

/// Whether a reading leaves nothing of the street aside. A name may begin with two kinds of street, as in
/// "C/ Costanilla de la Herradura". `rest`: what a column says.
bool isAllRead(const Finding& finding, std::string_view rest) {
    const AddressParts& parts = finding.question.parts;
    return parts.rest == rest && parts.type.find(' ') == std::string::npos;
}

/// An address that was settled, as one of several.
AddressAlternative alternativeOf(const JudgedAddress& judged) {
    return {.points = judged.confidence,
            .ineCode = judged.ineCode,
            .municipality = judged.municipality,
            .province = judged.province,
            .type = judged.type,
            .street = judged.street,
            .postalCodes = {judged.postalCode}};
}

bool isSameStreet(const AddressOption& a, const AddressOption& b) {
    return a.street == b.street && a.place.municipality->ineCode == b.place.municipality->ineCode;
}

bool hasSameCode(const AddressOption& a, const AddressOption& b) {
    return a.code->isSure() && b.code->isSure() && a.code->stretch.postalCode == b.code->stretch.postalCode;
}

/// The best of the verdicts after which one has to look further; of equal ones the most likely, then the
/// first.
class Best {
public:
    /// Whether nobody needs to look further. Keeps a verdict otherwise, if it is the best so far.
    [[nodiscard]] bool isDecidedBy(JudgedAddress& judged, bool isAllRead) {
        if (isSettled(judged.verdict) && isAllRead) {
            return true;
        }
        const auto rank = [](const JudgedAddress& one) { return std::pair(one.verdict, one.confidence); };
        if (!best_ || rank(judged) > rank(*best_)) {
            best_ = std::move(judged);
        }
        return false;
    }
    /// Null if there was none.
    [[nodiscard]] std::optional<JudgedAddress>& judged() { return best_; }

private:
    std::optional<JudgedAddress> best_;
};

} // namespace

class AddressValidator::Implementation {
public:
    Implementation(const std::string& database, const ValidationOptions& options)
        : options_(options), directory_(database), book_(database, directory_),
          suggesters_(database, options.memory), types_(database), places_(book_, suggesters_),
          streets_(directory_, suggesters_, types_) {}

    [[nodiscard]] JudgedAddress validate(const GivenAddress& given);
    [[nodiscard]] std::string provinceName(const std::string& province) {
        return suggesters_.provinces.nameOf(province);
    }

private:
    [[nodiscard]] AddressQuestion questionOf(AddressParts&& parts);
    [[nodiscard]] Finding findExactly(AddressParts&& reading);
    void findNear(Finding& finding);
    void addCodeReadings(GivenReadings& readings);
    [[nodiscard]] JudgedAddress judge(Finding& finding);
    [[nodiscard]] Verdict verdictOnBest(Finding& finding) const;
    [[nodiscard]] JudgedAddress judgeOpen(const Finding& finding, Verdict verdict) const;
    [[nodiscard]] JudgedAddress judge(const GivenAddress& given);
    [[nodiscard]] bool hasTwoTypes(const GivenAddress& given, const std::string& street);
    [[nodiscard]] JudgedAddress judgeWithoutStreet(const Finding& finding);
    [[nodiscard]] std::optional<Verdict> rivalry(std::vector<AddressOption>& options) const;

    ValidationOptions options_;
    AddressDirectory directory_;
    MunicipalityBook book_;
    Suggesters suggesters_;
    StreetTypeMatch types_;
    PlaceSearch places_;
    StreetSearch streets_;
    suggest::TextMap<std::string> provinces_; // by what was written
};

AddressQuestion AddressValidator::Implementation::questionOf(AddressParts&& parts) {
    AddressQuestion question;
    question.municipality = tidied(parts.municipality);
    question.street = tidied(parts.street);
    question.postalCode = readPostalCode(parts.postalCode);
    question.hasOtherText =
        question.postalCode.empty() && parts.postalCode.find_first_not_of("0 -.") != std::string::npos;
    if (!parts.province.empty()) {
        if (provinces_.size() >= mostProvinceTexts) {
            provinces_.clear();
        }
        const auto [known, isNew] = provinces_.try_emplace(parts.province);
        if (isNew) {
            known->second = suggesters_.provinces.digitsOf(parts.province);
        }
        question.province = known->second;
        question.isProvinceUnknown = question.province.empty();
    }
    // In "1O" the letter may be a nought.
    question.number =
        readHouseNumber(parts.numberSuffix == "O" ? parts.number + parts.numberSuffix : parts.number);
    if (parts.number.find_first_of("Kk") != std::string::npos && tidied(parts.number).starts_with("KM")) {
        question.number = {};
    }
    question.parts = std::move(parts);
    return question;
}

Finding AddressValidator::Implementation::findExactly(AddressParts&& reading) {
    Finding finding{questionOf(std::move(reading)), {}, {}};
    const AddressQuestion& question = finding.question;
    finding.places = places_.exact(question);
    // Namesakes: the postal code may choose among them.
    if (finding.places.size() > 1 && !question.postalCode.empty()) {
        std::vector<PlaceOption> chosen;
        std::ranges::copy_if(finding.places, std::back_inserter(chosen), [&](const PlaceOption& one) {
            return one.municipality->hasPostalCode(question.postalCode);
        });
        if (!chosen.empty()) {
            finding.places = std::move(chosen);
        }
    }
    for (const PlaceOption& place : finding.places) {
        streets_.addExact(question, place, finding.options);
    }
    return finding;
}

void AddressValidator::Implementation::findNear(Finding& finding) {
    if (finding.places.empty()) {
        finding.places = places_.near(finding.question);
    }
    finding.options.clear();
    std::size_t tried = 0;
    for (const PlaceOption& place : finding.places) {
        if (tried++ == mostNearPlaces) {
            break;
        }
        const std::size_t before = finding.options.size();
        streets_.addExact(finding.question, place, finding.options);
        if (finding.options.size() == before) {
            streets_.addNear(finding.question, place, finding.options);
        }
    }
}

/// "DS Son Remei": words that only the tables know for a type.
void AddressValidator::Implementation::addCodeReadings(GivenReadings& readings) {
    const std::size_t count = readings.likely.size();
    for (std::size_t i = 0; i < count; ++i) {
        const AddressParts& reading = readings.likely[i];
        const std::size_t blank = reading.street.find(' ');
        if (!reading.type.empty() || blank == std::string::npos || blank > 3) {
            continue;
        }
        const std::string word = tidied(std::string_view(reading.street).substr(0, blank));
        if (!types_.isCode(word)) {
            continue;
        }
        AddressParts split = reading;
        split.type = word;
        split.street = withoutBlanks(std::string_view(reading.street).substr(blank));
        readings.likely.push_back(std::move(split));
    }
}

/// What others that are as likely make of the first option; nothing if there are none.
std::optional<Verdict> AddressValidator::Implementation::rivalry(std::vector<AddressOption>& options) const {
    AddressOption& best = options.front();
    bool hasOtherCode = false, hasOther = false, isTypeOpen = false;
    for (auto other = options.begin() + 1; other != options.end(); ++other) {
        // Whether the other one may be missing from the tables says nothing about its likeness.
        if (best.confidence - other->confidence - other->otherDoubt >= options_.lead ||
            (best.isCertain() && !other->isCertain())) {
            continue;
        }
        if (isSameStreet(best, *other) && hasSameCode(best, *other) && best.typeDoubt == 0) {
            // Where none was written, it does not matter which one is meant.
            isTypeOpen = isTypeOpen || other->typeDoubt == 0;
        } else {
            const bool isElsewhere = best.place.municipality != other->place.municipality;
            hasOther = true;
            hasOtherCode = hasOtherCode || isElsewhere || !hasSameCode(best, *other);
        }
    }
    if (isTypeOpen && !hasOther) {
        // Without a type, the look-ups see all of them.
        const bool isOneCode = std::ranges::all_of(options, [&](const AddressOption& one) {
            return !isSameStreet(best, one) || hasSameCode(best, one);
        });
        if (!isOneCode) {
            return Verdict::Ambiguous;
        }
        best.type.clear();
    }
    if (!hasOther) {
        return std::nullopt;
    }
    return hasOtherCode || best.isCertain() ? Verdict::Ambiguous : Verdict::Doubtful;
}

JudgedAddress AddressValidator::Implementation::judgeWithoutStreet(const Finding& finding) {
    const std::vector<PlaceOption>& places = finding.places;
    const bool isKnown = places.size() == 1 && 1 - places.front().doubt >= options_.threshold;
    Verdict verdict = Verdict::UnknownStreet;
    if (!isKnown) {
        const bool areNamesakes = places.size() > 1 && places.front().source == PlaceSource::Name &&
                                  places.front().doubt == places[1].doubt;
        verdict = areNamesakes ? Verdict::Ambiguous : Verdict::UnknownMunicipality;
    }
    JudgedAddress judged =
        judgedWithoutStreet(isKnown ? &places.front() : nullptr, verdict, finding.question);
    for (const PlaceOption& place : places) {
        if (!isKnown && judged.alternatives.size() < mostAlternatives) {
            judged.alternatives.push_back(alternativeOf(place));
        }
    }
    return judged;
}

/// On the first option, in the light of the others.
Verdict AddressValidator::Implementation::verdictOnBest(Finding& finding) const {
    const std::optional<Verdict> rivals = rivalry(finding.options);
    const Verdict verdict = verdictOn(finding.options.front(), finding.question, options_);
    return rivals && verdict != Verdict::Doubtful ? *rivals : verdict;
}

/// Something is near, and cannot be taken.
JudgedAddress AddressValidator::Implementation::judgeOpen(const Finding& finding, Verdict verdict) const {
    const AddressOption& first = finding.options.front();
    const bool isOnePlace = std::ranges::all_of(finding.options, [&](const AddressOption& one) {
        return one.place.municipality == first.place.municipality;
    });
    const bool isPlaceKnown = isOnePlace && 1 - first.place.doubt >= options_.threshold;
    JudgedAddress judged =
        judgedWithoutStreet(isPlaceKnown ? &first.place : nullptr, verdict, finding.question);
    judged.confidence = first.confidence;
    return judged;
}

JudgedAddress AddressValidator::Implementation::judge(Finding& finding) {
    std::vector<AddressOption>& options = finding.options;
    for (AddressOption& option : options) {
        weigh(option, finding.question);
    }
    // What is as written comes first, whatever the postal code says.
    if (options.size() > 1) {
        std::ranges::stable_sort(options, std::greater<>(), [](const AddressOption& option) {
            return std::pair(option.isCertain(), option.confidence);
        });
    }
    const bool isNear = !options.empty() && options.front().points >= leastNear;
    const Verdict verdict = isNear ? verdictOnBest(finding) : Verdict::UnknownStreet;
    const bool isTaken = isNear && verdict != Verdict::Doubtful && verdict != Verdict::Ambiguous;
    JudgedAddress judged = isTaken  ? judgedAs(options.front(), verdict, finding.question)
                           : isNear ? judgeOpen(finding, verdict)
                                    : judgeWithoutStreet(finding);
    if (!isSettled(judged.verdict)) {
        for (std::size_t shown = isTaken ? 1 : 0;
             shown < options.size() && judged.alternatives.size() < mostAlternatives; ++shown) {
            judged.alternatives.push_back(alternativeOf(options[shown]));
        }
    }
    return judged;
}

/// Whether the street's column names a type that is not that of the type's column, and not a part of the
/// name.
bool AddressValidator::Implementation::hasTwoTypes(const GivenAddress& given, const std::string& street) {
    const std::string_view column = withoutBlanks(given.type);
    if (column.empty() || hasSameLetters(given.street, street)) {
        return false;
    }
    const std::string own = readStreetText(given.street).front().type;
    const std::string ofName = readStreetText(street).front().type; // CL "PLAZA MAYOR"
    const bool isOfName = !ofName.empty() && !types_.contradict(ofName, own);
    return !own.empty() && !isOfName && types_.contradict(column, own);
}

/// "CL" and "Plaza Mayor": either type may be the right one, so that both must lead to the same code.
JudgedAddress AddressValidator::Implementation::validate(const GivenAddress& given) {
    JudgedAddress judged = judge(given);
    if (!isSettled(judged.verdict) || !hasTwoTypes(given, judged.street)) {
        return judged;
    }
    GivenAddress withOwn = given;
    withOwn.type.clear();
    JudgedAddress other = judge(withOwn);
    const bool isSame = judged.ineCode == other.ineCode && judged.street == other.street &&
                        judged.postalCode == other.postalCode;
    if (!isSettled(other.verdict) || (isSame && other.confidence < judged.confidence)) {
        return other;
    }
    if (!isSame) {
        const std::array both{alternativeOf(judged), alternativeOf(other)};
        judged.verdict = Verdict::Ambiguous;
        judged.alternatives.assign(both.begin(), both.end());
        judged.changes.clear();
        judged.type = withoutBlanks(given.type);
        judged.street = withoutBlanks(given.street);
        judged.postalCode = readPostalCode(given.postalCode);
        judged.key.clear();
    }
    return judged;
}

JudgedAddress AddressValidator::Implementation::judge(const GivenAddress& given) {
    if (isEmpty(given)) {
        return {};
    }
    const dbase::ReadScope scope;
    book_.renew();
    GivenReadings readings = readingsOf(given);
    addCodeReadings(readings);
    const std::string_view rest = withoutBlanks(given.rest);
    // Where the type has a column, a kind of street in the name belongs to it.
    const bool isTypeGiven = !withoutBlanks(given.type).empty();
    Best best;
    for (AddressParts& reading : readings.written) {
        Finding finding = findExactly(std::move(reading));
        if (!finding.options.empty()) {
            JudgedAddress judged = judge(finding);
            if (best.isDecidedBy(judged, true)) {
                return judged;
            }
        }
    }
    std::vector<Finding> findings;
    for (const bool areWhole : {isTypeGiven, !isTypeGiven}) {
        if (areWhole) {
            addWholeReadings(readings, given);
        }
        for (AddressParts& reading : areWhole ? readings.whole : readings.likely) {
            Finding finding = findExactly(std::move(reading));
            if (!finding.options.empty()) {
                JudgedAddress judged = judge(finding);
                if (best.isDecidedBy(judged, isAllRead(finding, rest))) {
                    return judged;
                }
            }
            // The suggestions find a type in a name themselves.
            if (!areWhole || isTypeGiven) {
                findings.push_back(std::move(finding));
            }
        }
    }
    if (best.judged()) {
        return *std::move(best.judged());
    }
    findings.resize(std::min(findings.size(), mostNearReadings));
    for (Finding& finding : findings) {
        findNear(finding);
        JudgedAddress judged = judge(finding);
        if (best.isDecidedBy(judged, isAllRead(finding, rest))) {
            return judged;
        }
    }
    return *std::move(best.judged());
}

std::size_t provinceHint(const GivenAddress& given) {
    if (const std::string code = readPostalCode(given.postalCode); !code.empty()) {
        return static_cast<std::size_t>(Cad_Int(provinceOf(code)));
    }
    if (const std::string code = postalCodeWithin(given.line); !code.empty()) {
        return static_cast<std::size_t>(Cad_Int(provinceOf(code)));
    }
    const std::string& place = withoutBlanks(given.province).empty() ? given.municipality : given.province;
    return std::hash<std::string>()(tidied(place));
}

AddressValidator::AddressValidator(std::string database, ValidationOptions options)
    : implementation_(std::make_unique<Implementation>(database, options)) {}

AddressValidator::~AddressValidator() = default;

JudgedAddress AddressValidator::validate(const GivenAddress& given) {
    return implementation_->validate(given);
}

std::string AddressValidator::provinceName(const std::string& province) {
    return implementation_->provinceName(province);
}

} // namespace ambrel
