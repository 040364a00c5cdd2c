// The alternative list of municipalities, in order of name.
#include "dialogs/MunicipiListaMJ.h"

#include <QFontMetrics>

#include "data/MunicipiDM.h"
#include "dialogs/common/FocusHelp.h"
#include "dialogs/common/FormEvents.h"
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

// Among the widest values that the fields hold.
constexpr const char* wideName = "VILLARCAYO DE MERINDAD DE CASTILLA LA VIE";
constexpr const char* wideProvince = "SANTA CRUZ DE TENERIF";

std::vector<ambrel::GridColumn> columns() {
    return {{.field = "POBLCOD", .title = QStringLiteral("Cod. Mun"), .width = leastCodeWidth},
            {.field = "POBLLITE",
             .title = QStringLiteral("Nombre del municipio"),
             .width = leastNameWidth,
             .tags = {searchKey}},
            {.field = "NOMBREPROV", .title = QStringLiteral("Provincia")}};
}

/// Makes room for the texts in the grid's font, which is final when the dialog is shown.
void fitColumns(ambrel::DataGrid& grid) {
    const QFontMetrics font = grid.fontMetrics();
    const auto widthOf = [&font](const QString& text) { return font.horizontalAdvance(text) + cellMargins; };
    const int code = qMax(leastCodeWidth, widthOf(grid.columnTitle(0)));
    const int name = qMax(leastNameWidth, widthOf(wideName));
    grid.setColumnWidth(0, code);
    grid.setColumnWidth(1, name);
    grid.setMinimumWidth(code + name + widthOf(wideProvince) + grid.width() - grid.clientWidth());
}

} // namespace

TFMunicipiListaMJ::TFMunicipiListaMJ(QWidget* owner)
    : QDialog(ambrel::dialogParent(owner)), table_(DMMunicipi->tbMunicipiMJ),
      ui_(std::make_unique<Ui::TFMunicipiListaMJ>()) {
    ui_->setupUi(this);
    ui_->DBGMUNICIMJ->setColumns(columns());
    ui_->DBGMUNICIMJ->setDataSource(&DMMunicipi->dsMunicipiMJ);
    help_ = new ambrel::FocusHelp(*this, *ui_->SBAyuda);
    connectControls();
    if (table_.tag() == searchKey) {
        ui_->ENOMBRE->setFocus();
    }
}

TFMunicipiListaMJ::~TFMunicipiListaMJ() { ui_->DBGMUNICIMJ->setDataSource(nullptr); }

void TFMunicipiListaMJ::connectControls() {
    using ambrel::guarded;
    new ambrel::FormEvents(
        *this, [this] { FormShow(); }, [this] { FormResize(); });
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

void TFMunicipiListaMJ::FormShow() {
    fitColumns(*ui_->DBGMUNICIMJ);
    FormResize();
}

void TFMunicipiListaMJ::FormResize() { ambrel::fillLastColumn(*ui_->DBGMUNICIMJ); }

void TFMunicipiListaMJ::TomaFoco() { help_->TomaFoco(ui_->ENOMBRE); }

void TFMunicipiListaMJ::Dejafoco() { help_->DejaFoco(ui_->ENOMBRE); }

void TFMunicipiListaMJ::ENOMBREEnter() {
    TomaFoco();
    TBIndexa(searchKey, table_);
}

void TFMunicipiListaMJ::ENOMBREKeyUp(std::uint16_t key) {
    ambrel::searchWhileTyping(*ui_->ENOMBRE, key, table_, searchKey, *ui_->DBGMUNICIMJ);
}

/// There is only one order, whichever title was clicked.
void TFMunicipiListaMJ::DBGMUNICIMJTitleClick() { TBIndexa(searchKey, table_); }

void TFMunicipiListaMJ::DBGMUNICIMJDblClick() { done(ambrel::acceptedResult); }

void TFMunicipiListaMJ::BBAceptarClick() { done(ambrel::acceptedResult); }

void TFMunicipiListaMJ::BBCancelarClick() { done(ambrel::cancelledResult); }
