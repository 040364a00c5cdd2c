// Reads the answers of the street-directory service. Entries are visited by position, as many as the answer's
// own count says.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "import/ImportedStreet.h"

namespace ambrel {

class DirectoryDocument;

/// The result of reading an answer.
enum class Reading {
    Empty,   // the document has no nodes
    NoRoot,  // not an answer of the service
    Partial, // read, but some of the entries counted are missing or unreadable
    Whole,
};

/// Names of provinces, or of a province's municipalities.
struct NameList {
    Reading reading = Reading::Empty;
    std::vector<std::string> names; // Windows-1252, untrimmed, in the order of the answer
};

/// The streets of a municipality.
struct StreetList {
    Reading reading = Reading::Empty;
    std::optional<int> count = {}; // as stated in the answer; null if it is not
    std::vector<ImportedStreet> streets = {};
};

/// `atRoot` is called when the answer's root has been found, before any entry is read; it may be empty.
[[nodiscard]] NameList readProvinces(const DirectoryDocument& answer,
                                     const std::function<void()>& atRoot = {});
[[nodiscard]] NameList readMunicipalities(const DirectoryDocument& answer,
                                          const std::function<void()>& atRoot = {});
[[nodiscard]] StreetList readStreets(const DirectoryDocument& answer,
                                     const std::function<void()>& atRoot = {});

} // namespace ambrel
