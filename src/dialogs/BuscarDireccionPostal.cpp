// The list of streets.
#include "dialogs/BuscarDireccionPostal.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLayout>
#include <QLocale>
#include <QShowEvent>
#include <algorithm>
#include <vector>

#include "controller/BoxCompletion.h"
#include "controller/ClasCodPostales.h"
#include "controller/InePass.h"
#include "controller/MunicipalityOfStreet.h"
#include "controller/ProvinceStreets.h"
#include "controller/StreetRecord.h"
#include "data/CodPostalesDM.h"
#include "dialogs/common/DropDown.h"
#include "dialogs/common/FocusHelp.h"
#include "dialogs/common/FormKeys.h"
#include "dialogs/common/HintWidth.h"
#include "dialogs/common/IncrementalSearch.h"
#include "dialogs/common/LastColumn.h"
#include "dialogs/common/ModalDialog.h"
#include "dialogs/common/ProvinceItems.h"
#include "dialogs/common/ScreenRoom.h"
#include "import/ImportarVias.h"
#include "services/Confamb.h"
#include "services/EventGuard.h"
#include "services/KeyCodes.h"
#include "services/KeyUpEvents.h"
#include "services/Mensaje.h"
#include "services/Pantalla.h"
#include "services/Ruttb.h"
#include "services/TagProperty.h"
#include "services/Text.h"
#include "ui_BuscarDireccionPostal.h"

namespace {

constexpr int titleMargins = 14; // free space of a column beside its title
constexpr int nameColumn = 1;
constexpr int nameLetters = 28;      // of a street, shown whatever the font
constexpr QSize leastSize(640, 400); // logical pixels
constexpr int designWidth = 793;     // at which the columns have the widths below
constexpr int progressPause = 100;   // milliseconds

ambrel::GridColumn numberColumn(const char* field, const QString& title) {
    return {.field = field, .title = title, .width = 58, .alignment = Qt::AlignRight};
}

/// Every column is at least as wide as its title, so that a larger font cuts none.
/// Deliberate: the longest street names are not shown whole; Space shows the card.
std::vector<ambrel::GridColumn> streetColumns(const QFontMetrics& metrics) {
    std::vector<ambrel::GridColumn> columns{
        {.field = "TIPO_VIA", .title = QStringLiteral("Tipo vía"), .width = 41},
        {.field = "VIA", .title = QStringLiteral("Nombre"), .width = 223, .tags = {"NOMBREVIA"}},
        {.field = "CODPOSTAL", .title = QStringLiteral("Cód. Postal"), .width = 61},
        numberColumn("IMPAR_INI", QStringLiteral("Inicio impar")),
        numberColumn("IMPAR_FIN", QStringLiteral("Fin impar")),
        numberColumn("PAR_INI", QStringLiteral("Inicio par")),
        numberColumn("PAR_FIN", QStringLiteral("Fin par"))};
    for (ambrel::GridColumn& column : columns) {
        column.width = std::max(column.width, metrics.horizontalAdvance(column.title) + titleMargins);
    }
    columns[nameColumn].width = std::max(columns[nameColumn].width, nameLetters * metrics.averageCharWidth());
    return columns;
}

bool isControlHeld() { return QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ControlModifier); }

/// The window that shows the progress of the pass, and lets the desktop repaint.
class PassProgress {
public:
    explicit PassProgress(QWidget* owner) : window_(MuestraMensaje(text(0), owner)) { sinceShown_.start(); }
    ~PassProgress() { CierraMensaje(window_); }
    PassProgress(const PassProgress&) = delete;
    PassProgress& operator=(const PassProgress&) = delete;

    void show(std::uint32_t done, std::uint32_t total) {
        if (sinceShown_.elapsed() < progressPause) {
            return;
        }
        CambiaMensaje(text(static_cast<int>(std::uint64_t(done) * 100 / total)), window_);
        sinceShown_.restart();
    }

private:
    static QString text(int percent) {
        return QStringLiteral("Actualizando los códigos INE de las vías: %1 %").arg(percent);
    }

    ambrel::ProgressWindow window_;
    QElapsedTimer sinceShown_;
};

/// The pass shows no message of its own: this text goes into the status bar.
QString outcomeOf(const ambrel::InePassCount& count) {
    const QLocale spanish(QLocale::Spanish, QLocale::Spain);
    return QStringLiteral("Vías rellenadas: %1. En uso por otros, que se quedan como estaban: %2.")
        .arg(spanish.toString(count.filled), spanish.toString(count.inUse));
}

} // namespace

TFBuscarDireccionPostal::TFBuscarDireccionPostal(QWidget* owner, TClassCodPostales& controller,
                                                 bool standalone)
    : QDialog(ambrel::dialogParent(owner)), ui_(std::make_unique<Ui::TFBuscarDireccionPostal>()),
      controller_(controller), standalone_(standalone) {
    ui_->setupUi(this);
    resize(ambrel::withinScreen(*this, size()));
    ambrel::limitDropDowns(*this);
    ui_->DBGPostal->setColumns(streetColumns(ui_->DBGPostal->fontMetrics()));
    for (int column = 0; column < ui_->DBGPostal->columnCount(); ++column) {
        leastGridRoom_ += ui_->DBGPostal->columnWidth(column);
    }
    ui_->DBGPostal->setMinimumWidth(ui_->DBGPostal->sizeHint().width()); // all columns fit, whatever the font
    ui_->DBGPostal->setDataSource(&DSPostal);
    onDataChange_ = DSPostal.listen(
        [this](dbase::DatasetChange change) { ambrel::runGuarded([&] { DSPostalDataChange(change); }); });
    connectControls();
}

TFBuscarDireccionPostal::~TFBuscarDireccionPostal() {
    ui_->DBGPostal->setDataSource(nullptr); // the grid outlives the members
}

void TFBuscarDireccionPostal::connectControls() {
    using Dialog = TFBuscarDireccionPostal;
    new ambrel::FormKeys(*this, *ui_->BBCancelar, [this](std::uint16_t key, Qt::KeyboardModifiers modifiers) {
        return FormKeyDown(key, modifiers);
    });
    help_ = new ambrel::FocusHelp(*this, *ui_->SBAyuda);
    help_->watchEdit(ui_->EVia);
    help_->watchEdit(ui_->CBProvincia);

    const auto onClick = [&](QPushButton* button, void (Dialog::*handler)()) {
        help_->watchButton(button);
        connect(button, &QPushButton::clicked, this,
                ambrel::guarded([this, handler] { (this->*handler)(); }));
    };
    onClick(ui_->BBActualizarCOD_INE, &Dialog::BBActualizarCOD_INEClick);
    onClick(ui_->BBAceptar, &Dialog::BBAceptarClick);
    onClick(ui_->BBCancelar, &Dialog::BBCancelarClick);
    onClick(ui_->BBModificar, &Dialog::BBModificarClick);
    onClick(ui_->BBAnadir, &Dialog::BBAnadirClick);
    onClick(ui_->BBEliminar, &Dialog::BBEliminarClick);
    onClick(ui_->BBDetalles, &Dialog::BBDetallesClick);
    onClick(ui_->BBImportar, &Dialog::BBImportarClick);

    ambrel::KeyUpEvents::watch(ui_->EVia,
                               [this](std::uint16_t& key, Qt::KeyboardModifiers) { EViaKeyUp(key); });
    connect(ui_->CBProvincia, &QComboBox::activated, this, ambrel::guarded([this] { CBProvinciaChange(); }));
    connect(ui_->DBGPostal, &ambrel::DataGrid::rowDoubleClicked, this,
            ambrel::guarded([this] { BBAceptarClick(); }));
}

void TFBuscarDireccionPostal::reject() { done(ambrel::cancelledResult); }

/// The minimum size grows with the font.
bool TFBuscarDireccionPostal::event(QEvent* event) {
    const bool result = QDialog::event(event);
    if (event->type() == QEvent::LayoutRequest) {
        setMinimumSize(leastSize.expandedTo(layout()->totalMinimumSize()));
    }
    return result;
}

void TFBuscarDireccionPostal::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (!event->spontaneous()) {
        ambrel::fitCaptions(*this);
        ambrel::runGuarded([this] { FormShow(); });
        ui_->CBProvincia->setMinimumWidth(ui_->CBProvincia->sizeHint().width());
        breakWideRow();
    }
}

/// With a large font the row of buttons may be wider than the screen: its last one then stands below it.
void TFBuscarDireccionPostal::breakWideRow() {
    const QSize needed = ambrel::neededSize(*this);
    if (ambrel::withinScreen(*this, needed).width() == needed.width() ||
        ui_->lyVias->indexOf(ui_->BBImportar) < 0) {
        return;
    }
    auto* const below = new QHBoxLayout;
    below->addStretch();
    below->addWidget(ui_->BBImportar);
    ui_->lyContent->insertLayout(ui_->lyContent->indexOf(ui_->lyVias) + 1, below);
}

void TFBuscarDireccionPostal::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    ambrel::runGuarded([this] { FormResize(); });
}

// --- The form.

void TFBuscarDireccionPostal::FormShow() {
    TDMCodPostales& tables = *controller_.DM;
    CargaProvincias();
    if (standalone_) {
        const QString own = ambrel::fromWindows1252(Config.GetProvin3()).trimmed();
        ui_->CBProvincia->setCurrentIndex(BuscaProvincia(own));
        ActualizaTablaMunicipi();
        // Deliberate: sought before the tag changes; a key of two fields is built for the active tag.
        goToTypedStreet();
    } else {
        const QString code = ambrel::fromWindows1252(tables.tbMunicipiCOD_PROV.text());
        ui_->CBProvincia->setCurrentIndex(BuscaProvincia(code));
    }
    TBIndexa("NOMBREVIA", tables.tbPostal);
    DSPostal.setDataset(&tables.tbPostal);
    CompruebaSiViaNueva();
    FormResize();
}

/// Width beyond the design goes to the names; the last column takes the rest.
void TFBuscarDireccionPostal::FormResize() {
    ambrel::DataGrid& grid = *ui_->DBGPostal;
    const int room = grid.clientWidth();
    const int roomAtDesign = std::max(designWidth - (width() - room), leastGridRoom_);
    const int growth = std::max(0, room - roomAtDesign);
    grid.setColumnWidth(nameColumn, grid.columnWidth(nameColumn) + growth - nameGrowth_);
    nameGrowth_ = growth;
    ambrel::fillLastColumn(grid);
}

/// The keys call their handlers even if the button is disabled.
bool TFBuscarDireccionPostal::FormKeyDown(std::uint16_t key, Qt::KeyboardModifiers modifiers) {
    if (ambrel::enterMovesOn(*this, key)) {
        return true;
    }
    // While a name is being typed, Delete and Space belong to the text.
    const bool types = ui_->EVia->hasFocus();
    switch (key) {
    case ambrel::key_code::insert:
        if ((modifiers & ~Qt::KeypadModifier) == Qt::ShiftModifier) {
            BBModificarClick();
        } else {
            BBAnadirClick();
        }
        return true;
    case ambrel::key_code::remove:
        if (!types) {
            BBEliminarClick();
        }
        return !types;
    case ambrel::key_code::space:
        if (!types) {
            BBDetallesClick();
        }
        return !types;
    default:
        return false;
    }
}

/// Reacts to a change of row, not to a value that the record card sets in this one.
void TFBuscarDireccionPostal::DSPostalDataChange(dbase::DatasetChange change) {
    using dbase::DatasetChange;
    if (change != DatasetChange::Opened && change != DatasetChange::Moved && change != DatasetChange::Order) {
        return;
    }
    CompruebaSiViaNueva();
    ActualizaMunicipio();
}

// --- Searching.

void TFBuscarDireccionPostal::EViaKeyUp(std::uint16_t key) {
    ambrel::removeLeadingBlanks(*ui_->EVia);
    if (ambrel::moveByKey(key, controller_.DM->tbPostal, *ui_->DBGPostal)) {
        return;
    }
    ActualizaTablaMunicipi();
    KeyUpDireccionPostal(key);
}

void TFBuscarDireccionPostal::KeyUpDireccionPostal(std::uint16_t key) {
    if (!ambrel::completesStreet(key)) {
        return;
    }
    const auto edited = ambrel::editedText(*ui_->EVia);
    if (!edited) {
        return;
    }
    TDMCodPostales& tables = *controller_.DM;
    ambrel::goToStreetOfProvince(tables, edited->text);
    if (const auto completion = ambrel::complete(*edited, tables.tbPostalVIA.text())) {
        ambrel::showCompletion(*ui_->EVia, ambrel::NamedCompletion{.box = *completion});
    }
}

void TFBuscarDireccionPostal::CBProvinciaChange() {
    ActualizaTablaMunicipi();
    goToTypedStreet();
}

void TFBuscarDireccionPostal::goToTypedStreet() {
    // A name that the tables cannot hold counts as none: the province's first street.
    const std::string name = ambrel::toWindows1252(ui_->EVia->text()).value_or(std::string());
    ambrel::goToStreetOfProvince(*controller_.DM, name);
}

void TFBuscarDireccionPostal::CargaProvincias() {
    ui_->CBProvincia->clear();
    for (const ambrel::Province& province : ambrel::spanishProvinces(tbProvin)) {
        ui_->CBProvincia->addItem(ambrel::provinceItem(ambrel::fromWindows1252(province.name),
                                                       ambrel::fromWindows1252(province.code)));
    }
}

int TFBuscarDireccionPostal::BuscaProvincia(const QString& text) const {
    QStringList items;
    for (int index = 0; index < ui_->CBProvincia->count(); ++index) {
        items << ui_->CBProvincia->itemText(index);
    }
    return ambrel::findItemContaining(items, text);
}

void TFBuscarDireccionPostal::ActualizaTablaMunicipi() {
    const QString name = ambrel::nameOfItem(ui_->CBProvincia->currentText());
    ambrel::goToFirstMunicipality(*controller_.DM, tbProvin, ambrel::toNearestWindows1252(name));
}

void TFBuscarDireccionPostal::CompruebaSiViaNueva() {
    const bool isNew = ambrel::isUserStreet(*controller_.DM);
    ui_->BBModificar->setEnabled(isNew);
    ui_->BBEliminar->setEnabled(isNew);
}

void TFBuscarDireccionPostal::ActualizaMunicipio() {
    const QString code = ambrel::codeOfItem(ui_->CBProvincia->currentText());
    const std::string name =
        ambrel::municipalityOfStreet(*controller_.DM, ambrel::toNearestWindows1252(code));
    ui_->LMunicipio->setText(ambrel::fromWindows1252(name));
}

// --- Buttons.

void TFBuscarDireccionPostal::BBActualizarCOD_INEClick() {
    const int answer =
        Mensaje_SiNo(this, QStringLiteral("¿Seguro que desea actualizar los Códigos INE de las vías?"),
                     QStringLiteral("Esta operación tomará varios minutos"),
                     QStringLiteral("Actualizar la tabla Postales"));
    if (answer != answeredYes) {
        return;
    }
    const auto rows = isControlHeld() ? ambrel::InePassRows::WithoutData : ambrel::InePassRows::All;
    const ambrel::InePassCount count = [&] {
        PassProgress progress(this);
        return ambrel::fillIneCodes(
            Config.GetAliasAmbrel(), rows,
            [&](std::uint32_t done, std::uint32_t total) { progress.show(done, total); });
    }();
    ui_->DBGPostal->refresh(); // the current row was changed without the list's knowledge
    help_->showOutcome(outcomeOf(count));
}

void TFBuscarDireccionPostal::BBAceptarClick() {
    ambrel::goToMunicipalityOfStreet(*controller_.DM);
    ambrel::setTag(*this, ambrel::acceptedTag);
    done(ambrel::acceptedResult);
}

void TFBuscarDireccionPostal::BBCancelarClick() { done(ambrel::cancelledResult); }

void TFBuscarDireccionPostal::BBModificarClick() { controller_.MuestraFichaVia(opModificacion, {}); }

void TFBuscarDireccionPostal::BBAnadirClick() { controller_.MuestraFichaVia(opAlta, {}); }

void TFBuscarDireccionPostal::BBEliminarClick() { controller_.MuestraFichaVia(opBaja, {}); }

void TFBuscarDireccionPostal::BBDetallesClick() { controller_.MuestraFichaVia(opConsulta, {}); }

void TFBuscarDireccionPostal::BBImportarClick() {
    ambrel::ModalDialog<TFImportarVias>(this, controller_).show();
}
