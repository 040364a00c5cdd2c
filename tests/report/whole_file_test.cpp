#include "report/WholeFile.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>

#include <gtest/gtest.h>

#include "dbase/system/error.h"
#include "support/FileSizeLimit.h"
#include "support/TemporaryFolder.h"

using report::requireWritable;
using report::writeWholeFile;

namespace {

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return std::move(text).str();
}

std::size_t filesIn(const TemporaryFolder& folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder.path()),
                                                  std::filesystem::directory_iterator()));
}

std::string errorOf(const std::function<void()>& work) {
    try {
        work();
    } catch (const dbase::Error& error) {
        return error.what();
    }
    return {};
}

} // namespace

TEST(WholeFile, IsWrittenUnderItsNameAlone) {
    const TemporaryFolder folder;
    writeWholeFile(folder / "informe.html", "uno");
    EXPECT_EQ(contentOf(folder / "informe.html"), "uno");
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST(WholeFile, ReplacesAnOlderOneAndKeepsItsPermissions) {
    const TemporaryFolder folder;
    const std::string path = folder.write("informe.html", "antes");
    std::filesystem::permissions(path, std::filesystem::perms(0640));
    writeWholeFile(path, "después");
    EXPECT_EQ(contentOf(path), "después");
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0640));
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST(WholeFile, FollowsALink) {
    const TemporaryFolder folder;
    const std::string path = folder.write("real.html", "antes");
    std::filesystem::create_symlink(path, folder / "enlace.html");
    writeWholeFile(folder / "enlace.html", "después");
    EXPECT_EQ(contentOf(path), "después");
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "enlace.html"));
}

TEST(WholeFile, LeavesTheOlderOneAndNothingElseWhereThereIsNoRoom) {
    const TemporaryFolder folder;
    const std::string path = folder.write("informe.html", "antes");
    {
        const ambrel::test::FileSizeLimit limit(100);
        EXPECT_NE(errorOf([&] { writeWholeFile(path, std::string(1000, 'x')); }).find(path + ": "),
                  std::string::npos);
    }
    EXPECT_EQ(contentOf(path), "antes");
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST(WholeFile, SaysWhyAFolderCannotHoldIt) {
    const TemporaryFolder folder;
    const std::string path = folder / "no-hay/informe.html";
    const std::string text = errorOf([&] { writeWholeFile(path, "x"); });
    EXPECT_TRUE(text.starts_with(path + ": ")) << text;
    EXPECT_EQ(text.find(".nuevo"), std::string::npos) << text;
    EXPECT_EQ(errorOf([&] { requireWritable(path); }), text);
}

TEST(WholeFile, IsNotPutInThePlaceOfAFolderOrADevice) {
    const TemporaryFolder folder;
    EXPECT_NE(errorOf([&] { writeWholeFile(folder.path(), "x"); }).find("no es un fichero corriente"),
              std::string::npos);
    EXPECT_NE(errorOf([&] { requireWritable("/dev/full"); }).find("no es un fichero corriente"),
              std::string::npos);
}

TEST(WholeFile, AskingBeforehandLeavesNothing) {
    const TemporaryFolder folder;
    requireWritable(folder / "informe.html");
    EXPECT_EQ(filesIn(folder), 0U);
    const std::string path = folder.write("informe.html", "antes");
    requireWritable(path);
    EXPECT_EQ(contentOf(path), "antes");
    EXPECT_EQ(filesIn(folder), 1U);
}
