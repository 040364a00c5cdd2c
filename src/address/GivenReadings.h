// The ways in which a given address may be understood.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "address/AddressParts.h"
#include "address/JudgedAddress.h"

namespace ambrel {

/// The ways in which an address may be understood.
struct GivenReadings {
    std::vector<AddressParts> likely; // the likeliest first; at least one
    /// With all of the street's column as the name, where a part of it looks like a number and the number's
    /// column is blank: "SECTOR 3". For exact look-ups only.
    std::vector<AddressParts> written = {};
    /// With everything before the number as the street's name, should the tables have it: "Plaza Mayor" as
    /// the name of a street.
    std::vector<AddressParts> whole = {};
};

/// A column that is not blank takes the place of what the line says. The whole ones are still to be added.
[[nodiscard]] GivenReadings readingsOf(const GivenAddress& given);
/// Adds the readings with everything as the name, which most addresses do not need.
void addWholeReadings(GivenReadings& readings, const GivenAddress& given);

/// Five digits of a postal code that may have lost its first zero, or stand behind "E-"; empty if it is none.
[[nodiscard]] std::string readPostalCode(std::string_view text);

/// The last group of exactly five digits in a text; empty if there is none.
[[nodiscard]] std::string postalCodeWithin(std::string_view text);

/// A house number as it is written: "5 BIS", "12-14", "3B".
[[nodiscard]] std::string writtenNumber(const AddressParts& parts);
/// Floor and rest as they are written.
[[nodiscard]] std::string writtenRest(const AddressParts& parts);

} // namespace ambrel
