// Taking suggestions and whole addresses into the boxes of an address.
#include <QLineEdit>
#include <QScopedValueRollback>
#include <algorithm>

#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "form/AddressOffer.h"
#include "form/AddressValidation.h"
#include "form/SuggestionList.h"
#include "form/TypedText.h"
#include "services/TagProperty.h"
#include "services/Text.h"
#include "suggest/Suggestions.h"

namespace ambrel {

/// Writes a text so that Ctrl+Z in its box gives back what was typed.
void AddressValidation::replace(Box box, const QString& text) {
    QLineEdit* const edit = boxes_.at(box);
    if (!edit || edit->text() == text) {
        return;
    }
    {
        const QScopedValueRollback writing(isWriting_, true);
        replaceText(*edit, text);
        seen_[index(box)] = edit->text();
    }
    write(box, text); // a validator may refuse as an edit what a program may show
}

void AddressValidation::take(const SuggestedMunicipality& chosen) {
    if (!beginEdit()) {
        return; // the boxes show the row that another user holds
    }
    if (const auto municipality = directory_.municipality(chosen.ineCode)) {
        beginStep(Box::Municipality);
        adopt(*municipality, chosen.isLocality ? chosen.found : chosen.name);
        if (municipality_) {
            replace(Box::Municipality, fromWindows1252(controller_.DM->tbMunicipiNOMBRE.view()));
            takeMunicipality();
            return endStep(Box::Municipality);
        }
    }
    endUnchangedEdit(); // another user has deleted it since it was shown
}

void AddressValidation::take(const SuggestedStreet& chosen) {
    if (!beginEdit()) {
        return;
    }
    const auto municipality =
        chosen.ineCode.empty() ? municipality_ : directory_.municipality(chosen.ineCode);
    const auto stretches =
        municipality ? directory_.stretches(*municipality, chosen.name) : std::vector<StreetStretch>();
    auto stretch = std::ranges::find(stretches, chosen.key, &StreetStretch::key);
    if (stretch == stretches.end()) {
        stretch = std::ranges::find(stretches, chosen.type, &StreetStretch::type);
    }
    if (stretch == stretches.end()) {
        return endUnchangedEdit(); // another user has deleted it since it was shown
    }
    beginStep(Box::Street);
    if (ineCode() != municipality->ineCode) {
        adopt(*municipality, municipality->name);
        if (!municipality_) { // deleted meanwhile
            refreshStates();
            return endUnchangedEdit();
        }
        showAdopted();
    }
    controller_.OrdenaPorViaPostal();
    controller_.DM->tbPostal.goTo(dbase::Bookmark(stretch->record));
    if (const QString number = fromWindows1252(chosen.number); !number.isEmpty() && boxes_.number) {
        replace(Box::Number, number);
        isChanged_[index(Box::Number)] = false;
    }
    replace(Box::Street, fromWindows1252(chosen.name));
    takeStreet();
    endStep(Box::Street);
}

/// Makes the municipality of an offered address the form's, if the tables have it. The name to be shown.
QString AddressValidation::adoptOffered(const AddressOffer& offer) {
    municipality_.reset();
    streetMunicipality_.clear();
    isNameShared_ = false;
    setTag(*boxes_.municipality, 0);
    const auto known = directory_.municipality(offer.judged.ineCode);
    if (!known) {
        isNameShared_ = directory_.municipalitiesNamed(bytesOf(offer.municipality)).size() > 1;
        return offer.municipality;
    }
    adopt(*known, offer.judged.municipality);
    if (!municipality_) { // deleted meanwhile
        return offer.municipality;
    }
    streetMunicipality_ = fromWindows1252(known->ineCode);
    return fromWindows1252(controller_.DM->tbMunicipiNOMBRE.view());
}

/// Every box gets its part or nothing: what is left of another address would make a wrong one. The look-ups
/// are those of leaving the boxes, so that the states are the same; their questions wait until the user
/// leaves a box whose text is unknown.
bool AddressValidation::take(const AddressOffer& offer, Box box) {
    if (!beginEdit()) {
        return false;
    }
    beginStep(box);
    isChanged_.fill(false);
    isTried_.fill(false);
    const QString name = adoptOffered(offer);
    for (std::size_t one = 0; one < seen_.size(); ++one) {
        const auto which = static_cast<Box>(one);
        const QString text = which == Box::Municipality ? name : offer.text(which);
        which == box ? replace(which, text) : show(which, text);
    }
    if (boxes_.rest) {
        boxes_.rest->setText(offer.rest);
    }
    isProvinceTyped_ = !municipality_ && !offer.province.isEmpty();
    isCodeTyped_ = !offer.postalCode.isEmpty();
    isTypeKnown_ = isStreetType(bytesOf(text(Box::StreetType)));
    lookUpStreet(Writing::Nothing);
    for (const Box which : {Box::Municipality, Box::Street}) {
        if (boxes_.at(which) && tagOf(*boxes_.at(which)) == 0 && !text(which).isEmpty()) {
            isChanged_[index(which)] = isTried_[index(which)] = true;
        }
    }
    endStep(box);
    refreshStates();
    endUnchangedEdit();
    return true;
}

bool AddressValidation::isMunicipality(const QString& name) {
    const auto bytes = normalized(name);
    return bytes && !directory_.municipalitiesNamed(*bytes).empty();
}

bool AddressValidation::isStreet(const QString& name) {
    const auto bytes = normalized(name);
    return bytes && municipality_ && !directory_.stretches(*municipality_, *bytes).empty();
}

} // namespace ambrel
