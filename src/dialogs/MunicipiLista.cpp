// The list of municipalities shown by the lookup routines.
#include "dialogs/MunicipiLista.h"

#include "data/MunicipiDM.h"
#include "dialogs/MunicipalityColumns.h"
#include "dialogs/MunicipalityListWiring.h"
#include "dialogs/common/FocusHelp.h"
#include "dialogs/common/FormKeys.h"
#include "dialogs/common/IncrementalSearch.h"
#include "dialogs/common/LastColumn.h"
#include "dialogs/common/ModalDialog.h"
#include "services/Ruttb.h"
#include "services/TagProperty.h"
#include "ui_MunicipiLista.h"

TFMunicipiLista::TFMunicipiLista(QWidget* owner)
    : QDialog(ambrel::dialogParent(owner)), table_(DMMunicipi->tbMunicipi),
      ui_(std::make_unique<Ui::TFMunicipiLista>()) {
    ui_->setupUi(this);
    ui_->DBGMUNICIPI->setColumns(ambrel::municipalityColumns());
    ui_->DBGMUNICIPI->setDataSource(&DMMunicipi->dsMunicipi);
    help_ = new ambrel::FocusHelp(*this, *ui_->SBAyuda);
    ambrel::MunicipalityListWiring::connectControls(*this);
    // Deliberate: Enter moves on in this list and never accepts, although the form's text says that it does.
    new ambrel::FormKeys(*this, *ui_->BBCancelar,
                         [this](std::uint16_t key, Qt::KeyboardModifiers) { return FormKeyDown(key); });
    ambrel::focusEditOfTag(table_.tag(), {ui_->ECODINE, ui_->ECODPOSTAL, ui_->ENOMBRE});
}

TFMunicipiLista::~TFMunicipiLista() { ui_->DBGMUNICIPI->setDataSource(nullptr); }

void TFMunicipiLista::FormShow() {
    ambrel::fitMunicipalityColumns(*ui_->DBGMUNICIPI);
    FormResize();
}

void TFMunicipiLista::FormResize() { ambrel::fillLastColumn(*ui_->DBGMUNICIPI); }

bool TFMunicipiLista::FormKeyDown(std::uint16_t key) { return ambrel::enterMovesOn(*this, key); }

void TFMunicipiLista::TomaFoco(QLineEdit* edit) { help_->TomaFoco(edit); }

void TFMunicipiLista::Dejafoco(QLineEdit* edit) { help_->DejaFoco(edit); }

void TFMunicipiLista::ECODINEEnter() {
    TomaFoco(ui_->ECODINE);
    TBIndexa("COD_INE", table_);
}

void TFMunicipiLista::ECODPOSTALEnter() {
    TomaFoco(ui_->ECODPOSTAL);
    TBIndexa("CODPOSTAL", table_);
}

void TFMunicipiLista::ENOMBREEnter() {
    TomaFoco(ui_->ENOMBRE);
    TBIndexa("NOMBRE", table_);
}

/// For all three edits; the Tag selects the key to search.
void TFMunicipiLista::ECODINEKeyUp(QLineEdit& edit, std::uint16_t key) {
    ambrel::searchWhileTyping(edit, key, table_, ambrel::municipalityKey(ambrel::tagOf(edit)),
                              *ui_->DBGMUNICIPI);
}

void TFMunicipiLista::DBGMUNICIPITitleClick(int column) {
    if (const std::string key = ambrel::municipalityKey(column); !key.empty()) {
        TBIndexa(key, table_);
    }
}

void TFMunicipiLista::DBGMUNICIPIDblClick() { done(ambrel::acceptedResult); }

void TFMunicipiLista::BBAceptarClick() { done(ambrel::acceptedResult); }

void TFMunicipiLista::BBCancelarClick() { done(ambrel::cancelledResult); }
