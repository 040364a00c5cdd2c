// Addresses written with street names that the official directory's table has only shortened.
#include <gtest/gtest.h>

#include "PostalVerdicts.h"
#include "address/AddressResolution.h"
#include "support/Tables.h"

namespace postal_tests {
namespace {

using ambrel::AddressPart;
using ambrel::ResolvedAddress;

const std::string upper = "RINCON DE LOS ALMENDROS FLORIDOS DE LA UMBRIA ALTA";
const std::string lower = "RINCON DE LOS ALMENDROS FLORIDOS DE LA UMBRIA BAJA";
const std::string chapel = "CUESTA DE LA ERMITA DE NUESTRA SEÑORA DEL MONTE";
const std::string chapelElsewhere = "CUESTA DE LA ERMITA DE NUESTRA SEÑORA DEL MONDO";

/// The streets of PostalVerdicts, and some whose names were shortened when they were loaded. Of the first
/// two the first 45 letters are the same, so that each ends in its official key.
class ShortenedStreets : public PostalVerdicts {
protected:
    ShortenedStreets() {
        addStreets(
            {{"28000030", "RINCON DE LOS ALMENDROS FLORIDOS DE LA (1201)", "CL", "28001"},
             {"28000031", "RINCON DE LOS ALMENDROS FLORIDOS DE LA (1202)", "CL", "28013"},
             {"28000032", "CUESTA DE LA ERMITA DE NUESTRA SRA DEL MONTE", "CL", "28013", {1, 99}, {2, 98}},
             {"28000033",
              "CUESTA DE LA ERMITA DE NUESTRA SRA DEL MONTE",
              "CL",
              "28014",
              {101, 9999},
              {100, 9998}},
             {"99000001", "CUESTA DE LA ERMITA DE NUESTRA SRA DEL MONTE", "PZ", "28001"}});
    }

    /// Keys of POSTAL and the names that their rows came with.
    void addProvenance(const std::vector<std::pair<std::string, std::string>>& names) {
        std::vector<ambrel::test::Row> rows;
        for (const auto& [key, name] : names) {
            rows.push_back({key, "INE", "T", name});
        }
        createTable(ambrel::test::defineTable(
                        "PROCEDEN", {"CODIGO1 C8", "FUENTE C3", "ABREVIADO L", "NOMBRE C50"}, {"CODIGO1"}),
                    rows);
    }
    void addProvenance() {
        addProvenance({{"28000030", upper}, {"28000031", lower}, {"28000032", chapel}, {"28000033", chapel}});
    }

    static ResolvedAddress resolve(const std::string& street, const std::string& number) {
        return ambrel::resolveAddressUtf8(
            "DB", {.municipality = "Madrid", .streetType = "CL", .street = street, .number = number});
    }
};

TEST_F(ShortenedStreets, WholeNameSettlesToTheStreetThatWasShortenedFromIt) {
    addProvenance();
    const JudgedAddress judged =
        judge({.type = "CL", .street = lower, .number = "3", .municipality = "Madrid"});
    EXPECT_EQ(judged.verdict, Verdict::Corrected);
    EXPECT_EQ(judged.street, "RINCON DE LOS ALMENDROS FLORIDOS DE LA (1202)");
    EXPECT_EQ(judged.postalCode, "28013");
    EXPECT_EQ(judged.key, "28000031");
    EXPECT_EQ(judge({.type = "CL", .street = upper, .number = "3", .municipality = "Madrid"}).postalCode,
              "28001");
}

TEST_F(ShortenedStreets, TheChangeOfTheNameIsReported) {
    addProvenance();
    const JudgedAddress judged = judge({.type = "CL",
                                        .street = upper,
                                        .number = "3",
                                        .postalCode = "28001",
                                        .municipality = "MADRID",
                                        .province = "28"});
    EXPECT_EQ(judged.changes,
              (std::vector<AddressChange>{
                  {JudgedPart::Street, upper, "RINCON DE LOS ALMENDROS FLORIDOS DE LA (1201)"}}));
}

TEST_F(ShortenedStreets, TheNumberChoosesAmongTheRowsOfTheStreet) {
    addProvenance();
    for (const auto& [number, code] : {std::pair("5", "28013"), std::pair("105", "28014")}) {
        const JudgedAddress judged = judge({.street = "Calle Cuesta de la Ermita de Nuestra Señora del Monte",
                                            .number = number,
                                            .municipality = "Madrid"});
        EXPECT_EQ(judged.postalCode, code);
        EXPECT_TRUE(isSettled(judged.verdict)) << number;
    }
}

TEST_F(ShortenedStreets, NameThatDiffersAfterTheCutIsNotTakenForTheStreet) {
    addProvenance();
    const JudgedAddress judged =
        judge({.type = "CL", .street = lower + "S", .number = "3", .municipality = "Madrid"});
    EXPECT_FALSE(isSettled(judged.verdict));
    EXPECT_FALSE(resolve(chapelElsewhere, "5").isSettled());
}

TEST_F(ShortenedStreets, WithoutAKnownWholeNameStreetsThatShareTheBeginningStayOpen) {
    for (const std::string& street : {upper, lower}) {
        EXPECT_FALSE(isSettled(
            judge({.type = "CL", .street = street, .number = "3", .municipality = "Madrid"}).verdict));
    }
    EXPECT_FALSE(resolve(upper, "3").isSettled());
}

TEST_F(ShortenedStreets, StreetThatTheUsersHaveRenamedIsNotFoundByItsFormerName) {
    addProvenance({{"28000007", upper}}); // VELAZQUEZ now
    EXPECT_FALSE(
        isSettled(judge({.type = "CL", .street = upper, .number = "3", .municipality = "Madrid"}).verdict));
    EXPECT_FALSE(resolve(upper, "3").isSettled());
}

TEST_F(ShortenedStreets, StreetOfAnotherMunicipalityIsNotTaken) {
    addProvenance();
    EXPECT_FALSE(
        isSettled(judge({.type = "CL", .street = upper, .number = "3", .municipality = "Aranjuez"}).verdict));
}

TEST_F(ShortenedStreets, WholeNameIsResolvedWithoutBoxesToo) {
    addProvenance();
    const ResolvedAddress resolved = resolve(lower, "3");
    EXPECT_TRUE(resolved.isSettled());
    EXPECT_FALSE(resolved.isExact());
    EXPECT_EQ(resolved.completed, std::vector{AddressPart::Street});
    EXPECT_EQ(resolved.street, "RINCON DE LOS ALMENDROS FLORIDOS DE LA (1202)");
    EXPECT_EQ(resolved.postalCode, "28013");
}

TEST_F(ShortenedStreets, ProvenanceOfAnEarlierVersionKnowsNoNames) {
    createTable(
        ambrel::test::defineTable("PROCEDEN", {"CODIGO1 C8", "FUENTE C3", "ABREVIADO L"}, {"CODIGO1"}),
        {{"28000030", "INE", "T"}});
    EXPECT_FALSE(resolve(upper, "3").isSettled());
}

} // namespace
} // namespace postal_tests
