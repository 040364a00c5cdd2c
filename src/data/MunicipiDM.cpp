// Events of the municipality routines' data module.
#include "data/MunicipiDM.h"

#include "data/MunicipalityFields.h"
#include "data/TableScope.h"
#include "data/WholeName.h"
#include "dbase/dataset/go_to.h"
#include "services/Ruttb.h"

TDMMunicipi* DMMunicipi = nullptr;

TDMMunicipi::TDMMunicipi(const std::string& database)
    : tbMunicipi(database, "MUNICIPI", "COD_INE"), dsMunicipi(&tbMunicipi),
      tbProvin(database, "PROVIN", "CODIGO"), tbMunicipiAux(database, "MUNICIPI.DBF", "COD_INE"),
      tbMunicipiMJ(database, "MUNICIMJ", "POBLLITE"), dsMunicipiMJ(&tbMunicipiMJ),
      tbProvinAux(database, "PROVIN", "CODIGO") {
    tbMunicipi.setAfterOpen(ambrel::hideMinorEntities);
    tbMunicipi.setOnCalculate(
        [this](dbase::Dataset& table) { ambrel::calculateWholeName(table, tbMunicipiAux); });
    tbMunicipiMJ.setOnCalculate([this](dbase::Dataset&) { calculateProvinceName(); });
    ambrel::bindMunicipalityFields(tbMunicipiAux);
    tbMunicipiAux.open();
}

TDMMunicipi::~TDMMunicipi() { tbMunicipiAux.close(); }

void TDMMunicipi::calculateProvinceName() {
    // Deliberate: opened and closed for each record, so that the cursor never stays open between records, not
    // even if other code opened it.
    tbProvinAux.close();
    TBIndexa("CODIGO", tbProvinAux);
    const ambrel::TableScope open(tbProvinAux);
    if (!tbMunicipiMJ.autoCalculates()) {
        return;
    }
    // Deliberate: the text of PROVCOD is sought as it is, among codes of three characters; the first record
    // at or after it, or else the last province, gives the name.
    dbase::goToNearest(tbProvinAux, {{"CODIGO", tbMunicipiMJPROVCOD.text()}});
    tbMunicipiMJNOMBREPROV.setText(tbProvinAuxPROVINCIA.text());
}
