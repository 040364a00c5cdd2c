// The list of provinces or countries.
#include "dialogs/ProvList.h"

#include <optional>
#include <string>

#include "data/Province.h"
#include "dbase/dataset/go_to.h"
#include "dialogs/common/FixedWidth.h"
#include "dialogs/common/FocusHelp.h"
#include "dialogs/common/FormEvents.h"
#include "dialogs/common/FormKeys.h"
#include "dialogs/common/IncrementalSearch.h"
#include "dialogs/common/LastColumn.h"
#include "dialogs/common/ModalDialog.h"
#include "services/EventGuard.h"
#include "services/KeyCodes.h"
#include "services/KeyUpEvents.h"
#include "services/Rnumcad.h"
#include "services/Ruttb.h"
#include "services/Text.h"
#include "ui_ProvList.h"

namespace {

constexpr const char* byCode = "CODIGO";
constexpr const char* byName = "ALFABETICO";

constexpr std::size_t codeWidth = 3;   // characters of CODIGO
constexpr int withTwoCodes = 3;        // the group whose second code is shown
constexpr int normalWidth = 350;       // logical pixels
constexpr int normalLeastHeight = 480; // logical pixels

/// The order requested by a text's only character.
/// Deliberate: lower-case letters do not switch the order.
std::optional<std::string> orderFor(const QString& text) {
    if (text.size() != 1) {
        return std::nullopt;
    }
    const char16_t character = text.front().unicode();
    if (character >= u'0' && character <= u'9') {
        return byCode;
    }
    if (character >= u'A' && character <= u'Z') {
        return byName;
    }
    return std::nullopt;
}

} // namespace

TFProvList::TFProvList(QWidget* owner)
    : QDialog(ambrel::dialogParent(owner)), ui_(std::make_unique<Ui::TFProvList>()) {
    using ambrel::guarded;
    ui_->setupUi(this);
    TProvin.setOnCalculate([this](dbase::Dataset&) { TProvinCalcFields(); });
    ui_->DBGProvincias->setColumns(
        {{.field = "DATO", .title = QStringLiteral("Código y nombre"), .tags = {byCode, byName}}});
    ui_->DBGProvincias->setDataSource(&DSProvin);

    new ambrel::FormEvents(
        *this, [this] { FormShow(); }, [this] { FormResize(); });
    new ambrel::FixedWidth(*this, normalWidth, normalLeastHeight, *ui_->SBAyuda);
    new ambrel::FormKeys(*this, *ui_->BBCancelar,
                         [this](std::uint16_t key, Qt::KeyboardModifiers) { return FormKeyDown(key); });
    auto* const help = new ambrel::FocusHelp(*this, *ui_->SBAyuda);
    help->watchEdit(ui_->E_BUSQUEDA);
    help->watchButton(ui_->BBAceptar);
    help->watchButton(ui_->BBCancelar);
    help->watchGrid(ui_->DBGProvincias);
    ambrel::KeyUpEvents::watch(ui_->E_BUSQUEDA,
                               [this](std::uint16_t& key, Qt::KeyboardModifiers) { E_BUSQUEDAKeyUp(key); });

    connect(ui_->BBAceptar, &QPushButton::clicked, this, guarded([this] { BBAceptarClick(); }));
    connect(ui_->BBCancelar, &QPushButton::clicked, this, guarded([this] { BBCancelarClick(); }));
    connect(ui_->DBGProvincias, &ambrel::DataGrid::rowDoubleClicked, this,
            guarded([this] { BBAceptarClick(); }));
}

TFProvList::~TFProvList() {
    ui_->DBGProvincias->setDataSource(nullptr); // the grid outlives the members
}

void TFProvList::Configura(const QString& caption, const QString& heading, int provinceCode, int group) {
    const QString label =
        group == ambrel::provinceGroup ? QStringLiteral("Provincia") : QStringLiteral("País");
    setWindowTitle(caption);
    ui_->GBTitulo->setTitle(heading);
    ui_->LProvincia_->setText(label);
    ui_->E_BUSQUEDA->setAccessibleName(label);
    if (provinceCode == 0) {
        return;
    }
    TBFiltra(TProvin, "GRUPO = " + Int_Cad(group));
    // Deliberate: the code is sought as text, 8 rather than 008, among codes of three characters.
    const std::string code = Int_Cad(provinceCode);
    if (TBBusca(TProvin, {{"CODIGO", code}}, nearestSearch)) {
        ui_->E_BUSQUEDA->setText(QString::fromStdString(code));
    }
}

bool TFProvList::FormKeyDown(std::uint16_t key) { return ambrel::enterMovesOn(*this, key); }

void TFProvList::FormShow() { FormResize(); }

void TFProvList::FormResize() { ambrel::fillLastColumn(*ui_->DBGProvincias); }

void TFProvList::TProvinCalcFields() {
    const std::string secondCode =
        TProvinGRUPO.integer() == withTwoCodes ? "[" + TProvinCOD_198.text() + "]" : std::string();
    TProvinDATO.setText(TProvinCODIGO.text() + ".- " + secondCode + TProvinPROVINCIA.text());
}

void TFProvList::E_BUSQUEDAKeyUp(std::uint16_t key) {
    if (key == ambrel::key_code::up || key == ambrel::key_code::down) {
        ambrel::moveByKey(key, TProvin, *ui_->DBGProvincias);
        return;
    }
    chooseOrder();
    seekText();
}

void TFProvList::chooseOrder() {
    if (std::optional<std::string> tag = orderFor(ui_->E_BUSQUEDA->text())) {
        TBIndexa(TProvin, *tag);
    }
}

/// Moves the table; the grid shows whether something was found.
void TFProvList::seekText() {
    const QString text = ui_->E_BUSQUEDA->text();
    if (TProvin.tag() == byName) {
        // Deliberate: in name order an empty text is sought too, and goes to the first name.
        if (const std::optional<std::string> name = ambrel::toWindows1252(text)) {
            dbase::goToNearest(TProvin, {{"PROVINCIA", *name}});
        }
        return;
    }
    // Deliberate: in code order, a text that is not a number, or that no code can hold, moves nothing and
    // shows no message.
    bool isNumber = false;
    if (const int code = text.toInt(&isNumber); isNumber && Int_Cad(code).size() <= codeWidth) {
        dbase::goToNearest(TProvin, {{"CODIGO", code}});
    }
}

void TFProvList::BBAceptarClick() {
    chosenCode_ = Cad_Int(TProvinCODIGO.text());
    chosenGroup_ = TProvinGRUPO.integer();
    chosenName_ = ambrel::fromWindows1252(TProvinPROVINCIA.text()).trimmed();
    done(ambrel::acceptedResult);
}

void TFProvList::BBCancelarClick() { done(ambrel::cancelledResult); }
