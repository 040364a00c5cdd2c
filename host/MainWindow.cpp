// Builds the host's window and moves between customers.
#include "host/MainWindow.h"

#include <QCloseEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "dialogs/common/EditMenu.h"
#include "form/AddressBoxes.h"
#include "form/RecordBinding.h"
#include "host/AddressForm.h"
#include "host/AddressPreview.h"
#include "host/CommandButton.h"
#include "host/HostTable.h"
#include "host/MainMenu.h"
#include "host/WindowParts.h"
#include "host/audit/AuditWindow.h"
#include "host/validation/ValidationWindow.h"
#include "package/AmbCodPostales.h"
#include "services/EventGuard.h"
#include "services/Mensaje.h"

namespace host {
namespace {

constexpr int readableLetters = 140; // across the form; wider text is hard to follow

void bindBoxes(ambrel::RecordBinding& binding, const FormBoxes& boxes, HostTable& table) {
    binding.bind(boxes.name, table.name);
    binding.bind(boxes.address.municipality, table.municipality);
    binding.bind(boxes.address.province, table.province);
    binding.bind(boxes.address.streetType, table.streetType);
    binding.bind(boxes.address.street, table.street);
    binding.bind(boxes.address.number, table.number);
    binding.bind(boxes.floor, table.floor);
    binding.bind(boxes.address.postalCode, table.postalCode);
}

void bringForward(QWidget& window) {
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace

MainWindow::MainWindow(const QString& database, QWidget* parent)
    : QMainWindow(parent), table_(std::make_unique<HostTable>(database.toStdString())),
      controller_(std::make_unique<TClassCodPostales>(this)), form_(new AddressForm(this)),
      binding_(new ambrel::RecordBinding(table_->data, this)),
      address_(new ambrel::AddressBoxes(form_->boxes().address, *controller_, this)) {
    setObjectName(QStringLiteral("FClientes"));
    setWindowTitle(tr("Ambrel — Clientes"));
    controller_->Padre = this;
    layOut();
    addMenus(
        *this, *address_, table_->data, [this] { validateFile(); }, [this] { auditTables(); });
    bindBoxes(*binding_, form_->boxes(), *table_);
    wire();
    connect(binding_, &ambrel::RecordBinding::changed, this, ambrel::guarded([this] {
                showState();
                preview_->showRow(*table_);
            }));
    table_->data.open();
    binding_->showRow();
    form_->boxes().name->setFocus();
}

MainWindow::~MainWindow() {
    // The handlers at work in the form need table and controller, which are destroyed before the widgets.
    for (QLineEdit* box : {form_->boxes().name, form_->boxes().floor}) {
        ambrel::FocusEvents::unwatch(box);
    }
    delete validation_; // before the tables that its run uses are closed
    delete audit_;
    delete address_;
    delete binding_;
}

void MainWindow::wire() {
    address_->setRecord(*binding_);
    address_->setListButtons(form_->listButtons());
    connect(address_, &ambrel::AddressBoxes::stateChanged, this, [this](ambrel::AddressBoxes::Box box) {
        form_->showReason(form_->boxes().address.at(box), address_->reason(box));
    });
    for (QLineEdit* box : {form_->boxes().name, form_->boxes().floor}) {
        new ambrel::EditMenu(box);
        ambrel::FocusEvents::watch(
            box, [box] { TomaFocoControl(box); },
            [this, box] {
                DejaFocoControl(box);
                binding_->endUnchangedEdit();
            });
    }
}

void MainWindow::layOut() {
    auto* page = new QWidget(this);
    auto* middle = new QWidget(page); // centred in a wider window
    middle->setMaximumWidth(readableLetters * fontMetrics().averageCharWidth());
    (new QHBoxLayout(page))->addWidget(middle);
    page->layout()->setContentsMargins(0, 0, 0, 0);
    auto* column = new QVBoxLayout(middle);
    column->setContentsMargins(24, 20, 24, 16);
    column->setSpacing(16);
    auto* card = new QFrame(middle);
    card->setObjectName(QStringLiteral("MarcoFicha"));
    auto* inside = new QVBoxLayout(card);
    inside->setContentsMargins(0, 0, 0, 0);
    inside->setSpacing(0);
    inside->addWidget(form_, 1);
    preview_ = new AddressPreview(card);
    inside->addWidget(preview_);
    connect(preview_, &AddressPreview::copied, this, [this] { report(tr("Dirección copiada.")); });
    column->addWidget(header());
    column->addWidget(card, 1);
    column->addWidget(commands());
    message_ = new QLabel(middle);
    message_->setObjectName(QStringLiteral("LMensaje"));
    column->addWidget(message_);
    setCentralWidget(page);
    closeUpOnLowScreen(*this);
    resize(sizeHint().expandedTo({720, 0}));
}

QWidget* MainWindow::header() {
    auto* bar = new QWidget(this);
    auto* line = new QHBoxLayout(bar);
    line->setContentsMargins(0, 0, 0, 0);
    auto* title = new QLabel(tr("Ficha de cliente"), bar);
    title->setObjectName(QStringLiteral("LTitulo"));
    state_ = new QLabel(bar);
    state_->setObjectName(QStringLiteral("LEstado"));
    line->addWidget(title);
    line->addStretch();
    line->addWidget(state_);
    return bar;
}

QWidget* MainWindow::commands() {
    auto* bar = new QWidget(this);
    auto* line = new QHBoxLayout(bar);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(8);
    line->addWidget(
        command("BBAnterior", tr("&Anterior"), QStringLiteral("PgUp"), &MainWindow::goToPrevious));
    line->addWidget(
        command("BBSiguiente", tr("&Siguiente"), QStringLiteral("PgDown"), &MainWindow::goToNext));
    line->addStretch();
    line->addWidget(command("BBNuevo", tr("N&uevo"), QStringLiteral("Ctrl+N"), &MainWindow::startNew));
    undo_ = command("BBDeshacer", tr("&Deshacer"), QStringLiteral("Ctrl+D"), &MainWindow::undo);
    line->addWidget(undo_);
    line->addWidget(command("BBGuardar", tr("&Guardar"), QStringLiteral("Ctrl+S"), &MainWindow::save));
    return bar;
}

QPushButton* MainWindow::command(const char* objectName, const QString& text, const QString& shortcut,
                                 void (MainWindow::*action)()) {
    auto* button = new CommandButton(text, this);
    button->setObjectName(QLatin1String(objectName));
    button->setAutoDefault(false);
    const QKeySequence keys(shortcut, QKeySequence::PortableText);
    button->setToolTip(keys.toString(QKeySequence::NativeText));
    const auto act = [this, action] { (this->*action)(); };
    connect(button, &QPushButton::clicked, this, ambrel::guarded(act));
    connect(new QShortcut(keys, this), &QShortcut::activated, this, ambrel::guarded(act));
    return button;
}

void MainWindow::move(Step step) {
    if (!mayLeaveRow()) {
        return;
    }
    const bool wasNew = table_->data.state() == dbase::DatasetState::Insert;
    dropPendingRow();
    // From a new row the first step leads back to the customer shown before it.
    const bool moved = wasNew || (step == Step::Next ? table_->data.next() : table_->data.prior());
    binding_->showRow();
    if (moved) {
        report({});
    } else {
        report(step == Step::Next ? tr("Es el último cliente.") : tr("Es el primer cliente."));
    }
}

void MainWindow::startNew() {
    if (!mayLeaveRow()) {
        return;
    }
    dropPendingRow();
    binding_->beginNew();
    form_->boxes().name->setFocus();
    report(tr("Escriba los datos del cliente nuevo."));
}

void MainWindow::save() {
    address_->settle();
    if (!binding_->hasChanges()) {
        report(tr("No hay cambios que guardar."));
        return;
    }
    if (QLineEdit* cut = binding_->cutBox()) {
        Mensaje_Error(this, tr("«%1» no cabe en la ficha: escríbalo más corto.").arg(cut->text()),
                      tr("Atención"));
        cut->setFocus();
        return;
    }
    if (QLineEdit* const box = binding_->unstorableBox()) {
        Mensaje_Error(this, tr("«%1» tiene signos que la ficha no guarda: quítelos.").arg(box->text()),
                      tr("Atención"));
        box->setFocus();
        return;
    }
    TBPost(table_->data);
    binding_->showRow();
    report(tr("Cliente guardado."));
}

/// Restores what was stored of a customer; a new one has nothing stored and is discarded.
void MainWindow::undo() {
    if (table_->data.state() == dbase::DatasetState::Insert && binding_->hasChanges() && !mayDiscard()) {
        return;
    }
    dropPendingRow();
    table_->data.refresh(); // another user may have changed the row since
    binding_->showRow();
    report(tr("Cambios descartados."));
}

void MainWindow::validateFile() {
    if (!validation_) {
        validation_ = new ValidationWindow;
        connect(validation_, &ValidationWindow::addressChosen, this,
                ambrel::guarded([this](const ambrel::JudgedAddress& address, std::uint64_t fileRow) {
                    showInNewRow(address, fileRow);
                }));
    }
    bringForward(*validation_);
}

void MainWindow::auditTables() {
    if (!audit_) {
        audit_ = new AuditWindow;
    }
    bringForward(*audit_);
}

void MainWindow::showInNewRow(const ambrel::JudgedAddress& address, std::uint64_t fileRow) {
    raise();
    activateWindow();
    if (!mayLeaveRow()) {
        return;
    }
    dropPendingRow();
    binding_->beginNew();
    if (address_->take(address)) {
        form_->boxes().address.street->setFocus();
        report(tr("Dirección de la fila %1 del fichero, sin guardar.").arg(fileRow));
    }
}

bool MainWindow::mayLeaveRow() {
    address_->settle();
    return !binding_->hasChanges() || mayDiscard();
}

bool MainWindow::mayDiscard() {
    return Mensaje_NoSi(tr("¿Desea descartar los cambios?"),
                        tr("Los datos de este cliente no se han guardado."), tr("Atención")) == answeredYes;
}

void MainWindow::dropPendingRow() {
    if (table_->data.state() != dbase::DatasetState::Browse) {
        table_->data.cancel();
    }
}

void MainWindow::closeEvent(QCloseEvent* event) {
    bool may = true;
    ambrel::runGuarded([&] { may = mayLeaveRow(); });
    event->setAccepted(may);
    for (QWidget* const other : std::initializer_list<QWidget*>{validation_, audit_}) {
        if (may && other != nullptr) {
            other->close(); // the program ends with its last window
        }
    }
}

void MainWindow::showState() {
    const bool isNew = table_->data.state() == dbase::DatasetState::Insert;
    const bool isChanged = binding_->hasChanges();
    if (isNew) {
        state_->setText(tr("Cliente nuevo"));
    } else if (table_->data.isEmpty()) {
        state_->setText(tr("Sin clientes"));
    } else {
        state_->setText(isChanged ? tr("Con cambios sin guardar") : tr("Guardado"));
    }
    undo_->setEnabled(isChanged || isNew);
    if (isChanged) {
        report({}); // clears the last message
    }
}

void MainWindow::report(const QString& text) { message_->setText(text); }

} // namespace host
