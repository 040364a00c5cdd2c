// Judges the records of a table, and posts what is to be written in batches.
#include "address/TableValidation.h"

#include <algorithm>
#include <utility>

#include "controller/ProvinceName.h"
#include "dbase/system/error.h"

namespace ambrel {

namespace {

/// The file that the table is read as, whatever was said about files.
AddressFileOptions asTable(AddressFileOptions options) {
    options.separator = ',';
    options.encoding = loading::TextEncoding::Utf8;
    options.part = {};
    return options;
}

} // namespace

TableValidation::TableValidation(const std::string& tableFile, AddressFileOptions options)
    : table_(dbase::Table::open(tableFile)), options_(asTable(std::move(options))) {
    AddressTable records(table_);
    const AddressFilePreview preview = previewAddressFile(records.input(), options_, 0);
    if (!preview.problem.empty()) {
        throw AddressColumnsError(preview.problem);
    }
    for (std::size_t i = 0; i < sources_.size(); ++i) {
        if (preview.places[i]) {
            sources_[i] = records.columnAt(*preview.places[i]);
        }
    }
}

dbase::RecordNumber TableValidation::recordCount() const {
    return table_->read([&] { return table_->records().recordCount(); });
}

void TableValidation::fill(const FillNames& names, loading::UndoWriter& undo,
                           const std::vector<std::string>& key,
                           std::function<void(const UnfilledRow&)> observer) {
    fill_.emplace(table_->schema(), table_->path(), names, sources_);
    changes_ = std::make_unique<loading::BatchChanges>(
        table_, undo, key,
        [this](dbase::RecordNumber record, loading::ChangeOutcome outcome) { decided(record, outcome); });
    observer_ = std::move(observer);
}

TableTotals TableValidation::run(const AddressFileHandlers& handlers) {
    AddressTable all(table_);
    runOver(all, handlers);
    const AddressFileTotals addresses = totals_.addresses;
    if (!again_.empty() && !addresses.wasCancelled) {
        std::ranges::sort(again_);
        isSecondTry_ = true;
        AddressTable some(table_, std::exchange(again_, {}));
        runOver(some, {});
        totals_.addresses = addresses; // in which they are counted already
    }
    return totals_;
}

void TableValidation::runOver(AddressTable& records, AddressFileHandlers handlers) {
    const auto report = std::move(handlers.row);
    handlers.row = [&](const ValidatedRow& row) {
        const AddressTable::Record record = records.takeRecord();
        if (fill_) {
            take(record, row);
        }
        if (report) {
            report({record.number, 0, row.given, row.judged});
        }
    };
    totals_.addresses = validateAddressFile(records.input(), options_, handlers);
    if (changes_) {
        changes_->finish();
    }
}

void TableValidation::take(const AddressTable::Record& record, const ValidatedRow& row) {
    std::vector<char> filled = record.bytes;
    if (auto problem = fill_->fill(filled, row.given, row.judged, provinceOf(row.judged.province))) {
        leave(record.number, *std::move(problem));
    } else if (filled != record.bytes) {
        changes_->change(record.number, record.bytes, filled);
    }
}

void TableValidation::decided(dbase::RecordNumber record, loading::ChangeOutcome outcome) {
    if (outcome == loading::ChangeOutcome::Done) {
        ++totals_.changed;
    } else if (!isSecondTry_) {
        again_.push_back(record);
    } else {
        leave(record, {{},
                       {},
                       outcome == loading::ChangeOutcome::Locked
                           ? "otro usuario la está modificando"
                           : "otro usuario la ha cambiado mientras se validaba"});
    }
}

void TableValidation::leave(dbase::RecordNumber record, FillProblem problem) {
    ++totals_.leftAlone;
    if (observer_) {
        observer_({record, std::move(problem)});
    }
}

const std::string& TableValidation::provinceOf(const std::string& code) {
    const auto [found, isNew] = provinces_.try_emplace(code);
    if (isNew && !code.empty()) {
        found->second = provinceName(code, options_.database);
    }
    return found->second;
}

} // namespace ambrel
