// Judges pasted texts.
#include "form/AddressOffers.h"

#include <QLineEdit>
#include <algorithm>
#include <array>

#include "address/AddressValidator.h"
#include "controller/ProvinceName.h"
#include "dbase/system/error.h"
#include "form/AddressValidation.h"
#include "services/Text.h"

namespace ambrel {
namespace {

using Box = AddressBoxes::Box;

constexpr std::size_t keptNames = std::size_t{16} << 20; // pasting is rare

/// Whether a text is an address rather than a name that could be taken for one: "Camino de Madrid".
bool isWhole(const JudgedAddress& judged, const QString& text) {
    if (judged.street.empty() || (judged.municipality.empty() && judged.postalCode.empty())) {
        return false;
    }
    const bool isFound = judged.verdict >= Verdict::NumberOutside;
    const bool hasDigits = std::ranges::any_of(text, [](QChar letter) { return letter.isDigit(); });
    return isFound || (hasDigits && !(judged.ineCode.empty() && judged.postalCode.empty()));
}

/// Whether an address is understood better than another one. Of two settled ones that leaves less over.
bool isBetter(const JudgedAddress& one, const JudgedAddress& other) {
    if (isSettled(one.verdict) && isSettled(other.verdict)) {
        return one.rest.size() < other.rest.size();
    }
    return one.verdict > other.verdict;
}

} // namespace

AddressOffers::AddressOffers(AddressValidation& validation) : validation_(validation) {}

AddressOffers::~AddressOffers() = default;

/// Whether the box's own look-up knows the text.
bool AddressOffers::isName(Box box, const QString& text) const {
    return box == Box::Municipality ? validation_.isMunicipality(text) : validation_.isStreet(text);
}

AddressOffer AddressOffers::made(const JudgedAddress& judged) {
    AddressOffer offer = offerOf(judged, fromWindows1252(provinceName(judged.province)));
    fitInto(offer, validation_.boxes());
    return offer;
}

/// The address that a text is as a whole; null if it is not one.
std::optional<JudgedAddress> AddressOffers::whole(const QString& text) {
    if (!validator_) {
        validator_ = std::make_unique<AddressValidator>("DB", ValidationOptions{.memory = keptNames});
    }
    JudgedAddress judged = validator_->validate({.line = toNearestWindows1252(text)});
    return isWhole(judged, text) ? std::optional(std::move(judged)) : std::nullopt;
}

/// What was pasted beside a text that stays is taken alone, unless both together make sense.
std::optional<OfferTexts> AddressOffers::offer(Box box, const QString& text, const QString& piece) {
    last_.reset();
    QString left; // beside the address
    try {
        if (!isWanted_ || isName(box, text)) {
            return std::nullopt;
        }
        std::optional<JudgedAddress> judged = whole(text);
        if (piece != text) {
            if (auto alone = whole(piece); alone && (!judged || isBetter(*alone, *judged))) {
                judged = std::move(alone);
                left = QString(text).remove(text.indexOf(piece), piece.size()).simplified();
            }
        }
        if (!judged) {
            return std::nullopt;
        }
        last_ = made(*judged);
    } catch (const dbase::Error&) {
        return std::nullopt; // leaving the box reports it: pasting works without the offer
    }
    OfferTexts texts{shownParts(*last_), remarksOn(*last_), isSettled(last_->judged.verdict)};
    texts.remarks << remarkOnLostParts(*last_, validation_.boxes()) << replaced(box, left, *last_);
    if (losesCharacters(text)) {
        texts.remarks << QStringLiteral("Los signos que las tablas no guardan se pierden.");
    }
    texts.remarks.removeAll(QString());
    return texts;
}

/// What the other boxes hold and would lose, and the box itself, where `left` stands beside the address.
QString AddressOffers::replaced(Box box, const QString& left, const AddressOffer& offer) const {
    constexpr std::array order{Box::Municipality, Box::Province, Box::StreetType,
                               Box::Street,       Box::Number,   Box::PostalCode};
    QStringList lost;
    const auto note = [&](const QString& old, const QString& text) {
        if (!old.isEmpty() && old != text) {
            lost << QStringLiteral("«%1»").arg(old);
        }
    };
    for (const Box one : order) {
        note(one == box ? left : validation_.text(one), offer.text(one));
    }
    if (const QLineEdit* const rest = validation_.boxes().rest) {
        note(rest->text().simplified(), offer.rest);
    }
    return lost.isEmpty() ? QString()
                          : QStringLiteral("Se sustituye %1.").arg(lost.join(QStringLiteral(", ")));
}

bool AddressOffers::take(Box box) { return last_ && validation_.take(*last_, box); }

bool AddressOffers::take(const JudgedAddress& judged) {
    return validation_.take(made(judged), Box::Municipality);
}

} // namespace ambrel
