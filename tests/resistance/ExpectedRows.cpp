// Compares a table with the acknowledged posts.
#include "ExpectedRows.h"

#include "dbase/support/StoredTable.h"
#include "dbase/table/table.h"

namespace resistance {

namespace {

/// The post as it would have been acknowledged, if the table shows its first row.
std::optional<Post> asItHappened(const Post& post, const std::vector<Bytes>& stored,
                                 const dbase::Schema& schema) {
    Post happened = post;
    if (post.kind == PostKind::Rebuild) {
        return std::nullopt;
    }
    if (post.kind == PostKind::Append || post.kind == PostKind::Load || post.kind == PostKind::Together) {
        // Searches from the end, because others may have added rows after it since.
        for (happened.number = static_cast<dbase::RecordNumber>(stored.size()); happened.number > 0;
             --happened.number) {
            if (rowOf(schema, stored[happened.number - 1]).serial == post.row.serial) {
                break;
            }
        }
    }
    if (post.kind == PostKind::Replace) {
        happened.number = stored.size() == post.rows ? 1 : 0;
    }
    if (happened.number == 0 || happened.number > stored.size() ||
        stored[happened.number - 1] != streetRecord(schema, post.row)) {
        return std::nullopt;
    }
    return happened;
}

} // namespace

void ExpectedRows::apply(const Post& post) {
    if (post.kind == PostKind::Rebuild) {
        return;
    }
    if (post.kind == PostKind::Replace) {
        rows_.clear();
    }
    for (std::uint32_t i = 0; i < post.rows; ++i) {
        StreetVersion row = post.row;
        row.serial += i;
        rows_[post.number + i] = row;
    }
}

ExpectedRows::Outcome ExpectedRows::accept(dbase::Table& table, const std::optional<Post>& inFlight,
                                           std::string& differences) {
    const dbase::Schema& schema = table.schema();
    std::vector<Bytes> stored(table.records().recordCount());
    for (dbase::RecordNumber number = 1; number <= stored.size(); ++number) {
        stored[number - 1] = dbase::test::storedRecord(table, number);
    }

    Outcome outcome = Outcome::NothingInFlight;
    if (inFlight) {
        const auto happened = asItHappened(*inFlight, stored, schema);
        outcome = happened ? Outcome::Whole : Outcome::Absent;
        if (happened) {
            apply(*happened);
        }
    }
    dbase::RecordNumber next = 1;
    for (const auto& [number, row] : rows_) {
        if (number > stored.size()) {
            differences += "lost: record " + std::to_string(number) + ", " + codeOf(row.serial) + '\n';
        } else if (stored[number - 1] != streetRecord(schema, row)) {
            differences += "another: record " + std::to_string(number) + ", expected " + codeOf(row.serial) +
                           " version " + std::to_string(row.version) + ", stored " +
                           std::string(stored[number - 1].begin(), stored[number - 1].end()) + '\n';
        }
        for (; next < number; ++next) {
            differences += "nobody's: record " + std::to_string(next) + '\n';
        }
        next = number + 1;
    }
    for (; next <= stored.size(); ++next) {
        differences += "nobody's: record " + std::to_string(next) + '\n';
    }
    return outcome;
}

std::vector<Holding> ExpectedRows::share(std::size_t writer, std::size_t writers) const {
    std::vector<Holding> rows;
    for (const auto& [number, row] : rows_) {
        if (!row.erased && number % writers == writer) {
            rows.push_back({number, row});
        }
    }
    return rows;
}

} // namespace resistance
