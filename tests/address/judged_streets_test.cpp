// The street of a judged address: one that does not exist is not taken for another, and what its type and its
// number say counts.
#include <gtest/gtest.h>

#include "PostalVerdicts.h"

namespace postal_tests {
namespace {

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

TEST_F(AddressVerdicts, CodeGivenWithAnUnknownStreetIsKept) {
    const JudgedAddress judged = judge(
        {.street = "Calle Inexistente", .number = "3", .postalCode = "28001", .municipality = "Aranjuez"});
    EXPECT_FALSE(isSettled(judged.verdict));
    EXPECT_EQ(judged.postalCode, "28001");
}

TEST_F(AddressVerdicts, TextThatIsNotUnderstoodSpeaksAgainstACorrection) {
    const auto confidence = [&](const char* line) { return judge({.line = line}).confidence; };
    EXPECT_LT(confidence("Calle Velasqez 12, portal rojo, 28001 Madrid"),
              confidence("Calle Velasqez 12, 28001 Madrid"));
    EXPECT_EQ(confidence("Calle Velázquez 12, portal rojo, 28001 Madrid"), 1);
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

TEST_F(AddressVerdicts, PostalCodeInTheStreetsColumnSpeaksWhereItsOwnColumnIsEmpty) {
    for (const char* street :
         {"Calle Velázquez 5, 28013 Madrid", "Calle Velázquez 5 28013", "Calle Velázquez 5, 2º B, 28013",
          "Calle Velázquez 5 C.P. 28013", "Calle Velázquez 5 2º piso 28013 Madrid"}) {
        EXPECT_EQ(verdict({.street = street, .municipality = "Madrid"}), "CODIGO_DISTINTO") << street;
    }
    const JudgedAddress same =
        judge({.street = "Calle Velázquez 5, 2º B, 28001 Madrid", .municipality = "Madrid"});
    EXPECT_TRUE(isSettled(same.verdict));
    EXPECT_EQ(same.postalCode, "28001");
    EXPECT_EQ(same.number, "5");
    // The code's own column decides, and a box is not an address's.
    for (const char* street : {"Calle Velázquez 5, 28013 Madrid", "Calle Velázquez 5, apartado 28013"}) {
        EXPECT_TRUE(
            isSettled(judge({.street = street, .postalCode = "28001", .municipality = "Madrid"}).verdict))
            << street;
    }
    EXPECT_TRUE(
        isSettled(judge({.street = "Calle Velázquez 5, apartado 28013", .municipality = "Madrid"}).verdict));
}

TEST_F(AddressVerdicts, AbbreviationThatTheTablesHaveForAnotherTypeStandsForBoth) {
    for (const char* type : {"Pl.", "PL", "pl"}) {
        const auto judged = [&](const char* code) {
            return judge({.type = type,
                          .street = "Constitución",
                          .number = "3",
                          .postalCode = code,
                          .municipality = "Madrid"});
        };
        EXPECT_EQ(judged("28013").verdict, Verdict::Correct) << type;
        EXPECT_EQ(judged("28013").type, "PZ") << type;
        EXPECT_EQ(judged("28001").verdict, Verdict::OtherCode)
            << type << ": it is not the avenue of that code";
        EXPECT_EQ(judged("28001").postalCode, "28013") << type;
    }
    EXPECT_EQ(judge({.line = "Pl. Constitución 3, 28001 Madrid"}).verdict, Verdict::OtherCode);
    EXPECT_EQ(judge({.line = "Plaza Almendro 3, 28014 Madrid"}).changes,
              (std::vector<AddressChange>{{JudgedPart::Type, "Plaza", "PL"}}))
        << "an estate is no square";
}

TEST_F(AddressVerdicts, TypeWithARaisedLetterIsAnAbbreviationAndNotTheTablesCode) {
    addStreetTypes({{"CM", "CAMINO", "CAMI"}, {"CO", "CONCEJO", "CONSELL"}});
    addStreets({{"28000601", "ERAS", "CL", "28001"}, {"28000602", "ERAS", "CM", "28013"}});
    for (const auto& [type, street] : {std::pair("", "Cº Eras"), {"Cº", "Eras"}, {"", "Cº. de las Eras"}}) {
        const ambrel::GivenAddress given{
            .type = type, .street = street, .number = "5", .municipality = "Madrid"};
        EXPECT_EQ(judge(given).postalCode, "28013") << street;
    }
    EXPECT_EQ(verdict({.street = "Cº Eras", .number = "5", .postalCode = "28001", .municipality = "Madrid"}),
              "CODIGO_DISTINTO");
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

} // namespace
} // namespace postal_tests
