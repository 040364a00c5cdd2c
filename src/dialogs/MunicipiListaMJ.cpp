// The alternative list of municipalities, in order of name.
#include "dialogs/MunicipiListaMJ.h"

#include <QFontMetrics>

#include "data/MunicipiDM.h"
#include "dialogs/common/FocusHelp.h"
#include "dialogs/common/FormKeys.h"
#include "dialogs/common/IncrementalSearch.h"
#include "dialogs/common/LastColumn.h"
#include "dialogs/common/ModalDialog.h"
#include "services/EventGuard.h"
#include "services/KeyUpEvents.h"
#include "services/Ruttb.h"
#include "ui_MunicipiListaMJ.h"

namespace {

/// The only key of the list: index tag and field.
constexpr const char* searchKey = "POBLLITE";

constexpr int leastCodeWidth = 84;  // logical pixels
constexpr int leastNameWidth = 300; // logical pixels
constexpr int cellMargins = 24;

std::vector<ambrel::GridColumn> columns(const QFontMetrics& font) {
    const QString codeTitle = QStringLiteral("Cod. Mun");
    return {{.field = "POBLCOD",
             .title = codeTitle,
             .width = qMax(leastCodeWidth, font.horizontalAdvance(codeTitle) + cellMargins)},
            {.field = "POBLLITE", .title = QStringLiteral("Nombre del municipio"), .width = leastNameWidth},
            {.field = "NOMBREPROV", .title = QStringLiteral("Provincia")}};
}

} // namespace

TFMunicipiListaMJ::TFMunicipiListaMJ(QWidget* owner)
    : QDialog(ambrel::dialogParent(owner)), ui_(std::make_unique<Ui::TFMunicipiListaMJ>()) {
    ui_->setupUi(this);
    ui_->DBGMUNICIMJ->setColumns(columns(fontMetrics()));
    ui_->DBGMUNICIMJ->setDataSource(&DMMunicipi->dsMunicipiMJ);
    help_ = new ambrel::FocusHelp(*this, *ui_->SBAyuda);
    connectControls();
    if (DMMunicipi->tbMunicipiMJ.tag() == searchKey)
        ui_->ENOMBRE->setFocus();
}

TFMunicipiListaMJ::~TFMunicipiListaMJ() { ui_->DBGMUNICIMJ->setDataSource(nullptr); }

void TFMunicipiListaMJ::connectControls() {
    using ambrel::guarded;
    new ambrel::FormKeys(*this, *ui_->BBCancelar);
    help_->watchEdit(
        ui_->ENOMBRE, [this] { ENOMBREEnter(); }, [this] { Dejafoco(); });
    help_->watchGrid(ui_->DBGMUNICIMJ);
    help_->watchButton(ui_->BBAceptar);
    help_->watchButton(ui_->BBCancelar);
    ambrel::KeyUpEvents::watch(ui_->ENOMBRE,
                               [this](std::uint16_t& key, Qt::KeyboardModifiers) { ENOMBREKeyUp(key); });
    connect(ui_->DBGMUNICIMJ, &ambrel::DataGrid::titleClicked, this,
            guarded([this](int) { DBGMUNICIMJTitleClick(); }));
    connect(ui_->DBGMUNICIMJ, &ambrel::DataGrid::rowDoubleClicked, this,
            guarded([this] { DBGMUNICIMJDblClick(); }));
    connect(ui_->BBAceptar, &QPushButton::clicked, this, guarded([this] { BBAceptarClick(); }));
    connect(ui_->BBCancelar, &QPushButton::clicked, this, guarded([this] { BBCancelarClick(); }));
}

void TFMunicipiListaMJ::reject() { done(ambrel::cancelledResult); }

void TFMunicipiListaMJ::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    ambrel::runGuarded([this] { FormShow(); });
}

void TFMunicipiListaMJ::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    ambrel::runGuarded([this] { FormResize(); });
}

void TFMunicipiListaMJ::FormShow() { FormResize(); }

void TFMunicipiListaMJ::FormResize() { ambrel::fillLastColumn(*ui_->DBGMUNICIMJ); }

void TFMunicipiListaMJ::TomaFoco() { help_->TomaFoco(ui_->ENOMBRE); }

void TFMunicipiListaMJ::Dejafoco() { help_->DejaFoco(ui_->ENOMBRE); }

void TFMunicipiListaMJ::ENOMBREEnter() {
    TomaFoco();
    TBIndexa(searchKey, DMMunicipi->tbMunicipiMJ);
}

void TFMunicipiListaMJ::ENOMBREKeyUp(std::uint16_t key) {
    ambrel::searchWhileTyping(*ui_->ENOMBRE, key, DMMunicipi->tbMunicipiMJ, searchKey, *ui_->DBGMUNICIMJ);
}

/// There is one order, whichever title was clicked.
void TFMunicipiListaMJ::DBGMUNICIMJTitleClick() { TBIndexa(searchKey, DMMunicipi->tbMunicipiMJ); }

void TFMunicipiListaMJ::DBGMUNICIMJDblClick() { done(ambrel::acceptedResult); }

void TFMunicipiListaMJ::BBAceptarClick() { done(ambrel::acceptedResult); }

void TFMunicipiListaMJ::BBCancelarClick() { done(ambrel::cancelledResult); }
