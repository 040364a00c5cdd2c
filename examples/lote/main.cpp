// Completes many addresses without a window: reads MUNICIPIO;TIPO;VÍA;NÚMERO a line (UTF-8) and writes each
// with its postal code, which stays empty where the address is not known under these very names.
#include <QStringList>
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>

#include "package/AmbCodPostales.h"

namespace {

enum Column { Municipality, StreetType, Street, Number, ColumnCount };

ambrel::TypedAddress readAddress(const QString& line) {
    QStringList columns = line.split(';');
    columns.resize(ColumnCount);
    // A text that the tables cannot hold matches nothing, like an empty one.
    const auto text = [&](Column column) {
        return ambrel::toWindows1252(columns[column].trimmed()).value_or(std::string());
    };
    return {.municipality = text(Municipality),
            .streetType = text(StreetType),
            .street = text(Street),
            .number = text(Number)};
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
            const ambrel::ResolvedAddress address =
                ambrel::resolveAddress("DB", readAddress(QString::fromStdString(line)));
            areAllKnown = areAllKnown && address.isExact();
            std::printf("%s;%s\n", line.c_str(), address.isExact() ? address.postalCode.c_str() : "");
        }
        return areAllKnown ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "lote: %s\n", error.what());
        return 2;
    }
}
