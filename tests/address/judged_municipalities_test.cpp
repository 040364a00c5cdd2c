// The municipality of a judged address: found by name, code or street, and never guessed.
#include <gtest/gtest.h>

#include "PostalVerdicts.h"

namespace postal_tests {
namespace {

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

TEST_F(AddressVerdicts, ProvinceThatIsNoneIsCorrected) {
    const JudgedAddress judged = judge({.street = "Calle Mayor",
                                        .number = "1",
                                        .postalCode = "28300",
                                        .municipality = "Aranjuez",
                                        .province = "Xyzzy"});
    EXPECT_EQ(judged.verdict, Verdict::Corrected);
    EXPECT_EQ(judged.changes, (std::vector<AddressChange>{{JudgedPart::Province, "Xyzzy", "28"}}));
}

TEST_F(AddressVerdicts, CapitalAfterATownIsItsProvinceThoughOnlyTheCapitalHasTheStreet) {
    for (const char* line :
         {"Calle Velázquez 5, Aranjuez, Madrid", "Calle Velázquez 5 Aranjuez Madrid",
          "Calle Velázquez 5, Aranjuez - Madrid", "Calle Velázquez 5, Aranjués, Madrid",
          "Calle Velázquez 5, Villaperdida, Madrid", "Calle Velázquez 5, Madrid, Aranjuez",
          "Aranjuez, Madrid, Calle Velázquez 5", "Aranjuez, Calle Velázquez 5, Madrid",
          "Calle Velázquez 5 (Aranjuez), Madrid", "Calle Velázquez 5, esquina Goya Aranjuez, Madrid",
          "Calle Velázquez 5, Urb. El Pinar Aranjuez, Madrid"}) {
        const JudgedAddress judged = judge({.line = line});
        EXPECT_FALSE(isSettled(judged.verdict)) << line;
        EXPECT_EQ(judged.postalCode, "") << line;
        EXPECT_FALSE(judged.alternatives.empty()) << line;
    }
    for (const char* line :
         {"Avenida Maisonnave 5, Alicante/Alacant, Alicante/Alacant", "Calle Velázquez 5, Madrid, Madrid",
          "Calle Velázquez 5, Madrid (Madrid)", "Calle Velázquez 5, bajo, Madrid",
          "Calle Velázquez 5, Edificio Sol, Madrid", "Calle Velázquez 5, Aranjuez, 28001 Madrid",
          "Calle Mayor 5, Aranjuez, Madrid"}) {
        EXPECT_TRUE(isSettled(judge({.line = line}).verdict)) << line;
    }
    for (const char* street : {"Calle Velázquez 5, Aranjuez", "Calle Velázquez 5 (Aranjuez)"}) {
        EXPECT_FALSE(isSettled(judge({.street = street, .municipality = "Madrid"}).verdict)) << street;
    }
    EXPECT_TRUE(isSettled(judge({.street = "Calle Velázquez 5, bajo", .municipality = "Madrid"}).verdict));
}

TEST_F(AddressVerdicts, NumberThatATownsStreetLacksLeadsToNoOtherTown) {
    addStreets({{"28000801", "CID", "CL", "28300", {1, 9}, {2, 8}, "28", "9", "28013"},
                {"28000802", "CID", "CL", "28001"}});
    EXPECT_EQ(verdict({.line = "Calle Cid 50, Aranjuez, Madrid"}), "NUMERO_FUERA");
}

TEST_F(AddressVerdicts, CodeOrProvinceInTheColumnOfTheMunicipalityIsUnderstood) {
    for (const char* municipality :
         {"28300 Aranjuez", "Aranjuez 28300", "C.P. 28300 Aranjuez", "E-28300 Aranjuez",
          "Código Postal: 28300 - Aranjuez", "Aranjuez, C.P. 28300", "ES-28300 Aranjuez (Madrid)",
          "Cód. Postal 28300, Aranjuez"}) {
        EXPECT_EQ(verdict({.street = "Calle Mayor", .number = "1", .municipality = municipality}), "CORRECTA")
            << municipality;
    }
    EXPECT_EQ(verdict({.street = "Calle Mayor",
                       .number = "1",
                       .postalCode = "28300",
                       .municipality = "Aranjuez (Madrid)"}),
              "CORRECTA");
}

} // namespace
} // namespace postal_tests
