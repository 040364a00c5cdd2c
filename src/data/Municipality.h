// A municipality, and which streets are its own (docs/decisions/012).
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/TableDefinitions.h"
#include "dbase/dataset/dataset.h"

namespace ambrel {

/// A municipality as described by all its rows of MUNICIPI, hidden ones included. Texts in Windows-1252.
struct Municipality {
    std::string ineCode;
    std::string name;
    std::vector<std::string> provinces;   // two digits: its own, then others that its codes begin with
    std::vector<std::string> postalCodes; // ascending
    bool hasOneCode = false;              // marked as such, and without a second one in the rows

    [[nodiscard]] bool hasPostalCode(std::string_view postalCode) const;
    /// Whether a row of POSTAL with these codes belongs to it.
    [[nodiscard]] bool owns(std::string_view streetPostalCode, std::string_view streetIneCode) const;
};

/// Gathers a municipality from its rows of MUNICIPI. The first one names it if none is the municipality's
/// own.
class MunicipalityRows {
public:
    explicit MunicipalityRows(std::string ineCode) { found_.ineCode = std::move(ineCode); }

    /// Takes the columns CODPOSTAL, COD_PROV, NOMBRE, ENT_MENOR and UNICO of a row.
    void add(std::string_view postalCode, std::string_view province, std::string_view name, bool isEntity,
             std::string_view onlyCode);
    [[nodiscard]] Municipality finish();

private:
    Municipality found_;
    bool isMarked_ = false, isNamed_ = false;
};

/// A cursor on MUNICIPI that finds municipalities by their codes. Errors: dbase::Error.
class MunicipalityCursor {
public:
    explicit MunicipalityCursor(const std::string& database);

    /// The municipality with an INE code; null if there is none.
    [[nodiscard]] std::optional<Municipality> find(const std::string& ineCode);
    /// Whether the name in a row with the code contains this one.
    [[nodiscard]] bool mentions(const std::string& ineCode, std::string_view name);

private:
    dbase::Dataset rows_; // by INE code, minor entities included
    dbase::Field& ineCode_ = rows_.bindCharacter("COD_INE", 5);
    dbase::Field& postalCode_ = rows_.bindCharacter("CODPOSTAL", 5);
    dbase::Field& onlyCode_ = rows_.bindCharacter("UNICO", 1);
    dbase::Field& name_ = rows_.bindCharacter("NOMBRE", municipalityNameWidth);
    dbase::Field& province_ = rows_.bindCharacter("COD_PROV", 2);
    dbase::Field& isEntity_ = rows_.bindLogical("ENT_MENOR");
};

} // namespace ambrel
