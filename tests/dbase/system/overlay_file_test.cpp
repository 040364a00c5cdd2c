// A file whose changes are kept apart from it.
#include "dbase/system/overlay_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "support/Seed.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using ambrel::test::seedOfThisRun;

constexpr std::size_t noLimit = std::numeric_limits<std::size_t>::max();

class OverlayFileTest : public ::testing::Test {
protected:
    [[nodiscard]] std::unique_ptr<OverlayFile> over(const Bytes& below, std::size_t mostBlocks = noLimit) {
        writeFile(path(), below);
        return std::make_unique<OverlayFile>(
            openFile(path(), OpenMode::ReadOnly),
            [this] {
                ++copies_;
                return openFile(copyPath(), OpenMode::Create);
            },
            mostBlocks);
    }
    [[nodiscard]] std::string path() const { return folder_ / "BASE.DBF"; }
    [[nodiscard]] std::string copyPath() const { return folder_ / "COPIA.DBF"; }
    static Bytes contentsOf(const File& file) {
        Bytes bytes(static_cast<std::size_t>(file.size()));
        file.read(0, bytes);
        return bytes;
    }
    /// Does the same to both.
    static void write(File& file, Bytes& expected, std::size_t offset, const Bytes& bytes) {
        file.write(offset, bytes);
        expected.resize(std::max(expected.size(), offset + bytes.size()));
        std::ranges::copy(bytes, expected.begin() + static_cast<std::ptrdiff_t>(offset));
    }
    /// The changed blocks over the file below give the same as the overlay.
    static void expectChanges(const OverlayFile& file, const Bytes& below) {
        Bytes changed = below;
        changed.resize(static_cast<std::size_t>(file.size()));
        std::int64_t last = -1;
        file.forEachChanged([&](OverlayFile::BlockNumber number, std::span<const char> block) {
            EXPECT_GT(std::int64_t{number}, last);
            last = number;
            const std::size_t at = std::size_t{number} * OverlayFile::blockBytes;
            for (std::size_t i = 0; i < block.size(); ++i) {
                if (at + i < changed.size()) {
                    changed[at + i] = block[i];
                } else {
                    EXPECT_EQ(block[i], 0) << "beyond the end";
                }
            }
        });
        EXPECT_EQ(changed, contentsOf(file));
    }

    TemporaryFolder folder_;
    int copies_ = 0;
};

TEST_F(OverlayFileTest, ReadsAsWrittenAndLeavesTheFileBelowAsItIs) {
    std::mt19937 random(seedOfThisRun());
    const auto any = [&](std::size_t below) { return static_cast<std::size_t>(random() % below); };
    for (const std::size_t size : {0U, 1U, 511U, 512U, 513U, 5000U}) {
        Bytes below(size);
        std::ranges::generate(below, [&] { return static_cast<char>(random()); });
        const auto file = over(below);
        Bytes expected = below;
        for (int step = 0; step < 60; ++step) {
            if (any(5) == 0) {
                const std::size_t grown = expected.size() + any(1500);
                file->resize(grown);
                expected.resize(grown);
            } else {
                write(*file, expected, any(expected.size() + 700),
                      Bytes(any(1200), static_cast<char>(random())));
            }
            ASSERT_EQ(contentsOf(*file), expected) << "step " << step;
        }
        EXPECT_FALSE(file->isCopied());
        expectChanges(*file, below);
        EXPECT_EQ(file->below().size(), size);
        EXPECT_EQ(readFile(path()), below);
        file->moveToCopy();
        EXPECT_EQ(contentsOf(*file), expected);
        EXPECT_EQ(readFile(copyPath()), expected);
        EXPECT_EQ(readFile(path()), below);
    }
}

TEST_F(OverlayFileTest, GoesOnInACopyOnceItsChangesTakeUpTooMuchMemory) {
    const Bytes below(20 * OverlayFile::blockBytes, 'a');
    const auto file = over(below, 4);
    Bytes expected = below;
    for (std::size_t block = 0; block < 10; ++block) {
        write(*file, expected, block * 2 * OverlayFile::blockBytes + 100, Bytes(3, 'x'));
        EXPECT_EQ(contentsOf(*file), expected);
        EXPECT_EQ(file->isCopied(), block >= 4);
    }
    write(*file, expected, expected.size(), Bytes(7, 'y'));
    EXPECT_EQ(copies_, 1);
    EXPECT_EQ(readFile(copyPath()), expected);
    EXPECT_EQ(readFile(path()), below);
}

TEST_F(OverlayFileTest, GoesOnInACopyWhenItShrinks) {
    const Bytes below(2000, 'a');
    const auto file = over(below);
    Bytes expected = below;
    write(*file, expected, 1990, Bytes(100, 'x'));
    file->resize(1995);
    expected.resize(1995);
    file->resize(2010);
    expected.resize(2010);
    EXPECT_EQ(contentsOf(*file), expected);
    EXPECT_EQ(readFile(copyPath()), expected);
    EXPECT_EQ(readFile(path()), below);
}

TEST_F(OverlayFileTest, RefusesToReadBeyondItsEnd) {
    const auto file = over(Bytes(600, 'a'));
    Bytes bytes(10);
    EXPECT_EQ(errorOf([&] { file->read(591, bytes); }).code(), ErrorCode::Io);
    file->resize(601);
    file->read(591, bytes);
    EXPECT_EQ(bytes, (Bytes{'a', 'a', 'a', 'a', 'a', 'a', 'a', 'a', 'a', 0}));
}

} // namespace
