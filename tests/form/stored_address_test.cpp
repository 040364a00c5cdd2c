// A stored address that is shown: found again without a question, and unchanged when a user only passes
// through.
#include <QTest>

#include "form/BoundCustomer.h"
#include "form/BoxesTest.h"

namespace {

class StoredAddress : public postal_tests::BoxesTest {
protected:
    void show(const QString& municipality, const QString& province, const QString& type,
              const QString& street, const QString& number, const QString& postalCode) {
        open();
        box(Box::Municipality).setText(municipality);
        box(Box::Province).setText(province);
        box(Box::StreetType).setText(type);
        box(Box::Street).setText(street);
        box(Box::Number).setText(number);
        box(Box::PostalCode).setText(postalCode);
        address->takeStored();
    }
    void passThrough() {
        enter(Box::Municipality);
        for (int count = 0; count < 6; ++count) {
            press(Qt::Key_Tab);
        }
    }
};

TEST_F(StoredAddress, IsValidatedWithoutChangingItsTexts) {
    show("MADRID", "MADRID", "CL", "ALCALA", "212 bis", "28027");
    EXPECT_EQ(tag(Box::Municipality), 28079);
    EXPECT_EQ(tag(Box::Street), 28000001);
    for (const Box one : {Box::Province, Box::StreetType, Box::Number, Box::PostalCode}) {
        EXPECT_EQ(state(one), State::Validated) << static_cast<int>(one);
    }
}

TEST_F(StoredAddress, AMunicipalityOfAnotherProvinceIsNotCalledUnknown) {
    show("HARO", "MADRID", "", "", "", "26200");
    EXPECT_EQ(state(Box::Municipality), State::NotValidated);
    EXPECT_EQ(address->reason(Box::Municipality), "No hay ningún municipio con este nombre en la provincia.");
    fill(Box::Municipality, "haro");
    EXPECT_EQ(state(Box::Municipality), State::Validated);
    EXPECT_EQ(text(Box::Province), "RIOJA, LA");
}

TEST_F(StoredAddress, GoingThroughItsBoxesChangesNothing) {
    show("MIERES", "ASTURIAS", "CL", "NINGUNA", "5", "33610");
    ASSERT_EQ(tag(Box::Municipality), 33037);
    passThrough();
    EXPECT_EQ(tag(Box::Municipality), 33037);
    EXPECT_EQ(text(Box::Province), "ASTURIAS");
    EXPECT_EQ(text(Box::PostalCode), "33610");
    show("MADRID", "MADRID", "CL", "ALCALA", "", "28027");
    passThrough();
    EXPECT_EQ(text(Box::PostalCode), "28027");
}

TEST_F(StoredAddress, OfNamesakesTheOneInItsProvinceIsMeant) {
    show("MIERES", "ASTURIAS", "", "", "", "");
    EXPECT_EQ(tag(Box::Municipality), 33037);
    show("MIERES", "GIRONA", "", "", "", "33600");
    EXPECT_EQ(tag(Box::Municipality), 17105);
}

TEST_F(StoredAddress, WithoutAProvinceTheOneThatHasTheCodeIsMeant) {
    show("MIERES", "", "", "", "", "33610");
    EXPECT_EQ(tag(Box::Municipality), 33037);
}

TEST_F(StoredAddress, IfNoneOrSeveralRemainItIsNotValidatedAndNobodyIsAsked) {
    show("MIERES", "", "", "", "", "");
    EXPECT_EQ(tag(Box::Municipality), 0);
    passThrough();
    show("MIERES", "MADRID", "", "", "", "33600");
    EXPECT_EQ(tag(Box::Municipality), 0);
    passThrough();
    EXPECT_EQ(text(Box::Province), "MADRID");
}

TEST_F(StoredAddress, AStreetOfTheNextVillageIsNotItsOwn) {
    show("ALTA", "RIOJA, LA", "CL", "MAYOR", "5", "26510");
    EXPECT_EQ(tag(Box::Street), 26000002);
    EXPECT_EQ(state(Box::PostalCode), State::NotValidated);
}

TEST_F(StoredAddress, ARowOfTheHostsTableIsTakenWhenItIsShownAndWrittenWhenItIsTyped) {
    storeCustomer("HARO", "26200");
    postal_tests::BoundCustomer customer(boxes);
    open();
    customer.showIn(*address);
    EXPECT_EQ(tag(Box::Municipality), 26071);
    EXPECT_EQ(state(Box::PostalCode), State::Validated);
    fill(Box::Municipality, "aran");
    EXPECT_EQ(customer.municipality(), "ARANJUEZ");
    EXPECT_EQ(customer.postalCode(), "28300");
    EXPECT_TRUE(customer.record.hasChanges());
    customer.table.cancel();
}

TEST_F(StoredAddress, TypingIntoARowThatSomebodyElseHasChangesNothing) {
    storeCustomer("MIERES", "33610");
    postal_tests::BoundCustomer customer(boxes);
    open();
    customer.showIn(*address);
    ASSERT_EQ(tag(Box::Municipality), 33037);
    customer.hold();
    const auto shown = ambrel::test::boxesDuring([this] {
        enter(Box::Municipality);
        type("m");
        press(Qt::Key_Tab);
    });
    EXPECT_EQ(shown.size(), 1U) << "that the row is in use";
    EXPECT_EQ(text(Box::Municipality), "MIERES");
    EXPECT_EQ(tag(Box::Municipality), 33037);
    EXPECT_EQ(text(Box::PostalCode), "33610");
    customer.release();
}

} // namespace
