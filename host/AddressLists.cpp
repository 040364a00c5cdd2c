#include "host/AddressLists.h"

#include <QLineEdit>

#include "dialogs/TipoViasLista.h"
#include "dialogs/common/FormKeys.h"
#include "host/AddressValidation.h"
#include "lookup/RutCodPostales.h"
#include "package/AmbCodPostales.h"

namespace host {
namespace {

constexpr bool nearest = false;
constexpr int provinces = 1; // group of PROVIN
constexpr int firstProvince = 1;

/// The street types for as long as their list is shown.
class StreetTypeModule {
public:
    StreetTypeModule() {
        module_.tbTipo_Via.setTag("CODIGO");
        module_.tbTipo_Via.open();
        DMVias = &module_;
    }
    ~StreetTypeModule() { DMVias = nullptr; }
    StreetTypeModule(const StreetTypeModule&) = delete;
    StreetTypeModule& operator=(const StreetTypeModule&) = delete;

    void goNear(const QString& abbreviation) {
        (void)module_.tbTipo_Via.seek({{"CODIGO", ambrel::toNearestWindows1252(abbreviation)}},
                                      dbase::SeekMode::Nearest);
    }
    [[nodiscard]] QString abbreviation() const {
        return ambrel::fromWindows1252(module_.tbTipo_ViaCODIGO.text());
    }

private:
    TDMVias module_;
};

} // namespace

AddressLists::AddressLists(const AddressForm& form, TClassCodPostales& controller,
                           AddressValidation& validation, QObject* parent)
    : QObject(parent), boxes_(form.boxes()), controller_(controller), validation_(validation) {
    connect(&form, &AddressForm::listWanted, this, ambrel::guarded([this](const QLineEdit* box) {
        if (box == boxes_.municipality)
            chooseMunicipality();
        else if (box == boxes_.province)
            chooseProvince();
        else if (box == boxes_.streetType)
            chooseStreetType();
    }));
}

void AddressLists::chooseMunicipality() {
    QLineEdit& box = *boxes_.municipality;
    box.setFocus(); // leaves the box that was being typed in first
    auto& municipalities = controller_.DM->tbMunicipi;
    const dbase::Bookmark before = municipalities.bookmark();
    controller_.OrdenaPorNombreMunicipi();
    if (ambrel::tagOf(box) == 0 && !box.text().trimmed().isEmpty())
        controller_.BuscaPorNombreMunicipi(box.text().trimmed(), nearest);
    if (!controller_.BuscarMunicipios()) {
        municipalities.goTo(before); // the form's municipality, where there is one
        return;
    }
    box.setText(ambrel::fromWindows1252(controller_.DM->tbMunicipiNOMBRE.text()));
    ambrel::setTag(box, controller_.DM->tbMunicipiCOD_INE.integer());
    validation_.settle(box);
}

void AddressLists::chooseProvince() {
    QLineEdit& box = *boxes_.province;
    box.setFocus();
    int code = Config.GetProvin();
    if (ambrel::tagOf(*boxes_.municipality) != 0)
        code = controller_.DM->tbMunicipiCOD_PROV.integer();
    QString name;
    int group = provinces;
    // Without an initial code the list would offer countries as well.
    SeleccionaProvincia(name, group, tr("Provincias"), tr("  Provincia del cliente  "),
                        code != 0 ? code : firstProvince);
    if (group == 0)
        return; // nothing was chosen; the host's own province is no answer to this box
    box.setText(name);
    validation_.settle(box);
}

void AddressLists::chooseStreetType() {
    QLineEdit& box = *boxes_.streetType;
    box.setFocus();
    StreetTypeModule types;
    types.goNear(box.text());
    TFTipoViasLista list(box.window());
    if (list.exec() != ambrel::acceptedResult)
        return;
    box.setText(types.abbreviation());
    validation_.settle(box);
}

} // namespace host
