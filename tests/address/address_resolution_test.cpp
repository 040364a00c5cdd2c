// A whole address resolved without boxes.
#include "address/AddressResolution.h"

#include "controller/StreetTables.h"
#include "dbase/system/error.h"

namespace {

using namespace ambrel;
using namespace postal_tests;
using ambrel::test::ansi;

class ResolveAddress : public StreetTables {
protected:
    void SetUp() override {
        addMunicipalities({{"28079", "28004", "MADRID", "N", "0"},
                           {"28079", "28013", "MADRID", "N", "0"},
                           {"28079", "28022", "MADRID", "N", "0"},
                           {"15031", "15500", "CORUÑA, LA", "N", "0"},
                           {"15031", "15501", "CORUÑA, LA", "N", "0"},
                           {"03090", "03500", "ALFAZ (L')", "S", "9"}});
        addStreets(
            {{"10", "GRAN VIA", "CL", "28013", {1, 41}, {2, 48}},
             {"11", "GRAN VIA", "CL", "28004", {43, 9999}, {50, 9998}},
             {"12", "MAYOR", "AV", "28022"},
             {"13", "MAYOR", "CL", "28013", {1, 99}, {2, 98}},
             {.codigo1 = "20", .via = "REAL", .tipo = "CL", .codPostal = "28430", .capital = "9"},
             {.codigo1 = "21", .via = "SIERRA", .tipo = "CL", .codPostal = "28491", .capital = "9"},
             {.codigo1 = "30", .via = "DALIA, LA", .tipo = "CL", .codPostal = "15501", .provincia = "15"}});
    }

    static ResolvedAddress resolve(const std::string& municipality, const std::string& type,
                                   const std::string& street, const std::string& number) {
        return resolveAddress("DB", {ansi(municipality), ansi(type), ansi(street), number});
    }
};

using Parts = std::vector<AddressPart>;

TEST_F(ResolveAddress, SettlesTheWholeAddress) {
    const ResolvedAddress address = resolve("MADRID", "CL", "GRAN VIA", "45");
    EXPECT_TRUE(address.isSettled());
    EXPECT_EQ(address.municipality, "MADRID");
    EXPECT_EQ(address.ineCode, "28079");
    EXPECT_EQ(address.street, "GRAN VIA");
    EXPECT_EQ(address.streetType, "CL");
    EXPECT_EQ(address.postalCode, "28004");
}

TEST_F(ResolveAddress, TextsInUtf8AreAnsweredInUtf8) {
    const ResolvedAddress address = resolveAddressUtf8(
        "DB", {.municipality = "Coruña, La", .streetType = "cl", .street = "dalia, la", .number = "3"});
    EXPECT_TRUE(address.isExact());
    EXPECT_EQ(address.municipality, "CORUÑA, LA");
    EXPECT_EQ(address.street, "DALIA, LA");
    EXPECT_EQ(address.postalCode, "15501");
    EXPECT_EQ(resolveAddressUtf8("DB", {.municipality = "CORUÑ", .street = "DAL"}).municipality,
              "CORUÑA, LA");
}

TEST_F(ResolveAddress, ATextInUtf8ThatTheTablesCannotHoldMatchesNothingAndIsAnsweredAsTyped) {
    const ResolvedAddress street = resolveAddressUtf8(
        "DB", {.municipality = "MADRID", .streetType = "CL", .street = "Łódzka", .number = "1"});
    EXPECT_EQ(street.unsettled, std::vector{AddressPart::Street});
    EXPECT_EQ(street.street, "Łódzka");
    const ResolvedAddress municipality =
        resolveAddressUtf8("DB", {.municipality = "東京", .street = "Łódzka"});
    EXPECT_EQ(municipality.unsettled, std::vector{AddressPart::Municipality});
    EXPECT_EQ(municipality.municipality, "東京");
    EXPECT_EQ(municipality.street, "") << "was not tried";
    const TypedAddress number{
        .municipality = "MADRID", .streetType = "CL", .street = "GRAN VIA", .number = "Ⅳ"};
    EXPECT_EQ(resolveAddressUtf8("DB", number).unsettled, std::vector{AddressPart::Number});
    TypedAddress province{.municipality = "MADRID", .streetType = "CL", .street = "MAYOR", .number = "5"};
    province.province = "東京";
    EXPECT_EQ(resolveAddressUtf8("DB", province).unsettled, std::vector{AddressPart::Municipality});
}

TEST_F(ResolveAddress, CandidatesInUtf8AreNamedInUtf8) {
    addMunicipalities({{"15032", "15510", "NARÓN", "S", "9"}, {"03091", "03510", "NARÓN", "S", "9"}});
    const ResolvedAddress address = resolveAddressUtf8("DB", {.municipality = "narón", .street = "MAYOR"});
    ASSERT_EQ(address.candidates.size(), 2u);
    EXPECT_EQ(address.candidates[1].name, "NARÓN");
    EXPECT_EQ(address.candidates[1].ineCode, "15032");
}

TEST_F(ResolveAddress, BeginningsAreCompletedAsInTheBoxes) {
    const ResolvedAddress address = resolve("madr", "cl", "gran", "2");
    EXPECT_TRUE(address.isSettled());
    EXPECT_EQ(address.municipality, "MADRID");
    EXPECT_EQ(address.street, "GRAN VIA");
    EXPECT_EQ(address.postalCode, "28013");
}

TEST_F(ResolveAddress, TypeChoosesAmongStreetsOfOneName) {
    EXPECT_EQ(resolve("MADRID", "CL", "MAYOR", "5").postalCode, "28013");
    EXPECT_EQ(resolve("MADRID", "AV", "MAYOR", "5").postalCode, "28022");
    EXPECT_EQ(resolve("MADRID", "AV", "MAYOR", "5").streetType, "AV");
}

TEST_F(ResolveAddress, WithoutTypeStreetsOfOneNameAndSeveralCodesAreNotSettled) {
    const ResolvedAddress address = resolve("MADRID", "", "MAYOR", "5");
    EXPECT_EQ(address.unsettled, Parts{AddressPart::Number});
    EXPECT_EQ(address.numberProblem, NumberProblem::SeveralCodes);
    EXPECT_EQ(resolve("MADRID", "", "MAYOR", "101").postalCode, "28022") << "only the avenue goes that far";
    EXPECT_TRUE(resolve("MADRID", "", "MAYOR", "101").isSettled());
}

TEST_F(ResolveAddress, WhatIsNotAsTypedIsSaid) {
    EXPECT_EQ(resolve("madrid ", "cl", " gran  via", "2").completed, Parts{});
    EXPECT_EQ(resolve("MADR", "", "GRAN", "2").completed,
              (Parts{AddressPart::Municipality, AddressPart::Street, AddressPart::StreetType}));
    EXPECT_EQ(resolve("MADRID", "AV", "GRAN VIA", "2").completed, Parts{AddressPart::StreetType});
}

TEST_F(ResolveAddress, UnknownMunicipalityIsNamedAndNothingElseTried) {
    const ResolvedAddress address = resolve("MADRIZ", "CL", "GRAN VIA", "45");
    EXPECT_EQ(address.unsettled, Parts{AddressPart::Municipality});
    EXPECT_EQ(address.municipality, "MADRIZ");
    EXPECT_EQ(address.ineCode, "");
    EXPECT_EQ(address.postalCode, "");
}

TEST_F(ResolveAddress, UnknownStreetIsNamed) {
    const ResolvedAddress address = resolve("MADRID", "CL", "GRAN VIE", "45");
    EXPECT_EQ(address.unsettled, Parts{AddressPart::Street});
    EXPECT_EQ(address.ineCode, "28079");
    EXPECT_EQ(address.street, "GRAN VIE");
    EXPECT_EQ(address.postalCode, "");
}

TEST_F(ResolveAddress, MunicipalityWithOneCodeKeepsItForAnUnknownStreet) {
    const ResolvedAddress address = resolve("ALPEDRETE", "CL", "NINGUNA", "1");
    EXPECT_EQ(address.unsettled, Parts{AddressPart::Street});
    EXPECT_EQ(address.postalCode, "28430");
}

TEST_F(ResolveAddress, InAMunicipalityWithOneCodeStreetsOfItsNeighboursAreUnknown) {
    EXPECT_TRUE(resolve("ALPEDRETE", "CL", "REAL", "1").isSettled());
    EXPECT_EQ(resolve("ALPEDRETE", "CL", "SIERRA", "1").unsettled, Parts{AddressPart::Street});
}

TEST_F(ResolveAddress, NumberOutsideAllRangesKeepsTheCodeOfTheStreet) {
    const ResolvedAddress address = resolve("MADRID", "CL", "MAYOR", "101");
    EXPECT_EQ(address.unsettled, Parts{AddressPart::Number});
    EXPECT_EQ(address.numberProblem, NumberProblem::NoStretch);
    EXPECT_EQ(address.postalCode, "28013");
    EXPECT_EQ(address.streetType, "CL");
}

TEST_F(ResolveAddress, BeginningOfANameComesToTheRowOfTheType) {
    const ResolvedAddress address = resolve("MADRID", "CL", "MAY", "101");
    EXPECT_EQ(address.street, "MAYOR");
    EXPECT_EQ(address.streetType, "CL");
    EXPECT_EQ(address.postalCode, "28013") << "the row of type AV stands before";
}

TEST_F(ResolveAddress, OnlyWholeNamesAreExact) {
    EXPECT_TRUE(resolve("madrid", "CL", "gran via", "2").isExact());
    EXPECT_TRUE(resolve("madrid", "", "gran via", "2").isExact()) << "a type that was left out";
    EXPECT_FALSE(resolve("madr", "CL", "gran via", "2").isExact());
    EXPECT_FALSE(resolve("madrid", "CL", "gran", "2").isExact());
    EXPECT_FALSE(resolve("madrid", "CL", "gran via", "uno").isExact());
}

TEST_F(ResolveAddress, SeveralMunicipalitiesOfOneNameAreCandidates) {
    addMunicipalities({{"17105", "17830", "MIERES"}, {"33037", "33600", "MIERES"}});
    addProvinces({{"017", "GIRONA/GERONA"}, {"033", "ASTURIAS"}});
    const auto mieres = [](const std::string& province, const std::string& ineCode) {
        return resolveAddress("DB", {.municipality = "mieres",
                                     .streetType = "",
                                     .street = "X",
                                     .number = "1",
                                     .province = province,
                                     .ineCode = ineCode});
    };
    const ResolvedAddress open = mieres("", "");
    EXPECT_EQ(open.unsettled, Parts{AddressPart::Municipality});
    ASSERT_EQ(open.candidates.size(), 2u);
    EXPECT_EQ(open.candidates[0].ineCode, "17105");
    EXPECT_EQ(open.candidates[1].province, "33");
    for (const char* girona : {"17", "gerona", "GIRONA", "Girona/Gerona"}) {
        EXPECT_EQ(mieres(girona, "").ineCode, "17105") << girona;
    }
    EXPECT_EQ(mieres("", "33037").ineCode, "33037");
    EXPECT_EQ(mieres("17", "33037").unsettled, Parts{AddressPart::Municipality});
    EXPECT_EQ(mieres("17", "33037").candidates.size(), 2u);
    EXPECT_EQ(mieres("GIRO", "").unsettled, Parts{AddressPart::Municipality});
}

TEST_F(ResolveAddress, NumbersAreReadAsPeopleWriteThem) {
    for (const char* number : {"45", "45 BIS", "45B", "45-47", "n\xBA 45", "45, 3\xBA"}) {
        EXPECT_EQ(resolve("MADRID", "CL", "GRAN VIA", number).postalCode, "28004") << number;
    }
}

TEST_F(ResolveAddress, WithoutNumberOnlyAStreetOfOneCodeIsSettled) {
    for (const char* none : {"S/N", ""}) {
        EXPECT_TRUE(resolve("MADRID", "CL", "MAYOR", none).isSettled());
        EXPECT_EQ(resolve("MADRID", "CL", "GRAN VIA", none).unsettled, Parts{AddressPart::Number});
        EXPECT_EQ(resolve("MADRID", "CL", "GRAN VIA", none).numberProblem, NumberProblem::NoNumber);
    }
}

TEST_F(ResolveAddress, NumberThatIsNoNumberIsNotSettled) {
    const ResolvedAddress address = resolve("MADRID", "CL", "MAYOR", "uno");
    EXPECT_EQ(address.unsettled, Parts{AddressPart::Number});
    EXPECT_EQ(address.numberProblem, NumberProblem::NotANumber);
}

TEST_F(ResolveAddress, ANumberThatTheTablesCannotHoldIsNotTakenForNone) {
    const ResolvedAddress address = resolveAddressUtf8(
        "DB", {.municipality = "Madrid", .streetType = "CL", .street = "Mayor", .number = "５００"});
    EXPECT_FALSE(address.isSettled());
    EXPECT_EQ(address.numberProblem, NumberProblem::NotANumber);
}

TEST_F(ResolveAddress, SignsThatCompleteNothingMayStandInANameOrAfterIt) {
    EXPECT_EQ(resolve("CORUÑA, LA", "CL", "DALIA, LA", "1").postalCode, "15501");
    EXPECT_EQ(resolve("ALFAZ (L')", "", "X", "1").ineCode, "03090");
    EXPECT_EQ(resolve("ALFAZ (", "", "X", "1").unsettled, Parts{AddressPart::Municipality})
        << "the bracket overwrites what the Z had completed";
}

TEST_F(ResolveAddress, CommaCompletesAStreetButNoMunicipality) {
    EXPECT_EQ(resolve("CORUÑA", "CL", "DALIA,", "1").street, "DALIA, LA");
    EXPECT_EQ(resolve("CORUÑA,", "CL", "DALIA", "1").unsettled, Parts{AddressPart::Municipality});
}

TEST_F(ResolveAddress, EmptyTextsAreNotSettled) {
    EXPECT_EQ(resolve("", "", "", "").unsettled, Parts{AddressPart::Municipality});
    EXPECT_EQ(resolve("MADRID", "", "", "").unsettled, Parts{AddressPart::Street});
}

TEST_F(ResolveAddress, MissingFolderRaises) {
    EXPECT_THROW(static_cast<void>(resolveAddress("NO EXISTE", {})), dbase::Error);
}

} // namespace
