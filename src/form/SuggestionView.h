// The window that shows suggestions.
#pragma once

#include <QListView>
#include <vector>

#include "form/SuggestionList.h"

namespace ambrel {

/// Takes neither the keyboard nor the place of the active window. Not installed: internal to SuggestionList.
class SuggestionView : public QListView {
    Q_OBJECT
public:
    explicit SuggestionView(QWidget& window);

    void setRows(const std::vector<SuggestionRow>& rows);
    /// -1 if there is none.
    [[nodiscard]] int currentRow() const { return currentIndex().row(); }
    /// Makes a row current, or none.
    void setCurrentRow(int row);
    /// How many rows are seen at once.
    [[nodiscard]] int visibleRows() const;
    /// Shows the rows under a box, or over it where there is more room, inside its screen.
    void showAt(const QWidget& box);

private:
    [[nodiscard]] QSize wantedSize() const;
};

} // namespace ambrel
