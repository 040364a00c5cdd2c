// Texts of an offered address.
#include "form/AddressOffer.h"

#include <algorithm>

#include "services/Text.h"

namespace ambrel {
namespace {

using Box = AddressBoxes::Box;

QString joined(const QString& one, const QString& other, const QString& between) {
    return one.isEmpty() || other.isEmpty() ? one + other : one + between + other;
}

QString quoted(const QString& text) { return QStringLiteral("«%1»").arg(text); }

const AddressChange* changeOf(const JudgedAddress& judged, JudgedPart part) {
    const auto found = std::ranges::find(judged.changes, part, &AddressChange::part);
    return found != judged.changes.end() ? &*found : nullptr;
}

/// What was changed, and what was added, in two sentences. Provinces are judged by their digits, which say
/// nothing to users; their box says more.
QStringList remarksOnChanges(const AddressOffer& offer) {
    QStringList corrected, added;
    for (const AddressChange& change : offer.judged.changes) {
        const bool isCode = change.part == JudgedPart::PostalCode;
        if (change.part == JudgedPart::Province || (isCode && offer.judged.verdict == Verdict::OtherCode)) {
            continue;
        }
        const QString to = fromWindows1252(change.to);
        if (change.from.empty()) {
            added << QStringLiteral("%1 %2").arg(fromWindows1252(std::string(partName(change.part))), to);
        } else {
            corrected << QStringLiteral("%1 por %2").arg(quoted(fromWindows1252(change.from)), quoted(to));
        }
    }
    QStringList remarks;
    const QString between = QStringLiteral(", ");
    if (!corrected.isEmpty()) {
        remarks << QStringLiteral("Se corrigió %1.").arg(corrected.join(between));
    }
    if (!added.isEmpty()) {
        remarks << QStringLiteral("Se añadió %1.").arg(added.join(between));
    }
    return remarks;
}

QString shownAlternatives(const JudgedAddress& judged) {
    QStringList shown;
    for (const AddressAlternative& one : judged.alternatives) {
        const QString street = joined(fromWindows1252(one.type), fromWindows1252(one.street), " ");
        QString place = fromWindows1252(one.municipality);
        if (one.postalCodes.size() == 1) {
            place = fromWindows1252(one.postalCodes.front()) + QLatin1Char(' ') + place;
        }
        shown << joined(street, place, QStringLiteral(", "));
    }
    return shown.join(QStringLiteral("; "));
}

QString remarkOnVerdict(const AddressOffer& offer) {
    const JudgedAddress& judged = offer.judged;
    switch (judged.verdict) {
    case Verdict::Correct:
        return QStringLiteral("Está así en las tablas.");
    case Verdict::Completed:
    case Verdict::Corrected:
        return {}; // the changes say it
    case Verdict::OtherCode:
        return QStringLiteral("El código dado es de otra calle: el de esta dirección es %1.")
            .arg(fromWindows1252(judged.postalCode));
    case Verdict::NoNumber:
        return QStringLiteral("La vía tiene varios códigos: depende del número.");
    case Verdict::NumberOutside:
        return QStringLiteral("Ningún tramo de la vía tiene el número %1.").arg(offer.number);
    case Verdict::Doubtful:
        return QStringLiteral("No es seguro de qué vía se trata.");
    case Verdict::UnknownStreet:
        return QStringLiteral("%1 no tiene esta vía en las tablas.").arg(offer.municipality);
    case Verdict::Ambiguous:
        return QStringLiteral("Hay varias direcciones que pueden ser ésta.");
    case Verdict::UnknownMunicipality:
        return QStringLiteral("El municipio no está en las tablas.");
    case Verdict::BrokenRow:
    case Verdict::Empty:
        break;
    }
    return fromWindows1252(judged.reason);
}

} // namespace

QString AddressOffer::text(Box box) const {
    switch (box) {
    case Box::Municipality:
        return municipality;
    case Box::Province:
        return province;
    case Box::StreetType:
        return type;
    case Box::Street:
        return street;
    case Box::Number:
        return number;
    case Box::PostalCode:
        return postalCode;
    }
    return {};
}

AddressOffer offerOf(const JudgedAddress& judged, const QString& province) {
    AddressOffer offer{judged,
                       fromWindows1252(judged.municipality),
                       province,
                       fromWindows1252(judged.type),
                       fromWindows1252(judged.street),
                       fromWindows1252(judged.number),
                       fromWindows1252(judged.rest),
                       fromWindows1252(judged.postalCode)};
    if (judged.verdict == Verdict::OtherCode) {
        if (const AddressChange* const change = changeOf(judged, JudgedPart::PostalCode)) {
            offer.postalCode = fromWindows1252(change->from);
        }
    }
    return offer;
}

void fitInto(AddressOffer& offer, const AddressBoxes::Boxes& boxes) {
    if (!boxes.rest && boxes.number) {
        offer.number = joined(offer.number, offer.rest, QStringLiteral(", "));
        offer.rest.clear();
    }
    if (!boxes.streetType && boxes.street && offer.judged.key.empty()) {
        offer.street = joined(offer.type, offer.street, QStringLiteral(" ")); // as it was written
        offer.type.clear();
    }
}

std::vector<std::pair<QString, QString>> shownParts(const AddressOffer& offer) {
    QString place = offer.municipality;
    if (!offer.province.isEmpty()) {
        place += QStringLiteral(" (%1)").arg(offer.province);
    }
    std::vector<std::pair<QString, QString>> parts{
        {QStringLiteral("Municipio"), place},
        {QStringLiteral("Vía"), joined(offer.type, offer.street, QStringLiteral(" "))},
        {QStringLiteral("Número"), offer.number},
        {QStringLiteral("Piso y resto"), offer.rest},
        {QStringLiteral("Código postal"), offer.postalCode}};
    std::erase_if(parts, [](const auto& part) { return part.second.isEmpty(); });
    return parts;
}

QStringList remarksOn(const AddressOffer& offer) {
    QStringList remarks{remarkOnVerdict(offer)};
    remarks << remarksOnChanges(offer);
    if (!isSettled(offer.judged.verdict)) {
        if (const QString others = shownAlternatives(offer.judged); !others.isEmpty()) {
            remarks << QStringLiteral("Puede ser: %1.").arg(others);
        }
        remarks << QStringLiteral("Lo dudoso quedará sin validar.");
    }
    remarks.removeAll(QString());
    return remarks;
}

QString remarkOnLostParts(const AddressOffer& offer, const AddressBoxes::Boxes& boxes) {
    QStringList lost;
    for (const auto& [box, text] :
         {std::pair(boxes.streetType, offer.type), std::pair(boxes.street, offer.street),
          std::pair(boxes.number, offer.number), std::pair(boxes.rest, offer.rest),
          std::pair(boxes.postalCode, offer.postalCode)}) {
        if (!box && !text.isEmpty()) {
            lost << quoted(text);
        }
    }
    return lost.isEmpty() ? QString()
                          : QStringLiteral("No hay casilla para %1.").arg(lost.join(QStringLiteral(", ")));
}

} // namespace ambrel
