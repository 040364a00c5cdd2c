#include <QLineEdit>

#include "dialogs/common/TypingRules.h"
#include "package/AmbCodPostales.h"

void completeAddresses(QLineEdit* municipality, QLineEdit* street, TClassCodPostales& postal) {
    new ambrel::TypingRules(municipality, 53, ambrel::Capitals::Yes); // the tables hold capitals
    new ambrel::TypingRules(street, 45, ambrel::Capitals::Yes);
    ambrel::KeyUpEvents::watch(municipality, [=, &postal](std::uint16_t& key, Qt::KeyboardModifiers shift) {
        postal.OrdenaPorNombreMunicipi();
        postal.KeyUpMunicipi(municipality, key, shift); // the box's Tag: INE code, 0 while not validated
    });
    ambrel::KeyUpEvents::watch(street, [=, &postal](std::uint16_t& key, Qt::KeyboardModifiers shift) {
        postal.OrdenaPorViaPostal();
        postal.KeyUpDireccionPostal(street, key, shift, QStringLiteral("CL"));
    });
}
