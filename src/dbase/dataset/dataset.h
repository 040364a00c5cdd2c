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
struct Spot;
enum class Direction;

/// Reads and changes one table, record by record; what it shows is the current record, or the pending row.
class AMBREL_EXPORT Dataset {
public:
    /// Is told synchronously, for as long as its subscription lives.
    using Listener = ListenerList::Listener;
    using Subscription = ListenerList::Subscription;

    /// A closed cursor on a table of a database, in the order of a tag.
    Dataset();
    Dataset(std::string database, std::string table, std::string tag = {});
    ~Dataset();
    Dataset(const Dataset&) = delete;
    Dataset& operator=(const Dataset&) = delete;

    // --- Which table. Only while closed.
    /// Names it: the file is looked for when it is opened.
    void setTable(std::string database, std::string table);
    [[nodiscard]] const std::string& databaseName() const { return database_; }
    [[nodiscard]] const std::string& tableName() const { return table_; }

    // --- Fields.
    /// Bind before opening: open() refuses a file whose columns do not fit (Error BadLayout).
    Field& bindCharacter(std::string name, std::size_t width);
    Field& bindInteger(std::string name); // 16 bits, any N(w,0)
    Field& bindLogical(std::string name);
    Field& addCalculated(std::string name, std::size_t width);
    /// Any column by name, bound or not, letter case ignored. Errors: Error(NotFound).
    [[nodiscard]] Field& field(std::string_view name);
    [[nodiscard]] Field* findField(std::string_view name);
    /// In the order of the file, calculated ones behind. Empty while nothing was bound and the table was
    /// never open.
    [[nodiscard]] std::vector<Field*> fields();

    // --- Life.
    /// Errors: everything that keeps the table from being used; the dataset then stays closed. Lands on the
    /// first record.
    void open();
    void close();
    [[nodiscard]] bool isOpen() const { return state_ != DatasetState::Closed; }
    [[nodiscard]] DatasetState state() const { return state_; }
    [[nodiscard]] bool isReadOnly() const;
    /// Why writing is refused (Spanish, UTF-8); empty when it is not.
    [[nodiscard]] std::string readOnlyReason() const;
    [[nodiscard]] const Schema& schema() const;
    /// The open table it stands on. Errors: Error(BadState) while closed.
    [[nodiscard]] Table& openTable() const;

    // --- Order, range, filter.
    /// Active tag; empty is the order of the records in the file.
    [[nodiscard]] const std::string& tag() const { return tag_; }
    /// Keeps record and filter, drops the range; nothing at all when the tag is already active. May be set
    /// while closed. Errors: Error(NotFound) for a tag the table lacks.
    void setTag(const std::string& name);
    [[nodiscard]] std::vector<std::string> tagNames() const;
    /// Records whose key lies between both, included; keys with only the leading fields of the tag compare
    /// those. A descending tag takes its bounds either way. Lands on the first record. Errors: BadState
    /// without a tag, BadValue.
    void setRange(const Key& low, const Key& high);
    void clearRange();
    /// Errors: Error(BadExpression); the filter then stays as it was. May be set while closed.
    void setFilter(const std::string& text);
    void clearFilter() { setFilter({}); }
    [[nodiscard]] const std::string& filter() const { return filterText_; }

    // --- Moving.
    /// To the first or last record that range and filter show.
    void first();
    void last();
    /// False, with bof()/eof() set, when there is nothing further; the current record then stays.
    bool next();
    bool prior();
    [[nodiscard]] bool bof() const { return bof_; }
    [[nodiscard]] bool eof() const { return eof_; }
    /// True when range and filter leave no record.
    [[nodiscard]] bool isEmpty() const { return record_ == 0; }
    /// Number of the current record in its file, 0 on an empty table and while inserting.
    [[nodiscard]] RecordNumber recordNumber() const { return state_ == DatasetState::Insert ? 0 : record_; }
    /// Exact: first record with the key, or false and position unchanged. Nearest: the first at or after it,
    /// or false, the last record and eof(). The tag's leading fields alone compare those; a field that it
    /// lacks is ignored, not refused. Errors: BadState without a tag, BadValue for what a column cannot hold.
    [[nodiscard]] bool seek(const Key& key, SeekMode mode);
    [[nodiscard]] Bookmark bookmark() const { return Bookmark(recordNumber()); }
    /// False, position unchanged, when the record is gone or hidden by range or filter.
    bool goTo(Bookmark bookmark);
    /// Reads the current record again; when it is gone, the next one, else the last.
    void refresh();
    /// To the record at a share of the order (0 to 1, as RowsAround gives it) or the next one shown, else the
    /// one before. False, position unchanged, when there is none. O(height of the tree) without filter.
    bool goToPlace(double place);

    // --- Rows around the current one, without moving and without telling; see dataset_window.h.
    /// Errors: BadState while rows are being shown to a visitor or calculated.
    [[nodiscard]] RowsAround readAround(const WindowSize& size) const;
    /// Shows some of them to a visitor, which gets their index: meanwhile the fields, calculated ones
    /// included, have that row's values, and nothing else can be done with the dataset.
    void visitRows(const RowsAround& around, std::size_t first, std::size_t count,
                   const std::function<void(std::size_t)>& visit);

    // --- Editing. Errors: Error with ReadOnly, BadState, LockRefused, RecordChanged, and whatever writing
    // raises. Whether a change waits for the disk is said with each; none leaves anything behind for others.
    /// Starts a blank row.
    void append();
    /// Locks the record; a record that another user locked or changed since it was shown raises.
    void edit();
    /// Writes the pending row; it is current afterwards. The row stays pending when this raises.
    void post(Durability durability = Durability::Process);
    /// Drops the pending row; nothing when there is none.
    void cancel();
    /// Deletes the current record; the next one, else the last, is current afterwards.
    void erase(Durability durability = Durability::Process);
    [[nodiscard]] bool isModified() const { return modified_; }
    /// Waits until all that was posted and deleted in this table so far, by whichever cursor, is safe from a
    /// power cut: one wait for many rows that were posted without. Errors: Error(BadState, Io).
    void sync();

    // --- Record locks of this cursor, beside those that editing takes by itself.
    /// False when another cursor or program holds it. With an empty table the place of record 1 is locked.
    [[nodiscard]] bool lockCurrent();
    void unlockAll();

    // --- Calculated fields and events.
    /// For the calculation's handler: whether fields are to be calculated at all.
    [[nodiscard]] bool autoCalculates() const { return autoCalculates_; }
    void setAutoCalculates(bool on) { autoCalculates_ = on; }
    /// Runs for each record that becomes current, also with the switch off: the handler looks at the switch.
    void setOnCalculate(std::function<void(Dataset&)> handler) { onCalculate_ = std::move(handler); }
    void setAfterOpen(std::function<void(Dataset&)> hook) { afterOpen_ = std::move(hook); }

    /// Ends when the subscription goes.
    [[nodiscard]] Subscription listen(Listener listener) { return listeners_.add(std::move(listener)); }
    /// Expires with the dataset.
    [[nodiscard]] std::weak_ptr<const void> lifetime() const { return listeners_.lifetime(); }
    /// Between suspend and the matching resume nothing is told; resume then tells Order once. Nests.
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

    // dataset.cpp
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

    // dataset_moves.cpp
    [[nodiscard]] bool takeAhead();
    void fillAhead(const Spot& from);
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

    std::unique_ptr<Spot> spot_;  // its tree cursor stands on the current record, if the tag holds it
    std::unique_ptr<Spot> spare_; // what the next search works on
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
