// Whole addresses that were pasted into one box of a form.
#pragma once

#include <QString>
#include <memory>
#include <optional>

#include "form/AddressBoxes.h"
#include "form/AddressOffer.h"
#include "form/OfferStrip.h"

namespace ambrel {

class AddressValidation;
class AddressValidator;

/// Understands what was pasted, and takes it into the boxes. Not installed: internal to AddressBoxes.
class AddressOffers {
public:
    explicit AddressOffers(AddressValidation& validation);
    ~AddressOffers();

    void enable(bool isWanted) { isWanted_ = isWanted; }
    /// What to say about a text in a box, of which `piece` was pasted; null if neither is a whole address.
    [[nodiscard]] std::optional<OfferTexts> offer(AddressBoxes::Box box, const QString& text,
                                                  const QString& piece);
    /// Takes the address that was offered last. False if another user holds the host's row.
    bool take(AddressBoxes::Box box);
    /// Takes an address that was judged elsewhere.
    bool take(const JudgedAddress& judged);

private:
    [[nodiscard]] bool isName(AddressBoxes::Box box, const QString& text) const;
    [[nodiscard]] std::optional<JudgedAddress> whole(const QString& text);
    [[nodiscard]] AddressOffer made(const JudgedAddress& judged);
    [[nodiscard]] QString replaced(AddressBoxes::Box box, const QString& left,
                                   const AddressOffer& offer) const;

    AddressValidation& validation_;
    std::unique_ptr<AddressValidator> validator_; // made when it is needed
    std::optional<AddressOffer> last_;
    bool isWanted_ = true;
};

} // namespace ambrel
