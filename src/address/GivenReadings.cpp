// Reading columns and lines together.
#include "address/GivenReadings.h"

#include <algorithm>

#include "address/AddressLine.h"
#include "services/Rnumcad.h"

namespace ambrel {
namespace {

constexpr std::size_t mostReadings = 24;

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

void takeNumber(AddressParts& parts, const AddressParts& number) {
    parts.number = number.number;
    parts.numberSuffix = number.numberSuffix;
    parts.numberEnd = number.numberEnd;
    append(parts.floor, number.floor);
    append(parts.rest, number.rest);
}

/// Readings of the column of municipalities: "28901 Getafe", "Getafe (Madrid)". The first is as it stands.
std::vector<AddressParts> readMunicipality(std::string_view text) {
    AddressParts whole;
    whole.municipality = withoutBlanks(text);
    std::vector<AddressParts> readings{whole};
    AddressParts split = whole;
    std::string_view name = split.municipality;
    if (name.size() > 6 && std::all_of(name.begin(), name.begin() + 5, isDigit) && !isDigit(name[5])) {
        split.postalCode = name.substr(0, 5);
        name.remove_prefix(5);
        name.remove_prefix(std::min(name.find_first_not_of(" -,."), name.size()));
    } else if (name.size() > 6 && std::all_of(name.end() - 5, name.end(), isDigit) &&
               !isDigit(name[name.size() - 6])) {
        split.postalCode = name.substr(name.size() - 5);
        name.remove_suffix(5);
        name = name.substr(0, name.find_last_not_of(" -,.") + 1);
    }
    const std::size_t bracket = name.rfind('('), comma = name.rfind(',');
    if (bracket != std::string_view::npos && bracket > 0 && name.ends_with(')')) {
        split.province = withoutBlanks(name.substr(bracket + 1, name.size() - bracket - 2));
        name = withoutBlanks(name.substr(0, bracket));
    } else if (comma != std::string_view::npos && comma > 0) {
        split.province = withoutBlanks(name.substr(comma + 1));
        name = withoutBlanks(name.substr(0, comma));
    }
    if (!name.empty() && name != whole.municipality) {
        split.municipality = std::string(name);
        readings.push_back(split);
    }
    return readings;
}

std::vector<AddressParts> readStreet(const GivenAddress& given) {
    if (isBlank(given.street)) {
        return {};
    }
    std::vector<AddressParts> readings = readStreetText(given.street);
    if (isBlank(given.number)) {
        return readings;
    }
    // What looks like a number in the street belongs to its name.
    const AddressParts number = readNumberText(given.number);
    std::vector<AddressParts> kept;
    for (AddressParts& reading : readings) {
        if (reading.number.empty() || reading.number == number.number) {
            takeNumber(reading, number);
            kept.push_back(std::move(reading));
        }
    }
    if (kept.empty()) {
        AddressParts whole;
        whole.street = withoutBlanks(given.street);
        takeNumber(whole, number);
        kept.push_back(std::move(whole));
    }
    return kept;
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

std::vector<AddressParts> readingsOf(const GivenAddress& given) {
    std::vector<AddressParts> readings =
        isBlank(given.line) ? std::vector<AddressParts>(1) : readAddressLine(given.line);
    if (const std::vector<AddressParts> streets = readStreet(given); !streets.empty()) {
        std::vector<AddressParts> both;
        for (const AddressParts& line : readings) {
            for (AddressParts street : streets) {
                street.postalCode = line.postalCode;
                street.municipality = line.municipality;
                street.province = line.province;
                both.push_back(std::move(street));
            }
        }
        readings = std::move(both);
    } else if (!isBlank(given.number)) {
        const AddressParts number = readNumberText(given.number);
        for (AddressParts& reading : readings) {
            takeNumber(reading, number);
        }
    }
    if (!isBlank(given.municipality)) {
        std::vector<AddressParts> both;
        for (const AddressParts& place : readMunicipality(given.municipality)) {
            for (AddressParts reading : readings) {
                reading.municipality = place.municipality;
                takeColumn(reading.postalCode, place.postalCode);
                takeColumn(reading.province, place.province);
                both.push_back(std::move(reading));
            }
        }
        readings = std::move(both);
    }
    for (AddressParts& reading : readings) {
        takeColumn(reading.type, given.type);
        append(reading.rest, given.rest);
        takeColumn(reading.postalCode, given.postalCode);
        takeColumn(reading.province, given.province);
    }
    readings.resize(std::min(readings.size(), mostReadings));
    return readings;
}

} // namespace ambrel
