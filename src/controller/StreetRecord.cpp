// Street rows being edited.
#include "controller/StreetRecord.h"

#include "controller/StreetKeyAllocation.h"

namespace ambrel {

void beginStreet(TDMCodPostales& tables) {
    const std::string province = tables.tbMunicipi.field("COD_PROV").text();
    tables.tbPostal.append();
    tables.tbPostalPROVINCIA.setText(province);
    tables.tbPostalIMPAR_INI.setInteger(firstOdd);
    tables.tbPostalIMPAR_FIN.setInteger(lastOdd);
    tables.tbPostalPAR_INI.setInteger(firstEven);
    tables.tbPostalPAR_FIN.setInteger(lastEven);
}

bool isUserStreet(const TDMCodPostales& tables) { return isUserKey(tables.tbPostalCODIGO1.view()); }

bool hasStreetName(const TDMCodPostales& tables) {
    return tables.tbPostalVIA.view().find_first_not_of(' ') != std::string_view::npos;
}

} // namespace ambrel
