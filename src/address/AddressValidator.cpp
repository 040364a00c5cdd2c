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
#include "address/Doubts.h"
#include "address/FindingVerdict.h"
#include "address/GivenReadings.h"
#include "address/PlainText.h"
#include "address/TidyText.h"
#include "address/WrittenWords.h"
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

/// Tries the readings of one address until one decides.
class Trial {
public:
    /// `begun`: with at least one reading.
    Trial(AddressLookup& lookup, const ValidationOptions& options, const GivenAddress& given, Begun& begun)
        : lookup_(lookup), options_(options), given_(given), begun_(begun) {}

    [[nodiscard]] JudgedAddress judge() {
        if (!isDecidedAsWritten() && !isDecidedExactly()) {
            if (!best_) {
                decideByNear();
            }
            if (isSettled(best_->verdict)) {
                heedTownsInRest();
            }
        }
        return *std::move(best_);
    }

private:
    [[nodiscard]] bool isDecidedAsWritten();
    [[nodiscard]] bool isDecidedExactly();
    void decideByNear();
    [[nodiscard]] bool isDecidedBy(Finding& finding, bool isAllRead);
    [[nodiscard]] Finding& find(AddressParts& reading);
    [[nodiscard]] bool passesOverTown(const Finding& finding) const;
    [[nodiscard]] bool isOtherTown(std::string_view name);
    [[nodiscard]] bool namesTownInRest();
    void heedTownsInRest();

    /// Whether a reading leaves nothing of the street aside. A name may begin with two kinds of street, as in
    /// "C/ Costanilla de la Herradura".
    [[nodiscard]] bool isAllRead(const Finding& finding) const {
        const AddressParts& parts = finding.question.parts;
        return parts.rest == withoutBlanks(given_.rest) && parts.type.find(' ') == std::string::npos;
    }

    AddressLookup& lookup_;
    const ValidationOptions& options_;
    const GivenAddress& given_;
    Begun& begun_;
    std::list<Finding> others_;     // of the readings that were not looked up in the beginning
    std::vector<Finding*> doubted_; // what to ask the suggestions about
    std::optional<JudgedAddress> best_;
    Finding* bestFinding_ = nullptr; // of which that is the verdict
};

/// Whether nobody needs to look further. Otherwise keeps the verdict if it is the best so far; of equal ones
/// the most likely, then the first.
bool Trial::isDecidedBy(Finding& finding, bool isAllRead) {
    JudgedAddress judged = judgedFrom(finding, options_);
    const bool isDecided = isSettled(judged.verdict) && isAllRead;
    const auto rank = [](const JudgedAddress& one) { return std::pair(one.verdict, one.confidence); };
    if (isDecided || !best_ || rank(judged) > rank(*best_)) {
        best_ = std::move(judged);
        bestFinding_ = &finding;
    }
    return isDecided;
}

bool Trial::isDecidedAsWritten() {
    for (Finding& finding : std::span(begun_.first).first(begun_.first.size() - 1)) {
        lookup_.findStreets(finding);
        if (!finding.options.empty() && isDecidedBy(finding, true)) {
            return true;
        }
    }
    return false;
}

/// Looks a reading up, unless it is the likeliest, whose municipalities are known.
Finding& Trial::find(AddressParts& reading) {
    const bool isLikeliest = &reading == begun_.readings.likely.data();
    Finding& finding = isLikeliest ? begun_.first.back() : others_.emplace_back();
    if (!isLikeliest) {
        lookup_.ask(std::move(reading), finding);
        lookup_.findPlaces(finding);
        if (passesOverTown(finding)) {
            for (PlaceOption& place : finding.places) {
                place.doubt += doubt::townInRest;
            }
        }
    }
    lookup_.findStreets(finding);
    return finding;
}

/// Whether a reading leaves aside what another one takes for another town. A postal code would tell.
bool leavesTownOf(const Finding& other, const Finding& finding) {
    const AddressParts &its = other.question.parts, &own = finding.question.parts;
    const bool isSame = std::ranges::any_of(other.places, [&](const PlaceOption& one) { // by another name
        return std::ranges::find(finding.places, one.municipality, &PlaceOption::municipality) !=
               finding.places.end();
    });
    return !isSame && finding.question.lacksCode() && !its.municipality.empty() &&
           own.municipality != its.municipality && own.rest.find(its.municipality) != std::string::npos;
}

/// Whether a reading takes for the town what the likeliest one takes for its province, or leaves aside the
/// town that this one has found: "Mayor 5, Getafe, Madrid" is in Getafe, though only the capital has the
/// street.
bool Trial::passesOverTown(const Finding& finding) const {
    const Finding& likeliest = begun_.first.back();
    const bool isItsProvince = finding.question.parts.municipality == likeliest.question.parts.province;
    return leavesTownOf(likeliest, finding) && (isItsProvince || !likeliest.places.empty());
}

/// Whether a name is that of a municipality in the province of the best reading's, and not of that one.
bool Trial::isOtherTown(std::string_view name) {
    const MunicipalityPointer& own = bestFinding_->options.front().place.municipality;
    AddressParts parts;
    parts.municipality = name;
    Finding found;
    lookup_.ask(std::move(parts), found);
    lookup_.findPlaces(found);
    const auto isOwn = [&](const PlaceOption& place) { return place.municipality == own; };
    return std::ranges::none_of(found.places, isOwn) &&
           std::ranges::any_of(found.places, [&](const PlaceOption& place) {
               return !own->provinces.empty() && isInProvince(*place.municipality, own->provinces.front());
           });
}

/// Whether a part of what the best reading leaves aside ends in the name of another town: "Mayor 5, esquina
/// Goya Getafe, Madrid". A postal code would tell.
bool Trial::namesTownInRest() {
    constexpr std::size_t mostWords = 5; // of a town's name
    const AddressQuestion& question = bestFinding_->question;
    if (!question.lacksCode() || question.parts.rest.empty() || bestFinding_->options.empty()) {
        return false;
    }
    const WrittenWords words(question.parts.rest);
    for (std::size_t end = 1; end <= words.size(); ++end) {
        const bool isPartsEnd = end == words.size() || words[end].follows(Separator::Apart);
        for (std::size_t first = end; isPartsEnd && first > 0 && end - first < mostWords;) {
            --first;
            if (words[first].digits != 0) {
                break;
            }
            if (isOtherTown(words.text({first, end}))) {
                return true;
            }
            if (words[first].follows(Separator::Apart)) {
                break;
            }
        }
    }
    return false;
}

/// The same for the towns of other readings: "Getafe, Calle Mayor 5, Madrid".
void Trial::heedTownsInRest() {
    const bool leavesOne = std::ranges::any_of(others_, [&](const Finding& other) {
        return !other.places.empty() && leavesTownOf(other, *bestFinding_);
    });
    if (leavesOne || namesTownInRest()) {
        for (AddressOption& option : bestFinding_->options) {
            option.place.doubt += doubt::townInRest;
        }
        best_ = judgedFrom(*bestFinding_, options_);
    }
}

bool Trial::isDecidedExactly() {
    // Where the type has a column, a kind of street in the name belongs to it.
    const bool isTypeGiven = !withoutBlanks(given_.type).empty();
    for (const bool areWhole : {isTypeGiven, !isTypeGiven}) {
        if (areWhole) {
            addWholeReadings(begun_.readings, given_);
        }
        for (AddressParts& reading : areWhole ? begun_.readings.whole : begun_.readings.likely) {
            Finding& finding = find(reading);
            if (!finding.options.empty() && isDecidedBy(finding, isAllRead(finding))) {
                return true;
            }
            // The suggestions find a type in a name themselves.
            if (!areWhole || isTypeGiven) {
                doubted_.push_back(&finding);
            }
        }
    }
    return false;
}

void Trial::decideByNear() {
    doubted_.resize(std::min(doubted_.size(), mostNearReadings));
    for (Finding* const finding : doubted_) {
        lookup_.findNear(*finding);
        if (isDecidedBy(*finding, isAllRead(*finding))) {
            return;
        }
    }
}

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
    [[nodiscard]] bool hasTwoTypes(const GivenAddress& given, const std::string& street);

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
    return begun.first.empty() ? JudgedAddress() : Trial(lookup_, options_, given, begun).judge();
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
