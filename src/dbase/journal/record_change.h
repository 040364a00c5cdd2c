// What a change does to records: their bytes before and after, in runs of adjacent records.
#pragma once

#include <span>
#include <vector>

#include "dbase/dbf/schema.h"

namespace dbase {

struct RecordRun {
    RecordNumber first = 0;
    RecordNumber rows = 0;
    std::vector<char> before; // empty for new records
    std::vector<char> after;
};

class RecordChange {
public:
    [[nodiscard]] bool empty() const { return runs_.empty(); }
    [[nodiscard]] const std::vector<RecordRun>& runs() const { return runs_; }

    /// Add records in ascending order. `before` is empty for a new record.
    void add(RecordNumber number, std::span<const char> before, std::span<const char> after) {
        if (runs_.empty() || number != runs_.back().first + runs_.back().rows ||
            before.empty() != runs_.back().before.empty()) {
            runs_.push_back({number, 0, {}, {}});
        }
        RecordRun& run = runs_.back();
        ++run.rows;
        run.before.insert(run.before.end(), before.begin(), before.end());
        run.after.insert(run.after.end(), after.begin(), after.end());
    }

private:
    std::vector<RecordRun> runs_;
};

} // namespace dbase
