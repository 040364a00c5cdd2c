// What was found out about an address, written into columns of the host's table.
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "address/AddressColumns.h"
#include "address/JudgedAddress.h"
#include "dbase/dbf/schema.h"
#include "loading/row_conversion.h"

namespace ambrel {

/// What a column can be filled with. The first seven are those of JudgedPart.
enum class FillPart { Municipality, Province, Type, Street, Number, Rest, PostalCode, IneCode, Verdict };
inline constexpr std::size_t fillPartCount = 9;

/// The name by which users refer to it: "municipio"… "codpostal", "cod_ine", "veredicto".
[[nodiscard]] std::string_view fillPartKey(FillPart part);
/// The part of such a name; null if there is none.
[[nodiscard]] std::optional<FillPart> fillPartOf(std::string_view key);

/// The column for each part, in UTF-8; empty for the one from which the part was read.
using FillNames = std::map<FillPart, std::string>;
/// Positions in the schema of the columns from which a validation reads; by AddressColumn.
using FillSources = std::array<std::optional<std::size_t>, addressColumnCount>;

/// Why a row cannot be filled.
struct FillProblem {
    std::string column, value, reason; // in UTF-8
};

/// Decides what becomes of a record. Only settled addresses are filled in, the verdict always.
///  - A column other than the one from which its part was read gets the part as it was found.
///  - The column from which it was read is changed only if the part is, or was missing. That of the street,
///    where it carries type, number or floor without columns of their own, keeps them: "CL MAYOR, 5, 2º". A
///    row of which something would be lost nevertheless is a problem.
class AddressFill {
public:
    /// Errors: loading::Failure, for a column that the table lacks, that another part is read from, that is
    /// given twice, too narrow or of another type.
    AddressFill(const dbase::Schema& schema, const std::string& tableFile, const FillNames& names,
                const FillSources& sources);

    /// Changes a record; it stays as it was if there is a problem, such as a value that its column cannot
    /// hold: nothing is ever cut.
    [[nodiscard]] std::optional<FillProblem> fill(std::span<char> record, const GivenAddress& given,
                                                  const JudgedAddress& judged,
                                                  const std::string& provinceName) const;

private:
    struct Row; // what the rules look at
    using Values = std::map<FillPart, std::string>;

    void addColumn(FillPart part, std::size_t column);
    [[nodiscard]] bool isTarget(FillPart part) const { return targets_.contains(part); }
    [[nodiscard]] bool returnsHome(FillPart part) const;
    [[nodiscard]] bool isFromStreet(FillPart part, const Row& row) const;
    [[nodiscard]] bool rewritesStreet(const Row& row) const;
    [[nodiscard]] bool isWritten(FillPart part, const Row& row) const;
    [[nodiscard]] bool keepsRest(const Row& row) const;
    [[nodiscard]] std::optional<std::string> wholeStreet(const Row& row) const;
    [[nodiscard]] std::optional<std::string> wholeNumber(const Row& row) const;
    [[nodiscard]] std::optional<std::string> wholeMunicipality(const Row& row) const;
    [[nodiscard]] std::optional<std::string> wholeValue(FillPart part, const Row& row,
                                                        std::span<const char> record) const;
    [[nodiscard]] std::string provinceText(const Row& row, std::span<const char> record) const;
    [[nodiscard]] std::optional<FillProblem> collect(Values& values, const Row& row,
                                                     std::span<const char> record) const;
    [[nodiscard]] const dbase::Column& column(FillPart part) const {
        return schema_.columns[targets_.at(part)];
    }
    [[nodiscard]] std::string columnName(FillPart part) const;

    dbase::Schema schema_;
    loading::CellEncoder encoder_;
    FillSources sources_;
    std::map<FillPart, std::size_t> targets_; // positions in the schema
};

} // namespace ambrel
