// Which layout a file has.
#include "directory/Layout.h"

#include <gtest/gtest.h>

#include <vector>

#include "tools/edition/OfficialLines.h"

namespace ambrel::directory {
namespace {

using Lines = std::vector<std::string>;

const Lines stretches = {
    edition::lineOf(
        {.place = 28079, .street = 5, .postalCode = 28001, .first = 1, .last = 9, .streetName = "MAYOR"}),
    edition::lineOf(
        {.place = 28079, .pseudo = 5, .postalCode = 28001, .numbering = '0', .pseudoName = "FINCA LA ROSA"})};
Lines streets(bool repeatsName) {
    return {
        edition::streetLine(28079, 1, "CALLE", "MAYOR", repeatsName),
        edition::streetLine(28079, 2, "AVDA", "VEINTICINCO DE SEPTIEMBRE DE MIL NOVECIENTOS", repeatsName),
        edition::streetLine(28079, 3, "", "1 DE MAYO DE 1886", repeatsName)};
}
Lines pseudoStreets(bool repeatsName) {
    return {edition::pseudoLine(28079, 1, "FINCA LA ROSA", repeatsName),
            edition::pseudoLine(28079, 2, "KM 12 DE LA CARRETERA 40000 A 50000 Y SIGUIENTES", repeatsName)};
}
const Lines units = {edition::unitLine(28079, 101, "MADRID", "MADRID", "MADRID")};
const Lines sections = {"2807901001", "2807901002 "};

Lines withoutBlanks(Lines lines) {
    for (std::string& line : lines) {
        line.resize(line.find_last_not_of(' ') + 1);
    }
    return lines;
}

Lines longer(Lines lines) {
    for (std::string& line : lines) {
        line += "   00001X";
    }
    return lines;
}

void expectRecognised(const Lines& lines, Layout layout) {
    EXPECT_EQ(recognise("datos.txt", lines), layout);
    EXPECT_EQ(recognise("datos.txt", withoutBlanks(lines)), layout);
}

TEST(DirectoryLayout, IsRecognisedFromTheLinesWhateverTheFileIsCalled) {
    expectRecognised(stretches, {FileKind::Stretches, false});
    expectRecognised(streets(false), {FileKind::Streets, false});
    expectRecognised(streets(true), {FileKind::Streets, true});
    expectRecognised(pseudoStreets(false), {FileKind::PseudoStreets, false});
    expectRecognised(pseudoStreets(true), {FileKind::PseudoStreets, true});
    expectRecognised(units, {FileKind::Units, false});
    expectRecognised(sections, {FileKind::Sections, false});
}

TEST(DirectoryLayout, IsRecognisedInLinesLongerThanItself) {
    EXPECT_EQ(recognise("datos.txt", longer(stretches)), (Layout{FileKind::Stretches, false}));
    for (const bool repeatsName : {false, true}) {
        EXPECT_EQ(recognise("VIAS", longer(streets(repeatsName))), (Layout{FileKind::Streets, repeatsName}));
        EXPECT_EQ(recognise("PSEU", longer(pseudoStreets(repeatsName))),
                  (Layout{FileKind::PseudoStreets, repeatsName}));
    }
}

TEST(DirectoryLayout, TheNameOfTheFileExcludesOtherKinds) {
    EXPECT_EQ(recognise("VIAS.D250630.G250702", stretches), std::nullopt);
    EXPECT_EQ(recognise("VIAS.D250630.G250702", streets(true)), (Layout{FileKind::Streets, true}));
}

TEST(DirectoryLayout, AFewOddLinesDoNotHideIt) {
    Lines lines = streets(true);
    lines.emplace_back("no es una vía");
    EXPECT_EQ(recognise("datos", lines), (Layout{FileKind::Streets, true}));
    lines.insert(lines.end(), 3, "no es una vía");
    EXPECT_EQ(recognise("datos", lines), std::nullopt);
}

TEST(DirectoryLayout, KindsAreKnownByTheNamesOfTheirFiles) {
    EXPECT_EQ(kindOfName("TRAMOS-NAL.F181231"), FileKind::Stretches);
    EXPECT_EQ(kindOfName("tram.p01-52.d221231.g230306"), FileKind::Stretches);
    EXPECT_EQ(kindOfName("datos/VIAS.D250630.G250702"), FileKind::Streets);
    EXPECT_EQ(kindOfName("PSEU.D250630.G250702"), FileKind::PseudoStreets);
    EXPECT_EQ(kindOfName("UP.D250630.G250702"), FileKind::Units);
    EXPECT_EQ(kindOfName("UP-NAL.F181231"), FileKind::Units);
    EXPECT_EQ(kindOfName("SECC.D250630"), FileKind::Sections);
    EXPECT_EQ(kindOfName("upgrade.txt"), std::nullopt);
    EXPECT_EQ(kindOfName("caj_esp_012026"), std::nullopt);
}

TEST(DirectoryLayout, TheEditionIsReadFromTheName) {
    EXPECT_EQ(editionOfName("TRAMOS-NAL.F181231"), "2018-12-31");
    EXPECT_EQ(editionOfName("TRAM.P01-52.D221231.G230306"), "2022-12-31");
    EXPECT_EQ(editionOfName("TRAM.D250630.G250702"), "2025-06-30");
    EXPECT_EQ(editionOfName("caj_esp_012026.zip"), "2025-12-31");
    EXPECT_EQ(editionOfName("caj_esp_072025.zip"), "2025-06-30");
    EXPECT_EQ(editionOfName("tramos.txt"), "");
    EXPECT_EQ(editionOfName("TRAM.D251330"), "");
}

} // namespace
} // namespace ambrel::directory
