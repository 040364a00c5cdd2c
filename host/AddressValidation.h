// The wiring of the address form to the postal-code controller.
#pragma once

#include <QObject>
#include <QPointer>
#include <cstdint>
#include <vector>

#include "host/AddressForm.h"

class TClassCodPostales;

namespace host {

struct HostTable;
class RecordBinding;

/// Completes municipality and street while they are typed, settles each box when it is left, and keeps the
/// Tags. The street is looked for only in a municipality that is known, and the number only in a known
/// street: a text that names nothing leaves no other address's postal code behind.
class AddressValidation : public QObject {
    Q_OBJECT
public:
    AddressValidation(const AddressBoxes& boxes, HostTable& table, RecordBinding& binding,
                      TClassCodPostales& controller, QObject* parent = nullptr);
    ~AddressValidation() override;

    /// Does what leaving the focused box does, for a command that does not move the focus.
    void settleFocusedBox();

private:
    using Leave = void (AddressValidation::*)();
    struct Watched {
        QPointer<QLineEdit> box; // null when the form went first
        Leave leave;
    };

    void watch(QLineEdit* box, Leave leaveBox);
    void leave(Leave leaveBox);
    void completeMunicipality(std::uint16_t& key, Qt::KeyboardModifiers modifiers);
    void completeStreet(std::uint16_t& key, Qt::KeyboardModifiers modifiers);

    void leaveMunicipality();
    void leaveStreetType();
    void leaveStreet();
    void leaveNumber();
    void leavePlain() {}

    void settleStoredAddress();
    [[nodiscard]] bool goToStoredMunicipality();
    void findStreetAgain();
    [[nodiscard]] bool isAtStreet() const;
    [[nodiscard]] bool isAtNumber() const;
    void markNumber();
    void markWhatFollows();

    AddressBoxes boxes_;
    HostTable& table_;
    RecordBinding& binding_;
    TClassCodPostales& controller_;
    std::vector<Watched> watched_;
    int settledMunicipality_ = 0; // for which the street was looked up
    QString settledStreetType_;
};

} // namespace host
