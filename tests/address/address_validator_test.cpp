// Verdicts on whole addresses: one test for each verdict, and for each rule about what may be settled
// unasked.
#include <gtest/gtest.h>

#include "PostalVerdicts.h"

namespace postal_tests {
namespace {

// --- Each verdict

TEST_F(AddressVerdicts, AddressAsTheTablesHoldItIsCorrect) {
    const JudgedAddress judged = judge({.type = "CL",
                                        .street = "VELAZQUEZ",
                                        .number = "12",
                                        .postalCode = "28001",
                                        .municipality = "MADRID"});
    EXPECT_EQ(judged.verdict, Verdict::Correct);
    EXPECT_EQ(judged.confidence, 1);
    EXPECT_TRUE(judged.changes.empty());
    EXPECT_TRUE(judged.alternatives.empty());
    EXPECT_EQ(judged.postalCode, "28001");
    EXPECT_EQ(judged.ineCode, "28079");
    EXPECT_EQ(judged.province, "28");
    EXPECT_EQ(judged.key, "28000007");
}

TEST_F(AddressVerdicts, CaseAccentsPunctuationAndWritingOfTheTypeChangeNothing) {
    for (const char* street : {"Calle Velázquez", "c/ velazquez", "C/. Velázquez", "Calle de Velázquez"}) {
        const JudgedAddress judged = judge({.street = street,
                                            .number = "12",
                                            .postalCode = "28001",
                                            .municipality = "Madrid",
                                            .province = "madrid"});
        EXPECT_EQ(verdictName(judged.verdict), "CORRECTA") << street;
        EXPECT_EQ(judged.street, "VELAZQUEZ");
        EXPECT_EQ(judged.type, "CL");
    }
}

TEST_F(AddressVerdicts, NothingGivenIsEmpty) { EXPECT_EQ(verdict({.street = "  "}), "VACIA"); }

TEST_F(AddressVerdicts, UnknownMunicipalityIsSaid) {
    EXPECT_EQ(verdict({.street = "Velázquez", .municipality = "Xyzzy"}), "MUNICIPIO_DESCONOCIDO");
    EXPECT_EQ(verdict({.street = "Velázquez"}), "MUNICIPIO_DESCONOCIDO");
}

TEST_F(AddressVerdicts, TypesOfOneNameWithDifferentCodesAreAmbiguous) {
    const JudgedAddress judged = judge({.street = "Constitución", .number = "3", .municipality = "Madrid"});
    EXPECT_EQ(judged.verdict, Verdict::Ambiguous);
    EXPECT_EQ(judged.postalCode, "");
    ASSERT_EQ(judged.alternatives.size(), 2U);
    EXPECT_EQ(judged.alternatives[0].street, "CONSTITUCION");
    EXPECT_NE(judged.alternatives[0].postalCodes, judged.alternatives[1].postalCodes);
}

TEST_F(AddressVerdicts, OverlappingStretchesWithDifferentCodesAreAmbiguous) {
    EXPECT_EQ(
        verdict({.street = "Calle Doble", .number = "5", .postalCode = "28001", .municipality = "Madrid"}),
        "AMBIGUA");
}

TEST_F(AddressVerdicts, UnknownStreetStaysUnknownThoughTheTownHasOneCode) {
    const JudgedAddress judged =
        judge({.street = "Calle Inexistente", .number = "3", .municipality = "Aranjuez"});
    EXPECT_EQ(judged.verdict, Verdict::UnknownStreet);
    EXPECT_EQ(judged.postalCode, "28300");
    EXPECT_EQ(judged.street, "Inexistente");
    EXPECT_EQ(judged.municipality, "ARANJUEZ");
}

TEST_F(AddressVerdicts, PartOfANameIsDoubtful) {
    for (const char* street : {"Calle Fleming", "Calle Santa", "Calle Teresa", "Calle Doctor"}) {
        const JudgedAddress judged =
            judge({.street = street, .number = "3", .postalCode = "28001", .municipality = "Madrid"});
        EXPECT_FALSE(isSettled(judged.verdict)) << street;
    }
    const JudgedAddress judged =
        judge({.street = "Calle Fleming", .number = "3", .postalCode = "28001", .municipality = "Madrid"});
    EXPECT_EQ(judged.verdict, Verdict::Doubtful);
    EXPECT_EQ(judged.street, "Fleming");
    ASSERT_FALSE(judged.alternatives.empty());
    EXPECT_EQ(judged.alternatives[0].street, "DOCTOR FLEMING");
}

TEST_F(AddressVerdicts, NumberThatNoStretchHoldsIsOutside) {
    const JudgedAddress judged =
        judge({.street = "C/ Velázquez", .number = "101", .postalCode = "28001", .municipality = "Madrid"});
    EXPECT_EQ(judged.verdict, Verdict::NumberOutside);
    EXPECT_EQ(judged.street, "VELAZQUEZ");
}

TEST_F(AddressVerdicts, NumberOutsideIsNeverTakenForRightWhateverElseAgrees) {
    for (const char* street : {"Calle Velázquez", "Calle Velasquez", "Velázquez", "Plaza Velázquez"}) {
        EXPECT_FALSE(isSettled(
            judge({.street = street, .number = "500", .postalCode = "28001", .municipality = "Madrid"})
                .verdict))
            << street;
    }
}

TEST_F(AddressVerdicts, TypesThatContradictEachOtherSettleNothingThatDependsOnThem) {
    const auto judged = [&](const char* type, const char* street) {
        return judge({.type = type, .street = street, .number = "1", .municipality = "Madrid"});
    };
    const JudgedAddress both = judged("AV", "Plaza Constitución");
    EXPECT_EQ(both.verdict, Verdict::Ambiguous);
    EXPECT_EQ(both.street, ambrel::test::ansi("Plaza Constitución"));
    EXPECT_EQ(both.postalCode, "");
    ASSERT_EQ(both.alternatives.size(), 2U);
    EXPECT_EQ(both.alternatives[0].postalCodes, std::vector<std::string>{"28001"});
    EXPECT_EQ(both.alternatives[1].postalCodes, std::vector<std::string>{"28013"});
    EXPECT_NE(judged("CL", "Plaza Alcalá").verdict, Verdict::Completed); // there is only a street
    EXPECT_EQ(judged("CL", "C/ Alcalá").verdict, Verdict::Completed);
}

TEST_F(AddressVerdicts, NumberThatNoTableCanHoldIsOutside) {
    for (const char* number : {"0", "10000", "99999", "12345678", "99999999999999999999", "1.000", "100.5"}) {
        const JudgedAddress judged = judge({.type = "CL",
                                            .street = "ALCALA",
                                            .number = number,
                                            .postalCode = "28014",
                                            .municipality = "MADRID"});
        EXPECT_EQ(judged.verdict, Verdict::NumberOutside) << number;
        EXPECT_EQ(judged.number, number);
        EXPECT_LT(judged.confidence, 1);
    }
}

TEST_F(AddressVerdicts, NothingOfTheNumbersColumnIsLost) {
    for (const auto& [number, rest] :
         {std::pair("2º B", "2º B"), {"12, 3º izda.", "3º izda."}, {"3-2004", "2004"}}) {
        const JudgedAddress judged =
            judge({.street = "ALCALA", .number = number, .postalCode = "28014", .municipality = "MADRID"});
        EXPECT_EQ(judged.rest, ambrel::test::ansi(rest)) << number;
        EXPECT_TRUE(isSettled(judged.verdict)) << number;
    }
}

TEST_F(AddressVerdicts, NumberOfWhichNothingIsUnderstoodIsNotTakenForNone) {
    for (const char* number : {"?", "??", "1O", "1OO"}) {
        const JudgedAddress judged =
            judge({.street = "VELAZQUEZ", .number = number, .postalCode = "28001", .municipality = "MADRID"});
        EXPECT_FALSE(isSettled(judged.verdict)) << number;
        EXPECT_EQ(judged.number + judged.rest, number);
    }
    EXPECT_EQ(verdict({.line = "Calle Velázquez 1O, 28001 Madrid"}), "NUMERO_FUERA");
}

TEST_F(AddressVerdicts, StreetWithSeveralCodesNeedsANumber) {
    for (const char* number : {"", "s/n"}) {
        EXPECT_EQ(verdict({.street = "Calle Gran Vía",
                           .number = number,
                           .postalCode = "28013",
                           .municipality = "Madrid"}),
                  "SIN_NUMERO");
    }
    EXPECT_EQ(verdict({.street = "Calle Alcalá", .postalCode = "28014", .municipality = "Madrid"}),
              "CORRECTA");
}

TEST_F(AddressVerdicts, CodeOfAnotherStretchIsAnothers) {
    const JudgedAddress judged =
        judge({.street = "Calle Gran Vía", .number = "60", .postalCode = "28013", .municipality = "Madrid"});
    EXPECT_EQ(judged.verdict, Verdict::OtherCode);
    EXPECT_EQ(judged.postalCode, "28001");
    EXPECT_EQ(judged.changes, (std::vector<AddressChange>{{JudgedPart::PostalCode, "28013", "28001"}}));
}

TEST_F(AddressVerdicts, TextThatIsNoPostalCodeIsAnothers) {
    EXPECT_EQ(
        verdict({.street = "C/ Velázquez", .number = "1", .postalCode = "2800", .municipality = "Madrid"}),
        "CODIGO_DISTINTO");
    EXPECT_EQ(
        verdict({.street = "C/ Velázquez", .number = "1", .postalCode = "28O01", .municipality = "Madrid"}),
        "CODIGO_DISTINTO");
}

TEST_F(AddressVerdicts, SlipInAStreetIsCorrected) {
    const JudgedAddress judged =
        judge({.street = "Calle Velasqez", .number = "12", .postalCode = "28001", .municipality = "Madrid"});
    EXPECT_EQ(judged.verdict, Verdict::Corrected);
    EXPECT_GE(judged.confidence, 0.9);
    EXPECT_LT(judged.confidence, 1);
    EXPECT_EQ(judged.street, "VELAZQUEZ");
    EXPECT_EQ(judged.changes, (std::vector<AddressChange>{{JudgedPart::Street, "Velasqez", "VELAZQUEZ"}}));
}

TEST_F(AddressVerdicts, MissingPostalCodeIsAdded) {
    const JudgedAddress judged =
        judge({.street = "Calle Gran Vía", .number = "60", .municipality = "Madrid"});
    EXPECT_EQ(judged.verdict, Verdict::Completed);
    EXPECT_EQ(judged.postalCode, "28001");
    for (const char* blank : {"00000", "0", "-"}) {
        EXPECT_EQ(
            verdict(
                {.street = "Calle Gran Vía", .number = "60", .postalCode = blank, .municipality = "Madrid"}),
            "COMPLETADA");
    }
}

// --- Lines, thresholds, changes of the tables

TEST_F(AddressVerdicts, LineIsJudgedLikeColumnsAndColumnsCount) {
    const JudgedAddress judged = judge({.line = "C/ Velázquez, 12, 3º B, 28001 Madrid"});
    EXPECT_EQ(judged.verdict, Verdict::Correct);
    EXPECT_EQ(judged.rest, ambrel::test::ansi("3º B"));
    EXPECT_EQ(judge({.line = "C/ Velázquez, 12, 28001 Madrid", .postalCode = "28014"}).verdict,
              Verdict::OtherCode);
}

TEST_F(AddressVerdicts, ThresholdAndLeadDecideWhatIsCorrected) {
    // One letter from MADRESELVA, two from MADRESILVA.
    const ambrel::GivenAddress slip{.street = "CALLE MADRESELBA", .number = "12", .municipality = "MADRID"};
    EXPECT_EQ(validator.validate(slip).verdict, Verdict::Corrected);
    ambrel::AddressValidator strict("DB", {.threshold = 0.99});
    EXPECT_EQ(strict.validate(slip).verdict, Verdict::Doubtful);
    ambrel::AddressValidator wide("DB", {.lead = 0.2});
    EXPECT_EQ(wide.validate(slip).verdict, Verdict::Ambiguous);
}

TEST_F(AddressVerdicts, ChangesOfTheTablesAreFollowed) {
    EXPECT_EQ(
        verdict({.street = "Calle Nueva", .number = "1", .postalCode = "28300", .municipality = "Aranjuez"}),
        "VIA_DESCONOCIDA");
    addStreets({{"28000099", "NUEVA", "CL", "28300"}});
    EXPECT_EQ(
        verdict({.street = "Calle Nueva", .number = "1", .postalCode = "28300", .municipality = "Aranjuez"}),
        "CORRECTA");
    EXPECT_EQ(
        verdict({.street = "Calle Real", .number = "1", .postalCode = "28999", .municipality = "Nuevo"}),
        "MUNICIPIO_DESCONOCIDO");
    addMunicipalities({{"28999", "28999", "NUEVO"}});
    addStreets({{"28000100", "REAL", "CL", "28999"}});
    EXPECT_EQ(
        verdict({.street = "Calle Real", .number = "1", .postalCode = "28999", .municipality = "Nuevo"}),
        "CORRECTA");
}

TEST_F(AddressVerdicts, NameThatAnotherMunicipalityGetsMeanwhileIsNoLongerTakenForASlip) {
    const ambrel::GivenAddress slip{.street = "Calle Parrra",
                                    .number = "3",
                                    .postalCode = "45720",
                                    .municipality = "Villanueva",
                                    .province = "Toledo"};
    EXPECT_EQ(verdict(slip), "CORREGIDA");
    addStreets({{"28000101", "PARRRA", "CL", "28014"}});
    EXPECT_EQ(verdict(slip), "DUDOSA");
}

TEST_F(AddressVerdicts, AddressesOfOneProvinceHaveOneHint) {
    EXPECT_EQ(ambrel::provinceHint({.postalCode = "28001", .municipality = "MADRID"}),
              ambrel::provinceHint({.line = "Calle Mayor 1, 28300 Aranjuez"}));
    EXPECT_EQ(ambrel::provinceHint({.municipality = "Soria "}),
              ambrel::provinceHint({.municipality = "SORIA"}));
}

} // namespace
} // namespace postal_tests
