// Handling of leaving the boxes of an address.
#include "form/AddressValidation.h"

#include <QApplication>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <algorithm>
#include <utility>

#include "controller/BoxCompletion.h"
#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "dbase/dataset/go_to.h"
#include "dbase/dataset/row_walk.h"
#include "form/RecordBinding.h"
#include "form/TypedText.h"
#include "lookup/RutCodPostales.h"
#include "services/Rnumcad.h"
#include "services/Ruttb.h"
#include "services/TagProperty.h"
#include "services/Text.h"

namespace ambrel {
namespace {

constexpr bool mayAsk = true;

/// Passed to the controller to request a value: an empty text would stay empty.
const QString wanted = QStringLiteral(" ");

bool isInProvince(const Municipality& municipality, const QString& name) {
    return std::ranges::any_of(municipality.provinces, [&](const std::string& code) {
        return LocalizaProvincia(fromWindows1252(code)) == name;
    });
}

template<class Condition>
std::vector<Municipality> those(std::vector<Municipality> all, Condition condition) {
    std::erase_if(all, [&](const Municipality& one) { return !condition(one); });
    return all;
}

} // namespace

AddressValidation::AddressValidation(const AddressBoxes::Boxes& boxes, TClassCodPostales& controller,
                                     Listener listener)
    : boxes_(boxes), controller_(controller), listener_(std::move(listener)) {
    takeStored();
}

QString AddressValidation::text(Box box) const {
    const QLineEdit* edit = boxes_.at(box);
    return edit ? edit->text().simplified() : QString();
}

/// If the text is unchanged, keeps the caret and leaves the host's row out of edit.
void AddressValidation::write(Box box, const QString& text) {
    QLineEdit* const edit = boxes_.at(box);
    if (!edit || edit->text() == text) {
        return;
    }
    const QScopedValueRollback writing(isWriting_, true);
    edit->setText(text);
    seen_[index(box)] = edit->text(); // a row locked by another user restores its text
}

void AddressValidation::show(Box box, const QString& text) {
    write(box, text);
    if (box == Box::Province) {
        isProvinceTyped_ = false;
    }
    if (box == Box::PostalCode) {
        isCodeTyped_ = false;
    }
}

/// Removes blanks that came with a text: in a column they would push out its end.
void AddressValidation::tidy(Box box) { write(box, text(box)); }

void AddressValidation::noteTexts() {
    for (std::size_t box = 0; box < seen_.size(); ++box) {
        if (const QLineEdit* edit = boxes_.at(static_cast<Box>(box))) {
            seen_[box] = edit->text();
        }
    }
}

bool AddressValidation::beginEdit() { return !record_ || record_->beginEdit(); }

void AddressValidation::endUnchangedEdit() {
    if (record_) {
        record_->endUnchangedEdit();
    }
}

void AddressValidation::changed(Box box) {
    if (isWriting_ || boxes_.at(box)->text() == seen_[index(box)]) {
        return; // our own change, or already undone: another user holds the host's row
    }
    seen_[index(box)] = boxes_.at(box)->text();
    edited(box);
    followStep(box);
}

void AddressValidation::edited(Box box) {
    isChanged_[index(box)] = true;
    isTried_[index(box)] = false;
    setTag(*boxes_.at(box), 0);
    switch (box) {
    case Box::Municipality:
        municipality_.reset();
        isNameShared_ = isElsewhere_ = false;
        forgetStreet();
        break;
    case Box::Province:
        isProvinceTyped_ = true;
        break;
    case Box::StreetType:
        isTypeKnown_ = false;
        code_.reset();
        break;
    case Box::Street:
        stretches_.clear();
        code_.reset();
        break;
    case Box::Number:
        code_.reset();
        break;
    case Box::PostalCode:
        isCodeTyped_ = true;
        break;
    }
    refreshStates();
}

void AddressValidation::complete(Box box, std::uint16_t& key, Qt::KeyboardModifiers modifiers) {
    constexpr auto commands = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    if (!isChanged_[index(box)]) {
        return; // a key that changed nothing, such as one that was refused or typed into a read-only box
    }
    if ((modifiers & commands) || QApplication::activeModalWidget()) {
        return; // a shortcut, or the key that opened a list now using the same tables
    }
    if (box == Box::Municipality) {
        controller_.OrdenaPorNombreMunicipi();
        controller_.KeyUpMunicipi(boxes_.municipality, key, modifiers);
        isNameShared_ = tagOf(*boxes_.municipality) != 0 &&
                        directory_.municipalitiesNamed(bytesOf(text(Box::Municipality))).size() > 1;
    } else if (municipality_ && completesStreet(key)) {
        std::optional<NamedCompletion> completion;
        if (const auto typed = editedText(*boxes_.street)) {
            if (const auto street =
                    directory_.streetBeginning(*municipality_, typed->text, bytesOf(text(Box::StreetType)))) {
                if (const auto shown = ambrel::complete(*typed, street->name)) {
                    completion = NamedCompletion{*shown, Cad_Int(street->key)};
                }
            }
        }
        showCompletion(*boxes_.street, completion);
    }
    refreshStates();
}

void AddressValidation::leave(Box box) {
    if (std::exchange(isChanged_[index(box)], false)) {
        try {
            look(box);
        } catch (...) {
            isChanged_[index(box)] = true; // look it up when the box is left again
            refreshStates();
            throw;
        }
        refreshStates();
    }
    endUnchangedEdit();
}

void AddressValidation::look(Box box) {
    switch (box) {
    case Box::Municipality:
        return leaveMunicipality();
    case Box::Province:
        tidy(box);
        return leaveProvince();
    case Box::StreetType:
        return leaveStreetType();
    case Box::Street:
        return leaveStreet();
    case Box::Number:
        tidy(box);
        if (!stretches_.empty()) { // other users may have changed them since the street was left
            lookUpKnownStreet(Writing::NumbersCode);
        }
        return;
    case Box::PostalCode:
        return tidy(box);
    }
}

std::vector<Municipality> AddressValidation::candidates() {
    auto named = directory_.municipalitiesNamed(bytesOf(text(Box::Municipality)));
    isNameShared_ = named.size() > 1;
    // A province written by the program belongs to the previous municipality.
    if (isNameShared_ && isProvinceTyped_ && !text(Box::Province).isEmpty()) {
        named = those(std::move(named),
                      [&](const Municipality& one) { return isInProvince(one, text(Box::Province)); });
    }
    return named;
}

/// Moves MUNICIPI, in name order, to the row of a municipality with the name shown, or else to its first. If
/// another user has deleted it meanwhile, neither it nor the row in its place is taken.
void AddressValidation::adopt(const Municipality& municipality, const std::string& shownName) {
    auto& table = controller_.DM->tbMunicipi;
    const auto isIts = [&] { return controller_.DM->tbMunicipiCOD_INE.view() == municipality.ineCode; };
    controller_.OrdenaPorNombreMunicipi();
    const auto hasName = [&] { return controller_.DM->tbMunicipiNOMBRE.view() == shownName; };
    if (!TBBusca(table, {{"NOMBRE", shownName}}, exactSearch) || !dbase::walkTo(table, hasName, isIts)) {
        controller_.OrdenaPorCodIneMunicipi();
        dbase::goToIfThere(table, {{"COD_INE", municipality.ineCode}});
        controller_.OrdenaPorNombreMunicipi();
    }
    if (isIts()) {
        return adoptCurrentMunicipality();
    }
    municipality_.reset();
    setTag(*boxes_.municipality, 0);
}

void AddressValidation::adoptCurrentMunicipality() {
    const std::string code = controller_.DM->tbMunicipiCOD_INE.text();
    municipality_ = directory_.municipality(code);
    municipalityRow_ = controller_.DM->tbMunicipi.bookmark();
    isNameShared_ = false;
    setTag(*boxes_.municipality, municipality_ ? Cad_Int(code) : 0);
}

void AddressValidation::leaveMunicipality() {
    if (const auto found = candidates(); found.size() == 1) {
        adopt(found.front(), bytesOf(text(Box::Municipality)));
        if (municipality_) {
            show(Box::Municipality, fromWindows1252(controller_.DM->tbMunicipiNOMBRE.view()));
        }
    } else {
        setTag(*boxes_.municipality, 0);
        goToMunicipality();
    }
    fillFromMunicipality(mayAsk);
}

void AddressValidation::leaveProvince() {
    if (municipality_ || text(Box::Municipality).isEmpty()) {
        return;
    }
    if (const auto found = candidates(); found.size() == 1) {
        adopt(found.front(), bytesOf(text(Box::Municipality)));
        isChanged_[index(Box::Municipality)] = false;
        fillFromMunicipality(!mayAsk);
    }
}

/// Writes the province and, if it is the only one, the postal code. Asks about an unknown municipality.
void AddressValidation::fillFromMunicipality(bool asks) {
    QString province = wanted, postalCode = wanted;
    {
        const QScopedValueRollback writing(isWriting_, true);
        controller_.ExitMunicipi(boxes_.municipality, province, postalCode, asks);
        seen_[index(Box::Municipality)] = boxes_.municipality->text();
    }
    if (tagOf(*boxes_.municipality) != 0 && !municipality_) {
        adoptCurrentMunicipality(); // chosen from the list
    }
    if (!municipality_) {
        return;
    }
    if (province != wanted) {
        show(Box::Province, province);
    }
    municipalityChanged();
    if (postalCode != wanted) {
        show(Box::PostalCode, postalCode);
    }
}

void AddressValidation::municipalityChanged() {
    const QString code = fromWindows1252(municipality_->ineCode);
    const QString before = std::exchange(streetMunicipality_, code);
    if (before == code) {
        return lookUpStreet(Writing::Nothing); // the same as before the edit
    }
    isCodeTyped_ = isCodeTyped_ && before.isEmpty(); // otherwise it was typed for the previous one
    forgetStreet();
}

void AddressValidation::takeMunicipality() {
    if (!beginEdit()) {
        return; // the boxes show the row that another user holds
    }
    show(Box::Municipality, fromWindows1252(controller_.DM->tbMunicipiNOMBRE.view()));
    isChanged_[index(Box::Municipality)] = false;
    adoptCurrentMunicipality();
    fillFromMunicipality(!mayAsk);
    refreshStates();
    endUnchangedEdit();
}

void AddressValidation::goToMunicipality() {
    const TDMCodPostales& tables = *controller_.DM;
    controller_.OrdenaPorNombreMunicipi();
    if (municipality_) {
        if (!controller_.DM->tbMunicipi.goTo(municipalityRow_) ||
            tables.tbMunicipiCOD_INE.view() != municipality_->ineCode) {
            adopt(Municipality(*municipality_), bytesOf(text(Box::Municipality)));
        }
    } else if (const std::string name = bytesOf(text(Box::Municipality)); !name.empty()) {
        dbase::goToNearest(controller_.DM->tbMunicipi, {{"NOMBRE", name}});
    }
}

void AddressValidation::take(Box box, const QString& chosen) {
    if (!beginEdit()) {
        return;
    }
    show(box, chosen);
    isProvinceTyped_ = isProvinceTyped_ || box == Box::Province;
    isChanged_[index(box)] = true;
    leave(box);
}

void AddressValidation::takeStored() {
    isChanged_.fill(false);
    isTried_.fill(false);
    noteTexts();
    isProvinceTyped_ = isCodeTyped_ = isNameShared_ = isElsewhere_ = isTypeKnown_ = false;
    steps_.fill(std::nullopt);
    municipality_.reset();
    streetMunicipality_.clear();
    setTag(*boxes_.municipality, 0);
    auto found = directory_.municipalitiesNamed(bytesOf(text(Box::Municipality)));
    isNameShared_ = found.size() > 1;
    if (const QString province = text(Box::Province); !province.isEmpty() && !found.empty()) {
        found = those(std::move(found), [&](const Municipality& one) { return isInProvince(one, province); });
        isElsewhere_ = found.empty();
    }
    if (found.size() > 1) {
        found = those(std::move(found), [&](const Municipality& one) {
            return one.hasPostalCode(bytesOf(text(Box::PostalCode)));
        });
    }
    if (found.size() == 1) {
        adopt(found.front(), bytesOf(text(Box::Municipality)));
        streetMunicipality_ = fromWindows1252(found.front().ineCode);
    }
    isTypeKnown_ = isStreetType(bytesOf(text(Box::StreetType)));
    lookUpStreet(Writing::Nothing);
    refreshStates();
}

} // namespace ambrel
