// Files as text in memory.
#include "loading/mapped_text.h"

#include <filesystem>
#include <functional>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "loading/failure.h"
#include "support/TemporaryFolder.h"

namespace loading {
namespace {

std::string failureOf(const std::function<void()>& step) {
    try {
        step();
    } catch (const Failure& failure) {
        return failure.what();
    }
    return "";
}

TEST(MappedText, IsTheWholeFileWhereverItsReaderIs) {
    const TemporaryFolder folder;
    std::string text;
    while (text.size() < 40'000'000) { // more than what is kept behind the reader
        text += std::to_string(text.size()) + '\n';
    }
    const auto mapped = MappedText::open(folder.write("TRAM", text));
    ASSERT_TRUE(mapped);
    for (std::size_t at = 0; at < text.size(); at += 3'000'000) {
        mapped->reach(at);
        EXPECT_EQ(mapped->text().substr(at, 1000), std::string_view(text).substr(at, 1000));
    }
    mapped->reach(text.size());
    EXPECT_TRUE(mapped->text() == text) << "also what is far behind";
    mapped->requireWhole();
}

TEST(MappedText, TellsWhetherTheFileWasCut) {
    const TemporaryFolder folder;
    const std::string path = folder.write("TRAM", std::string(100'000, 'x'));
    const auto mapped = MappedText::open(path);
    ASSERT_TRUE(mapped);
    std::filesystem::resize_file(path, 200'000);
    mapped->requireWhole(); // what it was is there
    std::filesystem::resize_file(path, 50'000);
    EXPECT_EQ(failureOf([&] { mapped->requireWhole(); }),
              path + ": otro programa lo ha cortado mientras se leía");
    std::filesystem::resize_file(path, 0);
    EXPECT_EQ(mapped->text().back(), '\0') << "instead of the end of the program";
    std::filesystem::resize_file(path, 100'000);
    EXPECT_NE(failureOf([&] { mapped->requireWhole(); }), "") << "it was read as zeros meanwhile";
}

TEST(MappedText, IsNoneOfAnEmptyFileOrAPipe) {
    const TemporaryFolder folder;
    EXPECT_FALSE(MappedText::open(folder.write("VACIO", "")));
    ASSERT_EQ(mkfifo((folder / "tubo").c_str(), 0600), 0);
    EXPECT_FALSE(MappedText::open(folder / "tubo"));
    EXPECT_NE(failureOf([&] {
                  static_cast<void>(MappedText::open(folder / "NADA"));
              }).find("NADA: no se puede abrir"),
              std::string::npos);
}

} // namespace
} // namespace loading
