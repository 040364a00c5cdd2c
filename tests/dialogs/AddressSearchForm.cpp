// The street search dialog over a few provinces and streets.
#include "dialogs/AddressSearchForm.h"

#include <QStatusBar>
#include <QTest>

#include "support/ShownWindow.h"

namespace postal_tests {

AddressSearchForm::AddressSearchForm() {
    addProvinces({{"028", "MADRID"}, {"008", "BARCELONA"}, {"001", "ALAVA/ARABA"}, {"110", "FRANCIA", 3}});
    addMunicipalities({{"28079", "28001", "MADRID", "N", "0"},
                       {"28010", "28430", "ALPEDRETE", "S", "1"},
                       {"28047", "28400", "COLLADO VILLALBA", "N", "1"},
                       {"28900", "28400", "LA NAVATA", "N", "9"},
                       {"08019", "08001", "BARCELONA", "N", "0"},
                       {"01059", "01001", "VITORIA-GASTEIZ", "N", "0"}});
    addStreets({{"28000001", "ALCALA", "CL", "28001"},
                {"28000002", "ARENAL", "CL", "28001"},
                {"28000003", "MAYOR", "CL", "28430", {1, 9999}, {2, 9998}, "28", "1"},
                {"28000004", "LA NAVATA", "LG", "28400", {1, 9999}, {2, 9998}, "28", "9"},
                {"28000005", "OTRO LUGAR", "LG", "28400", {1, 9999}, {2, 9998}, "28", "9"},
                {"99000000", "PERDIDA", "CM", "28999", {1, 9999}, {2, 9998}, "28", "1"},
                {"08000001", "BALMES", "CL", "08001", {1, 9999}, {2, 9998}, "08", "0"},
                {"08000002", "DIAGONAL", "AV", "08001", {1, 9999}, {2, 9998}, "08", "0"}});
}

AddressSearchForm::~AddressSearchForm() = default;

void AddressSearchForm::create(bool standalone, const std::string& name) {
    dialog.reset();
    controller = std::make_unique<TClassCodPostales>();
    ASSERT_TRUE(controller->BuscaPorNombreMunicipi(QString::fromStdString(name), true)) << name;
    dialog = std::make_unique<TFBuscarDireccionPostal>(nullptr, *controller, standalone);
}

void AddressSearchForm::show(bool standalone, const std::string& name) {
    create(standalone, name);
    ambrel::test::showActive(*dialog);
}

std::string AddressSearchForm::municipalityLabel() const {
    return control<QLabel>("LMunicipio").text().toStdString();
}

std::string AddressSearchForm::help() const {
    return control<QStatusBar>("SBAyuda").currentMessage().toStdString();
}

void AddressSearchForm::goToStreet(const std::string& codigo1) const {
    PostalTables::goToStreet(tables().tbPostal, codigo1);
}

void AddressSearchForm::type(const char* characters) const {
    QTest::keyClicks(dialog->focusWidget(), characters);
}

void AddressSearchForm::press(Qt::Key key, Qt::KeyboardModifiers modifiers) const {
    QTest::keyClick(dialog->focusWidget(), key, modifiers);
}

void AddressSearchForm::chooseProvince(const QString& item) const {
    QComboBox& combo = provinces();
    const int wanted = combo.findText(item);
    ASSERT_GE(wanted, 0) << item.toStdString();
    combo.setFocus();
    while (combo.currentIndex() != wanted) {
        press(combo.currentIndex() < wanted ? Qt::Key_Down : Qt::Key_Up);
    }
}

} // namespace postal_tests
