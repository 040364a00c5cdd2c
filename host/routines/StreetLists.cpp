// The controller's list of streets.
#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "host/routines/Catalogue.h"
#include "services/Text.h"

namespace host::routines {
namespace {

QStringList callBuscarDireccionPostal(const Values& values, const Surroundings& around) {
    TClassCodPostales controller;
    controller.Padre = around.owner;
    if (!controller.BuscarDireccionPostal(values.flag("CHIndependiente"))) {
        return {yesOrNo(false), {}, {}, {}, {}};
    }
    const TDMCodPostales& tables = *controller.DM;
    return {yesOrNo(true), ambrel::fromWindows1252(tables.tbPostalTIPO_VIA.text()),
            ambrel::fromWindows1252(tables.tbPostalVIA.text()),
            ambrel::fromWindows1252(tables.tbPostalCODPOSTAL.text()),
            ambrel::fromWindows1252(tables.tbMunicipiNOMBRE.text())};
}

} // namespace

std::vector<Routine> streetLists() {
    return {
        {.object = "MIBuscarDireccionPostal",
         .name = "BuscarDireccionPostal",
         .title = "Direcciones postales",
         .summary = "La lista de vías de un TClassCodPostales. Independiente: empieza en la provincia de la "
                    "configuración; si no, en la del municipio en que esté.",
         .arguments = {{"CHIndependiente", "Independiente", ArgumentKind::Flag, true}},
         .results = {{"RAceptado", "Aceptado"},
                     {"RTipoVia", "Tipo de vía"},
                     {"RVia", "Vía"},
                     {"RCodPostal", "Código postal"},
                     {"RMunicipio", "Municipio"}},
         .call = callBuscarDireccionPostal},
    };
}

} // namespace host::routines
