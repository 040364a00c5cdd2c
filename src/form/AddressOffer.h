// A judged address as the boxes of a form would take it, and what has to be said about it.
#pragma once

#include <QString>
#include <QStringList>
#include <utility>
#include <vector>

#include "address/JudgedAddress.h"
#include "form/AddressBoxes.h"

namespace ambrel {

/// The texts for the boxes, in window texts. Not installed: internal to AddressBoxes.
struct AddressOffer {
    JudgedAddress judged;
    QString municipality, province, type, street, number, rest, postalCode;

    [[nodiscard]] QString text(AddressBoxes::Box box) const;
};

/// `province`: the name of the judged address's. A postal code that contradicts the address stays as it was
/// given: nobody knows which of the two is wrong.
[[nodiscard]] AddressOffer offerOf(const JudgedAddress& judged, const QString& province);

/// Where the parts go that have no box of their own: floor and what was not understood follow the number,
/// where the form has no box for them.
void fitInto(AddressOffer& offer, const AddressBoxes::Boxes& boxes);

/// What the boxes would hold, as pairs of a label and a text; empty parts are left out.
[[nodiscard]] std::vector<std::pair<QString, QString>> shownParts(const AddressOffer& offer);

/// The verdict in words: what was changed, what contradicts, what is missing. Whole sentences.
[[nodiscard]] QStringList remarksOn(const AddressOffer& offer);

/// The parts that would be lost because the form has no box for them, as a sentence; empty if there are none.
[[nodiscard]] QString remarkOnLostParts(const AddressOffer& offer, const AddressBoxes::Boxes& boxes);

} // namespace ambrel
