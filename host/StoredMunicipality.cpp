#include "host/StoredMunicipality.h"

#include "package/AmbCodPostales.h"

namespace host {
namespace {

constexpr bool exact = true;
constexpr int wholeCode = 2, provinceAlone = 1, nothing = 0; // how much of a postal code is the stored one

} // namespace

bool goToStoredMunicipality(TClassCodPostales& controller, const QString& name, const QString& postalCode) {
    if (name.trimmed().isEmpty())
        return false;
    controller.OrdenaPorNombreMunicipi();
    if (!controller.BuscaPorNombreMunicipi(name.trimmed(), exact))
        return false;
    TDMCodPostales& tables = *controller.DM;
    const std::string sharedName = tables.tbMunicipiNOMBRE.text();
    const std::string stored = ambrel::toNearestWindows1252(postalCode.trimmed());
    const auto likeness = [&] {
        const std::string code = tables.tbMunicipiCODPOSTAL.text();
        return code == stored ? wholeCode : StrLeft(code, 2) == StrLeft(stored, 2) ? provinceAlone : nothing;
    };
    dbase::Bookmark best = tables.tbMunicipi.bookmark();
    int bestLikeness = likeness();
    while (bestLikeness < wholeCode && tables.tbMunicipi.next() &&
           tables.tbMunicipiNOMBRE.text() == sharedName) {
        if (const int here = likeness(); here > bestLikeness) {
            bestLikeness = here;
            best = tables.tbMunicipi.bookmark();
        }
    }
    tables.tbMunicipi.goTo(best);
    return true;
}

} // namespace host
