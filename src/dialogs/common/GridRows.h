// The rows that a data grid shows, read from the dataset behind its data source.
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

/// Reads when it is asked to and something was told since; so a program may move the dataset a thousand times
/// before anything is read. Knows no widget.
class GridRows {
public:
    /// `onChange` runs when the rows ought to be read again. It must not throw.
    explicit GridRows(std::function<void()> onChange) : onChange_(std::move(onChange)) {}

    void setSource(dbase::DataSource* source);
    /// Null unless it is there, open, and not known to be unreadable.
    [[nodiscard]] dbase::Dataset* table() const;

    /// What was read does not count any more.
    void expire();
    /// True when it read, or found that there is nothing to be read; the rows may then be others. `room`:
    /// rows that can be shown. Errors: whatever reading raises; there are no rows then, and no more reading
    /// before retry().
    bool read(const std::vector<GridColumn>& columns, std::size_t room);
    /// Reads again after a fault.
    void retry();
    /// After a fault that was told already.
    void giveUp();
    /// True when fewer rows are shown than could be, because too many hidden ones lie around: then look
    /// further is worth while.
    [[nodiscard]] bool isCut() const;
    void lookFurther();

    // --- Moves of the table. Errors: whatever moving raises.
    void moveBy(dbase::Dataset& table, int rows);
    void moveToRow(dbase::Dataset& table, int row);
    /// The current row keeps its place on the screen at the next move.
    void keepPlace();
    /// So that the row at this place of the table is shown first.
    void moveToPlace(dbase::Dataset& table, double place);

    // --- Marking. Any move that does not mark drops the mark, as does every other change of the table.
    /// Makes a move, and marks the rows that it passes. `leaves`: where a move to an end of the table leaves
    /// the row where marking began.
    void mark(const std::function<void()>& move, MarkedRows::Side leaves);
    void dropMark();
    /// Of the rows shown.
    [[nodiscard]] MarkedRows::Part marked() const;
    /// Texts of all marked rows, also of those that are not shown; of the current one without a mark. None
    /// when the row where marking began has gone. Errors: whatever reading raises.
    [[nodiscard]] std::vector<QStringList> markedTexts(const std::vector<GridColumn>& columns) const;

    // --- What was read.
    [[nodiscard]] const std::vector<QStringList>& texts() const { return texts_; }
    [[nodiscard]] int current() const;
    [[nodiscard]] dbase::RecordNumber currentRecord() const;
    [[nodiscard]] bool showsBegin() const { return part_.first == 0 && !around_.isCutBefore; }
    [[nodiscard]] bool showsEnd() const;
    /// Shares of the table's order (0 to 1) that lie before the first and before the last row shown.
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
