// What leaving the boxes of an address does: looks their texts up, asks what is to become of unknown ones,
// and keeps what the tables say of each.
#pragma once

#include <QString>
#include <array>
#include <functional>
#include <optional>
#include <vector>

#include "address/AddressDirectory.h"
#include "address/StreetCode.h"
#include "form/AddressBoxes.h"

class TClassCodPostales;

namespace ambrel {

/// Not installed: the inside of AddressBoxes.
class AddressValidation {
public:
    using Box = AddressBoxes::Box;
    using State = AddressBoxes::State;
    /// Told when a box has another state or reason.
    using Listener = std::function<void(Box)>;

    AddressValidation(const AddressBoxes::Boxes& boxes, TClassCodPostales& controller, Listener listener);

    void setRecord(RecordBinding* record) { record_ = record; }
    [[nodiscard]] TClassCodPostales& controller() const { return controller_; }
    [[nodiscard]] const AddressBoxes::Boxes& boxes() const { return boxes_; }
    [[nodiscard]] State state(Box box) const { return states_[index(box)].state; }
    [[nodiscard]] QString reason(Box box) const { return states_[index(box)].reason; }

    // --- What the user does.
    /// Has changed the text of a box, as anybody may but this object.
    void changed(Box box);
    /// Has released a key that completes.
    void complete(Box box, std::uint16_t& key, Qt::KeyboardModifiers modifiers);
    /// Leaves a box; nothing happens to one that was not changed since it was left last.
    void leave(Box box);

    // --- What was chosen from a list, on whose row the controller's table stands.
    void takeMunicipality();
    void takeStreet();
    /// A text that was chosen for a box.
    void take(Box box, const QString& text);

    /// Looks a stored address up.
    void takeStored();
    /// Finds out again what is known of street and number: the tables may have changed.
    void lookUpAgain();
    /// Puts MUNICIPI on the form's municipality, by name; near the text where it is not validated.
    void goToMunicipality();
    /// Puts POSTAL, ordered by street, on the address's stretch, or near its street.
    void goToStreet();
    [[nodiscard]] bool isStreetKnown() const { return !stretches_.empty(); }

private:
    struct Status {
        State state = State::Empty;
        QString reason;
        bool operator==(const Status&) const = default;
    };
    enum class Writing { Nothing, NumbersCode, StreetsCode };

    static std::size_t index(Box box) { return static_cast<std::size_t>(box); }
    [[nodiscard]] QString text(Box box) const;
    void show(Box box, const QString& text);
    void write(Box box, const QString& text);
    void tidy(Box box);
    void noteTexts();
    void edited(Box box);
    void look(Box box);
    bool beginEdit();
    void endUnchangedEdit();

    // Municipality.
    void leaveMunicipality();
    void leaveProvince();
    [[nodiscard]] std::vector<Municipality> candidates();
    void adopt(const Municipality& municipality, const std::string& shownName);
    void adoptCurrentMunicipality();
    void fillFromMunicipality(bool mayAsk);
    void municipalityChanged();
    void forgetStreet();

    // Street, its type, number and postal code, in AddressStreet.cpp.
    [[nodiscard]] bool isStreetType(const std::string& code) const;
    void leaveStreetType();
    void leaveStreet();
    void lookUpStreet(Writing writing);
    void lookUpKnownStreet(Writing writing);
    void askAboutStreet();
    void takeAddedStreet();
    [[nodiscard]] QString codeForNewStreet() const;
    void settleCode(Writing writing);

    // States, in AddressStates.cpp.
    void refreshStates();
    [[nodiscard]] Status statusOf(Box box) const;
    [[nodiscard]] Status municipalityStatus() const;
    [[nodiscard]] Status provinceStatus() const;
    [[nodiscard]] Status streetTypeStatus() const;
    [[nodiscard]] QString reasonOfType() const;
    [[nodiscard]] Status streetStatus() const;
    [[nodiscard]] Status numberStatus() const;
    [[nodiscard]] Status postalCodeStatus() const;

    AddressBoxes::Boxes boxes_;
    TClassCodPostales& controller_;
    Listener listener_;
    RecordBinding* record_ = nullptr;
    AddressDirectory directory_;

    std::optional<Municipality> municipality_; // while its text is validated
    dbase::Bookmark municipalityRow_;
    QString settledMunicipality_;          // INE code for which the street was looked up
    bool isNameShared_ = false;            // several municipalities have the text that stands in the box
    std::vector<StreetStretch> stretches_; // of the street, while it is validated
    std::optional<StreetCode> code_;
    bool isTypeKnown_ = false;
    bool isProvinceTyped_ = false, isCodeTyped_ = false; // by the user, since the program wrote it last
    std::array<bool, 6> isChanged_{};                    // by others than us, and not looked up yet
    std::array<QString, 6> seen_{};                      // texts whose change is known
    bool isWriting_ = false;                             // a text of ours goes into a box
    std::array<Status, 6> states_{};
};

} // namespace ambrel
