// Events of the controller's data module.
#include "data/CodPostalesDM.h"

#include "data/MunicipalityFields.h"
#include "data/WholeName.h"

TDMCodPostales* DMCodPostales = nullptr;

TDMCodPostales::TDMCodPostales(const std::string& database)
    : tbMunicipi(database, "MUNICIPI.DBF", "COD_INE"), tbPostal(database, "POSTAL", "VIA"),
      tbMunicipiAux(database, "MUNICIPI.DBF", "COD_INE") {
    tbMunicipi.setAfterOpen(ambrel::hideMinorEntities);
    tbMunicipi.setOnCalculate(
        [this](dbase::Dataset& table) { ambrel::calculateWholeName(table, tbMunicipiAux); });
    ambrel::bindMunicipalityFields(tbMunicipiAux);
    tbMunicipiAux.open();
}

TDMCodPostales::~TDMCodPostales() { tbMunicipiAux.close(); }
