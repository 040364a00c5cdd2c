// Addresses whose postal codes the official lines say.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "country/OfficeLines.h"

namespace country_tests {

/// What makes an address difficult. One kind for each address: the first that fits.
enum class Kind {
    Doors,      // the office gives the number two codes, for doors apart by their letters
    Twins,      // another street of the municipality has name and type, and another code
    SharedCode, // another municipality has the street's code and a street of the name
    Foreign,    // the code is another province's
    Shortened,  // the name does not fit in the table
    Village,    // in an entity of the municipality
    Hidden,     // another municipality's street has the same key in the tables, and comes first
    Plain
};
inline constexpr std::size_t kindCount = 8;
[[nodiscard]] std::string_view kindName(Kind kind);

/// Texts in Windows-1252.
struct Question {
    Kind kind = Kind::Plain;
    std::string place, municipality, province; // the last: two digits
    std::string entity;                        // empty outside of entities
    std::string type, street;                  // as the tables hold them
    std::string wholeName;
    std::string number; // empty where the street has none
    std::set<std::string> postalCodes;

    /// Whether the office leaves one answer only.
    [[nodiscard]] bool isExact() const {
        return kind != Kind::Doors && kind != Kind::Twins && postalCodes.size() == 1;
    }
    [[nodiscard]] std::string text() const; // for messages
};

/// The name that the table has for a street; given for those whose names are too long for it.
using StoredName = std::function<std::string(const OfficeStreet&)>;

class Questions {
public:
    static constexpr std::size_t nameWidth = 45; // of the table

    Questions(const OfficeLines& office, StoredName storedName);

    /// At most so many of each kind, plain ones for each province; always the same ones for a seed.
    [[nodiscard]] std::vector<Question> sample(std::size_t ofKind, std::size_t plainOfProvince,
                                               std::uint64_t seed = 1) const;
    /// Streets with the key of another municipality's that comes first: what a host overlooks that seeks by
    /// the key alone. By municipality.
    [[nodiscard]] const std::map<std::string, std::uint64_t>& hiddenStreets() const { return hidden_; }
    /// Whether the lines of a municipality have the code.
    [[nodiscard]] bool hasCode(const std::string& place, const std::string& code) const;

private:
    using Streets = std::vector<const OfficeStreet*>;
    [[nodiscard]] std::string nameOf(const OfficeStreet& street) const;
    [[nodiscard]] std::optional<Question> ask(const OfficeStreet& street, const OfficeSide& side,
                                              int step) const;
    [[nodiscard]] Kind kindOf(const Question& question, const Streets& meant, const OfficeSide& side) const;
    [[nodiscard]] bool isElsewhereWithCode(const std::string& place, const std::string& name,
                                           const std::string& code) const;
    void countHidden();

    const OfficeLines& office_;
    StoredName storedName_;
    std::map<std::string, Streets, std::less<>> byName_;  // by municipality and whole name
    std::map<std::string, std::set<std::string>> places_; // by postal code
    std::map<std::string, std::uint64_t> hidden_;
    std::map<std::string, std::string> firstOfKey_; // municipality that comes first; by street key
};

/// The code of TIPO_VIA for an abbreviation of the generator; empty if there is none.
[[nodiscard]] std::string typeCode(std::string_view abbreviation);

/// What a look-up answered. Not settled: it left the address to a person.
struct Answer {
    bool isSettled = false;
    std::string place, type, street, postalCode;
};

/// How many were right, and each that was wrong.
class Score {
public:
    void add(const Question& question, const Answer& answer);

    /// Of exact addresses.
    [[nodiscard]] double rightShare() const;
    [[nodiscard]] std::size_t exactCount() const;
    [[nodiscard]] std::size_t count(Kind kind) const { return asked_.at(static_cast<std::size_t>(kind)); }
    /// Settled with a code that is not the address's.
    [[nodiscard]] const std::vector<std::string>& wrong() const { return wrong_; }
    [[nodiscard]] const std::vector<std::string>& missed() const { return missed_; }
    /// A line for each kind.
    [[nodiscard]] std::string text() const;

private:
    std::array<std::size_t, kindCount> asked_{}, right_{}, left_{};
    std::vector<std::string> wrong_, missed_;
};

} // namespace country_tests
