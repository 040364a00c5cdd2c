// Test fixture: the street card on the screen, over a few municipalities, provinces, types and streets.
#pragma once

#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <memory>
#include <string>

#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "data/PostalTables.h"
#include "dialogs/FichaVia.h"
#include "support/ScriptedMessages.h"

namespace postal_tests {

/// Streets that users added: 99000000 GRAN VIA (28013), 99000001 SIN CODIGO (postal code "0"), 99000002
/// PERDIDA (a postal code of no municipality), 99000003 BLANCA (neither province, type nor postal code).
/// 28000001 ALCALA may not be changed. Two municipalities are called SADA.
class StreetCardForm : public PostalTables {
protected:
    StreetCardForm();
    ~StreetCardForm() override;

    /// Shows the card of a street, of Madrid unless another municipality was chosen before.
    void openCard(TOperacion operation, const QString& vecindad = {}, const std::string& street = "99000000");
    void chooseMunicipality(const char* name);
    /// Fills the card in as a new street of Madrid that passes every check.
    void fillIn();

    [[nodiscard]] QLineEdit& edit(const char* name) const;
    [[nodiscard]] QComboBox& combo(const char* name) const;
    [[nodiscard]] QPushButton& button(const char* name) const;
    [[nodiscard]] std::string textOf(const char* name) const;
    /// Moves the focus into a control, and to the next one by Tab.
    void enter(const char* name) const;
    void leaveByTab() const;
    void typeInto(const char* name, const QString& text) const;
    /// Presses a key in the focused control.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const;
    [[nodiscard]] std::string focused() const;

    void expectCancelQuestion(ambrel::MessageAnswer answer);
    void expectDeleteQuestion(ambrel::MessageAnswer answer);
    /// A button that a key clicks acts a moment later.
    void expectClosed() const;
    void expectReadOnly() const;

    [[nodiscard]] dbase::Dataset& streets() const { return controller->DM->tbPostal; }
    [[nodiscard]] std::string value(const char* field) const { return streets().field(field).text(); }
    /// A column of a stored row; empty when there is no such row.
    [[nodiscard]] static std::string stored(const std::string& codigo1, const char* field);

    ambrel::test::ScriptedMessages messages;
    std::unique_ptr<TClassCodPostales> controller;
    std::unique_ptr<TFFichaVia> card;
};

} // namespace postal_tests
