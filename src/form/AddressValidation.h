// Handles leaving the boxes of an address: looks up their texts, asks what to do about unknown ones, and
// keeps what the tables say about each.
#pragma once

#include <QString>
#include <array>
#include <functional>
#include <optional>
#include <vector>

#include "address/AddressDirectory.h"
#include "address/StreetCode.h"
#include "form/AddressBoxes.h"
#include "form/AddressStep.h"

class TClassCodPostales;

namespace ambrel {

struct AddressOffer;
struct SuggestedMunicipality;
struct SuggestedStreet;

/// Not installed: internal to AddressBoxes.
class AddressValidation {
public:
    using Box = AddressBoxes::Box;
    using State = AddressBoxes::State;
    /// Called when the state or reason of a box changes.
    using Listener = std::function<void(Box)>;

    AddressValidation(const AddressBoxes::Boxes& boxes, TClassCodPostales& controller, Listener listener);

    void setRecord(RecordBinding* record) { record_ = record; }
    [[nodiscard]] TClassCodPostales& controller() const { return controller_; }
    [[nodiscard]] const AddressBoxes::Boxes& boxes() const { return boxes_; }
    [[nodiscard]] State state(Box box) const { return states_[index(box)].state; }
    [[nodiscard]] QString reason(Box box) const { return states_[index(box)].reason; }
    /// Without blanks around it; empty if the host lacks the box.
    [[nodiscard]] QString text(Box box) const;
    /// The INE code of the validated municipality; else empty.
    [[nodiscard]] std::string ineCode() const {
        return municipality_ ? municipality_->ineCode : std::string();
    }
    /// Whether the user has written the province, not the program.
    [[nodiscard]] bool isProvinceTyped() const { return isProvinceTyped_; }

    // --- User actions.
    /// The text of a box has changed, by anything but this object.
    void changed(Box box);
    /// A key that may complete a text was released.
    void complete(Box box, std::uint16_t& key, Qt::KeyboardModifiers modifiers);
    /// Leaves a box; does nothing if it has not changed since it was last left.
    void leave(Box box);

    // --- Choices from a list; the controller's table is on the chosen row.
    void takeMunicipality();
    void takeStreet();
    /// Takes a text chosen for a box.
    void take(Box box, const QString& text);
    /// Takes a suggestion, whose texts Ctrl+Z undoes; nothing if its row is gone.
    void take(const SuggestedMunicipality& chosen);
    void take(const SuggestedStreet& chosen);
    /// Takes a whole address as if its parts had been typed and left, without asking; Ctrl+Z in the given box
    /// undoes it. False if another user holds the host's row.
    bool take(const AddressOffer& offer, Box box);

    /// Looks up a stored address.
    void takeStored();
    /// Looks street and number up again: the tables may have changed.
    void lookUpAgain();
    /// Moves MUNICIPI, in name order, to the form's municipality, or near the text if it is not validated.
    void goToMunicipality();
    /// Moves POSTAL, in street order, to the address's stretch, or near its street.
    void goToStreet();
    /// Whether a text is the name of a municipality, or of a street of the one in the form.
    [[nodiscard]] bool isMunicipality(const QString& name);
    [[nodiscard]] bool isStreet(const QString& name);
    [[nodiscard]] bool isStreetKnown() const { return !stretches_.empty(); }

private:
    struct Status {
        State state = State::Empty;
        QString reason;
        bool operator==(const Status&) const = default;
    };
    enum class Writing { Nothing, NumbersCode, StreetsCode };

    static std::size_t index(Box box) { return static_cast<std::size_t>(box); }
    void show(Box box, const QString& text);
    void write(Box box, const QString& text);
    void replace(Box box, const QString& text);
    void tidy(Box box);
    void noteTexts();
    void edited(Box box);
    // Steps that undo and redo take whole, in AddressStep.cpp.
    [[nodiscard]] AddressSnapshot snapshot() const;
    void beginStep(Box box);
    void endStep(Box box);
    void followStep(Box box);
    void restore(Box box, const AddressSnapshot& from, const AddressSnapshot& to);
    void restoreText(Box box, const AddressSnapshot& to);
    void restoreMunicipality(const AddressSnapshot& to);
    void look(Box box);
    [[nodiscard]] bool isUnchecked(Box box) const { return isChanged_[index(box)] && !isTried_[index(box)]; }
    bool beginEdit();
    void endUnchangedEdit();

    // Municipality.
    void leaveMunicipality();
    void leaveProvince();
    [[nodiscard]] std::vector<Municipality> candidates();
    void adopt(const Municipality& municipality, const std::string& shownName);
    void adoptCurrentMunicipality();
    [[nodiscard]] QString adoptOffered(const AddressOffer& offer);
    void showAdopted();
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
    [[nodiscard]] QString typeForNewStreet() const;
    [[nodiscard]] HouseNumber houseNumber() const;
    void findCode(Writing writing);

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
    QString streetMunicipality_;           // INE code for which the street was looked up
    bool isNameShared_ = false;            // several municipalities share the name in the box
    bool isElsewhere_ = false;             // the stored name is that of municipalities in other provinces
    std::vector<StreetStretch> stretches_; // of the street, while it is validated
    std::optional<StreetCode> code_;
    std::array<std::optional<AddressStep>, 6> steps_; // the last one made in each box
    bool isTypeKnown_ = false;
    bool isProvinceTyped_ = false, isCodeTyped_ = false; // by the user, since the program last wrote it
    std::array<bool, 6> isChanged_{};                    // not by us, and not looked up yet
    std::array<bool, 6> isTried_{};                      // looked up, but nobody has been asked about it
    std::array<QString, 6> seen_{};                      // texts whose change has been processed
    bool isWriting_ = false;                             // we are writing a text to a box
    std::array<Status, 6> states_{};
};

} // namespace ambrel
