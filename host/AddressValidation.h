// The wiring of the address form to the postal-code controller.
#pragma once

#include <QObject>
#include <QPointer>
#include <cstdint>
#include <vector>

#include "dbase/dataset_types.h"
#include "host/AddressForm.h"
#include "host/AddressMarks.h"

class TClassCodPostales;

namespace host {

struct HostTable;
class RecordBinding;

/// Completes municipality and street while they are typed, settles each box when it is left, and keeps the
/// Tags. The street is looked for only in a municipality that is known, and the number only in a known
/// street: a text that names nothing leaves no other address's postal code behind. What the user does with a
/// text that is not known is asked once, when its box is left after a change.
class AddressValidation : public QObject {
    Q_OBJECT
public:
    AddressValidation(const AddressBoxes& boxes, HostTable& table, RecordBinding& binding,
                      TClassCodPostales& controller, QObject* parent = nullptr);
    ~AddressValidation() override;

    /// Does what leaving the focused box does, for a command that does not move the focus.
    void settleFocusedBox();
    /// Does what leaving a box does, for a text that was chosen from a list.
    void settle(const QLineEdit& box);
    /// Takes over the street that POSTAL stands on, and the municipality that MUNICIPI stands on as its own.
    void takeStreet();
    /// Finds out again whether the street box names a street of the form's municipality.
    void lookUpStreet();
    /// Puts POSTAL, ordered by street, on the first row of the form's street, or near it.
    void goToStreet();
    /// Whether POSTAL stands on a street that users added.
    [[nodiscard]] bool isAtUserStreet() const;

private:
    enum class Questions { No, Yes };
    using Leave = void (AddressValidation::*)();
    struct Watched {
        QPointer<QLineEdit> box; // null when the form went first
        Leave leave;
    };

    void watch(QLineEdit* box, Leave leaveBox);
    void leave(Leave leaveBox);
    void completeMunicipality(std::uint16_t& key, Qt::KeyboardModifiers modifiers);
    void completeStreet(std::uint16_t& key, Qt::KeyboardModifiers modifiers);

    void lookUpMunicipality();
    void leaveMunicipality();
    void leaveStreetType();
    void leaveStreet();
    void settleStreet(Questions questions);
    void takeAnswer(const dbase::Bookmark& municipality);
    void leaveNumber();
    void leavePlain() {}

    void settleStoredAddress();
    void takeMunicipality();
    void findStreetAgain();

    AddressBoxes boxes_;
    HostTable& table_;
    RecordBinding& binding_;
    TClassCodPostales& controller_;
    AddressMarks marks_;
    std::vector<Watched> watched_;
    int settledMunicipality_ = 0; // for which the street was looked up
    QString settledStreetType_;
    QString askedMunicipality_, askedStreet_; // for which the user has answered, or that were stored
};

} // namespace host
