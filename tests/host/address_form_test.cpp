// Typing an address into the form, with real keys.
#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>

#include "host/FormTest.h"
#include "host/HostTable.h"
#include "host/ValidationMark.h"
#include "support/ScriptedMessages.h"

namespace {

using host_tests::FormTest;

class AddressFormTest : public FormTest {};

TEST_F(AddressFormTest, MunicipalityIsCompletedInCapitalsWhileItIsTyped) {
    open();
    enter("EMunicipio");
    type("ma");
    EXPECT_EQ(text("EMunicipio"), QStringLiteral("MADRID"));
    EXPECT_EQ(box("EMunicipio")->selectedText(), QStringLiteral("DRID"));
    EXPECT_EQ(tag("EMunicipio"), 28079);
}

TEST_F(AddressFormTest, LeavingTheMunicipalityFillsItsProvince) {
    open();
    fill("EMunicipio", "mad");
    EXPECT_EQ(text("EProvincia"), QStringLiteral("MADRID"));
    EXPECT_EQ(tag("EProvincia"), 1);
    EXPECT_EQ(text("ECodPostal"), QString()) << "a municipality with several codes settles none";
}

TEST_F(AddressFormTest, AMunicipalityWithOneCodeFillsIt) {
    open();
    fill("EMunicipio", "haro");
    EXPECT_EQ(text("ECodPostal"), QStringLiteral("26200"));
    EXPECT_EQ(tag("ECodPostal"), 1);
}

TEST_F(AddressFormTest, StreetAndNumberSettleThePostalCode) {
    open();
    fill("EMunicipio", "mad");
    fill("ETipoVia", "CL");
    fill("EVia", "alc");
    EXPECT_EQ(text("EVia"), QStringLiteral("ALCALA"));
    EXPECT_EQ(tag("EVia"), 28000001);
    EXPECT_EQ(text("ECodPostal"), QStringLiteral("28014"));
    fill("ENumero", "200");
    EXPECT_EQ(text("ECodPostal"), QStringLiteral("28009"));
    fill("ENumero", "45");
    EXPECT_EQ(text("ECodPostal"), QStringLiteral("28014"));
    EXPECT_EQ(tag("ENumero"), 1);
}

TEST_F(AddressFormTest, TextsPastedByMouseAreLookedUpWhenTheirBoxIsLeft) {
    const auto paste = [this](const char* name, const QString& text) {
        enter(name);
        box(name)->selectAll();
        QGuiApplication::clipboard()->setText(text);
        box(name)->paste(); // as the box's own menu does: no key is released
    };
    open();
    paste("EMunicipio", QStringLiteral("MADRID"));
    enter("ETipoVia");
    EXPECT_EQ(tag("EMunicipio"), 28079);
    fill("ETipoVia", "CL");
    paste("EVia", QStringLiteral("ALCALA"));
    enter("ENumero");
    EXPECT_EQ(tag("EVia"), 28000001);
    EXPECT_EQ(text("ECodPostal"), QStringLiteral("28014"));
}

TEST_F(AddressFormTest, TheNumberIsSoughtFromTheFirstStretchEachTime) {
    open();
    fill("EMunicipio", "mad");
    fill("EVia", "alc");
    fill("ENumero", "100");
    fill("ENumero", "2");
    EXPECT_EQ(text("ECodPostal"), QStringLiteral("28014"));
}

TEST_F(AddressFormTest, ANumberThatNoStretchHasLeavesTheStreetsCode) {
    open();
    fill("EMunicipio", "mad");
    fill("EVia", "cor");
    fill("ENumero", "500");
    EXPECT_EQ(text("ECodPostal"), QStringLiteral("28005"));
    EXPECT_EQ(tag("ENumero"), 0);
}

TEST_F(AddressFormTest, TheStreetTypeTellsStreetsOfOneNameApart) {
    open();
    fill("EMunicipio", "mad");
    fill("ETipoVia", "PZ");
    fill("EVia", "may");
    EXPECT_EQ(text("ECodPostal"), QStringLiteral("28012"));
    fill("ETipoVia", "CL");
    EXPECT_EQ(text("ECodPostal"), QStringLiteral("28013"));
}

TEST_F(AddressFormTest, AnUnknownMunicipalityValidatesNothingBehindIt) {
    open();
    ambrel::test::ScriptedMessages messages;
    expectMunicipalityQuestion(messages, ambrel::MessageAnswer::No);
    fill("EMunicipio", "villaninguna");
    EXPECT_EQ(tag("EMunicipio"), 0);
    fill("EVia", "alc");
    EXPECT_EQ(text("EVia"), QStringLiteral("ALC"));
    fill("ENumero", "45");
    EXPECT_EQ(tag("EVia"), 0);
    EXPECT_EQ(text("ECodPostal"), QString());
}

TEST_F(AddressFormTest, AnotherMunicipalityTakesTheStreetsValidationAway) {
    open();
    fill("EMunicipio", "mad");
    fill("EVia", "alc");
    ASSERT_NE(tag("EVia"), 0);
    fill("EMunicipio", "haro");
    EXPECT_EQ(tag("EVia"), 0);
    EXPECT_EQ(text("ECodPostal"), QStringLiteral("26200"));
}

TEST_F(AddressFormTest, ChangingAValidatedTextInvalidatesIt) {
    open();
    fill("EMunicipio", "mad");
    enter("EMunicipio");
    press(Qt::Key_End);
    press(Qt::Key_Backspace);
    EXPECT_EQ(text("EMunicipio"), QStringLiteral("MADRI"));
    EXPECT_EQ(tag("EMunicipio"), 0);
}

TEST_F(AddressFormTest, ATypedPostalCodeIsNotValidatedUnlessItIsTheStreets) {
    open();
    fill("EMunicipio", "mad");
    fill("EVia", "cor");
    fill("ECodPostal", "99999");
    EXPECT_EQ(tag("ECodPostal"), 0);
    fill("ECodPostal", "28005");
    EXPECT_EQ(tag("ECodPostal"), 1);
}

TEST_F(AddressFormTest, MarksShowWhatTheTagsSay) {
    open();
    fill("EMunicipio", "mad");
    const auto state = [&](const char* mark) {
        return window().findChild<host::ValidationMark*>(QLatin1String(mark))->state();
    };
    EXPECT_EQ(state("MarcaMunicipio"), host::ValidationMark::State::Validated);
    EXPECT_EQ(state("MarcaVia"), host::ValidationMark::State::Nothing);
    enter("EVia");
    type("xyz");
    EXPECT_EQ(state("MarcaVia"), host::ValidationMark::State::NotValidated);
}

TEST_F(AddressFormTest, AStoredAddressIsValidatedWhenItIsShown) {
    addCustomers({{"Ana", "CL", "ALCALA", "60", "28009", "MADRID", "MADRID"}});
    open();
    EXPECT_EQ(tag("EMunicipio"), 28079);
    EXPECT_EQ(tag("EProvincia"), 1);
    EXPECT_EQ(tag("ETipoVia"), 1);
    EXPECT_EQ(tag("EVia"), 28000001);
    EXPECT_EQ(tag("ENumero"), 1);
    EXPECT_EQ(tag("ECodPostal"), 1);
}

TEST_F(AddressFormTest, AStoredAddressThatIsNotKnownIsNotValidated) {
    addCustomers({{"Ana", "CL", "NINGUNA", "60", "28999", "MADRID", "TOLEDO"}});
    open();
    EXPECT_EQ(tag("EMunicipio"), 0) << "that province has no such municipality";
    EXPECT_EQ(tag("EProvincia"), 0);
    EXPECT_EQ(tag("EVia"), 0);
    EXPECT_EQ(tag("ENumero"), 0);
    EXPECT_EQ(tag("ECodPostal"), 0);
}

TEST_F(AddressFormTest, OfTwoTownsOfOneNameThePostalCodeTellsWhichIsMeant) {
    addCustomers({{"Ana", "", "", "", "33610", "MIERES", "ASTURIAS"},
                  {"Eva", "", "", "", "17830", "MIERES", "GIRONA"}});
    open();
    EXPECT_EQ(tag("EMunicipio"), 33037);
    EXPECT_EQ(tag("EProvincia"), 1);
    click("BBSiguiente");
    EXPECT_EQ(tag("EMunicipio"), 17105);
}

TEST_F(AddressFormTest, PassingThroughAStoredAddressChangesNothing) {
    addCustomers(
        {{"Ana", "CL", "ALCALA", "60", "28009", "MADRID", "MADRID"}, {"Eva", "", "", "", "", "", ""}});
    open();
    enter("ENombre");
    for (int box = 0; box < 8; ++box) {
        press(Qt::Key_Tab);
    }
    EXPECT_EQ(text("ECodPostal"), QStringLiteral("28009"));
    click("BBSiguiente"); // would ask if anything had changed
    EXPECT_EQ(text("ENombre"), QStringLiteral("Eva"));
}

TEST_F(AddressFormTest, ARecordThatAnotherUserHoldsCannotBeChanged) {
    addCustomers({{"Ana", "CL", "ALCALA", "60", "28009", "MADRID", "MADRID"}});
    open();
    host::HostTable other("AMBREL");
    other.data.open();
    other.data.edit();
    ambrel::test::ScriptedMessages messages;
    std::string refusal;
    try {
        host::HostTable third("AMBREL");
        third.data.open();
        third.data.edit();
    } catch (const std::exception& error) {
        refusal = error.what();
    }
    messages.expect(QString::fromStdString(refusal), QStringLiteral("Atención"));
    enter("ENombre");
    type("x");
    EXPECT_EQ(text("ENombre"), QStringLiteral("Ana"));
    other.data.cancel();
}

TEST_F(AddressFormTest, ARecordThatAnotherUserChangedIsShownAnew) {
    addCustomers({{"Ana", "", "", "", "", "MADRID", ""}});
    open();
    host::HostTable other("AMBREL");
    other.data.open();
    other.data.edit();
    other.municipality.setText("HARO");
    other.data.post();
    const auto boxes = ambrel::test::boxesDuring([this] {
        enter("ENombre");
        type("x");
    });
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_EQ(boxes[0].kind, ambrel::MessageKind::Error);
    EXPECT_EQ(text("ENombre"), QStringLiteral("Ana"));
    EXPECT_EQ(text("EMunicipio"), QStringLiteral("HARO"));
    type("x");
    EXPECT_EQ(text("ENombre").size(), 4) << "the row as it is now can be changed";
}

TEST_F(AddressFormTest, LabelsLeadToTheirBoxesAndNamesAreSpoken) {
    open();
    for (const char* name :
         {"EMunicipio", "EProvincia", "ETipoVia", "EVia", "ENumero", "EPiso", "ECodPostal"}) {
        EXPECT_FALSE(box(name)->accessibleName().isEmpty()) << name;
        int labels = 0;
        for (const QLabel* label : window().findChildren<QLabel*>()) {
            labels += label->buddy() == box(name) ? 1 : 0;
        }
        EXPECT_EQ(labels, 1) << name;
    }
}

TEST_F(AddressFormTest, MnemonicsAreAllDifferent) {
    open();
    QStringList letters;
    const auto add = [&](const QString& text) {
        if (const auto at = text.indexOf(QLatin1Char('&')); at >= 0) {
            letters.append(text.mid(at + 1, 1).toUpper());
        }
    };
    for (const QLabel* label : window().findChildren<QLabel*>()) {
        add(label->text());
    }
    for (const QPushButton* button : window().findChildren<QPushButton*>()) {
        add(button->text());
    }
    for (const QAction* menu : window().menuBar()->actions()) {
        add(menu->text());
    }
    EXPECT_EQ(letters.size(), 15);
    letters.removeDuplicates();
    EXPECT_EQ(letters.size(), 15);
}

TEST_F(AddressFormTest, TabVisitsTheBoxesInTheOrderOfTheForm) {
    open();
    enter("ENombre");
    for (const char* name :
         {"EMunicipio", "EProvincia", "ETipoVia", "EVia", "ENumero", "EPiso", "ECodPostal"}) {
        press(Qt::Key_Tab);
        EXPECT_TRUE(box(name)->hasFocus()) << name;
    }
}

} // namespace
