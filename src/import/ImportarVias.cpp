// The import dialog: the form and its three modes.
#include "import/ImportarVias.h"

#include <QFile>
#include <QMenu>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QShowEvent>
#include <algorithm>
#include <exception>
#include <utility>

#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "dialogs/common/DropDown.h"
#include "dialogs/common/FocusHelp.h"
#include "dialogs/common/FormKeys.h"
#include "dialogs/common/HintWidth.h"
#include "dialogs/common/ModalDialog.h"
#include "dialogs/common/ScreenRoom.h"
#include "import/ProvinceRun.h"
#include "import/ResponseFolder.h"
#include "services/EventGuard.h"
#include "ui_ImportarVias.h"

namespace {

constexpr int statusTextMargins = 40; // what the status bar leaves free beside its text, size grip included
constexpr QSize leastSize(570, 600);  // logical pixels
constexpr QSize startSize(720, 640);

} // namespace

TFImportarVias::TFImportarVias(QWidget* owner, TClassCodPostales& controller)
    : QDialog(ambrel::dialogParent(owner)), ui_(std::make_unique<Ui::TFImportarVias>()),
      Controlador(controller) {
    ui_->setupUi(this);
    // Labels below each other have one width, whichever of them are shown.
    const int width = std::max(ui_->LProvincia_->sizeHint().width(), ui_->LMunicipio_->sizeHint().width());
    for (QLabel* const label : {ui_->LProvincia_, ui_->LMunicipio_, ui_->LProvinciaAmbrel_}) {
        label->setMinimumWidth(width);
    }
    connectControls();
    ambrel::limitDropDowns(*this);
    ambrel::tightenOnSmallScreen(*this, leastSize);
    resize(ambrel::withinScreen(*this, startSize));
}

TFImportarVias::~TFImportarVias() = default;

void TFImportarVias::connectControls() {
    using Dialog = TFImportarVias;
    new ambrel::FormKeys(*this, *ui_->BBCancelar,
                         [this](std::uint16_t key, Qt::KeyboardModifiers) { return FormKeyDown(key); });
    connectFocus();
    connectModes();
    const auto onClick = [this](auto* button, void (Dialog::*handler)()) {
        connect(button, &QAbstractButton::clicked, this,
                ambrel::guarded([this, handler] { (this->*handler)(); }));
    };
    onClick(ui_->BBBuscarViasPorProvincia, &Dialog::BBBuscarViasPorProvinciaClick);
    onClick(ui_->BBBuscarViasPorMunicipio, &Dialog::BBBuscarViasPorMunicipioClick);
    onClick(ui_->BBGuardarPorProvincia, &Dialog::BBGuardarPorProvinciaClick);
    onClick(ui_->BBGuardarPorMunicipio, &Dialog::BBGuardarPorMunicipioClick);
    connect(ui_->BBCancelar, &QPushButton::clicked, this, ambrel::guarded([this] { reject(); }));
    makeProvinceMenu();
}

void TFImportarVias::connectFocus() {
    using Dialog = TFImportarVias;
    help_ = new ambrel::FocusHelp(*this, *ui_->SBAyuda);
    const auto watchExit = [this](QComboBox* combo, void (Dialog::*handler)()) {
        help_->watchEdit(combo, {}, [this, combo, handler] {
            isChoosingByKey_ ? help_->DejaFoco(combo) : (this->*handler)();
        });
    };
    watchExit(ui_->CBProvincias, &Dialog::CBProvinciasExit);
    help_->watchEdit(ui_->CBMunicipios);
    watchExit(ui_->CBProvinciasAmbrel, &Dialog::CBProvinciasAmbrelExit);
    help_->watchEdit(ui_->CBMunicipiosAmbrel);
    for (QPushButton* const button :
         {ui_->BBBuscarViasPorProvincia, ui_->BBBuscarViasPorMunicipio, ui_->BBGuardarPorProvincia,
          ui_->BBGuardarPorMunicipio, ui_->BBCancelar}) {
        help_->watchButton(button);
    }
    // The list is no stop of the Tab key.
    connect(new QShortcut(Qt::Key_F6, this), &QShortcut::activated, ui_->SGVias,
            [grid = ui_->SGVias] { grid->setFocus(Qt::ShortcutFocusReason); });
}

/// The captions begin with the number; no letter of theirs is underlined.
void TFImportarVias::connectModes() {
    for (const auto& [button, key] :
         {std::pair(ui_->RBMasDeUno, Qt::Key_1), {ui_->RBUno, Qt::Key_2}, {ui_->RBTodosConUno, Qt::Key_3}}) {
        connect(button, &QRadioButton::clicked, this, [this, button = button] { chooseMode(*button); });
        connect(new QShortcut(Qt::ALT | key, this), &QShortcut::activated, this,
                ambrel::guarded([this, button = button] { chooseModeByKey(*button); }));
    }
}

void TFImportarVias::makeProvinceMenu() {
    auto* const menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("PMGuardarPorProvincia"));
    QAction* const item =
        menu->addAction(QStringLiteral("Guardar las vias de todas las provincias importadas previamente"));
    item->setObjectName(QStringLiteral("MIGuardarPorProvincia"));
    connect(item, &QAction::triggered, this, ambrel::guarded([this] { MIGuardarPorProvinciaClick(); }));
    connect(ui_->BBGuardarPorProvincia, &QWidget::customContextMenuRequested, this,
            ambrel::guarded([this, menu](const QPoint& place) {
                menu->popup(ui_->BBGuardarPorProvincia->mapToGlobal(place));
            }));
}

void TFImportarVias::reject() { done(ambrel::cancelledResult); }

void TFImportarVias::done(int result) {
    ambrel::runGuarded([this] { FormClose(); });
    QDialog::done(result);
}

/// The least size grows with what the mode shows, and with the font; it is not larger than a small screen.
bool TFImportarVias::event(QEvent* event) {
    const bool result = QDialog::event(event);
    if (event->type() == QEvent::LayoutRequest) {
        setMinimumSize(ambrel::withinScreen(*this, leastSize).expandedTo(layout()->totalMinimumSize()));
    }
    return result;
}

void TFImportarVias::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (event->spontaneous()) {
        return;
    }
    fitCaptions();
    ambrel::fitHints(*this, *ui_->SBAyuda, statusTextMargins);
    ambrel::runGuarded([this] { FormShow(); });
}

/// A least width that is set takes the place of the caption's own, which may need more.
void TFImportarVias::fitCaptions() {
    for (QPushButton* const button : findChildren<QPushButton*>()) {
        button->ensurePolished();
        button->setMinimumWidth(std::max(button->minimumWidth(), button->sizeHint().width()));
    }
}

void TFImportarVias::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    ambrel::runGuarded([this] { FormResize(); });
}

void TFImportarVias::FormShow() {
    RBMasDeUnoClick();
    CargaProvinciasAmbrel();
}

void TFImportarVias::FormResize() { ui_->SGVias->fitNameColumn(); }

void TFImportarVias::FormClose() {
    // Deliberate: also a copy that another import left there.
    QFile::remove(QString::fromStdString(ambrel::scratchFile()));
    LiberaProvinciasAmbrel();
    LiberaMunicipiosAmbrel();
}

bool TFImportarVias::FormKeyDown(std::uint16_t key) { return ambrel::enterMovesOn(*this, key); }

// --- Modes.

ambrel::ImportMode TFImportarVias::mode() const {
    if (ui_->RBMasDeUno->isChecked()) {
        return ambrel::ImportMode::SeveralCodes;
    }
    return ui_->RBUno->isChecked() ? ambrel::ImportMode::OneCode : ambrel::ImportMode::WholeProvince;
}

/// An arrow key chooses a mode before the focus has left the button of the one before. The handler waits for
/// that, or the focus that it gives to another control would be taken back.
void TFImportarVias::chooseMode(const QRadioButton& button) {
    const bool isArrow = focusWidget() != &button && qobject_cast<QRadioButton*>(focusWidget());
    QMetaObject::invokeMethod(
        this, [this] { ambrel::runGuarded([this] { RBMasDeUnoClick(); }); },
        isArrow ? Qt::QueuedConnection : Qt::DirectConnection);
}

/// Whoever goes to another option has done with the places of this one: leaving them asks for nothing and
/// loads nothing.
void TFImportarVias::chooseModeByKey(QRadioButton& button) {
    {
        const QScopedValueRollback leaving(isChoosingByKey_, true);
        button.setFocus(Qt::ShortcutFocusReason);
    }
    button.click();
}

void TFImportarVias::RBMasDeUnoClick() {
    ui_->CBProvincias->clear();
    showMode();
    if (mode() == ambrel::ImportMode::SeveralCodes) {
        CargaMunicipiosMasDeUnCodigo();
    } else {
        CargaMunicipiosUnCodigo();
    }
}

void TFImportarVias::showMode() {
    using ambrel::ImportMode;
    const ImportMode current = mode();
    const bool hasFiles = current == ImportMode::SeveralCodes;
    const bool isProvince = current == ImportMode::WholeProvince;
    const QString name = hasFiles ? QStringLiteral("Municipio") : QStringLiteral("Provincia");
    ui_->LProvincia_->setText(name + QLatin1Char(':'));
    ui_->CBProvincias->setAccessibleName(name);
    // A control that is hidden hands the focus on to whatever comes next, whose handlers would then run.
    if (focusWidget() && focusWidget() != ui_->CBProvincias && !qobject_cast<QRadioButton*>(focusWidget())) {
        (isProvince ? ui_->RBTodosConUno : hasFiles ? ui_->RBMasDeUno : ui_->RBUno)->setFocus();
    }
    ui_->LMunicipio_->setVisible(current == ImportMode::OneCode);
    ui_->CBMunicipios->setVisible(current == ImportMode::OneCode);
    ui_->BBBuscarViasPorMunicipio->setVisible(!isProvince);
    ui_->BBBuscarViasPorProvincia->setVisible(isProvince);
    ui_->BBGuardarPorProvincia->setVisible(isProvince);
    ui_->GBDatosAmbrel->setVisible(!isProvince);
    ui_->SGVias->showRanges(hasFiles);
}

// --- What all parts use.

int TFImportarVias::Indice(const QComboBox& combo, const QString& text) {
    const QString wanted = text.toUpper();
    for (int index = 0; index < combo.count(); ++index) {
        if (combo.itemText(index).toUpper() == wanted) {
            return index;
        }
    }
    return -1;
}

void TFImportarVias::LimpiaDatos(bool Todo) {
    ui_->LMensaje_->clear();
    ui_->SGVias->clearStreets();
    if (Todo) {
        ui_->CBProvinciasAmbrel->setCurrentIndex(-1);
        ui_->CBMunicipiosAmbrel->setCurrentIndex(-1);
    }
}

const std::string& TFImportarVias::databaseName() const { return Controlador.DM->tbPostal.databaseName(); }

/// A window that is open already stays as it is.
void TFImportarVias::openProgress(const QString& text) {
    if (!Progreso) {
        Progreso = MuestraMensaje(text, this);
    }
}

void TFImportarVias::closeProgress() {
    CierraMensaje(Progreso);
    Progreso.clear();
}

/// Result of a step; one that fails by an exception, which is shown to the user, has not succeeded either. An
/// answer that cannot be filed passes on: those that follow would fare no better.
bool TFImportarVias::succeeds(const std::function<bool()>& step) {
    bool result = false;
    std::exception_ptr notFiled;
    ambrel::runGuarded([&] {
        try {
            result = step();
        } catch (const ambrel::FilingError&) {
            notFiled = std::current_exception();
        }
    });
    if (notFiled) {
        std::rethrow_exception(notFiled);
    }
    return result;
}
