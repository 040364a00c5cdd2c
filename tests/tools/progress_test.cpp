#include "tools/progress.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>

#include <pty.h>
#include <unistd.h>

namespace ambcp {
namespace {

/// What a function writes to standard error while that is the given file.
std::string shownOn(int file, int otherEnd, const std::function<void()>& task) {
    const int before = dup(STDERR_FILENO);
    dup2(file, STDERR_FILENO);
    task();
    fflush(stderr);
    dup2(before, STDERR_FILENO);
    close(before);
    const ssize_t mark =
        write(file, ".", 1); // nothing that is tested writes one: it tells where to stop reading
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

void makeProgress() {
    ProgressLine line("POSTAL");
    line.rows(16384);
    line.rows(32768); // at once: nobody could read it
}

TEST(ProgressLine, ShowsOnATerminalAndGoesAwayAgain) {
    int terminal = 0, program = 0;
    ASSERT_EQ(openpty(&terminal, &program, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(shownOn(program, terminal, makeProgress), "\rPOSTAL: 16384 filas\x1B[K\r\x1B[K.");
}

TEST(ProgressLine, ShowsShares) {
    int terminal = 0, program = 0;
    ASSERT_EQ(openpty(&terminal, &program, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(shownOn(program, terminal, [] { ProgressLine("POSTAL").share(1, 4); }),
              "\rPOSTAL: 25 %\x1B[K\r\x1B[K.");
}

TEST(ProgressLine, SaysNothingElsewhere) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    EXPECT_EQ(shownOn(ends[1], ends[0], makeProgress), ".");
}

} // namespace
} // namespace ambcp
