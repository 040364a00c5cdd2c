// Provinces as combo items, and back.
#include "dialogs/common/ProvinceItems.h"

namespace ambrel {
namespace {

constexpr int codeDigits = 2;

} // namespace

QString provinceItem(const QString& name, const QString& code) {
    return name + QStringLiteral(" [") + code.right(codeDigits) + QStringLiteral("]");
}

QString nameOfItem(const QString& item) { return item.left(item.indexOf(QLatin1String(" ["))).trimmed(); }

QString codeOfItem(const QString& item) {
    const auto bracket = item.indexOf(QLatin1Char('['));
    return bracket < 0 ? QString() : item.mid(bracket + 1, codeDigits).trimmed();
}

int findItemContaining(const QStringList& items, const QString& text) {
    if (text.isEmpty()) {
        return -1;
    }
    for (int index = 0; index < items.size(); ++index) {
        if (items[index].contains(text)) {
            return index;
        }
    }
    return -1;
}

} // namespace ambrel
