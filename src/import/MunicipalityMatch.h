// Which of the host's municipalities an answer of the street-directory service belongs to, by its name.
#pragma once

#include <QString>
#include <functional>

namespace ambrel {

/// "ESCORIAL (EL)" for "EL ESCORIAL", the same for LA, LOS and LAS; other names as they are.
[[nodiscard]] QString withArticleBehind(const QString& name);

struct MunicipalityMatch {
    QString name;   // as it was looked for last
    int index = -1; // of the municipality; -1 when there is none of that name
};

/// Looks for the name as it is, then for the one with its article behind. `indexOf` gives the index of a
/// municipality by its name, -1 for none.
[[nodiscard]] MunicipalityMatch matchMunicipality(const QString& name,
                                                  const std::function<int(const QString&)>& indexOf);

} // namespace ambrel
