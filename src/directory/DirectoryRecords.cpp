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
constexpr std::string_view printSigns = "0123456789ABCDEF";
constexpr std::uint32_t mostBound = std::numeric_limits<Bounds::value_type>::max();

std::string printText(Fingerprint print) {
    std::string text(printDigits, '0');
    for (auto digit = text.rbegin(); digit != text.rend(); ++digit, print >>= 4) {
        *digit = printSigns[print & 0xF];
    }
    return text;
}

/// Values of the digits; more than any of them for another sign.
constexpr std::array<std::uint8_t, 256> printDigitValues() {
    std::array<std::uint8_t, 256> values{};
    values.fill(0xFF);
    for (std::uint8_t value = 0; value < printSigns.size(); ++value) {
        values.at(static_cast<unsigned char>(printSigns[value])) = value;
    }
    return values;
}

Fingerprint printOf(std::string_view text) {
    static constexpr std::array<std::uint8_t, 256> values = printDigitValues();
    Fingerprint print = 0;
    unsigned seen = 0;
    for (const char sign : text) {
        const unsigned value = values[static_cast<unsigned char>(sign)];
        seen |= value;
        print = print << 4 | value;
    }
    return text.size() == printDigits && seen < printSigns.size() ? print : 0;
}

std::optional<PlaceCode> placeIn(std::string_view text) {
    return text.size() == 5 ? FixedLine(text).number(1, 5) : std::nullopt;
}

// The columns of POSTAL, by what they are of.

void writeStreet(RecordForm& form, const OfficialStreet& street) {
    form.setText(street::Type, street.type);
    form.setText(street::Name, street.name);
    form.setText(street::Municipality, street.municipality);
}

void writePlace(RecordForm& form, PlaceCode place) {
    form.setText(street::Capital, isCapital(place) ? capitalMark : localityMark);
    form.setDigits(street::Place, place, 5);
}

void writeKey(RecordForm& form, std::uint32_t key) { form.setDigits(street::Key, key, 8); }

void writePostalCode(RecordForm& form, std::uint32_t postalCode) {
    form.setDigits(street::Province, postalCode / 1000, 2);
    form.setDigits(street::PostalCode, postalCode, 5);
}

void writeBounds(RecordForm& form, const Bounds& bounds) {
    for (std::size_t i = 0; i < bounds.size(); ++i) {
        form.setNumber(street::FirstBound + i, bounds[i]);
    }
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
                     "PAR_INI", "PAR_FIN", "CODPOSTAL", "MUNICIPI", "COD_INE"}),
      expected_(form_) {
    writePlace(expected_, expectedPlace_);
    writePostalCode(expected_, expectedPostalCode_);
    writeBounds(expected_, expectedBounds_);
}

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
    form_.begin(base);
    writeStreet(form_, street);
    writePlace(form_, placeOf(street.id));
    writeKey(form_, key);
    writePostalCode(form_, row.postalCode);
    writeBounds(form_, row.bounds);
    return form_.record();
}

void StreetRecord::expect(const OfficialStreet& street) {
    writeStreet(expected_, street);
    if (const PlaceCode place = placeOf(street.id); place != expectedPlace_) {
        writePlace(expected_, place);
        expectedPlace_ = place;
    }
}

bool StreetRecord::says(std::span<const char> record, std::uint32_t key, const JoinedStretch& row) {
    writeKey(expected_, key);
    if (row.postalCode != expectedPostalCode_) {
        writePostalCode(expected_, row.postalCode);
        expectedPostalCode_ = row.postalCode;
    }
    if (row.bounds != expectedBounds_) {
        writeBounds(expected_, row.bounds);
        expectedBounds_ = row.bounds;
    }
    return expected_.isSaidBy(record);
}

ProvenanceRecord::ProvenanceRecord(const dbase::Schema& schema)
    : form_(schema, {"CODIGO1", "FUENTE", "EDICION", "CLAVE", "LINEA", "ABIERTO", "ABREVIADO"},
            {"HUELLA", "NOMBRE"}) {}

std::optional<ProvenanceRow> ProvenanceRecord::read(std::span<const char> record) const {
    if (!isOfOffice(record)) {
        return std::nullopt;
    }
    return ProvenanceRow{.key = key(record),
                         .official = official(record),
                         .line = form_.number(provenance::Line, record).value_or(0),
                         .opened = opened(record),
                         .isNameShortened = isNameShortened(record),
                         .fingerprint = fingerprint(record),
                         .wholeName = wholeName(record)};
}

bool ProvenanceRecord::isOfOffice(std::span<const char> record) const {
    return form_.text(provenance::Source, record) == office;
}

std::optional<std::uint32_t> ProvenanceRecord::key(std::span<const char> record) const {
    return form_.number(provenance::Key, record);
}

std::string_view ProvenanceRecord::official(std::span<const char> record) const {
    return form_.text(provenance::Official, record);
}

std::string_view ProvenanceRecord::opened(std::span<const char> record) const {
    return form_.text(provenance::Opened, record);
}

bool ProvenanceRecord::isNameShortened(std::span<const char> record) const {
    return form_.logical(provenance::IsShortened, record);
}

Fingerprint ProvenanceRecord::fingerprint(std::span<const char> record) const {
    return printOf(form_.text(provenance::Print, record));
}

std::string_view ProvenanceRecord::wholeName(std::span<const char> record) const {
    return form_.text(provenance::WholeName, record);
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
