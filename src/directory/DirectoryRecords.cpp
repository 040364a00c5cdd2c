// Columns of the directory's three tables.
#include "directory/DirectoryRecords.h"

#include <algorithm>
#include <array>
#include <limits>

#include "data/TableDefinitions.h"
#include "directory/FixedLine.h"

namespace ambrel::directory {
namespace {

constexpr const char* office = "INE";

// The columns of each table, in the order in which their forms list them.
namespace street {
enum { Key, Province, Capital, Type, Name, FirstBound, PostalCode = FirstBound + 4, Municipality, Place };
}
namespace provenance {
enum { Key, Source, Edition, Official, Line, Opened, IsShortened, Print, WholeName };
}
namespace place {
enum { Code, PostalCode, SingleCode, Capital, Name, Province, Number, IsEntity, ShortName };
}

constexpr std::size_t printDigits = 16;
constexpr std::uint32_t mostBound = std::numeric_limits<Bounds::value_type>::max();

std::string printText(Fingerprint print) {
    std::string text(printDigits, '0');
    for (auto digit = text.rbegin(); digit != text.rend(); ++digit, print >>= 4) {
        *digit = "0123456789ABCDEF"[print & 0xF];
    }
    return text;
}

/// Sixteen digits for each of millions of rows: they are computed, not looked for.
Fingerprint printOf(std::string_view text) {
    Fingerprint print = 0;
    bool isPrint = text.size() == printDigits;
    for (const char sign : text) {
        const unsigned digit = static_cast<unsigned char>(sign) - unsigned{'0'};
        const unsigned letter = static_cast<unsigned char>(sign) - unsigned{'A'};
        isPrint = isPrint && (digit <= 9 || letter <= 5);
        print = print << 4 | (digit <= 9 ? digit : letter + 10);
    }
    return isPrint ? print : 0;
}

std::optional<PlaceCode> placeIn(std::string_view text) {
    return text.size() == 5 ? FixedLine(text).number(1, 5) : std::nullopt;
}

} // namespace

dbase::TableDefinition provenanceTable() {
    const auto character = [](const char* name, std::uint16_t width) {
        return dbase::Column{.name = name, .type = dbase::ColumnType::Character, .width = width};
    };
    return {.name = "PROCEDEN",
            .columns = {character("CODIGO1", 8),
                        character("FUENTE", 3),
                        character("EDICION", 10),
                        character("CLAVE", 20),
                        {.name = "LINEA", .type = dbase::ColumnType::Numeric, .width = 10},
                        character("ABIERTO", 4),
                        {.name = "ABREVIADO", .type = dbase::ColumnType::Logical, .width = 1},
                        character("HUELLA", printDigits),
                        character("NOMBRE", provenanceNameWidth)},
            .tags = {{.name = "CODIGO1", .expression = "CODIGO1"}}};
}

dbase::Schema provenanceSchema() {
    dbase::Schema schema{.columns = provenanceTable().columns};
    schema.recordLength = 1; // the deletion mark
    for (dbase::Column& column : schema.columns) {
        column.offset = schema.recordLength;
        schema.recordLength = static_cast<std::uint16_t>(schema.recordLength + column.width);
    }
    return schema;
}

bool ProvenanceRow::saysTheSameAs(const ProvenanceRow& other) const {
    return key == other.key && official == other.official && opened == other.opened &&
           isNameShortened == other.isNameShortened && fingerprint == other.fingerprint &&
           wholeName == other.wholeName;
}

StreetRecord::StreetRecord(const dbase::Schema& schema)
    : form_(schema, {"CODIGO1", "PROVINCIA", "CAPITAL", "TIPO_VIA", "VIA", "IMPAR_INI", "IMPAR_FIN",
                     "PAR_INI", "PAR_FIN", "CODPOSTAL", "MUNICIPI", "COD_INE"}) {}

std::optional<std::uint32_t> StreetRecord::key(std::span<const char> record) const {
    return form_.number(street::Key, record);
}

std::string_view StreetRecord::type(std::span<const char> record) const {
    return form_.text(street::Type, record);
}

std::string_view StreetRecord::name(std::span<const char> record) const {
    return form_.text(street::Name, record);
}

std::string_view StreetRecord::postalCode(std::span<const char> record) const {
    return form_.text(street::PostalCode, record);
}

std::string_view StreetRecord::municipality(std::span<const char> record) const {
    return form_.text(street::Municipality, record);
}

std::optional<PlaceCode> StreetRecord::place(std::span<const char> record) const {
    return placeIn(form_.text(street::Place, record));
}

Bounds StreetRecord::bounds(std::span<const char> record) const {
    Bounds bounds{};
    for (std::size_t i = 0; i < bounds.size(); ++i) {
        const std::uint32_t bound = form_.number(street::FirstBound + i, record).value_or(0);
        bounds[i] = static_cast<std::uint16_t>(std::min(bound, mostBound)); // six digits hold more
    }
    return bounds;
}

std::span<const char> StreetRecord::write(std::uint32_t key, const OfficialStreet& street,
                                          const JoinedStretch& row, std::span<const char> base) {
    const PlaceCode place = placeOf(street.id);
    form_.begin(base);
    form_.setDigits(street::Key, key, 8);
    form_.setDigits(street::Province, row.postalCode / 1000, 2);
    form_.setText(street::Capital, isCapital(place) ? capitalMark : localityMark);
    form_.setText(street::Type, street.type);
    form_.setText(street::Name, street.name);
    for (std::size_t i = 0; i < row.bounds.size(); ++i) {
        form_.setNumber(street::FirstBound + i, row.bounds[i]);
    }
    form_.setDigits(street::PostalCode, row.postalCode, 5);
    form_.setText(street::Municipality, street.municipality);
    form_.setDigits(street::Place, place, 5);
    return form_.record();
}

bool StreetRecord::says(std::span<const char> record, std::uint32_t key, const OfficialStreet& street,
                        const JoinedStretch& row) const {
    const PlaceCode place = placeOf(street.id);
    bool hasBounds = true;
    for (std::size_t i = 0; i < row.bounds.size(); ++i) {
        hasBounds = hasBounds && form_.hasNumber(street::FirstBound + i, record, row.bounds[i]);
    }
    return hasBounds && form_.hasText(street::Name, record, street.name) &&
           form_.hasDigits(street::PostalCode, record, row.postalCode, 5) &&
           form_.hasDigits(street::Province, record, row.postalCode / 1000, 2) &&
           form_.hasText(street::Capital, record, isCapital(place) ? capitalMark : localityMark) &&
           form_.hasText(street::Type, record, street.type) &&
           form_.hasText(street::Municipality, record, street.municipality) &&
           form_.hasDigits(street::Key, record, key, 8) && form_.hasDigits(street::Place, record, place, 5);
}

ProvenanceRecord::ProvenanceRecord(const dbase::Schema& schema)
    : form_(schema, {"CODIGO1", "FUENTE", "EDICION", "CLAVE", "LINEA", "ABIERTO", "ABREVIADO"},
            {"HUELLA", "NOMBRE"}) {}

std::optional<ProvenanceRow> ProvenanceRecord::read(std::span<const char> record) const {
    if (form_.text(provenance::Source, record) != office) {
        return std::nullopt;
    }
    return ProvenanceRow{.key = form_.number(provenance::Key, record),
                         .official = form_.text(provenance::Official, record),
                         .line = form_.number(provenance::Line, record).value_or(0),
                         .opened = form_.text(provenance::Opened, record),
                         .isNameShortened = form_.logical(provenance::IsShortened, record),
                         .fingerprint = printOf(form_.text(provenance::Print, record)),
                         .wholeName = form_.text(provenance::WholeName, record)};
}

std::string_view ProvenanceRecord::edition(std::span<const char> record) const {
    return form_.text(provenance::Edition, record);
}

std::span<const char> ProvenanceRecord::write(const ProvenanceRow& row, const std::string& edition,
                                              std::span<const char> base) {
    form_.begin(base);
    if (row.key) {
        form_.setDigits(provenance::Key, *row.key, 8);
    }
    form_.setText(provenance::Source, office);
    form_.setText(provenance::Edition, edition);
    form_.setText(provenance::Official, row.official);
    form_.setNumber(provenance::Line, static_cast<std::int64_t>(row.line));
    form_.setText(provenance::Opened, row.opened);
    form_.setLogical(provenance::IsShortened, row.isNameShortened);
    form_.setText(provenance::Print, row.fingerprint != 0 ? printText(row.fingerprint) : std::string());
    form_.setText(provenance::WholeName, row.wholeName);
    return form_.record();
}

PlaceRecord::PlaceRecord(const dbase::Schema& schema)
    : form_(schema, {"COD_INE", "CODPOSTAL", "UNICO", "CAPITAL", "NOMBRE", "COD_PROV", "COD_MUN", "ENT_MENOR",
                     "NOM_MUNICI"}) {}

std::optional<PlaceCode> PlaceRecord::place(std::span<const char> record) const {
    return placeIn(form_.text(place::Code, record));
}

bool PlaceRecord::isEntity(std::span<const char> record) const {
    return form_.logical(place::IsEntity, record);
}

std::string_view PlaceRecord::name(std::span<const char> record) const {
    return form_.text(place::Name, record);
}

std::string_view PlaceRecord::postalCode(std::span<const char> record) const {
    return form_.text(place::PostalCode, record);
}

bool PlaceRecord::hasOneCode(std::span<const char> record) const {
    return form_.text(place::SingleCode, record) == singleCodeMark;
}

std::span<const char> PlaceRecord::write(const PlaceRow& row, std::span<const char> base) {
    const OfficialPlaceKey& official = row.official;
    form_.begin(base);
    form_.setDigits(place::Code, official.place, 5);
    form_.setDigits(place::PostalCode, official.postalCode, 5);
    form_.setText(place::SingleCode, row.hasOneCode ? singleCodeMark : "N");
    form_.setText(place::Capital,
                  !official.isEntity && isCapital(official.place) ? capitalMark : localityMark);
    form_.setText(place::Name, row.name);
    form_.setDigits(place::Province, official.place / 1000, 2);
    form_.setDigits(place::Number, official.place % 1000, 4);
    form_.setLogical(place::IsEntity, official.isEntity);
    form_.setText(place::ShortName, row.shortPlaceName);
    return form_.record();
}

} // namespace ambrel::directory
