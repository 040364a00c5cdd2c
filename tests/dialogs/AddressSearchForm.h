// Test fixture: the street search dialog on the screen, over a few provinces and streets.
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <memory>

#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "data/PostalTables.h"
#include "dialogs/BuscarDireccionPostal.h"
#include "dialogs/common/DataGrid.h"
#include "support/ModalScript.h"

namespace postal_tests {

/// Madrid has a capital, a town and, under 28400, a town and a locality; 28999 belongs to no municipality.
class AddressSearchForm : public PostalTables {
protected:
    AddressSearchForm();
    ~AddressSearchForm() override;

    /// Creates controller and dialog, makes the municipality current first, and shows the dialog.
    void show(bool standalone = false, const std::string& municipality = "MADRID");
    void create(bool standalone = false, const std::string& municipality = "MADRID");

    template<class Widget>
    [[nodiscard]] Widget& control(const char* name) const {
        return ambrel::test::child<Widget>(*dialog, name);
    }
    [[nodiscard]] QLineEdit& box() const { return control<QLineEdit>("EVia"); }
    [[nodiscard]] QComboBox& provinces() const { return control<QComboBox>("CBProvincia"); }
    [[nodiscard]] QPushButton& button(const char* name) const { return control<QPushButton>(name); }
    [[nodiscard]] ambrel::DataGrid& grid() const { return control<ambrel::DataGrid>("DBGPostal"); }
    [[nodiscard]] std::string municipalityLabel() const;
    [[nodiscard]] std::string help() const;

    [[nodiscard]] TDMCodPostales& tables() const { return *controller->DM; }
    /// Name of the current street and of the current municipality.
    [[nodiscard]] std::string street() const { return tables().tbPostalVIA.text(); }
    [[nodiscard]] std::string municipality() const { return tables().tbMunicipiNOMBRE.text(); }
    void goToStreet(const std::string& codigo1) const;

    /// Types into the focused control.
    void type(const char* characters) const;
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const;
    /// Chooses a province with the keyboard, as a user does.
    void chooseProvince(const QString& item) const;

    std::unique_ptr<TClassCodPostales> controller;
    std::unique_ptr<TFBuscarDireccionPostal> dialog;
};

} // namespace postal_tests
