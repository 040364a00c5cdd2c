// The street-type module's table and data source.
#include "data/ViasDM.h"

TDMVias* DMVias = nullptr;

TDMVias::TDMVias(const std::string& database)
    : tbTipo_Via(database, "TIPO_VIA", "CODIGO"), dsTipo_Via(&tbTipo_Via) {}
