// The list of street types.
#include "dialogs/TipoViasLista.h"

#include <algorithm>

#include "data/ViasDM.h"
#include "dialogs/common/FixedWidth.h"
#include "dialogs/common/FocusHelp.h"
#include "dialogs/common/FormEvents.h"
#include "dialogs/common/FormKeys.h"
#include "dialogs/common/IncrementalSearch.h"
#include "dialogs/common/LastColumn.h"
#include "dialogs/common/ModalDialog.h"
#include "services/EventGuard.h"
#include "services/KeyUpEvents.h"
#include "services/Ruttb.h"
#include "ui_TipoViasLista.h"

namespace {

// Deliberate: searches the abbreviation, although the edit's hint mentions the name.
constexpr const char* searchKey = "CODIGO";

constexpr int codeWidth = 72;          // logical pixels
constexpr int titleMargins = 24;       // logical pixels, around a column's title
constexpr int normalWidth = 350;       // logical pixels
constexpr int normalLeastHeight = 480; // logical pixels

} // namespace

TFTipoViasLista::TFTipoViasLista(QWidget* owner)
    : QDialog(ambrel::dialogParent(owner)), table_(DMVias->tbTipo_Via),
      ui_(std::make_unique<Ui::TFTipoViasLista>()) {
    using ambrel::guarded;
    ui_->setupUi(this);
    ui_->DBGTIPO_VIA->setColumns(
        {{.field = "CODIGO", .title = QStringLiteral("Código"), .width = codeWidth, .tags = {searchKey}},
         {.field = "NOMBRE", .title = QStringLiteral("Nombre")}});
    ui_->DBGTIPO_VIA->setDataSource(&DMVias->dsTipo_Via);

    new ambrel::FormEvents(
        *this, [this] { FormShow(); }, [this] { FormResize(); });
    new ambrel::FixedWidth(*this, normalWidth, normalLeastHeight, *ui_->SBAyuda);
    new ambrel::FormKeys(*this, *ui_->BBCancelar);
    auto* const help = new ambrel::FocusHelp(*this, *ui_->SBAyuda);
    help->watchEdit(ui_->EBUSCA, [this, help] {
        help->TomaFoco(ui_->EBUSCA);
        EBUSCAEnter();
    });
    help->watchButton(ui_->BBAceptar);
    help->watchButton(ui_->BBCancelar);
    ambrel::KeyUpEvents::watch(ui_->EBUSCA,
                               [this](std::uint16_t& key, Qt::KeyboardModifiers) { EBUSCAKeyUp(key); });

    connect(ui_->BBAceptar, &QPushButton::clicked, this, guarded([this] { BBAceptarClick(); }));
    connect(ui_->BBCancelar, &QPushButton::clicked, this, guarded([this] { BBCancelarClick(); }));
    connect(ui_->DBGTIPO_VIA, &ambrel::DataGrid::rowDoubleClicked, this,
            guarded([this] { DBGTIPO_VIADblClick(); }));
}

TFTipoViasLista::~TFTipoViasLista() = default;

void TFTipoViasLista::FormShow() {
    ambrel::DataGrid& grid = *ui_->DBGTIPO_VIA;
    const QFontMetrics font = grid.fontMetrics();
    const int title = font.horizontalAdvance(grid.columnTitle(0)) + ambrel::arrowRoom(font);
    grid.setColumnWidth(0, std::max(codeWidth, title + titleMargins));
    FormResize();
}

void TFTipoViasLista::FormResize() { ambrel::fillLastColumn(*ui_->DBGTIPO_VIA); }

void TFTipoViasLista::EBUSCAEnter() { TBIndexa(searchKey, table_); }

void TFTipoViasLista::EBUSCAKeyUp(std::uint16_t key) {
    ambrel::searchWhileTyping(*ui_->EBUSCA, key, table_, searchKey, *ui_->DBGTIPO_VIA);
    ui_->DBGTIPO_VIA->refresh();
}

void TFTipoViasLista::DBGTIPO_VIADblClick() { done(ambrel::acceptedResult); }

void TFTipoViasLista::BBAceptarClick() { done(ambrel::acceptedResult); }

void TFTipoViasLista::BBCancelarClick() { done(ambrel::cancelledResult); }
