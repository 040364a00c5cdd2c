#include "host/AddressValidation.h"

#include <QApplication>
#include <QLineEdit>

#include "host/HostTable.h"
#include "host/RecordBinding.h"
#include "host/StoredMunicipality.h"
#include "package/AmbCodPostales.h"

namespace host {
namespace {

using ambrel::setTag;
using ambrel::tagOf;

constexpr bool nearest = false;
constexpr bool mayAsk = true;
constexpr int justInserted = 1; // Tag of the street box right after a street was inserted from it

/// Handed to the controller for an answer that is wanted: an empty text would stay empty.
const QString wanted = QStringLiteral(" ");

bool isBlank(const QLineEdit& box) { return box.text().trimmed().isEmpty(); }

/// Whether the key being released has opened a list, which now works on the same tables.
bool opensList() { return QApplication::activeModalWidget() != nullptr; }

/// Keeps the caret, and the row unpended, where the text is the same already.
void replaceText(QLineEdit& box, const QString& text) {
    if (box.text() != text)
        box.setText(text);
}

} // namespace

AddressValidation::AddressValidation(const AddressBoxes& boxes, HostTable& table, RecordBinding& binding,
                                     TClassCodPostales& controller, QObject* parent)
    : QObject(parent), boxes_(boxes), table_(table), binding_(binding), controller_(controller),
      marks_(boxes, *controller.DM) {
    watch(boxes_.name, &AddressValidation::leavePlain);
    watch(boxes_.municipality, &AddressValidation::leaveMunicipality);
    watch(boxes_.province, &AddressValidation::leavePlain);
    watch(boxes_.streetType, &AddressValidation::leaveStreetType);
    watch(boxes_.street, &AddressValidation::leaveStreet);
    watch(boxes_.number, &AddressValidation::leaveNumber);
    watch(boxes_.floor, &AddressValidation::leavePlain);
    watch(boxes_.postalCode, &AddressValidation::leavePlain);
    ambrel::KeyUpEvents::watch(boxes_.municipality,
                               [this](std::uint16_t& key, Qt::KeyboardModifiers modifiers) {
                                   completeMunicipality(key, modifiers);
                               });
    ambrel::KeyUpEvents::watch(boxes_.street, [this](std::uint16_t& key, Qt::KeyboardModifiers modifiers) {
        completeStreet(key, modifiers);
    });
    connect(&binding_, &RecordBinding::rowShown, this, ambrel::guarded([this] { settleStoredAddress(); }));
}

AddressValidation::~AddressValidation() {
    for (const Watched& watched : watched_)
        if (watched.box)
            ambrel::FocusEvents::unwatch(watched.box);
}

void AddressValidation::watch(QLineEdit* box, Leave leaveBox) {
    watched_.push_back({box, leaveBox});
    ambrel::FocusEvents::watch(
        box, [box] { TomaFocoControl(box); },
        [this, box, leaveBox] {
            DejaFocoControl(box);
            leave(leaveBox);
        });
    // What the user changes is no validated text until a handler says so again.
    connect(box, &QLineEdit::textEdited, this, [box] { setTag(*box, 0); });
}

void AddressValidation::leave(Leave leaveBox) {
    ambrel::runGuarded([&] {
        (this->*leaveBox)();
        marks_.markWhatFollows();
        binding_.endUnchangedEdit();
    });
}

void AddressValidation::settleFocusedBox() {
    for (const Watched& watched : watched_)
        if (watched.box->hasFocus())
            leave(watched.leave);
}

void AddressValidation::settle(const QLineEdit& box) {
    for (const Watched& watched : watched_)
        if (watched.box == &box)
            leave(watched.leave);
}

void AddressValidation::completeMunicipality(std::uint16_t& key, Qt::KeyboardModifiers modifiers) {
    if (opensList())
        return;
    controller_.OrdenaPorNombreMunicipi();
    controller_.KeyUpMunicipi(boxes_.municipality, key, modifiers);
}

void AddressValidation::completeStreet(std::uint16_t& key, Qt::KeyboardModifiers modifiers) {
    if (tagOf(*boxes_.municipality) == 0 || opensList())
        return;
    controller_.OrdenaPorViaPostal();
    controller_.KeyUpDireccionPostal(boxes_.street, key, modifiers, boxes_.streetType->text());
}

/// A text that came without keys, as one pasted by mouse, has not been looked up yet.
void AddressValidation::lookUpMunicipality() {
    controller_.OrdenaPorNombreMunicipi();
    if (controller_.BuscaPorNombreMunicipi(boxes_.municipality->text(), exactSearch))
        setTag(*boxes_.municipality, controller_.DM->tbMunicipiCOD_INE.integer());
}

void AddressValidation::leaveMunicipality() {
    if (tagOf(*boxes_.municipality) == 0 && !isBlank(*boxes_.municipality))
        lookUpMunicipality();
    QString province = wanted;
    QString postalCode = wanted;
    const bool ask = boxes_.municipality->text() != askedMunicipality_;
    controller_.ExitMunicipi(boxes_.municipality, province, postalCode, ask);
    askedMunicipality_ = boxes_.municipality->text();
    if (province != wanted)
        replaceText(*boxes_.province, province);
    if (postalCode != wanted)
        replaceText(*boxes_.postalCode, postalCode);
    if (const int code = tagOf(*boxes_.municipality); code != settledMunicipality_) {
        settledMunicipality_ = code;
        findStreetAgain();
    }
}

void AddressValidation::leaveStreetType() {
    QLineEdit& box = *boxes_.streetType;
    if (box.text() == settledStreetType_)
        return;
    QString name;
    if (!isBlank(box))
        if (const QString chosen = Tipo_Via2(name, box.text()); !chosen.isEmpty())
            box.setText(chosen);
    settledStreetType_ = box.text();
    findStreetAgain();
}

void AddressValidation::findStreetAgain() {
    lookUpStreet();
    askedStreet_.clear();
    settleStreet(Questions::No); // it is not the street that is being left
}

void AddressValidation::goToStreet() {
    controller_.OrdenaPorViaPostal();
    controller_.BuscaEnPostal(boxes_.street->text(), boxes_.streetType->text(), nearest);
}

bool AddressValidation::isAtUserStreet() const {
    return StrLeft(controller_.DM->tbPostalCODIGO1.text(), 2) == "99";
}

void AddressValidation::lookUpStreet() {
    setTag(*boxes_.street, 0);
    if (tagOf(*boxes_.municipality) == 0 || isBlank(*boxes_.street))
        return;
    goToStreet();
    if (marks_.isAtStreet())
        setTag(*boxes_.street, controller_.DM->tbPostalCODIGO1.integer());
}

void AddressValidation::leaveStreet() {
    if (tagOf(*boxes_.street) == 0)
        lookUpStreet();
    settleStreet(Questions::Yes);
}

void AddressValidation::settleStreet(Questions questions) {
    QLineEdit& street = *boxes_.street;
    if (tagOf(*boxes_.municipality) == 0 || isBlank(street))
        setTag(street, 0);
    const bool isNews = questions == Questions::Yes && tagOf(street) == 0 && !isBlank(street) &&
                        tagOf(*boxes_.municipality) != 0 && street.text() != askedStreet_;
    if (tagOf(street) != 0 || isNews) {
        if (!binding_.beginEdit())
            return;
        const dbase::Bookmark municipality = controller_.DM->tbMunicipi.bookmark();
        controller_.ExitDireccionPostal(&street, &table_.postalCode, nullptr, mayAsk,
                                        boxes_.postalCode->text(), boxes_.streetType->text());
        if (isNews)
            takeAnswer(municipality);
    }
    if (questions == Questions::Yes)
        askedStreet_ = street.text();
    // A number that is there already says more about the postal code than the street does.
    leaveNumber();
}

/// What came of asking about a street that is not known: a new one, one from the list, or nothing. Card and
/// list leave the municipalities where they needed them.
void AddressValidation::takeAnswer(const dbase::Bookmark& municipality) {
    const int tag = tagOf(*boxes_.street);
    if (tag > justInserted) {
        takeStreet();
        return;
    }
    if (tag == justInserted && isAtUserStreet()) {
        // The card may have given it another name or type.
        replaceText(*boxes_.street, ambrel::fromWindows1252(controller_.DM->tbPostalVIA.text()));
        replaceText(*boxes_.streetType, ambrel::fromWindows1252(controller_.DM->tbPostalTIPO_VIA.text()));
        settledStreetType_ = boxes_.streetType->text();
    }
    controller_.DM->tbMunicipi.goTo(municipality);
    lookUpStreet();
}

void AddressValidation::takeStreet() {
    const TDMCodPostales& tables = *controller_.DM;
    replaceText(*boxes_.street, ambrel::fromWindows1252(tables.tbPostalVIA.text()));
    replaceText(*boxes_.streetType, ambrel::fromWindows1252(tables.tbPostalTIPO_VIA.text()));
    replaceText(*boxes_.postalCode, ambrel::fromWindows1252(tables.tbPostalCODPOSTAL.text()));
    setTag(*boxes_.street, tables.tbPostalCODIGO1.integer());
    settledStreetType_ = boxes_.streetType->text();
    askedStreet_ = boxes_.street->text();
    takeMunicipality();
}

/// The list of streets goes through all of Spain: the street brings its municipality along.
void AddressValidation::takeMunicipality() {
    const TDMCodPostales& tables = *controller_.DM;
    const int code = tables.tbMunicipiCOD_INE.integer();
    if (code == tagOf(*boxes_.municipality))
        return;
    replaceText(*boxes_.municipality, ambrel::fromWindows1252(tables.tbMunicipiNOMBRE.text()));
    replaceText(*boxes_.province,
                LocalizaProvincia(ambrel::fromWindows1252(tables.tbMunicipiCODPOSTAL.text())));
    setTag(*boxes_.municipality, code);
    settledMunicipality_ = code;
    askedMunicipality_ = boxes_.municipality->text();
}

void AddressValidation::leaveNumber() {
    setTag(*boxes_.number, 0);
    if (tagOf(*boxes_.street) == 0 || isBlank(*boxes_.number))
        return;
    goToStreet();
    if (!marks_.isAtStreet() || !binding_.beginEdit())
        return;
    controller_.ExitNumeroPostal(boxes_.number, &table_.postalCode);
    marks_.markNumber();
}

void AddressValidation::settleStoredAddress() {
    for (const Watched& watched : watched_)
        setTag(*watched.box, 0);
    if (goToStoredMunicipality(controller_, boxes_.municipality->text(), boxes_.postalCode->text())) {
        auto& municipalities = controller_.DM->tbMunicipi;
        const QString code = ambrel::fromWindows1252(controller_.DM->tbMunicipiCOD_INE.text());
        const dbase::Bookmark municipality = municipalities.bookmark();
        setTag(*boxes_.municipality, controller_.DM->tbMunicipiCOD_INE.integer());
        controller_.OrdenaPorViaPostal();
        controller_.SituaPrimerViaMunicipio(code, boxes_.street->text(), boxes_.streetType->text());
        // The search by code may have ended at another of the municipality's records.
        municipalities.goTo(municipality);
        if (!isBlank(*boxes_.street) && marks_.isAtStreet())
            setTag(*boxes_.street, controller_.DM->tbPostalCODIGO1.integer());
        if (tagOf(*boxes_.street) != 0 && !isBlank(*boxes_.number)) {
            controller_.ExitNumeroPostal(boxes_.number, nullptr);
            marks_.markNumber();
        }
    }
    settledMunicipality_ = tagOf(*boxes_.municipality);
    settledStreetType_ = boxes_.streetType->text();
    askedMunicipality_ = boxes_.municipality->text();
    askedStreet_ = boxes_.street->text();
    marks_.markWhatFollows();
}

} // namespace host
