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

std::vector<GridColumn> municipalityColumns() {
    return {{.field = "COD_INE", .title = QStringLiteral("I.N.E."), .width = leastCodeWidth},
            {.field = "CODPOSTAL", .title = QStringLiteral("Postal"), .width = leastCodeWidth},
            {.field = "NOMBRE_COMPLETO", .title = municipalityNameTitle()}};
}

void fitCodeColumns(DataGrid& grid) {
    const QFontMetrics font = grid.fontMetrics();
    for (const int column : {0, 1}) {
        const int text = qMax(font.horizontalAdvance(QStringLiteral("00000")),
                              font.horizontalAdvance(grid.columnTitle(column)));
        grid.setColumnWidth(column, qMax(leastCodeWidth, text + cellMargins));
    }
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
