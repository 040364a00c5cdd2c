// Changes of many rows that are posted together: each under its record's lock, and only if the row still is
// what it was when the change was thought out.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "dbase/table/table.h"

namespace loading {

enum class ChangeOutcome {
    Done,
    Locked,  // another user holds the record
    Changed, // another user has changed or deleted it meanwhile
};

class RowPosts {
public:
    /// Called for each row of a batch, by number.
    using Observer = std::function<void(dbase::RecordNumber, ChangeOutcome)>;
    static constexpr std::size_t batch = 256;

    explicit RowPosts(std::shared_ptr<dbase::Table> table) : table_(std::move(table)) {}

    [[nodiscard]] bool isEmpty() const { return rows_.empty(); }
    [[nodiscard]] bool isFull() const { return rows_.size() >= batch; }
    [[nodiscard]] bool contains(dbase::RecordNumber number) const { return rows_.contains(number); }

    /// A live row, so far not in the batch, as it was seen, and as it shall be; its first byte tells whether
    /// it is to be deleted.
    void add(dbase::RecordNumber number, std::span<const char> shown, std::span<const char> record);
    /// Calls a function with each row of the batch.
    void visit(const std::function<void(dbase::RecordNumber, std::span<const char> shown,
                                        std::span<const char> record)>& visitor) const;
    /// Leaves a row out.
    void drop(dbase::RecordNumber number) { rows_.erase(number); }

    /// Posts the batch, which is on the disk afterwards, and empties it. Errors: dbase::Error; rows that the
    /// observer has seen as done stay.
    void post(const Observer& observer);

private:
    struct Row {
        std::vector<char> shown, record;
        ChangeOutcome outcome = ChangeOutcome::Changed; // unless the table finds it, unchanged and free
    };

    [[nodiscard]] dbase::RecordNumber postFrom(dbase::RecordNumber first, dbase::RecordNumber last);

    std::shared_ptr<dbase::Table> table_;
    std::map<dbase::RecordNumber, Row> rows_;
};

} // namespace loading
