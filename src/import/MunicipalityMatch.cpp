// Names of municipalities, with their article in front or at the end.
#include "import/MunicipalityMatch.h"

#include <array>

namespace ambrel {

QString withArticleLast(const QString& name) {
    static constexpr std::array articles{"EL", "LA", "LOS", "LAS"};
    for (const char* const text : articles) {
        const QLatin1String article(text);
        if (name.startsWith(article) && name.mid(article.size()).startsWith(QLatin1Char(' '))) {
            return name.mid(article.size()).trimmed() + QLatin1String(" (") + article + QLatin1Char(')');
        }
    }
    return name;
}

MunicipalityMatch matchMunicipality(const QString& name, const std::function<int(const QString&)>& indexOf) {
    if (const int index = indexOf(name); index >= 0) {
        return {.name = name, .index = index};
    }
    const QString moved = withArticleLast(name);
    return {.name = moved, .index = moved == name ? -1 : indexOf(moved)};
}

} // namespace ambrel
