// The smallest host: a window whose boxes complete and validate an address.
#include <QApplication>
#include <QFormLayout>
#include <QLineEdit>
#include <cstdio>

#include "controller/NumberRange.h"
#include "package/AmbCodPostales.h"
#include "trial.h"

const QString streetType = QStringLiteral("CL"); // a host with a box for it takes it from there

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
        ambrel::FocusEvents::watch(municipality_, {}, [this] { leaveMunicipality(); });
        ambrel::FocusEvents::watch(street_, {}, [this] { leaveStreet(); });
        ambrel::FocusEvents::watch(number_, {}, [this] { leaveNumber(); });
        // A text that was changed is not validated until a handler says so again.
        for (QLineEdit* box : {municipality_, street_})
            connect(box, &QLineEdit::textEdited, this, [box] { ambrel::setTag(*box, 0); });
    }
    ~AddressForm() override {
        for (QLineEdit* box : {municipality_, street_, number_})
            ambrel::FocusEvents::unwatch(box); // they outlive the controller, which the handlers use
    }

private:
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
        postal_.BuscaEnPostal(street_->text(), streetType, nearestSearch);
        postal_.ExitNumeroPostal(number_, nullptr); // a host with a table of its own passes its field
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

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    try {
        dbase::setDatabaseFolder("DB", argc > 1 ? argv[1] : "datos"); // where the tables are
        AddressForm form;
        form.show();
        return QApplication::platformName() == "offscreen" ? typeAnAddress(form) : QApplication::exec();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "host-minimo: %s\n", error.what());
        return 2;
    }
}
