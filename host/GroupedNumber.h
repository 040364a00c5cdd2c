// Large numbers as Spanish readers write them.
#pragma once

#include <QString>
#include <cstdint>

namespace host {

/// "1.234.567"; four figures stand alone: "1234". Qt's Spanish leaves out the point of the millions.
[[nodiscard]] inline QString groupedNumber(std::uint64_t number) {
    QString text = QString::number(number);
    if (text.size() > 4) {
        for (qsizetype place = text.size() - 3; place > 0; place -= 3) {
            text.insert(place, QLatin1Char('.'));
        }
    }
    return text;
}

/// "1 fila", "12.345 filas".
[[nodiscard]] inline QString rowsText(std::uint64_t number) {
    return number == 1 ? QStringLiteral("1 fila") : groupedNumber(number) + QStringLiteral(" filas");
}

} // namespace host
