// A customer's address on the screen: the boxes, their labels and their validation marks.
#pragma once

#include <QHash>
#include <QWidget>

#include "form/AddressBoxes.h"
#include "host/ValidationMark.h"

class QGridLayout;
class QLineEdit;

namespace host {

/// The boxes of the form.
struct FormBoxes {
    QLineEdit* name = nullptr;
    ambrel::AddressBoxes::Boxes address;
    QLineEdit* floor = nullptr;
};

/// Lays the boxes out; knows nothing of tables, lists or validation. A box's Tag says whether its text is
/// validated.
class AddressForm : public QWidget {
    Q_OBJECT
public:
    explicit AddressForm(QWidget* parent = nullptr);

    [[nodiscard]] const FormBoxes& boxes() const { return boxes_; }
    [[nodiscard]] const ambrel::AddressBoxes::ListButtons& listButtons() const { return buttons_; }
    /// Shows beside a box why its text is not validated; an empty reason removes it.
    void showReason(const QLineEdit* box, const QString& reason);

private:
    struct Place {
        int row, column, columns;
    };
    struct BoxDetails {
        const char* objectName;
        QString label; // including its mnemonic
        bool hasMark;
        ValidationMark::Kind kind;
        const char* listButton = nullptr; // objectName of the button that opens the box's list
        QAbstractButton** button = nullptr;
    };

    QLineEdit* addBox(const BoxDetails& details, const Place& place);
    [[nodiscard]] QAbstractButton* listButton(const BoxDetails& details);

    QGridLayout* grid_;
    FormBoxes boxes_;
    ambrel::AddressBoxes::ListButtons buttons_;
    QHash<const QLineEdit*, ValidationMark*> marks_;
};

} // namespace host
