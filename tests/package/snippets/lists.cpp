#include <QLineEdit>
#include <QShortcut>

#include "package/AmbCodPostales.h"

// The list over all streets; the chosen one fills the boxes.
bool chooseStreet(TClassCodPostales& postal, QLineEdit* street, QLineEdit* municipality) {
    if (!postal.BuscarDireccionPostal(ambrel::tagOf(*municipality) == 0)) {
        return false;
    }
    const TDMCodPostales& chosen = *postal.DM;
    street->setText(ambrel::fromWindows1252(chosen.tbPostalVIA.text()));
    ambrel::setTag(*street, chosen.tbPostalCODIGO1.integer());
    municipality->setText(ambrel::fromWindows1252(chosen.tbMunicipiNOMBRE.text()));
    ambrel::setTag(*municipality, chosen.tbMunicipiCOD_INE.integer());
    return true;
}

// Key handlers get F4 as 0, like every key without a code, so it needs a shortcut of the box.
void openStreetsWithF4(TClassCodPostales& postal, QLineEdit* street, QLineEdit* municipality) {
    auto* f4 = new QShortcut(Qt::Key_F4, street, nullptr, nullptr, Qt::WidgetShortcut);
    QObject::connect(f4, &QShortcut::activated, street,
                     ambrel::guarded([=, &postal] { chooseStreet(postal, street, municipality); }));
}

// A routine that needs no controller: it opens its own tables and closes them again.
QString chooseMunicipality(QWidget* owner, QString& postalCode) {
    QString codIne, name, provinceName, provinceCode, number;
    const bool isChosen = IMunicipios(owner, codIne, postalCode, name, provinceName, provinceCode, number,
                                      QStringLiteral("CODPOSTAL"), QStringLiteral("Elija un municipio"));
    return isChosen ? name : QString();
}
