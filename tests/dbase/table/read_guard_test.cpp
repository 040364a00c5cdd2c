// Reads that take no lock and look at the change counter instead: a writer that crosses them makes them start
// again.
#include <gtest/gtest.h>

#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "dbase/table/table.h"
#include "support/LockPatience.h"

namespace {

using namespace dbase;
using namespace dbase::test;

class ReadGuardTest : public ::testing::Test {
protected:
    ReadGuardTest() {
        reader_->setReadGuard(ReadGuard::Counter);
        append("A");
    }
    ~ReadGuardTest() override { EXPECT_EQ(stored_.findings(), ""); }

    void append(const std::string& name) { writer_->append(makeRecord(writer_->schema(), {name})); }
    /// What the reader counts, told how often it has begun.
    RecordNumber count(const std::function<void(int)>& meanwhile) {
        begun_ = 0;
        return reader_->read([&] {
            meanwhile(++begun_);
            return reader_->records().recordCount();
        });
    }

    MemoryTable stored_{{.name = "LECTURA",
                         .columns = {{"NOMBRE", ColumnType::Character, 10, 0, 0}},
                         .tags = {{.name = "NOMBRE", .expression = "NOMBRE"}}}};
    std::unique_ptr<Table> writer_ = stored_.open(), reader_ = stored_.open();
    int begun_ = 0;
};

TEST_F(ReadGuardTest, AReadThatNobodyCrossesRunsOnce) {
    EXPECT_EQ(count([](int) {}), 1U);
    EXPECT_EQ(begun_, 1);
}

TEST_F(ReadGuardTest, AReadThatAWriterCrossesStartsAgain) {
    EXPECT_EQ(count([&](int begun) {
                  if (begun == 1) {
                      append("B");
                  }
              }),
              2U);
    EXPECT_EQ(begun_, 2);
}

TEST_F(ReadGuardTest, AReadThatIsCrossedAgainAndAgainTakesTheLock) {
    const ambrel::test::LockPatience noPatience(std::chrono::milliseconds(0));
    EXPECT_EQ(count([&](int begun) {
                  if (begun <= 3) {
                      append("B");
                  } else {
                      EXPECT_EQ(errorOf([&] { append("C"); }).code(), ErrorCode::LockTimeout);
                  }
              }),
              4U);
    EXPECT_EQ(begun_, 4);
}

TEST_F(ReadGuardTest, AnErrorThatAWriterMayHaveCausedIsNoErrorYet) {
    EXPECT_EQ(count([&](int begun) {
                  if (begun == 1) {
                      append("B");
                      throw Error(ErrorCode::BadIndex, {}, "half a page");
                  }
              }),
              2U);
    EXPECT_EQ(begun_, 2);
}

TEST_F(ReadGuardTest, AnErrorThatNobodyCrossedIsTold) {
    EXPECT_EQ(errorOf([&] {
                  (void)count([](int) { throw Error(ErrorCode::BadIndex, {}, "a page that lies"); });
              }).code(),
              ErrorCode::BadIndex);
    EXPECT_EQ(begun_, 1);
}

TEST_F(ReadGuardTest, ATableWithoutTagsIsReadUnderItsLock) {
    const MemoryTable plain(
        {.name = "SOLA", .columns = {{"NOMBRE", ColumnType::Character, 10, 0, 0}}, .tags = {}});
    const auto table = plain.open();
    table->setReadGuard(ReadGuard::Counter);
    EXPECT_EQ(table->findTag("NOMBRE"), nullptr);
    EXPECT_EQ(table->changeCounter(), 0U);
    EXPECT_EQ(table->read([&] { return table->records().recordCount(); }), 0U);
    table->append(makeRecord(table->schema(), {"A"}));
    const Bytes shown = storedRecord(*table, 1);
    table->overwrite(1, shown, makeRecord(table->schema(), {"B"}));
    EXPECT_EQ(valueOf(table->schema(), storedRecord(*table, 1), "NOMBRE"), "B");
    EXPECT_EQ(plain.findings(), "");
}

} // namespace
