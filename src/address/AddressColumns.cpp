// Finds the columns of addresses by their names.
#include "address/AddressColumns.h"

#include <algorithm>
#include <charconv>
#include <vector>

#include "dbase/system/quoted.h"
#include "loading/ansi_text.h"
#include "suggest/Letters.h"

namespace ambrel {

namespace {

constexpr std::array<std::string_view, addressColumnCount> keys{
    "linea", "tipo", "via", "numero", "resto", "codpostal", "municipio", "provincia"};

/// Capitals without accents, blanks and marks: "Cód. Postal" is CODPOSTAL.
std::string folded(std::string_view name) {
    return suggest::foldLetters(loading::ansiFromUtf8(name).value_or(std::string(name)));
}

std::size_t placeOf(AddressColumn column) { return static_cast<std::size_t>(column); }

struct UsualName {
    std::string_view folded;
    AddressColumn column;
};
constexpr auto usualNames = std::to_array<UsualName>({
    {"LINEA", AddressColumn::Line},
    {"DIRECCIONCOMPLETA", AddressColumn::Line},
    {"DIRECCIONPOSTAL", AddressColumn::Line},
    {"DOMICILIOCOMPLETO", AddressColumn::Line},
    {"DOMICILIOPOSTAL", AddressColumn::Line},
    {"TIPOVIA", AddressColumn::Type},
    {"TIPODEVIA", AddressColumn::Type},
    {"TIPODELAVIA", AddressColumn::Type},
    {"TVIA", AddressColumn::Type},
    {"SIGLA", AddressColumn::Type},
    {"SIGLAS", AddressColumn::Type},
    {"SIGLAVIA", AddressColumn::Type},
    {"SIGLASVIA", AddressColumn::Type},
    {"CLASEVIA", AddressColumn::Type},
    {"TIPOCALLE", AddressColumn::Type},
    {"CALLE", AddressColumn::Street},
    {"VIA", AddressColumn::Street},
    {"NOMBREVIA", AddressColumn::Street},
    {"NOMBREDEVIA", AddressColumn::Street},
    {"NOMBREDELAVIA", AddressColumn::Street},
    {"NOMVIA", AddressColumn::Street},
    {"NOMBRECALLE", AddressColumn::Street},
    {"NOMCALLE", AddressColumn::Street},
    {"NUMEROVIA", AddressColumn::Number},
    {"NUMVIA", AddressColumn::Number},
    {"NUMEROCALLE", AddressColumn::Number},
    {"NUMCALLE", AddressColumn::Number},
    {"RESTO", AddressColumn::Rest},
    {"RESTODIRECCION", AddressColumn::Rest},
    {"RESTOVIA", AddressColumn::Rest},
    {"PISO", AddressColumn::Rest},
    {"PISOPUERTA", AddressColumn::Rest},
    {"PISOYPUERTA", AddressColumn::Rest},
    {"CP", AddressColumn::PostalCode},
    {"CPOSTAL", AddressColumn::PostalCode},
    {"CODPOSTAL", AddressColumn::PostalCode},
    {"CODIGOPOSTAL", AddressColumn::PostalCode},
    {"DP", AddressColumn::PostalCode},
    {"DISTRITOPOSTAL", AddressColumn::PostalCode},
    {"MUNICIPIO", AddressColumn::Municipality},
    {"NOMBREMUNICIPIO", AddressColumn::Municipality},
    {"NOMMUNICIPIO", AddressColumn::Municipality},
    {"POBLACION", AddressColumn::Municipality},
    {"LOCALIDAD", AddressColumn::Municipality},
    {"CIUDAD", AddressColumn::Municipality},
    {"PROVINCIA", AddressColumn::Province},
    {"NOMBREPROVINCIA", AddressColumn::Province},
    {"NOMPROVINCIA", AddressColumn::Province},
    {"CODPROVINCIA", AddressColumn::Province},
    {"CODPROV", AddressColumn::Province},
    {"PROV", AddressColumn::Province},
});

/// A street's column where another one has the municipality; otherwise whole addresses.
constexpr auto streetOrLineNames = std::to_array<std::string_view>({"DIRECCION", "DOMICILIO", "DIR",
                                                                    "SE\xD1"
                                                                    "AS"});
/// Behind the street its number; in front of it more likely that of a customer.
constexpr auto numberNames = std::to_array<std::string_view>({"NUMERO", "NUM", "NO", "NRO"});

std::string listed(std::span<const std::string> names) {
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : ", ") + dbase::inQuotes(name);
    }
    return text;
}

/// Searches the names of one heading.
class ColumnSearch {
public:
    ColumnSearch(std::span<const std::string> names, const NamedColumns& named)
        : names_(names), named_(named) {
        for (const std::string& name : names) {
            folded_.push_back(folded(name));
        }
    }

    AddressColumnPlaces run() {
        for (const auto& [column, name] : named_) {
            places_.at(placeOf(column)) = name.empty() ? std::nullopt : std::optional(placeNamed(name));
        }
        for (std::size_t i = 0; i < names_.size(); ++i) {
            const auto usual = std::ranges::find(usualNames, folded_[i], &UsualName::folded);
            if (usual != usualNames.end()) {
                take(usual->column, i);
            }
        }
        findStreetOrLine();
        findBesideStreet();
        requireEnough();
        return places_;
    }

private:
    [[nodiscard]] bool has(AddressColumn column) const { return places_[placeOf(column)].has_value(); }
    [[nodiscard]] bool isNamed(AddressColumn column) const { return named_.contains(column); }
    [[nodiscard]] bool isTaken(std::size_t place) const {
        return std::ranges::find(places_, std::optional(place)) != places_.end();
    }

    /// Uses a column that was found by its name, unless the user has named others.
    void take(AddressColumn column, std::size_t place) {
        if (isNamed(column) || isTaken(place)) {
            return;
        }
        std::optional<std::size_t>& taken = places_.at(placeOf(column));
        if (taken) {
            throw AddressColumnsError("las columnas " + dbase::inQuotes(names_[*taken]) + " y " +
                                      dbase::inQuotes(names_[place]) + " pueden ser las dos " +
                                      std::string(addressColumnKey(column)) + ": diga cuál lo es");
        }
        taken = place;
    }

    /// The column that the user means. Errors: AddressColumnsError.
    [[nodiscard]] std::size_t placeNamed(const std::string& name) const {
        std::vector<std::size_t> found;
        for (std::size_t i = 0; i < names_.size(); ++i) {
            if (names_[i] == name) {
                found.push_back(i);
            }
        }
        const std::string plain = folded(name);
        for (std::size_t i = 0; found.empty() && !plain.empty() && i < names_.size(); ++i) {
            if (folded_[i] == plain) {
                found.push_back(i);
            }
        }
        if (found.size() > 1) {
            throw AddressColumnsError("hay varias columnas " + dbase::inQuotes(name) +
                                      ": en lugar del nombre, dé el número de la suya");
        }
        if (found.size() == 1) {
            return found.front();
        }
        std::size_t number = 0;
        const auto [end, problem] = std::from_chars(name.data(), name.data() + name.size(), number);
        if (problem == std::errc() && end == name.data() + name.size() && number >= 1 &&
            number <= names_.size()) {
            return number - 1;
        }
        throw AddressColumnsError("no hay ninguna columna " + dbase::inQuotes(name) + "; las columnas son " +
                                  listed(names_));
    }

    void findStreetOrLine() {
        const bool isStreet = has(AddressColumn::Municipality) || has(AddressColumn::Street);
        const AddressColumn column = isStreet ? AddressColumn::Street : AddressColumn::Line;
        for (std::size_t i = 0; i < names_.size(); ++i) {
            if (std::ranges::find(streetOrLineNames, folded_[i]) != streetOrLineNames.end()) {
                take(column, i);
            }
        }
    }

    void findBesideStreet() {
        const std::optional<std::size_t> street = places_[placeOf(AddressColumn::Street)];
        for (std::size_t i = 0; street && i < names_.size(); ++i) {
            if (i > *street && std::ranges::find(numberNames, folded_[i]) != numberNames.end()) {
                take(AddressColumn::Number, i);
            }
            if (i + 1 == *street && folded_[i] == "TIPO" && !has(AddressColumn::Type)) {
                take(AddressColumn::Type, i);
            }
        }
    }

    void requireEnough() const {
        const bool isLocated = has(AddressColumn::Municipality) || has(AddressColumn::PostalCode);
        if (has(AddressColumn::Line) || (has(AddressColumn::Street) && isLocated)) {
            return;
        }
        throw AddressColumnsError(std::string("no se reconoce la columna ") +
                                  (has(AddressColumn::Street) ? "del municipio ni la del código postal"
                                                              : "de la vía ni la de la dirección") +
                                  "; las columnas son " + listed(names_));
    }

    std::span<const std::string> names_;
    const NamedColumns& named_;
    std::vector<std::string> folded_;
    AddressColumnPlaces places_{};
};

} // namespace

std::string_view addressColumnKey(AddressColumn column) { return keys.at(placeOf(column)); }

std::optional<AddressColumn> addressColumnOf(std::string_view key) {
    const std::string plain = folded(key);
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (folded(keys[i]) == plain) {
            return static_cast<AddressColumn>(i);
        }
    }
    return std::nullopt;
}

AddressColumnPlaces findAddressColumns(std::span<const std::string> names, const NamedColumns& named) {
    return ColumnSearch(names, named).run();
}

} // namespace ambrel
