// The smallest host: a window whose boxes complete and validate an address.
#include <QApplication>
#include <QFormLayout>
#include <QLineEdit>
#include <cstdio>

#include "controller/NumberRange.h"
#include "dialogs/common/TypingRules.h"
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
        new ambrel::TypingRules(municipality_, 53, ambrel::Capitals::Yes); // the tables hold capitals
        new ambrel::TypingRules(street_, 45, ambrel::Capitals::Yes);
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
        // What was changed is not validated until a handler says so again; nor is the street elsewhere.
        connect(municipality_, &QLineEdit::textEdited, this, [this] {
            ambrel::setTag(*municipality_, 0);
            ambrel::setTag(*street_, 0);
        });
        connect(street_, &QLineEdit::textEdited, this, [this] { ambrel::setTag(*street_, 0); });
    }
    ~AddressForm() override {
        for (QLineEdit* box : {municipality_, street_, number_})
            ambrel::FocusEvents::unwatch(box); // they outlive the controller, which the handlers use
    }

private:
    void leaveMunicipality() {
        postal_.OrdenaPorNombreMunicipi();
        if (ambrel::tagOf(*municipality_) == 0 && // no key has found it: a text that was pasted
            postal_.BuscaPorNombreMunicipi(municipality_->text(), exactSearch))
            ambrel::setTag(*municipality_, postal_.DM->tbMunicipiCOD_INE.integer());
        QString province, postalCode = QStringLiteral(" "); // some text: this answer is wanted
        postal_.ExitMunicipi(municipality_, province, postalCode, true);
        postalCode_->setText(postalCode.trimmed());
    }
    void leaveStreet() {
        if (ambrel::tagOf(*municipality_) == 0)
            return;
        if (ambrel::tagOf(*street_) == 0 && findStreet())
            ambrel::setTag(*street_, postal_.DM->tbPostalCODIGO1.integer());
        postal_.ExitDireccionPostal(street_, nullptr, nullptr, true, postalCode_->text(), streetType);
        if (ambrel::tagOf(*street_) != 0)
            postalCode_->setText(ambrel::fromWindows1252(postal_.DM->tbPostalCODPOSTAL.text()));
        leaveNumber(); // a number that is there already says more
    }
    /// Whether the municipality has the street of the box: a nearest search alone ends on a neighbour.
    bool findStreet() {
        const TDMCodPostales& row = *postal_.DM;
        postal_.OrdenaPorViaPostal();
        postal_.BuscaEnPostal(street_->text(), streetType, nearestSearch); // of this type or another
        const QString type = ambrel::fromWindows1252(row.tbPostalTIPO_VIA.text());
        return postal_.BuscaEnPostal(street_->text(), type, exactSearch) &&
               row.tbPostalVIA.text() == ambrel::toWindows1252(street_->text());
    }
    void leaveNumber() {
        if (ambrel::tagOf(*street_) == 0 || !findStreet())
            return;
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
