// Joining paths, listing folders, masks and attributes.
#include "services/Rficheros.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/TemporaryFolder.h"

namespace {

using ambrel::FileSearch;
namespace file_attribute = ambrel::file_attribute;
namespace fs = std::filesystem;

constexpr char backslash = '\\';

TEST(SlashSep, JoinsWithTheGivenSeparator) {
    EXPECT_EQ(SlashSep("C:\\DATOS", "POSTALES", backslash), "C:\\DATOS\\POSTALES");
    EXPECT_EQ(SlashSep("/datos", "POSTALES", backslash), "/datos\\POSTALES");
    EXPECT_EQ(SlashSep("/datos", "POSTALES", '/'), "/datos/POSTALES");
}

TEST(SlashSep, DoesNotDoubleTheSeparator) {
    EXPECT_EQ(SlashSep("C:\\DATOS\\", "POSTALES", backslash), "C:\\DATOS\\POSTALES");
    EXPECT_EQ(SlashSep("/datos/", "POSTALES", backslash), "/datos/POSTALES");
    EXPECT_EQ(SlashSep("/datos/", "/POSTALES", '/'), "/datos/POSTALES");
    EXPECT_EQ(SlashSep("/datos", "\\POSTALES", backslash), "/datos\\POSTALES");
}

TEST(SlashSep, AnEmptyDirectoryAddsNoSeparator) {
    EXPECT_EQ(SlashSep("", "POSTALES", backslash), "POSTALES");
}

TEST(NativePath, TakesBothSeparators) {
    EXPECT_EQ(ambrel::nativePath("/datos\\POSTALES/x"), "/datos/POSTALES/x");
}

class Folder : public ::testing::Test {
protected:
    ~Folder() override { ambrel::setAttributeFunction({}); }

    void makeFiles(const std::vector<std::string>& names) const {
        for (const std::string& name : names) {
            folder.write(name, "x");
        }
    }

    /// The names found, without the folder that must precede each of them.
    [[nodiscard]] std::vector<std::string> find(const std::string& mask,
                                                int attributes = file_attribute::any) const {
        std::vector<std::string> list{"what was there before"};
        FindFileNoRecursivo(SlashSep(folder.path(), mask, backslash), attributes, list);
        for (std::string& file : list) {
            EXPECT_TRUE(file.starts_with(folder.path() + "/")) << file;
            file.erase(0, folder.path().size() + 1);
        }
        return list;
    }

    TemporaryFolder folder;
};

using Names = std::vector<std::string>;

TEST_F(Folder, ListsFullPathsOfEveryEntrySortedByNameFoldersToo) {
    makeFiles({"28-MADRID.dat", "08-BARCELONA.dat", "sin_extension", ".oculto", "MADRID/x.xml"});
    EXPECT_EQ(find("*.*"),
              (Names{".oculto", "08-BARCELONA.dat", "28-MADRID.dat", "MADRID", "sin_extension"}));
}

TEST_F(Folder, DoesNotDescendIntoFolders) {
    makeFiles({"a.xml", "MADRID/b.xml"});
    EXPECT_EQ(find("*.xml"), Names{"a.xml"});
}

TEST_F(Folder, MasksIgnoreCaseAccentedLettersIncluded) {
    makeFiles({"CÁDIZ.XML", "cádiz2.xml", "otro.dat"});
    EXPECT_EQ(find("cádiz*.xml"), (Names{"CÁDIZ.XML", "cádiz2.xml"}));
}

TEST_F(Folder, QuestionMarkIsOneCharacterAccentedOrNot) {
    makeFiles({"a1.dat", "añ.dat", "a12.dat"});
    EXPECT_EQ(find("a?.dat"), (Names{"a1.dat", "añ.dat"}));
}

TEST_F(Folder, StarsBacktrack) {
    makeFiles({"a.b.xml", "a.xml.bak", "xml"});
    EXPECT_EQ(find("*.xml"), Names{"a.b.xml"});
    EXPECT_EQ(find("*a*b*"), (Names{"a.b.xml", "a.xml.bak"}));
}

TEST_F(Folder, NamesWithRoundBracketsAreFound) {
    makeFiles({"A()B)(C.xml"});
    EXPECT_EQ(find("*.XML"), Names{"A()B)(C.xml"});
}

TEST_F(Folder, NamesThatAreNoUtf8AreFound) {
    makeFiles({"C\xC1"
               "DIZ.xml"});
    EXPECT_EQ(find("c?diz.xml"), Names{"C\xC1"
                                       "DIZ.xml"});
}

TEST_F(Folder, FoldersAndHiddenFilesOnlyWhenAskedFor) {
    makeFiles({"a.xml", ".b.xml", "MADRID/x.xml"});
    EXPECT_EQ(find("*.*", 0), Names{"a.xml"});
    EXPECT_EQ(find("*.*", file_attribute::folder), (Names{"MADRID", "a.xml"}));
    EXPECT_EQ(find("*.*", file_attribute::hidden), (Names{".b.xml", "a.xml"}));
}

TEST_F(Folder, ReadOnlyFilesAreAlwaysListed) {
    makeFiles({"a.xml"});
    fs::permissions(folder / "a.xml", fs::perms::owner_read);
    EXPECT_EQ(find("*.*", 0), Names{"a.xml"});
}

TEST_F(Folder, AFolderThatIsNotThereGivesAnEmptyList) {
    Names list{"x"};
    FindFileNoRecursivo(folder / "falta\\*.*", file_attribute::any, list);
    EXPECT_TRUE(list.empty());
}

TEST_F(Folder, EnumerationYieldsDotsFirst) {
    makeFiles({"b.xml", "a.xml", "MADRID/x.xml"});
    FileSearch search(folder.path() + "\\*.*", file_attribute::folder);
    EXPECT_FALSE(search.findNext());
    Names names;
    for (auto entry = search.findFirst(); entry; entry = search.findNext()) {
        names.push_back(entry->name);
    }
    EXPECT_EQ(names, (Names{".", "..", "MADRID", "a.xml", "b.xml"}));
    EXPECT_FALSE(search.findNext());
    EXPECT_EQ(search.findFirst()->name, ".");
}

TEST_F(Folder, EnumerationReportsAttributes) {
    makeFiles({"MADRID/x.xml", "a.xml"});
    FileSearch search(folder / "*.*", file_attribute::any);
    std::vector<int> attributes;
    for (auto entry = search.findFirst(); entry; entry = search.findNext()) {
        attributes.push_back(entry->attributes);
    }
    EXPECT_EQ(attributes, (std::vector<int>{16, 16, 16, 0}));
}

TEST_F(Folder, AttributesOfReadOnlyHiddenAndFolder) {
    makeFiles({"a.xml", ".b.xml", ".CARPETA/x.xml"});
    fs::permissions(folder / "a.xml", fs::perms::owner_read);
    fs::permissions(folder / ".CARPETA", fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(ambrel::attributesOnDisk(folder / "a.xml"), 1);
    EXPECT_EQ(ambrel::attributesOnDisk(folder / ".b.xml"), 2);
    EXPECT_EQ(ambrel::attributesOnDisk(folder / ".CARPETA"), 16 + 2 + 1);
    EXPECT_EQ(ambrel::attributesOnDisk(folder.path() + "\\."), 16);
}

TEST_F(Folder, AttributesCanComeFromAnotherFunction) {
    makeFiles({"a.xml", "b.xml"});
    ambrel::setAttributeFunction([](const std::string& path) {
        return path.ends_with("a.xml") ? file_attribute::folder | 32 : ambrel::attributesOnDisk(path);
    });
    EXPECT_EQ(find("*.xml", 0), Names{"b.xml"});
    FileSearch search(folder / "a.*", file_attribute::folder);
    EXPECT_EQ(search.findFirst()->attributes, 48);
}

} // namespace
