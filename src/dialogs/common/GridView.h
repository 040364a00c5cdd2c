// The table view in which a data grid shows its rows.
#pragma once

#include <QTableView>

namespace ambrel {

/// Paints rows and reports clicks. It moves nothing by itself: keys are left to the grid around it.
class GridView : public QTableView {
    Q_OBJECT
public:
    explicit GridView(QWidget* parent);

    /// Number of whole rows that fit, at least one.
    [[nodiscard]] int room() const;
    /// Selects a row, or none with -1. `isOther`: reports it to screen readers even if it is in the previous
    /// one's place.
    void showCurrent(int row, bool isOther);
    /// Marks rows; the current one among them stands out.
    void showMarked(int first, int count);
    /// Shows the arrow in the title of this column, or in none with -1.
    void showOrder(int column);
    /// Hides the column at zero and below.
    void showWidth(int column, int width);
    /// Height including the titles.
    [[nodiscard]] int heightOf(int rows) const;

Q_SIGNALS:
    void rowPressed(int row, Qt::KeyboardModifiers modifiers);
    void rowDoubleClicked(int row);
    /// The row height or the available height has changed.
    void roomChanged();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void fitRows();
};

} // namespace ambrel
