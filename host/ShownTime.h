// Times as Spanish readers write them.
#pragma once

#include <QString>
#include <cmath>

namespace host {

/// Minutes and seconds, rounded up: "1:05".
[[nodiscard]] inline QString shownTime(double seconds) {
    const auto whole = static_cast<long long>(std::ceil(seconds));
    return QStringLiteral("%1:%2").arg(whole / 60).arg(whole % 60, 2, 10, QLatin1Char('0'));
}

} // namespace host
