// The found streets in the dialog: the list and the line that counts them.
#pragma once

#include <vector>

#include "import/StreetSource.h"

class QLabel;

namespace ambrel {

class StreetGrid;

/// Refers to both widgets, which must outlive it.
class FoundStreetsView {
public:
    FoundStreetsView(StreetGrid& grid, QLabel& message);

    void clear();
    /// Adds streets below the existing ones.
    void show(FoundStreets found);
    /// The streets to save: the rows in their present order, at least one.
    [[nodiscard]] const std::vector<ImportedStreet>& streets() const;
    /// The label in which a run over many municipalities reports.
    [[nodiscard]] QLabel& message() const { return message_; }

private:
    StreetGrid& grid_;
    QLabel& message_;
};

} // namespace ambrel
