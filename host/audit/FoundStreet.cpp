// Goes to the row of a finding and to its municipality.
#include "host/audit/FoundStreet.h"

#include "directory/audit/Finding.h"
#include "package/AmbCodPostales.h"
#include "services/Ruttb.h"
#include "services/Text.h"

namespace host {
namespace {

using namespace ambrel::directory;

constexpr const char* usersBlock = "99"; // keys of the streets that users have added

std::string text(dbase::Dataset& table, const char* column) {
    const dbase::Field* const field = table.findField(column);
    return field != nullptr ? field->text() : std::string();
}

/// Makes the street's municipality current, if the tables say which it is; returns its name as the card
/// shows it, or nothing.
QString goToMunicipality(TClassCodPostales& controller) {
    TDMCodPostales& tables = *controller.DM;
    const std::string ineCode = text(tables.tbPostal, "COD_INE");
    controller.OrdenaPorCodIneMunicipi();
    bool isFound =
        !ineCode.empty() && controller.BuscaPorCodIneMunicipi(ambrel::fromWindows1252(ineCode), exactSearch);
    if (!isFound) {
        controller.OrdenaPorCodPostalMunicipi();
        isFound = controller.BuscaPorCodPostalMunicipi(
            ambrel::fromWindows1252(tables.tbPostalCODPOSTAL.text()), exactSearch);
    }
    controller.OrdenaPorNombreMunicipi();
    return isFound ? ambrel::fromWindows1252(tables.tbMunicipiNOMBRE.text())
                   : ambrel::fromWindows1252(text(tables.tbPostal, "MUNICIPI"));
}

} // namespace

bool isOfStreet(const Finding& finding) {
    return finding.table == AuditedTable::Streets && finding.record != 0;
}

bool openStreetCard(const Finding& finding, TClassCodPostales& controller) {
    dbase::Dataset& streets = controller.DM->tbPostal;
    if (!streets.goTo(dbase::Bookmark(finding.record))) {
        return false;
    }
    const std::string key = streets.field("CODIGO1").text();
    if (ambrel::fromWindows1252(key).toStdString() != finding.key) {
        return false;
    }
    const QString municipality = goToMunicipality(controller);
    controller.MuestraFichaVia(key.starts_with(usersBlock) ? opModificacion : opConsulta, municipality);
    return true;
}

} // namespace host
