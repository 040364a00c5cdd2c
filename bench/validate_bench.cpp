// Whole addresses from a text with columns to one with verdicts, shuffled over all provinces: against
// prepared statements of SQLite that find the same, and for names with a slip against its trigram index.

#include <algorithm>
#include <array>
#include <random>
#include <span>
#include <vector>

#include <benchmark/benchmark.h>

#include "address/AddressValidator.h"
#include "address/GivenReadings.h"
#include "address/TidyText.h"
#include "dbase/lock/read_scope.h"
#include "loading/csv.h"

#include "sqlite_towns.h"
#include "town_directory.h"
#include "trigram_index.h"

namespace bench {

namespace {

/// What is kept of the provinces: all of them, as a file in any order needs.
constexpr std::size_t memory = std::size_t{192} << 20;

// --- The files

enum class Slip { None, Street, StreetOfLargest, Town };

/// A town and one of its streets for each row, in any order.
std::string file(Slip slip, std::size_t rows) {
    const TownDirectory& directory = TownDirectory::large();
    std::vector<const SuggestTown*> towns;
    for (const SuggestTown& town : directory.towns) {
        const bool isMiddling = town.streets.size() >= 50 && town.streets.size() <= 600;
        if (slip == Slip::None ||
            (slip == Slip::StreetOfLargest ? &town == &directory.largest() : isMiddling)) {
            towns.push_back(&town);
        }
    }
    // Large towns have more addresses than small ones.
    std::vector<double> sizes;
    for (const SuggestTown* town : towns) {
        sizes.push_back(static_cast<double>(town->streets.size()));
    }
    std::mt19937 random(20261123);
    std::discrete_distribution<std::size_t> pick(sizes.begin(), sizes.end());
    std::string text = "VIA,NUMERO,CODPOSTAL,MUNICIPIO,PROVINCIA\n";
    for (std::uint32_t i = 0; i < rows;) {
        const SuggestTown& town = *towns[pick(random)];
        const SuggestStreet& street = town.streets[random() % town.streets.size()];
        const bool isStreetWrong = slip == Slip::Street || slip == Slip::StreetOfLargest;
        if (slip != Slip::None && (street.name.size() < 6 || town.name.size() < 6)) {
            continue;
        }
        text += street.type + ' ' + (isStreetWrong ? mistyped(street.name, i) : street.name) + ',' +
                std::to_string(1 + random() % 90) + ',' + street.postalCode + ',' +
                (slip == Slip::Town ? mistyped(town.name, i) : town.name) + ',' + town.ineCode.substr(0, 2) +
                '\n';
        ++i;
    }
    return text;
}

/// The rows of a file one by one.
template<class Take>
void readRows(const std::string& text, Take&& take) {
    loading::CsvReader csv(loading::textSource(text), "clientes");
    static_cast<void>(csv.next()); // the heading
    ambrel::GivenAddress given;
    while (csv.next()) {
        given.street = csv.fields()[0].text;
        given.number = csv.fields()[1].text;
        given.postalCode = csv.fields()[2].text;
        given.municipality = csv.fields()[3].text;
        given.province = csv.fields()[4].text;
        take(csv, given);
    }
}

void writeRow(std::string& result, std::string_view row, std::string_view verdict, std::string_view ineCode,
              std::string_view type, std::string_view street, std::string_view number,
              std::string_view code) {
    result += row.substr(0, row.find('\n'));
    for (const std::string_view value : {verdict, ineCode, type, street, number, code}) {
        result += ',';
        result += value;
    }
    result += '\n';
}

// --- Ours

/// Rows that are judged together, as `ambcp validar` does.
class Block {
public:
    void add(std::string_view raw, const ambrel::GivenAddress& given) {
        Row& row = rows_[count_++];
        row.given = given;
        text_ += raw;
        row.end = text_.size();
    }
    [[nodiscard]] bool isFull() const { return count_ == rows_.size(); }

    template<class Take>
    void judge(ambrel::AddressValidator& validator, Take&& take) {
        const std::span<Row> rows = std::span(rows_).first(count_);
        std::vector<ambrel::AddressToJudge> addresses;
        for (Row& row : rows) {
            addresses.push_back({&row.given, &row.judged});
        }
        validator.validate(addresses);
        std::size_t begin = 0;
        for (const Row& row : rows) {
            take(std::string_view(text_).substr(begin, row.end - begin), row.judged);
            begin = row.end;
        }
        text_.clear();
        count_ = 0;
    }

private:
    struct Row {
        std::size_t end = 0; // in the text
        ambrel::GivenAddress given;
        ambrel::JudgedAddress judged;
    };

    std::string text_;
    std::array<Row, 32> rows_;
    std::size_t count_ = 0;
};

void validateOurs(benchmark::State& state, Slip slip, std::size_t rows) {
    const std::string text = file(slip, rows);
    ambrel::AddressValidator validator(TownDirectory::large().database, {.memory = memory});
    std::size_t settled = 0, all = 0;
    Block block;
    const auto run = [&] {
        const dbase::ReadScope scope;
        std::string result;
        const auto write = [&](std::string_view raw, const ambrel::JudgedAddress& judged) {
            settled += isSettled(judged.verdict) ? 1 : 0;
            ++all;
            writeRow(result, raw, verdictName(judged.verdict), judged.ineCode, judged.type, judged.street,
                     judged.number, judged.postalCode);
        };
        readRows(text, [&](const loading::CsvReader& csv, const ambrel::GivenAddress& given) {
            block.add(csv.raw(), given);
            if (block.isFull()) {
                block.judge(validator, write);
            }
        });
        block.judge(validator, write);
        return result;
    };
    static_cast<void>(run()); // everything is warm afterwards
    for (auto _ : state) {
        benchmark::DoNotOptimize(run());
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(rows) * state.iterations());
    state.counters["settled"] = static_cast<double>(settled) / static_cast<double>(all);
}

// --- The rivals: the same rows, taken apart by the same code

/// The municipality's code and the parts of a row.
struct Taken {
    std::string ineCode;
    ambrel::AddressParts parts;
    std::string street;
};

Taken takeApart(SqliteTowns& towns, const ambrel::GivenAddress& given) {
    Taken taken;
    taken.parts = std::move(ambrel::readingsOf(given).likely.front());
    taken.street = ambrel::tidied(taken.parts.street);
    const auto found = towns.municipalities(ambrel::tidied(given.municipality), given.province);
    if (found.size() == 1) {
        taken.ineCode = found.front();
    }
    return taken;
}

template<class Find>
void validateRival(benchmark::State& state, Slip slip, std::size_t rows, Find&& find) {
    const std::string text = file(slip, rows);
    SqliteTowns& towns = SqliteTowns::large();
    std::size_t right = 0, all = 0;
    for (auto _ : state) {
        std::string result;
        readRows(text, [&](const loading::CsvReader& csv, const ambrel::GivenAddress& given) {
            const Taken taken = takeApart(towns, given);
            const SqliteAddress found = find(towns, taken);
            const bool isRight = !found.postalCode.empty() && found.postalCode == given.postalCode;
            right += isRight ? 1 : 0;
            ++all;
            writeRow(result, csv.raw(), isRight ? "CORRECTA" : "DUDOSA", found.ineCode, found.type,
                     found.street, taken.parts.number, found.postalCode);
        });
        benchmark::DoNotOptimize(result);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(rows) * state.iterations());
    state.counters["settled"] = static_cast<double>(right) / static_cast<double>(all);
}

void validateSqlite(benchmark::State& state, std::size_t rows) {
    validateRival(state, Slip::None, rows, [](SqliteTowns& towns, const Taken& taken) {
        return towns.address(taken.ineCode, taken.parts.type, taken.street, std::stoi(taken.parts.number));
    });
}

void validateTrigrams(benchmark::State& state, std::size_t rows) {
    const TownDirectory& directory = TownDirectory::large();
    TrigramIndex& index = TrigramIndex::large();
    validateRival(state, Slip::Street, rows, [&](SqliteTowns& towns, const Taken& taken) -> SqliteAddress {
        const auto town = std::ranges::find(directory.towns, taken.ineCode, &SuggestTown::ineCode);
        if (town == directory.towns.end()) {
            return {};
        }
        const auto names =
            index.nearest(static_cast<std::uint32_t>(town - directory.towns.begin()), taken.street);
        return names.empty() ? SqliteAddress{}
                             : towns.address(taken.ineCode, taken.parts.type, names.front(),
                                             std::stoi(taken.parts.number));
    });
}

constexpr std::size_t exactRows = 20'000, slipRows = 3'000, largestRows = 500;
/// As many as the trigram index answers in some seconds.
constexpr std::size_t rivalRows = 200;

BENCHMARK_CAPTURE(validateOurs, exact, Slip::None, exactRows)
    ->Name("validate/ours")
    ->MinTime(2)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(validateSqlite, exact, exactRows)
    ->Name("validate/sqlite")
    ->MinTime(2)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(validateOurs, slips, Slip::Street, slipRows)
    ->Name("validate_slips/ours")
    ->MinTime(2)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(validateOurs, slip, Slip::Street, rivalRows)
    ->Name("validate_slip/ours")
    ->MinTime(2)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(validateTrigrams, slip, rivalRows)
    ->Name("validate_slip/fts5")
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(validateOurs, largest, Slip::StreetOfLargest, largestRows)
    ->Name("validate_slip_largest/ours")
    ->MinTime(2)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(validateOurs, town, Slip::Town, largestRows)
    ->Name("validate_town_slip/ours")
    ->MinTime(2)
    ->Unit(benchmark::kMillisecond);

} // namespace

} // namespace bench
