// A street on its way into the directory: one row of the import grid.
#pragma once

#include <cstddef>
#include <string>

namespace ambrel {

/// Texts are Windows-1252. Only municipality files give postal code and numbers; 0 means "not given".
struct ImportedStreet {
    std::string type = {};
    std::string name = {}; // at most 45 characters
    std::string postalCode = {};
    int oddFirst = 0, oddLast = 0, evenFirst = 0, evenLast = 0;

    /// Whether every value is the same.
    bool operator==(const ImportedStreet&) const = default;
};

/// Where the postal codes of imported streets come from: each street has its own, with its house numbers, or
/// all of them take the municipality's.
enum class StreetCodes { Own, OfMunicipality };

} // namespace ambrel
