// The controller's operations that open dialogs, and leaving the street box, which may open the street
// dialogs.
#include <QLineEdit>
#include <utility>

#include "controller/ClasCodPostales.h"
#include "controller/StreetSearch.h"
#include "data/CodPostalesDM.h"
#include "dialogs/BuscarDireccionPostal.h"
#include "dialogs/BuscarMunicipios.h"
#include "dialogs/FichaVia.h"
#include "dialogs/common/ModalDialog.h"
#include "services/EventGuard.h"
#include "services/Mensaje.h"
#include "services/Ruttb.h"
#include "services/TagProperty.h"
#include "services/Text.h"

using ambrel::fromWindows1252;
using ambrel::setTag;
using ambrel::tagOf;
using ambrel::toNearestWindows1252;
using ambrel::toWindows1252;

namespace {

/// Tag of the street box for a street just inserted: known, whatever its key.
constexpr int justInserted = 1;

bool isYes(const QString& question) {
    return Mensaje_SiNo(question, QStringLiteral("ATENCIÓN"), QStringLiteral("Atención")) == answeredYes;
}

/// Shows a list in which the user may change the table's order. True if a row was chosen, which stays current
/// in the previous order.
template<class List, class... Arguments>
bool isChosenFrom(dbase::Dataset& table, QWidget* owner, Arguments&&... arguments) {
    const std::string tagBefore = table.tag();
    const bool accepted =
        ambrel::ModalDialog<List>(owner, std::forward<Arguments>(arguments)...).isAcceptedByTag();
    if (table.tag() != tagBefore) {
        const dbase::Bookmark chosen = table.bookmark();
        TBIndexa(tagBefore, table);
        table.goTo(chosen);
    }
    return accepted;
}

} // namespace

bool TClassCodPostales::BuscarMunicipios() {
    return isChosenFrom<TFBuscarMunicipios>(DM->tbMunicipi, Padre, *this);
}

bool TClassCodPostales::BuscarDireccionPostal(bool standalone) {
    return isChosenFrom<TFBuscarDireccionPostal>(DM->tbPostal, Padre, *this, standalone);
}

void TClassCodPostales::MuestraFichaVia(TOperacion operation, const QString& municipality) {
    const QString postalCode = fromWindows1252(DM->tbMunicipiCODPOSTAL.view());
    OrdenaPorCodPostalMunicipi();
    // Deliberate: makes the first municipality with this postal code current, whichever was current before.
    BuscaPorCodPostalMunicipi(postalCode, exactSearch);
    OrdenaPorNombreMunicipi();
    const bool isCardsOwn = DM->tbPostal.state() == dbase::DatasetState::Browse;
    ambrel::ModalDialog<TFFichaVia> card(Padre, *this, operation,
                                         fromWindows1252(DM->tbMunicipiCOD_INE.view()), municipality);
    card.show();
    // The user knows of a row that could not be stored. Kept, it would pass for the current street, and a
    // changed one would keep its lock.
    if (isCardsOwn) {
        DM->tbPostal.cancel();
    }
}

void TClassCodPostales::ExitDireccionPostal(QLineEdit* sender, dbase::Field* postalCodeField, dbase::Field*,
                                            bool ask, const QString& newPostalCode, const QString& type) {
    if (!sender) {
        return;
    }
    typedStreet_ = TypedStreet::Known;
    ambrel::runGuarded([&] {
        if (sender->text().trimmed().isEmpty()) {
            setTag(*sender, 0);
        } else if (tagOf(*sender) != 0) {
            goToRowOfType(sender->text(), type);
        } else if (isYes(QStringLiteral("¿Desea insertarla como una nueva via?"))) {
            addTypedStreet(*sender, newPostalCode, type);
        } else if (!ask || !isYes(QStringLiteral("¿Desea ver la lista de direcciones actuales?")) ||
                   !takeListedStreet(*sender)) {
            typedStreet_ = TypedStreet::Unknown;
        }
        if (tagOf(*sender) != 0 && postalCodeField) {
            postalCodeField->setText(DM->tbPostalCODPOSTAL.text());
        }
    });
}

void TClassCodPostales::goToRowOfType(const QString& street, const QString& type) {
    const auto name = toWindows1252(street);
    const auto code = toWindows1252(type);
    if (name && code) {
        ambrel::chooseStreetType(*DM, *name, *code);
    }
}

void TClassCodPostales::addTypedStreet(QLineEdit& box, const QString& postalCode, const QString& type) {
    typedStreet_ = TypedStreet::NotAdded;
    if (AnadirVia()) {
        DM->tbPostalVIA.setText(toNearestWindows1252(box.text()));
        DM->tbPostalCODPOSTAL.setText(toNearestWindows1252(postalCode));
        DM->tbPostalTIPO_VIA.setText(toNearestWindows1252(type));
        setTag(box, justInserted);
        if (AceptarVia()) {
            typedStreet_ = TypedStreet::Added;
            MuestraFichaVia(opModificacion, fromWindows1252(DM->tbMunicipiNOMBRE.view()));
            return;
        }
        // A street that was not stored has no card, and the text is not a known street.
        setTag(box, 0);
    }
    showStreetFailure();
}

bool TClassCodPostales::takeListedStreet(QLineEdit& box) {
    if (!BuscarDireccionPostal(false)) {
        return false;
    }
    typedStreet_ = TypedStreet::Chosen;
    box.setText(fromWindows1252(DM->tbPostalVIA.view()));
    setTag(box, DM->tbPostalCODIGO1.integer());
    return true;
}
