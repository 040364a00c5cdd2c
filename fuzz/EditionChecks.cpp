// Finds out by itself whose each row is.
#include "EditionChecks.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>

#include "directory/DirectoryRecords.h"
#include "directory/StreetNames.h"

namespace trial {
namespace {

using namespace ambrel::directory;
using Rows = DirectoryTables::Rows;

bool isThere(const Bytes& row) { return row.front() != dbase::deletedMark; }

const Rows& of(const DirectoryTables::AllRows& rows, DirectoryTable table) {
    return rows.at(static_cast<std::size_t>(table));
}

/// PROCEDEN, as far as it speaks of POSTAL.
struct Origin {
    std::map<std::uint32_t, Fingerprint> prints; // by key
    std::map<std::string, std::uint32_t> keys;   // by what the office calls a row
    std::set<std::string> places;                // what it calls rows of MUNICIPI
};

Origin originIn(const DirectoryTables& tables, const DirectoryTables::AllRows& rows) {
    const ProvenanceRecord record(tables.schema(DirectoryTable::Provenance));
    Origin origin;
    for (const Bytes& bytes : of(rows, DirectoryTable::Provenance)) {
        const auto row = isThere(bytes) ? record.read(bytes) : std::nullopt;
        if (row && row->key) {
            require(origin.prints.emplace(*row->key, row->fingerprint).second);
            require(origin.keys.emplace(row->official, *row->key).second);
        } else if (row) {
            require(origin.places.emplace(row->official).second);
        }
    }
    return origin;
}

/// By record, whether a row is the office's; users may have given its key to others, too.
std::vector<bool> officialRows(const StreetRecord& record, const Rows& rows, const Origin& origin) {
    std::vector<bool> isOfficial(rows.size());
    std::set<std::uint32_t> taken;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto key = isThere(rows[i]) ? record.key(rows[i]) : std::nullopt;
        const auto print = key ? origin.prints.find(*key) : origin.prints.end();
        if (print != origin.prints.end() && taken.insert(*key).second) {
            isOfficial[i] = record.fingerprint(rows[i]) == print->second;
        }
    }
    return isOfficial;
}

/// Numbers that look-ups find in both.
int shared(const Bounds& one, const Bounds& other) {
    int count = 0;
    for (const std::size_t side : {0U, 2U}) {
        int first = std::max<int>({one[side], other[side], 1});
        const int last = std::min<int>(one[side + 1], other[side + 1]);
        first += first % 2 == (side == 0 ? 1 : 0) ? 0 : 1;
        count += first <= last ? (last - first) / 2 + 1 : 0;
    }
    return count;
}

void requireOrdered(const Bounds& bounds) {
    for (const std::size_t side : {0U, 2U}) {
        const unsigned first = bounds[side], last = bounds[side + 1], odd = side == 0 ? 1 : 0;
        require((first == 0) == (last == 0) && first <= last && last <= 9999);
        require(first == 0 || (first % 2 == odd && last % 2 == odd));
    }
}

/// Rows of POSTAL before and after.
class Streets {
public:
    Streets(const DirectoryTables& tables, const DirectoryTables::AllRows& before,
            const DirectoryTables::AllRows& after)
        : record_(tables.schema(DirectoryTable::Streets)), before_(of(before, DirectoryTable::Streets)),
          after_(of(after, DirectoryTable::Streets)), originBefore_(originIn(tables, before)),
          origin_(originIn(tables, after)), wasOfficial_(officialRows(record_, before_, originBefore_)),
          isOfficial_(officialRows(record_, after_, origin_)) {}

    void check() const {
        for (const auto& [official, key] : originBefore_.keys) {
            const auto now = origin_.keys.find(official);
            require(now == origin_.keys.end() || now->second == key);
        }
        std::set<std::uint32_t> keys; // of all rows there were
        for (const Bytes& row : before_) {
            keys.insert(isThere(row) ? record_.key(row).value_or(0) : 0);
        }
        for (std::size_t i = 0; i < after_.size(); ++i) {
            const bool isNew = i >= before_.size(), isWritten = isNew || before_[i] != after_[i];
            require(isNew || !isWritten || wasOfficial_[i]);
            if (!isWritten || !isThere(after_[i])) {
                continue;
            }
            const auto key = record_.key(after_[i]);
            require(key && *key / 1'000'000 != 99 && (!isNew || keys.insert(*key).second));
            require(isOfficial_[i]);
            requireOrdered(record_.bounds(after_[i]));
            requireApart(i);
        }
    }

private:
    [[nodiscard]] bool contradict(const Bytes& one, const Bytes& other) const {
        const std::string_view type = record_.type(one), otherType = record_.type(other);
        return record_.place(one) && record_.place(one) == record_.place(other) &&
               (type == otherType || type.empty() || otherType.empty()) &&
               plainCapitals(record_.name(one)) == plainCapitals(record_.name(other)) &&
               record_.postalCode(one) != record_.postalCode(other);
    }

    void requireApart(std::size_t written) const {
        const Bytes& row = after_[written];
        for (std::size_t own = 0; own < before_.size(); ++own) {
            if (wasOfficial_[own] || !isThere(before_[own]) || !contradict(before_[own], row)) {
                continue;
            }
            const Bounds bounds = record_.bounds(before_[own]);
            const bool didContradict = written < before_.size() && contradict(before_[own], before_[written]);
            const int earlier = didContradict ? shared(bounds, record_.bounds(before_[written])) : 0;
            require(shared(bounds, record_.bounds(row)) <= earlier);
        }
    }

    StreetRecord record_;
    const Rows& before_;
    const Rows& after_;
    Origin originBefore_, origin_;
    std::vector<bool> wasOfficial_, isOfficial_;
};

} // namespace

void requireSound(const DirectoryTables& tables, const DirectoryTables::AllRows& before,
                  const DirectoryTables::AllRows& after) {
    Streets(tables, before, after).check();
}

} // namespace trial
