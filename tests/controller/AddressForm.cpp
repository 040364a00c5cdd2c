// A host's form wired to a controller.
#include "controller/AddressForm.h"

#include "services/FocusEvents.h"
#include "services/KeyUpEvents.h"
#include "support/ShownWindow.h"

namespace postal_tests {

AddressForm::AddressForm() {
    const auto layout = ambrel::test::defineTable("CLIENTES", {"NOMBRE C20", "CODPOSTAL C5"});
    createTable(layout, {{"PEREZ", "00000"}});
}

void AddressForm::openForm() {
    postalCodeField = &host.bindCharacter("CODPOSTAL", 5);
    host.open();
    host.edit();
    controller = std::make_unique<TClassCodPostales>(&form);
    form.setFocus(); // no box has the focus yet
    ambrel::test::showActive(form);

    using ambrel::FocusEvents;
    using ambrel::KeyUpEvents;
    KeyUpEvents::watch(municipalityBox, [this](std::uint16_t& key, Qt::KeyboardModifiers shift) {
        controller->KeyUpMunicipi(municipalityBox, key, shift);
    });
    KeyUpEvents::watch(streetBox, [this](std::uint16_t& key, Qt::KeyboardModifiers shift) {
        controller->KeyUpDireccionPostal(streetBox, key, shift, streetType);
    });
    FocusEvents::watch(municipalityBox, {},
                       [this] { controller->ExitMunicipi(municipalityBox, province, postalCode, asks); });
    FocusEvents::watch(streetBox, {}, [this] {
        controller->ExitDireccionPostal(streetBox, postalCodeField, nullptr, asks, postalCode, streetType);
    });
    FocusEvents::watch(numberBox, {}, [this] { controller->ExitNumeroPostal(numberBox, postalCodeField); });
}

void AddressForm::choose(const std::string& name) const {
    ASSERT_TRUE(controller->BuscaPorNombreMunicipi(QString::fromStdString(name), true)) << name;
}

void AddressForm::goToRow(const std::string& codigo1) const { goToStreet(controller->DM->tbPostal, codigo1); }

std::string AddressForm::municipality() const { return controller->DM->tbMunicipiNOMBRE.text(); }

std::string AddressForm::row() const { return controller->DM->tbPostalCODIGO1.text(); }

} // namespace postal_tests
