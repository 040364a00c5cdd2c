// The import's list of streets.
#pragma once

#include <QTableView>
#include <vector>

#include "import/ImportedStreet.h"

namespace ambrel {

class StreetModel;

/// Whole rows are selected, and the user may drag one to another place, or move it there with Ctrl+Up and
/// Ctrl+Down. The name's column takes the room that the others leave.
class StreetGrid : public QTableView {
    Q_OBJECT
public:
    explicit StreetGrid(QWidget* parent = nullptr);

    /// Seven columns with postal code and numbers, or the two of type and name.
    void showRanges(bool show);
    /// One empty row stays.
    void clearStreets();
    /// Below those that are there; the last row becomes the current one.
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
