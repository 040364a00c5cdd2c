// The import's list of streets.
#pragma once

#include <QTableView>
#include <vector>

#include "import/ImportedStreet.h"

namespace ambrel {

class StreetModel;

/// Selects whole rows, which the user can drag to another place or move with Ctrl+Up and Ctrl+Down. The name
/// column takes the room that the others leave.
class StreetGrid : public QTableView {
    Q_OBJECT
public:
    explicit StreetGrid(QWidget* parent = nullptr);

    /// Shows seven columns, with postal code and numbers, or only type and name.
    void showRanges(bool show);
    /// Leaves one empty row.
    void clearStreets();
    /// Adds streets at the end; the last row becomes the current one.
    void append(std::vector<ImportedStreet> streets);
    [[nodiscard]] const std::vector<ImportedStreet>& streets() const;

    void fitNameColumn();

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void setWidths();
    void moveRow(int row, int to);

    StreetModel* model_;
    bool isDragging_ = false;
};

} // namespace ambrel
