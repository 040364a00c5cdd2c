// Looking up municipalities by name, and a municipality's own streets.
#include "address/AddressDirectory.h"

#include <algorithm>

#include "data/TableDefinitions.h"
#include "data/WholeName.h"
#include "dbase/dataset/row_walk.h"
#include "dbase/lock/read_scope.h"

namespace ambrel {
namespace {

template<class Value>
void addOnce(std::vector<Value>& values, const Value& value) {
    if (std::ranges::find(values, value) == values.end()) {
        values.push_back(value);
    }
}

/// Where a street has rows marked as the municipality's, those marked as another's do not count.
void dropNeighbours(std::vector<StreetStretch>& stretches, const Municipality& municipality) {
    if (std::ranges::find(stretches, municipality.ineCode, &StreetStretch::ineCode) != stretches.end()) {
        std::erase_if(stretches, [&](const StreetStretch& one) {
            return !one.ineCode.empty() && one.ineCode != municipality.ineCode;
        });
    }
}

} // namespace

AddressDirectory::AddressDirectory(const std::string& database)
    : shown_(database, "MUNICIPI", "NOMBRE"), all_(database), streets_(database, "POSTAL", "NOMBREVIA"),
      shortened_(database) {
    shown_.setAfterOpen(hideMinorEntities);
    shown_.open();
    StreetRows::bindColumns(streets_);
    streets_.open();
    streetIneCode_ = streets_.findField("COD_INE");
    rows_.emplace(streets_);
}

std::vector<Municipality> AddressDirectory::municipalitiesNamed(const std::string& name) {
    const dbase::ReadScope scope;
    std::vector<std::string> codes;
    if (!name.empty() && name.size() <= municipalityNameWidth &&
        shown_.seek({{"NOMBRE", name}}, dbase::SeekMode::Exact)) {
        dbase::forEachRowWhile(
            shown_, [&] { return shownName_.view() == name; }, [&] { addOnce(codes, shownCode_.text()); });
    }
    std::ranges::sort(codes);
    std::vector<Municipality> found;
    for (const std::string& code : codes) {
        if (auto one = municipality(code)) {
            found.push_back(std::move(*one));
        }
    }
    return found;
}

std::optional<std::string> AddressDirectory::municipalityNameBeginning(const std::string& text) {
    const bool isFound = !text.empty() && text.size() <= municipalityNameWidth &&
                         shown_.seek({{"NOMBRE", text}}, dbase::SeekMode::Nearest) &&
                         shownName_.view().starts_with(text);
    return isFound ? std::optional(shownName_.text()) : std::nullopt;
}

std::vector<StreetStretch> AddressDirectory::stretches(const Municipality& municipality,
                                                       const std::string& name) {
    const dbase::ReadScope scope;
    std::vector<StreetStretch> found;
    for (const std::string& province : municipality.provinces) {
        if (name.size() > streetNameWidth) {
            for (const std::string& shortened : shortenedNames(municipality, province, name)) {
                rows_->addOwn(municipality, province, shortened, found);
            }
        } else if (!name.empty()) {
            rows_->addOwn(municipality, province, name, found);
        }
    }
    dropNeighbours(found, municipality);
    return found;
}

std::vector<std::string> AddressDirectory::shortenedNames(const Municipality& municipality,
                                                          const std::string& province,
                                                          const std::string& name) {
    std::vector<std::string> names;
    const std::string beginning = beginningOfShortened(name);
    if (streets_.seek({{"PROVINCIA", province}, {"VIA", beginning}}, dbase::SeekMode::Nearest)) {
        dbase::forEachRowWhile(
            streets_,
            [&] { return streetProvince_.view() == province && street_.view().starts_with(beginning); },
            [&] {
                if (isOwn(municipality) && shortened_.isFrom(streetKey_.view(), name)) {
                    addOnce(names, street_.text());
                }
            });
    }
    return names;
}

bool AddressDirectory::isOwn(const Municipality& municipality) const {
    return municipality.owns(streetCode_.view(),
                             streetIneCode_ ? streetIneCode_->view() : std::string_view());
}

void AddressDirectory::expectStretches(const Municipality& municipality, const std::string& name) {
    if (!name.empty() && name.size() <= streetNameWidth) {
        for (const std::string& province : municipality.provinces) {
            rows_->expect(province, name);
        }
    }
}

bool AddressDirectory::hasStreet(const std::string& name) {
    const dbase::ReadScope scope;
    if (name.empty() || name.size() > streetNameWidth) {
        return false;
    }
    for (char tens = '0'; tens <= '5'; ++tens) {
        for (char units = '0'; units <= '9'; ++units) {
            if (streets_.seek({{"PROVINCIA", std::string{tens, units}}, {"VIA", name}},
                              dbase::SeekMode::Exact)) {
                return true;
            }
        }
    }
    return false;
}

std::optional<std::string> AddressDirectory::ownName(const Municipality& municipality,
                                                     const std::string& province, const std::string& text) {
    const auto goesOn = [&] {
        return streetProvince_.view() == province && street_.view().starts_with(text);
    };
    const bool isFound = streets_.seek({{"PROVINCIA", province}, {"VIA", text}}, dbase::SeekMode::Nearest) &&
                         dbase::walkTo(streets_, goesOn, [&] { return isOwn(municipality); });
    return isFound ? std::optional(street_.text()) : std::nullopt;
}

std::optional<StreetStretch> AddressDirectory::streetBeginning(const Municipality& municipality,
                                                               const std::string& text,
                                                               const std::string& type) {
    const dbase::ReadScope scope;
    std::optional<StreetStretch> best;
    if (text.empty() || text.size() > streetNameWidth) {
        return best;
    }
    for (const std::string& province : municipality.provinces) {
        const std::optional<std::string> name = ownName(municipality, province, text);
        if (!name || (best && *name >= best->name)) {
            continue;
        }
        std::vector<StreetStretch> rows;
        rows_->addOwn(municipality, province, *name, rows);
        dropNeighbours(rows, municipality);
        if (!rows.empty()) {
            const auto ofType = std::ranges::find(rows, type, &StreetStretch::type);
            best = ofType == rows.end() ? rows.front() : *ofType;
        }
    }
    return best;
}

} // namespace ambrel
