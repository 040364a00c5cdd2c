// Verdicts on whole addresses: one test for each verdict, and for each rule about what may be settled
// unasked.
#include <gtest/gtest.h>

#include "PostalVerdicts.h"

namespace postal_tests {
namespace {

using ambrel::AddressChange;
using ambrel::JudgedAddress;
using ambrel::JudgedPart;
using ambrel::Verdict;

class AddressVerdicts : public PostalVerdicts {};

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

// --- The municipality

TEST_F(AddressVerdicts, CodeBesideTheMunicipalityThatIsNotTheOneGivenStaysInTheRest) {
    const auto restWith = [&](const char* municipality) {
        return judge({.street = "Calle Alcalá",
                      .number = "1",
                      .postalCode = "28014",
                      .municipality = municipality})
            .rest;
    };
    EXPECT_EQ(restWith("28013 Madrid"), "28013");
    EXPECT_EQ(restWith("Madrid 28013"), "28013");
    EXPECT_EQ(restWith("28014 Madrid"), "");
}

TEST_F(AddressVerdicts, MunicipalityIsTakenFromACodeThatOnlyOneHas) {
    const JudgedAddress judged = judge({.street = "Calle Mayor", .number = "1", .postalCode = "28300"});
    EXPECT_EQ(judged.verdict, Verdict::Completed);
    EXPECT_EQ(judged.municipality, "ARANJUEZ");
    EXPECT_EQ(verdict({.street = "Calle Nada", .number = "1", .postalCode = "28300"}), "VIA_DESCONOCIDA");
}

TEST_F(AddressVerdicts, StreetChoosesAmongTheMunicipalitiesOfACode) {
    const JudgedAddress judged = judge({.street = "Plaza Mercado", .number = "1", .postalCode = "28770"});
    EXPECT_EQ(judged.verdict, Verdict::Completed);
    EXPECT_EQ(judged.ineCode, "28144");
    EXPECT_EQ(verdict({.street = "Calle Real", .number = "1", .postalCode = "28770"}), "AMBIGUA");
    EXPECT_EQ(verdict({.street = "Calle Nada", .number = "1", .postalCode = "28770"}),
              "MUNICIPIO_DESCONOCIDO");
}

TEST_F(AddressVerdicts, NamesakesAreChosenByProvinceCodeOrStreetAndNeverGuessed) {
    EXPECT_EQ(verdict({.street = "Calle Olivo", .number = "1", .municipality = "Villanueva"}), "AMBIGUA");
    EXPECT_EQ(
        judge({.street = "Calle Olivo", .number = "1", .municipality = "Villanueva", .province = "Toledo"})
            .postalCode,
        "45720");
    EXPECT_EQ(
        judge({.street = "Calle Olivo", .number = "1", .postalCode = "28720", .municipality = "Villanueva"})
            .ineCode,
        "28150");
    EXPECT_EQ(judge({.street = "Calle Parra", .number = "1", .municipality = "Villanueva"}).ineCode, "45100");
    EXPECT_EQ(verdict({.street = "Calle Nada", .number = "1", .municipality = "Villanueva"}), "AMBIGUA");
}

TEST_F(AddressVerdicts, OneOfTheNamesOfAMunicipalityIsCompleted) {
    const JudgedAddress judged = judge(
        {.street = "Avda. Maisonnave", .number = "1", .postalCode = "03001", .municipality = "Alacant"});
    EXPECT_EQ(judged.verdict, Verdict::Completed);
    EXPECT_EQ(judged.municipality, "ALICANTE/ALACANT");
}

TEST_F(AddressVerdicts, MisspeltMunicipalityIsCorrected) {
    const JudgedAddress judged =
        judge({.street = "Calle Mayor", .number = "1", .postalCode = "28300", .municipality = "Aranjués"});
    EXPECT_EQ(judged.verdict, Verdict::Corrected);
    EXPECT_EQ(judged.municipality, "ARANJUEZ");
}

TEST_F(AddressVerdicts, MunicipalityInAnotherProvinceNeedsItsCode) {
    EXPECT_EQ(
        verdict({.street = "Calle Mayor", .number = "1", .municipality = "Aranjuez", .province = "Toledo"}),
        "DUDOSA");
    const JudgedAddress judged = judge({.street = "Calle Mayor",
                                        .number = "1",
                                        .postalCode = "28300",
                                        .municipality = "Aranjuez",
                                        .province = "Toledo"});
    EXPECT_EQ(judged.verdict, Verdict::Corrected);
    EXPECT_EQ(judged.changes, (std::vector<AddressChange>{{JudgedPart::Province, "Toledo", "28"}}));
}

TEST_F(AddressVerdicts, CodeOrProvinceInTheColumnOfTheMunicipalityIsUnderstood) {
    EXPECT_EQ(verdict({.street = "Calle Mayor", .number = "1", .municipality = "28300 Aranjuez"}),
              "CORRECTA");
    EXPECT_EQ(verdict({.street = "Calle Mayor",
                       .number = "1",
                       .postalCode = "28300",
                       .municipality = "Aranjuez (Madrid)"}),
              "CORRECTA");
}

// --- Streets that do not exist

TEST_F(AddressVerdicts, StreetThatDiffersByItsEndingIsNotTakenForAnother) {
    for (const char* street : {"Calle Rosa", "Calle Rosal"}) {
        for (const char* code : {"28001", ""}) {
            EXPECT_EQ(
                verdict({.street = street, .number = "3", .postalCode = code, .municipality = "Madrid"}),
                "DUDOSA")
                << street << code;
        }
    }
}

TEST_F(AddressVerdicts, StreetOfAnotherMunicipalityIsNotTakenForOneWithASlip) {
    // PARLA is a street in Madrid, PARRRA is none anywhere.
    EXPECT_EQ(verdict({.street = "Calle Parla",
                       .number = "3",
                       .postalCode = "45720",
                       .municipality = "Villanueva",
                       .province = "Toledo"}),
              "DUDOSA");
    EXPECT_EQ(verdict({.street = "Calle Parrra",
                       .number = "3",
                       .postalCode = "45720",
                       .municipality = "Villanueva",
                       .province = "Toledo"}),
              "CORREGIDA");
}

TEST_F(AddressVerdicts, OtherNumeralsAndLettersAreOtherStreets) {
    EXPECT_FALSE(isSettled(
        judge({.street = "Calle Alfonso XI", .number = "3", .postalCode = "28014", .municipality = "Madrid"})
            .verdict));
    EXPECT_EQ(
        verdict(
            {.street = "Calle Alfonso 12", .number = "3", .postalCode = "28014", .municipality = "Madrid"}),
        "CORREGIDA");
    EXPECT_FALSE(isSettled(
        judge({.street = "Calle Sector B", .number = "3", .postalCode = "28014", .municipality = "Madrid"})
            .verdict));
}

TEST_F(AddressVerdicts, CodeOfAnotherStreetSpeaksAgainstACorrection) {
    EXPECT_EQ(
        verdict(
            {.street = "Calle Velasqez", .number = "12", .postalCode = "28014", .municipality = "Madrid"}),
        "DUDOSA");
}

TEST_F(AddressVerdicts, CorrectedStreetMustHoldTheNumber) {
    EXPECT_EQ(
        verdict(
            {.street = "Calle Velasqez", .number = "500", .postalCode = "28001", .municipality = "Madrid"}),
        "DUDOSA");
}

TEST_F(AddressVerdicts, TextThatTheTablesCannotHoldMatchesNothing) {
    EXPECT_FALSE(isSettled(
        validator.validate({.street = "?", .number = "1", .postalCode = "28001", .municipality = "MADRID"})
            .verdict));
    EXPECT_EQ(validator.validate({.street = "MAYOR", .number = "1", .municipality = "?"}).verdict,
              Verdict::UnknownMunicipality);
}

// --- Types and numbers

TEST_F(AddressVerdicts, WrongTypeIsCorrectedIfTheStreetHasOnlyOne) {
    const JudgedAddress judged =
        judge({.street = "Plaza Velázquez", .number = "12", .postalCode = "28001", .municipality = "Madrid"});
    EXPECT_EQ(judged.verdict, Verdict::Corrected);
    EXPECT_EQ(judged.changes, (std::vector<AddressChange>{{JudgedPart::Type, "Plaza", "CL"}}));
    EXPECT_FALSE(
        isSettled(judge({.street = "Paseo Constitución", .number = "3", .municipality = "Madrid"}).verdict));
}

TEST_F(AddressVerdicts, WrongTypeIsDoubtfulWhereNoCodeSpeaksForTheStreet) {
    EXPECT_EQ(verdict({.street = "Travesía de Velázquez", .number = "12", .municipality = "Madrid"}),
              "DUDOSA");
    EXPECT_EQ(
        verdict({.street = "Plaza Mayor", .number = "3", .postalCode = "28300", .municipality = "Aranjuez"}),
        "DUDOSA"); // the only code of the town
}

TEST_F(AddressVerdicts, KindOfStreetInANameBelongsToItIfTheTypeHasAColumn) {
    // Where the tables have both, and where the town is misspelt, too.
    for (const char* town : {"Madrid", "Madird"}) {
        const JudgedAddress judged = judge({.type = "CL",
                                            .street = "Puente de Toledo",
                                            .number = "3",
                                            .postalCode = "28014",
                                            .municipality = town});
        EXPECT_TRUE(isSettled(judged.verdict)) << town;
        EXPECT_EQ(judged.street, "PUENTE DE TOLEDO") << town;
    }
}

TEST_F(AddressVerdicts, NameThatBeginsWithTwoKindsOfStreetIsTakenAsWritten) {
    EXPECT_EQ(judge({.street = "C/ Costanilla del Olmo",
                     .number = "3",
                     .postalCode = "28014",
                     .municipality = "Madrid"})
                  .street,
              "COSTANILLA DEL OLMO");
}

TEST_F(AddressVerdicts, SettledAddressShowsAConfidenceFromTheThresholdOn) {
    for (const char* street : {"Calle Velazqez", "Calle Madreselba", "Calle Santa Terexa"}) {
        const JudgedAddress judged = judge({.street = street, .number = "3", .municipality = "Madrid"});
        EXPECT_EQ(judged.verdict, Verdict::Corrected) << street;
        EXPECT_GE(judged.confidence, 0.9) << street;
    }
}

TEST_F(AddressVerdicts, CodeChoosesAmongTypesThatWereNotWritten) {
    const JudgedAddress judged =
        judge({.street = "Constitución", .number = "3", .postalCode = "28013", .municipality = "Madrid"});
    EXPECT_EQ(judged.verdict, Verdict::Completed);
    EXPECT_EQ(judged.type, "PZ");
}

TEST_F(AddressVerdicts, CodeNeverChangesATypeThatWasWrittenAndExists) {
    EXPECT_EQ(
        verdict(
            {.street = "Avda. Constitución", .number = "3", .postalCode = "28013", .municipality = "Madrid"}),
        "CODIGO_DISTINTO");
}

TEST_F(AddressVerdicts, SuffixesAndRangesOfNumbersAreKept) {
    EXPECT_EQ(
        judge({.street = "Calle Velázquez 5 bis, 2º izda.", .postalCode = "28001", .municipality = "Madrid"})
            .number,
        "5 BIS");
    const JudgedAddress range = judge(
        {.street = "Calle Gran Vía", .number = "48-52", .postalCode = "28013", .municipality = "Madrid"});
    EXPECT_EQ(range.number, "48-52");
    EXPECT_EQ(range.verdict, Verdict::Correct); // the first one counts
}

TEST_F(AddressVerdicts, KilometreIsNotAHouseNumber) {
    const JudgedAddress judged =
        judge({.street = "Ctra. Toledo km 12,5", .postalCode = "28014", .municipality = "Madrid"});
    EXPECT_EQ(judged.verdict, Verdict::Correct);
    EXPECT_EQ(judged.number, "KM 12,5");
}

TEST_F(AddressVerdicts, NameThatEndsLikeANumberIsTakenAsItIsWritten) {
    addStreets({{"28000090", "FINCA SAUCEDA KM 6", "", "28001"},
                {"28000091", "FINCA SAUCEDA", "", "28013"},
                {"28000092", "SECTOR 3", "CL", "28013"}});
    for (const char* number : {"", "S/N"}) {
        const JudgedAddress judged =
            judge({.street = "Finca Sauceda km 6", .number = number, .municipality = "MADRID"});
        EXPECT_EQ(verdictName(judged.verdict), "COMPLETADA") << number;
        EXPECT_EQ(judged.street, "FINCA SAUCEDA KM 6");
        EXPECT_EQ(judged.postalCode, "28001");
    }
    EXPECT_EQ(judge({.street = "Finca Sauceda km 7", .municipality = "MADRID"}).street, "FINCA SAUCEDA");
    const JudgedAddress judged = judge({.type = "CL", .street = "SECTOR 3", .municipality = "MADRID"});
    EXPECT_EQ(judged.street, "SECTOR 3");
    EXPECT_EQ(judged.number, "");
    EXPECT_EQ(judged.postalCode, "28013");
}

TEST_F(AddressVerdicts, LostZeroOfAPostalCodeIsCorrected) {
    const JudgedAddress judged = judge({.street = "Avda. Maisonnave",
                                        .number = "1",
                                        .postalCode = "3001",
                                        .municipality = "Alicante/Alacant"});
    EXPECT_EQ(judged.verdict, Verdict::Corrected);
    EXPECT_EQ(judged.postalCode, "03001");
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
