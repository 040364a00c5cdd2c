// Opening the lists of an address.
#include "form/AddressLists.h"

#include <QLineEdit>

#include "controller/ClasCodPostales.h"
#include "controller/StreetKeyAllocation.h"
#include "data/CodPostalesDM.h"
#include "data/Province.h"
#include "data/ViasDM.h"
#include "dialogs/ProvList.h"
#include "dialogs/TipoViasLista.h"
#include "dialogs/common/ModalDialog.h"
#include "form/AddressValidation.h"
#include "lookup/ModuleScope.h"
#include "services/Confamb.h"
#include "services/Mensaje.h"
#include "services/Text.h"

namespace ambrel {
namespace {

using Box = AddressBoxes::Box;

constexpr int firstProvince = 1;

/// The street types while their list is shown.
class StreetTypeModule {
public:
    StreetTypeModule() {
        types().setTag("CODIGO");
        types().open();
    }

    void goNear(const QString& abbreviation) {
        (void)types().seek({{"CODIGO", toNearestWindows1252(abbreviation)}}, dbase::SeekMode::Nearest);
    }
    [[nodiscard]] QString abbreviation() { return fromWindows1252(module_.module().tbTipo_ViaCODIGO.text()); }

private:
    dbase::Dataset& types() { return module_.module().tbTipo_Via; }

    ModuleScope<TDMVias> module_{DMVias};
};

/// By the name in the box or, if there is no such province, by the code.
void goToProvince(dbase::Dataset& provinces, const QString& name, int code) {
    const std::string order = provinces.tag();
    provinces.setTag("ALFABETICO");
    const bool isFound = !name.isEmpty() &&
                         provinces.seek({{"PROVINCIA", toNearestWindows1252(name)}}, dbase::SeekMode::Exact);
    provinces.setTag(order); // the record stays
    if (!isFound && !provinces.seek({{"CODIGO", code}}, dbase::SeekMode::Exact)) {
        provinces.first();
    }
}

} // namespace

void AddressLists::open(Box box) {
    switch (box) {
    case Box::Municipality:
        return chooseMunicipality();
    case Box::Province:
        return chooseProvince();
    case Box::StreetType:
        return chooseStreetType();
    case Box::Street:
        return chooseStreet();
    case Box::Number:
    case Box::PostalCode:
        return;
    }
}

void AddressLists::chooseMunicipality() {
    validation_.boxes().municipality->setFocus(); // leaves the box being edited first
    validation_.goToMunicipality();
    if (validation_.controller().BuscarMunicipios()) {
        validation_.takeMunicipality();
    } else {
        validation_.goToMunicipality();
    }
}

void AddressLists::chooseProvince() {
    QLineEdit& box = *validation_.boxes().province;
    box.setFocus();
    int code = Config.GetProvin();
    if (validation_.state(Box::Municipality) == AddressBoxes::State::Validated) {
        code = validation_.controller().DM->tbMunicipiCOD_PROV.integer();
    }
    ModalDialog<TFProvList> list(nullptr);
    list->TProvin.open();
    // Without a code the list would also offer countries. It seeks the code as text, which finds none.
    list->Configura(QStringLiteral("Provincias"), QStringLiteral("  Provincia de la dirección  "),
                    firstProvince, provinceGroup);
    goToProvince(list->TProvin, validation_.text(Box::Province), code);
    if (list.isAccepted()) {
        validation_.take(Box::Province, list->chosenName());
    }
}

void AddressLists::chooseStreetType() {
    QLineEdit& box = *validation_.boxes().streetType;
    box.setFocus();
    StreetTypeModule types;
    types.goNear(box.text().trimmed());
    if (ModalDialog<TFTipoViasLista>(box.window()).isAccepted()) {
        validation_.take(Box::StreetType, types.abbreviation());
    }
}

void AddressLists::chooseStreet() {
    validation_.boxes().street->setFocus();
    const bool standalone = validation_.state(Box::Municipality) != AddressBoxes::State::Validated;
    if (!standalone) {
        validation_.goToMunicipality();
    }
    validation_.goToStreet();
    if (validation_.controller().BuscarDireccionPostal(standalone)) {
        validation_.takeStreet();
    } else {
        validation_.goToMunicipality();
        validation_.lookUpAgain(); // the street may have been changed or deleted in the list
    }
    validation_.boxes().street->setFocus();
}

void AddressLists::openCard() {
    TClassCodPostales& controller = validation_.controller();
    if (!validation_.isStreetKnown()) {
        Mensaje_Info(validation_.boxes().municipality->window(),
                     QStringLiteral("Elija antes una vía que esté en las tablas."),
                     QStringLiteral("Ficha de la vía"));
        return;
    }
    validation_.goToMunicipality();
    validation_.goToStreet();
    const bool isUsers = isUserKey(controller.DM->tbPostalCODIGO1.text());
    controller.MuestraFichaVia(isUsers ? opModificacion : opConsulta,
                               validation_.boxes().municipality->text());
    const dbase::Bookmark street = controller.DM->tbPostal.bookmark();
    validation_.goToMunicipality();
    if (isUsers && controller.DM->tbPostal.goTo(street)) {
        validation_.takeStreet();
    } else {
        validation_.lookUpAgain();
    }
}

} // namespace ambrel
