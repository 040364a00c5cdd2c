// Inventing towns and streets.
#include "suggest_names.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <set>

namespace bench {

namespace {

using Random = std::mt19937;

std::size_t below(Random& random, std::size_t limit) { return random() % limit; }

std::string word(Random& random) {
    static constexpr const char* syllables[] = {
        "MA", "RI",  "LO", "TE", "SAN", "CAR", "VI",  "DO", "NE", "GO",  "PE",   "RA", "LLA", "BE", "CU",
        "ZA", "FER", "MO", "JU", "AL",  "TO",  "QUE", "SI", "NA", "COR", "BLAN", "DE", "GUA", "LI", "ES"};
    std::string made;
    const std::size_t count = 2 + below(random, 3);
    for (std::size_t i = 0; i < count; ++i) {
        made += syllables[below(random, std::size(syllables))];
    }
    return made;
}

/// Distinct words; a few are used very often and most hardly ever.
class Vocabulary {
public:
    Vocabulary(Random& random, std::size_t count) {
        std::set<std::string> known;
        while (words_.size() < count) {
            if (std::string made = word(random); known.insert(made).second) {
                words_.push_back(std::move(made));
            }
        }
    }
    [[nodiscard]] const std::string& pick(Random& random) const {
        const double share = std::generate_canonical<double, 32>(random);
        return words_[static_cast<std::size_t>(std::pow(static_cast<double>(words_.size()), share)) - 1];
    }
    [[nodiscard]] const std::string& pickRare(Random& random) const {
        return words_[below(random, words_.size())];
    }

private:
    std::vector<std::string> words_;
};

std::string streetName(Random& random, const Vocabulary& words) {
    const std::size_t kind = below(random, 20);
    if (kind < 9) {
        return words.pickRare(random);
    }
    std::string name = words.pick(random) +
                       (kind < 12   ? " DE "
                        : kind < 14 ? " DE LA "
                                    : " ") +
                       words.pickRare(random);
    return kind == 19 ? name + ' ' + words.pick(random) : name;
}

/// Names of the largest town, real where there are any.
std::vector<std::pair<std::string, std::string>> largestStreets(Random& random, const Vocabulary& words) {
    std::set<std::pair<std::string, std::string>> streets; // name, type
    if (const char* const folder = std::getenv("AMBREL_REAL_DATA")) {
        std::ifstream file(std::string(folder) + "/catastro/vias_catastro.csv");
        for (std::string line; std::getline(file, line);) {
            const std::string start = std::string(largestTown) + ",MADRID,MADRID,,";
            if (line.starts_with(start) && line.find('"') == std::string::npos) {
                const std::size_t comma = line.find(',', start.size());
                std::string name = line.substr(comma + 1);
                name.erase(name.find_last_not_of("\r\n ") + 1);
                if (std::ranges::all_of(name, [](char c) { return static_cast<unsigned char>(c) < 128; })) {
                    streets.emplace(name, line.substr(start.size(), comma - start.size()));
                }
            }
        }
    }
    while (streets.size() < 8085) {
        streets.emplace(streetName(random, words), "CL");
    }
    return {streets.begin(), streets.end()};
}

SuggestTown town(Random& random, const Vocabulary& words, std::uint32_t number, std::size_t size) {
    static constexpr const char* types[] = {"CL", "CL", "CL", "AV", "PZ", "CM", "PS", "TR"};
    SuggestTown made;
    char code[8];
    const unsigned province = 1 + number % 52;
    std::snprintf(code, sizeof code, "%02u%03u", province, (number / 52) % 1000);
    made.ineCode = code;
    made.name = words.pickRare(random) + (number % 3 == 0 ? " DE " + words.pick(random) : "");
    for (std::uint32_t i = 0; i <= size / 200; ++i) {
        std::snprintf(code, sizeof code, "%02u%03u", province,
                      100 + (number / 52 * 7 + i) % 900); // the largest town has the others
        made.postalCodes.emplace_back(code);
    }
    std::set<std::string> names;
    for (std::size_t i = 0; i < size; ++i) {
        names.insert(streetName(random, words));
    }
    for (const std::string& name : names) {
        made.streets.push_back({types[below(random, std::size(types))], name,
                                made.postalCodes[below(random, made.postalCodes.size())]});
    }
    return made;
}

} // namespace

std::vector<SuggestTown> suggestTowns(std::uint32_t streetCount, std::uint32_t townCount) {
    Random random(20261122);
    const Vocabulary words(random, 20'000);
    std::vector<SuggestTown> towns;
    SuggestTown largest{largestTown, "MADRID", {}, {}};
    for (int i = 1; i <= 55; ++i) {
        largest.postalCodes.push_back("280" + std::to_string(100 + i).substr(1));
    }
    for (auto& [name, type] : largestStreets(random, words)) {
        largest.streets.push_back({type, name, largest.postalCodes[towns.size() + below(random, 55)]});
    }
    // Sizes fall with the rank, as those of real towns do.
    double sum = 0;
    for (std::uint32_t i = 0; i < townCount; ++i) {
        sum += 1.0 / std::pow(i + 12, 0.8);
    }
    for (std::uint32_t i = 0; i < townCount; ++i) {
        const double share = 1.0 / std::pow(i + 12, 0.8) / sum;
        const auto size = static_cast<std::size_t>(share * streetCount);
        SuggestTown made = town(random, words, i, std::max<std::size_t>(size, 3));
        if (made.ineCode != largestTown) {
            towns.push_back(std::move(made));
        }
    }
    towns.push_back(std::move(largest));
    std::ranges::sort(towns, {}, &SuggestTown::ineCode);
    return towns;
}

std::string mistyped(const std::string& name, std::uint32_t number) {
    Random random(number * 2654435761U + 1);
    std::string text = name;
    const std::size_t at = below(random, text.size());
    switch (random() % 4) {
    case 0:
        text[at] = static_cast<char>('A' + below(random, 20));
        break;
    case 1:
        text.erase(at, 1);
        break;
    case 2:
        text.insert(at, 1, static_cast<char>('A' + below(random, 20)));
        break;
    default:
        if (at + 1 < text.size()) {
            std::swap(text[at], text[at + 1]);
        }
        break;
    }
    return text;
}

} // namespace bench
