// The two walks over the rows of a street.
#include "controller/NumberWalk.h"

#include "controller/NumberRange.h"
#include "dbase/lock/read_scope.h"

namespace ambrel {
namespace {

bool currentRowHolds(const TDMCodPostales& tables, int number) {
    const StretchRanges ranges{
        .odd = {tables.tbPostalIMPAR_INI.integer(), tables.tbPostalIMPAR_FIN.integer()},
        .even = {tables.tbPostalPAR_INI.integer(), tables.tbPostalPAR_FIN.integer()}};
    return ranges.hold(number);
}

} // namespace

bool walkToNumber(TDMCodPostales& tables, int number) {
    const dbase::ReadScope scope;
    if (tables.tbPostal.isEmpty()) {
        return false;
    }
    const std::string name = tables.tbPostalVIA.text();
    const std::string type = tables.tbPostalTIPO_VIA.text();
    // Deliberate: no test for the end of the table; the walk ends there because a step no longer moves.
    do {
        if (tables.tbPostalVIA.text() != name || tables.tbPostalTIPO_VIA.text() != type) {
            tables.tbPostal.prior();
            return false;
        }
        if (currentRowHolds(tables, number)) {
            return true;
        }
    } while (tables.tbPostal.next());
    return false;
}

bool walkToNumberWithoutType(TDMCodPostales& tables, int number) {
    const dbase::ReadScope scope;
    if (tables.tbPostal.isEmpty()) {
        return false;
    }
    const std::string name = tables.tbPostalVIA.text();
    const dbase::Bookmark start = tables.tbPostal.bookmark();
    do {
        if (tables.tbPostalVIA.text() != name) {
            break;
        }
        // Deliberate: only rows without type are considered, whatever type the walk began with.
        if (tables.tbPostalTIPO_VIA.text().empty() && currentRowHolds(tables, number)) {
            return true;
        }
    } while (tables.tbPostal.next());
    tables.tbPostal.goTo(start);
    return false;
}

} // namespace ambrel
