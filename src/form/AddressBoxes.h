// The boxes of an address in a host's form, wired as a whole: completed while they are typed, looked up when
// they are left, and each with a state that says whether its text can be relied on.
#pragma once

#include <QObject>
#include <QString>
#include <memory>

#include "AmbrelExport.h"

class QAbstractButton;
class QLineEdit;
class TClassCodPostales;

namespace ambrel {

class AddressLists;
class AddressValidation;
class RecordBinding;

/// Makes edit boxes of a host's form an address: typing rules, completion, what entering and leaving does, F4
/// and list buttons, questions about what is not known, and the boxes' Tags. The host connects nothing else
/// to their keys and focus. A text is changed by the user, by a choice of his, or to what the tables write
/// for it; the postal code also follows street and number. Nothing is looked up again while nobody has
/// changed it.
///
/// Tag of the municipality's box: its INE code; of the street's: `CODIGO1` as a number; of the others: 1. 0
/// says that the text is not validated. Failures are shown to the user.
class AMBREL_EXPORT AddressBoxes : public QObject {
    Q_OBJECT
public:
    /// The parts of an address that have a box.
    enum class Box { Municipality, Province, StreetType, Street, Number, PostalCode };
    Q_ENUM(Box)
    /// What a box's text can be relied on for.
    enum class State { Empty, Validated, NotValidated };
    Q_ENUM(State)

    /// As far as the host has them; null for the others. Only the municipality must be there.
    struct Boxes {
        QLineEdit* municipality = nullptr;
        QLineEdit* province = nullptr;
        QLineEdit* streetType = nullptr;
        QLineEdit* street = nullptr;
        QLineEdit* number = nullptr;
        QLineEdit* postalCode = nullptr;

        /// The box of a part; null where the host has none.
        [[nodiscard]] QLineEdit* at(Box box) const;
    };
    /// As far as the host has them; null for the others.
    struct ListButtons {
        QAbstractButton* municipality = nullptr;
        QAbstractButton* province = nullptr;
        QAbstractButton* streetType = nullptr;
        QAbstractButton* street = nullptr;
    };

    /// Works on the tables of database "DB" with a controller of its own, whose dialogs belong to the window
    /// of the boxes. Errors: dbase::Error for a table that cannot be opened.
    explicit AddressBoxes(const Boxes& boxes, QObject* parent = nullptr);
    /// With the host's controller, which must outlive it.
    AddressBoxes(const Boxes& boxes, TClassCodPostales& controller, QObject* parent = nullptr);
    ~AddressBoxes() override;

    /// Makes buttons open the lists, as F4 does in the boxes.
    void setListButtons(const ListButtons& buttons);
    /// The boxes belong to a row of the host's table: a row that it shows is taken for a stored address, and
    /// what others keep from being edited is not written. It must outlive the boxes' wiring.
    void setRecord(RecordBinding& record);

    /// Empty for a box that the host does not have.
    [[nodiscard]] State state(Box box) const;
    /// Why a text is not validated, in a sentence for the user; empty otherwise.
    [[nodiscard]] QString reason(Box box) const;
    /// The controller: its tables stand on the municipality and the stretch of the address, where it is
    /// known.
    [[nodiscard]] TClassCodPostales& controller() const;

    // --- For commands of the host.
    /// Does what leaving the focused box does: call it before a command that saves or leaves the address.
    void settle();
    /// The host has put the texts of a stored address into the boxes: looks them up, without a question and
    /// without changing them.
    void takeStored();
    /// Opens the list of a box; number and postal code have none.
    void openList(Box box);
    /// Opens the card of the street; tells the user where none is known.
    void openStreetCard();

Q_SIGNALS:
    /// A box has another state or reason.
    void stateChanged(ambrel::AddressBoxes::Box box);

private:
    void wire(const Boxes& boxes, TClassCodPostales& controller);
    void fasten(QLineEdit& edit, Box box, bool completes);
    void leave(Box box);

    std::unique_ptr<TClassCodPostales> own_; // null where the host has one
    std::unique_ptr<AddressValidation> validation_;
    std::unique_ptr<AddressLists> lists_;
    struct Events;
    std::unique_ptr<Events> events_; // goes first: handlers use all of the above
};

} // namespace ambrel
