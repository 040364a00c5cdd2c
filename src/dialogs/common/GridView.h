// The table that a data grid shows its rows in.
#pragma once

#include <QTableView>

namespace ambrel {

/// Paints, and tells clicks. It moves nothing by itself: keys are left to the grid around it.
class GridView : public QTableView {
    Q_OBJECT
public:
    explicit GridView(QWidget* parent);

    /// Whole rows that there is room for, at least one.
    [[nodiscard]] int room() const;
    /// Selects a row, or none with -1. `isOther`: also when it has the place of the one before, it is told to
    /// screen readers.
    void showCurrent(int row, bool isOther);
    /// Marks rows; the current one among them stands out.
    void showMarked(int first, int count);
    /// The title of this column bears the arrow, or none with -1.
    void showOrder(int column);
    /// Hidden at zero and below.
    void showWidth(int column, int width);
    /// With the titles.
    [[nodiscard]] int heightOf(int rows) const;

Q_SIGNALS:
    void rowPressed(int row, Qt::KeyboardModifiers modifiers);
    void rowDoubleClicked(int row);
    /// The height of the rows or the place for them is another one.
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
