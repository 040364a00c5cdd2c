// Columns and keys of the MUNICIPI lists.
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
constexpr int nameColumn = 2;

QString nameTitle() {
    return Config.EntidadesMenores ? QStringLiteral("Nombre del municipio, [Entidad Mayor]")
                                   : QStringLiteral("Nombre del municipio");
}

} // namespace

std::vector<GridColumn> municipalityColumns() {
    return {
        {.field = "COD_INE", .title = QStringLiteral("I.N.E."), .width = leastCodeWidth, .tags = {keys[0]}},
        {.field = "CODPOSTAL", .title = QStringLiteral("Postal"), .width = leastCodeWidth, .tags = {keys[1]}},
        {.field = "NOMBRE_COMPLETO", .title = nameTitle(), .tags = {keys[2]}}};
}

void fitMunicipalityColumns(DataGrid& grid) {
    grid.setColumnTitle(nameColumn, nameTitle());
    const QFontMetrics font = grid.fontMetrics();
    for (const int column : {0, 1}) {
        const int text = qMax(font.horizontalAdvance(QStringLiteral("00000")),
                              font.horizontalAdvance(grid.columnTitle(column)) + arrowRoom(font));
        grid.setColumnWidth(column, qMax(leastCodeWidth, text + cellMargins));
    }
}

std::string municipalityKey(int number) {
    return number >= 0 && number < numberOfKeys ? keys[static_cast<std::size_t>(number)] : "";
}

void focusEditOfTag(const std::string& tag, std::initializer_list<QLineEdit*> edits) {
    for (QLineEdit* const edit : edits) {
        if (municipalityKey(tagOf(*edit)) == tag) {
            edit->setFocus();
        }
    }
}

} // namespace ambrel
