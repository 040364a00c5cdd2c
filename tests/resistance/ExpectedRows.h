// The required rows of a table: every acknowledged post, the one in flight wholly or not at all, nothing
// else.
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

    /// Applies an acknowledged post.
    void apply(const Post& post);
    void clear() { rows_.clear(); }

    /// Compares every byte of every record. The post in flight may have happened, and then counts from now
    /// on. `differences` gets a line for each wrong row.
    Outcome accept(dbase::Table& table, const std::optional<Post>& inFlight, std::string& differences);

    [[nodiscard]] std::size_t count() const { return rows_.size(); }
    /// The share of one of several writers in the rows that were not erased.
    [[nodiscard]] std::vector<Holding> share(std::size_t writer, std::size_t writers) const;

private:
    std::map<dbase::RecordNumber, StreetVersion> rows_;
};

} // namespace resistance
