// Taking suggestions into the boxes of an address.
#include <QLineEdit>
#include <QScopedValueRollback>
#include <algorithm>

#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "form/AddressValidation.h"
#include "form/SuggestionList.h"
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

} // namespace ambrel
