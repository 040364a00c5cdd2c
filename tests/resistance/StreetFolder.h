// A folder with a street table for tests that work on it from several processes.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>

#include "PostLog.h"
#include "dbase/support/ChildProcess.h"
#include "support/LockPatience.h"
#include "support/TemporaryFolder.h"

namespace resistance {

using dbase::test::ChildProcess;

/// POSTAL of database "DB", empty at first. Start processes while this one has no table open: what is open is
/// shared with them, locks included.
class StreetFolder : public ::testing::Test {
protected:
    StreetFolder();
    ~StreetFolder() override;

    /// An empty table in the place of the one there.
    void beginAnew() const;
    [[nodiscard]] std::string tableFile() const { return folder_ / "POSTAL.DBF"; }
    [[nodiscard]] std::string indexFile() const { return folder_ / "POSTAL.MDX"; }
    /// Whether somebody died, or is, in the middle of a change.
    [[nodiscard]] bool markStands() const;
    /// Every finding of the consistency check fails the test.
    void expectSound() const;

    /// Waits until a writer has stored so many posts, can store no more or is dead.
    static void awaitPosts(const PostLog& log, std::size_t posts, const ChildProcess& writer);

    /// For the work of a child: what it raises is told on the error output, and its exit code is then 200.
    using Work = std::function<int(const ChildProcess::Link&)>;
    [[nodiscard]] static Work telling(Work work);

private:
    TemporaryFolder folder_;
    ambrel::test::LockPatience patience_{std::chrono::minutes(2)}; // many programs, and perhaps one processor
};

} // namespace resistance
