// Finds the host's municipality for an answer of the street-directory service, by its name.
#pragma once

#include <QString>
#include <functional>

namespace ambrel {

/// "ESCORIAL (EL)" for "EL ESCORIAL", the same for LA, LOS and LAS; other names unchanged.
[[nodiscard]] QString withArticleLast(const QString& name);

struct MunicipalityMatch {
    QString name;   // as last looked up
    int index = -1; // of the municipality; -1 if there is none of that name
};

/// Looks up the name as it is, then with its article moved to the end. `indexOf` returns the index of a
/// municipality by its name, -1 for none.
[[nodiscard]] MunicipalityMatch matchMunicipality(const QString& name,
                                                  const std::function<int(const QString&)>& indexOf);

} // namespace ambrel
