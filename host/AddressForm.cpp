#include "host/AddressForm.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

namespace host {
namespace {

constexpr int gridColumns = 12;

} // namespace

AddressForm::AddressForm(QWidget* parent) : QWidget(parent), grid_(new QGridLayout(this)) {
    using ambrel::Capitals;
    using Kind = ValidationMark::Kind;
    grid_->setContentsMargins(20, 18, 20, 20);
    grid_->setHorizontalSpacing(18);
    grid_->setVerticalSpacing(16);
    for (int column = 0; column < gridColumns; ++column)
        grid_->setColumnStretch(column, 1);

    boxes_.name = addBox({"ENombre", tr("&Cliente"), 40, Capitals::No, false, Kind::FreeText}, {0, 0, 12});
    boxes_.municipality = addBox(
        {"EMunicipio", tr("&Municipio"), 53, Capitals::Yes, true, Kind::Checked, "BBMunicipio"}, {1, 0, 7});
    boxes_.province = addBox(
        {"EProvincia", tr("&Provincia"), 21, Capitals::No, true, Kind::Checked, "BBProvincia"}, {1, 7, 5});
    boxes_.streetType = addBox(
        {"ETipoVia", tr("&Tipo de vía"), 3, Capitals::Yes, true, Kind::Checked, "BBTipoVia"}, {2, 0, 3});
    boxes_.street = addBox({"EVia", tr("&Vía"), 45, Capitals::Yes, true, Kind::Checked, "BBVia"}, {2, 3, 9});
    boxes_.number = addBox({"ENumero", tr("Núme&ro"), 6, Capitals::No, true, Kind::Checked}, {3, 0, 3});
    boxes_.floor = addBox({"EPiso", tr("P&iso"), 10, Capitals::No, true, Kind::FreeText}, {3, 3, 4});
    boxes_.postalCode =
        addBox({"ECodPostal", tr("Código p&ostal"), 5, Capitals::No, true, Kind::Checked}, {3, 7, 5});
    grid_->setRowStretch(4, 1);
}

QLineEdit* AddressForm::addBox(const BoxDetails& details, const Place& place) {
    auto* box = new QLineEdit(this);
    box->setObjectName(QLatin1String(details.objectName));
    auto* label = new QLabel(details.label, this);
    label->setBuddy(box);
    box->setAccessibleName(QString(details.label).remove(QLatin1Char('&')));
    new ambrel::TypingRules(box, details.length, details.capitals);

    auto* line = new QHBoxLayout;
    line->setSpacing(6);
    line->addWidget(box, 1);
    if (details.listButton)
        line->addWidget(listButton(details, box));
    if (details.hasMark) {
        auto* mark = new ValidationMark(box, details.kind, this);
        mark->setObjectName(QStringLiteral("Marca") + QLatin1String(details.objectName + 1));
        line->addWidget(mark);
    }
    auto* cell = new QVBoxLayout;
    cell->setSpacing(4);
    cell->addWidget(label);
    cell->addLayout(line);
    grid_->addLayout(cell, place.row, place.column, 1, place.columns);
    return box;
}

/// No stop of the Tab key: the box itself opens the list with F4.
QWidget* AddressForm::listButton(const BoxDetails& details, QLineEdit* box) {
    auto* button = new QPushButton(QStringLiteral("…"), this);
    button->setObjectName(QLatin1String(details.listButton));
    button->setProperty("list", true); // for its look
    button->setFocusPolicy(Qt::NoFocus);
    button->setAutoDefault(false);
    button->setAccessibleName(tr("Lista: %1").arg(QString(details.label).remove(QLatin1Char('&'))));
    button->setToolTip(tr("Ver la lista (F4)"));
    const auto wantList = [this, box] { emit listWanted(box); };
    connect(button, &QPushButton::clicked, this, wantList);
    connect(new QShortcut(Qt::Key_F4, box, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated, this,
            wantList);
    return button;
}

} // namespace host
