// Stretches of one street beside each other: overlaps, gaps, and streets that hide each other.
#include <filesystem>

#include "AuditTest.h"

namespace ambrel::directory {
namespace {

class DividedStreet : public Audit {
protected:
    /// A stretch of odd numbers of a street of Móstoles.
    void stretch(const std::string& first, const std::string& last, const std::string& code) {
        street({{"IMPAR_INI", first},
                {"IMPAR_FIN", last},
                {"PAR_INI", "0"},
                {"PAR_FIN", "0"},
                {"CODPOSTAL", code},
                {"MUNICIPI", "MOSTOLES"},
                {"COD_INE", "28092"}});
    }
};

TEST_F(DividedStreet, StretchesThatFollowEachOtherAreSound) {
    stretch("1", "51", "28931");
    stretch("53", "9999", "28932");
    runToNothing();
}

TEST_F(DividedStreet, ARowWithoutNumbersBesideOthersIsNoted) {
    stretch("1", "9999", "28931");
    stretch("0", "0", "28932");
    const Finding found = runToOne(FindingClass::NoNumbers);
    EXPECT_EQ(found.severity, Severity::Note);
    EXPECT_EQ(found.record, 4U);
    EXPECT_EQ(found.text, "CL MAYOR: la fila de 28932 no tiene ningún número");
    EXPECT_EQ(totals.provinces["28"].withFindings, 0U);
}

TEST_F(DividedStreet, AStreetOfWhichNoRowHasANumberIsAWarningForEach) {
    stretch("0", "0", "28931");
    stretch("0", "0", "28932");
    const std::vector<Finding> found = run();
    ASSERT_EQ(found.size(), 2U);
    for (const Finding& one : found) {
        EXPECT_EQ(one.kind, FindingClass::NoNumbers);
        EXPECT_EQ(one.severity, Severity::Warning);
    }
    EXPECT_EQ(found[0].text, "CL MAYOR: ni la fila de 28931 ni otra de la vía tiene ningún número");
    EXPECT_EQ(totals.provinces["28"].withFindings, 1U);
}

TEST_F(DividedStreet, ARowWithoutNumbersIsFoundAlsoWhereItsMunicipalityIsNotKnown) {
    town({{"COD_INE", "28079"}, {"CODPOSTAL", "28931"}, {"NOMBRE", "UNO"}});
    street({{"IMPAR_INI", "0"},
            {"IMPAR_FIN", "0"},
            {"PAR_INI", "0"},
            {"PAR_FIN", "0"},
            {"CODPOSTAL", "28931"},
            {"MUNICIPI", ""},
            {"COD_INE", ""}});
    EXPECT_EQ(runToOne(FindingClass::NoNumbers).severity, Severity::Warning);
}

TEST_F(DividedStreet, StretchesWithDifferentCodesMustNotOverlap) {
    stretch("1", "53", "28931");
    stretch("51", "9999", "28932");
    const Finding found = runToOne(FindingClass::Overlap);
    EXPECT_EQ(found.severity, Severity::Grave);
    EXPECT_EQ(found.text, "CL MAYOR: el tramo 51–9999 (28932) se solapa con el 1–53 (28931) del registro 3");
}

TEST_F(DividedStreet, AnOverlapAcrossAStretchOfTheSameCodeIsFound) {
    stretch("1", "99", "28931");
    stretch("5", "199", "28932");
    stretch("151", "151", "28931");
    EXPECT_EQ(run().size(), 2U);
}

TEST_F(DividedStreet, StretchesWithOneCodeMayOverlap) {
    stretch("1", "53", "28931");
    stretch("51", "9999", "28931");
    runToNothing();
}

TEST_F(DividedStreet, NumbersBetweenTwoCodesAreAGap) {
    stretch("1", "51", "28931");
    stretch("61", "9999", "28932");
    const Finding found = runToOne(FindingClass::Gap);
    EXPECT_EQ(found.severity, Severity::Note);
    EXPECT_EQ(found.text,
              "CL MAYOR: entre el tramo 1–51 (28931) y el 61–9999 (28932) faltan los números 53 a 59");
}

TEST_F(DividedStreet, ASingleNumberMayBeAGap) {
    stretch("1", "51", "28931");
    stretch("55", "9999", "28932");
    EXPECT_TRUE(runToOne(FindingClass::Gap).text.ends_with(" falta el número 53"));
}

TEST_F(DividedStreet, NumbersBetweenStretchesOfOneCodeAreNotAGap) {
    stretch("1", "51", "28931");
    stretch("61", "9999", "28931");
    runToNothing();
}

TEST_F(DividedStreet, StreetsOfTwoVillagesWithOneNameAreOnlyNoted) {
    town({{"COD_INE", "28092"},
          {"CODPOSTAL", "28935"},
          {"NOMBRE", "PARQUE COIMBRA"},
          {"UNICO", "N"},
          {"ENT_MENOR", "T"}});
    stretch("1", "9999", "28931");
    stretch("1", "9999", "28935");
    EXPECT_EQ(runToOne(FindingClass::Overlap).severity, Severity::Note);
}

TEST_F(DividedStreet, AVillageDoesNotHideAnOverlapInTheTown) {
    town({{"COD_INE", "28092"},
          {"CODPOSTAL", "28935"},
          {"NOMBRE", "PARQUE COIMBRA"},
          {"UNICO", "N"},
          {"ENT_MENOR", "T"}});
    stretch("1", "9999", "28935");
    stretch("1", "53", "28931");
    stretch("51", "99", "28932");
    const std::vector<Finding> found = run();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].severity, Severity::Note);
    EXPECT_EQ(found[1].severity, Severity::Grave);
    EXPECT_EQ(found[1].text, "CL MAYOR: el tramo 51–99 (28932) se solapa con el 1–53 (28931) del registro 4");
}

TEST_F(DividedStreet, TwoOfficialStreetsOfOneNameAreOnlyNoted) {
    stretch("1", "9999", "28931");
    stretch("1", "9999", "28932");
    stretch("1", "9999", "28932");
    const auto severities = [&](const std::string& first, const std::string& second) {
        std::vector<test::Row> official{{"28000003", first + "289310000"},
                                        {"28000005", "28092V00009289320000"}};
        if (!second.empty()) {
            official.push_back({"28000004", second + "289320000"});
        }
        createTable(test::defineTable("PROCEDEN", {"CODIGO1 C8", "CLAVE C20"}, {"CODIGO1"}), official);
        std::string all;
        for (const Finding& found : run()) {
            EXPECT_EQ(found.severity == Severity::Note,
                      found.text.ends_with("en el callejero oficial son dos vías"));
            all += severityName(found.severity);
            all += ' ';
        }
        for (const char* const file : {"PROCEDEN.DBF", "PROCEDEN.MDX"}) {
            std::filesystem::remove(folder / file);
        }
        return all;
    };
    EXPECT_EQ(severities("28092V00007", "28092V00008"), "NOTA NOTA NOTA ");
    EXPECT_EQ(severities("28092V00007", "28092V00007"), "NOTA GRAVE NOTA ");
    EXPECT_EQ(severities("28092V00007", ""), "AVISO GRAVE NOTA ") << "the user's own row";
}

TEST_F(DividedStreet, StreetsOfTwoMunicipalitiesDoNotOverlapButHideEachOther) {
    street({});
    stretch("1", "9999", "28931");
    const Finding found = runToOne(FindingClass::HiddenStreets);
    EXPECT_EQ(found.key, "28092");
    EXPECT_EQ(found.text,
              "MOSTOLES: 1 de sus 2 vías va en la clave detrás de la de otro municipio, como CL MAYOR");
    EXPECT_EQ(totals.hiddenStreets, 1U);
}

} // namespace
} // namespace ambrel::directory
