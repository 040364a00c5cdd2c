// Reading the rows of a street.
#include "address/StreetRows.h"

#include <utility>

#include "dbase/dbf/codec.h"

namespace ambrel {
namespace {

const dbase::Column* columnOf(const dbase::Dataset& table, std::string_view name) {
    const std::optional<std::size_t> position = table.schema().find(name);
    return position ? &table.schema().columns[*position] : nullptr;
}

int numberIn(const dbase::RecordView& row, const dbase::Column* column) {
    const std::int64_t number = dbase::decodeInteger(row.raw(*column)).value_or(0);
    return std::in_range<int>(number) ? static_cast<int>(number) : 0;
}

} // namespace

void StreetRows::bindColumns(dbase::Dataset& streets) {
    streets.bindCharacter("CODIGO1", 8);
    streets.bindCharacter("PROVINCIA", 2);
    streets.bindCharacter("TIPO_VIA", streetTypeWidth);
    streets.bindCharacter("VIA", streetNameWidth);
    streets.bindCharacter("CODPOSTAL", 5);
    for (const char* number : {"IMPAR_INI", "IMPAR_FIN", "PAR_INI", "PAR_FIN"}) {
        streets.bindInteger(number);
    }
}

StreetRows::StreetRows(const dbase::Dataset& streets)
    : named_(streets, {"PROVINCIA", "VIA"}), key_(columnOf(streets, "CODIGO1")),
      type_(columnOf(streets, "TIPO_VIA")), name_(columnOf(streets, "VIA")),
      postalCode_(columnOf(streets, "CODPOSTAL")), ineCode_(columnOf(streets, "COD_INE")),
      oddFirst_(columnOf(streets, "IMPAR_INI")), oddLast_(columnOf(streets, "IMPAR_FIN")),
      evenFirst_(columnOf(streets, "PAR_INI")), evenLast_(columnOf(streets, "PAR_FIN")) {}

std::string_view StreetRows::textOf(const dbase::RecordView& row, const dbase::Column* column) const {
    return column == nullptr ? std::string_view() : dbase::decodeText(row.raw(*column));
}

StreetStretch StreetRows::stretchOf(const dbase::RecordView& row) const {
    return {.record = row.number,
            .key = std::string(textOf(row, key_)),
            .type = std::string(textOf(row, type_)),
            .name = std::string(textOf(row, name_)),
            .postalCode = std::string(textOf(row, postalCode_)),
            .ineCode = std::string(textOf(row, ineCode_)),
            .ranges = {.odd = {numberIn(row, oddFirst_), numberIn(row, oddLast_)},
                       .even = {numberIn(row, evenFirst_), numberIn(row, evenLast_)}}};
}

void StreetRows::addOwn(const Municipality& municipality, std::string_view province, std::string_view name,
                        std::vector<StreetStretch>& found) {
    __builtin_prefetch(municipality.postalCodes.data()); // to have them once the rows are found
    for (const dbase::RecordView& row : named_.find({province, name})) {
        const bool isOwn = municipality.owns(textOf(row, postalCode_), textOf(row, ineCode_));
        // Where letters are ordered by weight, other names have the same key.
        if (isOwn && textOf(row, name_) == name) {
            found.push_back(stretchOf(row));
        }
    }
}

} // namespace ambrel
