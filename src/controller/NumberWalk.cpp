// The two walks over the rows of a street.
#include "controller/NumberWalk.h"

#include "controller/StreetRecord.h"
#include "dbase/dataset/row_walk.h"
#include "dbase/lock/read_scope.h"

namespace ambrel {

bool walkToNumber(TDMCodPostales& tables, int number) {
    const dbase::ReadScope scope;
    if (tables.tbPostal.isEmpty()) {
        return false;
    }
    const std::string name = tables.tbPostalVIA.text();
    const std::string type = tables.tbPostalTIPO_VIA.text();
    const auto isOfStreet = [&] {
        return tables.tbPostalVIA.view() == name && tables.tbPostalTIPO_VIA.view() == type;
    };
    // Deliberate: no test for the end of the table; the walk ends there because a step no longer moves.
    if (dbase::walkTo(tables.tbPostal, isOfStreet, [&] { return rangesOf(tables).hold(number); })) {
        return true;
    }
    if (!isOfStreet()) {
        tables.tbPostal.prior();
    }
    return false;
}

bool walkToNumberWithoutType(TDMCodPostales& tables, int number) {
    const dbase::ReadScope scope;
    if (tables.tbPostal.isEmpty()) {
        return false;
    }
    const std::string name = tables.tbPostalVIA.text();
    const dbase::Bookmark start = tables.tbPostal.bookmark();
    const auto hasName = [&] { return tables.tbPostalVIA.view() == name; };
    // Deliberate: only rows without a type are considered, whatever type the walk began with.
    const auto isWanted = [&] {
        return tables.tbPostalTIPO_VIA.view().empty() && rangesOf(tables).hold(number);
    };
    if (dbase::walkTo(tables.tbPostal, hasName, isWanted)) {
        return true;
    }
    tables.tbPostal.goTo(start);
    return false;
}

} // namespace ambrel
