// The routines that search for municipalities.
#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "host/routines/Catalogue.h"
#include "lookup/RutCodPostales.h"
#include "services/Text.h"

namespace host::routines {
namespace {

Argument caption(const QString& initial) {
    return {"ETitulo", "Título de la lista", ArgumentKind::Text, initial};
}

Argument name(const QString& initial) { return {"ENombre", "Nombre", ArgumentKind::Text, initial}; }

Argument order() {
    return {"CBOrden", "Orden (tag)", ArgumentKind::Choice, "NOMBRE", {"COD_INE", "CODPOSTAL", "NOMBRE"}};
}

QStringList callIMunicipios(const Values& values, const Surroundings& around) {
    QString codIne = values.text("ECodIne");
    QString postalCode = values.text("ECodPostal");
    QString town = values.text("ENombre");
    QString province, provinceCode, number;
    const bool accepted = IMunicipios(around.owner, codIne, postalCode, town, province, provinceCode, number,
                                      values.text("CBOrden"), values.text("ETitulo"));
    return {yesOrNo(accepted), codIne, postalCode, town, province, provinceCode, number};
}

QStringList callIMunicipiosMJ(const Values& values, const Surroundings& around) {
    QString town = values.text("ENombre");
    QString provinceCode, province;
    const bool accepted = IMunicipiosMJ(around.owner, provinceCode, town, province, values.text("ETitulo"));
    return {yesOrNo(accepted), town, provinceCode, province};
}

QStringList callIBuscaMunicipio(const Values& values, const Surroundings&) {
    QString town = values.text("ENombre");
    QString codIne, postalCode, capital;
    const bool found = IBuscaMunicipio(town, codIne, postalCode, capital, values.text("ETitulo"));
    return {yesOrNo(found), town, codIne, postalCode, capital};
}

QStringList callIBuscaMunicipioMJ(const Values& values, const Surroundings&) {
    QString town = values.text("ENombre");
    QString provinceCode = values.text("ECodProvincia");
    QString code;
    const bool found =
        IBuscaMunicipioMJ(town, provinceCode, code, values.text("ETitulo"), values.flag("CHRango"));
    return {yesOrNo(found), town, provinceCode, code};
}

QStringList callBuscarMunicipios(const Values& values, const Surroundings& around) {
    TClassCodPostales controller;
    controller.Padre = around.owner;
    const QString tag = values.text("CBOrden");
    if (tag == QLatin1String("COD_INE")) {
        controller.OrdenaPorCodIneMunicipi();
    } else if (tag == QLatin1String("CODPOSTAL")) {
        controller.OrdenaPorCodPostalMunicipi();
    }
    if (!controller.BuscarMunicipios()) {
        return {yesOrNo(false), {}, {}, {}};
    }
    const TDMCodPostales& tables = *controller.DM;
    return {yesOrNo(true), ambrel::fromWindows1252(tables.tbMunicipiCOD_INE.text()),
            ambrel::fromWindows1252(tables.tbMunicipiCODPOSTAL.text()),
            ambrel::fromWindows1252(tables.tbMunicipiNOMBRE.text())};
}

} // namespace

std::vector<Routine> municipalityLists() {
    return {
        {.object = "MIIMunicipios",
         .name = "IMunicipios",
         .title = "Municipios",
         .summary = "Muestra siempre la lista, colocada en lo que se dé para el orden elegido.",
         .arguments = {order(),
                       {"ECodIne", "Código INE", ArgumentKind::Text, QString()},
                       {"ECodPostal", "Código postal", ArgumentKind::Text, QString()},
                       name("GIJON"),
                       caption("Municipios")},
         .results = {{"RAceptado", "Aceptado"},
                     {"RCodIne", "Código INE"},
                     {"RCodPostal", "Código postal"},
                     {"RNombre", "Nombre"},
                     {"RProvincia", "Provincia"},
                     {"RCodProvincia", "Código de provincia"},
                     {"RNumero", "Número de municipio"}},
         .call = callIMunicipios},
        {.object = "MIIMunicipiosMJ",
         .name = "IMunicipiosMJ",
         .title = "Municipios de la lista alternativa",
         .summary = "Muestra siempre la lista alternativa, colocada en el nombre que se dé.",
         .arguments = {name("GIJON"), caption("Municipios")},
         .results = {{"RAceptado", "Aceptado"},
                     {"RNombre", "Nombre"},
                     {"RCodProvincia", "Código de provincia"},
                     {"RProvincia", "Provincia"}},
         .call = callIMunicipiosMJ},
        {.object = "MIIBuscaMunicipio",
         .name = "IBuscaMunicipio",
         .title = "Municipio por su nombre",
         .summary = "Un nombre que sólo tiene un municipio se resuelve sin preguntar; con cualquier otro se "
                    "muestra la lista.",
         .arguments = {name("MIERES"), caption("Elija el municipio")},
         .results = {{"RHallado", "Hallado"},
                     {"RNombre", "Nombre"},
                     {"RCodIne", "Código INE"},
                     {"RCodPostal", "Código postal"},
                     {"RCapital", "Marca de capital"}},
         .call = callIBuscaMunicipio},
        {.object = "MIIBuscaMunicipioMJ",
         .name = "IBuscaMunicipioMJ",
         .title = "Municipio por su nombre, lista alternativa",
         .summary = "Entre varios municipios del mismo nombre vale el de la provincia que se dé; si no hay "
                    "ninguno, se muestra la lista.",
         .arguments = {name("MIERES"),
                       {"ECodProvincia", "Código de provincia", ArgumentKind::Text, "33"},
                       caption("Elija el municipio"),
                       {"CHRango", "La lista sólo muestra ese nombre", ArgumentKind::Flag, true}},
         .results = {{"RHallado", "Hallado"},
                     {"RNombre", "Nombre"},
                     {"RCodProvincia", "Código de provincia"},
                     {"RCodMunicipio", "Código de municipio"}},
         .call = callIBuscaMunicipioMJ},
        {.object = "MIBuscarMunicipios",
         .name = "BuscarMunicipios",
         .title = "Municipios del controlador",
         .summary = "La lista que un TClassCodPostales abre sobre sus propias tablas.",
         .arguments = {order()},
         .results = {{"RAceptado", "Aceptado"},
                     {"RCodIne", "Código INE"},
                     {"RCodPostal", "Código postal"},
                     {"RNombre", "Nombre"}},
         .call = callBuscarMunicipios},
    };
}

} // namespace host::routines
