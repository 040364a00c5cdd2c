// The state of each box of an address, and its reason.
#include <QLineEdit>
#include <algorithm>

#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "form/AddressValidation.h"
#include "services/TagProperty.h"
#include "services/Text.h"

namespace ambrel {
namespace {

constexpr std::array everyBox{AddressBoxes::Box::Municipality, AddressBoxes::Box::Province,
                              AddressBoxes::Box::StreetType,   AddressBoxes::Box::Street,
                              AddressBoxes::Box::Number,       AddressBoxes::Box::PostalCode};

QString withoutMunicipality() { return QStringLiteral("Falta un municipio validado."); }
QString withoutStreet() { return QStringLiteral("Falta una vía validada."); }
QString unchecked() { return QStringLiteral("Se comprueba al salir de la casilla."); }

} // namespace

void AddressValidation::refreshStates() {
    std::vector<Box> changed;
    for (const Box box : everyBox) {
        QLineEdit* const edit = boxes_.at(box);
        if (!edit) {
            continue;
        }
        Status now = statusOf(box);
        // The Tags of municipality and street are codes, set where they are found.
        if (box != Box::Municipality && box != Box::Street) {
            setTag(*edit, now.state == State::Validated ? 1 : 0);
        }
        if (now == states_[index(box)]) {
            continue;
        }
        states_[index(box)] = std::move(now);
        changed.push_back(box);
    }
    for (const Box box : changed) {
        listener_(box);
    }
}

AddressValidation::Status AddressValidation::statusOf(Box box) const {
    if (text(box).isEmpty()) {
        return {};
    }
    switch (box) {
    case Box::Municipality:
        return municipalityStatus();
    case Box::Province:
        return provinceStatus();
    case Box::StreetType:
        return streetTypeStatus();
    case Box::Street:
        return streetStatus();
    case Box::Number:
        return numberStatus();
    case Box::PostalCode:
        return postalCodeStatus();
    }
    return {};
}

AddressValidation::Status AddressValidation::municipalityStatus() const {
    const bool isCompleted = tagOf(*boxes_.municipality) != 0 && !isNameShared_;
    if (municipality_ || isCompleted) {
        return {State::Validated, {}};
    }
    if (isUnchecked(Box::Municipality)) {
        return {State::NotValidated, unchecked()};
    }
    if (isNameShared_) {
        return {State::NotValidated,
                QStringLiteral("Hay varios municipios con este nombre: elija el suyo en la lista (F4).")};
    }
    return {State::NotValidated,
            isElsewhere_ ? QStringLiteral("No hay ningún municipio con este nombre en la provincia.")
                         : QStringLiteral("No está en la tabla de municipios.")};
}

AddressValidation::Status AddressValidation::provinceStatus() const {
    if (!municipality_) {
        return {State::NotValidated, withoutMunicipality()};
    }
    const QString shown = boxes_.province->text(); // with its blanks: a column stores them too
    QString first;
    for (const std::string& code : municipality_->provinces) {
        const QString name = LocalizaProvincia(fromWindows1252(code));
        if (name == shown) {
            return {State::Validated, {}};
        }
        if (first.isEmpty()) {
            first = name;
        }
    }
    return {State::NotValidated, QStringLiteral("El municipio es de la provincia %1.").arg(first)};
}

AddressValidation::Status AddressValidation::streetTypeStatus() const {
    if (isUnchecked(Box::StreetType)) {
        return {State::NotValidated, unchecked()};
    }
    if (!isTypeKnown_) {
        return {State::NotValidated, QStringLiteral("No está en la tabla de tipos de vía.")};
    }
    if (const QString reason = reasonOfType(); !reason.isEmpty()) {
        return {State::NotValidated, reason};
    }
    return {State::Validated, {}};
}

/// Why the street does not match, if its type differs from the one in the form.
QString AddressValidation::reasonOfType() const {
    const auto type = toWindows1252(text(Box::StreetType));
    const auto agrees = [&](const StreetStretch& one) { return one.type.empty() || one.type == type; };
    if (stretches_.empty() || text(Box::StreetType).isEmpty() || std::ranges::any_of(stretches_, agrees)) {
        return {};
    }
    const StreetStretch& street = stretches_.front();
    return QStringLiteral("La vía está en las tablas como «%1 %2».")
        .arg(fromWindows1252(street.type), fromWindows1252(street.name));
}

AddressValidation::Status AddressValidation::streetStatus() const {
    if (!municipality_) {
        return {State::NotValidated, withoutMunicipality()};
    }
    if (tagOf(*boxes_.street) != 0) {
        return {State::Validated, {}};
    }
    if (isUnchecked(Box::Street)) {
        return {State::NotValidated, unchecked()};
    }
    return {State::NotValidated, QStringLiteral("El municipio no tiene esta vía en las tablas.")};
}

AddressValidation::Status AddressValidation::numberStatus() const {
    if (stretches_.empty()) {
        return {State::NotValidated, withoutStreet()};
    }
    if (!code_) {
        return {State::NotValidated, unchecked()};
    }
    switch (code_->certainty) {
    case StreetCode::Certainty::Unclear:
        return {State::NotValidated, QStringLiteral("No se entiende como número de la vía.")};
    case StreetCode::Certainty::NoStretch:
        return {State::NotValidated, QStringLiteral("Ningún tramo de la vía tiene este número.")};
    default:
        return {State::Validated, {}};
    }
}

AddressValidation::Status AddressValidation::postalCodeStatus() const {
    if (!municipality_) {
        return {State::NotValidated, withoutMunicipality()};
    }
    std::string right;
    if (!stretches_.empty()) {
        if (!code_) {
            return {State::NotValidated, unchecked()};
        }
        switch (code_->certainty) {
        case StreetCode::Certainty::Sure:
            if (const QString reason = reasonOfType(); !reason.isEmpty() && !municipality_->hasOneCode) {
                return {State::NotValidated, reason};
            }
            right = code_->stretch.postalCode;
            break;
        case StreetCode::Certainty::NoNumber:
            return {State::NotValidated, QStringLiteral("La vía tiene varios códigos: depende del número.")};
        case StreetCode::Certainty::NoStretch:
        case StreetCode::Certainty::Unclear:
            return {State::NotValidated, QStringLiteral("El número no está en ningún tramo de la vía.")};
        case StreetCode::Certainty::Several:
            return {State::NotValidated,
                    QStringLiteral("Varios tramos de la vía, con códigos distintos, tienen este número.")};
        case StreetCode::Certainty::NoCode:
            return {State::NotValidated, QStringLiteral("La vía no tiene código en las tablas.")};
        }
    } else if (municipality_->hasOneCode) {
        right = municipality_->postalCodes.front();
    } else {
        return {State::NotValidated, withoutStreet()};
    }
    const QString code = fromWindows1252(right);
    if (boxes_.postalCode->text() == code) { // with its blanks: a column stores them too
        return {State::Validated, {}};
    }
    return {State::NotValidated, QStringLiteral("El código de esta dirección es %1.").arg(code)};
}

} // namespace ambrel
