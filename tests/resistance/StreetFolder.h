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

/// POSTAL of database "DB", empty at first. Start processes while this one has no table open: open tables are
/// shared with them, locks included.
class StreetFolder : public ::testing::Test {
protected:
    StreetFolder();
    ~StreetFolder() override;

    /// Replaces the table by an empty one.
    void beginAnew() const;
    [[nodiscard]] std::string tableFile() const { return folder_ / "POSTAL.DBF"; }
    [[nodiscard]] std::string indexFile() const { return folder_ / "POSTAL.MDX"; }
    /// True if a writer died, or still is, in the middle of a change.
    [[nodiscard]] bool markStands() const;
    /// Fails the test for every finding of the consistency check.
    void expectSound() const;

    /// Waits until a writer has stored that many posts, can store no more or is dead.
    static void awaitPosts(const PostLog& log, std::size_t posts, const ChildProcess& writer);

    /// The work of a child. An exception from it is written to standard error, and the exit code is then 200.
    using Work = std::function<int(const ChildProcess::Link&)>;
    [[nodiscard]] static Work telling(Work work);

private:
    TemporaryFolder folder_;
    ambrel::test::LockPatience patience_{std::chrono::minutes(2)}; // many programs, and perhaps one processor
};

} // namespace resistance
