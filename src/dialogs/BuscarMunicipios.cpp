// The list of municipalities that the controller shows.
#include "dialogs/BuscarMunicipios.h"

#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "dialogs/MunicipalityColumns.h"
#include "dialogs/MunicipalityListWiring.h"
#include "dialogs/common/FocusHelp.h"
#include "dialogs/common/FormKeys.h"
#include "dialogs/common/IncrementalSearch.h"
#include "dialogs/common/LastColumn.h"
#include "dialogs/common/ModalDialog.h"
#include "services/TagProperty.h"
#include "ui_BuscarMunicipios.h"

TFBuscarMunicipios::TFBuscarMunicipios(QWidget* owner, TClassCodPostales& controller)
    : QDialog(ambrel::dialogParent(owner)), controller_(controller),
      ui_(std::make_unique<Ui::TFBuscarMunicipios>()) {
    ui_->setupUi(this);
    ui_->DBGMUNICIPI->setColumns(ambrel::municipalityColumns());
    ui_->DBGMUNICIPI->setDataSource(&DSMunicipi);
    help_ = new ambrel::FocusHelp(*this, *ui_->SBAyuda);
    ambrel::MunicipalityListWiring::connectControls(*this);
    help_->watchGrid(ui_->DBGMUNICIPI);
    new ambrel::FormKeys(*this, *ui_->BBCancelar);
}

TFBuscarMunicipios::~TFBuscarMunicipios() { ui_->DBGMUNICIPI->setDataSource(nullptr); }

void TFBuscarMunicipios::FormShow() {
    dbase::Dataset& table = controller_.DM->tbMunicipi;
    DSMunicipi.setDataset(&table);
    ambrel::focusEditOfTag(table.tag(), {ui_->ECODINE, ui_->ECODPOSTAL, ui_->ENOMBRE});
    ambrel::fitMunicipalityColumns(*ui_->DBGMUNICIPI);
    FormResize();
}

void TFBuscarMunicipios::FormResize() { ambrel::fillLastColumn(*ui_->DBGMUNICIPI); }

void TFBuscarMunicipios::TomaFoco(QLineEdit* edit) { help_->TomaFoco(edit); }

void TFBuscarMunicipios::Dejafoco(QLineEdit* edit) { help_->DejaFoco(edit); }

void TFBuscarMunicipios::ECODINEEnter() {
    TomaFoco(ui_->ECODINE);
    controller_.OrdenaPorCodIneMunicipi();
}

void TFBuscarMunicipios::ECODPOSTALEnter() {
    TomaFoco(ui_->ECODPOSTAL);
    controller_.OrdenaPorCodPostalMunicipi();
}

void TFBuscarMunicipios::ENOMBREEnter() {
    TomaFoco(ui_->ENOMBRE);
    controller_.OrdenaPorNombreMunicipi();
}

/// For all three edits; the Tag selects the key to search.
void TFBuscarMunicipios::ECODINEKeyUp(QLineEdit& edit, std::uint16_t key) {
    ambrel::searchWhileTyping(edit, key, controller_.DM->tbMunicipi,
                              ambrel::municipalityKey(ambrel::tagOf(edit)), *ui_->DBGMUNICIPI);
}

void TFBuscarMunicipios::DBGMUNICIPITitleClick(int column) {
    switch (column) {
    case 0:
        controller_.OrdenaPorCodIneMunicipi();
        break;
    case 1:
        controller_.OrdenaPorCodPostalMunicipi();
        break;
    case 2:
        controller_.OrdenaPorNombreMunicipi();
        break;
    default:
        break;
    }
}

void TFBuscarMunicipios::DBGMUNICIPIDblClick() { BBAceptarClick(); }

void TFBuscarMunicipios::BBAceptarClick() {
    ambrel::setTag(*this, ambrel::acceptedTag);
    done(ambrel::acceptedResult);
}

void TFBuscarMunicipios::BBCancelarClick() {
    ambrel::setTag(*this, 0);
    done(ambrel::cancelledResult);
}
