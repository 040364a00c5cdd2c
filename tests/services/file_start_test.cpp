// Reads the start of a file.
#include "services/FileStart.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <system_error>

#include "support/TemporaryFolder.h"

namespace {

using ambrel::fileStart;

TEST(FileStart, IsAllOfAShortFileAndNoMoreThanAskedForOfALongOne) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a", std::string("a\0\nb", 4));
    EXPECT_EQ(fileStart(path, 100), std::string("a\0\nb", 4));
    EXPECT_EQ(fileStart(path, 4), std::string("a\0\nb", 4));
    EXPECT_EQ(fileStart(path, 2), std::string("a\0", 2));
    EXPECT_EQ(fileStart(folder.write("vacio", ""), 2), "");
}

TEST(FileStart, OfAHugeFileTakesNoMoreMemoryThanAskedFor) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a", "x");
    std::error_code refused;
    std::filesystem::resize_file(path, std::uintmax_t{1} << 40, refused);
    if (refused) {
        GTEST_SKIP() << "wants a file system that holds a sparse file of 1 TiB: " << refused.message();
    }
    EXPECT_EQ(fileStart(path, 1), "x");
}

TEST(FileStart, IsReadFromPlainFilesOnly) {
    const TemporaryFolder folder;
    const std::string pipe = folder / "tubo", endless = folder / "sin fin";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/zero", endless);
    for (const std::string& path : {pipe, endless, folder.path(), folder / "falta", std::string()}) {
        EXPECT_EQ(fileStart(path, 10), std::nullopt) << path;
    }
}

TEST(FileStart, SaysWhyInSpanish) {
    const TemporaryFolder folder;
    const std::string pipe = folder / "tubo";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const auto whyNot = [](const std::string& path) {
        std::string reason;
        EXPECT_EQ(fileStart(path, 10, &reason), std::nullopt);
        return reason;
    };
    EXPECT_EQ(whyNot(folder / "falta"), "no existe");
    EXPECT_EQ(whyNot(folder.path()), "es una carpeta");
    EXPECT_EQ(whyNot(pipe), "no es un fichero corriente");
    EXPECT_EQ(whyNot(folder.write("a", "x") + "/b"), "una parte del camino no es una carpeta");
}

} // namespace
