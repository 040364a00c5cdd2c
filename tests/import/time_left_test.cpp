// The remaining time of a run, in words.
#include "import/TimeLeft.h"

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;

std::string left(std::chrono::milliseconds aStep, int steps) {
    ambrel::TimeLeft time;
    time.addStep(aStep);
    return time.text(steps).toStdString();
}

TEST(TimeLeft, IsNotSaidBeforeAStepIsOverNorWhenNoneIsLeft) {
    EXPECT_EQ(ambrel::TimeLeft().text(10), QString());
    EXPECT_EQ(left(1s, 0), "");
}

TEST(TimeLeft, IsSaidInWholeMinutesAndHours) {
    EXPECT_EQ(left(0ms, 1), "queda menos de un minuto");
    EXPECT_EQ(left(1s, 59), "queda menos de un minuto");
    EXPECT_EQ(left(1s, 60), "queda un minuto");
    EXPECT_EQ(left(1s, 61), "quedan unos 2 minutos");
    EXPECT_EQ(left(60s, 90), "quedan unos 90 minutos");
    EXPECT_EQ(left(60s, 91), "quedan unas 2 horas");
    EXPECT_EQ(left(1h, 20'000), "quedan unas 20000 horas") << "no number runs over";
}

TEST(TimeLeft, TakesTheStepsThatAreOverForTheOnesToCome) {
    ambrel::TimeLeft time;
    time.addStep(10s);
    time.addStep(50s);
    EXPECT_EQ(time.text(1), QStringLiteral("queda menos de un minuto"));
    EXPECT_EQ(time.text(4), QStringLiteral("quedan unos 2 minutos"));
}

} // namespace
