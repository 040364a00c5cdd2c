// Official files by themselves and inside a ZIP.
#include "directory/OfficialFile.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>

#include <zip.h>

#include "directory/DirectoryTest.h"
#include "support/TemporaryFolder.h"

namespace ambrel::directory {
namespace {

/// Packs texts under their names; returns the path.
std::string pack(const TemporaryFolder& folder, const std::string& zipName,
                 const std::vector<std::pair<std::string, std::string>>& entries) {
    std::string path = folder / zipName;
    zip_t* const archive = zip_open(path.c_str(), ZIP_CREATE, nullptr);
    zip_dir_add(archive, "carpeta", 0);
    for (const auto& [name, text] : entries) {
        zip_file_add(archive, name.c_str(), zip_source_buffer(archive, text.data(), text.size(), 0), 0);
    }
    EXPECT_EQ(zip_close(archive), 0);
    return path;
}

std::string failureOf(const std::string& path) {
    try {
        for (const OfficialFile& file : officialFiles(path)) {
            static_cast<void>(loading::wholeText(file.open()));
        }
    } catch (const loading::Failure& failure) {
        return failure.what();
    }
    return "";
}

TEST(OfficialFile, ByItselfIsReadAsOftenAsWanted) {
    const TemporaryFolder folder;
    const std::string path = folder.write("TRAM.D250630.G250702", "uno\r\ndos\r\n");
    const std::vector<OfficialFile> files = officialFiles(path);
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files[0].name, path);
    EXPECT_EQ(files[0].baseName, "TRAM.D250630.G250702");
    EXPECT_EQ(files[0].edition, "2025-06-30");
    EXPECT_EQ(files[0].size, 10U);
    EXPECT_EQ(loading::wholeText(files[0].open()), "uno\r\ndos\r\n");
    EXPECT_EQ(loading::wholeText(files[0].open()), "uno\r\ndos\r\n");
}

TEST(OfficialFile, AZipHoldsSeveralUnderTheirNames) {
    const TemporaryFolder folder;
    const std::string large(300000, 'x');
    const std::string path =
        pack(folder, "caj_esp_072025.zip", {{"carpeta/TRAM.D241231", "uno\r\n"}, {"VIAS", large}});
    const std::vector<OfficialFile> files = officialFiles(path);
    ASSERT_EQ(files.size(), 2U);
    EXPECT_EQ(files[0].name, path + ": carpeta/TRAM.D241231");
    EXPECT_EQ(files[0].baseName, "TRAM.D241231");
    EXPECT_EQ(files[0].edition, "2024-12-31");
    EXPECT_EQ(files[1].edition, "2025-06-30") << "the ZIP's own, since the entry says none";
    EXPECT_EQ(files[1].size, large.size());
    EXPECT_EQ(loading::wholeText(files[0].open()), "uno\r\n");
    EXPECT_EQ(loading::wholeText(files[1].open()), large);
}

TEST(OfficialFile, ThatIsMissingAFolderOrADamagedZipIsNamed) {
    const TemporaryFolder folder;
    EXPECT_NE(failureOf(folder / "no").find(folder / "no"), std::string::npos);
    EXPECT_NE(failureOf(folder.path()).find("es una carpeta"), std::string::npos);
    const std::string broken = folder.write("roto.zip", "PK\3\4 no es un ZIP");
    EXPECT_NE(failureOf(broken).find(broken + ": no se puede leer el ZIP"), std::string::npos);
}

TEST(OfficialFile, BytesChangedInsideAZipAreFound) {
    const TemporaryFolder folder;
    std::string noise;
    for (unsigned i = 0, state = 1; i < 20000; ++i) {
        state = state * 1664525U + 1013904223U;
        noise += static_cast<char>('A' + (state >> 24) % 23);
    }
    const std::string path = pack(folder, "cambiado.zip", {{"TRAM", noise}});
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(200);
    file.write("\xFF\x00\xFF\x00", 4);
    file.close();
    EXPECT_NE(failureOf(path).find("no se puede leer el ZIP"), std::string::npos);
}

TEST(OfficialFile, AnEmptyZipIsRefused) {
    const TemporaryFolder folder;
    std::string endOfZip(22, '\0');
    endOfZip.replace(0, 4, "PK\5\6");
    const std::string path = folder.write("vacio.zip", endOfZip);
    EXPECT_NE(failureOf(path).find("está vacío"), std::string::npos);
}

TEST(OfficialFile, AZipWithTwoFilesOfAKindIsRefusedAndBothAreNamed) {
    const TemporaryFolder folder;
    const SmallEdition edition = firstEdition();
    const EditionFiles january = edition.write(folder, "241231"), july = edition.write(folder, "250630");
    const auto content = [](const std::string& file) {
        std::ifstream in(file, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    };
    const std::string one = pack(folder, "una.zip",
                                 {{"VIAS", content(july.streets)}, {"TRAM", content(july.stretches)}}),
                      two = pack(folder, "dos.zip",
                                 {{"VIAS", content(july.streets)},
                                  {"enero/TRAM.D241231", content(january.stretches)},
                                  {"julio/TRAM.D250630", content(july.stretches)}});
    EXPECT_NO_THROW(Edition({one, one}));
    EXPECT_NO_THROW(Edition({july.stretches, two})) << "of the kind that is asked for";
    try {
        const Edition read({two, two});
        FAIL() << "one of them was taken";
    } catch (const loading::Failure& failure) {
        EXPECT_EQ(failure.what(), two + ": hay dentro varios ficheros de tramos (enero/TRAM.D241231, "
                                        "julio/TRAM.D250630); saque el que quiera, o deje uno solo");
    }
}

} // namespace
} // namespace ambrel::directory
