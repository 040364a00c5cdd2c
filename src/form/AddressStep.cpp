// Undoing and redoing a choice that has changed several boxes.
#include "form/AddressStep.h"

#include <QLineEdit>

#include "form/AddressValidation.h"
#include "services/Rnumcad.h"
#include "services/TagProperty.h"

namespace ambrel {
namespace {

using Box = AddressBoxes::Box;

std::string codeOf(const std::optional<Municipality>& municipality) {
    return municipality ? municipality->ineCode : std::string();
}

} // namespace

AddressSnapshot AddressValidation::snapshot() const {
    AddressSnapshot now;
    for (std::size_t box = 0; box < now.texts.size(); ++box) {
        if (const QLineEdit* const edit = boxes_.at(static_cast<Box>(box))) {
            now.texts[box] = edit->text();
        }
    }
    if (boxes_.rest) {
        now.rest = boxes_.rest->text();
    }
    now.isChanged = isChanged_;
    now.isTried = isTried_;
    now.municipality = municipality_;
    now.municipalityRow = municipalityRow_;
    now.streetMunicipality = streetMunicipality_;
    now.streetTag = boxes_.street ? tagOf(*boxes_.street) : 0;
    now.isNameShared = isNameShared_;
    now.isTypeKnown = isTypeKnown_;
    now.isProvinceTyped = isProvinceTyped_;
    now.isCodeTyped = isCodeTyped_;
    return now;
}

void AddressValidation::beginStep(Box box) { steps_[index(box)] = AddressStep{snapshot(), {}}; }

void AddressValidation::endStep(Box box) {
    if (auto& step = steps_[index(box)]) { // none if a stored row has been shown meanwhile
        step->after = snapshot();
    }
}

/// The user has changed the text of a box. Its former text with something to redo comes from an undo.
void AddressValidation::followStep(Box box) {
    auto& step = steps_[index(box)];
    if (!step || !step->after) {
        return;
    }
    const QLineEdit& edit = *boxes_.at(box);
    if (!step->isUndone) {
        if (edit.text() == step->before.texts[index(box)] && edit.isRedoAvailable()) {
            step->isUndone = true;
            restore(box, *step->after, step->before);
        }
    } else if (edit.text() == step->after->texts[index(box)]) {
        step->isUndone = false;
        restore(box, step->before, *step->after);
    } else if (!edit.isRedoAvailable()) {
        step.reset(); // something else was typed
    }
}

void AddressValidation::restoreText(Box box, const AddressSnapshot& to) {
    show(box, to.texts[index(box)]);
    isChanged_[index(box)] = to.isChanged[index(box)];
    isTried_[index(box)] = to.isTried[index(box)];
    switch (box) {
    case Box::Province:
        isProvinceTyped_ = to.isProvinceTyped;
        break;
    case Box::StreetType:
        isTypeKnown_ = to.isTypeKnown;
        break;
    case Box::PostalCode:
        isCodeTyped_ = to.isCodeTyped;
        break;
    default:
        break;
    }
}

void AddressValidation::restoreMunicipality(const AddressSnapshot& to) {
    municipality_ = to.municipality;
    municipalityRow_ = to.municipalityRow;
    streetMunicipality_ = to.streetMunicipality;
    isNameShared_ = to.isNameShared;
    isChanged_[index(Box::Municipality)] = to.isChanged[index(Box::Municipality)];
    isTried_[index(Box::Municipality)] = to.isTried[index(Box::Municipality)];
    setTag(*boxes_.municipality, municipality_ ? Cad_Int(municipality_->ineCode) : 0);
}

/// Brings the other boxes from one moment of a step to the other one. What the user has changed since stays.
void AddressValidation::restore(Box box, const AddressSnapshot& from, const AddressSnapshot& to) {
    const bool hasMunicipality =
        box == Box::Municipality || codeOf(municipality_) == codeOf(from.municipality);
    for (std::size_t other = 0; other < to.texts.size(); ++other) {
        const auto which = static_cast<Box>(other);
        const QLineEdit* const edit = boxes_.at(which);
        if (which == box || !edit || edit->text() != from.texts[other]) {
            continue;
        }
        restoreText(which, to);
    }
    if (boxes_.rest && boxes_.rest->text() == from.rest) {
        boxes_.rest->setText(to.rest);
    }
    if (hasMunicipality && boxes_.municipality->text() == to.texts[index(Box::Municipality)]) {
        restoreMunicipality(to);
    }
    if (boxes_.street && boxes_.street->text() == to.texts[index(Box::Street)]) {
        isChanged_[index(Box::Street)] = to.isChanged[index(Box::Street)];
        isTried_[index(Box::Street)] = to.isTried[index(Box::Street)];
        setTag(*boxes_.street, to.streetTag);
        if (to.streetTag != 0 && !isChanged_[index(Box::Street)]) {
            return lookUpAgain();
        }
    }
    refreshStates();
}

} // namespace ambrel
