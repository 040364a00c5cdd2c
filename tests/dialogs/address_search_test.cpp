// TFBuscarDireccionPostal: its contents, its searches and its answers.
#include <gtest/gtest.h>

#include <QTest>

#include "dialogs/AddressSearchForm.h"
#include "dialogs/DialogTexts.h"
#include "services/Confamb.h"
#include "services/TagProperty.h"
#include "support/ShownWindow.h"

namespace {

using namespace postal_tests;
using ambrel::tagOf;

using AddressSearch = AddressSearchForm;

// --- Showing

TEST_F(AddressSearch, ProvinceItemsAreNameAndCodeInAlphabeticalOrder) {
    show();
    std::vector<std::string> items;
    for (int index = 0; index < provinces().count(); ++index) {
        items.push_back(provinces().itemText(index).toStdString());
    }
    EXPECT_EQ(items, (std::vector<std::string>{"ALAVA/ARABA [01]", "BARCELONA [08]", "MADRID [28]"}));
    EXPECT_FALSE(dialog->tbProvin.isOpen());
}

TEST_F(AddressSearch, BeginsInTheProvinceOfTheCurrentMunicipalityAndMovesNothing) {
    create(false, "BARCELONA");
    tables().tbPostal.last();
    const std::string before = street();
    ambrel::test::showActive(*dialog);
    EXPECT_EQ(provinces().currentText().toStdString(), "BARCELONA [08]");
    EXPECT_EQ(tables().tbPostal.tag(), "NOMBREVIA");
    EXPECT_EQ(tables().tbMunicipi.tag(), "NOMBRE");
    EXPECT_EQ(street(), before);
}

TEST_F(AddressSearch, StandaloneBeginsInTheHostsProvince) {
    Config.setProvince(8, "Barcelona", "  BARCELONA ");
    show(true);
    EXPECT_EQ(provinces().currentText().toStdString(), "BARCELONA [08]");
    EXPECT_EQ(street(), "BALMES");
    EXPECT_EQ(tables().tbPostal.tag(), "NOMBREVIA");
    EXPECT_EQ(municipalityLabel(), "BARCELONA");
}

// In the order of streets the capital's come first; by name alone AAA would.
TEST_F(AddressSearch, StandaloneSeeksBeforeTheTagChanges) {
    addStreets({{"28000009", "AAA", "CL", "28430", {1, 9999}, {2, 9998}, "28", "1"}});
    Config.setProvince(28, "Madrid", "MADRID");
    show(true, "BARCELONA");
    EXPECT_EQ(street(), "ALCALA");
}

TEST_F(AddressSearch, ProvinceOfAnotherGroupIsNotInTheComboAndSelectsNothing) {
    Config.setProvince(110, "Francia", "FRANCIA");
    show(true);
    EXPECT_EQ(provinces().findText("FRANCIA", Qt::MatchContains), -1);
    EXPECT_EQ(provinces().currentIndex(), -1);
}

TEST_F(AddressSearch, HostWithoutProvinceSelectsNothing) {
    show(true);
    EXPECT_EQ(provinces().currentIndex(), -1);
    EXPECT_EQ(municipalityLabel(), "");
}

TEST_F(AddressSearch, UnknownProvinceNamePositionsMunicipalitiesOn00000) {
    addMunicipalities({{"00000", "00001", "SIN PROVINCIA"}});
    addStreets({{"00000001", "SIN CALLE", "CL", "00001", {1, 2}, {2, 4}, "00", "0"}});
    Config.setProvince(0, "", "NINGUNA");
    create(true, "BARCELONA");
    ambrel::test::showActive(*dialog);
    EXPECT_EQ(tables().tbMunicipi.tag(), "CODPOSTAL");
    EXPECT_EQ(municipality(), "SIN PROVINCIA");
    EXPECT_EQ(street(), "SIN CALLE");
}

// --- The municipality of the street

TEST_F(AddressSearch, ShowsTheMunicipalityOfEachStreetAndGoesToIt) {
    show();
    goToStreet("28000001");
    EXPECT_EQ(municipalityLabel(), "MADRID");
    goToStreet("28000003");
    EXPECT_EQ(municipalityLabel(), "ALPEDRETE");
    EXPECT_EQ(municipality(), "ALPEDRETE");
    EXPECT_EQ(tables().tbMunicipi.tag(), "NOMBRE") << "the tag is as before";
}

TEST_F(AddressSearch, StreetWhosePostalCodeBelongsToNoMunicipalityShowsItsOwnName) {
    show();
    goToStreet("99000000");
    EXPECT_EQ(municipalityLabel(), "PERDIDA");
}

TEST_F(AddressSearch, StreetOfAnotherProvinceShowsNoMunicipality) {
    show();
    goToStreet("08000001");
    EXPECT_EQ(municipalityLabel(), "");
}

TEST_F(AddressSearch, RowsThatNameALocalityShowTheMunicipalityOfThatNameOrTheFirstOfTheCode) {
    show();
    goToStreet("28000004");
    EXPECT_EQ(municipalityLabel(), "LA NAVATA");
    goToStreet("28000005");
    EXPECT_EQ(municipalityLabel(), "COLLADO VILLALBA");
}

TEST_F(AddressSearch, ModifyAndDeleteAreEnabledOnlyOnStreetsWhoseKeyBeginsWith99) {
    show();
    for (const char* name : {"BBModificar", "BBEliminar"}) {
        goToStreet("28000001");
        EXPECT_FALSE(button(name).isEnabled()) << name;
        goToStreet("99000000");
        EXPECT_TRUE(button(name).isEnabled()) << name;
    }
}

TEST_F(AddressSearch, ValueSetInTheCurrentRowMovesNoMunicipality) {
    show();
    goToStreet("99000000");
    ASSERT_TRUE(controller->BuscaPorNombreMunicipi("BARCELONA", true));
    tables().tbPostal.edit();
    tables().tbPostalCODPOSTAL.setText("28430");
    EXPECT_EQ(municipality(), "BARCELONA");
    EXPECT_EQ(municipalityLabel(), "PERDIDA");
    tables().tbPostal.post();
    EXPECT_EQ(municipalityLabel(), "ALPEDRETE");
}

// --- Searching

TEST_F(AddressSearch, TypingCompletesTheStreetOfTheProvinceAndSelectsTheTail) {
    show();
    box().setFocus();
    type("A");
    EXPECT_EQ(box().text().toStdString(), "ALCALA");
    EXPECT_EQ(box().selectedText().toStdString(), "LCALA");
    EXPECT_EQ(box().cursorPosition(), 1);
    EXPECT_EQ(street(), "ALCALA");
    type("R");
    EXPECT_EQ(box().text().toStdString(), "ARENAL");
    EXPECT_EQ(grid().cellText(grid().currentRow(), 1).toStdString(), "ARENAL");
}

TEST_F(AddressSearch, KeysPressedBeforeTheFirstIsReleasedComplete) {
    show();
    QTest::keyPress(&box(), 'M');
    QTest::keyPress(&box(), 'A');
    QTest::keyRelease(&box(), 'M');
    QTest::keyRelease(&box(), 'A');
    EXPECT_EQ(box().text().toStdString(), "MAYOR");
    EXPECT_EQ(box().selectedText().toStdString(), "YOR");
}

TEST_F(AddressSearch, TextThatNoStreetBeginsWithStaysAsTypedOnTheNearestStreet) {
    show();
    box().setFocus();
    type("AM");
    EXPECT_EQ(box().text().toStdString(), "AM");
    EXPECT_EQ(street(), "ARENAL");
}

TEST_F(AddressSearch, OnlyLettersDigitsAndKey188Search) {
    show();
    box().setText("BALMES");
    goToStreet("28000001");
    for (const Qt::Key key : {Qt::Key_Shift, Qt::Key_End, Qt::Key_Print, Qt::Key_Backspace}) {
        QTest::keyClick(&box(), key);
        EXPECT_EQ(street(), "ALCALA") << key;
    }
    box().setText("AREN");
    QTest::keyClick(&box(), Qt::Key_Comma);
    EXPECT_EQ(street(), "ARENAL");
}

TEST_F(AddressSearch, LeadingBlanksAreRemoved) {
    show();
    box().setFocus();
    type(" ");
    EXPECT_EQ(box().text().toStdString(), "");
    box().setText("  ARENAL");
    press(Qt::Key_End);
    EXPECT_EQ(box().text().toStdString(), "ARENAL");
}

TEST_F(AddressSearch, TextThatTheTablesCannotHoldSearchesNothing) {
    show();
    goToStreet("28000003");
    box().setText(QStringLiteral("Ł"));
    QTest::keyClick(&box(), Qt::Key_A);
    EXPECT_EQ(street(), "MAYOR");
}

TEST_F(AddressSearch, ChoosingAProvinceGoesToTheTypedNameInIt) {
    show();
    chooseProvince("BARCELONA [08]");
    EXPECT_EQ(street(), "BALMES");
    EXPECT_EQ(municipalityLabel(), "BARCELONA");
    box().setText("DI");
    chooseProvince("MADRID [28]");
    chooseProvince("BARCELONA [08]");
    EXPECT_EQ(street(), "DIAGONAL");
}

TEST_F(AddressSearch, ProvinceSelectedByTheProgramSearchesNothing) {
    show();
    goToStreet("28000003");
    provinces().setCurrentIndex(1);
    EXPECT_EQ(street(), "MAYOR");
}

// --- Answering

TEST_F(AddressSearch, AcceptingSetsTheTagAndLeavesEveryOtherWayAt0) {
    const auto make = [this] {
        create();
        return std::move(dialog);
    };
    ambrel::test::expectModalResults(make,
                                     {{"BBAceptar", 1}, {"BBCancelar", 2}, {"Escape", 2}, {"close box", 2}});
    for (const auto& [name, tag] : {std::pair("BBAceptar", 1), std::pair("BBCancelar", 0)}) {
        show();
        EXPECT_EQ(tagOf(*dialog), 0);
        QTest::mouseClick(&button(name), Qt::LeftButton);
        EXPECT_EQ(tagOf(*dialog), tag) << name;
        EXPECT_FALSE(dialog->isVisible());
    }
    show();
    press(Qt::Key_Escape);
    EXPECT_EQ(tagOf(*dialog), 0);
    show();
    dialog->close();
    EXPECT_EQ(tagOf(*dialog), 0);
}

TEST_F(AddressSearch, DoubleClickInTheGridAcceptsThatStreet) {
    show();
    goToStreet("28000001");
    const int row = grid().currentRow() + 1;
    const QPoint place = grid().cellRect(row, 1).center();
    QTest::mouseClick(&grid(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(&grid(), Qt::LeftButton, {}, place);
    EXPECT_EQ(street(), "ARENAL");
    EXPECT_EQ(tagOf(*dialog), 1);
    EXPECT_EQ(dialog->result(), 1);
}

TEST_F(AddressSearch, AcceptingGoesToTheMunicipalityOfTheStreet) {
    show();
    goToStreet("28000003");
    ASSERT_TRUE(controller->BuscaPorNombreMunicipi("BARCELONA", true));
    QTest::mouseClick(&button("BBAceptar"), Qt::LeftButton);
    EXPECT_EQ(tables().tbMunicipi.tag(), "CODPOSTAL");
    EXPECT_EQ(municipality(), "ALPEDRETE");
}

TEST_F(AddressSearch, AcceptingAStreetWithoutMunicipalityGoesToTheFirstOfItsProvince) {
    show();
    goToStreet("99000000");
    QTest::mouseClick(&button("BBAceptar"), Qt::LeftButton);
    EXPECT_EQ(municipality(), "MADRID");
}

TEST_F(AddressSearch, ControllerKeepsTheChosenStreetUnderItsOwnOrder) {
    controller = std::make_unique<TClassCodPostales>();
    ASSERT_TRUE(controller->BuscaPorNombreMunicipi("MADRID", true));
    ambrel::test::ModalScript script;
    script.expect("TFBuscarDireccionPostal", [](QDialog& list) {
        QTest::keyClicks(&ambrel::test::child<QLineEdit>(list, "EVia"), "AR");
        QTest::mouseClick(&ambrel::test::child<QPushButton>(list, "BBAceptar"), Qt::LeftButton);
    });
    EXPECT_TRUE(controller->BuscarDireccionPostal(false));
    EXPECT_EQ(street(), "ARENAL");
    EXPECT_EQ(tables().tbPostal.tag(), "VIA");
}

TEST_F(AddressSearch, ImportButtonOpensTheImportDialogAndTheListGoesOnAfterIt) {
    show();
    ambrel::test::ModalScript script;
    script.expect("TFImportarVias", [](QDialog& import) { import.close(); });
    QTest::mouseClick(&button("BBImportar"), Qt::LeftButton);
    EXPECT_TRUE(script.isDone());
    EXPECT_TRUE(dialog->isVisible());
}

TEST_F(AddressSearch, WorksWithAnEmptyDirectory) {
    dbase::Dataset streets("DB", "POSTAL");
    for (streets.open(); !streets.isEmpty();) {
        streets.erase();
    }
    streets.close();
    show();
    type("A");
    press(Qt::Key_Down);
    EXPECT_EQ(municipalityLabel(), "");
    EXPECT_FALSE(button("BBModificar").isEnabled());
    QTest::mouseClick(&button("BBAceptar"), Qt::LeftButton);
    EXPECT_EQ(tagOf(*dialog), 1);
}

} // namespace
