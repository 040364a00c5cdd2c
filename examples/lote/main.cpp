// Completes many addresses without a window: reads lines MUNICIPIO;TIPO;VÍA;NÚMERO (UTF-8) and writes each
// with its postal code, which stays empty when the address is not known under exactly these names.
#include <QStringList>
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>

#include "package/AmbCodPostales.h"

namespace {

enum Column { Municipality, StreetType, Street, Number, ColumnCount };

ambrel::TypedAddressText readAddress(const QString& line) {
    QStringList columns = line.split(';');
    columns.resize(ColumnCount);
    return {.municipality = columns[Municipality],
            .streetType = columns[StreetType],
            .street = columns[Street],
            .number = columns[Number]};
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "uso: lote CARPETA <direcciones\n");
        return 2;
    }
    try {
        dbase::setDatabaseFolder("DB", argv[1]);
        bool areAllKnown = true;
        for (std::string line; std::getline(std::cin, line);) {
            const ambrel::ResolvedAddressText address =
                ambrel::resolveAddressText("DB", readAddress(QString::fromStdString(line)));
            areAllKnown = areAllKnown && address.isExact();
            std::printf("%s;%s\n", line.c_str(), address.isExact() ? qUtf8Printable(address.postalCode) : "");
        }
        return areAllKnown ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "lote: %s\n", error.what());
        return 2;
    }
}
