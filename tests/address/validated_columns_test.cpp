// The columns that a validation adds.
#include "address/ValidatedColumns.h"

#include <gtest/gtest.h>

#include "support/Tables.h"

namespace ambrel {
namespace {

using test::ansi;

JudgedAddress judgedAddress() {
    return {.verdict = Verdict::Corrected,
            .confidence = 0.9678,
            .ineCode = "28079",
            .municipality = "MADRID",
            .province = "28",
            .type = "CL",
            .street = "ALCALA",
            .number = "100 BIS",
            .rest = "3",
            .postalCode = "28009"};
}

TEST(ValidatedColumns, HoldTheCorrectedParts) {
    const std::array<std::string, validatedColumnCount> expected{
        "CORREGIDA", "0.96", "28079", "MADRID", "COMUNIDAD", "CL", "ALCALA", "100 BIS", "3", "28009", "", ""};
    EXPECT_EQ(validatedColumns(judgedAddress(), "COMUNIDAD"), expected);
    EXPECT_EQ(validatedColumns(judgedAddress(), "")[4], "28") << "a province without a name";
}

TEST(ValidatedColumns, ConfidenceOfOneIsExactlyOne) {
    JudgedAddress judged = judgedAddress();
    for (const auto& [confidence, text] : std::vector<std::pair<double, std::string>>{
             {1, "1.00"}, {0.9999, "0.99"}, {0.29, "0.29"}, {0, "0.00"}}) {
        judged.confidence = confidence;
        EXPECT_EQ(validatedColumns(judged, "")[1], text);
    }
}

TEST(ValidatedColumns, ChangesSayFromWhatToWhat) {
    JudgedAddress judged = judgedAddress();
    judged.changes = {{JudgedPart::Street, "ALC\xBBLA", "ALCALA"}, {JudgedPart::PostalCode, "", "28009"}};
    EXPECT_EQ(validatedColumns(judged, "")[10],
              ansi("vía: «ALC»»LA» > «ALCALA» | código postal: «» > «28009»"));
}

TEST(ValidatedColumns, AlternativesSayHowNearTheyAre) {
    JudgedAddress judged = judgedAddress();
    judged.alternatives = {{.points = 0.875,
                            .ineCode = "15030",
                            .municipality = ansi("CORUÑA, A"),
                            .province = "15",
                            .type = "CL",
                            .street = "REAL",
                            .postalCodes = {"15001", "15003"}},
                           {.points = 0.5, .ineCode = "28079", .municipality = "MADRID", .province = "28"}};
    EXPECT_EQ(validatedColumns(judged, "")[11],
              ansi("0.87 CL «REAL» 15030 «CORUÑA, A» 15001/15003 | 0.50 28079 «MADRID»"));
}

TEST(ValidatedColumns, BrokenRowSaysWhy) {
    const JudgedAddress broken{.verdict = Verdict::BrokenRow, .reason = "faltan valores"};
    EXPECT_EQ(validatedColumns(broken, "")[0], "FILA_ROTA");
    EXPECT_EQ(validatedColumns(broken, "")[10], "faltan valores");
}

} // namespace
} // namespace ambrel
