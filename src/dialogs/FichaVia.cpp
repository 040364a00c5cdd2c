// The street card, from opening to closing.
#include "dialogs/FichaVia.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QScreen>
#include <QShowEvent>
#include <algorithm>
#include <utility>

#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "data/Province.h"
#include "dialogs/FichaViaParts.h"
#include "dialogs/common/DropDown.h"
#include "dialogs/common/FocusHelp.h"
#include "dialogs/common/FormKeys.h"
#include "dialogs/common/HintWidth.h"
#include "dialogs/common/TextBeginning.h"
#include "dialogs/common/TypingRules.h"
#include "services/EventGuard.h"
#include "services/KeyUpEvents.h"
#include "services/Text.h"
#include "ui_FichaVia.h" // where its generator looks for it

using ambrel::Capitals;
using ambrel::guarded;
using ambrel::runGuarded;
using ambrel::toNearestWindows1252;
using ambrel::TypingRules;

namespace {

constexpr int municipalityLength = 25; // characters that can be typed
constexpr int streetTypeLength = 2;
constexpr int streetTypeListWidth = 200; // logical pixels
// Digits for which an edit has room.
constexpr int postalCodeRoom = ambrel::postalCodeDigits + 2; // so that one too long is fully visible
constexpr int numberRoom = 7;
constexpr int editMargins = 20;       // logical pixels beside the text of an edit
constexpr int statusTextMargins = 16; // and beside that of the status bar

constexpr float disabledTextOpacity = 0.7F;
constexpr int strongContrast = 160; // of 255; difference in brightness between text and background

constexpr auto cardWindow = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                            Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint |
                            Qt::MSWindowsFixedSizeDialogHint;

/// Makes room for a number of digits, in the edit's current font.
void fitDigits(QWidget& edit, int digits) {
    const int text = edit.fontMetrics().horizontalAdvance(QString(digits, QLatin1Char('0')));
    edit.setFixedWidth(std::max(edit.minimumWidth(), text + editMargins));
}

/// Gives labels below each other the same width, so that the edits beside them line up.
void alignLabels(std::initializer_list<QLabel*> labels) {
    int width = 0;
    for (const QLabel* const label : labels) {
        width = std::max(width, label->sizeHint().width());
    }
    for (QLabel* const label : labels) {
        label->setMinimumWidth(width);
    }
}

/// On a card that only shows, the texts of disabled controls must be readable: they are paler only where
/// contrast is strong.
void makeLegible(QWidget& control) {
    QPalette palette = control.palette();
    for (const auto& [role, behind] :
         {std::pair(QPalette::WindowText, QPalette::Window), std::pair(QPalette::Text, QPalette::Base)}) {
        QColor colour = palette.color(QPalette::Active, role);
        const QColor background = palette.color(QPalette::Active, behind);
        if (qAbs(qGray(colour.rgb()) - qGray(background.rgb())) >= strongContrast) {
            colour.setAlphaF(disabledTextOpacity);
        }
        palette.setColor(QPalette::Disabled, role, colour);
    }
    control.setPalette(palette);
}

/// Moves the dialog to the middle of the host's main form, within its screen.
void centreOnMainForm(QDialog& dialog) {
    const QWidget* form = dialog.parentWidget();
    while (form && form->parentWidget()) {
        form = form->parentWidget();
    }
    if (!form || !form->isVisible()) {
        return;
    }
    // Not its current size, which a window system may have set while a message was shown in between.
    QRect place(QPoint(), dialog.sizeHint());
    place.moveCenter(form->frameGeometry().center());
    const QRect screen = form->screen()->availableGeometry();
    place.moveRight(std::min(place.right(), screen.right()));
    place.moveBottom(std::min(place.bottom(), screen.bottom()));
    dialog.move(std::max(place.left(), screen.left()), std::max(place.top(), screen.top()));
}

} // namespace

TFFichaVia::TFFichaVia(QWidget* owner, TClassCodPostales& controller, TOperacion operation, QString codIne,
                       QString vecindad)
    : QDialog(owner ? owner : QApplication::activeWindow(), cardWindow),
      parts_(std::make_unique<Parts>(*this, controller, operation, std::move(codIne), std::move(vecindad))) {}

TFFichaVia::Parts::Parts(TFFichaVia& dialog, TClassCodPostales& controller, TOperacion operation,
                         QString codIne, QString vecindad)
    : card(dialog), ui(dialog), Controlador(controller), Operacion(operation), CodIne(std::move(codIne)),
      Vecindad(std::move(vecindad)), DSPostal(&controller.DM->tbPostal) {
    ambrel::limitDropDowns(card);
    for (QComboBox* const combo : {ui.CBProvincia, ui.CBTipoVia}) {
        combo->setCompleter(nullptr);
    }
    ui.CBTipoVia->view()->setMinimumWidth(streetTypeListWidth);
    help = new ambrel::FocusHelp(card, *ui.SBAyuda);
    watchControls();
    connectHandlers();
    bindEdits();
}

TFFichaVia::~TFFichaVia() {
    for (ambrel::BoundEdit* const edit : findChildren<ambrel::BoundEdit*>()) {
        edit->unbind();
    }
}

/// Sets up keys, hints and typing rules. A sixth character of a postal code can be typed: it is refused with
/// a message when the street is accepted, instead of being swallowed.
void TFFichaVia::Parts::watchControls() {
    new ambrel::FormKeys(card, *ui.BBCancelar,
                         [this](std::uint16_t key, Qt::KeyboardModifiers) { return FormKeyDown(key); });
    new TypingRules(ui.EVecindad, municipalityLength, Capitals::Yes);
    new TypingRules(ui.CBProvincia->lineEdit(), TypingRules::anyLength, Capitals::Yes);
    new TypingRules(ui.CBTipoVia->lineEdit(), streetTypeLength, Capitals::No);
    new TypingRules(ui.DBEVia, static_cast<int>(ambrel::streetNameWidth), Capitals::Yes);

    for (QLineEdit* const box : card.findChildren<QLineEdit*>()) {
        new ambrel::TextBeginning(box);
    }
    help->watchEdit(ui.EVecindad, {}, [this] { EVecindadExit(); });
    for (QWidget* const edit :
         std::initializer_list<QWidget*>{ui.CBProvincia, ui.CBTipoVia, ui.DBEVia, ui.DBECodPostal,
                                         ui.DBEImparIni, ui.DBEImparFin, ui.DBEParIni, ui.DBEParFin}) {
        help->watchEdit(edit);
    }
    for (QPushButton* const button : {ui.BBListar, ui.BBAceptar, ui.BBCancelar}) {
        help->watchButton(button);
    }
}

void TFFichaVia::Parts::connectHandlers() {
    ambrel::KeyUpEvents::watch(ui.EVecindad, [this](std::uint16_t& key, Qt::KeyboardModifiers shift) {
        EVecindadKeyUp(key, shift);
    });
    QObject::connect(ui.EVecindad, &QLineEdit::textChanged, &card, guarded([this] { EVecindadChange(); }));
    QObject::connect(ui.BBListar, &QPushButton::clicked, &card, guarded([this] { BBListarClick(); }));
    QObject::connect(ui.BBAceptar, &QPushButton::clicked, &card, guarded([this] { BBAceptarClick(); }));
    QObject::connect(ui.BBCancelar, &QPushButton::clicked, &card, guarded([this] { BBCancelarClick(); }));
}

void TFFichaVia::Parts::bindEdits() {
    ui.DBEProvincia->bind(DSPostal, "PROVINCIA");
    ui.DBETipoVia->bind(DSPostal, "TIPO_VIA");
    ui.DBEVia->bind(DSPostal, "VIA");
    ui.DBECodPostal->bind(DSPostal, "CODPOSTAL");
    ui.DBEImparIni->bind(DSPostal, "IMPAR_INI");
    ui.DBEImparFin->bind(DSPostal, "IMPAR_FIN");
    ui.DBEParIni->bind(DSPostal, "PAR_INI");
    ui.DBEParFin->bind(DSPostal, "PAR_FIN");
}

void TFFichaVia::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (event->spontaneous()) {
        return;
    }
    bool isStarted = false;
    runGuarded([&] {
        parts_->FormShow();
        isStarted = true;
    });
    if (!isStarted) {
        runGuarded([this] { // what could not be shown whole must not be changed either
            parts_->Controlador.DM->tbPostal.cancel();
            parts_->viewOnly();
        });
    }
    const Parts::Form& ui = parts_->ui;
    for (QWidget* const edit : {ui.DBEImparIni, ui.DBEImparFin, ui.DBEParIni, ui.DBEParFin}) {
        fitDigits(*edit, numberRoom);
    }
    fitDigits(*ui.DBECodPostal, postalCodeRoom);
    ambrel::fitHints(*this, *ui.SBAyuda, statusTextMargins);
    alignLabels({ui.LVecindad_, ui.LProvincia_, ui.LTipoVia_, ui.LDomicilio_, ui.LCodPostal_, ui.LImparIni_,
                 ui.LParIni_});
    alignLabels({ui.LImparFin_, ui.LParFin_});
    layout()->activate();
    centreOnMainForm(*this);
}

/// Loads first: loading leaves a street type and a municipality in view, of which a new street keeps nothing.
void TFFichaVia::Parts::FormShow() {
    CargaProvincias();
    CargaTipoVia();
    BuscaVecindad();
    switch (Operacion) {
    case opAlta:
        startAddition();
        break;
    case opModificacion:
        startModification();
        break;
    case opBaja:
        ui.BBAceptar->setText(QStringLiteral("&Borrar"));
        ui.BBAceptar->setAccessibleName(QStringLiteral("Borrar"));
        [[fallthrough]];
    case opConsulta:
        BuscaProvinciaPorCodigo();
        BuscaTipoViaPorCodigo();
        SoloLectura();
        break;
    }
}

void TFFichaVia::Parts::startAddition() {
    if (Controlador.AnadirVia()) {
        LimpiaDatos();
    } else {
        tellCannotStart();
    }
}

/// Deliberate: a card that cannot start its change shows the province and street type left in the combos by
/// loading, not the street's.
void TFFichaVia::Parts::startModification() {
    if (!Controlador.ModificarVia()) {
        tellCannotStart();
        return;
    }
    BuscaProvinciaPorCodigo();
    BuscaTipoViaPorCodigo();
    const TDMCodPostales& tables = *Controlador.DM;
    if (const std::string code = tables.tbPostalCODPOSTAL.text(); code.empty() || code == "0") {
        tables.tbPostalCODPOSTAL.setText(tables.tbMunicipiCODPOSTAL.text());
    }
}

void TFFichaVia::Parts::tellCannotStart() {
    viewOnly();
    Controlador.showStreetFailure();
}

void TFFichaVia::Parts::viewOnly() {
    SoloLectura();
    Operacion = opConsulta;
}

void TFFichaVia::Parts::SoloLectura() {
    for (QGroupBox* const box : {ui.GBIdentificacion, ui.GBNumeracion}) {
        box->setEnabled(false);
        makeLegible(*box);
        for (QWidget* const control :
             box->findChildren<QWidget*>()) { // a host's style sheet keeps them from inheriting the box's
            makeLegible(*control);
        }
    }
}

void TFFichaVia::Parts::LimpiaDatos() {
    ui.EVecindad->clear();
    ui.CBProvincia->setCurrentIndex(-1);
    ui.CBTipoVia->setCurrentIndex(-1);
}

bool TFFichaVia::Parts::FormKeyDown(std::uint16_t key) { return ambrel::enterMovesOn(card, key); }

void TFFichaVia::Parts::BBAceptarClick() {
    switch (Operacion) {
    case opBaja:
        if (!Controlador.BorrarVia(true)) {
            Controlador.showStreetFailure();
        }
        break;
    case opConsulta:
        break;
    case opAlta:
    case opModificacion:
        if (!CompruebaDatos()) {
            return;
        }
        storeStreet();
        break;
    }
    card.done(ambrel::acceptedResult);
}

/// Deliberate: the card also closes if the street could not be stored; the user is asked to repeat the
/// operation.
void TFFichaVia::Parts::storeStreet() {
    const TDMCodPostales& tables = *Controlador.DM;
    tables.tbPostalCAPITAL.setText(tables.tbMunicipiCAPITAL.text());
    const QString province = ObtenCodProv(ui.CBProvincia->currentText().trimmed());
    tables.tbPostalPROVINCIA.setText(toNearestWindows1252(province));
    const QString streetType = ObtenTipoVia(ui.CBTipoVia->currentText().trimmed());
    tables.tbPostalTIPO_VIA.setText(toNearestWindows1252(streetType));
    if (!Controlador.AceptarVia()) {
        Controlador.showStreetFailure();
    }
}

void TFFichaVia::Parts::BBCancelarClick() {
    const bool isChanging = Operacion == opAlta || Operacion == opModificacion;
    if (!isChanging || Controlador.CancelarVia()) {
        card.done(ambrel::cancelledResult);
    }
}

void TFFichaVia::reject() {
    runGuarded([this] { parts_->BBCancelarClick(); });
}
