// Which column of a file holds which part of an address.
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "AmbrelExport.h"
#include "loading/failure.h"

namespace ambrel {

/// What a column holds. `Line` is a whole address.
enum class AddressColumn { Line, Type, Street, Number, Rest, PostalCode, Municipality, Province };
inline constexpr std::size_t addressColumnCount = 8;

/// The name by which users refer to it: "linea", "tipo", "via", "numero", "resto", "codpostal", "municipio",
/// "provincia".
[[nodiscard]] AMBREL_EXPORT std::string_view addressColumnKey(AddressColumn column);
/// The column of such a name, letter case and accents ignored; null if there is none.
[[nodiscard]] AMBREL_EXPORT std::optional<AddressColumn> addressColumnOf(std::string_view key);

/// Where each column stands, counted from 0; null if the file has none.
using AddressColumnPlaces = std::array<std::optional<std::size_t>, addressColumnCount>;

/// The names, in UTF-8, that a user gives for columns: as in the heading, letter case, accents and marks
/// ignored, or their number counted from 1; empty for a column that is not to be used. Columns absent here
/// are found by their usual names.
using NamedColumns = std::map<AddressColumn, std::string>;

/// The columns are not enough for an address, or leave doubts. `what()` names them.
class AddressColumnsError : public loading::Failure {
public:
    using Failure::Failure;
};

/// Finds the columns among the names of a heading (UTF-8). Errors: AddressColumnsError.
[[nodiscard]] AddressColumnPlaces findAddressColumns(std::span<const std::string> names,
                                                     const NamedColumns& named = {});

} // namespace ambrel
