// The routines that answer without asking: names, abbreviations, provinces, the line of an address.
#include "controller/ClasCodPostales.h"
#include "data/MunicipiDM.h"
#include "host/routines/Catalogue.h"
#include "lookup/RutCodPostales.h"

namespace host::routines {
namespace {

/// Provides the module of the municipality routines as long as one of them needs it.
class MunicipalityModule {
public:
    MunicipalityModule() {
        module_.tbMunicipi.setTag("NOMBRE");
        module_.tbMunicipi.open();
        DMMunicipi = &module_;
    }
    ~MunicipalityModule() { DMMunicipi = nullptr; }
    MunicipalityModule(const MunicipalityModule&) = delete;
    MunicipalityModule& operator=(const MunicipalityModule&) = delete;

    [[nodiscard]] dbase::Dataset& municipalities() { return module_.tbMunicipi; }

private:
    TDMMunicipi module_;
};

QStringList callTipo_ViaPorNombre(const Values& values, const Surroundings&) {
    return {Tipo_ViaPorNombre(values.text("ENombre"))};
}

QStringList callNombre_Via(const Values& values, const Surroundings&) {
    return {Nombre_Via(values.text("EAbreviatura"))};
}

QStringList callDomicilio(const Values& values, const Surroundings& around) {
    const QString line = Domicilio(around.record, values.number("EAncho"), values.number("EVecindad"),
                                   values.number("ECodPostal"), values.flag("CHNombre"));
    return {line, QString::number(line.size())};
}

QStringList callLocalizaProvincia(const Values& values, const Surroundings&) {
    MunicipalityModule module;
    QString name;
    const QString code = LocalizaProvincia(module.municipalities(), values.text("ECodPostal"), name);
    return {code, name};
}

QStringList callLocalizaProvinciaOfController(const Values& values, const Surroundings&) {
    return {LocalizaProvincia(values.text("ECodPostal"))};
}

} // namespace

std::vector<Routine> utilities() {
    const Argument postalCode{"ECodPostal", "Código postal", ArgumentKind::Text, "33204"};
    return {
        {.object = "MITipo_ViaPorNombre",
         .name = "Tipo_ViaPorNombre",
         .title = "Abreviatura de un tipo de vía",
         .summary = "La abreviatura cuyo nombre es exactamente el que se da.",
         .arguments = {{"ENombre", "Nombre", ArgumentKind::Text, "AVENIDA"}},
         .results = {{"RResultado", "Abreviatura"}},
         .call = callTipo_ViaPorNombre},
        {.object = "MINombre_Via",
         .name = "Nombre_Via",
         .title = "Nombre de un tipo de vía",
         .summary = "El nombre entero de una abreviatura, tal como se escriba, con sus blancos.",
         .arguments = {{"EAbreviatura", "Abreviatura", ArgumentKind::Text, "AL"}},
         .results = {{"RResultado", "Nombre"}},
         .call = callNombre_Via},
        {.object = "MIDomicilio",
         .name = "Domicilio",
         .title = "Línea de la dirección",
         .summary = "La dirección del cliente que se ve, en una línea. Ancho 0: sin ajustar; mayor: a ese "
                    "ancho; menor: con los blancos de las columnas.",
         .arguments = {{"EAncho", "Ancho", ArgumentKind::Number, 0},
                       {"EVecindad", "Con vecindad (1)", ArgumentKind::Number, 1},
                       {"ECodPostal", "Con código postal (1)", ArgumentKind::Number, 1},
                       {"CHNombre", "El tipo de vía ya es un nombre", ArgumentKind::Flag, false}},
         .results = {{"RResultado", "Línea"}, {"RLargo", "Caracteres"}},
         .call = callDomicilio},
        {.object = "MILocalizaProvincia",
         .name = "LocalizaProvincia",
         .title = "Provincia de un código postal, código y nombre",
         .summary = "De RutCodPostales: el código de tres cifras y el nombre.",
         .arguments = {postalCode},
         .results = {{"RCodigo", "Código"}, {"RNombre", "Nombre"}},
         .call = callLocalizaProvincia},
        {.object = "MINombreProvincia",
         .name = "LocalizaProvincia",
         .title = "Provincia de un código postal, sólo el nombre",
         .summary = "De ClasCodPostales: el nombre, vacío si no hay ninguna.",
         .arguments = {postalCode},
         .results = {{"RNombre", "Nombre"}},
         .call = callLocalizaProvinciaOfController},
    };
}

} // namespace host::routines
