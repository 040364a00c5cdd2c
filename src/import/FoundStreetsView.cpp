// Shows the found streets.
#include "import/FoundStreetsView.h"

#include <QLabel>
#include <utility>

#include "import/StreetGrid.h"

namespace ambrel {

FoundStreetsView::FoundStreetsView(StreetGrid& grid, QLabel& message) : grid_(grid), message_(message) {}

void FoundStreetsView::clear() {
    message_.clear();
    grid_.clearStreets();
}

void FoundStreetsView::show(FoundStreets found) {
    if (!found.streets.empty()) {
        grid_.append(std::move(found.streets));
    }
    if (found.countsRows) {
        found.count = static_cast<int>(streets().size());
    }
    if (found.count) {
        message_.setText(QStringLiteral("Se han encontrado %1 vías").arg(*found.count));
    }
}

const std::vector<ImportedStreet>& FoundStreetsView::streets() const { return grid_.streets(); }

} // namespace ambrel
