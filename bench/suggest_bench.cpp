// A key in a box with suggestions: the ranked list for what has been typed, against SQLite's trigram index.

#include <algorithm>
#include <set>

#include <benchmark/benchmark.h>

#include "suggest/Suggestions.h"

#include "postal_rows.h"
#include "stopwatch.h"
#include "town_directory.h"
#include "trigram_index.h"

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

// --- The rival

void suggestTrigrams(benchmark::State& state, bool onlyLargest) {
    TrigramIndex& index = TrigramIndex::large();
    // In the largest town an answer takes it so long that all questions would take minutes.
    ask(state, questions(TownDirectory::large(), onlyLargest, onlyLargest ? slowQuestions : 2000),
        [&](const Question& question) { return index.nearest(question.town, question.typed); });
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
