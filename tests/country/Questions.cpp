// Writes addresses from official lines, and judges answers by them.
#include "country/Questions.h"

#include <algorithm>
#include <numeric>
#include <random>
#include <utility>

namespace country_tests {
namespace {

std::string nameKey(const std::string& place, const std::string& name) { return place + ' ' + name; }

bool holds(const OfficeSide& side, int number) {
    return side.numbering == (number % 2 != 0 ? '1' : '2') && side.first <= number && number <= side.last;
}

bool hasNumbers(const OfficeStreet& street) {
    return std::ranges::any_of(street.sides, [](const OfficeSide& side) { return side.numbering != '0'; });
}

/// Capitals of provinces have a mark of their own in the key of their streets.
bool isCapital(const std::string& place) {
    static const std::set<std::string> capitals = {
        "01059", "02003", "03014", "04013", "05019", "06015", "07040", "08019", "09059", "10037", "11012",
        "12040", "13034", "14021", "15030", "16078", "17079", "18087", "19130", "20069", "21041", "22125",
        "23050", "24089", "25120", "26089", "27028", "28079", "29067", "30030", "31201", "32054", "33044",
        "34120", "35016", "36038", "37274", "38038", "39075", "40194", "41091", "42173", "43148", "44216",
        "45168", "46250", "47186", "48020", "49275", "50297", "51001", "52001"};
    return capitals.contains(place);
}

} // namespace

std::string_view kindName(Kind kind) {
    constexpr std::array<std::string_view, kindCount> names = {"doors of one number",
                                                               "two streets of a name",
                                                               "code shared with a namesake",
                                                               "code of another province",
                                                               "shortened name",
                                                               "in an entity",
                                                               "hidden by a namesake",
                                                               "plain"};
    return names.at(static_cast<std::size_t>(kind));
}

std::string typeCode(std::string_view abbreviation) {
    static const std::map<std::string_view, const char*> codes = {{"CALLE", "CL"},
                                                                  {"CARRE", "CL"},
                                                                  {"C", "CL"},
                                                                  {"KALE", "CL"},
                                                                  {"AVDA", "AV"},
                                                                  {"AVGDA", "AV"},
                                                                  {"ETORB", "AV"},
                                                                  {"PLAZA", "PZ"},
                                                                  {"PLA\xC7"
                                                                   "A",
                                                                   "PZ"},
                                                                  {"PASEO", "PS"},
                                                                  {"PASSE", "PS"},
                                                                  {"CMNO", "CM"},
                                                                  {"CTRA", "CR"},
                                                                  {"TRVA", "TR"},
                                                                  {"RONDA", "RD"},
                                                                  {"PJE", "PJ"},
                                                                  {"PTGE", "PJ"},
                                                                  {"URB", "UR"},
                                                                  {"LUGAR", "LG"},
                                                                  {"BARRO", "BO"},
                                                                  {"RAMBL", "RB"}};
    const auto found = codes.find(abbreviation);
    return found == codes.end() ? std::string() : found->second;
}

std::string Question::text() const {
    std::string codes;
    for (const std::string& code : postalCodes) {
        codes += ' ' + code;
    }
    return std::string(kindName(kind)) + ": " + type + ' ' + wholeName + ' ' + number + ", " + place + ' ' +
           municipality + (entity.empty() ? "" : " (" + entity + ')') + ", right:" + codes;
}

Questions::Questions(const OfficeLines& office, StoredName storedName)
    : office_(office), storedName_(std::move(storedName)) {
    for (const OfficeStreet& street : office.streets()) {
        byName_[nameKey(street.place, street.name)].push_back(&street);
        for (const OfficeSide& side : street.sides) {
            places_[side.postalCode].insert(street.place);
        }
    }
    countHidden();
}

std::string Questions::nameOf(const OfficeStreet& street) const {
    return street.name.size() > nameWidth ? storedName_(street) : street.name;
}

// The tables' key is the province of the code, the capital's mark, name and type; municipalities come in the
// order of their codes.
void Questions::countHidden() {
    std::map<std::string, std::set<std::string>> placesOfKey;
    for (const OfficeStreet& street : office_.streets()) {
        for (const OfficeSide& side : street.sides) {
            placesOfKey[side.postalCode.substr(0, 2) + (isCapital(street.place) ? '0' : '9') +
                        nameOf(street) + '\n' + typeCode(street.type)]
                .insert(street.place);
        }
    }
    for (const auto& [key, places] : placesOfKey) {
        firstOfKey_[key] = *places.begin();
        for (auto place = std::next(places.begin()); place != places.end(); ++place) {
            ++hidden_[*place];
        }
    }
}

bool Questions::hasCode(const std::string& place, const std::string& code) const {
    const auto found = places_.find(code);
    return found != places_.end() && found->second.contains(place);
}

bool Questions::isElsewhereWithCode(const std::string& place, const std::string& name,
                                    const std::string& code) const {
    return std::ranges::any_of(places_.at(code), [&](const std::string& other) {
        return other != place && byName_.contains(nameKey(other, name));
    });
}

Kind Questions::kindOf(const Question& question, const Streets& meant, const OfficeSide& side) const {
    std::set<std::string> all;
    for (const OfficeStreet* street : meant) {
        for (const OfficeSide& one : street->sides) {
            all.insert(one.postalCode);
        }
    }
    const std::string key = side.postalCode.substr(0, 2) + (isCapital(question.place) ? '0' : '9') +
                            question.street + '\n' + question.type;
    return meant.size() > 1 && all.size() > 1                                         ? Kind::Twins
           : question.postalCodes.size() > 1                                          ? Kind::Doors
           : isElsewhereWithCode(question.place, question.wholeName, side.postalCode) ? Kind::SharedCode
           : side.postalCode.substr(0, 2) != question.province                        ? Kind::Foreign
           : question.wholeName.size() > nameWidth                                    ? Kind::Shortened
           : !question.entity.empty()                                                 ? Kind::Village
           : firstOfKey_.at(key) != question.place                                    ? Kind::Hidden
                                                                                      : Kind::Plain;
}

/// `step`: which of the side's numbers.
std::optional<Question> Questions::ask(const OfficeStreet& street, const OfficeSide& side, int step) const {
    Question question;
    question.place = street.place;
    question.municipality = office_.municipalities().at(street.place);
    question.province = street.place.substr(0, 2);
    question.entity = office_.entity(street.place, side.unit);
    question.type = typeCode(street.type);
    question.wholeName = street.name;
    question.street = nameOf(street);
    const int number =
        side.numbering == '0' ? 0 : side.first + 2 * (step % ((side.last - side.first) / 2 + 1));
    if (number == 0 && hasNumbers(street)) {
        return std::nullopt; // nobody can say where in the street that is
    }
    question.number = number == 0 ? std::string() : std::to_string(number);
    Streets meant = byName_.at(nameKey(street.place, street.name));
    std::erase_if(meant, [&](const OfficeStreet* one) {
        return !question.type.empty() && typeCode(one->type) != question.type;
    });
    for (const OfficeStreet* one : meant) {
        for (const OfficeSide& other : one->sides) {
            if (number == 0 || !hasNumbers(*one) || holds(other, number)) {
                question.postalCodes.insert(other.postalCode);
            }
        }
    }
    question.kind = kindOf(question, meant, side);
    return question;
}

std::vector<Question> Questions::sample(std::size_t ofKind, std::size_t plainOfProvince,
                                        std::uint64_t seed) const {
    std::mt19937_64 random(seed);
    std::vector<std::size_t> order(office_.streets().size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    for (std::size_t i = order.size(); i > 1; --i) { // std::shuffle differs from library to library
        std::swap(order[i - 1], order[random() % i]);
    }
    std::array<std::size_t, kindCount> counts{};
    std::map<std::pair<Kind, std::string>, std::size_t> ofProvince;
    std::vector<Question> questions;
    for (const std::size_t at : order) {
        const OfficeStreet& street = office_.streets()[at];
        const OfficeSide& side = street.sides[random() % street.sides.size()];
        auto question = ask(street, side, static_cast<int>(random() % 64));
        if (!question) {
            continue;
        }
        const bool isPlain = question->kind == Kind::Plain || question->kind == Kind::Hidden;
        std::size_t& count = isPlain ? ofProvince[{question->kind, question->province}]
                                     : counts.at(static_cast<std::size_t>(question->kind));
        if (count < (isPlain ? plainOfProvince : ofKind)) {
            ++count;
            questions.push_back(std::move(*question));
        }
    }
    return questions;
}

void Score::add(const Question& question, const Answer& answer) {
    const auto kind = static_cast<std::size_t>(question.kind);
    ++asked_.at(kind);
    if (!answer.isSettled) {
        ++left_.at(kind);
        if (question.isExact()) {
            missed_.push_back(question.text());
        }
    } else if (answer.place == question.place && answer.street == question.street &&
               (question.type.empty() || answer.type == question.type) && question.postalCodes.size() == 1 &&
               question.postalCodes.contains(answer.postalCode)) {
        ++right_.at(kind);
    } else {
        wrong_.push_back(question.text() + "; answered: " + answer.type + ' ' + answer.street + ' ' +
                         answer.postalCode + ' ' + answer.place);
    }
}

std::size_t Score::exactCount() const {
    return std::accumulate(asked_.begin() + 2, asked_.end(), std::size_t{0});
}

double Score::rightShare() const {
    return static_cast<double>(std::accumulate(right_.begin() + 2, right_.end(), std::size_t{0})) /
           static_cast<double>(std::max(exactCount(), std::size_t{1}));
}

std::string Score::text() const {
    std::string text;
    for (std::size_t kind = 0; kind < kindCount; ++kind) {
        text += std::string(kindName(static_cast<Kind>(kind))) + ": " + std::to_string(asked_.at(kind)) +
                " asked, " + std::to_string(right_.at(kind)) + " right, " + std::to_string(left_.at(kind)) +
                " left to a person, " + std::to_string(asked_.at(kind) - right_.at(kind) - left_.at(kind)) +
                " wrong\n";
    }
    return text;
}

} // namespace country_tests
