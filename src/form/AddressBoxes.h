// The boxes of an address in a host's form, wired as a whole: completed while typed into, looked up when
// left, each with a state that says whether its text is reliable.
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
class AddressOffers;
class AddressSuggestions;
class AddressValidation;
class RecordBinding;
class Suggestions;
struct JudgedAddress;

/// Makes edit boxes of a host's form an address: typing rules, completion, handling of entering and leaving,
/// F4 and list buttons, suggestions for texts that the look-up does not complete, questions about unknown
/// texts, and the boxes' Tags. A whole address that is pasted into the box of municipality or street is
/// offered for all boxes. The host connects nothing else to their keys and focus. A text changes only by the
/// user's typing or choice, or to the spelling in the tables; the postal code also follows street and number.
/// Nothing is looked up again unless it has changed.
///
/// Tag of the municipality's box: its INE code; of the street's: `CODIGO1` as a number; of the others: 1. 0
/// means that the text is not validated. Failures are shown to the user.
class AMBREL_EXPORT AddressBoxes : public QObject {
    Q_OBJECT
public:
    /// The parts of an address that have a box.
    enum class Box { Municipality, Province, StreetType, Street, Number, PostalCode };
    Q_ENUM(Box)
    /// Whether a box's text is reliable.
    enum class State { Empty, Validated, NotValidated };
    Q_ENUM(State)

    /// The host's boxes; null for those it lacks. Only the municipality is required.
    struct Boxes {
        QLineEdit* municipality = nullptr;
        QLineEdit* province = nullptr;
        QLineEdit* streetType = nullptr;
        QLineEdit* street = nullptr;
        QLineEdit* number = nullptr;
        QLineEdit* postalCode = nullptr;
        /// Floor, door and the like: free text, only written when a whole address is taken. Without it they
        /// follow the number.
        QLineEdit* rest = nullptr;

        /// The box of a part; null if the host has none.
        [[nodiscard]] QLineEdit* at(Box box) const;
    };
    /// The host's buttons; null for those it lacks.
    struct ListButtons {
        QAbstractButton* municipality = nullptr;
        QAbstractButton* province = nullptr;
        QAbstractButton* streetType = nullptr;
        QAbstractButton* street = nullptr;
    };

    /// Works on the tables of database "DB" with a controller of its own, whose dialogs belong to the window
    /// of the boxes. Errors: dbase::Error for a table that cannot be opened.
    explicit AddressBoxes(const Boxes& boxes, QObject* parent = nullptr);
    /// Uses the host's controller, which must outlive it.
    AddressBoxes(const Boxes& boxes, TClassCodPostales& controller, QObject* parent = nullptr);
    ~AddressBoxes() override;

    /// Makes the buttons open the lists, as F4 does in the boxes.
    void setListButtons(const ListButtons& buttons);
    /// Uses these suggestions under the boxes of municipality and street instead of its own, which are made
    /// on first use: forms may share an object. Null switches the lists of suggestions off.
    void setSuggestions(std::shared_ptr<Suggestions> suggestions);
    /// Whether a whole address that is pasted into one box is offered for all of them; on by default.
    void setPasteOffers(bool areWanted);
    /// Ties the boxes to a row of the host's table: a row it shows is taken as a stored address, and nothing
    /// is written to a row locked by other users. It must outlive the boxes' wiring.
    void setRecord(RecordBinding& record);

    /// State::Empty for a box that the host does not have.
    [[nodiscard]] State state(Box box) const;
    /// Why a text is not validated, as a sentence for the user; empty otherwise.
    [[nodiscard]] QString reason(Box box) const;
    /// The controller: its tables are positioned on the municipality and the stretch of the address, if
    /// known.
    [[nodiscard]] TClassCodPostales& controller() const;

    // --- For commands of the host.
    /// Does what leaving the focused box does: call it before a command that saves or leaves the address.
    void settle();
    /// Looks up a stored address that the host has put into the boxes, without asking and without changing
    /// the texts.
    void takeStored();
    /// Fills the boxes with an address that an AddressValidator has judged, as accepting a pasted one does:
    /// what is not certain is not validated, and nothing is asked. False if another user holds the row of
    /// the host.
    bool take(const JudgedAddress& judged);
    /// Opens the list of a box; number and postal code have none.
    void openList(Box box);
    /// Opens the card of the street; informs the user if none is known.
    void openStreetCard();

Q_SIGNALS:
    /// Emitted when the state or reason of a box changes.
    void stateChanged(ambrel::AddressBoxes::Box box);
    /// Emitted when the user has accepted a whole address that was pasted; the boxes hold it.
    void addressTaken();

private:
    void wire(const Boxes& boxes, TClassCodPostales& controller);
    void fasten(QLineEdit& edit, Box box, bool completes);
    void suggest(QLineEdit& edit, Box box);
    void offerPasted(QLineEdit& edit, Box box);
    void closeWindowsUnderBoxes();
    void leave(Box box);

    std::unique_ptr<TClassCodPostales> own_; // null if the host provides one
    std::unique_ptr<AddressValidation> validation_;
    std::unique_ptr<AddressLists> lists_;
    std::unique_ptr<AddressSuggestions> suggestions_;
    std::unique_ptr<AddressOffers> offers_;
    struct Events;
    std::unique_ptr<Events> events_; // destroyed first: handlers use all of the above
};

} // namespace ambrel
