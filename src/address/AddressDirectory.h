// Table lookups for one address: municipalities by name, and a municipality's own streets.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "address/ShortenedNames.h"
#include "address/StreetRows.h"
#include "data/Municipality.h"
#include "dbase/dataset/dataset.h"
#include "suggest/TableStamp.h"

namespace ambrel {

/// Looks up with cursors of its own, so that no other cursor moves. Streets are found by province and name,
/// whatever their capital mark: street keys contain no municipality, and outside capitals the streets of a
/// whole province share one mark. Errors of all operations: dbase::Error.
class AddressDirectory {
public:
    /// Opens MUNICIPI and POSTAL of a database. After changing Config.EntidadesMenores, create a new object.
    explicit AddressDirectory(const std::string& database = "DB");

    /// The distinct municipalities with exactly this name in the rows that the configuration shows, in code
    /// order. Minor entities, if shown, lead to the municipality they belong to.
    [[nodiscard]] std::vector<Municipality> municipalitiesNamed(const std::string& name);
    /// The alphabetically first name beginning with a text, among those that the configuration shows; null if
    /// there is none.
    [[nodiscard]] std::optional<std::string> municipalityNameBeginning(const std::string& text);
    /// The municipality with an INE code; null if there is none.
    [[nodiscard]] std::optional<Municipality> municipality(const std::string& ineCode) {
        return all_.find(ineCode);
    }

    /// A municipality's own stretches of the street with exactly this name, in table order. Where it shares a
    /// postal code with another municipality the INE code decides: stretches marked as the other's count only
    /// if none is marked as its own, because the mark may have been guessed. A name too long for the table is
    /// that of the street whose name was shortened from it, as far as PROCEDEN says so.
    [[nodiscard]] std::vector<StreetStretch> stretches(const Municipality& municipality,
                                                       const std::string& name);
    /// Announces stretches(): within a read scope those that are announced are read together.
    void expectStretches(const Municipality& municipality, const std::string& name);
    /// Whether any province has a street with exactly this name.
    [[nodiscard]] bool hasStreet(const std::string& name);
    /// Differs from an earlier one if streets have changed since.
    [[nodiscard]] suggest::TableStamp streetStamp() const { return suggest::TableStamp::of(streets_); }
    /// The municipality's first street, by name, that begins with a text; of several rows one of those that
    /// stretches() returns: the first one of the type, or else the first. Null if there is none.
    [[nodiscard]] std::optional<StreetStretch>
    streetBeginning(const Municipality& municipality, const std::string& text, const std::string& type);

private:
    /// The municipality's first street in a province, by name, that begins with a text.
    [[nodiscard]] std::optional<std::string> ownName(const Municipality& municipality,
                                                     const std::string& province, const std::string& text);

    /// Whether the current row of POSTAL is the municipality's.
    [[nodiscard]] bool isOwn(const Municipality& municipality) const;
    /// The municipality's streets in a province whose names were shortened from this one.
    [[nodiscard]] std::vector<std::string>
    shortenedNames(const Municipality& municipality, const std::string& province, const std::string& name);

    dbase::Dataset shown_; // by name, as the configuration shows them
    dbase::Field& shownName_ = shown_.bindCharacter("NOMBRE", municipalityNameWidth);
    dbase::Field& shownCode_ = shown_.bindCharacter("COD_INE", 5);

    MunicipalityCursor all_; // minor entities included

    dbase::Dataset streets_; // by province and name
    dbase::Field& streetKey_ = streets_.bindCharacter("CODIGO1", 8);
    dbase::Field& streetProvince_ = streets_.bindCharacter("PROVINCIA", 2);
    dbase::Field& street_ = streets_.bindCharacter("VIA", streetNameWidth);
    dbase::Field& streetCode_ = streets_.bindCharacter("CODPOSTAL", 5);
    dbase::Field* streetIneCode_ = nullptr; // null if a foreign table lacks it
    std::optional<StreetRows> rows_;        // of a name
    ShortenedNames shortened_;
};

} // namespace ambrel
