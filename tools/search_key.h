// Search keys from texts of the command line.
#pragma once

#include <string>
#include <vector>

#include "dbase/dataset/dataset.h"

namespace ambcp {

/// A key together with the names and texts that it refers to.
class SearchKey {
public:
    /// Adds one field. `text` is UTF-8, checked against the column. Errors: Failure for a field that the
    /// table lacks, one given twice, a value that its column cannot hold.
    void add(dbase::Dataset& table, const std::string& field, const std::string& text);

    [[nodiscard]] dbase::Key key() const;
    [[nodiscard]] bool empty() const { return pairs_.empty(); }
    [[nodiscard]] bool has(const std::string& field) const;

private:
    struct Pair {
        std::string field, value;
    };
    std::vector<Pair> pairs_;
};

/// Makes a key that begins with a text: its characters are spread over the leading character columns of the
/// active tag, each taking its width. Errors: Failure for a text that a column cannot hold, or a tag whose
/// keys do not begin with a column.
[[nodiscard]] SearchKey keyFromText(dbase::Dataset& table, const std::string& text);

/// Fields of the active tag that the key lacks before its own last one: the search would take them as blank.
/// Empty when the tag's expression does not show them.
[[nodiscard]] std::vector<std::string> missingBeforeLast(dbase::Dataset& table, const SearchKey& key);

/// Fields of the key that the active tag does not use; empty when its expression does not show them.
[[nodiscard]] std::vector<std::string> fieldsOutsideTag(dbase::Dataset& table, const SearchKey& key);

} // namespace ambcp
