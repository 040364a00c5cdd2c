#include "address/AddressResolution.h"

#include "controller/StreetTables.h"
#include "dbase/error.h"

namespace {

using namespace ambrel;
using namespace postal_tests;
using ambrel::test::ansi;

class ResolveAddress : public StreetTables {
protected:
    void SetUp() override {
        addMunicipalities(
            {{"15031", "15500", "CORUÑA, LA", "N", "0"}, {"03090", "03500", "ALFAZ (L')", "S", "9"}});
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

TEST_F(ResolveAddress, WithoutTypeTheFirstRowOfTheNameIsTaken) {
    const ResolvedAddress address = resolve("MADRID", "", "MAYOR", "5");
    EXPECT_TRUE(address.isSettled());
    EXPECT_EQ(address.streetType, "AV");
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
    EXPECT_EQ(address.postalCode, "28013");
    EXPECT_EQ(address.streetType, "CL");
}

TEST_F(ResolveAddress, BeginningOfANameComesToTheRowOfTheType) {
    const ResolvedAddress address = resolve("MADRID", "CL", "MAY", "101");
    EXPECT_EQ(address.street, "MAYOR");
    EXPECT_EQ(address.streetType, "CL");
    EXPECT_EQ(address.postalCode, "28013") << "the row of type AV stands before";
}

TEST_F(ResolveAddress, NumberThatIsNoNumberIsNotSettled) {
    EXPECT_EQ(resolve("MADRID", "CL", "MAYOR", "S/N").unsettled, Parts{AddressPart::Number});
    EXPECT_EQ(resolve("MADRID", "CL", "MAYOR", "").unsettled, Parts{AddressPart::Number});
}

TEST_F(ResolveAddress, SignsThatCompleteNothingMayStandInANameOrBehindIt) {
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
