// The rows that a data grid shows, read from its data source's dataset.
#pragma once

#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

#include "dbase/dataset/data_source.h"
#include "dialogs/common/GridColumn.h"
#include "dialogs/common/MarkedRows.h"
#include "dialogs/common/RowWindow.h"

namespace ambrel {

/// Reads on request, and only after a change notification; so a program may move the dataset a thousand times
/// before anything is read. Knows no widget.
class GridRows {
public:
    /// `onChange` runs when the rows should be read again. It must not throw.
    explicit GridRows(std::function<void()> onChange) : onChange_(std::move(onChange)) {}

    void setSource(dbase::DataSource* source);
    /// Null if missing, closed or known to be unreadable.
    [[nodiscard]] dbase::Dataset* table() const;

    /// Marks what was read as outdated.
    void expire();
    /// True if it read, or found nothing to read; the rows may then differ. `room`: number of rows that fit.
    /// Errors: anything thrown by reading; there are then no rows, and no further reading before retry().
    bool read(const std::vector<GridColumn>& columns, std::size_t room);
    /// Reads again after a failure.
    void retry();
    /// Stops reading after a failure that has already been reported.
    void giveUp();
    /// True if fewer rows are shown than fit because there are too many hidden ones around them:
    /// lookFurther() then finds more.
    [[nodiscard]] bool isCut() const;
    void lookFurther();

    // --- Moves of the table. Errors: anything thrown by moving.
    void moveBy(dbase::Dataset& table, int rows);
    void moveToRow(dbase::Dataset& table, int row);
    /// Keeps the current row's place on the screen at the next move.
    void keepPlace();
    /// Moves so that the row at this place of the table is shown first.
    void moveToPlace(dbase::Dataset& table, double place);

    // --- Marking. A move that does not mark drops the mark, as does any other change of the table.
    /// Makes a move and marks the rows it passes. `leaves`: on which side a move to an end of the table
    /// leaves the row where marking began.
    void mark(const std::function<void()>& move, MarkedRows::Side leaves);
    void dropMark();
    /// Marked rows among those shown.
    [[nodiscard]] MarkedRows::Part marked() const;
    /// Texts of all marked rows, including those not shown; without a mark, of the current row. None if the
    /// row where marking began is gone. Errors: anything thrown by reading.
    [[nodiscard]] std::vector<QStringList> markedTexts(const std::vector<GridColumn>& columns) const;

    // --- What was read.
    [[nodiscard]] const std::vector<QStringList>& texts() const { return texts_; }
    [[nodiscard]] int current() const;
    [[nodiscard]] dbase::RecordNumber currentRecord() const;
    [[nodiscard]] bool showsBegin() const { return part_.first == 0 && !around_.isCutBefore; }
    [[nodiscard]] bool showsEnd() const;
    /// Shares of the table's order (0 to 1) before the first and before the last row shown.
    [[nodiscard]] double firstPlace() const;
    [[nodiscard]] double lastPlace() const;

private:
    void clear();
    void follow(dbase::DatasetChange change);

    std::function<void()> onChange_;
    dbase::DataSource* source_ = nullptr;
    std::weak_ptr<const void> sourceLife_;
    dbase::Dataset::Subscription subscription_;
    bool isStale_ = true, isReading_ = false, hasFailed_ = false, isMarking_ = false;
    std::size_t room_ = 1;
    std::size_t mostHidden_ = dbase::WindowSize().mostHidden;
    RowWindow window_;
    dbase::RowsAround around_;
    RowWindow::Part part_;
    MarkedRows mark_;
    std::vector<QStringList> texts_;
};

} // namespace ambrel
