// The line of an address, from a host's table.
#include "dbase/dataset/dataset.h"
#include "lookup/AddressLine.h"
#include "lookup/RutCodPostales.h"
#include "services/Text.h"

namespace {

constexpr int appended = 1; // Deliberate: no other value appends a column
constexpr bool askUser = true;
constexpr bool inCatalan = true;

} // namespace

QString Domicilio(dbase::Dataset& table, int width, int withLocality, int withPostalCode, bool typeIsName) {
    const auto column = [&table](const char* name) { return table.field(name).text(); };
    ambrel::AddressColumns columns{.type = column("TIPO_VIA"),
                                   .street = column("DOMICILIO"),
                                   .number = column("NUMERO"),
                                   .floor = column("PISO"),
                                   .postalCode = std::nullopt,
                                   .locality = std::nullopt};
    if (!typeIsName) {
        columns.type = ambrel::toNearestWindows1252(
            Tipo_Via(ambrel::fromWindows1252(columns.type), !askUser, !inCatalan));
    }
    if (withPostalCode == appended) {
        columns.postalCode = column("CODPOSTAL");
    }
    if (withLocality == appended) {
        columns.locality = column("VECINDAD");
    }
    return ambrel::fromWindows1252(ambrel::addressLine(columns, width));
}
