// Answers as documents: which are accepted, which are refused, how they are filed.
#include "import/Document.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "import/ResponseReaders.h"
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
    for (int i = 0; i < levels; ++i) {
        text += "<a>";
    }
    for (int i = 0; i < levels; ++i) {
        text += "</a>";
    }
    return text;
}

/// What the readers find in a document, in the texts of the window.
std::string shown(const DirectoryDocument& document) {
    const ambrel::StreetList list = ambrel::readStreets(document);
    std::string text = std::to_string(static_cast<int>(list.reading)) + ":";
    for (const ambrel::ImportedStreet& street : list.streets) {
        text += street.type + "|" + street.name + ";";
    }
    return text;
}

/// An answer with one street, and its own declaration.
std::string streetAnswer(const std::string& declaration, const std::string& name) {
    return declaration +
           "<soap:Envelope><soap:Body><a><b><control><cuca>1</cuca></control><callejero><calle>"
           "<dir><tv>CL</tv><nv>" +
           name + "</nv></dir></calle></callejero></b></a></soap:Body></soap:Envelope>";
}

/// The same for the document filed and read back.
std::string shownFromFile(const DirectoryDocument& document) {
    const TemporaryFolder folder;
    document.save(folder / "a.xml");
    DirectoryDocument filed;
    filed.loadFile(folder / "a.xml");
    return shown(filed);
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
        for (std::size_t i = 0; i < count; ++i) {
            text += "<b/>";
        }
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

TEST(Document, DeclaresTheEncodingInWhichItIsFiled) {
    const TemporaryFolder folder;
    DirectoryDocument document;
    document.load(R"(<?xml version="1.0" encoding="ISO-8859-1" standalone="yes"?><a>CAÑÓN</a>)");
    document.save(folder / "a.xml");
    EXPECT_EQ(content(folder / "a.xml"),
              "<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"yes\"?>\n<a>CAÑÓN</a>\n");
}

TEST(Document, IsReadBackExactlyAsItWasShown) {
    for (const std::string declaration :
         {"", R"(<?xml version="1.0"?>)", R"(<?xml version="1.0" encoding="utf-8"?>)",
          R"(<?xml version="1.0" encoding="ISO-8859-1"?>)", R"(<?xml version='1.0' encoding='utf-16'?>)",
          R"(<?xml version="1.0" encoding="windows-1252"?>)",
          "\xEF\xBB\xBF"
          R"(<?xml version="1.0" encoding="latin1"?>)"}) {
        for (const std::string name :
             {"CAÑÓN", "CA\xD1\xD3N", "A & B", "A &amp;&lt;B&gt; C", "A&nbsp;B", "A&#13;B", "A\r\nB", "A\rB",
              "A&#9;B&#1;C", "<![CDATA[A <B> & C]]>", "A<!-- no --> B", "A <b>no</b> B", "  A   B  ",
              "\xE2\x82\xAC \xE4\xB8\xAD", "<![CDATA[]]>", ""}) {
            DirectoryDocument document;
            try {
                document.load(streetAnswer(declaration, name));
            } catch (const std::runtime_error&) {
                continue; // it is not filed, either
            }
            EXPECT_EQ(shownFromFile(document), shown(document)) << declaration << name;
        }
    }
}

TEST(Document, WithoutNodesIsReadBackWithoutNodes) {
    DirectoryDocument document;
    document.load("");
    EXPECT_EQ(shownFromFile(document), shown(document));
}

TEST(Document, ThatWouldBeTooLargeToReadBackIsRefusedWhenItComes) {
    // As deep as an answer may be: when filed, every line is indented by up to 120 blanks.
    const std::string open = "<a><a><a><a><a><a><a><a><a><a><a><a><a><a><a>";
    std::string text = open;
    for (int i = 0; i < 400'000; ++i) {
        text += "<b/>";
    }
    for (int i = 0; i < 15; ++i) {
        text += "</a>";
    }
    DirectoryDocument document;
    EXPECT_THROW(document.load(text), std::runtime_error);
    EXPECT_FALSE(document.hasNodes());
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
