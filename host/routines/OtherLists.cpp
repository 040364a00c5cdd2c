// The routines that may show the list of street types or of provinces.
#include "host/routines/Catalogue.h"
#include "lookup/RutCodPostales.h"

namespace host::routines {
namespace {

QStringList callTipo_Via(const Values& values, const Surroundings&) {
    return {Tipo_Via(values.text("EAbreviatura"), values.flag("CHPregunta"), values.flag("CHCatalan"))};
}

QStringList callTipo_Via2(const Values& values, const Surroundings&) {
    QString name = values.text("ENombre");
    const QString chosen = Tipo_Via2(name, values.text("EAbreviatura"));
    return {chosen, name};
}

QStringList callSeleccionaProvincia(const Values& values, const Surroundings&) {
    QString name;
    int group = values.number("EGrupo");
    const int code = SeleccionaProvincia(name, group, values.text("ETitulo"), values.text("ERotulo"),
                                         values.number("ECodigo"));
    return {QString::number(code), name, QString::number(group)};
}

} // namespace

std::vector<Routine> otherLists() {
    return {
        {.object = "MITipo_Via",
         .name = "Tipo_Via",
         .title = "Tipo de vía por su abreviatura",
         .summary =
             "Da el nombre del tipo, hasta la primera coma. Si la abreviatura falta o no se conoce puede "
             "preguntar, y entonces da la abreviatura elegida en la lista.",
         .arguments = {{"EAbreviatura", "Abreviatura", ArgumentKind::Text, "AL"},
                       {"CHPregunta", "Puede preguntar", ArgumentKind::Flag, true},
                       {"CHCatalan", "En catalán", ArgumentKind::Flag, false}},
         .results = {{"RResultado", "Resultado"}},
         .call = callTipo_Via},
        {.object = "MITipo_Via2",
         .name = "Tipo_Via2",
         .title = "Tipo de vía, abreviatura y nombre",
         .summary =
             "Rellena el nombre entero de la abreviatura. Sólo da una abreviatura cuando se ha elegido en "
             "la lista.",
         .arguments = {{"EAbreviatura", "Abreviatura", ArgumentKind::Text, QString()},
                       {"ENombre", "Nombre de antes", ArgumentKind::Text, QString()}},
         .results = {{"RResultado", "Abreviatura elegida"}, {"RNombre", "Nombre"}},
         .call = callTipo_Via2},
        {.object = "MISeleccionaProvincia",
         .name = "SeleccionaProvincia",
         .title = "Provincia o país",
         .summary =
             "Con código inicial 0 la lista enseña todos los grupos. Sin elección vale la provincia de la "
             "configuración, con grupo 0.",
         .arguments = {{"ETitulo", "Título de la lista", ArgumentKind::Text, "Provincias"},
                       {"ERotulo", "Rótulo", ArgumentKind::Text, "Provincia del cliente"},
                       {"ECodigo", "Código inicial", ArgumentKind::Number, 28},
                       {"EGrupo", "Grupo", ArgumentKind::Number, 1}},
         .results = {{"RCodigo", "Código"}, {"RNombre", "Nombre"}, {"RGrupo", "Grupo"}},
         .call = callSeleccionaProvincia},
    };
}

} // namespace host::routines
