#include "dialogs/MunicipalityColumns.h"

#include <QFontMetrics>
#include <QLineEdit>
#include <array>

#include "services/Confamb.h"
#include "services/TagProperty.h"

namespace ambrel {
namespace {

constexpr std::array keys = {"COD_INE", "CODPOSTAL", "NOMBRE"};
constexpr int numberOfKeys = static_cast<int>(keys.size());
constexpr int leastCodeWidth = 72; // logical pixels
constexpr int cellMargins = 24;

} // namespace

std::vector<GridColumn> municipalityColumns(const QFontMetrics& font) {
    const int codeWidth = qMax(leastCodeWidth, font.horizontalAdvance(QStringLiteral("00000")) + cellMargins);
    return {{.field = "COD_INE", .title = QStringLiteral("I.N.E."), .width = codeWidth},
            {.field = "CODPOSTAL", .title = QStringLiteral("Postal"), .width = codeWidth},
            {.field = "NOMBRE_COMPLETO", .title = municipalityNameTitle()}};
}

QString municipalityNameTitle() {
    return Config.EntidadesMenores ? QStringLiteral("Nombre del municipio, [Entidad Mayor]")
                                   : QStringLiteral("Nombre del municipio");
}

std::string municipalityKey(int number) {
    return number >= 0 && number < numberOfKeys ? keys[static_cast<std::size_t>(number)] : "";
}

void focusEditOfTag(const std::string& tag, std::initializer_list<QLineEdit*> edits) {
    for (QLineEdit* const edit : edits) {
        if (municipalityKey(tagOf(*edit)) == tag)
            edit->setFocus();
    }
}

} // namespace ambrel
