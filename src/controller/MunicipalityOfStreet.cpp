// From the current street to its municipality, by postal code.
#include "controller/MunicipalityOfStreet.h"

#include "data/Province.h"
#include "data/TableScope.h"
#include "dbase/dataset/go_to.h"
#include "dbase/dataset/row_walk.h"
#include "dbase/lock/read_scope.h"
#include "services/Rnumcad.h"
#include "services/Ruttb.h"

namespace ambrel {
namespace {

bool findPostalCode(TDMCodPostales& tables, const std::string& postalCode) {
    return TBBusca(tables.tbMunicipi, {{"CODPOSTAL", postalCode}}, exactSearch);
}

/// Moves forward to the capital among the municipalities with a postal code, or to the last of them if none
/// is one. Stays put on a municipality with another code.
void walkToCapital(TDMCodPostales& tables, const std::string& postalCode) {
    const auto hasCode = [&] { return tables.tbMunicipiCODPOSTAL.text() == postalCode; };
    while (tables.tbMunicipiCAPITAL.text() != capitalMark && hasCode()) {
        if (!tables.tbMunicipi.next()) {
            return;
        }
        if (!hasCode()) {
            tables.tbMunicipi.prior();
            return;
        }
    }
}

/// Moves forward to the municipality with the given name among those with a postal code, or to the first of
/// them if none has it.
void walkToName(TDMCodPostales& tables, const std::string& postalCode, const std::string& name) {
    const auto hasCode = [&] { return tables.tbMunicipiCODPOSTAL.view() == postalCode; };
    const auto hasName = [&] { return tables.tbMunicipiNOMBRE.view() == name; };
    if (!dbase::walkTo(tables.tbMunicipi, hasCode, hasName)) {
        dbase::goToIfThere(tables.tbMunicipi, {{"CODPOSTAL", postalCode}});
    }
}

std::string nameByPostalCode(TDMCodPostales& tables, const std::string& postalCode) {
    // Deliberate: a street whose postal code belongs to no municipality shows its own name.
    if (!findPostalCode(tables, postalCode)) {
        return tables.tbPostalVIA.text();
    }
    if (tables.tbPostalCAPITAL.text() == localityMark) {
        walkToName(tables, postalCode, std::string(withoutBlanks(tables.tbPostalVIA.view())));
    } else {
        walkToCapital(tables, postalCode);
    }
    return tables.tbMunicipiNOMBRE.text();
}

} // namespace

std::string municipalityOfStreet(TDMCodPostales& tables, const std::string& provinceCode) {
    const dbase::ReadScope scope;
    const std::string postalCode = tables.tbPostalCODPOSTAL.text();
    if (postalCode.empty() || provinceOf(postalCode) != provinceCode) {
        return {};
    }
    TagScope order(tables.tbMunicipi, "CODPOSTAL");
    std::string name = nameByPostalCode(tables, postalCode);
    order.restore();
    return name;
}

void goToMunicipalityOfStreet(TDMCodPostales& tables) {
    const dbase::ReadScope scope;
    TBIndexa("CODPOSTAL", tables.tbMunicipi);
    const std::string postalCode = tables.tbPostalCODPOSTAL.text();
    if (!findPostalCode(tables, postalCode)) {
        dbase::goToNearest(tables.tbMunicipi, {{"CODPOSTAL", provinceOf(postalCode) + "000"}});
    }
    if (tables.tbPostalCAPITAL.text() == capitalMark) {
        walkToCapital(tables, postalCode);
    }
}

} // namespace ambrel
