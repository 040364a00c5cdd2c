// The municipality of a stored address.
#pragma once

#include <QString>

class TClassCodPostales;

namespace host {

/// Goes to the municipality of that name; of several, to the one that the stored postal code belongs to, at
/// least by its province. False when none has the name.
[[nodiscard]] bool goToStoredMunicipality(TClassCodPostales& controller, const QString& name,
                                          const QString& postalCode);

} // namespace host
