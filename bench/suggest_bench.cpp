// A key in a box with suggestions: the ranked list for what has been typed, against SQLite's trigram index.

#include <algorithm>
#include <set>

#include <benchmark/benchmark.h>

#include "suggest/SlipCount.h"
#include "suggest/Suggestions.h"

#include "postal_rows.h"
#include "sqlite_postal.h"
#include "stopwatch.h"
#include "town_directory.h"

namespace bench {

namespace {

constexpr std::size_t slowQuestions = 100;

/// A question with the answer that was meant.
struct Question {
    std::uint32_t town;
    std::string typed, meant;
};

std::vector<Question> questions(const TownDirectory& directory, bool onlyLargest, std::size_t count = 2000) {
    std::vector<Question> made;
    for (std::uint32_t i = 0; made.size() < count; ++i) {
        const auto town = onlyLargest
                              ? static_cast<std::uint32_t>(&directory.largest() - directory.towns.data())
                              : static_cast<std::uint32_t>(i * 2654435761U % directory.towns.size());
        const std::vector<SuggestStreet>& streets = directory.towns[town].streets;
        const std::string& name = streets[i * 40503U % streets.size()].name;
        if (name.size() >= 4) {
            made.push_back({town, mistyped(name, i), name});
        }
    }
    return made;
}

/// Times each question by itself, and reports percentiles and how many were answered among the first five.
template<class Answer>
void ask(benchmark::State& state, const std::vector<Question>& asked, Answer&& answer) {
    std::vector<double> seconds;
    std::size_t found = 0, i = 0;
    for (const Question& question : asked) { // everything is warm afterwards
        const std::vector<std::string> names = answer(question);
        found += std::ranges::find(names, question.meant) != names.end() ? 1 : 0;
    }
    for (auto _ : state) {
        const Question& question = asked[i++ % asked.size()];
        seconds.push_back(secondsOf([&] { benchmark::DoNotOptimize(answer(question)); }));
        state.SetIterationTime(seconds.back());
    }
    std::ranges::sort(seconds);
    state.counters["p50_ms"] = 1000 * seconds[seconds.size() / 2];
    state.counters["p99_ms"] = 1000 * seconds[seconds.size() * 99 / 100];
    state.counters["recall"] = static_cast<double>(found) / static_cast<double>(asked.size());
}

void suggestOurs(benchmark::State& state, const TownDirectory& (*directory)(), bool onlyLargest) {
    ambrel::Suggestions suggestions(directory().database, {.memory = std::size_t{1} << 30});
    ask(state, questions(directory(), onlyLargest), [&](const Question& question) {
        std::vector<std::string> names;
        for (const ambrel::SuggestedStreet& street : suggestions.streets(
                 {.text = question.typed, .ineCode = directory().towns[question.town].ineCode}, 5)) {
            names.push_back(street.name);
        }
        return names;
    });
}

// --- The rival: 100 candidates by trigrams in common, ordered by slips.

class TrigramIndex {
public:
    explicit TrigramIndex(const TownDirectory& directory)
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

    [[nodiscard]] std::vector<std::string> nearest(const Question& question) {
        std::string trigrams;
        for (std::size_t i = 0; i + 3 <= question.typed.size(); ++i) {
            trigrams += (i == 0 ? "\"" : " OR \"") + question.typed.substr(i, 3) + '"';
        }
        sqlite3_bind_text(select_.get(), 1, trigrams.c_str(), -1, SQLITE_STATIC);
        sqlite3_bind_int64(select_.get(), 2, first_[question.town]);
        sqlite3_bind_int64(select_.get(), 3, first_[question.town + 1] - 1);
        std::vector<std::string> names;
        while (!trigrams.empty() && sqlite3_step(select_.get()) == SQLITE_ROW) {
            names.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(select_.get(), 0)));
        }
        sqlite3_reset(select_.get());
        return firstFive(question.typed, std::move(names));
    }

private:
    [[nodiscard]] static std::string letters(const std::string& name) {
        std::string kept;
        std::ranges::copy_if(name, std::back_inserter(kept),
                             [](char c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); });
        return kept;
    }
    static std::vector<std::string> firstFive(const std::string& typed, std::vector<std::string> names) {
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

    Database database_;
    Statement select_;
    std::vector<std::int64_t> first_; // row of each town, and the one after the last
};

void suggestTrigrams(benchmark::State& state, bool onlyLargest) {
    static TrigramIndex index(TownDirectory::large());
    // In the largest town an answer takes it so long that all questions would take minutes.
    ask(state, questions(TownDirectory::large(), onlyLargest, onlyLargest ? slowQuestions : 2000),
        [&](const Question& question) { return index.nearest(question); });
}

// --- Municipalities, and the first use of a province

void suggestMunicipality(benchmark::State& state) {
    const TownDirectory& directory = TownDirectory::large();
    ambrel::Suggestions suggestions(directory.database);
    std::vector<Question> asked;
    for (std::uint32_t i = 0; i < 2000; ++i) {
        const auto town = static_cast<std::uint32_t>(i * 2654435761U % directory.towns.size());
        asked.push_back({town, mistyped(directory.towns[town].name, i), directory.towns[town].ineCode});
    }
    ask(state, asked, [&](const Question& question) {
        std::vector<std::string> codes;
        for (const ambrel::SuggestedMunicipality& one : suggestions.municipalities({question.typed}, 5)) {
            codes.push_back(one.ineCode);
        }
        return codes;
    });
}

/// The longest time for which a window that reads in pieces of 5 ms is busy.
void firstUse(benchmark::State& state) {
    const TownDirectory& directory = TownDirectory::large();
    double longest = 0;
    for (auto _ : state) {
        ambrel::Suggestions suggestions(directory.database);
        const ambrel::StreetQuery query{.text = "ALCLA", .ineCode = largestTown};
        double whole = 0;
        for (bool isReady = false; !isReady;) {
            const double piece =
                secondsOf([&] { isReady = suggestions.prepare(query, std::chrono::milliseconds(5)); });
            longest = std::max(longest, piece);
            whole += piece;
        }
        const double answer = secondsOf([&] { benchmark::DoNotOptimize(suggestions.streets(query)); });
        longest = std::max(longest, answer);
        state.SetIterationTime(whole + answer);
    }
    state.counters["longest_piece_ms"] = 1000 * longest;
}

BENCHMARK_CAPTURE(suggestOurs, towns, &TownDirectory::large, false)
    ->Name("suggest/ours")
    ->UseManualTime()
    ->MinTime(2);
BENCHMARK_CAPTURE(suggestTrigrams, towns, false)->Name("suggest/fts5")->UseManualTime()->MinTime(2);
BENCHMARK_CAPTURE(suggestOurs, largest, &TownDirectory::large, true)
    ->Name("suggest_largest/ours")
    ->UseManualTime()
    ->MinTime(2);
BENCHMARK_CAPTURE(suggestTrigrams, largest, true)
    ->Name("suggest_largest/fts5")
    ->UseManualTime()
    ->Iterations(slowQuestions);
BENCHMARK_CAPTURE(suggestOurs, small, &TownDirectory::small, true)
    ->Name("suggest_growth/100k")
    ->UseManualTime()
    ->MinTime(2);
BENCHMARK_CAPTURE(suggestOurs, large, &TownDirectory::large, true)
    ->Name("suggest_growth/1m5")
    ->UseManualTime()
    ->MinTime(2);
BENCHMARK(suggestMunicipality)->Name("suggest_municipality/ours")->UseManualTime()->MinTime(2);
BENCHMARK(firstUse)
    ->Name("suggest_first_use/ours")
    ->UseManualTime()
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);

} // namespace

} // namespace bench
