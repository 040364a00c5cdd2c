// Reads an edition, and joins its stretches street by street.
#include "directory/Edition.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <numeric>
#include <utility>

#include "data/TableDefinitions.h"
#include "dbase/dbf/codepage.h"
#include "dbase/system/large_memory.h"
#include "directory/BlockRelay.h"
#include "directory/RecordReading.h"
#include "directory/StreetNames.h"
#include "loading/csv.h"
#include "loading/failure.h"
#include "loading/utf8.h"

namespace ambrel::directory {
namespace {

using loading::Failure;

/// Which one is wanted nobody can know: they may be of several provinces, or of several editions.
[[noreturn]] void refuseSeveral(const std::string& path, FileKind kind,
                                std::span<const OfficialFile* const> files) {
    std::string names;
    for (const OfficialFile* const file : files) {
        names += (names.empty() ? "" : ", ") + file->name.substr(path.size() + std::string(": ").size());
    }
    throw Failure(path + ": hay dentro varios ficheros de " + kindName(kind) + " (" + names +
                  "); saque el que quiera, o deje uno solo");
}

/// The file of a kind at a path: the only one there, or in a ZIP the one of that kind.
OfficialFile fileOfKind(const std::string& path, FileKind kind) {
    std::vector<OfficialFile> files = officialFiles(path);
    if (files.size() == 1) {
        return files.front();
    }
    std::vector<const OfficialFile*> ofKind;
    for (const OfficialFile& file : files) {
        if (const auto layout = findLayout(file); layout && layout->kind == kind) {
            ofKind.push_back(&file);
        }
    }
    if (ofKind.empty()) {
        throw Failure(path + ": no hay dentro ningún fichero de " + kindName(kind));
    }
    if (ofKind.size() > 1) {
        refuseSeveral(path, kind, ofKind);
    }
    return *ofKind.front();
}

/// Position of a column by any of its names; the size if there is none.
std::size_t columnNamed(std::span<const loading::CsvField> fields,
                        std::initializer_list<std::string_view> names) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        std::string upper(fields[i].text);
        std::ranges::transform(upper, upper.begin(),
                               [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
        if (std::ranges::find(names, upper) != names.end()) {
            return i;
        }
    }
    return fields.size();
}

// A line of each kind, whose columns may be those of its layout.

Refusal read(const FixedLine& line, const Layout& layout, StreetLine& street) {
    return directory::read(line, layout.repeatsName, street);
}

Refusal read(const FixedLine& line, const Layout& layout, PseudoLine& pseudo) {
    return directory::read(line, layout.repeatsName, pseudo);
}

Refusal read(const FixedLine& line, const Layout&, UnitLine& unit) { return directory::read(line, unit); }

Refusal read(const FixedLine& line, const Layout&, StretchLine& stretch) {
    return directory::read(line, stretch);
}

std::uint32_t numberIn(std::string_view text, std::size_t digits) {
    const FixedLine line(text);
    const auto number = text.size() == digits ? line.number(1, digits) : std::nullopt;
    return number.value_or(0);
}

/// Sorts the stretches of one municipality. Not by comparing, whose outcomes no processor can foresee, but in
/// two rounds by half the bits of their streets' keys each.
template<class Stretch>
void sortByStreet(std::span<Stretch> stretches, std::vector<Stretch>& room) {
    constexpr std::size_t few = 64; // not worth that
    constexpr unsigned bits = 9;
    constexpr std::size_t values = std::size_t{1} << bits;
    static_assert(values * values == streetId(1, false, 0));
    if (stretches.size() < few) {
        std::ranges::sort(stretches, {}, &Stretch::id);
        return;
    }
    const auto sort = [](std::span<const Stretch> from, std::span<Stretch> to, unsigned bit) {
        const auto value = [&](const Stretch& one) { return one.id >> bit & (values - 1); };
        std::array<std::size_t, values> places{};
        for (const Stretch& one : from) {
            ++places[value(one)];
        }
        std::exclusive_scan(places.begin(), places.end(), places.begin(), std::size_t{0});
        for (const Stretch& one : from) {
            to[places[value(one)]++] = one;
        }
    };
    room.resize(std::max(room.size(), stretches.size()));
    const std::span<Stretch> half = std::span(room).first(stretches.size());
    sort(stretches, half, 0);
    sort(half, stretches, bits);
}

} // namespace

Edition::Edition(const EditionFiles& files, const LoadingProgress& progress)
    : files_(files), progress_(progress) {
    readStreets(files_.streets);
    if (!files_.pseudoStreets.empty()) {
        readPseudoStreets(files_.pseudoStreets);
    }
    streets_.finish();
    if (!files_.municipalities.empty()) {
        readMunicipalities(files_.municipalities);
    }
    if (!files_.units.empty()) {
        readUnits(files_.units);
    }
    readStretches(files_.stretches);
    noteOtherDates();
}

bool Edition::speaksOf(StreetId id) const {
    return speaksOf(placeOf(id)) && (!isPseudo(id) || !files_.pseudoStreets.empty());
}

bool Edition::speaksOf(PlaceCode place) const { return isWanted(place) && hasProvince_.at(place / 1000); }

bool Edition::isWanted(PlaceCode place) const {
    return files_.provinces.empty() ||
           std::ranges::find(files_.provinces, place / 1000) != files_.provinces.end();
}

OfficialFile Edition::beginFile(const std::string& path, FileKind kind) {
    OfficialFile file = fileOfKind(path, kind);
    if (kind == FileKind::Stretches) {
        constexpr std::uint64_t usualLine = 275, usualCount = 2'500'000; // of the whole country
        date_ = file.edition;
        stretches_.reserve(static_cast<std::size_t>(std::min(file.size / usualLine, usualCount)));
        dbase::preferLargePages(stretches_.data(), stretches_.capacity() * sizeof(Stored));
    }
    if (kind == FileKind::Streets) {
        constexpr std::uint64_t usualLine = 120, usualCount = 1'000'000;
        streets_.reserve(static_cast<std::size_t>(std::min(file.size / usualLine, usualCount)));
    }
    dates_.emplace_back(file.name, file.edition);
    return file;
}

void Edition::endFile(const OfficialFile& file, const ReadCounts& counts) {
    if (counts.badCount > 0) {
        notes_.badLines.push_back(badLinesText(file, counts));
    }
    if (counts.hasTooManyBad()) {
        throw Failure(notes_.badLines.back() + '\n' + file.name +
                      ": no se entiende más de una línea de cada cien. No se ha cargado nada.");
    }
}

template<class Record, typename Use>
void Edition::readFile(const std::string& path, FileKind kind, const Use& use) {
    const OfficialFile file = beginFile(path, kind);
    const Layout layout = layoutOf(file, kind);
    const ReadCounts counts = readRecords<Record>(
        file, [&](const FixedLine& line, Record& record) { return read(line, layout, record); },
        [&](const Record& record, std::uint64_t number) {
            return isWanted(record.place) ? use(record, number) : Refusal(nullptr);
        },
        [&](std::uint64_t lines, std::uint64_t bytes) {
            if (progress_ && file.size > 0) {
                progress_(
                    {file.baseName, lines, static_cast<double>(bytes) / static_cast<double>(file.size)});
            }
        });
    endFile(file, counts);
}

void Edition::readStreets(const std::string& path) {
    readFile<StreetLine>(path, FileKind::Streets, [&](const StreetLine& street, std::uint64_t) {
        streets_.add(streetId(street.place, false, street.street), street.type, plainCapitals(street.name));
        return Refusal(nullptr);
    });
}

void Edition::readPseudoStreets(const std::string& path) {
    readFile<PseudoLine>(path, FileKind::PseudoStreets, [&](const PseudoLine& pseudo, std::uint64_t) {
        streets_.add(streetId(pseudo.place, true, pseudo.pseudo), {}, plainCapitals(pseudo.name));
        return Refusal(nullptr);
    });
}

void Edition::readUnits(const std::string& path) {
    readFile<UnitLine>(path, FileKind::Units, [&](const UnitLine& unit, std::uint64_t) -> Refusal {
        places_.addMunicipality(unit.place, unit.municipality);
        const bool isTaken = places_.addUnit(unit.place, unit.unit, unit.entity, unit.nucleus);
        return isTaken ? nullptr : "la unidad tiene más de diez nombres";
    });
}

void Edition::readMunicipalities(const std::string& path) {
    loading::CsvReader csv(loading::fileSource(path), path);
    if (!csv.next()) {
        throw Failure(path + ": está vacío");
    }
    const std::size_t count = csv.fields().size();
    const std::size_t whole = columnNamed(csv.fields(), {"COD_INE"}),
                      province = columnNamed(csv.fields(), {"CPRO"}),
                      number = columnNamed(csv.fields(), {"CMUN"}),
                      name = columnNamed(csv.fields(), {"NOMBRE"});
    if (name == count || (whole == count && (province == count || number == count))) {
        throw Failure(path + ": faltan las columnas COD_INE (o CPRO y CMUN) y NOMBRE");
    }
    while (csv.next()) {
        const auto fields = csv.fields();
        const PlaceCode place =
            fields.size() != count ? 0
            : whole != count       ? numberIn(fields[whole].text, 5)
                             : numberIn(fields[province].text, 2) * 1000 + numberIn(fields[number].text, 3);
        const auto text =
            place == 0 ? std::nullopt : dbase::CodePage::windows1252().fromUtf8(fields[name].text);
        if (place < 1000 || !text || text->empty()) {
            throw Failure(path + ": línea " + std::to_string(csv.line()) +
                          ": no es un municipio con su código y su nombre");
        }
        if (isWanted(place)) {
            places_.addMunicipality(place, *text);
        }
    }
}

void Edition::readStretches(const std::string& path) {
    readFile<StretchLine>(path, FileKind::Stretches, [&](const StretchLine& stretch, std::uint64_t number) {
        take(stretch, number);
        return Refusal(nullptr);
    });
    if (stretches_.empty() && notes_.ofPseudoStreets == 0) {
        throw Failure(path + ": no hay ningún tramo de las provincias pedidas. No se ha cargado nada.");
    }
    requireListed();
    unlisted_.finish();
    std::ranges::stable_sort(pieces_, {}, &Piece::place);
}

/// A file of streets that is cut, or that of another province, would leave the rest without type and with
/// short names.
void Edition::requireListed() const {
    constexpr std::uint64_t least = 50; // such as a small village
    if (unlistedCount_ > least && unlistedCount_ * 20 > stretches_.size() && !files_.areTakenAsWhole) {
        throw Failure(files_.streets + ": faltan las vías de " + std::to_string(unlistedCount_) + " de los " +
                      std::to_string(stretches_.size()) +
                      " tramos. Parece que está cortado o es de otra edición u otras provincias. No se ha "
                      "cargado nada; si es lo que quiere, dé --aunque-falten.");
    }
}

void Edition::noteOtherDates() {
    for (const auto& [file, date] : dates_) {
        if (!date.empty() && !date_.empty() && date != date_) {
            notes_.otherDates.push_back("el fichero " + file + " es de la edición de " + date +
                                        ", y los tramos son de la de " + date_);
        }
    }
}

void Edition::take(const StretchLine& line, std::uint64_t number) {
    hasProvince_.at(line.place / 1000) = true;
    places_.addCode(line.place, line.unit, line.postalCode);
    if (files_.units.empty() && !places_.hasUnit(line.place, line.unit)) {
        places_.addUnit(line.place, line.unit, line.entity(), line.nucleus());
    }
    if (line.pseudo != 0 && files_.pseudoStreets.empty()) {
        ++notes_.ofPseudoStreets;
        return;
    }
    const bool isOfPseudo = line.pseudo != 0;
    const StreetId id = streetId(line.place, isOfPseudo, isOfPseudo ? line.pseudo : line.street);
    if (stretches_.empty() || stretches_.back().id != id) {
        isListed_ = streets_.contains(id);
    }
    if (!isListed_) {
        ++unlistedCount_;
        unlisted_.add(id, {}, plainCapitals(isOfPseudo ? line.pseudoName() : line.streetName()));
    }
    if (pieces_.empty() || pieces_.back().place != line.place) {
        pieces_.push_back({line.place, stretches_.size(), 0});
    }
    ++pieces_.back().size;
    stretches_.push_back(
        {id, {line.postalCode, line.numbering, line.first, line.last, static_cast<std::uint32_t>(number)}});
}

/// The streets of a municipality, and what their views are part of.
struct Edition::PlaceStreets {
    std::size_t size = 0;          // its stretches
    std::vector<Stored> stretches; // if they lie in several pieces
    NamesInWidth names{streetNameWidth};
    std::vector<JoinedStretch> rows;
    std::vector<OfficialStreet> streets;
    std::vector<std::size_t> ends; // of their rows

    void clear() {
        names.clear();
        streets.clear();
        rows.clear();
        ends.clear();
    }
    /// Once no row moves any more.
    void settleRows() {
        for (std::size_t i = 0, begin = 0; i < streets.size(); begin = ends[i++]) {
            streets[i].rows = std::span(rows).subspan(begin, ends[i] - begin);
        }
    }
};

void Edition::joinMunicipality(std::span<Stored> stretches, RangeOpening opening, StreetTypeCodes& types,
                               PlaceStreets& result) {
    std::vector<std::span<Stored>> streets;
    std::vector<const StreetIndex::Entry*> entries;
    for (std::size_t begin = 0, end = 0; begin < stretches.size(); begin = end) {
        while (end < stretches.size() && stretches[end].id == stretches[begin].id) {
            ++end;
        }
        const StreetId id = stretches[begin].id;
        const StreetIndex::Entry* listed = streets_.find(id);
        const StreetIndex::Entry* const entry = listed != nullptr ? listed : unlisted_.find(id);
        notes_.streetsWithoutName += listed != nullptr ? 0 : 1;
        streets.push_back(stretches.subspan(begin, end - begin));
        entries.push_back(listed);
        result.names.add(directory::keyOf(id), (listed != nullptr ? streets_ : unlisted_).name(*entry));
    }
    const std::span<const std::string_view> names = result.names.settle();
    const std::string& municipality = places_.municipality(placeOf(stretches.front().id));
    std::vector<ObservedStretch> observed;
    std::vector<JoinedStretch> rows;
    for (std::size_t i = 0; i < streets.size(); ++i) {
        const StreetIndex::Entry* const listed = entries[i];
        OfficialStreet& street = result.streets.emplace_back(OfficialStreet{.id = streets[i].front().id});
        if (!names[i].empty()) {
            observed.clear();
            std::ranges::transform(streets[i], std::back_inserter(observed), &Stored::stretch);
            joinStretches(observed, opening, rows);
            std::ranges::copy(rows, std::back_inserter(result.rows));
            street.name = names[i];
            street.municipality = municipality;
            street.isListed = listed != nullptr;
            street.type = types.codeOf(listed != nullptr ? streets_.type(*listed) : std::string_view());
            if (listed != nullptr && street.name != streets_.name(*listed)) {
                street.wholeName = streets_.name(*listed);
            }
        }
        result.ends.push_back(result.rows.size());
    }
    result.settleRows();
}

void Edition::passUnnamed(std::span<const Stored> stretches, PlaceStreets& result) {
    notes_.withoutMunicipality += stretches.size();
    StreetId last = 0;
    for (const Stored& one : stretches) {
        if (std::exchange(last, one.id) != one.id) {
            result.streets.push_back({.id = one.id});
        }
    }
}

/// Those of the pieces of one municipality, mostly a single one.
std::span<Edition::Stored> Edition::stretchesOf(std::span<const Piece> pieces, PlaceStreets& result) {
    const auto stretches = [&](const Piece& piece) {
        return std::span(stretches_).subspan(piece.first, piece.size);
    };
    if (pieces.size() == 1) {
        return stretches(pieces.front());
    }
    result.stretches.clear();
    for (const Piece& piece : pieces) {
        std::ranges::copy(stretches(piece), std::back_inserter(result.stretches));
    }
    return result.stretches;
}

/// Joins the municipality's whose pieces come next, and takes them from the list; false after the last one.
bool Edition::joinNext(std::span<const Piece>& pieces, RangeOpening opening, StreetTypeCodes& types,
                       PlaceStreets& result) {
    result.clear();
    if (pieces.empty()) {
        return false;
    }
    const PlaceCode place = pieces.front().place;
    const auto end = std::ranges::find_if(pieces, [&](const Piece& one) { return one.place != place; });
    const auto count = static_cast<std::size_t>(end - pieces.begin());
    const std::span<Stored> stretches = stretchesOf(pieces.first(count), result);
    sortByStreet(stretches, sorting_);
    if (places_.municipality(place).empty()) {
        passUnnamed(stretches, result);
    } else {
        joinMunicipality(stretches, opening, types, result);
    }
    result.size = stretches.size();
    pieces = pieces.subspan(count);
    return true;
}

void Edition::forgetStreets() {
    streets_ = StreetIndex();
    unlisted_ = StreetIndex();
    stretches_ = std::vector<Stored>(); // {} would keep its room
    sorting_ = std::vector<Stored>();
    pieces_.clear();
}

void Edition::forEachStreet(RangeOpening opening, StreetTypeCodes& types, const StreetUse& use) {
    notes_.withoutMunicipality = notes_.streetsWithoutName = 0;
    constexpr std::size_t placesAhead = 128; // a town takes as long as a hundred villages
    BlockRelay<PlaceStreets, placesAhead> relay;
    const std::jthread joining = relay.start([&] {
        std::span<const Piece> pieces = pieces_;
        while (joinNext(pieces, opening, types, relay.toFill())) {
            relay.passOn();
        }
        relay.end();
    });
    std::size_t done = 0;
    relay.useAll([&](const PlaceStreets& place) {
        if (progress_) {
            const std::size_t all = stretches_.size();
            progress_({"tramos", done, static_cast<double>(done) / static_cast<double>(all)});
        }
        done += place.size;
        std::ranges::for_each(place.streets, use);
    });
}

} // namespace ambrel::directory
