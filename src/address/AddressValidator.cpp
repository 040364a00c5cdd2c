// Trying the readings of an address, exactly first and by suggestions then.
#include "address/AddressValidator.h"

#include <algorithm>
#include <array>
#include <list>
#include <optional>
#include <span>
#include <utility>

#include "address/AddressLine.h"
#include "address/AddressLookup.h"
#include "address/GivenReadings.h"
#include "address/OptionVerdict.h"
#include "address/OptionWeight.h"
#include "address/PlainText.h"
#include "address/TidyText.h"
#include "data/Province.h"
#include "dbase/lock/read_scope.h"
#include "services/Rnumcad.h"

namespace ambrel {
namespace {

/// Readings that are worth asking the suggestions about.
constexpr std::size_t mostNearReadings = 4;
/// Addresses that wait for memory together: enough to hide the wait of one behind the others, few enough to
/// stay in the caches.
constexpr std::size_t mostTogether = 16;
/// From here on a street is near enough to be shown as doubtful.
constexpr double leastNear = 0.6;

bool isEmpty(const GivenAddress& given) {
    for (const std::string* part : {&given.line, &given.type, &given.street, &given.number, &given.rest,
                                    &given.postalCode, &given.municipality, &given.province}) {
        if (!withoutBlanks(*part).empty()) {
            return false;
        }
    }
    return true;
}

using Finding = AddressFinding;

/// An address that has been read.
struct Begun {
    GivenReadings readings = {};
    /// For the readings with all as the name, and the likeliest of the others: what most addresses need. None
    /// for an address without any text.
    std::vector<Finding> first = {};
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
        : options_(options), lookup_(database, options.memory) {}

    /// At most mostTogether.
    void validate(std::span<const AddressToJudge> addresses);
    [[nodiscard]] std::string provinceName(const std::string& province) {
        return lookup_.provinceName(province);
    }

private:
    void begin(const GivenAddress& given, Begun& begun);
    void validate(const GivenAddress& given, Begun& begun, JudgedAddress& judged);
    [[nodiscard]] JudgedAddress judge(const GivenAddress& given, Begun& begun);
    [[nodiscard]] JudgedAddress judgeAlone(const GivenAddress& given);
    [[nodiscard]] Finding& findExactly(AddressParts&& reading, std::list<Finding>& others);
    [[nodiscard]] JudgedAddress judge(Finding& finding);
    [[nodiscard]] Verdict verdictOnBest(Finding& finding) const;
    [[nodiscard]] JudgedAddress judgeOpen(const Finding& finding, Verdict verdict) const;
    [[nodiscard]] bool hasTwoTypes(const GivenAddress& given, const std::string& street);
    [[nodiscard]] JudgedAddress judgeWithoutStreet(const Finding& finding);
    [[nodiscard]] std::optional<Verdict> rivalry(std::vector<AddressOption>& options) const;

    ValidationOptions options_;
    AddressLookup lookup_;
    std::vector<Begun> begun_; // kept for its memory
};

void AddressValidator::Implementation::begin(const GivenAddress& given, Begun& begun) {
    begun.first.clear();
    if (isEmpty(given)) {
        return;
    }
    begun.readings = readingsOf(given);
    lookup_.addCodeReadings(begun.readings);
    for (AddressParts& reading : begun.readings.written) {
        lookup_.ask(std::move(reading), begun.first.emplace_back());
    }
    lookup_.ask(std::move(begun.readings.likely.front()), begun.first.emplace_back());
}

void AddressValidator::Implementation::validate(std::span<const AddressToJudge> addresses) {
    const dbase::ReadScope scope;
    lookup_.renew();
    begun_.resize(std::max(begun_.size(), addresses.size()));
    std::vector<Finding*> findings;
    for (std::size_t i = 0; i < addresses.size(); ++i) {
        begin(*addresses[i].given, begun_[i]);
        for (Finding& finding : begun_[i].first) {
            findings.push_back(&finding);
        }
    }
    lookup_.findAllPlaces(findings);
    for (std::size_t i = 0; i < addresses.size(); ++i) {
        validate(*addresses[i].given, begun_[i], *addresses[i].judged);
    }
}

/// Looks one of the other readings up.
Finding& AddressValidator::Implementation::findExactly(AddressParts&& reading, std::list<Finding>& others) {
    Finding& finding = others.emplace_back();
    lookup_.ask(std::move(reading), finding);
    lookup_.findPlaces(finding);
    lookup_.findStreets(finding);
    return finding;
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
    const bool isOfName = !ofName.empty() && !lookup_.contradict(ofName, own);
    return !own.empty() && !isOfName && lookup_.contradict(column, own);
}

/// "CL" and "Plaza Mayor": either type may be the right one, so that both must lead to the same code.
void AddressValidator::Implementation::validate(const GivenAddress& given, Begun& begun,
                                                JudgedAddress& judged) {
    judged = judge(given, begun);
    if (!isSettled(judged.verdict) || !hasTwoTypes(given, judged.street)) {
        return;
    }
    GivenAddress withOwn = given;
    withOwn.type.clear();
    JudgedAddress other = judgeAlone(withOwn);
    const bool isSame = judged.ineCode == other.ineCode && judged.street == other.street &&
                        judged.postalCode == other.postalCode;
    if (!isSettled(other.verdict) || (isSame && other.confidence < judged.confidence)) {
        judged = std::move(other);
    } else if (!isSame) {
        const std::array both{alternativeOf(judged), alternativeOf(other)};
        judged.verdict = Verdict::Ambiguous;
        judged.alternatives.assign(both.begin(), both.end());
        judged.changes.clear();
        judged.type = withoutBlanks(given.type);
        judged.street = withoutBlanks(given.street);
        judged.postalCode = readPostalCode(given.postalCode);
        judged.key.clear();
    }
}

JudgedAddress AddressValidator::Implementation::judgeAlone(const GivenAddress& given) {
    Begun begun;
    begin(given, begun);
    for (Finding& finding : begun.first) {
        lookup_.findPlaces(finding);
    }
    return judge(given, begun);
}

JudgedAddress AddressValidator::Implementation::judge(const GivenAddress& given, Begun& begun) {
    if (begun.first.empty()) {
        return {};
    }
    const std::string_view rest = withoutBlanks(given.rest);
    // Where the type has a column, a kind of street in the name belongs to it.
    const bool isTypeGiven = !withoutBlanks(given.type).empty();
    Best best;
    Finding& likeliest = begun.first.back();
    for (Finding& finding : std::span(begun.first).first(begun.first.size() - 1)) {
        lookup_.findStreets(finding);
        if (!finding.options.empty()) {
            JudgedAddress judged = judge(finding);
            if (best.isDecidedBy(judged, true)) {
                return judged;
            }
        }
    }
    std::list<Finding> others;
    std::vector<Finding*> findings;
    for (const bool areWhole : {isTypeGiven, !isTypeGiven}) {
        if (areWhole) {
            addWholeReadings(begun.readings, given);
        }
        std::vector<AddressParts>& readings = areWhole ? begun.readings.whole : begun.readings.likely;
        for (AddressParts& reading : readings) {
            const bool isLikeliest = !areWhole && &reading == readings.data();
            if (isLikeliest) {
                lookup_.findStreets(likeliest);
            }
            Finding& finding = isLikeliest ? likeliest : findExactly(std::move(reading), others);
            if (!finding.options.empty()) {
                JudgedAddress judged = judge(finding);
                if (best.isDecidedBy(judged, isAllRead(finding, rest))) {
                    return judged;
                }
            }
            // The suggestions find a type in a name themselves.
            if (!areWhole || isTypeGiven) {
                findings.push_back(&finding);
            }
        }
    }
    if (best.judged()) {
        return *std::move(best.judged());
    }
    findings.resize(std::min(findings.size(), mostNearReadings));
    for (Finding* finding : findings) {
        lookup_.findNear(*finding);
        JudgedAddress judged = judge(*finding);
        if (best.isDecidedBy(judged, isAllRead(*finding, rest))) {
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
    JudgedAddress judged;
    implementation_->validate(std::array{AddressToJudge{&given, &judged}});
    return judged;
}

void AddressValidator::validate(std::span<const AddressToJudge> addresses) {
    while (!addresses.empty()) {
        const auto together = addresses.first(std::min(addresses.size(), mostTogether));
        implementation_->validate(together);
        addresses = addresses.subspan(together.size());
    }
}

std::string AddressValidator::provinceName(const std::string& province) {
    return implementation_->provinceName(province);
}

} // namespace ambrel
