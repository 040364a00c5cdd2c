// Codes of TIPO_VIA for the office's abbreviations.
#include "directory/StreetTypeCodes.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "dbase/dbf/codepage.h"
#include "loading/csv.h"

namespace ambrel::directory {
namespace {

/// The sample's street types.
std::vector<StreetTypeRow> sampleRows() {
    loading::CsvReader csv(loading::fileSource(SAMPLE_FOLDER "/TIPO_VIA.csv"), "TIPO_VIA.csv");
    static_cast<void>(csv.next());
    const dbase::CodePage& page = dbase::CodePage::windows1252();
    std::vector<StreetTypeRow> rows;
    while (csv.next()) {
        rows.push_back({std::string(csv.fields()[0].text), page.fromUtf8(csv.fields()[1].text).value(),
                        page.fromUtf8(csv.fields()[2].text).value()});
    }
    return rows;
}

TEST(StreetTypeCodes, AbbreviationsOfAllLanguagesLeadToTheTablesCodes) {
    StreetTypeCodes codes(sampleRows());
    for (const auto& [abbreviation, code] :
         std::vector<std::pair<std::string, std::string>>{{"CALLE", "CL"},
                                                          {"C", "CL"},
                                                          {"CARRE", "CL"},
                                                          {"KALE", "CL"},
                                                          {"AVDA", "AV"},
                                                          {"AVGDA", "AV"},
                                                          {"ETORB", "AV"},
                                                          {"PLAZA", "PZ"},
                                                          {"PLA\xC7"
                                                           "A",
                                                           "PZ"},
                                                          {"PRAZA", "PZ"},
                                                          {"PTGE", "PJ"},
                                                          {"PJE", "PJ"},
                                                          {"PSEIG", "PS"},
                                                          {"CTRA", "CR"},
                                                          {"CMNO", "CM"},
                                                          {"GTA", "GL"},
                                                          {"RUA", "RU"},
                                                          {"CLLON", "CJ"},
                                                          {"URB", "UR"},
                                                          {"LUGAR", "LG"},
                                                          {"TRVA", "TR"},
                                                          {"C\xD1"
                                                           "ADA",
                                                           "CA"},
                                                          {"G.V.", "GV"},
                                                          {"PLZLA", "PC"},
                                                          {"BARRO", "BO"}}) {
        EXPECT_EQ(codes.codeOf(abbreviation), code) << abbreviation;
    }
    EXPECT_TRUE(codes.unknown().empty());
}

TEST(StreetTypeCodes, ATypeIsFoundUnderItsOwnNameBeforeItsKind) {
    StreetTypeCodes codes({{"CL", "CALLE", "CARRER"}, {"KA", "KALEA", ""}, {"KL", "KALE", ""}});
    EXPECT_EQ(codes.codeOf("KALE"), "KL");
    EXPECT_EQ(codes.codeOf("RUA"), "CL");
}

TEST(StreetTypeCodes, WhatIsNotKnownStaysBlankAndIsCounted) {
    StreetTypeCodes codes(sampleRows());
    EXPECT_EQ(codes.codeOf("QQQQQ"), "");
    EXPECT_EQ(codes.codeOf("QQQQQ"), "");
    EXPECT_EQ(codes.codeOf(""), "");
    ASSERT_EQ(codes.unknown().size(), 1U);
    EXPECT_EQ(codes.unknown().begin()->second, 2U);
}

TEST(StreetTypeCodes, ATableThatLacksATypeLeavesItBlank) {
    StreetTypeCodes codes({{"CL", "CALLE", ""}});
    EXPECT_EQ(codes.codeOf("AVDA"), "");
}

TEST(StreetTypeCodes, RealAbbreviationsHaveNoCodeOrThatOfTheirName) {
    const char* const folder = std::getenv("AMBREL_REAL_DATA");
    if (folder == nullptr) {
        GTEST_SKIP() << "wants the folder AMBREL_REAL_DATA";
    }
    loading::CsvReader csv(loading::fileSource(std::string(folder) + "/tipos_via_ine.csv"),
                           "tipos_via_ine.csv");
    static_cast<void>(csv.next());
    const dbase::CodePage& page = dbase::CodePage::windows1252();
    StreetTypeCodes byAbbreviation(sampleRows()), byName(sampleRows());
    int withCode = 0, known = 0;
    while (csv.next()) {
        const std::string name = page.fromUtf8(csv.fields()[1].text).value();
        const std::string& expected = byName.codeOf(name);
        const std::string& found = byAbbreviation.codeOf(page.fromUtf8(csv.fields()[0].text).value());
        withCode += expected.empty() ? 0 : 1;
        known += expected.empty() || found != expected ? 0 : 1;
        if (!found.empty() && !expected.empty()) {
            EXPECT_EQ(found, expected) << csv.fields()[0].text << ' ' << csv.fields()[1].text;
        }
    }
    std::cout << known << " of " << withCode << " abbreviations whose type the sample has\n";
}

} // namespace
} // namespace ambrel::directory
