// Fills columns of a host's table with what was found out about its addresses.
#include "address/AddressFill.h"

#include <algorithm>
#include <cctype>

#include "address/AddressLine.h"
#include "address/PlainText.h"
#include "dbase/dbf/codec.h"
#include "dbase/dbf/codepage.h"
#include "dbase/system/quoted.h"
#include "loading/ansi_text.h"
#include "services/Rnumcad.h"

namespace ambrel {

namespace {

constexpr std::array<std::string_view, fillPartCount> keys{
    "municipio", "provincia", "tipo", "via", "numero", "resto", "codpostal", "cod_ine", "veredicto"};

/// Bytes that a column needs to be of any use for a part; 0 for texts of any length.
constexpr std::array<std::size_t, fillPartCount> leastWidths{0, 2, 2, 0, 0, 0, 5, 5, 21};

std::size_t indexOf(FillPart part) { return static_cast<std::size_t>(part); }

/// The column from which a part is read; null for those that are only written.
std::optional<AddressColumn> sourceOf(FillPart part) {
    switch (part) {
    case FillPart::Municipality:
        return AddressColumn::Municipality;
    case FillPart::Province:
        return AddressColumn::Province;
    case FillPart::Type:
        return AddressColumn::Type;
    case FillPart::Street:
        return AddressColumn::Street;
    case FillPart::Number:
        return AddressColumn::Number;
    case FillPart::Rest:
        return AddressColumn::Rest;
    case FillPart::PostalCode:
        return AddressColumn::PostalCode;
    case FillPart::IneCode:
    case FillPart::Verdict:
        break;
    }
    return std::nullopt;
}

const std::string& givenPart(const GivenAddress& given, FillPart part) {
    static const std::string none;
    switch (part) {
    case FillPart::Municipality:
        return given.municipality;
    case FillPart::Province:
        return given.province;
    case FillPart::Type:
        return given.type;
    case FillPart::Street:
        return given.street;
    case FillPart::Number:
        return given.number;
    case FillPart::Rest:
        return given.rest;
    case FillPart::PostalCode:
        return given.postalCode;
    case FillPart::IneCode:
    case FillPart::Verdict:
        break;
    }
    return none;
}

std::string judgedPart(const JudgedAddress& judged, FillPart part) {
    switch (part) {
    case FillPart::Municipality:
        return judged.municipality;
    case FillPart::Province:
        return judged.province;
    case FillPart::Type:
        return judged.type;
    case FillPart::Street:
        return judged.street;
    case FillPart::Number:
        return judged.number;
    case FillPart::Rest:
        return judged.rest;
    case FillPart::PostalCode:
        return judged.postalCode;
    case FillPart::IneCode:
        return judged.ineCode;
    case FillPart::Verdict:
        break;
    }
    return std::string(verdictName(judged.verdict));
}

bool isBlank(std::string_view text) { return text.find_first_not_of(" \t\r\n") == std::string_view::npos; }

/// Whether a number's column carries more than the number.
bool carriesMore(const std::string& number) {
    const AddressParts parts = readNumberText(number);
    return !parts.floor.empty() || !parts.rest.empty();
}

/// Whether a municipality's column carries a code, which may stand in the rest.
bool carriesFigures(const std::string& municipality) {
    return municipality.find_first_of("0123456789") != std::string::npos;
}

/// What was found of the rest beside what its own column has, which comes last.
std::string_view restBesideItsColumn(const GivenAddress& given, const JudgedAddress& judged) {
    std::string_view rest = judged.rest;
    const std::string_view own = withoutBlanks(given.rest);
    if (!own.empty() && rest.ends_with(own)) {
        rest.remove_suffix(own.size());
        rest = rest.substr(0, rest.find_last_not_of(", ") + 1);
    }
    return rest;
}

void append(std::string& text, std::string_view more, const char* between) {
    if (!more.empty()) {
        text += (text.empty() ? "" : between) + std::string(more);
    }
}

} // namespace

std::string_view fillPartKey(FillPart part) { return keys.at(indexOf(part)); }

std::optional<FillPart> fillPartOf(std::string_view key) {
    std::string small(key);
    std::ranges::transform(small, small.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const auto found = std::ranges::find(keys, small);
    return found == keys.end() ? std::nullopt : std::optional(static_cast<FillPart>(found - keys.begin()));
}

struct AddressFill::Row {
    const GivenAddress& given;
    const JudgedAddress& judged;
    const std::string& provinceName;

    [[nodiscard]] bool isGiven(FillPart part) const { return !isBlank(givenPart(given, part)); }
    [[nodiscard]] bool isFound(FillPart part) const { return !judgedPart(judged, part).empty(); }
    /// The change of a part; null if there is none.
    [[nodiscard]] const AddressChange* change(FillPart part) const {
        const auto found = std::ranges::find_if(judged.changes, [&](const AddressChange& one) {
            return static_cast<std::size_t>(one.part) == indexOf(part);
        });
        return found == judged.changes.end() ? nullptr : &*found;
    }
};

AddressFill::AddressFill(const dbase::Schema& schema, const std::string& tableFile, const FillNames& names,
                         const FillSources& sources)
    : schema_(schema), encoder_(schema, tableFile), sources_(sources) {
    const dbase::CodePage& page = dbase::CodePage::ofDriver(schema.languageDriver);
    for (const auto& [part, name] : names) {
        std::optional<std::size_t> column;
        if (name.empty()) {
            const auto source = sourceOf(part);
            column = source ? sources_.at(static_cast<std::size_t>(*source)) : std::nullopt;
            if (!column) {
                const std::string key(fillPartKey(part));
                throw loading::Failure("no hay ninguna columna de la que se lea " + dbase::inQuotes(key) +
                                       "; diga en cuál se escribe: " + key + "=COLUMNA");
            }
        } else {
            const auto bytes = page.fromUtf8(name);
            column = bytes ? schema_.find(*bytes) : std::nullopt;
            if (!column) {
                throw loading::Failure("la tabla no tiene la columna " + dbase::inQuotes(name));
            }
        }
        addColumn(part, *column);
    }
}

void AddressFill::addColumn(FillPart part, std::size_t position) {
    const dbase::Column& column = schema_.columns[position];
    const std::string name =
        dbase::inQuotes(dbase::CodePage::ofDriver(schema_.languageDriver).toUtf8(column.name));
    const bool isCode = part == FillPart::PostalCode || part == FillPart::IneCode;
    const bool isNumber = isCode && column.isNumber() && column.decimals == 0;
    if (column.type != dbase::ColumnType::Character && !isNumber) {
        throw loading::Failure("la columna " + name + " no es de texto, y no se puede escribir " +
                               std::string(fillPartKey(part)) + " en ella");
    }
    if (const std::size_t least = leastWidths.at(indexOf(part)); column.width < least) {
        throw loading::Failure("en la columna " + name + " caben " + std::to_string(column.width) +
                               " caracteres, y " + std::string(fillPartKey(part)) + " necesita " +
                               std::to_string(least));
    }
    for (std::size_t i = 0; i < sources_.size(); ++i) {
        if (sources_[i] == position && sourceOf(part) != static_cast<AddressColumn>(i)) {
            throw loading::Failure("de la columna " + name + " se lee " +
                                   std::string(addressColumnKey(static_cast<AddressColumn>(i))) +
                                   ", y no se puede escribir " + std::string(fillPartKey(part)) + " en ella");
        }
    }
    for (const auto& [other, taken] : targets_) {
        if (taken == position) {
            throw loading::Failure("en la columna " + name + " se escribirían dos partes: " +
                                   std::string(fillPartKey(other)) + " y " + std::string(fillPartKey(part)));
        }
    }
    targets_[part] = position;
}

std::string AddressFill::columnName(FillPart part) const {
    return dbase::CodePage::ofDriver(schema_.languageDriver).toUtf8(column(part).name);
}

/// Whether a part is written into the column from which it was read.
bool AddressFill::returnsHome(FillPart part) const {
    const auto source = sourceOf(part);
    const auto target = targets_.find(part);
    return source && target != targets_.end() &&
           sources_.at(static_cast<std::size_t>(*source)) == target->second;
}

/// Whether a part was found in the street's column, having none of its own, or a blank one.
bool AddressFill::isFromStreet(FillPart part, const Row& row) const {
    const AddressChange* const change = row.change(part);
    return !row.isGiven(part) && row.isFound(part) && !(change != nullptr && change->from.empty());
}

bool AddressFill::rewritesStreet(const Row& row) const {
    if (!returnsHome(FillPart::Street) || !row.isGiven(FillPart::Street)) {
        return false;
    }
    return row.change(FillPart::Street) != nullptr ||
           std::ranges::any_of(
               std::array{FillPart::Type, FillPart::Number, FillPart::Rest}, [&](FillPart part) {
                   return isFromStreet(part, row) && (isTarget(part) || row.change(part) != nullptr);
               });
}

bool AddressFill::isWritten(FillPart part, const Row& row) const {
    if (part == FillPart::Verdict) {
        return true;
    }
    if (!isSettled(row.judged.verdict) || !row.isFound(part)) {
        return false;
    }
    if (!returnsHome(part)) {
        return true;
    }
    switch (part) {
    case FillPart::Street:
        return rewritesStreet(row) || !row.isGiven(part);
    case FillPart::Type:
    case FillPart::Number:
    case FillPart::Rest: // what the street's column still holds must not stand twice
        return row.change(part) != nullptr ? !isFromStreet(part, row) || rewritesStreet(row)
                                           : isFromStreet(part, row) && rewritesStreet(row);
    default:
        return row.change(part) != nullptr || !row.isGiven(part);
    }
}

/// Whether what the street's column has of the rest goes nowhere else: a column that has one is not written.
bool AddressFill::keepsRest(const Row& row) const {
    return !isTarget(FillPart::Rest) || (row.isGiven(FillPart::Rest) && returnsHome(FillPart::Rest));
}

/// The street with all that its column carried and that goes nowhere else. Null if it cannot be known what
/// of the rest is its own.
std::optional<std::string> AddressFill::wholeStreet(const Row& row) const {
    std::string text;
    if (!row.isGiven(FillPart::Type) && !isTarget(FillPart::Type)) {
        text = row.judged.type;
    }
    append(text, row.judged.street, " ");
    if (!row.isGiven(FillPart::Number) && !isTarget(FillPart::Number)) {
        append(text, row.judged.number, ", ");
    }
    const std::string_view rest = restBesideItsColumn(row.given, row.judged);
    if (keepsRest(row) && !rest.empty()) {
        if (carriesMore(row.given.number) || carriesFigures(row.given.municipality)) {
            return std::nullopt;
        }
        append(text, rest, ", ");
    }
    return text;
}

/// The same of the number's column, which must not lose a floor.
std::optional<std::string> AddressFill::wholeNumber(const Row& row) const {
    if (carriesMore(row.given.number) && !isTarget(FillPart::Rest)) {
        return std::nullopt;
    }
    return row.judged.number;
}

/// The same of the municipality's column, whose code and province must stand in columns of their own.
std::optional<std::string> AddressFill::wholeMunicipality(const Row& row) const {
    const AddressChange* const change = row.change(FillPart::Municipality);
    const std::string_view given = withoutBlanks(row.given.municipality);
    const std::size_t name = change == nullptr ? std::string_view::npos : given.find(change->from);
    const std::string beside =
        name == std::string_view::npos
            ? std::string()
            : std::string(given.substr(0, name)) + std::string(given.substr(name + change->from.size()));
    const bool isKept =
        hasSameLetters(beside, "") ||
        (hasSameLetters(beside, row.judged.postalCode) &&
         (row.isGiven(FillPart::PostalCode) || isTarget(FillPart::PostalCode))) ||
        ((hasSameLetters(beside, row.judged.province) || hasSameLetters(beside, row.provinceName)) &&
         (row.isGiven(FillPart::Province) || isTarget(FillPart::Province)));
    return isKept ? std::optional(row.judged.municipality) : std::nullopt;
}

/// The code where a code stands or nothing more fits, otherwise the name.
std::string AddressFill::provinceText(const Row& row, std::span<const char> record) const {
    const dbase::Column& target = column(FillPart::Province);
    const std::string_view now = dbase::decodeText({record.data() + target.offset, target.width});
    const bool isCode =
        now.empty() ? target.width <= 3 : now.find_first_not_of("0123456789 ") == std::string_view::npos;
    return isCode || row.provinceName.empty() ? row.judged.province : row.provinceName;
}

/// What a column gets. Null if something that it carries would be lost.
std::optional<std::string> AddressFill::wholeValue(FillPart part, const Row& row,
                                                   std::span<const char> record) const {
    const bool isRewritten = returnsHome(part) && row.isGiven(part);
    switch (part) {
    case FillPart::Street:
        return isRewritten ? wholeStreet(row) : row.judged.street;
    case FillPart::Number:
        return returnsHome(part) ? wholeNumber(row) : row.judged.number;
    case FillPart::Municipality:
        return isRewritten ? wholeMunicipality(row) : row.judged.municipality;
    case FillPart::Province:
        return provinceText(row, record);
    default:
        return judgedPart(row.judged, part);
    }
}

/// Gathers the values to be written, in Windows-1252.
std::optional<FillProblem> AddressFill::collect(Values& values, const Row& row,
                                                std::span<const char> record) const {
    for (const auto& [part, position] : targets_) {
        if (!isWritten(part, row)) {
            continue;
        }
        std::optional<std::string> value = wholeValue(part, row, record);
        if (!value) {
            return FillProblem{columnName(part), loading::utf8FromAnsi(judgedPart(row.judged, part)),
                               part == FillPart::Municipality
                                   ? "la columna lleva también el código o la provincia, que se perderían; "
                                     "escriba además codpostal=COLUMNA o provincia=COLUMNA"
                                   : "la columna lleva también el piso u otras señas, que se perderían; "
                                     "escriba además resto=COLUMNA"};
        }
        if (value->find('?') != std::string::npos && std::ranges::find(record, '?') == record.end()) {
            return FillProblem{columnName(part), loading::utf8FromAnsi(*value),
                               "el registro tiene signos que no están en Windows-1252, y se perderían"};
        }
        values[part] = *std::move(value);
    }
    return std::nullopt;
}

std::optional<FillProblem> AddressFill::fill(std::span<char> record, const GivenAddress& given,
                                             const JudgedAddress& judged,
                                             const std::string& provinceName) const {
    Values values;
    if (auto problem = collect(values, {given, judged, provinceName}, record)) {
        return problem;
    }
    std::vector<char> filled(record.begin(), record.end());
    for (const auto& [part, value] : values) {
        const dbase::Column& target = column(part);
        const std::string utf8 = loading::utf8FromAnsi(value);
        const auto reason =
            encoder_.encode(utf8, target, std::span(filled).subspan(target.offset, target.width));
        if (reason) {
            return FillProblem{columnName(part), utf8, *reason};
        }
    }
    std::ranges::copy(filled, record.begin());
    return std::nullopt;
}

} // namespace ambrel
