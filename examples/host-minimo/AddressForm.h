// A window whose boxes complete and validate an address: all that a host has to do for it.
#pragma once

#include <QFormLayout>
#include <QLineEdit>

#include "controller/NumberRange.h"
#include "package/AmbCodPostales.h"

inline const QString streetType = QStringLiteral("CL"); // a host with a box for it takes it from there

class AddressForm : public QWidget {
public:
    AddressForm() {
        auto* layout = new QFormLayout(this);
        layout->addRow(tr("&Municipio"), municipality_);
        layout->addRow(tr("&Vía"), street_);
        layout->addRow(tr("&Número"), number_);
        layout->addRow(tr("&Código postal"), postalCode_);
        ambrel::KeyUpEvents::watch(municipality_, [this](std::uint16_t& key, Qt::KeyboardModifiers shift) {
            postal_.OrdenaPorNombreMunicipi();
            postal_.KeyUpMunicipi(municipality_, key, shift);
        });
        ambrel::KeyUpEvents::watch(street_, [this](std::uint16_t& key, Qt::KeyboardModifiers shift) {
            postal_.OrdenaPorViaPostal();
            postal_.KeyUpDireccionPostal(street_, key, shift, streetType);
        });
        watch(municipality_, &AddressForm::leaveMunicipality);
        watch(street_, &AddressForm::leaveStreet);
        watch(number_, &AddressForm::leaveNumber);
    }
    // The handlers use the controller, which goes before the boxes.
    ~AddressForm() override {
        for (QLineEdit* box : {municipality_, street_, number_})
            ambrel::FocusEvents::unwatch(box);
    }

    [[nodiscard]] QString address() const {
        return street_->text() + ", " + number_->text() + " - " + postalCode_->text() + ' ' +
               municipality_->text();
    }

private:
    void watch(QLineEdit* box, void (AddressForm::*leave)()) {
        ambrel::FocusEvents::watch(
            box, [box] { TomaFocoControl(box); },
            [this, box, leave] {
                DejaFocoControl(box);
                ambrel::runGuarded([&] { (this->*leave)(); });
            });
        // A text that was changed is not validated until a handler says so again.
        connect(box, &QLineEdit::textEdited, this, [box] { ambrel::setTag(*box, 0); });
    }

    void leaveMunicipality() {
        QString province, postalCode = QStringLiteral(" "); // some text: this answer is wanted
        postal_.ExitMunicipi(municipality_, province, postalCode, true);
        postalCode_->setText(postalCode.trimmed());
    }

    void leaveStreet() {
        if (ambrel::tagOf(*municipality_) != 0)
            postal_.ExitDireccionPostal(street_, nullptr, nullptr, true, postalCode_->text(), streetType);
    }

    void leaveNumber() {
        if (ambrel::tagOf(*street_) == 0)
            return;
        postal_.OrdenaPorViaPostal();
        postal_.BuscaEnPostal(street_->text(), streetType, false);
        // A host with a table of its own passes its field, which then gets the postal code of the number.
        postal_.ExitNumeroPostal(number_, nullptr);
        const TDMCodPostales& row = *postal_.DM;
        const ambrel::StretchRanges ranges{
            .odd = {row.tbPostalIMPAR_INI.integer(), row.tbPostalIMPAR_FIN.integer()},
            .even = {row.tbPostalPAR_INI.integer(), row.tbPostalPAR_FIN.integer()}};
        if (ranges.hold(number_->text().toInt()))
            postalCode_->setText(ambrel::fromWindows1252(row.tbPostalCODPOSTAL.text()));
    }

    TClassCodPostales postal_{this};
    QLineEdit* municipality_ = new QLineEdit(this);
    QLineEdit* street_ = new QLineEdit(this);
    QLineEdit* number_ = new QLineEdit(this);
    QLineEdit* postalCode_ = new QLineEdit(this);
};
