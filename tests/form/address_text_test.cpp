// An address resolved without boxes, in QString texts.
#include "form/AddressText.h"

#include "data/PostalTables.h"

namespace {

using namespace postal_tests;

class AddressText : public PostalTables {
protected:
    void SetUp() override {
        addMunicipalities(
            {{"15031", "15500", "CORUÑA, LA", "N", "0"}, {"15031", "15501", "CORUÑA, LA", "N", "0"}});
        addStreets(
            {{.codigo1 = "30", .via = "ESPAÑA", .tipo = "AV", .codPostal = "15501", .provincia = "15"}});
    }
};

TEST_F(AddressText, IsTakenAndAnsweredAsWindowsHaveIt) {
    const ambrel::ResolvedAddressText address = ambrel::resolveAddressText(
        "DB", {.municipality = "coruña, la", .streetType = "av", .street = "españa", .number = "3"});
    EXPECT_TRUE(address.isExact());
    EXPECT_EQ(address.municipality, QStringLiteral("CORUÑA, LA"));
    EXPECT_EQ(address.street, QStringLiteral("ESPAÑA"));
    EXPECT_EQ(address.streetType, QStringLiteral("AV"));
    EXPECT_EQ(address.ineCode, QStringLiteral("15031"));
    EXPECT_EQ(address.postalCode, QStringLiteral("15501"));
}

TEST_F(AddressText, ThatTheTablesCannotHoldMatchesNothing) {
    const ambrel::ResolvedAddressText address =
        ambrel::resolveAddressText("DB", {.municipality = "CORUÑA, LA", .street = "Łódzka"});
    EXPECT_EQ(address.unsettled, std::vector{ambrel::AddressPart::Street});
    EXPECT_EQ(address.street, QStringLiteral("Łódzka"));
}

} // namespace
