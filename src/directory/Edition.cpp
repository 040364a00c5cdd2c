// Reads an edition, and joins its stretches street by street.
#include "directory/Edition.h"

#include <algorithm>
#include <utility>

#include "data/TableDefinitions.h"
#include "dbase/dbf/codepage.h"
#include "directory/StreetNames.h"
#include "loading/csv.h"
#include "loading/failure.h"
#include "loading/utf8.h"

namespace ambrel::directory {
namespace {

using loading::Failure;

/// The file of a kind at a path: the only one there, or in a ZIP the one of that kind.
OfficialFile fileOfKind(const std::string& path, FileKind kind) {
    std::vector<OfficialFile> files = officialFiles(path);
    if (files.size() == 1) {
        return files.front();
    }
    for (const OfficialFile& file : files) {
        if (const auto layout = findLayout(file); layout && layout->kind == kind) {
            return file;
        }
    }
    throw Failure(path + ": no hay dentro ningún fichero de " + kindName(kind));
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

std::uint32_t numberIn(std::string_view text, std::size_t digits) {
    const FixedLine line(text);
    const auto number = text.size() == digits ? line.number(1, digits) : std::nullopt;
    return number.value_or(0);
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

void Edition::readFile(const std::string& path, FileKind kind,
                       const std::function<Refusal(const FixedLine&, const Layout&, std::uint64_t)>& use) {
    const OfficialFile file = fileOfKind(path, kind);
    const Layout layout = layoutOf(file, kind);
    if (kind == FileKind::Stretches) {
        date_ = file.edition;
    }
    dates_.emplace_back(file.name, file.edition);
    const ReadCounts counts = readLines(
        file, [&](const FixedLine& line, std::uint64_t number) { return use(line, layout, number); },
        [&](std::uint64_t lines, std::uint64_t bytes) {
            if (progress_ && file.size > 0) {
                progress_(
                    {file.baseName, lines, static_cast<double>(bytes) / static_cast<double>(file.size)});
            }
        });
    if (counts.badCount > 0) {
        notes_.badLines.push_back(badLinesText(file, counts));
    }
    if (counts.hasTooManyBad()) {
        throw Failure(notes_.badLines.back() + '\n' + file.name +
                      ": no se entiende más de una línea de cada cien. No se ha cargado nada.");
    }
}

void Edition::readStreets(const std::string& path) {
    readFile(path, FileKind::Streets, [&](const FixedLine& line, const Layout& layout, std::uint64_t) {
        StreetLine street;
        const Refusal refusal = read(line, layout.repeatsName, street);
        if (refusal == nullptr && isWanted(street.place)) {
            streets_.add(streetId(street.place, false, street.street), street.type,
                         plainCapitals(street.name));
        }
        return refusal;
    });
}

void Edition::readPseudoStreets(const std::string& path) {
    readFile(path, FileKind::PseudoStreets, [&](const FixedLine& line, const Layout& layout, std::uint64_t) {
        PseudoLine pseudo;
        const Refusal refusal = read(line, layout.repeatsName, pseudo);
        if (refusal == nullptr && isWanted(pseudo.place)) {
            streets_.add(streetId(pseudo.place, true, pseudo.pseudo), {}, plainCapitals(pseudo.name));
        }
        return refusal;
    });
}

void Edition::readUnits(const std::string& path) {
    readFile(path, FileKind::Units, [&](const FixedLine& line, const Layout&, std::uint64_t) -> Refusal {
        UnitLine unit;
        const Refusal refusal = read(line, unit);
        if (refusal == nullptr && isWanted(unit.place)) {
            places_.addMunicipality(unit.place, unit.municipality);
            if (!places_.addUnit(unit.place, unit.unit, unit.entity, unit.nucleus)) {
                return "la unidad tiene más de diez nombres";
            }
        }
        return refusal;
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
    readFile(path, FileKind::Stretches, [&](const FixedLine& line, const Layout&, std::uint64_t number) {
        StretchLine stretch;
        const Refusal refusal = read(line, stretch);
        if (refusal == nullptr && isWanted(stretch.place)) {
            take(stretch, number);
        }
        return refusal;
    });
    if (stretches_.empty() && notes_.ofPseudoStreets == 0) {
        throw Failure(path + ": no hay ningún tramo de las provincias pedidas. No se ha cargado nada.");
    }
    requireListed();
    unlisted_.finish();
    std::ranges::sort(stretches_, {}, &Stored::id);
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
            notes_.otherDates.push_back(file + " es de la edición de " + date +
                                        ", y los tramos son de la de " + date_);
        }
    }
}

void Edition::take(const StretchLine& line, std::uint64_t number) {
    hasProvince_.at(line.place / 1000) = true;
    places_.addCode(line.place, line.unit, line.postalCode);
    if (files_.units.empty() && !places_.hasUnit(line.place, line.unit)) {
        places_.addUnit(line.place, line.unit, line.entity, line.nucleus);
    }
    if (line.pseudo != 0 && files_.pseudoStreets.empty()) {
        ++notes_.ofPseudoStreets;
        return;
    }
    const bool isOfPseudo = line.pseudo != 0;
    const StreetId id = streetId(line.place, isOfPseudo, isOfPseudo ? line.pseudo : line.street);
    if (streets_.find(id) == nullptr) {
        ++unlistedCount_;
        unlisted_.add(id, {}, plainCapitals(isOfPseudo ? line.pseudoName : line.streetName));
    }
    stretches_.push_back(
        {id, {line.postalCode, line.numbering, line.first, line.last, static_cast<std::uint32_t>(number)}});
}

void Edition::visitMunicipality(std::span<Stored> stretches, RangeOpening opening, StreetTypeCodes& types,
                                const StreetUse& use) {
    const std::string& municipality = places_.municipality(placeOf(stretches.front().id));
    NamesInWidth names(streetNameWidth);
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
        names.add(directory::keyOf(id), std::string((listed != nullptr ? streets_ : unlisted_).name(*entry)));
    }
    const std::vector<std::string> settled = names.settle();
    std::vector<ObservedStretch> observed;
    std::vector<JoinedStretch> rows;
    for (std::size_t i = 0; i < streets.size(); ++i) {
        OfficialStreet street{.id = streets[i].front().id};
        if (!settled[i].empty()) {
            observed.clear();
            std::ranges::transform(streets[i], std::back_inserter(observed), &Stored::stretch);
            joinStretches(observed, opening, rows);
            street.name = settled[i];
            street.municipality = municipality;
            street.isListed = entries[i] != nullptr;
            street.rows = rows;
            street.type = types.codeOf(entries[i] != nullptr ? streets_.type(*entries[i]) : std::string());
            if (entries[i] != nullptr && settled[i] != streets_.name(*entries[i])) {
                street.wholeName = streets_.name(*entries[i]);
            }
        }
        use(street);
    }
}

void Edition::visitUnnamed(std::span<const Stored> stretches, const StreetUse& use) {
    notes_.withoutMunicipality += stretches.size();
    StreetId last = 0;
    for (const Stored& one : stretches) {
        if (std::exchange(last, one.id) != one.id) {
            use({.id = one.id});
        }
    }
}

void Edition::forEachStreet(RangeOpening opening, StreetTypeCodes& types, const StreetUse& use) {
    notes_.withoutMunicipality = notes_.streetsWithoutName = 0;
    const std::span<Stored> all = stretches_;
    for (std::size_t begin = 0, end = 0; begin < all.size(); begin = end) {
        if (progress_) {
            progress_({"tramos", begin, static_cast<double>(begin) / static_cast<double>(all.size())});
        }
        const PlaceCode place = placeOf(all[begin].id);
        while (end < all.size() && placeOf(all[end].id) == place) {
            ++end;
        }
        const std::span<Stored> stretches = all.subspan(begin, end - begin);
        if (places_.municipality(place).empty()) {
            visitUnnamed(stretches, use);
        } else {
            visitMunicipality(stretches, opening, types, use);
        }
    }
}

} // namespace ambrel::directory
