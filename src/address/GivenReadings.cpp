// Reading columns and lines together.
#include "address/GivenReadings.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "address/AddressLine.h"
#include "address/AddressPieces.h"
#include "address/HouseNumber.h"
#include "address/WrittenWords.h"
#include "services/Rnumcad.h"

namespace ambrel {
namespace {

constexpr std::size_t mostReadings = 24;
constexpr std::size_t mostDigits = 4; // of a house number

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isBlank(std::string_view text) { return withoutBlanks(text).empty(); }

void append(std::string& text, std::string_view more) {
    if (!isBlank(more)) {
        text += (text.empty() ? "" : ", ") + std::string(withoutBlanks(more));
    }
}

void takeColumn(std::string& part, std::string_view column) {
    if (!isBlank(column)) {
        part = withoutBlanks(column);
    }
}

/// Whether a text is made of digits and letters O, which may have been meant for noughts.
bool hasNoughtsAsLetters(std::string_view text) {
    return !text.empty() && isDigit(text.front()) && text.find_first_of("Oo") != std::string_view::npos &&
           text.find_first_not_of("0123456789Oo") == std::string_view::npos;
}

/// The postal code that a column for something else holds, "C/ Sol 3, 28009 Madrid"; it stays in the rest,
/// too, where people put it.
std::string postalCodeOf(std::string_view column) {
    if (postalCodeWithin(column).empty()) {
        return {};
    }
    const WrittenWords words(column);
    const PostalCodeWords code = findPostalCode(words);
    return code.words.isEmpty() ? std::string() : words[code.code].folded;
}

/// The number's column. Figures that cannot be a house number are one that no street has, and so is a text of
/// which nothing is understood.
AddressParts readNumberColumn(std::string_view text) {
    AddressParts parts;
    const std::string_view number = withoutBlanks(text);
    if (number.size() <= mostDigits && std::ranges::all_of(number, isDigit)) {
        parts.number = number; // what most columns hold needs no reading
        return parts;
    }
    if (hasNoughtsAsLetters(number)) {
        parts.number = number;
        return parts;
    }
    parts = readNumberText(text);
    const bool isUnderstood = !parts.number.empty() || !parts.floor.empty();
    if (isUnderstood) {
        parts.postalCode = postalCodeOf(text);
    }
    if (parts.number.empty() && parts.floor.empty() && !parts.rest.empty() && isDigit(parts.rest.front())) {
        parts.number = std::exchange(parts.rest, {});
    }
    if (parts == AddressParts() && readHouseNumber(number).kind == HouseNumber::Kind::Unclear) {
        parts.number = number;
    }
    return parts;
}

void takeNumber(AddressParts& parts, const AddressParts& number) {
    parts.number = number.number;
    parts.numberSuffix = number.numberSuffix;
    parts.numberEnd = number.numberEnd;
    append(parts.floor, number.floor);
    append(parts.rest, number.rest);
    if (parts.postalCode.empty()) {
        parts.postalCode = number.postalCode;
    }
}

/// Takes the postal code from either end of a column, with what marks it: "C.P. 28901 Getafe", "Getafe
/// (28901)".
std::string takeCodeAtEnd(std::string_view& column) {
    if (postalCodeWithin(column).empty()) {
        return {};
    }
    const WrittenWords words(column);
    const PostalCodeWords code = findPostalCode(words);
    const bool isFirst = code.words.first == 0, isLast = code.words.last == words.size();
    if (code.words.isEmpty() || isFirst == isLast) {
        return {};
    }
    std::string_view name = column;
    if (isFirst) {
        name.remove_prefix(words[code.code].end);
        name.remove_prefix(std::min(name.find_first_not_of(" -,.:"), name.size()));
    } else {
        name = name.substr(0, words[code.words.first].begin);
        name = name.substr(0, name.find_last_not_of(" -,.:(") + 1);
    }
    column = name;
    return words[code.code].folded;
}

/// What the column of municipalities may say besides a name: "28901 Getafe", "Getafe (Madrid)"; null if it
/// says nothing else.
std::optional<AddressParts> splitMunicipality(std::string_view text) {
    if (text.find_first_of("0123456789(,") == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view whole = withoutBlanks(text);
    AddressParts split;
    std::string_view name = whole;
    split.postalCode = takeCodeAtEnd(name);
    const std::size_t bracket = name.rfind('('), comma = name.rfind(',');
    if (bracket != std::string_view::npos && bracket > 0 && name.ends_with(')')) {
        split.province = withoutBlanks(name.substr(bracket + 1, name.size() - bracket - 2));
        name = withoutBlanks(name.substr(0, bracket));
    } else if (comma != std::string_view::npos && comma > 0) {
        split.province = withoutBlanks(name.substr(comma + 1));
        name = withoutBlanks(name.substr(0, comma));
    }
    if (name.empty() || name == whole) {
        return std::nullopt;
    }
    split.municipality = name;
    return split;
}

/// A reading with the type as a part of the name, and one with all that follows the type; `number`: of the
/// number's column, of which nothing is a part of the name.
void addWhole(const AddressParts& reading, std::string_view written, const AddressParts& number,
              std::vector<AddressParts>& whole) {
    AddressParts one = reading;
    if (!reading.type.empty()) {
        one.type.clear();
        one.street = reading.type + ' ' + reading.street;
        whole.push_back(one);
        if (const std::size_t blank = reading.type.find(' '); blank != std::string::npos) {
            one.type = reading.type.substr(0, blank);
            one.street = reading.type.substr(blank + 1) + ' ' + reading.street;
            whole.push_back(one);
            one.type.clear();
        }
    }
    if (written.empty()) {
        return;
    }
    one.floor = number.floor;
    one.rest = number.rest;
    one.street = written;
    whole.push_back(one);
    if (!reading.type.empty() && written.starts_with(reading.type)) {
        one.type = reading.type;
        one.street = withoutBlanks(written.substr(reading.type.size()));
        whole.push_back(one);
    }
}

std::vector<AddressParts> readStreet(const GivenAddress& given) {
    std::vector<AddressParts> readings = readStreetText(given.street);
    const std::string_view written = withoutBlanks(given.street);
    if (!isBlank(given.number)) {
        // What looks like a number in the street belongs to its name, or repeats the column.
        const AddressParts number = readNumberColumn(given.number);
        for (AddressParts& reading : readings) {
            if (!reading.number.empty() && reading.number != number.number) {
                const bool isAfterType = written.starts_with(reading.type);
                AddressParts whole;
                whole.type = isAfterType ? reading.type : std::string();
                whole.street = withoutBlanks(written.substr(whole.type.size()));
                reading = std::move(whole);
            }
            takeNumber(reading, number);
        }
    }
    if (const std::string code = postalCodeOf(given.street); !code.empty()) {
        for (AddressParts& reading : readings) {
            reading.postalCode = code;
        }
    }
    return readings;
}

/// Each street with the place that each line names.
std::vector<AddressParts> combined(const std::vector<AddressParts>& lines,
                                   const std::vector<AddressParts>& streets) {
    if (lines.size() == 1 && lines.front() == AddressParts()) {
        return streets; // the line says nothing
    }
    std::vector<AddressParts> both;
    for (const AddressParts& line : lines) {
        for (AddressParts one : streets) {
            takeColumn(one.postalCode, line.postalCode);
            one.municipality = line.municipality;
            one.province = line.province;
            both.push_back(std::move(one));
        }
    }
    return both;
}

void takePlace(AddressParts& reading, const AddressParts& place, const GivenAddress& given) {
    reading.municipality = place.municipality;
    takeColumn(reading.postalCode, place.postalCode);
    if (!isBlank(given.postalCode) && readPostalCode(given.postalCode) != place.postalCode) {
        append(reading.rest, place.postalCode); // what has a column of its own is there
    }
    takeColumn(reading.province, place.province);
}

/// The municipality's column: the name as it stands and, where there is one, a second reading.
void takeMunicipality(std::vector<AddressParts>& readings, const GivenAddress& given) {
    const std::size_t count = readings.size();
    if (const std::optional<AddressParts> split = splitMunicipality(given.municipality)) {
        for (std::size_t i = 0; i < count; ++i) {
            AddressParts reading = readings[i];
            takePlace(reading, *split, given);
            readings.push_back(std::move(reading));
        }
    }
    for (std::size_t i = 0; i < count; ++i) {
        readings[i].municipality = withoutBlanks(given.municipality);
    }
}

/// The readings of line, street and number, without the other columns.
std::vector<AddressParts> bareReadings(const GivenAddress& given) {
    if (!isBlank(given.street)) {
        return isBlank(given.line) ? readStreet(given)
                                   : combined(readAddressLine(given.line), readStreet(given));
    }
    std::vector<AddressParts> lines =
        isBlank(given.line) ? std::vector<AddressParts>(1) : readAddressLine(given.line);
    if (!isBlank(given.number)) {
        const AddressParts number = readNumberColumn(given.number);
        for (AddressParts& reading : lines) {
            takeNumber(reading, number);
        }
    }
    return lines;
}

/// Takes the columns other than the street's.
void takeColumns(std::vector<AddressParts>& readings, const GivenAddress& given) {
    if (!isBlank(given.municipality)) {
        takeMunicipality(readings, given);
    }
    const std::string codeOfRest = postalCodeOf(given.rest);
    for (AddressParts& reading : readings) {
        takeColumn(reading.type, given.type);
        append(reading.rest, given.rest);
        takeColumn(reading.postalCode, given.postalCode);
        if (reading.postalCode.empty()) {
            reading.postalCode = codeOfRest;
        }
        takeColumn(reading.province, given.province);
    }
    if (readings.size() == 1) {
        return;
    }
    // Where the type has a column, readings with and without one are the same.
    std::vector<AddressParts> once;
    for (AddressParts& reading : readings) {
        if (once.size() < mostReadings && std::ranges::find(once, reading) == once.end()) {
            once.push_back(std::move(reading));
        }
    }
    readings = std::move(once);
}

} // namespace

std::string readPostalCode(std::string_view text) {
    std::string digits;
    for (const char c : text) {
        if (isDigit(c)) {
            digits += c;
        } else if (std::string_view(" .-Ee").find(c) == std::string_view::npos) {
            return {};
        }
    }
    if (digits.size() == 4) {
        digits.insert(digits.begin(), '0');
    }
    return digits.size() == 5 && digits.find_first_not_of('0') != std::string::npos ? digits : std::string();
}

std::string postalCodeWithin(std::string_view text) {
    std::size_t digits = 0;
    for (std::size_t end = text.size(); end > 0; --end) {
        digits = isDigit(text[end - 1]) ? digits + 1 : 0;
        if (digits == 5 && (end == 1 || !isDigit(text[end - 2]))) {
            const bool isWhole = end + 4 == text.size() || !isDigit(text[end + 4]);
            if (isWhole) {
                return std::string(text.substr(end - 1, 5));
            }
        }
    }
    return {};
}

std::string writtenNumber(const AddressParts& parts) {
    std::string number = parts.number;
    if (!parts.numberSuffix.empty()) {
        number += (parts.numberSuffix.size() > 1 ? " " : "") + parts.numberSuffix;
    }
    if (!parts.numberEnd.empty()) {
        number += '-' + parts.numberEnd;
    }
    return number;
}

std::string writtenRest(const AddressParts& parts) {
    std::string rest = parts.floor;
    append(rest, parts.rest);
    return rest;
}

GivenReadings readingsOf(const GivenAddress& given) {
    GivenReadings readings{.likely = bareReadings(given)};
    const auto hasNumber = [](const AddressParts& reading) { return !reading.number.empty(); };
    if (isBlank(given.line) && isBlank(given.number) && std::ranges::any_of(readings.likely, hasNumber)) {
        readings.written.emplace_back().street = withoutBlanks(given.street);
        takeColumns(readings.written, given);
    }
    takeColumns(readings.likely, given);
    return readings;
}

void addWholeReadings(GivenReadings& readings, const GivenAddress& given) {
    const AddressParts number = readNumberColumn(given.number);
    for (const AddressParts& reading : bareReadings(given)) {
        const bool isAllName = !isBlank(given.number) || reading.number.empty();
        addWhole(reading, isAllName ? withoutBlanks(given.street) : std::string_view(), number,
                 readings.whole);
    }
    takeColumns(readings.whole, given);
}

} // namespace ambrel
