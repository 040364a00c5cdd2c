// Undo entries first, then the rows.
#include "loading/batch_changes.h"

#include <algorithm>

#include "data/TableDefinitions.h"
#include "dbase/system/error.h"
#include "dbase/system/names.h"
#include "dbase/system/paths.h"

namespace loading {

std::vector<std::string> keyColumnsOf(const dbase::Table& table) {
    if (dbase::upperName(dbase::baseName(table.path())) == ambrel::streetTable().name &&
        table.schema().find("CODIGO1")) {
        return {"CODIGO1"};
    }
    for (const std::string& name : table.tagNames()) {
        const dbase::Tag* const tag = table.findTag(name);
        if (tag->definition.unique && table.schema().find(tag->definition.expression)) {
            return {tag->definition.expression};
        }
    }
    return {};
}

BatchChanges::BatchChanges(std::shared_ptr<dbase::Table> table, UndoWriter& undo,
                           const std::vector<std::string>& key, RowPosts::Observer observer)
    : table_(std::move(table)), undo_(undo), observer_(std::move(observer)), posts_(table_) {
    if (table_->isReadOnly()) {
        throw dbase::Error(dbase::ErrorCode::ReadOnly, table_->path(),
                           "sólo se puede leer: " + table_->readOnlyReason());
    }
    undoTable_ = undo_.addTable(table_->path(), table_->schema(), key);
}

void BatchChanges::change(dbase::RecordNumber number, std::span<const char> shown,
                          std::span<const char> record) {
    if (!std::ranges::equal(shown, record)) {
        collect(number, shown, record);
    } else if (observer_) {
        observer_(number, ChangeOutcome::Done);
    }
}

void BatchChanges::erase(dbase::RecordNumber number, std::span<const char> shown) {
    std::vector<char> deleted(shown.begin(), shown.end());
    deleted.front() = dbase::deletedMark;
    collect(number, shown, deleted);
}

void BatchChanges::collect(dbase::RecordNumber number, std::span<const char> shown,
                           std::span<const char> record) {
    if (posts_.isFull() || posts_.contains(number)) {
        postChanges();
    }
    posts_.add(number, shown, record);
}

void BatchChanges::add(std::span<const char> record) {
    if (added_.size() >= RowPosts::batch) {
        postAdded();
    }
    added_.emplace_back(record.begin(), record.end());
}

void BatchChanges::finish() {
    postChanges();
    postAdded();
    undo_.sync(); // what was taken back in the last batch
}

/// An entry is written only for a row that is still as it was seen, as far as can be known without its lock;
/// one that changes or is taken between the entry and the post is taken back.
void BatchChanges::postChanges() {
    std::vector<dbase::RecordNumber> stale;
    posts_.visit([&](dbase::RecordNumber number, std::span<const char> shown, std::span<const char> record) {
        const bool isCurrent = table_->read([&] {
            return number <= table_->records().recordCount() &&
                   std::ranges::equal(table_->records().record(number).bytes, shown);
        });
        if (!isCurrent) {
            stale.push_back(number);
        } else if (record.front() == dbase::deletedMark) {
            undo_.deletion(undoTable_, number, shown);
        } else {
            undo_.change(undoTable_, number, shown, record);
        }
    });
    for (const dbase::RecordNumber number : stale) {
        posts_.drop(number);
    }
    if (!posts_.isEmpty()) {
        undo_.sync();
    }
    const auto report = [&](dbase::RecordNumber number, ChangeOutcome outcome) {
        if (observer_) {
            observer_(number, outcome);
        }
    };
    posts_.post([&](dbase::RecordNumber number, ChangeOutcome outcome) {
        if (outcome != ChangeOutcome::Done) {
            undo_.unmade(undoTable_, number);
        }
        report(number, outcome);
    });
    for (const dbase::RecordNumber number : stale) {
        report(number, ChangeOutcome::Changed);
    }
}

void BatchChanges::postAdded() {
    for (const std::vector<char>& row : added_) {
        undo_.addition(undoTable_, 0, row);
    }
    if (added_.empty()) {
        return;
    }
    undo_.sync();
    for (const std::vector<char>& row : added_) {
        static_cast<void>(table_->append(row, dbase::Durability::Disk));
    }
    added_.clear();
}

} // namespace loading
