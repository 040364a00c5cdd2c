// The streets that were found, as the dialog shows them: the list and the line that counts them.
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
    /// Adds streets below those that are there.
    void show(FoundStreets found);
    /// What is to be saved: the rows as they stand, at least one.
    [[nodiscard]] const std::vector<ImportedStreet>& streets() const;
    /// Where a run over many municipalities reports.
    [[nodiscard]] QLabel& message() const { return message_; }

private:
    StreetGrid& grid_;
    QLabel& message_;
};

} // namespace ambrel
