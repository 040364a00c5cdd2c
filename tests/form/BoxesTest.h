// Test fixture: a plain window with the six boxes of an address, wired by AddressBoxes alone and used with
// real keys.
#pragma once

#include <QLineEdit>
#include <QPushButton>
#include <QWidget>
#include <memory>

#include "data/PostalTables.h"
#include "form/AddressBoxes.h"
#include "support/ModalScript.h"
#include "support/ScriptedMessages.h"

namespace postal_tests {

/// MADRID is a capital with several codes, whose CL ALCALA is divided between 28014 and 28027; ARANJUEZ and
/// HARO have one code. MIERES is two towns. ALTA and BAJA are villages with a CL MAYOR each, of which BAJA's
/// comes first. ALBACETE has no streets; BARCELONA and VITORIA have streets that come after all names that
/// are typed and not found.
class BoxesTest : public PostalTables {
protected:
    using Box = ambrel::AddressBoxes::Box;
    using State = ambrel::AddressBoxes::State;

    BoxesTest();
    ~BoxesTest() override;

    /// Wires and shows the boxes. Call it once the tables are filled.
    void open();

    void enter(Box box);
    /// Types into the focused box, each letter pressed and released.
    void type(const QString& text);
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    /// Enters a box, replaces its text by typing, and leaves it with the Tab key.
    void fill(Box box, const QString& text);
    /// Replaces a box's text as its own menu does, and leaves the box.
    void paste(Box box, const QString& text);
    /// Fills several boxes in their order: municipality, type, street, number.
    void fillAddress(const QString& municipality, const QString& type, const QString& street,
                     const QString& number);

    [[nodiscard]] QLineEdit& box(Box box) const { return *boxes.at(box); }
    [[nodiscard]] QString text(Box which) const { return box(which).text(); }
    [[nodiscard]] int tag(Box which) const;
    [[nodiscard]] State state(Box which) const { return address->state(which); }

    /// Makes a table of the host's, CLIENTES, with one row.
    void storeCustomer(const std::string& municipality, const std::string& postalCode = {});

    void expectMunicipalityQuestion(ambrel::MessageAnswer answer);
    void expectInsertion(ambrel::MessageAnswer answer);
    void expectStreetList(ambrel::MessageAnswer answer);
    /// Expects both questions about an unknown street, and answers no.
    void expectStreetDeclined();

    ambrel::test::ScriptedMessages messages;
    ambrel::test::ModalScript dialogs;
    QWidget form;
    ambrel::AddressBoxes::Boxes boxes;
    QPushButton* const elsewhere = new QPushButton(&form);
    std::unique_ptr<ambrel::AddressBoxes> address;
};

} // namespace postal_tests
