// Customers whose addresses were typed over twenty years, and what each of them should become.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/Dice.h"
#include "tools/customers/SampleStreets.h"

namespace customers {

/// The columns of a customer's row.
inline constexpr std::array<std::string_view, 8> columnNames{
    "CLIENTE", "NOMBRE", "DIRECCION", "NUMERO", "PISO", "CODPOSTAL", "POBLACION", "PROVINCIA"};

/// What is wrong with a row.
enum class Fault {
    None,
    LetterCase,
    TypeInStreet,   // "C/ Mayor 5, 2º A" in the column of the street
    Slip,           // in the street
    ShortForm,      // "STA. TERESA"
    TownSlip,       // in the municipality
    OtherLanguage,  // "LA CORUÑA" for "CORUÑA, A", one of two names
    NoCode,         // the postal code is missing
    OtherCode,      // that of another street of the town
    NoTown,         // only the postal code
    NumberAndFloor, // "12 bis", "5-7", "3 2º izda."
    NoNumber,
    UnknownStreet,
    UnknownTown,
    Empty,
    BrokenRow, // a value too many
};
inline constexpr std::size_t faultCount = 16;
[[nodiscard]] std::string_view faultName(Fault fault);

struct Customer {
    std::uint64_t number = 0; // from 1
    Fault fault = Fault::None;
    std::vector<std::string> values; // of columnNames; UTF-8
    /// The verdicts that are not a mistake, with blanks between them.
    std::string verdicts;
    /// What is right if the address is settled; empty where it must not be.
    std::string ineCode, type, street, postalCode;
};

/// The same customers for the same seed on every machine.
class InventedCustomers {
public:
    explicit InventedCustomers(std::uint64_t seed = 1);
    [[nodiscard]] Customer next();

private:
    [[nodiscard]] Customer written(Fault fault, const Street& street);

    std::vector<Street> streets_;
    invented::Dice dice_;
    std::uint64_t count_ = 0;
};

/// The rows as a Spanish spreadsheet saves them: semicolons, CR LF; UTF-8 here.
[[nodiscard]] std::string headingLine();
[[nodiscard]] std::string rowOf(const Customer& customer);
/// What each row should become: comma, LF.
[[nodiscard]] std::string truthHeading();
[[nodiscard]] std::string truthOf(const Customer& customer);

} // namespace customers
