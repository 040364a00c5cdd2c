#include <QLineEdit>

#include "controller/NumberRange.h"
#include "package/AmbCodPostales.h"

bool findStreet(TClassCodPostales& postal, const QString& street, const QString& type); // as above

// Writes the postal code of a house number into the host's own table. False when no stretch has the number.
bool leaveNumber(TClassCodPostales& postal, const QString& street, const QString& type, QLineEdit* number,
                 dbase::Field& postalCode) {
    if (!findStreet(postal, street, type)) { // the walk begins at the current row
        return false;
    }
    if (postalCode.dataset().state() == dbase::DatasetState::Browse) {
        postalCode.dataset().edit();
    }
    postal.ExitNumeroPostal(number, &postalCode);

    // Without such a field, and to know whether the number was found: if not, the street's last row is
    // current.
    const TDMCodPostales& row = *postal.DM;
    const ambrel::StretchRanges ranges{
        .odd = {row.tbPostalIMPAR_INI.integer(), row.tbPostalIMPAR_FIN.integer()},
        .even = {row.tbPostalPAR_INI.integer(), row.tbPostalPAR_FIN.integer()}};
    return ranges.hold(number->text().toInt());
}
