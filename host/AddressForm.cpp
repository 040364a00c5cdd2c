// Lays out the address form: boxes, labels, list buttons and validation marks.
#include "host/AddressForm.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "dialogs/common/TypingRules.h"

namespace host {
namespace {

constexpr int gridColumns = 12;

} // namespace

AddressForm::AddressForm(QWidget* parent) : QWidget(parent), grid_(new QGridLayout(this)) {
    using Kind = ValidationMark::Kind;
    grid_->setContentsMargins(20, 18, 20, 20);
    grid_->setHorizontalSpacing(18);
    grid_->setVerticalSpacing(16);
    for (int column = 0; column < gridColumns; ++column) {
        grid_->setColumnStretch(column, 1);
    }

    auto& address = boxes_.address;
    boxes_.name = addBox({"ENombre", tr("&Cliente"), false, Kind::FreeText}, {0, 0, 12});
    new ambrel::TypingRules(boxes_.name, 40, ambrel::Capitals::No);
    address.municipality =
        addBox({"EMunicipio", tr("&Municipio"), true, Kind::Checked, "BBMunicipio", &buttons_.municipality},
               {1, 0, 7});
    address.province = addBox(
        {"EProvincia", tr("&Provincia"), true, Kind::Checked, "BBProvincia", &buttons_.province}, {1, 7, 5});
    address.streetType = addBox(
        {"ETipoVia", tr("&Tipo de vía"), true, Kind::Checked, "BBTipoVia", &buttons_.streetType}, {2, 0, 3});
    address.street = addBox({"EVia", tr("&Vía"), true, Kind::Checked, "BBVia", &buttons_.street}, {2, 3, 9});
    address.number = addBox({"ENumero", tr("Núme&ro"), true, Kind::Checked}, {3, 0, 3});
    new ambrel::TypingRules(address.number, 6, ambrel::Capitals::No); // the width of the customers' column
    boxes_.floor = addBox({"EPiso", tr("P&iso"), true, Kind::FreeText}, {3, 3, 4});
    new ambrel::TypingRules(boxes_.floor, 10, ambrel::Capitals::No);
    address.rest = boxes_.floor;
    address.postalCode = addBox({"ECodPostal", tr("Código p&ostal"), true, Kind::Checked}, {3, 7, 5});
    grid_->setRowStretch(4, 1);
}

QLineEdit* AddressForm::addBox(const BoxDetails& details, const Place& place) {
    auto* box = new QLineEdit(this);
    box->setObjectName(QLatin1String(details.objectName));
    auto* label = new QLabel(details.label, this);
    label->setBuddy(box);
    box->setAccessibleName(QString(details.label).remove(QLatin1Char('&')));

    auto* line = new QHBoxLayout;
    line->setSpacing(6);
    line->addWidget(box, 1);
    if (details.listButton) {
        line->addWidget(*details.button = listButton(details));
    }
    if (details.hasMark) {
        auto* mark = new ValidationMark(box, details.kind, this);
        mark->setObjectName(QStringLiteral("Marca") + QLatin1String(details.objectName + 1));
        line->addWidget(mark);
        marks_.insert(box, mark);
    }
    auto* cell = new QVBoxLayout;
    cell->setSpacing(4);
    cell->addWidget(label);
    cell->addLayout(line);
    grid_->addLayout(cell, place.row, place.column, 1, place.columns);
    return box;
}

/// Not reached by the Tab key, because F4 in the box itself opens the list.
QAbstractButton* AddressForm::listButton(const BoxDetails& details) {
    auto* button = new QPushButton(QStringLiteral("…"), this);
    button->setObjectName(QLatin1String(details.listButton));
    button->setProperty("list", true); // the style sheet selects by it
    button->setFocusPolicy(Qt::NoFocus);
    button->setAutoDefault(false);
    button->setAccessibleName(tr("Lista: %1").arg(QString(details.label).remove(QLatin1Char('&'))));
    button->setToolTip(tr("Ver la lista (F4)"));
    return button;
}

void AddressForm::showReason(const QLineEdit* box, const QString& reason) {
    if (ValidationMark* mark = marks_.value(box)) {
        mark->setReason(reason);
    }
}

} // namespace host
