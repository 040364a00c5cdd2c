// Answers as documents: what is taken, what is refused, how they are filed.
#include "import/Document.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "import/Transport.h"
#include "support/TemporaryFolder.h"

namespace {

using ambrel::DirectoryDocument;

std::string content(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string nested(int levels) {
    std::string text;
    for (int i = 0; i < levels; ++i)
        text += "<a>";
    for (int i = 0; i < levels; ++i)
        text += "</a>";
    return text;
}

TEST(Document, OfAnEmptyTextHasNoNodes) {
    DirectoryDocument document;
    document.load("");
    EXPECT_FALSE(document.hasNodes());
    document.load(" \r\n");
    EXPECT_FALSE(document.hasNodes());
}

TEST(Document, RefusesWhatIsNoXmlAndIsThenEmpty) {
    for (const char* const text : {"no es XML", "<a><b></a>", "<a>", "<a", "<a></a", "\x1f\x8b\x08"}) {
        DirectoryDocument document;
        document.load("<a/>");
        EXPECT_THROW(document.load(text), std::runtime_error) << text;
        EXPECT_FALSE(document.hasNodes()) << text;
    }
}

TEST(Document, RefusesEndlessNesting) {
    DirectoryDocument document;
    EXPECT_NO_THROW(document.load(nested(16)));
    EXPECT_THROW(document.load(nested(17)), std::runtime_error);
    EXPECT_THROW(document.load(nested(200'000)), std::runtime_error);
    EXPECT_FALSE(document.hasNodes());
}

TEST(Document, RefusesAMillionElements) {
    const auto withChildren = [](std::size_t count) {
        std::string text = "<a>";
        for (std::size_t i = 0; i < count; ++i)
            text += "<b/>";
        return text + "</a>";
    };
    DirectoryDocument document;
    EXPECT_NO_THROW(document.load(withChildren(900'000)));
    EXPECT_THROW(document.load(withChildren(1'000'000)), std::runtime_error);
    EXPECT_FALSE(document.hasNodes());
}

TEST(Document, NeverExpandsEntitiesOfItsOwn) {
    TemporaryFolder folder;
    DirectoryDocument document;
    document.load("<!DOCTYPE a [<!ENTITY b \"bbbb\"><!ENTITY f SYSTEM \"file:///etc/passwd\">]>"
                  "<a>&b;&f;&amp;</a>");
    document.save(folder / "a.xml");
    EXPECT_EQ(content(folder / "a.xml").find("bbbb"), std::string::npos);
    EXPECT_EQ(content(folder / "a.xml").find("root:"), std::string::npos);
}

TEST(Document, IsFiledIndentedByEightBlanksALevel) {
    TemporaryFolder folder;
    DirectoryDocument document;
    document.load("<?xml version=\"1.0\" encoding=\"utf-8\"?><a><b><c>Ñ</c></b></a>");
    document.save(folder / "a.xml");
    EXPECT_EQ(content(folder / "a.xml"), "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                                         "<a>\n"
                                         "        <b>\n"
                                         "                <c>Ñ</c>\n"
                                         "        </b>\n"
                                         "</a>\n");
}

TEST(Document, IsReadBackFromItsFile) {
    TemporaryFolder folder;
    DirectoryDocument document;
    document.loadFile(folder.write("a.xml", "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<a/>"));
    EXPECT_TRUE(document.hasNodes());
    EXPECT_THROW(document.loadFile(folder / "falta.xml"), std::runtime_error);
    EXPECT_FALSE(document.hasNodes());
    EXPECT_THROW(document.loadFile(folder.path()), std::runtime_error);
}

TEST(Document, ThatCannotBeFiledSaysSo) {
    TemporaryFolder folder;
    DirectoryDocument document;
    document.load("<a/>");
    EXPECT_THROW(document.save(folder / "falta/a.xml"), std::runtime_error);
}

TEST(Document, ThatFindsNoRoomSaysSo) {
    DirectoryDocument document;
    document.load("<a/>");
    EXPECT_THROW(document.save("/dev/full"), std::runtime_error);
}

TEST(Document, IsReadFromNothingButAFileOfItsSize) {
    TemporaryFolder folder;
    const std::string pipe = folder / "tubo.xml", endless = folder / "sin fin.xml",
                      huge = folder / "enorme.xml";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/zero", endless);
    folder.write("enorme.xml", "<a/>");
    std::filesystem::resize_file(huge, ambrel::largestAnswer + 1);
    for (const std::string& path : {pipe, endless, huge, folder.path(), folder / "falta.xml"}) {
        DirectoryDocument document;
        document.load("<a/>");
        EXPECT_THROW(document.loadFile(path), std::runtime_error) << path;
        EXPECT_FALSE(document.hasNodes()) << path;
    }
}

} // namespace
