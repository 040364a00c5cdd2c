// The import dialog: the handlers of its controls.
#include "import/ImportarVias.h"

#include <QFile>
#include <QRadioButton>
#include <QScrollArea>
#include <QShowEvent>
#include <algorithm>
#include <optional>

#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "dialogs/common/DropDown.h"
#include "dialogs/common/FocusHelp.h"
#include "dialogs/common/FormKeys.h"
#include "dialogs/common/HintWidth.h"
#include "dialogs/common/ModalDialog.h"
#include "dialogs/common/ScreenRoom.h"
#include "import/ImportarViasParts.h"
#include "import/ResponseFolder.h"
#include "import/StreetSources.h"
#include "services/EventGuard.h"
#include "ui_ImportarVias.h" // where its generator looks for it

namespace {

constexpr int statusTextMargins = 40; // left free beside the status bar's text, size grip included
constexpr QSize leastSize(570, 600);  // logical pixels
constexpr QSize startSize(720, 640);

using Needs = ambrel::StreetSource::Needs;

QString failedListTitle() { return QStringLiteral("Error al importar los datos"); }

/// Fills a combo in the given order, with no item chosen.
void setItems(QComboBox& combo, const QStringList& names) {
    combo.clear();
    combo.addItems(names);
    combo.setCurrentIndex(-1);
}

} // namespace

TFImportarVias::TFImportarVias(QWidget* owner, TClassCodPostales& controller)
    : QDialog(ambrel::dialogParent(owner)), parts_(std::make_unique<Parts>(*this, controller)) {
    parts_->connectControls();
    ambrel::limitDropDowns(*this);
    ambrel::tightenOnSmallScreen(*this, leastSize);
    resize(ambrel::withinScreen(*this, startSize));
}

TFImportarVias::~TFImportarVias() = default;

TFImportarVias::Parts::Parts(TFImportarVias& form, TClassCodPostales& controller)
    : dialog(form), database(controller.DM->tbPostal.databaseName()), messages(&form), directory(messages),
      sources(ambrel::streetSources({database, messages, directory})), options(makeOptions()), ui(form),
      place(database, messages, *ui.CBProvinciasAmbrel, *ui.CBMunicipiosAmbrel,
            [this] { help->DejaFoco(ui.CBProvinciasAmbrel); }),
      found(*ui.SGVias, *ui.LMensaje_), saving(controller, messages, found, place),
      province({controller, messages, directory, place, found, saving, *ui.CBProvincias, *ui.CBMunicipios}) {
    placeOptions();
    // Labels below one another have the same width, whichever are shown.
    const int width = std::max(ui.LProvincia_->sizeHint().width(), ui.LMunicipio_->sizeHint().width());
    for (QLabel* const label : {ui.LProvincia_, ui.LMunicipio_, ui.LProvinciaAmbrel_}) {
        label->setMinimumWidth(width);
    }
}

void TFImportarVias::reject() { done(ambrel::cancelledResult); }

void TFImportarVias::done(int result) {
    ambrel::runGuarded([this] { parts_->FormClose(); });
    QDialog::done(result);
}

/// The minimum size grows with the controls that the option shows and with the font, up to a small screen's.
bool TFImportarVias::event(QEvent* event) {
    const bool result = QDialog::event(event);
    if (event->type() == QEvent::LayoutRequest) {
        setMinimumSize(ambrel::withinScreen(*this, leastSize).expandedTo(ambrel::neededSize(*this)));
    }
    return result;
}

void TFImportarVias::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (event->spontaneous()) {
        return;
    }
    ambrel::fitCaptions(*this);
    parts_->scrollOnSmallScreen();
    ambrel::fitHints(*this, *parts_->ui.SBAyuda, statusTextMargins);
    ambrel::runGuarded([this] { parts_->FormShow(); });
}

void TFImportarVias::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    ambrel::runGuarded([this] { parts_->FormResize(); });
}

void TFImportarVias::Parts::FormShow() {
    RBMasDeUnoClick();
    place.CargaProvinciasAmbrel();
}

/// With a large font the captions of the options take up more than a small screen. Before an option hides
/// what it does not need, and before a control has the focus.
void TFImportarVias::Parts::scrollOnSmallScreen() {
    const QSize needed = ambrel::neededSize(dialog);
    if (ambrel::withinScreen(dialog, needed) == needed) {
        // Measuring has made the window as large as all options together.
        dialog.setMinimumSize(ambrel::withinScreen(dialog, leastSize));
        return dialog.resize(startSize);
    }
    auto* const area = new QScrollArea(&dialog);
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidgetResizable(true);
    delete dialog.layout()->replaceWidget(ui.PImportar, area);
    area->setWidget(ui.PImportar);
    area->show(); // at once: the dialog is being shown
    ui.PImportar->show();
    dialog.setMinimumSize(ambrel::withinScreen(dialog, leastSize).expandedTo(ambrel::neededSize(dialog)));
    dialog.resize(ambrel::withinScreen(dialog, startSize));
}

void TFImportarVias::Parts::FormResize() { ui.SGVias->fitNameColumn(); }

void TFImportarVias::Parts::FormClose() {
    // Deliberate: also removes a copy left by another import.
    QFile::remove(QString::fromStdString(ambrel::scratchFile()));
    place.LiberaProvinciasAmbrel();
    place.LiberaMunicipiosAmbrel();
}

bool TFImportarVias::Parts::FormKeyDown(std::uint16_t key) { return ambrel::enterMovesOn(dialog, key); }

ambrel::StreetSource& TFImportarVias::Parts::source() const {
    const auto option = std::ranges::find_if(options, &QRadioButton::isChecked);
    return *sources.at(static_cast<std::size_t>(option - options.begin()));
}

void TFImportarVias::Parts::RBMasDeUnoClick() {
    ui.CBProvincias->clear();
    showOption();
    loadPlaces();
}

/// After a slow list, the focus is where the user continues.
void TFImportarVias::Parts::loadPlaces() {
    const QString& listing = chosen().listing;
    std::optional<ambrel::ShownProgress> progress;
    if (!listing.isEmpty()) {
        progress.emplace(messages, listing);
    }
    const ambrel::PlaceList list = source().places();
    setItems(*ui.CBProvincias, list.names);
    if (progress) {
        QWidget* const next = list.isWhole ? static_cast<QWidget*>(ui.CBProvincias) : ui.BBCancelar;
        next->setFocus();
        progress.reset();
    }
    if (!list.isWhole) {
        messages.error(QStringLiteral("No se han podido cargar las provincias.Salga de la ventana y vuelva a "
                                      "intentarlo de nuevo más tarde"),
                       failedListTitle());
    }
}

void TFImportarVias::Parts::CBProvinciasExit() {
    help->DejaFoco(ui.CBProvincias);
    if (chosen().needs == Needs::Place) {
        if (ui.CBProvincias->count() == 0 && !chosen().nothingListed.isEmpty()) {
            messages.info(chosen().nothingListed, ambrel::missingDataTitle());
        }
        return;
    }
    if (!loadMunicipalities()) {
        ui.CBProvincias->setCurrentIndex(-1);
        ui.CBMunicipios->clear();
        messages.error(QStringLiteral("No se han podido cargar los municipios asociados a la provincia "
                                      "indicada.Inténtelo de nuevo más tarde"),
                       failedListTitle());
    }
    if (ui.CBMunicipios->isVisible()) {
        ui.CBMunicipios->setFocus();
    }
}

bool TFImportarVias::Parts::loadMunicipalities() {
    const ambrel::ShownProgress progress(messages,
                                         QStringLiteral("Importando el listado de municipios de..."));
    const QString name = ui.CBProvincias->currentText();
    messages.change(name);
    const ambrel::PlaceList list = source().municipalities(name);
    setItems(*ui.CBMunicipios, list.names);
    return list.isWhole;
}

void TFImportarVias::Parts::CBProvinciasAmbrelExit() { place.CBProvinciasAmbrelExit(); }

// --- One municipality.

void TFImportarVias::Parts::BBBuscarViasPorMunicipioClick() {
    found.clear();
    place.clear();
    findStreets(ui.CBProvincias->currentText(), ui.CBMunicipios->currentText());
}

void TFImportarVias::Parts::findStreets(const QString& name, const QString& municipality) {
    const bool needsMunicipality = chosen().needs != Needs::Place;
    if (name.isEmpty() || (needsMunicipality && municipality.isEmpty())) {
        messages.error(chosen().incomplete, ambrel::missingDataTitle());
        return;
    }
    const ambrel::ShownProgress progress(messages,
                                         QStringLiteral("Importando el listado de vías del municipio..."));
    messages.change(needsMunicipality ? municipality : name);
    ambrel::FoundStreets streets = source().find(name, municipality);
    const bool isWhole = streets.isWhole;
    found.show(std::move(streets));
    if (isWhole) {
        place.choose(source().hostPlace(name, municipality));
    } else {
        ambrel::reportNothingFound(messages);
    }
}

void TFImportarVias::Parts::BBGuardarPorMunicipioClick() {
    // Deliberate: an empty list passes, because it still has a row; saving refuses its empty name.
    if (found.streets().empty()) {
        messages.info(QStringLiteral("No hay vías que importar. El listado está vacío"),
                      QStringLiteral("Busque antes las vías"));
    } else if (place.isChosen()) {
        saving.GuardaVias(chosen().codes);
    } else {
        messages.info(QStringLiteral("No ha indicado correctamente el nombre de la provincia o el municipio"),
                      QStringLiteral("Seleccione donde importar las calles"));
    }
}

// --- Whole provinces.

/// False, with a message, if the option or the province is missing; `option` is the one named in the message.
bool TFImportarVias::Parts::isProvinceGiven(const QString& option) {
    if (chosen().needs != Needs::WholeProvince) {
        messages.error(QStringLiteral("Para importar las vías de todos los municipios de una \r"
                                      "provincia es necesario marcar la opción ") +
                           option,
                       ambrel::missingDataTitle());
        return false;
    }
    if (ui.CBProvincias->currentText().isEmpty()) {
        messages.error(QStringLiteral("Para importar las vías de todos los \r"
                                      "municipios de una provincia es necesario indicarla"),
                       ambrel::missingDataTitle());
        return false;
    }
    return true;
}

void TFImportarVias::Parts::BBBuscarViasPorProvinciaClick() {
    if (isProvinceGiven(QStringLiteral("3ª"))) {
        CBProvinciasExit();
        province.fetch(source());
    }
}

void TFImportarVias::Parts::BBGuardarPorProvinciaClick() {
    // Deliberate: the text names option 2, although it is option 3.
    if (isProvinceGiven(QStringLiteral("2ª"))) {
        province.saveChosen(chosen().codes);
    }
}

void TFImportarVias::Parts::MIGuardarPorProvinciaClick() { province.saveAll(chosen().codes); }
