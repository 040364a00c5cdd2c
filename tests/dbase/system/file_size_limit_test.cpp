// A limit on the size of files ends in an error: no signal reaches the host, and its handlers and mask stay.
#include "dbase/system/file_size_limit.h"

#include <gtest/gtest.h>

#include <csignal>

#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "support/FileSizeLimit.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using ambrel::test::FileSizeLimit;

/// A host with a handler of its own for the signal.
class FileSizeLimitTest : public ::testing::Test {
protected:
    FileSizeLimitTest() {
        received_ = 0;
        struct sigaction own = {};
        own.sa_handler = [](int) { received_ = received_ + 1; };
        sigaction(SIGXFSZ, &own, &before_);
        sigemptyset(&signal_);
        sigaddset(&signal_, SIGXFSZ);
    }
    ~FileSizeLimitTest() override {
        struct sigaction now = {};
        sigaction(SIGXFSZ, &before_, &now);
        EXPECT_NE(now.sa_handler, SIG_DFL) << "the host's handler is gone";
        EXPECT_EQ(received_, 0) << "the host received the signal";
        sigset_t mask;
        pthread_sigmask(SIG_BLOCK, nullptr, &mask);
        EXPECT_EQ(sigismember(&mask, SIGXFSZ), 0) << "the signal is still held back";
        EXPECT_FALSE(isPending());
    }

    static bool isPending() {
        sigset_t pending;
        sigpending(&pending);
        return sigismember(&pending, SIGXFSZ) == 1;
    }
    static void expectTooLarge(const std::function<void()>& operation) {
        const Error error = errorOf(operation);
        EXPECT_EQ(error.code(), ErrorCode::DiskFull) << error.what();
        EXPECT_NE(std::string(error.what()).find("ulimit -f"), std::string::npos) << error.what();
    }

    TemporaryFolder folder_;
    sigset_t signal_ = {};

private:
    static inline volatile std::sig_atomic_t received_ = 0;
    struct sigaction before_ = {};
};

TEST_F(FileSizeLimitTest, AFileThatMayNotGrowIsReported) {
    const FileSizeLimit limit(1000);
    const std::unique_ptr<File> file = openFile(folder_ / "fichero", OpenMode::Create);
    const Bytes bytes(600, 'x');
    file->write(0, bytes);
    expectTooLarge([&] { file->write(600, bytes); });
    expectTooLarge([&] { file->write(2000, bytes); });
    expectTooLarge([&] { file->resize(2000); });
    EXPECT_EQ(file->size(), 1000U) << "what fits of a write is written";
}

TEST_F(FileSizeLimitTest, AChangeAfterTheHostHasSetALimitIsReportedAndNothingIsChanged) {
    createTable(folder_.path(), {.name = "CALLES",
                                 .columns = {{"NOMBRE", ColumnType::Character, 100, 0, 0}},
                                 .tags = {{.name = "NOMBRE", .expression = "NOMBRE"}}});
    const std::string path = folder_ / "CALLES.DBF";
    const auto table = Table::open(path);
    const auto row = [&](const std::string& name) { return makeRecord(table->schema(), {name}); };
    for (int i = 0; i < 50; ++i) {
        table->append(row("CALLE " + std::to_string(i)));
    }
    const Bytes first = storedRecord(*table, 1);
    for (const rlim_t bytes : {rlim_t{0}, rlim_t{600}, rlim_t{3000}, rlim_t{6000}}) {
        const FileSizeLimit limit(bytes);
        expectTooLarge([&] { table->overwrite(50, storedRecord(*table, 50), row("OTRA")); });
        expectTooLarge([&] { table->append(row("NUEVA")); });
    }
    EXPECT_EQ(table->records().recordCount(), 50U);
    EXPECT_EQ(storedRecord(*table, 1), first);
    table->append(row("NUEVA"));
    EXPECT_EQ(order(*table, "NOMBRE").size(), 51U);
    EXPECT_EQ(findings(path), "");
}

TEST_F(FileSizeLimitTest, AHostThatWaitsForTheSignalItselfKeepsItsOwn) {
    const FileSizeLimit limit(1000);
    const std::unique_ptr<File> file = openFile(folder_ / "fichero", OpenMode::Create);
    pthread_sigmask(SIG_BLOCK, &signal_, nullptr);
    expectTooLarge([&] { file->write(2000, Bytes(1, 'x')); });
    EXPECT_FALSE(isPending());
    raise(SIGXFSZ);
    expectTooLarge([&] { file->write(2000, Bytes(1, 'x')); });
    EXPECT_TRUE(isPending());
    int number = 0;
    sigwait(&signal_, &number);
    EXPECT_EQ(number, SIGXFSZ);
    pthread_sigmask(SIG_UNBLOCK, &signal_, nullptr);
}

} // namespace
