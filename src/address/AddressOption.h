// An address of the tables that may be the one given.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "address/MunicipalityBook.h"
#include "address/NameLikeness.h"
#include "address/StreetCode.h"

namespace ambrel {

/// How the municipality is known.
enum class PlaceSource {
    Name,     // by its name
    Language, // by one of its names
    Code,     // by the postal code
    Locality, // by a locality that belongs to it
    Near      // by a name that is like its own
};

/// A municipality that may be meant.
struct PlaceOption {
    MunicipalityPointer municipality;
    PlaceSource source = PlaceSource::Name;
    double doubt = 0;
    bool isPart = false; // a part of its name was written
    double points = 1;   // of the suggestion
};

/// Whether a municipality lies in a province; any does where none is given.
[[nodiscard]] inline bool isInProvince(const Municipality& municipality, const std::string& province) {
    return province.empty() ||
           (!municipality.provinces.empty() && municipality.provinces.front() == province);
}

/// A street of it that may be meant, of one type.
struct AddressOption {
    PlaceOption place;
    std::string street = {}, type = {};
    std::vector<StreetStretch> stretches = {}; // of it
    double nameDoubt = 0, typeDoubt = 0;
    double otherDoubt = 0;               // that a street is meant which the tables lack
    bool isPart = false;                 // a part of its name was written
    bool hasSlips = false;               // letters of its name are wrong
    bool isRenamed = false;              // its letters are not those that were written
    double points = 1;                   // of the suggestion
    std::optional<StreetCode> code = {}; // once it is weighed
    double doubt = 0;                    // of all names, in the light of the postal code given
    double confidence = 0;               // of everything

    /// Whether it is what is written, but for the writing.
    [[nodiscard]] bool isCertain() const { return doubt == 0; }
};

} // namespace ambrel
