// A cursor on a table: position, order, range, filter, edit state, calculated fields and events.
//
// Nothing is ever posted implicitly: a move, seek, append, change of tag, range or filter, refresh and close
// cancel a pending row. Like the host, a dataset and everything it shares belong to one thread.
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "AmbrelExport.h"
#include "dbase/dataset/dataset_types.h"
#include "dbase/dataset/dataset_window.h"
#include "dbase/dataset/field.h"
#include "dbase/dataset/listener_list.h"
#include "dbase/dataset/notification_pause.h"
#include "dbase/dbf/schema.h"
#include "dbase/system/durability.h"

namespace dbase {

class RowOrder;
class Table;
class TreeCursor;
struct Spot;
enum class Direction;

/// Reads and changes one table, record by record; it shows the current record or the pending row.
class AMBREL_EXPORT Dataset {
public:
    /// Called synchronously, as long as its subscription lives.
    using Listener = ListenerList::Listener;
    using Subscription = ListenerList::Subscription;

    /// Creates a closed cursor on a table of a database, in the order of a tag.
    Dataset();
    Dataset(std::string database, std::string table, std::string tag = {});
    ~Dataset();
    Dataset(const Dataset&) = delete;
    Dataset& operator=(const Dataset&) = delete;

    // --- Table. Only while closed.
    /// Sets the names; the file is looked up on opening.
    void setTable(std::string database, std::string table);
    [[nodiscard]] const std::string& databaseName() const { return database_; }
    [[nodiscard]] const std::string& tableName() const { return table_; }

    // --- Fields.
    /// Bind fields before opening: open() refuses a file whose columns do not fit them (Error BadLayout).
    Field& bindCharacter(std::string name, std::size_t width);
    Field& bindInteger(std::string name); // 16 bits, any N(w,0)
    Field& bindLogical(std::string name);
    Field& addCalculated(std::string name, std::size_t width);
    /// A column by name, bound or not, letter case ignored. Errors: Error(NotFound).
    [[nodiscard]] Field& field(std::string_view name);
    [[nodiscard]] Field* findField(std::string_view name);
    /// In the order of the file, calculated ones last. Empty as long as nothing has been bound and the table
    /// has never been open.
    [[nodiscard]] std::vector<Field*> fields();

    // --- Opening and closing.
    /// Lands on the first record. Errors: anything that prevents use of the table; the dataset then stays
    /// closed.
    void open();
    /// Opens the table that another cursor has open, under its names, without looking for its files again.
    void openBeside(const Dataset& other);
    void close();
    [[nodiscard]] bool isOpen() const { return state_ != DatasetState::Closed; }
    [[nodiscard]] DatasetState state() const { return state_; }
    [[nodiscard]] bool isReadOnly() const;
    /// Why writing is refused (Spanish, UTF-8); empty if it is not.
    [[nodiscard]] std::string readOnlyReason() const;
    [[nodiscard]] const Schema& schema() const;
    /// The underlying open table. Errors: Error(BadState) while closed.
    [[nodiscard]] Table& openTable() const;

    // --- Order, range, filter.
    /// Active tag; empty means the order of the records in the file.
    [[nodiscard]] const std::string& tag() const { return tag_; }
    /// Keeps record and filter, drops the range; does nothing if the tag is already active. May be set while
    /// closed. Errors: Error(NotFound) for a tag that the table lacks.
    void setTag(const std::string& name);
    [[nodiscard]] std::vector<std::string> tagNames() const;
    /// Shows the records whose key lies between the bounds, inclusive; a bound with only the leading fields
    /// of the tag compares just those. A descending tag accepts its bounds in either order. Lands on the
    /// first record. Errors: BadState without a tag, BadValue.
    void setRange(const Key& low, const Key& high);
    void clearRange();
    /// May be set while closed. Errors: Error(BadExpression); the filter is then unchanged.
    void setFilter(const std::string& text);
    void clearFilter() { setFilter({}); }
    [[nodiscard]] const std::string& filter() const { return filterText_; }

    // --- Moving.
    /// Moves to the first or last record that range and filter show.
    void first();
    void last();
    /// False, with bof()/eof() set, if there is no further record; the current one then stays.
    bool next();
    bool prior();
    [[nodiscard]] bool bof() const { return bof_; }
    [[nodiscard]] bool eof() const { return eof_; }
    /// True if range and filter show no record.
    [[nodiscard]] bool isEmpty() const { return record_ == 0; }
    /// Number of the current record in its file, 0 on an empty table and while inserting.
    [[nodiscard]] RecordNumber recordNumber() const { return state_ == DatasetState::Insert ? 0 : record_; }
    /// Exact: finds the first record with the key, or returns false and keeps the position. Nearest: finds
    /// the first at or after it, or returns false on the last record with eof(). A key with only the tag's
    /// leading fields compares just those; fields that the tag lacks are ignored, not refused. Errors:
    /// BadState without a tag, BadValue for a value that its column cannot hold.
    [[nodiscard]] bool seek(const Key& key, SeekMode mode);
    [[nodiscard]] Bookmark bookmark() const { return Bookmark(recordNumber()); }
    /// False, position unchanged, if the record is gone or hidden by range or filter.
    bool goTo(Bookmark bookmark);
    /// Reads the current record again or, if it is gone, the next one, or else the last.
    void refresh();
    /// Moves to the record at a share of the order (0 to 1, as in RowsAround), or the next one shown, or else
    /// the previous one. False, position unchanged, if there is none. O(height of the tree) without filter.
    bool goToPlace(double place);

    // --- Rows around the current one, without moving and without notifications; see dataset_window.h.
    /// Errors: BadState while rows are being shown to a visitor or calculated.
    [[nodiscard]] RowsAround readAround(const WindowSize& size) const;
    /// Calls a visitor with the index of each of some rows: meanwhile the fields, calculated ones included,
    /// have that row's values, and the dataset cannot be used for anything else.
    void visitRows(const RowsAround& around, std::size_t first, std::size_t count,
                   const std::function<void(std::size_t)>& visit);

    // --- Editing. Errors: Error with ReadOnly, BadState, LockRefused, RecordChanged, and any error of
    // writing. Each change says for itself whether it waits for the disk; later changes are not affected.
    /// Starts a blank row.
    void append();
    /// Locks the record; fails if another user has locked it, or changed it since it was shown.
    void edit();
    /// Writes the pending row, which becomes current. On failure the row stays pending.
    void post(Durability durability = Durability::Process);
    /// Drops the pending row, if any.
    void cancel();
    /// Deletes the current record; the next one, or else the last, becomes current.
    void erase(Durability durability = Durability::Process);
    [[nodiscard]] bool isModified() const { return modified_; }
    /// Waits until everything posted and deleted in this table so far, by any cursor, is safe from a power
    /// cut: a single wait for many rows posted without waiting. Errors: Error(BadState, Io).
    void sync();

    // --- Record locks of this cursor, besides those that editing takes.
    /// False if another cursor or program holds the lock. On an empty table the place of record 1 is locked.
    [[nodiscard]] bool lockCurrent();
    void unlockAll();

    // --- Calculated fields and events.
    /// Tells the calculation handler whether to calculate fields at all.
    [[nodiscard]] bool autoCalculates() const { return autoCalculates_; }
    void setAutoCalculates(bool on) { autoCalculates_ = on; }
    /// Called for each record that becomes current, even with the switch off: the handler checks the switch.
    void setOnCalculate(std::function<void(Dataset&)> handler) { onCalculate_ = std::move(handler); }
    void setAfterOpen(std::function<void(Dataset&)> hook) { afterOpen_ = std::move(hook); }

    /// Listens until the subscription is destroyed.
    [[nodiscard]] Subscription listen(Listener listener) { return listeners_.add(std::move(listener)); }
    /// Expires with the dataset.
    [[nodiscard]] std::weak_ptr<const void> lifetime() const { return listeners_.lifetime(); }
    /// Between suspend and the matching resume listeners are not called; resume then reports Order once.
    /// Nests.
    void suspendNotifications();
    void resumeNotifications();

private:
    friend class Field;
    struct ReadAhead;
    class Visit;
    struct Walk;

    // dataset_fields.cpp
    void resolveFields();
    void requireFit(const Field& field) const;
    Field& addField(std::string name, FieldKind kind, std::size_t width);
    [[nodiscard]] bool isHere(const Field& field) const;
    Field& addColumn(std::size_t position);
    void addColumns();

    // dataset.cpp
    void openOn(std::shared_ptr<Table> table);
    void prepare();
    void letGo();
    void calculate();
    void changed(DatasetChange change);
    void fieldSet();
    void requireOpen() const;
    void requireClosed() const;
    void requireKeys() const;
    void requireUnvisited() const;

    // dataset_window.cpp
    [[nodiscard]] bool isPending() const;
    [[nodiscard]] Walk walk(Direction direction, std::size_t count, std::size_t mostHidden) const;
    [[nodiscard]] RowsAround gatherAround(const WindowSize& size) const;

    // dataset_read_ahead.cpp
    [[nodiscard]] bool takeAhead();
    void fillAhead(const Spot& from, std::size_t leaves);
    void findAhead(TreeCursor cursor);
    void copyAhead();

    // dataset_moves.cpp
    [[nodiscard]] std::string shownKey() const;
    [[nodiscard]] bool toNeighbour(Spot& spot, Direction direction) const;
    template<typename Search>
    bool landOn(Search&& search);
    void leaveRow();
    void landNowhere();
    void landAtEnd(Direction direction);
    void landOnPosted();
    bool step(Direction direction);
    void reposition();
    [[nodiscard]] bool isShownAsStored() const;

    // dataset_edit.cpp
    void takeRecord();
    void giveRecordBack();

    std::string database_, table_, tag_, filterText_;
    std::shared_ptr<Table> open_;
    std::vector<std::unique_ptr<Field>> fields_;
    std::unique_ptr<RowOrder> order_; // null while closed

    std::unique_ptr<Spot> spot_;  // its tree cursor is on the current record, if the tag contains it
    std::unique_ptr<Spot> spare_; // for the next search to work on
    std::unique_ptr<ReadAhead> ahead_;
    std::vector<char> row_;   // the current record, or the pending one
    std::vector<char> shown_; // while a row is pending: the current record as it was shown
    DatasetState state_ = DatasetState::Closed;
    RecordNumber record_ = 0;
    bool bof_ = false, eof_ = false, modified_ = false;
    bool autoCalculates_ = true, isCalculating_ = false, isVisited_ = false;
    int paused_ = 0;
    std::vector<RecordNumber> explicitLocks_;
    ListenerList listeners_;
    std::function<void(Dataset&)> onCalculate_, afterOpen_;
};

} // namespace dbase
