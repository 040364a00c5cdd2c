// The codes of TIPO_VIA for the office's abbreviations of street types.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "suggest/WordLists.h"

namespace ambrel::directory {

/// A row of TIPO_VIA; texts in Windows-1252. A name may hold several, with commas between them.
struct StreetTypeRow {
    std::string code, name, nameCat;
};

/// Finds codes through the word lists: the row that bears the type's own name, in one language or the other,
/// or else one of the same kind.
class StreetTypeCodes {
public:
    explicit StreetTypeCodes(std::vector<StreetTypeRow> rows);

    /// The code of an abbreviation; empty for none, and for one that is not known or that no row stands for.
    [[nodiscard]] const std::string& codeOf(std::string_view abbreviation);
    /// Abbreviations asked for that have no code, and how often.
    [[nodiscard]] const std::map<std::string, std::uint64_t, std::less<>>& unknown() const {
        return unknown_;
    }

private:
    struct Name {
        std::string folded;
        suggest::TypeSet types;
        std::string code;
    };
    void addNames(const std::string& names, const std::string& code);
    [[nodiscard]] std::string search(std::string_view abbreviation) const;

    std::vector<Name> names_;             // Spanish ones first
    suggest::TextMap<std::string> codes_; // asked for so far
    std::map<std::string, std::uint64_t, std::less<>> unknown_;
};

} // namespace ambrel::directory
