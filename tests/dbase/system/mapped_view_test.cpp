// Files viewed in memory, and truncated by another process meanwhile.
#include "dbase/system/mapped_view.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csetjmp>
#include <csignal>
#include <fstream>
#include <iterator>
#include <memory>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "dbase/support/ChildProcess.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "dbase/system/file_pieces.h"
#include "dbase/table/table.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;

const off_t pageInFile = sysconf(_SC_PAGESIZE); // as a file offset
const auto page = static_cast<std::size_t>(pageInFile);

class MappedViewTest : public ::testing::Test {
protected:
    MappedViewTest()
        : descriptor_(open(folder_.write("vista", std::string(3 * page, 'x')).c_str(), O_RDWR)) {}
    ~MappedViewTest() override { close(descriptor_); }

    TemporaryFolder folder_;
    int descriptor_;
};

TEST_F(MappedViewTest, FollowsChangesAndGrowth) {
    const MappedView view(descriptor_, 16 * page);
    ASSERT_NE(view.data(), nullptr);
    EXPECT_EQ(view.data()[2 * page], 'x');
    EXPECT_EQ(pwrite(descriptor_, "y", 1, 2 * pageInFile), 1);
    EXPECT_EQ(view.data()[2 * page], 'y');
    EXPECT_EQ(pwrite(descriptor_, "z", 1, 9 * pageInFile), 1);
    EXPECT_EQ(view.data()[9 * page], 'z');
    EXPECT_FALSE(view.isTorn());
}

TEST_F(MappedViewTest, ReadsZerosAndSaysSoWhereTheFileWasCut) {
    const MappedView view(descriptor_, 16 * page);
    ASSERT_EQ(ftruncate(descriptor_, pageInFile), 0);
    EXPECT_FALSE(view.isTorn());
    EXPECT_EQ(view.data()[2 * page], '\0');
    EXPECT_TRUE(view.isTorn());
    EXPECT_EQ(view.data()[0], 'x');
}

TEST_F(MappedViewTest, WithAccessToWriteStoresIntoTheFile) {
    const MappedView view(descriptor_, 16 * page, MappedView::Access::Write);
    ASSERT_NE(view.data(), nullptr);
    view.writableData()[page + 7] = 'y';
    char stored = 0;
    EXPECT_EQ(pread(descriptor_, &stored, 1, pageInFile + 7), 1);
    EXPECT_EQ(stored, 'y');
    EXPECT_FALSE(view.isTorn());
}

// Elsewhere a system that keeps files in large pages could not map one as a whole.
TEST_F(MappedViewTest, WithAccessToWriteBeginsAtAMultipleOfAPiece) {
    for (const std::size_t length : {page, 16 * page, std::size_t{pieceBytes} + page}) {
        const MappedView view(descriptor_, length, MappedView::Access::Write),
            next(descriptor_, length, MappedView::Access::Write);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(view.data()) % pieceBytes, 0U);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(next.data()) % pieceBytes, 0U);
    }
}

TEST_F(MappedViewTest, AStoreWhereTheFileWasCutIsReportedAndReachesNothing) {
    MappedView view(descriptor_, 16 * page, MappedView::Access::Write);
    ASSERT_EQ(ftruncate(descriptor_, pageInFile), 0);
    view.writableData()[2 * page] = 'y';
    EXPECT_TRUE(view.isTorn());
    view.renew();
    EXPECT_FALSE(view.isTorn());
    ASSERT_EQ(ftruncate(descriptor_, 3 * pageInFile), 0);
    EXPECT_EQ(view.data()[2 * page], '\0');
}

TEST_F(MappedViewTest, AHostThatWritesJustBesideAViewReachesNoFile) {
    for (const int place : {-1, 16 * static_cast<int>(page)}) {
        ChildProcess child([&](const ChildProcess::Link&) {
            std::signal(SIGSEGV, SIG_DFL); // a sanitizer would end the child in its own way
            const MappedView view(descriptor_, 16 * page, MappedView::Access::Write);
            view.writableData()[place] = 'y';
            return 0;
        });
        EXPECT_EQ(child.join(), -SIGSEGV) << place;
    }
}

/// Memory of this process that is pages of files, in bytes.
std::size_t filePagesInUse() {
    std::ifstream status("/proc/self/statm");
    std::size_t total = 0, resident = 0, shared = 0;
    status >> total >> resident >> shared;
    return shared * page;
}

std::ptrdiff_t mappingsOfThisProgram() {
    std::ifstream maps("/proc/self/maps");
    return std::count(std::istreambuf_iterator<char>(maps), {}, '\n');
}

// The system allows a program 65,530 mappings: a host that opens its tables for months must not run out of
// them.
TEST_F(MappedViewTest, LeavesNoMappingWhateverItsLength) {
    for (const MappedView::Access access : {MappedView::Access::Read, MappedView::Access::Write}) {
        for (const std::size_t length :
             {std::size_t{1}, page - 1, page, 5 * page + 7, (std::size_t{1} << 31U) - 1}) {
            const std::ptrdiff_t before = mappingsOfThisProgram();
            for (int i = 0; i < 20; ++i) {
                ASSERT_NE(MappedView(descriptor_, length, access).data(), nullptr);
            }
            EXPECT_LT(mappingsOfThisProgram(), before + 10)
                << length; // the program's own memory may need some
        }
    }
}

TEST_F(MappedViewTest, ReleasedPagesTakeNoMemoryAndAreReadAgain) {
    const std::size_t size = 2048 * page;
    const TemporaryFolder folder;
    const int file = open(folder.write("grande", std::string(size, 'a')).c_str(), O_RDWR);
    {
        const MappedView view(file, size), cut(descriptor_, 16 * page);
        for (std::size_t at = 0; at < size; at += page) {
            EXPECT_EQ(view.data()[at], 'a');
        }
        ASSERT_EQ(ftruncate(descriptor_, pageInFile), 0);
        EXPECT_EQ(cut.data()[2 * page], '\0');
        const std::size_t before = filePagesInUse();
        releaseViewedPages();
        EXPECT_LT(filePagesInUse() + size / 2, before);
        EXPECT_EQ(view.data()[size - 1], 'a');
        EXPECT_FALSE(view.isTorn());
        EXPECT_TRUE(cut.isTorn());
        EXPECT_EQ(cut.data()[2 * page], '\0');
    }
    close(file);
    releaseViewedPages(); // without views
}

TEST_F(MappedViewTest, PagesAreReleasedOnceTheyPassABound) {
    const std::size_t size = 2048 * page;
    const TemporaryFolder folder;
    const int file = open(folder.write("grande", std::string(size, 'a')).c_str(), O_RDWR);
    {
        const MappedView view(file, size);
        for (std::size_t at = 0; at < size; at += page) {
            EXPECT_EQ(view.data()[at], 'a');
        }
        const std::size_t before = filePagesInUse();
        boundViewedPages(2 * before);
        EXPECT_GT(filePagesInUse() + size / 2, before);
        boundViewedPages(before / 2);
        EXPECT_LT(filePagesInUse() + size / 2, before);
    }
    close(file);
}

TEST_F(MappedViewTest, IsWholeAgainAfterRenewing) {
    MappedView view(descriptor_, 16 * page);
    ASSERT_EQ(ftruncate(descriptor_, pageInFile), 0);
    EXPECT_EQ(view.data()[2 * page], '\0');
    ASSERT_EQ(pwrite(descriptor_, "w", 1, 2 * pageInFile), 1);
    view.renew();
    EXPECT_FALSE(view.isTorn());
    EXPECT_EQ(view.data()[2 * page], 'w');
}

TEST_F(MappedViewTest, TearingOneViewLeavesTheOthersWhole) {
    const int other = open(folder_.write("otra", std::string(page, 'o')).c_str(), O_RDWR);
    const MappedView view(descriptor_, 16 * page), whole(other, 16 * page);
    ASSERT_EQ(ftruncate(descriptor_, 0), 0);
    EXPECT_EQ(view.data()[0], '\0');
    EXPECT_TRUE(view.isTorn());
    EXPECT_FALSE(whole.isTorn());
    EXPECT_EQ(whole.data()[0], 'o');
    close(other);
}

TEST_F(MappedViewTest, AFaultElsewhereStillEndsTheProcess) {
    EXPECT_EXIT(
        {
            const MappedView guarded(descriptor_, page);
            const int other = open(folder_.write("otra", "").c_str(), O_RDWR);
            volatile const char* bare =
                static_cast<const char*>(mmap(nullptr, page, PROT_READ, MAP_SHARED, other, 0));
            _exit(*bare);
        },
        [](int status) { return !WIFEXITED(status) || WEXITSTATUS(status) != 0; }, "");
}

/// Runs in a process of its own, whose first view comes after the handlers that a program may have.
class HandlerTest : public MappedViewTest {
protected:
    static inline sigjmp_buf back;
    static void jumpBack(int) { siglongjmp(back, 1); }
    static void jumpBackWithInfo(int, siginfo_t*, void*) { siglongjmp(back, 2); }

    /// Exits with the jump value after a fault outside every view, 0 for none.
    [[noreturn]] void faultElsewhere() {
        const MappedView guarded(descriptor_, page);
        const int other = open(folder_.write("otra", "").c_str(), O_RDWR);
        const char* bare = static_cast<const char*>(mmap(nullptr, page, PROT_READ, MAP_SHARED, other, 0));
        const int jumped = sigsetjmp(back, 1);
        if (jumped == 0) {
            volatile char read = *bare;
            static_cast<void>(read);
        }
        exit(jumped);
    }
};

TEST_F(HandlerTest, AFaultElsewhereReachesTheHandlerThatTheProgramHad) {
    const auto endsWith = [](int code) { return ::testing::ExitedWithCode(code); };
    EXPECT_EXIT(
        {
            signal(SIGBUS, jumpBack);
            faultElsewhere();
        },
        endsWith(1), "");
    EXPECT_EXIT(
        {
            struct sigaction action = {};
            action.sa_sigaction = jumpBackWithInfo;
            action.sa_flags = SA_SIGINFO;
            sigaction(SIGBUS, &action, nullptr);
            faultElsewhere();
        },
        endsWith(2), "");
}

TEST_F(MappedViewTest, AFileThatCannotBeMappedHasNoView) {
    MappedView none(-1, page);
    EXPECT_EQ(none.data(), nullptr);
    EXPECT_FALSE(none.isTorn());
    none.renew();
    EXPECT_EQ(none.data(), nullptr);
}

TEST_F(MappedViewTest, MoreFilesThanCanBeGuardedAreReadWithoutAView) {
    std::vector<std::unique_ptr<MappedView>> views;
    while (views.empty() || (views.back()->data() != nullptr && views.size() < 5000)) {
        views.push_back(std::make_unique<MappedView>(descriptor_, page));
    }
    EXPECT_EQ(views.back()->data(), nullptr);
    views.front().reset();
    EXPECT_NE(MappedView(descriptor_, page).data(), nullptr) << "a place came free";
}

/// A table of several pages on the disk, opened before it is truncated.
class CutTableTest : public ::testing::Test {
protected:
    CutTableTest() {
        createTable(folder_.path(), {.name = "CORTE",
                                     .columns = {{"NOMBRE", ColumnType::Character, 50, 0, 0}},
                                     .tags = {{.name = "NOMBRE", .expression = "NOMBRE"}}});
        table_ = Table::open(path());
        for (int i = 0; i < 400; ++i) {
            table_->append(makeRecord(table_->schema(), {"CALLE " + std::to_string(i * 7919 % 400)}));
        }
    }

    [[nodiscard]] std::string path() const { return folder_ / "CORTE.DBF"; }
    [[nodiscard]] std::string indexPath() const { return folder_ / "CORTE.MDX"; }
    void expectRefusal(const std::function<void()>& operation) {
        const ErrorCode code = errorOf(operation).code();
        EXPECT_TRUE(code == ErrorCode::Io || code == ErrorCode::BadTable || code == ErrorCode::BadIndex)
            << static_cast<int>(code);
    }

    TemporaryFolder folder_;
    std::shared_ptr<Table> table_;
};

TEST_F(CutTableTest, ARecordBeyondTheCutIsAnError) {
    ASSERT_EQ(truncate(path().c_str(), 1000), 0);
    expectRefusal([&] { (void)storedRecord(*table_, 400); });
}

TEST_F(CutTableTest, ARecordBeyondACutInTheSamePageIsAnError) {
    const Bytes bytes = readFile(path());
    (void)storedRecord(*table_, 400); // the record is there before
    ASSERT_EQ(truncate(path().c_str(), static_cast<off_t>(bytes.size() - 60)), 0);
    expectRefusal([&] { (void)storedRecord(*table_, 400); });
    expectRefusal([&] { (void)storedRecord(*table_, 399); }); // its second half is missing
}

TEST_F(CutTableTest, ATreeBeyondTheCutIsAnError) {
    ASSERT_EQ(truncate(indexPath().c_str(), 5 * 1024), 0);
    expectRefusal([&] { (void)order(*table_, "NOMBRE"); });
}

TEST_F(CutTableTest, ATreeBeyondACutInTheSamePageIsAnError) {
    const std::vector<RecordNumber> numbers = order(*table_, "NOMBRE");
    const Bytes whole = readFile(indexPath());
    for (std::size_t cut = 512; cut < 6000; cut += 512) {
        ASSERT_EQ(truncate(indexPath().c_str(), static_cast<off_t>(whole.size() - cut)), 0);
        try {
            EXPECT_EQ(order(*table_, "NOMBRE"), numbers) << "only what nobody uses may be missing";
            EXPECT_LT(cut, 1024U);
        } catch (const Error& error) {
            EXPECT_TRUE(error.code() == ErrorCode::Io || error.code() == ErrorCode::BadIndex) << error.what();
        }
        writeFile(indexPath(), whole);
    }
}

TEST_F(CutTableTest, ACutFileThatIsWholeAgainIsReadAgain) {
    const Bytes whole = readFile(indexPath());
    ASSERT_EQ(truncate(indexPath().c_str(), 5 * 1024), 0);
    expectRefusal([&] { (void)order(*table_, "NOMBRE"); });
    writeFile(indexPath(), whole);
    EXPECT_EQ(order(*table_, "NOMBRE").size(), 400U);
}

} // namespace
