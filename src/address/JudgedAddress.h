// An address as given, and what was found out about it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "AmbrelExport.h"

namespace ambrel {

/// What is wrong with an address, or that nothing is. In order of precedence: the first that holds is given.
enum class Verdict {
    BrokenRow,           // the row of the file could not be read
    Empty,               // nothing was given
    UnknownMunicipality, // neither its name nor the postal code leads to one
    Ambiguous,           // several are as good
    UnknownStreet,
    Doubtful,      // something is near, but not near enough to be taken unasked
    NumberOutside, // the street is known, and none of its stretches holds the number
    NoNumber,      // and the street has several postal codes
    OtherCode,     // the address stands, the postal code given is another's
    Corrected,     // something that was written has been changed, with confidence
    Completed,     // something that was missing has been added
    Correct
};
/// How many verdicts there are.
inline constexpr std::size_t verdictCount = 12;

/// The name that users read: "FILA_ROTA", "VACIA"…
[[nodiscard]] AMBREL_EXPORT std::string_view verdictName(Verdict verdict);

/// Whether nobody needs to look at the address again.
[[nodiscard]] constexpr bool isSettled(Verdict verdict) { return verdict >= Verdict::Corrected; }

/// An address in columns, in one line, or both, where the columns count. Texts in Windows-1252, like all
/// texts here; "?" stands for a letter that it lacks, and matches nothing.
struct GivenAddress {
    std::string line = {};
    std::string type = {}; // a code or a word
    std::string street = {};
    std::string number = {};
    std::string rest = {}; // floor, door and the like
    std::string postalCode = {};
    std::string municipality = {};
    std::string province = {}; // two digits or a name
};

/// The parts that a verdict may change.
enum class JudgedPart { Municipality, Province, Type, Street, Number, Rest, PostalCode };
/// The name that users read: "municipio", "provincia", "tipo"…
[[nodiscard]] AMBREL_EXPORT std::string_view partName(JudgedPart part);

/// A part that differs from what was given; `from` is empty where nothing was.
struct AddressChange {
    JudgedPart part;
    std::string from, to;
    friend bool operator==(const AddressChange&, const AddressChange&) = default;
};

/// Another street or municipality that may have been meant.
struct AddressAlternative {
    double points = 0; // 0 to 1
    std::string ineCode = {}, municipality = {};
    std::string province = {}; // two digits
    std::string type = {}, street = {};
    std::vector<std::string> postalCodes = {}; // of the street's stretches, or of the municipality; ascending
};
/// The alternatives that a judged address has at most.
inline constexpr std::size_t mostAlternatives = 3;

/// What is known of an address. A part that could not be found is as it was given.
struct JudgedAddress {
    Verdict verdict = Verdict::Empty;
    double confidence = 0; // that the parts below are what was meant, 0 to 1
    std::string ineCode = {}, municipality = {};
    std::string province = {}; // two digits
    std::string type = {};     // a code of TIPO_VIA
    std::string street = {};
    std::string number = {}; // with its letter and the end of a range
    std::string rest = {};   // floor, and whatever was not understood
    std::string postalCode = {};
    std::string key = {}; // CODIGO1 of the stretch with the number; empty if there is none
    std::vector<AddressChange> changes = {};
    std::vector<AddressAlternative> alternatives = {}; // at most `mostAlternatives`, the best first
    std::string reason = {};                           // a Spanish sentence, where the verdict needs one
};

} // namespace ambrel
