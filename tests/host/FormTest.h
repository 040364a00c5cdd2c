// Test fixture: the host's window over small tables, used with real keys.
#pragma once

#include <QString>
#include <memory>
#include <string>
#include <vector>

#include "data/PostalTables.h"
#include "host/MainWindow.h"
#include "support/ModalScript.h"
#include "support/ScriptedMessages.h"

class QDialog;
class QLineEdit;

namespace host_tests {

/// UTF-8.
struct CustomerRow {
    std::string name, streetType, street, number, postalCode, municipality, province;
};

/// Clicks a button of a dialog, by the button's name.
void clickIn(QDialog& dialog, const char* button);
/// A step that only clicks a button.
[[nodiscard]] ambrel::test::ModalScript::Step justClick(const char* button);
/// Replaces the text of a box of a dialog by typing, and clicks a button.
[[nodiscard]] ambrel::test::ModalScript::Step typeAndClick(const char* box, const QString& text,
                                                           const char* button);

/// MADRID is a capital with several codes; its CL ALCALA has the numbers up to 57 in 28014 and the rest in
/// 28009; its PZ MAYOR and CL MAYOR have different codes. HARO has one code. MIERES is two towns. The
/// customers' table is empty. The street types are AV, CL and PZ.
class FormTest : public postal_tests::PostalTables {
protected:
    FormTest();
    ~FormTest() override;

    void addCustomers(const std::vector<CustomerRow>& rows);
    /// Opens the window on the first customer.
    void open();
    void close() { window_.reset(); }

    [[nodiscard]] QLineEdit* box(const char* name) const;
    [[nodiscard]] QString text(const char* name) const;
    [[nodiscard]] int tag(const char* name) const;
    [[nodiscard]] QString status() const;
    /// Moves the focus into a box, as the Tab key does.
    void enter(const char* name);
    /// Types into the focused box.
    void type(const QString& text);
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    /// Enters a box, replaces its text by typing, and leaves it with the Tab key.
    void fill(const char* name, const QString& text);
    void click(const char* button);
    /// Chooses an entry of the menus.
    void choose(const char* entry);
    [[nodiscard]] QString label(const char* name) const;
    static void expectMunicipalityQuestion(ambrel::test::ScriptedMessages& messages,
                                           ambrel::MessageAnswer answer);

    /// A column of a customer as stored; "" when there is no such customer.
    [[nodiscard]] std::string stored(const std::string& customer, const char* column) const;

    [[nodiscard]] host::MainWindow& window() { return *window_; }

private:
    void activate();

    std::unique_ptr<host::MainWindow> window_;
};

} // namespace host_tests
