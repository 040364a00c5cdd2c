// Filling and asking the trigram index.
#include "trigram_index.h"

#include <algorithm>

#include "suggest/SlipCount.h"

#include "postal_rows.h"

namespace bench {

namespace {

std::string letters(const std::string& name) {
    std::string kept;
    std::ranges::copy_if(name, std::back_inserter(kept),
                         [](char c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); });
    return kept;
}

std::vector<std::string> firstFive(const std::string& typed, std::vector<std::string> names) {
    const ambrel::suggest::SlipCount slips(letters(typed));
    std::vector<std::pair<unsigned, std::string>> ranked;
    for (std::string& name : names) {
        ranked.emplace_back(slips.to(letters(name)).whole, std::move(name));
    }
    std::ranges::sort(ranked);
    std::vector<std::string> best;
    for (auto& [slip, name] : ranked) {
        if (best.size() < 5 && (best.empty() || best.back() != name)) {
            best.push_back(std::move(name));
        }
    }
    return best;
}

} // namespace

TrigramIndex::TrigramIndex(const TownDirectory& directory)
    : database_(openSqlite(workFolder + "/trigram.sqlite")) {
    execute(database_.get(), "CREATE VIRTUAL TABLE via USING fts5(name, tokenize='trigram')");
    execute(database_.get(), "BEGIN");
    const Statement insert = prepare(database_.get(), "INSERT INTO via(rowid, name) VALUES (?,?)");
    std::int64_t row = 0;
    for (const SuggestTown& town : directory.towns) {
        first_.push_back(row + 1);
        for (const SuggestStreet& street : town.streets) {
            sqlite3_bind_int64(insert.get(), 1, ++row);
            sqlite3_bind_text(insert.get(), 2, street.name.c_str(), -1, SQLITE_STATIC);
            sqlite3_step(insert.get());
            sqlite3_reset(insert.get());
        }
    }
    first_.push_back(row + 1);
    execute(database_.get(), "COMMIT");
    execute(database_.get(), "INSERT INTO via(via) VALUES ('optimize')");
    select_ = prepare(database_.get(), "SELECT name FROM via WHERE via MATCH ? AND rowid BETWEEN ? AND ? "
                                       "ORDER BY rank LIMIT 100");
}

TrigramIndex& TrigramIndex::large() {
    static TrigramIndex index(TownDirectory::large());
    return index;
}

std::vector<std::string> TrigramIndex::nearest(std::uint32_t town, const std::string& typed) {
    std::string trigrams;
    for (std::size_t i = 0; i + 3 <= typed.size(); ++i) {
        trigrams += (i == 0 ? "\"" : " OR \"") + typed.substr(i, 3) + '"';
    }
    sqlite3_bind_text(select_.get(), 1, trigrams.c_str(), -1, SQLITE_STATIC);
    sqlite3_bind_int64(select_.get(), 2, first_[town]);
    sqlite3_bind_int64(select_.get(), 3, first_[town + 1] - 1);
    std::vector<std::string> names;
    while (!trigrams.empty() && sqlite3_step(select_.get()) == SQLITE_ROW) {
        names.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(select_.get(), 0)));
    }
    sqlite3_reset(select_.get());
    return firstFive(typed, std::move(names));
}

} // namespace bench
