// The line that shows the progress of a task.
#include "tools/progress.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <limits>
#include <optional>
#include <string>

#include <pty.h>
#include <unistd.h>

namespace ambcp {
namespace {

/// The output of a function to standard error while that is the given file.
std::string shownOn(int file, int otherEnd, const std::function<void()>& task) {
    const int before = dup(STDERR_FILENO);
    dup2(file, STDERR_FILENO);
    task();
    std::fflush(stderr);
    dup2(before, STDERR_FILENO);
    close(before);
    const ssize_t mark = write(file, ".", 1); // absent from all tested output: marks where to stop reading
    std::string shown;
    std::array<char, 1000> text;
    while (mark == 1 && !shown.ends_with('.')) {
        const ssize_t size = read(otherEnd, text.data(), text.size());
        if (size <= 0) {
            break;
        }
        shown.append(text.data(), static_cast<std::size_t>(size));
    }
    close(file);
    close(otherEnd);
    return shown;
}

/// The line of a task while standard error is a terminal; null where none can be created.
std::optional<std::string> shownOnATerminal(const std::function<void()>& task) {
    int terminal = 0, program = 0;
    if (openpty(&terminal, &program, nullptr, nullptr, nullptr) != 0) {
        return std::nullopt;
    }
    return shownOn(program, terminal, task);
}

TEST(ProgressLine, ShowsOnATerminalAndGoesAwayAgain) {
    const auto shown = shownOnATerminal([] { ProgressLine("POSTAL").rows(16384); });
    if (!shown) {
        GTEST_SKIP() << "wants a pseudo-terminal (/dev/ptmx)";
    }
    EXPECT_EQ(*shown, "\rPOSTAL: 16384 filas\x1B[K\r\x1B[K.");
}

TEST(ProgressLine, ShowsShares) {
    const auto shown = shownOnATerminal([] { ProgressLine("POSTAL").share(1, 4); });
    if (!shown) {
        GTEST_SKIP() << "wants a pseudo-terminal (/dev/ptmx)";
    }
    EXPECT_EQ(*shown, "\rPOSTAL: 25 %\x1B[K\r\x1B[K.");
}

TEST(ProgressLine, WorkShowsRowsShareRateAndTimeLeft) {
    using namespace std::chrono_literals;
    EXPECT_EQ(workText(12000, 0.5, 3s), "[##########----------]  50 %  12000 filas  4000/s  quedan 0:03");
    EXPECT_EQ(workText(10, 1, 2s), "[####################] 100 %  10 filas  5/s  quedan 0:00");
    EXPECT_EQ(workText(1000, 0.001, 10s), "[--------------------]   0 %  1000 filas  100/s  quedan 2:46:30");
    EXPECT_EQ(workText(1000, -1, 10s), "1000 filas  100/s") << "of a pipe";
    EXPECT_EQ(workText(0, 0, 0s), "[--------------------]   0 %  0 filas");
    EXPECT_EQ(workText(1, -1, 1s), "1 fila  1/s");
}

TEST(ProgressLine, AShareOutsideOfTheWholeIsShownAsTheWholeOrNotAtAll) {
    using namespace std::chrono_literals;
    EXPECT_EQ(workText(10, 1.5, 2s), workText(10, 1, 2s)) << "of a file that grew meanwhile";
    EXPECT_EQ(workText(10, std::numeric_limits<double>::infinity(), 2s), workText(10, -1, 2s));
    EXPECT_EQ(workText(10, std::numeric_limits<double>::quiet_NaN(), 2s), workText(10, -1, 2s));
    EXPECT_EQ(workText(10, 1e-300, 2s), "[--------------------]   0 %  10 filas  5/s");
}

TEST(ProgressLine, WorkShowsOnATerminal) {
    const auto shown = shownOnATerminal([] { ProgressLine("clientes.csv").work(7, 0.5); });
    if (!shown) {
        GTEST_SKIP() << "wants a pseudo-terminal (/dev/ptmx)";
    }
    EXPECT_TRUE(shown->starts_with("\rclientes.csv: [##########----------]  50 %  7 filas")) << *shown;
}

TEST(ProgressLine, PassesOverWhatNobodyCouldRead) {
    constexpr int steps = 50;
    const auto shown = shownOnATerminal([] {
        ProgressLine line("POSTAL");
        for (int i = 0; i < steps; ++i) {
            line.rows(1);
        }
    });
    if (!shown) {
        GTEST_SKIP() << "wants a pseudo-terminal (/dev/ptmx)";
    }
    EXPECT_LT(std::ranges::count(*shown, 'P'), steps) << "all of them, one after another";
}

TEST(ProgressLine, SaysNothingElsewhere) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    EXPECT_EQ(shownOn(ends[1], ends[0], [] { ProgressLine("POSTAL").rows(16384); }), ".");
}

} // namespace
} // namespace ambcp
