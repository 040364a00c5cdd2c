// Saves imported streets.
#include "import/StreetSaving.h"

#include <algorithm>

#include "controller/ClasCodPostales.h"
#include "controller/StreetGroup.h"
#include "controller/StreetRecord.h"
#include "data/CodPostalesDM.h"
#include "data/Province.h"
#include "dbase/dataset/row_walk.h"
#include "dbase/dbf/codec.h"
#include "dbase/lock/read_scope.h"
#include "dbase/system/error.h"
#include "services/Rnumcad.h"
#include "services/Ruttb.h"

namespace ambrel {
namespace {

constexpr const char* municipalities = "MUNICIPI.DBF";
/// Enough for their pages to be shared, few enough for the user to see the import go on.
constexpr std::size_t mostTogether = 4000;

/// A street as read back from POSTAL once stored, so that comparisons use what would be written.
struct StoredForm {
    std::string province, postalCode, type, name;
    int oddFirst, oddLast, evenFirst, evenLast; // all 0: the whole street

    [[nodiscard]] StretchRanges ranges() const {
        return {.odd = {oddFirst, oddLast}, .even = {evenFirst, evenLast}};
    }
    [[nodiscard]] bool isWholeStreet() const { return ranges() == StretchRanges(); }
};

/// A text as read back from a character column of this width: cut, without trailing blanks.
std::string asStored(std::string_view text, std::size_t width) {
    return std::string(dbase::decodeText(text.substr(0, width)));
}

StoredForm storedForm(const ImportedStreet& street, const HostMunicipality& municipality, StreetCodes codes) {
    StoredForm form{.province = municipality.provinceCode,
                    .postalCode = municipality.postalCode,
                    .type = UpperCase(asStored(street.type, streetTypeWidth)),
                    .name = UpperCase(asStored(street.name, streetNameWidth)),
                    .oddFirst = 0,
                    .oddLast = 0,
                    .evenFirst = 0,
                    .evenLast = 0};
    if (codes == StreetCodes::Own) {
        form.postalCode = asStored(street.postalCode, postalCodeDigits);
        form.oddFirst = street.oddFirst;
        form.oddLast = street.oddLast;
        form.evenFirst = street.evenFirst;
        form.evenLast = street.evenLast;
    }
    return form;
}

/// Moves to the first street with this name in a province; false if there is none.
bool goToName(TDMCodPostales& tables, const StoredForm& form) {
    TBIndexa("NOMBREVIA", tables.tbPostal);
    return TBBusca(tables.tbPostal, {{"PROVINCIA", form.province}, {"VIA", form.name}}, exactSearch);
}

/// Whether the current street still has the name of the walk. Both sides of the comparison ignore case.
bool hasName(TDMCodPostales& tables, const StoredForm& form) {
    return tables.tbPostalPROVINCIA.view() == form.province &&
           UpperCase(tables.tbPostalVIA.text()) == form.name;
}

bool isSameStreet(TDMCodPostales& tables, const StoredForm& form) {
    if (tables.tbPostalCODPOSTAL.view() != form.postalCode ||
        UpperCase(tables.tbPostalTIPO_VIA.text()) != form.type) {
        return false;
    }
    const StretchRanges stored = rangesOf(tables);
    return stored == form.ranges() || (form.isWholeStreet() && stored == wholeStreet);
}

/// Goes to the first street of that name for which `isWanted` holds; false when there is none.
template<typename IsWanted>
bool walkToOne(TDMCodPostales& tables, const StoredForm& form, IsWanted isWanted) {
    const dbase::ReadScope scope;
    return goToName(tables, form) && dbase::walkTo(
                                         tables.tbPostal, [&] { return hasName(tables, form); }, isWanted);
}

/// Whether POSTAL contains the street as it would be written.
bool ExisteViaIgual(TDMCodPostales& tables, const StoredForm& form) {
    return walkToOne(tables, form, [&] { return isSameStreet(tables, form); });
}

/// Moves to the street of that name with one of the postal codes; false if there is none.
bool ExisteViaEnMunicipio(TDMCodPostales& tables, const StoredForm& form,
                          const std::vector<std::string>& codes) {
    return walkToOne(tables, form, [&] {
        return std::ranges::find(codes, tables.tbPostalCODPOSTAL.view()) != codes.end();
    });
}

void append(TDMCodPostales& tables, const StoredForm& form) {
    tables.tbPostal.append();
    tables.tbPostalPROVINCIA.setText(form.province);
    tables.tbPostalCAPITAL.setText(localityMark); // Deliberate: whatever the municipality's own mark is
    tables.tbPostalTIPO_VIA.setText(form.type);
    tables.tbPostalVIA.setText(form.name);
    setRanges(tables, form.isWholeStreet() ? wholeStreet : form.ranges());
    tables.tbPostalCODPOSTAL.setText(form.postalCode);
}

/// Visits the rows of MUNICIPI with a name in one province, until `visit` returns false.
template<typename Visit>
void visitMunicipality(const std::string& database, const std::string& name, const std::string& province,
                       Visit visit) {
    const auto table = CreaTabla(database, municipalities, "NOMBRE", false, openNow);
    dbase::Field& municipalityName = table->field("NOMBRE");
    dbase::Field& municipalityProvince = table->field("COD_PROV");
    if (!TBBusca(*table, {{"NOMBRE", name}}, exactSearch)) {
        return;
    }
    const auto hasName = [&] { return municipalityName.view() == name; };
    const auto isLast = [&] { return municipalityProvince.view() == province && !visit(*table); };
    dbase::walkTo(*table, hasName, isLast);
}

} // namespace

bool hasOnlyOneCode(const std::string& database, const HostMunicipality& municipality) {
    if (municipality.provinceCode.empty() || municipality.provinceCode == "00" ||
        municipality.postalCode.empty() || municipality.postalCode == "00000" || municipality.name.empty()) {
        return false;
    }
    bool only = false;
    visitMunicipality(database, municipality.name, municipality.provinceCode, [&only](dbase::Dataset& table) {
        only = table.field("UNICO").view() == singleCodeMark;
        return false;
    });
    return only;
}

std::vector<std::string> CodigosPostalesMunicipio(const std::string& database,
                                                  const HostMunicipality& municipality) {
    std::vector<std::string> codes;
    const std::string name = municipality.isFirstOfList ? std::string() : UpperCase(municipality.name);
    if (municipality.provinceCode.empty() || name.empty()) {
        return codes;
    }
    visitMunicipality(database, name, municipality.provinceCode, [&codes](dbase::Dataset& table) {
        codes.push_back(table.field("CODPOSTAL").text());
        return true;
    });
    return codes;
}

void StreetSaving::show(std::size_t row) const {
    if (beforeRow) {
        beforeRow(row + 1);
    }
}

/// The row after those that are saved together; `begin` itself if that one is saved alone: of a street
/// without a name the controller informs the user, during which nobody may be kept from the table.
std::size_t StreetSaving::groupFrom(std::size_t begin) const {
    std::size_t end = begin;
    while (end < streets.size() && end - begin < mostTogether &&
           !withoutBlanks(asStored(streets[end].name, streetNameWidth)).empty()) {
        ++end;
    }
    return end;
}

template<typename SaveRow>
void StreetSaving::saveAlone(std::size_t row, SaveRow saveRow, Outcome& outcome) {
    show(row);
    try {
        saveRow(storedForm(streets[row], municipality, codes), outcome);
    } catch (const dbase::Error& failure) {
        outcome.failure = QString::fromUtf8(failure.what());
        if (failure.code() != dbase::ErrorCode::ReadOnly) { // in that case there is no row to cancel
            controller.CancelarVia();
        }
    } catch (const std::exception& failure) {
        outcome.failure = QString::fromUtf8(failure.what());
        controller.CancelarVia();
    }
}

template<typename SaveRow>
std::size_t StreetSaving::saveTogether(std::size_t begin, std::size_t end, SaveRow saveRow,
                                       Outcome& outcome) {
    Outcome grouped = outcome;
    try {
        StreetGroup group(controller);
        std::size_t row = begin;
        do {
            saveRow(storedForm(streets[row], municipality, codes), grouped);
        } while (++row < end && !group.isDue());
        group.commit();
        outcome = grouped;
        return row;
    } catch (const std::exception&) {
        // It meets its row again, alone, and is reported there.
    }
    try {
        controller.DM->tbPostal.refresh(); // away from rows that are not there
    } catch (const dbase::Error&) {
        // So do failures of reading.
    }
    for (std::size_t row = begin; row < end; ++row) {
        saveAlone(row, saveRow, outcome);
    }
    return end;
}

template<typename SaveRow>
StreetSaving::Outcome StreetSaving::saveAll(SaveRow saveRow) {
    Outcome outcome;
    const dbase::NotificationPause pause(controller.DM->tbPostal); // bound lists are redrawn once, at the end
    for (std::size_t row = 0; row < streets.size();) {
        const std::size_t end = groupFrom(row);
        if (end == row) {
            saveAlone(row++, saveRow, outcome);
            continue;
        }
        for (std::size_t shown = row; shown < end; ++shown) {
            show(shown);
        }
        while (row < end) {
            row = saveTogether(row, end, saveRow, outcome);
        }
    }
    sync(outcome);
    return outcome;
}

/// Called once for all rows: until then a power cut may lose them, but nothing has been reported as stored.
void StreetSaving::sync(Outcome& outcome) {
    if (outcome.count == 0) {
        return;
    }
    try {
        controller.DM->tbPostal.sync();
    } catch (const std::exception& failure) {
        outcome.failure = QString::fromUtf8(failure.what());
    }
}

/// Counts the pending row and stores it; if that fails, drops it to make way for the next street.
void StreetSaving::offer(Outcome& outcome) {
    if (controller.AceptarVia(dbase::Durability::Process)) { // see sync()
        ++outcome.stored;
    } else {
        if (!controller.streetFailure().isEmpty()) {
            outcome.failure = controller.streetFailure();
        }
        controller.DM->tbPostal.cancel();
    }
    ++outcome.count;
}

StreetSaving::Outcome StreetSaving::addNew() {
    return saveAll([this](const StoredForm& form, Outcome& outcome) {
        if (ExisteViaIgual(*controller.DM, form)) {
            return;
        }
        append(*controller.DM, form);
        offer(outcome);
    });
}

StreetSaving::Outcome StreetSaving::completeTypes(const std::vector<std::string>& postalCodes) {
    return saveAll([this, &postalCodes](const StoredForm& form, Outcome& outcome) {
        TDMCodPostales& tables = *controller.DM;
        if (!ExisteViaEnMunicipio(tables, form, postalCodes) || !tables.tbPostalTIPO_VIA.isNull()) {
            return;
        }
        tables.tbPostal.edit();
        tables.tbPostalTIPO_VIA.setText(form.type);
        offer(outcome);
    });
}

} // namespace ambrel
