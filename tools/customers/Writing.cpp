// Writing names as people do.
#include "tools/customers/Writing.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "dbase/dbf/codepage.h"

namespace customers {

using invented::Dice;

namespace {

using Words = std::vector<std::string>;

Words wordsOf(std::string_view name) {
    Words words;
    while (!name.empty()) {
        const std::size_t end = std::min(name.find(' '), name.size());
        words.emplace_back(name.substr(0, end));
        name.remove_prefix(std::min(end + 1, name.size()));
    }
    return words;
}

std::string joined(const Words& words) {
    std::string name;
    for (const std::string& word : words) {
        name += (name.empty() ? "" : " ") + word;
    }
    return name;
}

/// The sample has no other letters than these beside ASCII.
constexpr std::array<std::pair<std::string_view, std::string_view>, 3> capitals{
    {{"Ñ", "ñ"}, {"Ç", "ç"}, {"Ü", "ü"}}};

bool isSmallWord(const std::string& word) {
    static const Words small{"A", "AL", "DE", "DEL", "EL", "EN", "LA", "LAS", "LOS", "Y"};
    return std::ranges::find(small, word) != small.end();
}

bool isLetter(char c) { return c >= 'A' && c <= 'Z'; }

} // namespace

std::string lowered(std::string_view name) {
    std::string small(name);
    for (const auto& [capital, letter] : capitals) {
        for (std::size_t at = small.find(capital); at != std::string::npos; at = small.find(capital, at)) {
            small.replace(at, capital.size(), letter);
        }
    }
    std::ranges::transform(small, small.begin(),
                           [](char c) { return isLetter(c) ? static_cast<char>(c - 'A' + 'a') : c; });
    return small;
}

std::string titled(std::string_view name) {
    Words words = wordsOf(name);
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string small = lowered(words[i]);
        words[i] = i > 0 && isSmallWord(words[i]) ? small : words[i].substr(0, 1) + small.substr(1);
        if (static_cast<unsigned char>(words[i][0]) >= 0x80) {
            words[i] = small; // whose first letter has two bytes
        }
    }
    return joined(words);
}

std::string mistyped(std::string_view name, Dice& dice) {
    std::string typed(name);
    std::vector<std::size_t> places;
    for (std::size_t i = 1; i < name.size(); ++i) {
        if (isLetter(name[i])) {
            places.push_back(i);
        }
    }
    if (places.empty()) {
        return typed;
    }
    const std::size_t at = dice.among(places);
    const char letter = "AEIOLRSNTD"[dice.roll(10)];
    switch (dice.roll(4)) {
    case 0:
        typed[at] = letter == typed[at] ? 'B' : letter;
        break;
    case 1:
        typed.erase(at, 1);
        break;
    case 2:
        typed.insert(at, 1, letter);
        break;
    default:
        if (at + 1 < typed.size() && isLetter(typed[at + 1]) && typed[at] != typed[at + 1]) {
            std::swap(typed[at], typed[at + 1]);
        } else {
            typed.insert(at, 1, typed[at]);
        }
    }
    return typed;
}

std::string shortened(std::string_view name) {
    static constexpr std::array<std::pair<std::string_view, std::string_view>, 14> forms{
        {{"SANTA", "STA."},
         {"SANTO", "STO."},
         {"SAN", "S."},
         {"DOCTOR", "DR."},
         {"GENERAL", "GRAL."},
         {"NUESTRA", "NTRA."},
         {"SEÑORA", "SRA."},
         {"MARIA", "Mª"},
         {"FRANCISCO", "FCO."},
         {"HERMANOS", "HNOS."},
         {"MARQUES", "MARQ."},
         {"PROFESOR", "PROF."},
         {"VIRGEN", "VIRG."},
         {"DOS", "2"}}};
    Words words = wordsOf(name);
    for (std::string& word : words) {
        const auto form =
            std::ranges::find(forms, std::string_view(word), [](const auto& one) { return one.first; });
        if (form != forms.end() && words.size() > 1) {
            word = form->second;
        }
    }
    return joined(words);
}

std::string typeWord(std::string_view code, Dice& dice) {
    static const std::vector<std::pair<std::string_view, Words>> ways{{"CL", {"C/", "Calle", "CALLE", "c."}},
                                                                      {"AV", {"Avda.", "Av.", "Avenida"}},
                                                                      {"PZ", {"Pza.", "Plaza", "Plza."}},
                                                                      {"PS", {"Pº", "Paseo"}},
                                                                      {"RD", {"Ronda"}},
                                                                      {"CR", {"Ctra.", "Carretera"}},
                                                                      {"GV", {"Gran Vía"}},
                                                                      {"CM", {"Camino", "Cno."}},
                                                                      {"RB", {"Rambla"}},
                                                                      {"GL", {"Glorieta"}},
                                                                      {"PJ", {"Pasaje"}},
                                                                      {"TR", {"Travesía"}},
                                                                      {"CT", {"Cuesta"}},
                                                                      {"VI", {"Vía"}},
                                                                      {"ML", {"Muelle"}},
                                                                      {"AN", {"Andador"}},
                                                                      {"AL", {"Alameda"}},
                                                                      {"PL", {"Polígono"}}};
    const auto way = std::ranges::find(ways, code, [](const auto& one) { return one.first; });
    return way == ways.end() ? std::string(code) : dice.among(way->second);
}

std::string spokenTown(std::string_view name, Dice& dice) {
    std::string town(name);
    if (const std::size_t slash = town.find('/'); slash != std::string::npos) {
        town = dice.oneIn(2) ? town.substr(0, slash) : town.substr(slash + 1);
    }
    if (const std::size_t comma = town.find(", "); comma != std::string::npos) {
        const std::string article = town.substr(comma + 2);
        town = article + (article.ends_with('\'') ? "" : " ") + town.substr(0, comma);
    }
    return town;
}

} // namespace customers
