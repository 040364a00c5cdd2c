// Several reads under one lock beside other processes, which write, die or wait.
#include <csignal>
#include <optional>

#include "dbase/support/ChildProcess.h"
#include "dbase/table/exclusive_use.h"
#include "read_scope_fixture.h"

namespace dbase {
namespace {

using std::chrono::milliseconds;
using test::ChildProcess;

/// Whether all reads share one scope, or those of each few milliseconds have their own. Uses the system's
/// clock: the locks are free so rarely that a writer does not hit the moment by chance.
class ReadersAndAWriter : public ReadScopeTest, public ::testing::WithParamInterface<bool> {
protected:
    ReadersAndAWriter() { setHoldClock(nullptr); }

    void readUntilItEnds(ChildProcess& writer) {
        one_.open();
        writer.tell();
        std::optional<ReadScope> scope;
        while (!writer.hasEnded()) {
            if (!GetParam() || !scope) {
                scope.reset();
                scope.emplace();
            }
            for (int i = 0; i < 5000; ++i) {
                ASSERT_TRUE(find(one_, codeOf(i % 300)));
            }
        }
    }
    /// Adds this many rows; throws if the lock is not free in time.
    static int append(const ChildProcess::Link& link, int rows) {
        link.await();
        Dataset table("DB", "ONE", "CODE");
        table.open();
        for (int i = 0; i < rows; ++i) {
            insert(table, "2" + std::to_string(i));
        }
        return 0;
    }
};

TEST_P(ReadersAndAWriter, AWriterIsNeverShutOut) {
    ChildProcess writer([](const ChildProcess::Link& link) { return append(link, 20); });
    readUntilItEnds(writer);
    EXPECT_EQ(writer.join(), 0);
    EXPECT_TRUE(find(one_, "219"));
}

TEST_P(ReadersAndAWriter, AWriterIsNotShutOutByTwoReadersThatTakeTurns) {
    ChildProcess reader([this](const ChildProcess::Link& link) {
        link.await();
        Dataset table("DB", "ONE", "CODE");
        table.open();
        const ReadScope scope;
        while (!find(table, "219")) {
            for (int i = 0; i < 1000; ++i) {
                require(find(table, codeOf(i % 300)));
            }
        }
        return 0;
    });
    ChildProcess writer([](const ChildProcess::Link& link) { return append(link, 20); });
    reader.tell();
    readUntilItEnds(writer);
    EXPECT_EQ(writer.join(), 0);
    ReadScope::letGo();
    EXPECT_EQ(reader.join(), 0);
}

INSTANTIATE_TEST_SUITE_P(Scopes, ReadersAndAWriter, ::testing::Bool(), [](const auto& test) {
    return test.param ? std::string("One") : std::string("Many");
});

TEST_F(ReadScopeTest, WhatAKilledWriterLeftBetweenTwoHoldsIsRecovered) {
    ChildProcess writer([this](const ChildProcess::Link& link) {
        link.await();
        const auto table = Table::open(folder / "ONE.DBF");
        const ExclusiveUse use(*table);
        IndexFile index(openFile(folder / "ONE.MDX", OpenMode::ReadWrite), table->schema());
        index.writeStamp(index.stamp().begun(300));
        link.tell();
        link.await();
        return 0;
    });
    one_.open();
    const ReadScope scope;
    EXPECT_TRUE(find(one_, codeOf(7)));
    ReadScope::letGo();
    writer.tell();
    writer.await();
    writer.kill();
    EXPECT_EQ(writer.join(), -SIGKILL);
    EXPECT_TRUE(one_.next());
    EXPECT_EQ(one_.field("CODE").text(), codeOf(8));
    EXPECT_FALSE(one_.openTable().index()->stamp().inUpdate);
}

TEST_F(ReadScopeTest, ChangesOfAnotherProcessBetweenTwoHoldsAreSeen) {
    ChildProcess writer([](const ChildProcess::Link& link) {
        link.await();
        Dataset table("DB", "ONE", "CODE");
        table.open();
        insert(table, "1071");
        require(find(table, codeOf(8)));
        table.erase();
        return 0;
    });
    one_.open();
    const ReadScope scope;
    EXPECT_TRUE(find(one_, codeOf(7)));
    ReadScope::letGo();
    writer.tell();
    EXPECT_EQ(writer.join(), 0);
    EXPECT_TRUE(one_.next());
    EXPECT_EQ(one_.field("CODE").text(), "1071");
    EXPECT_TRUE(one_.next());
    EXPECT_EQ(one_.field("CODE").text(), codeOf(9));
}

} // namespace
} // namespace dbase
