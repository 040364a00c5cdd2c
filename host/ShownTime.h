// Times as Spanish readers write them.
#pragma once

#include <QString>
#include <algorithm>
#include <cmath>

namespace host {

/// Minutes and seconds, rounded up: "1:05". A negative time, of a file that grows while it is read, is none.
[[nodiscard]] inline QString shownTime(double seconds) {
    const auto whole = static_cast<long long>(std::ceil(std::max(seconds, 0.0)));
    return QStringLiteral("%1:%2").arg(whole / 60).arg(whole % 60, 2, 10, QLatin1Char('0'));
}

} // namespace host
