// Estimates the remaining time and puts it into words.
#include "import/TimeLeft.h"

namespace ambrel {
namespace {

constexpr std::int64_t secondsOfMinute = 60;
constexpr std::int64_t minutesOfHour = 60;
constexpr std::int64_t mostMinutes = 90; // longer times are given in hours

std::int64_t roundedUp(std::int64_t amount, std::int64_t unit) { return (amount + unit - 1) / unit; }

} // namespace

void TimeLeft::addStep(std::chrono::milliseconds taken) {
    taken_ += taken;
    ++steps_;
}

QString TimeLeft::text(int stepsLeft) const {
    if (steps_ == 0 || stepsLeft <= 0) {
        return {};
    }
    const std::int64_t seconds = std::chrono::ceil<std::chrono::seconds>(taken_ * stepsLeft / steps_).count();
    const std::int64_t minutes = roundedUp(seconds, secondsOfMinute);
    if (seconds < secondsOfMinute) {
        return QStringLiteral("queda menos de un minuto");
    }
    if (minutes == 1) {
        return QStringLiteral("queda un minuto");
    }
    if (minutes <= mostMinutes) {
        return QStringLiteral("quedan unos %1 minutos").arg(minutes);
    }
    return QStringLiteral("quedan unas %1 horas").arg(roundedUp(minutes, minutesOfHour));
}

} // namespace ambrel
