// Street searches of the controller.
#include "controller/StreetSearch.h"

#include "controller/MunicipalitySearch.h"
#include "controller/StreetSearchKey.h"
#include "data/TableScope.h"
#include "dbase/dataset/go_to.h"
#include "dbase/dataset/row_walk.h"
#include "dbase/lock/read_scope.h"
#include "dbase/system/error.h"
#include "services/Ruttb.h"

namespace ambrel {
namespace {

StreetPlace currentPlace(const TDMCodPostales& tables) {
    return {tables.tbMunicipiCODPOSTAL.text(), tables.tbMunicipiCAPITAL.text()};
}

/// Whether the next or the previous row has the same name. A step that does not move is neither compared nor
/// undone.
bool hasNeighbour(TDMCodPostales& tables, const std::string& name) {
    dbase::Dataset& streets = tables.tbPostal;
    bool same = false;
    try {
        if (streets.next()) {
            same = tables.tbPostalVIA.text() == name;
            streets.prior();
        }
        if (!same && streets.prior()) {
            same = tables.tbPostalVIA.text() == name;
            streets.next();
        }
    } catch (const dbase::Error&) {
        // Deliberate: a failure of these steps only means that no neighbour is known.
    }
    return same;
}

/// Searches exactly by name and type, then by name alone if the current row then has another name; returns
/// the result of the first search.
bool findExact(TDMCodPostales& tables, const StreetPlace& place, const std::string& name,
               const std::string& type) {
    const bool found = TBBusca(tables.tbPostal, paddedStreetSearchKey(place, name, type), exactSearch);
    if (tables.tbPostalVIA.view() != name) {
        dbase::goToIfThere(tables.tbPostal, paddedStreetSearchKey(place, name, {}));
    }
    return found;
}

/// Searches nearest by name and type, then by name alone if that reaches another name; returns the result of
/// the first search. Begins with the latter: if it reaches another name, no street has this one, and both
/// searches end on the same row. Most keys typed in the street box take this path, at the cost of one search.
bool findNearest(TDMCodPostales& tables, const StreetPlace& place, const std::string& name,
                 const std::string& type) {
    dbase::Dataset& streets = tables.tbPostal;
    const dbase::Key withoutType = paddedStreetSearchKey(place, name, {});
    bool found = TBBusca(streets, withoutType, nearestSearch);
    if (type.empty() || tables.tbPostalVIA.view() != nameInKey(name)) {
        return found;
    }
    found = TBBusca(streets, paddedStreetSearchKey(place, name, type), nearestSearch);
    if (tables.tbPostalVIA.view() != name) {
        dbase::goToNearest(streets, withoutType);
    }
    return found;
}

/// First the street itself, then its name without type, finally the municipality's first street.
void trySearches(TDMCodPostales& tables, const std::string& name, const std::string& type) {
    const StreetPlace place = currentPlace(tables);
    for (const dbase::Key& key : {streetSearchKey(place, name, type), streetSearchKey(place, name, {}),
                                  streetSearchKey(place, {}, {})}) {
        dbase::goToNearest(tables.tbPostal, key);
        if (tables.tbPostalVIA.text() == name) {
            return;
        }
    }
}

} // namespace

bool findStreet(TDMCodPostales& tables, const std::string& name, const std::string& type, bool exact) {
    const dbase::ReadScope scope;
    const StreetPlace place = currentPlace(tables);
    const bool found = exact ? findExact(tables, place, name, type) : findNearest(tables, place, name, type);
    // Deliberate: in a municipality with a single code, a street with another code is not a match.
    if (const auto only = onlyPostalCode(tables); only && *only != tables.tbPostalCODPOSTAL.text()) {
        tables.tbPostal.first();
    }
    return found;
}

bool findInStreets(TDMCodPostales& tables, const std::string& name, const std::string& type, bool exact) {
    return tables.tbPostal.tag() == "VIA" && findStreet(tables, name, type, exact);
}

std::optional<NamedCompletion> completeStreet(TDMCodPostales& tables, const EditedText& edited,
                                              const std::string& type) {
    static_cast<void>(findInStreets(tables, edited.text, type, nearestSearch));
    const auto completion = complete(edited, tables.tbPostalVIA.text());
    if (!completion) {
        return std::nullopt;
    }
    return NamedCompletion{*completion, tables.tbPostalCODIGO1.integer()};
}

void chooseStreetType(TDMCodPostales& tables, const std::string& name, const std::string& type) {
    const dbase::ReadScope scope;
    if (!hasNeighbour(tables, name)) {
        return;
    }
    const auto named = [&] { return tables.tbPostalVIA.text() == name; };
    const auto typed = [&] { return tables.tbPostalTIPO_VIA.text() == type; };
    const dbase::Bookmark start = tables.tbPostal.bookmark();
    if (!dbase::walkTo(tables.tbPostal, named, typed)) {
        tables.tbPostal.goTo(start);
    }
}

void goToStreetOfMunicipality(TDMCodPostales& tables, const std::string& ineCode, const std::string& name,
                              const std::string& type) {
    const dbase::ReadScope scope;
    TagScope order(tables.tbMunicipi, "COD_INE");
    if (TBBusca(tables.tbMunicipi, {{"COD_INE", ineCode}}, exactSearch)) {
        trySearches(tables, name, type);
    }
    order.restore();
}

} // namespace ambrel
