// A customer's address on the screen: the boxes, their labels and their validation marks.
#pragma once

#include <QWidget>

#include "dialogs/common/TypingRules.h"
#include "host/ValidationMark.h"

class QGridLayout;
class QLineEdit;

namespace host {

/// The boxes of the form, in the order of the Tab key.
struct AddressBoxes {
    QLineEdit* name = nullptr;
    QLineEdit* municipality = nullptr;
    QLineEdit* province = nullptr;
    QLineEdit* streetType = nullptr;
    QLineEdit* street = nullptr;
    QLineEdit* number = nullptr;
    QLineEdit* floor = nullptr;
    QLineEdit* postalCode = nullptr;
};

/// Lays the boxes out; knows neither tables, nor lists, nor what validates a text. A box's Tag says whether
/// its text is validated.
class AddressForm : public QWidget {
    Q_OBJECT
public:
    explicit AddressForm(QWidget* parent = nullptr);

    [[nodiscard]] const AddressBoxes& boxes() const { return boxes_; }

signals:
    /// The user wants to choose the text of a box from its list.
    void listWanted(QLineEdit* box);

private:
    struct Place {
        int row, column, columns;
    };
    struct BoxDetails {
        const char* objectName;
        QString label; // with its mnemonic
        int length;    // characters that may be typed
        ambrel::Capitals capitals;
        bool hasMark;
        ValidationMark::Kind kind;
        const char* listButton = nullptr; // objectName of the button that opens the box's list
    };

    QLineEdit* addBox(const BoxDetails& details, const Place& place);
    [[nodiscard]] QWidget* listButton(const BoxDetails& details, QLineEdit* box);

    QGridLayout* grid_;
    AddressBoxes boxes_;
};

} // namespace host
