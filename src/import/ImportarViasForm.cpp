// The import dialog's form: its options, one for each source of streets, its keys and its focus.
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <QShortcut>
#include <algorithm>

#include "dialogs/common/FocusHelp.h"
#include "dialogs/common/FormKeys.h"
#include "import/ImportarViasParts.h"
#include "services/EventGuard.h"

/// The options are created before the other controls, so that they also come first for the Tab key.
std::vector<QRadioButton*> TFImportarVias::Parts::makeOptions() const {
    std::vector<QRadioButton*> made;
    for (const auto& one : sources) {
        const ambrel::StreetSource::Description& description = one->description();
        auto* const option = new QRadioButton(description.caption, &dialog);
        option->setObjectName(QString::fromLatin1(description.option));
        option->setAccessibleName(description.caption.trimmed());
        made.push_back(option);
        option->setAccessibleDescription(QStringLiteral("Alt+%1 la elige").arg(made.size()));
    }
    made.front()->setChecked(true);
    return made;
}

void TFImportarVias::Parts::placeOptions() {
    for (QRadioButton* const option : options) {
        ui.lyModo->addWidget(option);
    }
}

void TFImportarVias::Parts::connectControls() {
    new ambrel::FormKeys(dialog, *ui.BBCancelar,
                         [this](std::uint16_t key, Qt::KeyboardModifiers) { return FormKeyDown(key); });
    connectFocus();
    connectOptions();
    const auto onClick = [this](const QPushButton* button, void (Parts::*handler)()) {
        QObject::connect(button, &QPushButton::clicked, &dialog,
                         ambrel::guarded([this, handler] { (this->*handler)(); }));
    };
    onClick(ui.BBBuscarViasPorProvincia, &Parts::BBBuscarViasPorProvinciaClick);
    onClick(ui.BBBuscarViasPorMunicipio, &Parts::BBBuscarViasPorMunicipioClick);
    onClick(ui.BBGuardarPorProvincia, &Parts::BBGuardarPorProvinciaClick);
    onClick(ui.BBGuardarPorMunicipio, &Parts::BBGuardarPorMunicipioClick);
    QObject::connect(ui.BBCancelar, &QPushButton::clicked, &dialog,
                     ambrel::guarded([this] { dialog.reject(); }));
    makeProvinceMenu();
}

void TFImportarVias::Parts::connectFocus() {
    help = new ambrel::FocusHelp(dialog, *ui.SBAyuda);
    const auto watchExit = [this](QComboBox* combo, void (Parts::*handler)()) {
        help->watchEdit(combo, {}, [this, combo, handler] {
            isChoosingByKey ? help->DejaFoco(combo) : (this->*handler)();
        });
    };
    watchExit(ui.CBProvincias, &Parts::CBProvinciasExit);
    help->watchEdit(ui.CBMunicipios);
    watchExit(ui.CBProvinciasAmbrel, &Parts::CBProvinciasAmbrelExit);
    help->watchEdit(ui.CBMunicipiosAmbrel);
    for (QPushButton* const button : {ui.BBBuscarViasPorProvincia, ui.BBBuscarViasPorMunicipio,
                                      ui.BBGuardarPorProvincia, ui.BBGuardarPorMunicipio, ui.BBCancelar}) {
        help->watchButton(button);
    }
    // The Tab key does not stop at the list.
    QObject::connect(new QShortcut(Qt::Key_F6, &dialog), &QShortcut::activated, ui.SGVias,
                     [grid = ui.SGVias] { grid->setFocus(Qt::ShortcutFocusReason); });
}

/// The captions begin with the option's number; none of their letters is underlined.
void TFImportarVias::Parts::connectOptions() {
    int key = Qt::Key_1;
    for (QRadioButton* const button : options) {
        QObject::connect(button, &QRadioButton::clicked, &dialog, [this, button] { chooseOption(*button); });
        QObject::connect(new QShortcut(Qt::ALT | Qt::Key(key++), &dialog), &QShortcut::activated, &dialog,
                         ambrel::guarded([this, button] { chooseOptionByKey(*button); }));
    }
}

void TFImportarVias::Parts::makeProvinceMenu() {
    auto* const menu = new QMenu(&dialog);
    menu->setObjectName(QStringLiteral("PMGuardarPorProvincia"));
    QAction* const item =
        menu->addAction(QStringLiteral("Guardar las vias de todas las provincias importadas previamente"));
    item->setObjectName(QStringLiteral("MIGuardarPorProvincia"));
    QObject::connect(item, &QAction::triggered, &dialog,
                     ambrel::guarded([this] { MIGuardarPorProvinciaClick(); }));
    QObject::connect(ui.BBGuardarPorProvincia, &QWidget::customContextMenuRequested, &dialog,
                     ambrel::guarded([this, menu](const QPoint& where) {
                         menu->popup(ui.BBGuardarPorProvincia->mapToGlobal(where));
                     }));
}

/// An arrow key chooses an option before the focus has left the previous option's button. The handler waits
/// for that; otherwise the focus that it gives to another control would be lost again.
void TFImportarVias::Parts::chooseOption(const QRadioButton& button) {
    const bool isArrow = dialog.focusWidget() != &button && qobject_cast<QRadioButton*>(dialog.focusWidget());
    QMetaObject::invokeMethod(
        &dialog, [this] { ambrel::runGuarded([this] { RBMasDeUnoClick(); }); },
        isArrow ? Qt::QueuedConnection : Qt::DirectConnection);
}

/// A user who changes to another option has finished with this one's places: leaving them asks for nothing
/// and loads nothing.
void TFImportarVias::Parts::chooseOptionByKey(QRadioButton& button) {
    {
        const QScopedValueRollback leaving(isChoosingByKey, true);
        button.setFocus(Qt::ShortcutFocusReason);
    }
    button.click();
}

void TFImportarVias::Parts::showOption() {
    using Needs = ambrel::StreetSource::Needs;
    const ambrel::StreetSource::Description& description = chosen();
    const bool isProvince = description.needs == Needs::WholeProvince;
    const bool choosesMunicipality = description.needs == Needs::PlaceMunicipality;
    ui.LProvincia_->setText(description.placeLabel + QLatin1Char(':'));
    ui.CBProvincias->setAccessibleName(description.placeLabel);
    // A hidden control passes the focus to the next one, whose handlers would then run.
    QWidget* const focused = dialog.focusWidget();
    if (focused && focused != ui.CBProvincias && !qobject_cast<QRadioButton*>(focused)) {
        (*std::ranges::find_if(options, &QRadioButton::isChecked))->setFocus();
    }
    ui.LMunicipio_->setVisible(choosesMunicipality);
    ui.CBMunicipios->setVisible(choosesMunicipality);
    ui.BBBuscarViasPorMunicipio->setVisible(!isProvince);
    ui.BBBuscarViasPorProvincia->setVisible(isProvince);
    ui.BBGuardarPorProvincia->setVisible(isProvince);
    ui.GBDatosAmbrel->setVisible(!isProvince);
    ui.SGVias->showRanges(description.codes == ambrel::StreetCodes::Own);
}
