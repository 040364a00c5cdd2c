// What a table must hold: every acknowledged post, the one in flight whole or not at all, and nothing else.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "PostLog.h"

namespace dbase {
class Table;
}

namespace resistance {

/// A row that a writer may change.
struct Holding {
    dbase::RecordNumber number = 0;
    StreetVersion row;
};

class ExpectedRows {
public:
    enum class Outcome { NothingInFlight, Whole, Absent };

    /// What was acknowledged.
    void apply(const Post& post);
    void clear() { rows_.clear(); }

    /// Compares every byte of every record. The post in flight may have happened; it then counts from now
    /// on. `differences` gets a line for each row that is not as it must be.
    Outcome settle(dbase::Table& table, const std::optional<Post>& inFlight, std::string& differences);

    [[nodiscard]] std::size_t count() const { return rows_.size(); }
    /// The rows that were not erased, dealt out among so many writers.
    [[nodiscard]] std::vector<Holding> share(std::size_t writer, std::size_t writers) const;

private:
    std::map<dbase::RecordNumber, StreetVersion> rows_;
};

} // namespace resistance
