// Ranked suggestions for names that are not typed as the tables hold them: "did you mean".
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "AmbrelExport.h"

namespace ambrel {

/// Letters of a text: first position and length.
using TextSpan = std::pair<std::size_t, std::size_t>;

/// A municipality that may have been meant. Texts in Windows-1252, as in the tables.
struct SuggestedMunicipality {
    double points =
        0; // 0 to 1; 1 only if the names are equal but for case, accents, articles and short forms
    std::string name;
    std::string ineCode;
    std::string province;                 // two digits
    std::vector<std::string> postalCodes; // ascending
    std::string found;                    // another name of it, or its locality, that led here; else empty
    bool isLocality = false;              // whether `found` is a locality
    std::vector<TextSpan> marks;          // the letters that match, of `found` or else of `name`
};

/// A street that may have been meant: one for each municipality, type and name, whatever its stretches.
struct SuggestedStreet {
    double points = 0;
    std::string name; // as the table holds it
    std::string type;
    std::string key;     // CODIGO1 of its first stretch
    std::string ineCode; // of its municipality; empty if the row does not say which of several it is
    std::string municipality;
    std::string province;                 // two digits
    std::vector<std::string> postalCodes; // of all its stretches, ascending
    std::string number;                   // the house number that was typed after the street; else empty
    std::vector<TextSpan> marks;          // the letters of `name` that match
};

/// What is typed for a municipality: its name, an INE code or a postal code, or the beginning of one.
struct MunicipalityQuery {
    std::string text;
    std::string province = {}; // two digits or a name; empty: any
    bool withLocalities = true;
};

/// What is typed for a street, and where it is sought: in the municipality with this INE code, else among the
/// streets with this postal code, else in the whole province.
struct StreetQuery {
    std::string text;
    std::string type = {}; // a code of TIPO_VIA, or a type's name; may be empty
    std::string ineCode = {};
    std::string postalCode = {};
    std::string province = {}; // two digits
};

/// A street and its municipality, neither of them certain.
struct AddressQuery {
    MunicipalityQuery municipality;
    std::string street;
    std::string type = {};
};

/// What a host decides of its suggestions.
struct SuggestionOptions {
    /// For what is kept of streets; the province used longest ago goes first.
    std::size_t memory = std::size_t{64} << 20;
    /// Former and other names of municipalities: a text file in UTF-8 with lines "COD_INE,NAME"; may be
    /// empty.
    std::string otherNames = {};
};

/// Keeps the names of a database folded, and follows its changes. Like the datasets that it reads with, an
/// object belongs to one thread. It changes nothing.
///
/// The first question about a province reads its streets, some tens of milliseconds for the largest. A window
/// calls `prepare` before, in pieces from a timer, and asks when it returns true; without that, questions
/// read what is missing themselves. Errors of all operations: dbase::Error.
class AMBREL_EXPORT Suggestions {
public:
    /// Opens nothing yet. `database`: the name under which the folder of the tables is registered.
    explicit Suggestions(std::string database = "DB", SuggestionOptions options = {});
    ~Suggestions();
    Suggestions(const Suggestions&) = delete;
    Suggestions& operator=(const Suggestions&) = delete;

    /// Reads, for about `slice`, what an answer needs; true when nothing is missing.
    [[nodiscard]] bool prepare(const MunicipalityQuery& query, std::chrono::milliseconds slice);
    [[nodiscard]] bool prepare(const StreetQuery& query, std::chrono::milliseconds slice);

    /// The best first, none below half a point; each was read again just now.
    [[nodiscard]] std::vector<SuggestedMunicipality> municipalities(const MunicipalityQuery& query,
                                                                    std::size_t most = 8);
    [[nodiscard]] std::vector<SuggestedStreet> streets(const StreetQuery& query, std::size_t most = 8);
    /// Tries the streets of every municipality that may have been meant; the points are of both together.
    [[nodiscard]] std::vector<SuggestedStreet> addresses(const AddressQuery& query, std::size_t most = 8);

    /// The two digits of a province from any writing of its name, or from its digits; empty if unknown.
    [[nodiscard]] std::string provinceNamed(const std::string& text);
    /// The name of a province as PROVIN holds it; empty if it does not.
    [[nodiscard]] std::string provinceName(const std::string& province);

    /// Bytes that are kept.
    [[nodiscard]] std::size_t memoryInUse() const;

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace ambrel
