// Street, type and number, and the postal code they lead to.
#include <QLineEdit>
#include <QScopedValueRollback>
#include <algorithm>
#include <utility>

#include "address/GivenReadings.h"
#include "controller/ClasCodPostales.h"
#include "controller/StreetCard.h"
#include "data/CodPostalesDM.h"
#include "dbase/system/error.h"
#include "form/AddressValidation.h"
#include "form/TypedText.h"
#include "lookup/RutCodPostales.h"
#include "services/Rnumcad.h"
#include "services/Ruttb.h"
#include "services/TagProperty.h"
#include "services/Text.h"

namespace ambrel {
namespace {

constexpr bool mayAskForList = true;

/// Abbreviation of the street type named by a text: the text itself, or that of the type with this whole
/// name. Errors: those of opening TIPO_VIA.
std::optional<std::string> streetTypeNamed(const std::string& text) {
    StreetCardTables tables;
    for (const StreetType& type : tables.streetTypes()) {
        if (text == type.code || text == type.name || text == type.name.substr(0, type.name.find(','))) {
            return type.code;
        }
    }
    return std::nullopt;
}

} // namespace

/// Marks the text in the street's box for lookup in another municipality when the box is left.
void AddressValidation::forgetStreet() {
    stretches_.clear();
    code_.reset();
    if (boxes_.street) {
        setTag(*boxes_.street, 0);
        isChanged_[index(Box::Street)] = !text(Box::Street).isEmpty();
        isTried_[index(Box::Street)] = false;
    }
}

void AddressValidation::leaveStreetType() {
    const QString typed = text(Box::StreetType);
    isTypeKnown_ = false;
    if (!typed.isEmpty()) {
        const auto code = streetTypeNamed(bytesOf(typed));
        QString name, chosen;
        if (code) {
            chosen = fromWindows1252(*code);
        } else {
            chosen = Tipo_Via2(name, typed);
        }
        isTypeKnown_ = !chosen.isEmpty();
        if (isTypeKnown_) {
            show(Box::StreetType, chosen);
        }
    }
    if (!stretches_.empty() || isChanged_[index(Box::Street)]) {
        lookUpStreet(Writing::StreetsCode);
    }
}

void AddressValidation::leaveStreet() {
    if (text(Box::Street).isEmpty()) {
        setTag(*boxes_.street, 0);
        return;
    }
    if (!municipality_) {
        setTag(*boxes_.street, 0);
        isChanged_[index(Box::Street)] = true; // look it up once there is one
        return;
    }
    lookUpStreet(Writing::StreetsCode);
    if (!municipality_) {
        isChanged_[index(Box::Street)] = true; // the municipality is gone
    } else if (stretches_.empty()) {
        askAboutStreet();
    }
}

void AddressValidation::lookUpStreet(Writing writing) {
    stretches_.clear();
    code_.reset();
    if (!boxes_.street) {
        return;
    }
    setTag(*boxes_.street, 0);
    if (!municipality_) {
        return;
    }
    municipality_ = directory_.municipality(municipality_->ineCode); // others may have added a postal code
    if (!municipality_) {
        return setTag(*boxes_.municipality, 0);
    }
    stretches_ = stretchesOfType(directory_.stretches(*municipality_, bytesOf(text(Box::Street))),
                                 bytesOf(text(Box::StreetType)));
    if (stretches_.empty()) {
        return;
    }
    setTag(*boxes_.street, Cad_Int(stretches_.front().key));
    isChanged_[index(Box::Street)] = false;
    if (writing == Writing::StreetsCode) {
        show(Box::Street, fromWindows1252(stretches_.front().name));
    }
    findCode(writing);
}

/// The same for a chosen street: keeps its Tag while the street still has that row.
void AddressValidation::lookUpKnownStreet(Writing writing) {
    const int chosen = boxes_.street ? tagOf(*boxes_.street) : 0;
    lookUpStreet(writing);
    if (std::ranges::any_of(stretches_,
                            [&](const StreetStretch& one) { return Cad_Int(one.key) == chosen; })) {
        setTag(*boxes_.street, chosen);
    }
}

void AddressValidation::lookUpAgain() {
    lookUpKnownStreet(Writing::Nothing);
    refreshStates();
}

void AddressValidation::askAboutStreet() {
    if (!beginEdit()) {
        return;
    }
    QLineEdit& box = *boxes_.street;
    const QString typed = box.text();
    const auto name = normalized(typed);
    goToMunicipality();
    goToStreet();
    if (name) {
        show(Box::Street, fromWindows1252(*name)); // what is stored can be found again
    }
    {
        const QScopedValueRollback writing(isWriting_, true);
        controller_.ExitDireccionPostal(&box, nullptr, nullptr, mayAskForList, codeForNewStreet(),
                                        typeForNewStreet());
        seen_[index(Box::Street)] = box.text();
    }
    switch (controller_.typedStreet()) {
    case TClassCodPostales::TypedStreet::Added:
        takeAddedStreet();
        return;
    case TClassCodPostales::TypedStreet::Chosen:
        takeStreet();
        return;
    case TClassCodPostales::TypedStreet::NotAdded:
        isChanged_[index(Box::Street)] = true; // so that the user can try again
        break;
    case TClassCodPostales::TypedStreet::Known:
    case TClassCodPostales::TypedStreet::Unknown:
        break;
    }
    setTag(box, 0);
    show(Box::Street, typed);
    goToMunicipality();
}

/// The postal code typed by the user or the only possible one, but not one left from another street, nor a
/// text that the column would cut.
QString AddressValidation::codeForNewStreet() const {
    if (municipality_ && municipality_->hasOneCode) {
        return fromWindows1252(municipality_->postalCodes.front());
    }
    return isCodeTyped_ ? fromWindows1252(readPostalCode(bytesOf(text(Box::PostalCode)))) : QString();
}

/// The abbreviation in the tables; none for a text that nobody has settled, which the column would cut.
QString AddressValidation::typeForNewStreet() const {
    const auto code = streetTypeNamed(bytesOf(text(Box::StreetType).toUpper()));
    return code ? fromWindows1252(*code) : QString();
}

/// The card may have given the street another name or type, and has moved the municipality cursor.
void AddressValidation::takeAddedStreet() {
    show(Box::Street, fromWindows1252(controller_.DM->tbPostalVIA.view()));
    const QString type = fromWindows1252(controller_.DM->tbPostalTIPO_VIA.view());
    isTypeKnown_ = !type.isEmpty();
    if (isTypeKnown_) { // else what the user has typed stays
        show(Box::StreetType, type);
    }
    goToMunicipality();
    lookUpStreet(Writing::StreetsCode);
}

/// Shows the municipality that a chosen street has brought with it.
void AddressValidation::showAdopted() {
    if (municipality_) {
        streetMunicipality_ = fromWindows1252(municipality_->ineCode);
    }
    show(Box::Municipality, fromWindows1252(controller_.DM->tbMunicipiNOMBRE.view()));
    show(Box::Province, LocalizaProvincia(fromWindows1252(controller_.DM->tbMunicipiCODPOSTAL.view())));
    isChanged_[index(Box::Municipality)] = false;
}

/// The list covers all of Spain: a street of another municipality brings that municipality with it.
void AddressValidation::takeStreet() {
    if (!beginEdit()) {
        return;
    }
    const TDMCodPostales& tables = *controller_.DM;
    const QString type = fromWindows1252(tables.tbPostalTIPO_VIA.view());
    const QString code = fromWindows1252(tables.tbPostalCODPOSTAL.view());
    const dbase::Bookmark row = tables.tbPostal.bookmark();
    const int key = tables.tbPostalCODIGO1.integer();
    const std::string name = tables.tbPostalVIA.text();
    const auto isIn = [&](const Municipality& municipality) {
        return std::ranges::any_of(directory_.stretches(municipality, name),
                                   [&](const StreetStretch& one) { return one.record == row.record(); });
    };
    if (!municipality_ || !isIn(*municipality_)) {
        const dbase::Field* ineCode = controller_.DM->tbPostal.findField("COD_INE");
        const auto own = ineCode ? directory_.municipality(ineCode->text()) : std::nullopt;
        if (own && isIn(*own)) {
            adopt(*own, own->name);
        } else {
            adoptCurrentMunicipality();
        }
        showAdopted();
    }
    show(Box::Street, fromWindows1252(name));
    show(Box::StreetType, type);
    isTypeKnown_ = !type.isEmpty();
    show(Box::PostalCode, code);
    isChanged_[index(Box::Street)] = isChanged_[index(Box::StreetType)] = false;
    lookUpStreet(Writing::Nothing);
    if (!stretches_.empty()) {
        setTag(*boxes_.street, key);
    }
    findCode(Writing::NumbersCode);
    refreshStates();
    endUnchangedEdit();
}

/// A text that the tables cannot hold is not "no number".
HouseNumber AddressValidation::houseNumber() const {
    const auto bytes = normalized(text(Box::Number));
    return bytes ? readHouseNumber(*bytes) : HouseNumber{.kind = HouseNumber::Kind::Unclear};
}

/// Finds the stretch of street and number, and writes its postal code. If no number selects one, a street
/// that was just looked up brings the code of its first stretch.
void AddressValidation::findCode(Writing writing) {
    code_.reset();
    if (stretches_.empty()) {
        return;
    }
    const HouseNumber number = houseNumber();
    code_ = streetCode(stretches_, municipality_->ineCode, number);
    controller_.OrdenaPorViaPostal();
    controller_.DM->tbPostal.goTo(dbase::Bookmark(code_->stretch.record));
    using Certainty = StreetCode::Certainty;
    const bool isNumbers = number.isKnown() && code_->certainty != Certainty::NoStretch;
    if (writing == Writing::StreetsCode || (writing == Writing::NumbersCode && isNumbers)) {
        if (!code_->stretch.postalCode.empty()) {
            show(Box::PostalCode, fromWindows1252(code_->stretch.postalCode));
        }
    }
}

void AddressValidation::goToStreet() {
    controller_.OrdenaPorViaPostal();
    if (code_ && controller_.DM->tbPostal.goTo(dbase::Bookmark(code_->stretch.record))) {
        return;
    }
    controller_.BuscaEnPostal(text(Box::Street), text(Box::StreetType), nearestSearch);
}

bool AddressValidation::isStreetType(const std::string& code) const {
    try {
        return !code.empty() && streetTypeNamed(code) == code;
    } catch (const dbase::Error&) {
        return false; // without the table no type is known; leaving the box reports why
    }
}

} // namespace ambrel
