// Files on the disk: the system's refusals are reported by name and kind.
#include <gtest/gtest.h>

#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "dbase/lock/locks.h"
#include "dbase/support/ChildProcess.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "dbase/system/file.h"
#include "support/FileSizeLimit.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;

/// Root may write everything: while this exists, the program runs as another user.
class NotRoot {
public:
    NotRoot() {
        if (wasRoot_ && seteuid(nobody) != 0) {
            throw std::runtime_error("root cannot become another user");
        }
    }
    ~NotRoot() {
        if (wasRoot_) {
            static_cast<void>(seteuid(0));
            prctl(PR_SET_DUMPABLE, 1); // as it was, or the search for leaks may not look into the program
        }
    }
    NotRoot(const NotRoot&) = delete;
    NotRoot& operator=(const NotRoot&) = delete;

private:
    static constexpr uid_t nobody = 65534;
    bool wasRoot_ = geteuid() == 0;
};

class PosixFileTest : public ::testing::Test {
protected:
    [[nodiscard]] static Error opening(const std::string& path, OpenMode mode = OpenMode::ReadWrite) {
        return errorOf([&] { (void)openFile(path, mode); });
    }
    TemporaryFolder folder_;
    std::string path_ = folder_.write("fichero", "0123456789");
};

TEST_F(PosixFileTest, APathThroughAFileIsNotThere) {
    EXPECT_EQ(opening(path_ + "/otro").code(), ErrorCode::NotFound);
    EXPECT_EQ(opening(folder_ / "nada").code(), ErrorCode::NotFound);
    EXPECT_EQ(opening(folder_ / "nada").file(), folder_ / "nada");
}

TEST_F(PosixFileTest, WhatIsNoFileIsRefused) {
    EXPECT_EQ(opening(folder_.path(), OpenMode::ReadOnly).code(), ErrorCode::BadTable);
    const std::string pipe = folder_ / "tubo";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(opening(pipe, OpenMode::ReadOnly).code(), ErrorCode::BadTable)
        << "and nobody waits for a writer";
}

TEST_F(PosixFileTest, AFileThatMayNotBeWrittenSaysSo) {
    ASSERT_EQ(chmod(folder_.path().c_str(), 0755), 0);
    ASSERT_EQ(chmod(path_.c_str(), 0444), 0);
    const NotRoot user;
    EXPECT_EQ(opening(path_).code(), ErrorCode::AccessDenied);
    EXPECT_FALSE(openFile(path_, OpenMode::ReadOnly)->isWritable());
}

TEST_F(PosixFileTest, AFileOpenForReadingRefusesToBeChanged) {
    const auto file = openFile(path_, OpenMode::ReadOnly);
    EXPECT_EQ(errorOf([&] { file->write(0, Bytes{'x'}); }).code(), ErrorCode::Io);
    EXPECT_EQ(errorOf([&] { file->resize(3); }).code(), ErrorCode::Io);
    EXPECT_EQ(readFile(path_).size(), 10U);
    EXPECT_EQ(errorOf([&] { (void)file->tryLock(structureLock, LockKind::Exclusive); }).code(),
              ErrorCode::Io);
}

TEST_F(PosixFileTest, ReadingAfterTheEndNamesThePlace) {
    const auto file = openFile(path_, OpenMode::ReadOnly);
    Bytes bytes(4);
    file->read(6, bytes);
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), "6789");
    const Error error = errorOf([&] { file->read(8, bytes); });
    EXPECT_EQ(error.code(), ErrorCode::Io);
    EXPECT_NE(std::string(error.what()).find("posición 10"), std::string::npos) << error.what();
}

TEST_F(PosixFileTest, AFileLargerThanTheUserMayHaveIsAFullDisk) {
    ChildProcess limited([&](const ChildProcess::Link&) {
        const ambrel::test::FileSizeLimit limit(100);
        const auto file = openFile(path_, OpenMode::ReadWrite);
        file->write(0, Bytes(100, 'x'));
        const Error error = errorOf([&] { file->write(100, Bytes(1, 'x')); });
        return error.code() == ErrorCode::DiskFull && file->size() == 100 ? 0 : 1;
    });
    EXPECT_EQ(limited.join(), 0);
}

TEST_F(PosixFileTest, RewritingChangesTheBytesAndNotTheSize) {
    const auto file = openFile(path_, OpenMode::ReadWrite);
    file->rewrite(3, Bytes{'a', 'b'});
    EXPECT_EQ(readFile(path_), (Bytes{'0', '1', '2', 'a', 'b', '5', '6', '7', '8', '9'}));
}

TEST_F(PosixFileTest, RewritingWritesAnyPieceAtAnyPlace) {
    const std::string path = folder_.write("pieza", std::string(64, 'x'));
    const auto file = openFile(path, OpenMode::ReadWrite);
    Bytes expected(64, 'x');
    char next = 0;
    for (std::size_t offset = 0; offset < 16; ++offset) {
        for (std::size_t size = 0; size <= 40; ++size) {
            Bytes piece(size);
            std::ranges::generate(piece, [&] { return ++next; });
            file->rewrite(offset, piece);
            std::ranges::copy(piece, expected.begin() + static_cast<std::ptrdiff_t>(offset));
            ASSERT_EQ(readFile(path), expected) << size << " bytes at " << offset;
        }
    }
}

TEST_F(PosixFileTest, ItsSizeIsThatOfNowWhateverChangesIt) {
    const auto file = openFile(path_, OpenMode::ReadWrite), other = openFile(path_, OpenMode::ReadWrite);
    EXPECT_EQ(file->size(), 10U);
    other->resize(4);
    EXPECT_EQ(file->size(), 4U);
    other->write(20, Bytes{'a'});
    EXPECT_EQ(file->size(), 21U);
}

TEST_F(PosixFileTest, RewritingBeyondTheEndWrites) {
    const auto file = openFile(path_, OpenMode::ReadWrite);
    file->rewrite(9, Bytes{'a', 'b'});
    EXPECT_EQ(readFile(path_), (Bytes{'0', '1', '2', '3', '4', '5', '6', '7', '8', 'a', 'b'}));
}

TEST_F(PosixFileTest, RewritingWhatAnotherProgramHasCutOffWrites) {
    const std::string path = folder_.write("largo", std::string(50'000, 'x'));
    const auto file = openFile(path, OpenMode::ReadWrite);
    file->rewrite(0, Bytes{'a'});
    openFile(path, OpenMode::ReadWrite)->resize(100);
    file->rewrite(40'000, Bytes{'b'});
    EXPECT_EQ(std::filesystem::file_size(path), 40'001U);
    EXPECT_EQ(readFile(path).back(), 'b');
}

} // namespace
