// Walks over the municipalities that share a name.
#include "lookup/MunicipalityNames.h"

#include "data/Province.h"
#include "dbase/dataset/row_walk.h"
#include "dbase/lock/read_scope.h"
#include "services/Rnumcad.h"
#include "services/Ruttb.h"

namespace ambrel {

bool goToName(const dbase::Field& column, const std::string& name) {
    return TBBusca(column.dataset(), {{column.name(), name}}, nearestSearch) && column.view() == name;
}

bool isNameOfAnother(TDMMunicipi& tables) {
    const dbase::ReadScope scope;
    const std::string name = tables.tbMunicipiNOMBRE.text();
    const std::string code = tables.tbMunicipiCOD_INE.text();
    return dbase::walkTo(
        tables.tbMunicipi, [&] { return tables.tbMunicipiNOMBRE.view() == name; },
        [&] { return tables.tbMunicipiCOD_INE.view() != code; });
}

bool goToNameInProvince(TDMMunicipi& tables, const std::string& provinceCode) {
    const dbase::ReadScope scope;
    const std::string name = tables.tbMunicipiMJPOBLLITE.text();
    const std::string wanted = StrRight("00" + provinceCode, provinceDigits);
    return dbase::walkTo(
        tables.tbMunicipiMJ, [&] { return tables.tbMunicipiMJPOBLLITE.view() == name; },
        [&] { return tables.tbMunicipiMJPROVCOD.view() == wanted; });
}

bool isNameOfNext(TDMMunicipi& tables) {
    const std::string name = tables.tbMunicipiMJPOBLLITE.text();
    // Deliberate: no test for the end of the table. A step from the last record stays on it, so that the last
    // name in the order also counts as shared.
    tables.tbMunicipiMJ.next();
    return tables.tbMunicipiMJPOBLLITE.view() == name;
}

} // namespace ambrel
