// Leaving the box of the house number.
#include <QTest>

#include "controller/AddressForm.h"
#include "support/ScriptedMessages.h"
#include "support/ShownWindow.h"

namespace {

using namespace postal_tests;

class NumberBox : public AddressForm {
protected:
    void SetUp() override {
        addStreets({{"10", "MAYOR", "", "28001", {1, 11}, {2, 12}},
                    {"11", "MAYOR", "", "28002", {13, 21}, {14, 14}},
                    {"20", "MAYOR", "CL", "28013", {1, 41}, {2, 48}},
                    {"21", "MAYOR", "CL", "28004", {43, 9999}, {50, 9998}},
                    {"22", "MAYOR", "PZ", "28012"},
                    {"30", "TOLEDO", "CL", "28005", {1, 9}, {2, 8}},
                    {"31", "TOLEDO", "CL", "28006", {11, 19}, {10, 18}},
                    {"40", "ZURBANO", "", "28010", {1, 9}, {2, 8}},
                    {"41", "ZURBANO", "", "28003", {11, 19}, {10, 18}}});
        openForm();
        choose("MADRID");
    }

    using Exit = void (TClassCodPostales::*)(QLineEdit*, dbase::Field*);

    void leave(Exit exit, const std::string& from, const QString& number) {
        goToRow(from);
        numberBox->setText(number);
        (controller.get()->*exit)(numberBox, postalCodeField);
    }
    static constexpr Exit typed = &TClassCodPostales::ExitNumeroPostal;
    static constexpr Exit untyped = &TClassCodPostales::ExitNumeroPostal_;
};

TEST_F(NumberBox, NoHandlerDoesAnythingWithoutABox) {
    goToRow("20");
    std::uint16_t key = 'A';
    controller->KeyUpMunicipi(nullptr, key, Qt::NoModifier);
    controller->ExitMunicipi(nullptr, province, postalCode, true);
    controller->KeyUpDireccionPostal(nullptr, key, Qt::NoModifier, "CL");
    controller->ExitDireccionPostal(nullptr, postalCodeField, nullptr, true, "28001", "CL");
    controller->ExitNumeroPostal(nullptr, postalCodeField);
    controller->ExitNumeroPostal_(nullptr, postalCodeField);
    EXPECT_EQ(row(), "20");
    EXPECT_EQ(municipality(), "MADRID");
    EXPECT_EQ(province + postalCode, "??");
    EXPECT_EQ(hostPostalCode(), "00000");
}

TEST_F(NumberBox, WritesThePostalCodeOfTheRowThatHoldsTheNumber) {
    leave(typed, "20", "41");
    EXPECT_EQ(hostPostalCode(), "28013");
    leave(typed, "20", "43");
    EXPECT_EQ(hostPostalCode(), "28004");
    leave(typed, "20", "50");
    EXPECT_EQ(hostPostalCode(), "28004");
    EXPECT_EQ(row(), "21");
}

TEST_F(NumberBox, OddAndEvenNumbersLookAtTheirOwnRange) {
    leave(typed, "20", "42");
    EXPECT_EQ(hostPostalCode(), "28013") << "even, though odd numbers from 43 on are elsewhere";
}

TEST_F(NumberBox, RangeOfOneNumberMatches) {
    leave(untyped, "10", "14");
    EXPECT_EQ(hostPostalCode(), "28002");
}

TEST_F(NumberBox, NumberThatIsNoNumberCountsAs0AndTriesTheEvenRangesOnly) {
    for (const QString& text : {QStringLiteral("S/N"), QStringLiteral("0"), QString(), QStringLiteral("Ł")}) {
        leave(typed, "30", text);
        EXPECT_EQ(hostPostalCode(), "00000") << text.toStdString();
    }
}

TEST_F(NumberBox, StreetOnTheLastRowsWithoutTheNumberKeepsTheCodeAndStaysOnTheLastRow) {
    leave(typed, "40", "99");
    EXPECT_EQ(hostPostalCode(), "00000");
    EXPECT_EQ(row(), "41");
}

TEST_F(NumberBox, VariantStopsAtTheEndOfTheTableAndReturns) {
    leave(untyped, "40", "99");
    EXPECT_EQ(hostPostalCode(), "00000");
    EXPECT_EQ(row(), "40");
}

TEST_F(NumberBox, OtherTypeEndsTheWalkOneRowBack) {
    leave(typed, "30", "99");
    EXPECT_EQ(row(), "31");
    leave(typed, "10", "99");
    EXPECT_EQ(row(), "11") << "the CL rows would hold 99";
    EXPECT_EQ(hostPostalCode(), "00000");
}

TEST_F(NumberBox, VariantTriesOnlyRowsWithoutTypeAndReturns) {
    leave(untyped, "20", "5");
    EXPECT_EQ(hostPostalCode(), "00000") << "the CL row itself holds 5";
    EXPECT_EQ(row(), "20");
    leave(untyped, "10", "15");
    EXPECT_EQ(hostPostalCode(), "28002");
    EXPECT_EQ(row(), "11");
}

TEST_F(NumberBox, BothBeginAtTheCurrentRow) {
    leave(typed, "21", "5");
    EXPECT_EQ(hostPostalCode(), "00000");
    leave(untyped, "11", "5");
    EXPECT_EQ(hostPostalCode(), "00000");
    ASSERT_TRUE(controller->BuscaEnPostal("MAYOR", "CL", false));
    numberBox->setText("5");
    controller->ExitNumeroPostal(numberBox, postalCodeField);
    EXPECT_EQ(hostPostalCode(), "28013") << "a host seeks the street again when the number changes";
}

TEST_F(NumberBox, WithoutAFieldTheRowIsFoundAndNothingWritten) {
    goToRow("20");
    numberBox->setText("45");
    controller->ExitNumeroPostal(numberBox, nullptr);
    EXPECT_EQ(row(), "21");
    controller->ExitNumeroPostal_(numberBox, nullptr);
    EXPECT_EQ(hostPostalCode(), "00000");
}

TEST_F(NumberBox, OneAddressByKeys) {
    ambrel::test::showActive(form);
    municipalityBox->setFocus();
    QTest::keyClicks(municipalityBox, "MADR");
    QTest::keyClick(municipalityBox, Qt::Key_Tab);
    QTest::keyClicks(streetBox, "MAY");
    QTest::keyClick(streetBox, Qt::Key_Tab);
    EXPECT_EQ(hostPostalCode(), "28013");
    QTest::keyClicks(numberBox, "45");
    QTest::keyClick(numberBox, Qt::Key_Tab);
    EXPECT_EQ(hostPostalCode(), "28004");
}

} // namespace
