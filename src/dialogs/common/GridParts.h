// The parts of a data grid, and how they work together.
#pragma once

#include <QEvent>
#include <functional>

#include "dialogs/common/DataGrid.h"
#include "dialogs/common/GridRows.h"
#include "dialogs/common/GridText.h"

class QFrame;
class QScrollBar;
class QTimer;

namespace ambrel {

class GridModel;
class GridView;

/// Whether the rows passed by a move are marked. A move that does not mark them drops the mark.
enum class GridMarks { No, Yes };

struct DataGrid::Parts {
    explicit Parts(DataGrid& owner);

    void readSoon();
    void read();
    void show();
    void showPlace();
    void showOrder();

    void move(const std::function<void(dbase::Dataset&)>& how);
    void moveAndMark(const std::function<void(dbase::Dataset&)>& how,
                     MarkedRows::Side leaves = MarkedRows::Side::Here);
    void moveByKey(int key, GridMarks marks = GridMarks::No);
    void moveByBar(int action);
    void moveToRow(int row, GridMarks marks = GridMarks::No);
    void scrollBy(int count);
    [[nodiscard]] bool hasSeveralMarked() const { return rows.marked().count > 1; }
    /// Copies the marked rows to the clipboard; if several, with the titles.
    void copy(GridTitles titles);
    [[nodiscard]] int heightOf(int rowCount) const;
    void resizeColumn(int column, int width);

    DataGrid& grid;
    GridModel* model;
    QFrame* frame;
    GridView* view;
    QScrollBar* bar;
    QTimer* further;
    GridRows rows;
    dbase::RecordNumber shownRecord = 0;
    int wheelRest = 0;
    bool isReadSoon = false, isPassingOn = false, isSettingWidth = false;

private:
    void tryToMove(const std::function<void(dbase::Dataset&)>& how);
};

/// Event posted to the grid when its rows should be read.
extern const QEvent::Type gridReadEvent;

} // namespace ambrel
