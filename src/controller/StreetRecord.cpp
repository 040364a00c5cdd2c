// Street rows being edited.
#include "controller/StreetRecord.h"

#include "controller/StreetKeyAllocation.h"
#include "services/Rnumcad.h"

namespace ambrel {

void beginStreet(TDMCodPostales& tables) {
    const std::string province = tables.tbMunicipi.field("COD_PROV").text();
    tables.tbPostal.append();
    tables.tbPostalPROVINCIA.setText(province);
    setRanges(tables, wholeStreet);
}

StretchRanges rangesOf(const TDMCodPostales& tables) {
    return {.odd = {tables.tbPostalIMPAR_INI.integer(), tables.tbPostalIMPAR_FIN.integer()},
            .even = {tables.tbPostalPAR_INI.integer(), tables.tbPostalPAR_FIN.integer()}};
}

void setRanges(TDMCodPostales& tables, const StretchRanges& ranges) {
    tables.tbPostalIMPAR_INI.setInteger(ranges.odd.first);
    tables.tbPostalIMPAR_FIN.setInteger(ranges.odd.last);
    tables.tbPostalPAR_INI.setInteger(ranges.even.first);
    tables.tbPostalPAR_FIN.setInteger(ranges.even.last);
}

bool isUserStreet(const TDMCodPostales& tables) { return isUserKey(tables.tbPostalCODIGO1.view()); }

bool hasStreetName(const TDMCodPostales& tables) { return !withoutBlanks(tables.tbPostalVIA.view()).empty(); }

} // namespace ambrel
