// What holds for the readings of any text: nothing is dropped, and there are few.
#include <algorithm>
#include <array>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "address/AddressLine.h"
#include "dbase/dbf/codepage.h"
#include "suggest/Letters.h"
#include "support/Seed.h"
#include "support/Tables.h"

namespace {

using ambrel::AddressParts;
using ambrel::suggest::isDigit;

/// Words that say what another word is, and that a reading may leave out when it has understood them.
const std::set<std::string>& marks() {
    static const std::set<std::string> words{"N",    "NO",     "NUM",    "NUMS", "NUMERO", "NRO", "ZK",
                                             "ZENB", "KM",     "KMS",    "KMT",  "SNUM",   "PK",  "QM",
                                             "S",    "SN",     "SNO",    "SIN",  "CP",     "DP",  "E",
                                             "ES",   "CODIGO", "POSTAL", "Y",    "I",      "A",   "AL"};
    return words;
}

/// The letters and digits of a text, by how often they stand in it.
std::map<char, int> lettersOf(std::string_view text) {
    std::map<char, int> counts;
    for (const char letter : ambrel::suggest::foldLetters(text)) {
        ++counts[letter];
    }
    return counts;
}

std::string joined(const AddressParts& parts) {
    std::string all;
    for (const std::string* const part :
         {&parts.type, &parts.street, &parts.number, &parts.numberSuffix, &parts.numberEnd, &parts.floor,
          &parts.rest, &parts.postalCode, &parts.municipality, &parts.province}) {
        all += *part + ' ';
    }
    return all;
}

std::string utf8(const std::string& text) { return dbase::CodePage::windows1252().toUtf8(text); }

/// The words of a text, split as simply as possible: runs of letters and runs of digits.
std::vector<std::string> wordsOf(const std::string& text) {
    std::vector<std::string> words;
    std::string word;
    for (const char c : text + ' ') {
        const auto byte = static_cast<unsigned char>(c);
        const bool isSign = byte == 0xBA || byte == 0xAA; // "nº", "1ºE-28009"
        const char letter = isSign ? '\0' : ambrel::suggest::foldedLetter(c);
        const bool isLetter = letter != 0 && letter != ambrel::suggest::dropped;
        const bool goesOn = isLetter && !word.empty() && isDigit(word.back()) == isDigit(letter);
        if (!goesOn && !word.empty()) {
            words.push_back(std::exchange(word, {}));
        }
        word.append(isLetter ? 1 : 0, letter);
    }
    return words;
}

/// The words of a text that are in no mark, whether it is one word or written with dots: "P.K.", "s/num",
/// "nº".
std::string withoutMarks(const std::string& text) {
    constexpr std::size_t longestMark = 3; // words
    const std::vector<std::string> words = wordsOf(text);
    std::vector<bool> isOfMark(words.size());
    for (std::size_t first = 0; first < words.size(); ++first) {
        std::string mark;
        for (std::size_t next = first; next < std::min(first + longestMark, words.size()); ++next) {
            mark += words[next];
            if (marks().contains(mark)) {
                std::fill(isOfMark.begin() + std::ptrdiff_t(first),
                          isOfMark.begin() + std::ptrdiff_t(next) + 1, true);
            }
        }
    }
    std::string kept;
    for (std::size_t i = 0; i < words.size(); ++i) {
        kept += isOfMark[i] ? "" : words[i];
    }
    return kept;
}

void expectNothingDropped(const std::string& text, const AddressParts& parts) {
    const std::map<char, int> there = lettersOf(joined(parts));
    for (const auto& [letter, count] : lettersOf(withoutMarks(text))) {
        const auto found = there.find(letter);
        EXPECT_GE(found == there.end() ? 0 : found->second, count)
            << letter << " of " << utf8(text) << " in " << utf8(joined(parts));
    }
}

/// An address of words that mean something to the reader, in any order.
std::string anyLine(std::mt19937& random) {
    static constexpr std::array<const char*, 64> words{"Calle",  "C/",
                                                       "Avda.",  "Plaza",
                                                       "Mayor",  "de",
                                                       "la",     "Constitución",
                                                       "12",     "5",
                                                       "3º",     "B",
                                                       "28009",  "Madrid",
                                                       "Getafe", "(",
                                                       ")",      ",",
                                                       ";",      "-",
                                                       "/",      "s/n",
                                                       "nº",     "km",
                                                       "12,5",   "bis",
                                                       "portal", "bajo",
                                                       "izda.",  "Urb.",
                                                       "Pol.",   "Ind.",
                                                       "kalea",  "Carrer",
                                                       "2n",     "1a",
                                                       "A",      "Coruña",
                                                       "Las",    "Palmas",
                                                       "Mayo",   "1º",
                                                       "\n",     "\t",
                                                       "España", "Apdo.",
                                                       "8001",   "E-28009",
                                                       "CP",     "Edificio",
                                                       "frente", "5-7",
                                                       "12B",    "al",
                                                       "y",      "Gran",
                                                       "Vía",    "L'Hospitalet",
                                                       "Dos",    "Torres",
                                                       "Illes",  "Balears",
                                                       "XXIII",  "Alcalá de Henares"};
    std::string line;
    const auto count = std::uniform_int_distribution<std::size_t>(1, 14)(random);
    for (std::size_t i = 0; i < count; ++i) {
        line += words[std::uniform_int_distribution<std::size_t>(0, words.size() - 1)(random)];
        line += random() % 5 == 0 ? "" : " ";
    }
    return ambrel::test::ansi(line.c_str());
}

std::string anyBytes(std::mt19937& random) {
    std::string text(std::uniform_int_distribution<std::size_t>(0, 60)(random), ' ');
    std::ranges::generate(text, [&] { return static_cast<char>(random()); });
    return text;
}

class AddressLinePropertiesTest : public testing::Test {
protected:
    const unsigned seed_ = ambrel::test::seedOfThisRun();
    std::mt19937 random_{seed_};
};

TEST_F(AddressLinePropertiesTest, MarksMayBeWrittenWithDots) {
    for (const char* const text :
         {"Carretera de Burgos P.K. 4", "Carretera de Burgos pk 4", "Calle Mayor s/n.o"}) {
        for (const AddressParts& parts : ambrel::readAddressLine(text)) {
            expectNothingDropped(text, parts);
        }
    }
}

TEST_F(AddressLinePropertiesTest, NothingIsDroppedByAnyReading) {
    for (int i = 0; i < 20'000 && !HasFailure(); ++i) {
        const std::string text = i % 4 == 0 ? anyBytes(random_) : anyLine(random_);
        for (const AddressParts& parts : ambrel::readAddressLine(text)) {
            expectNothingDropped(text, parts);
        }
        for (const AddressParts& parts : ambrel::readStreetText(text)) {
            expectNothingDropped(text, parts);
        }
        expectNothingDropped(text, ambrel::readNumberText(text));
    }
}

TEST_F(AddressLinePropertiesTest, ThereAreFewReadingsAndEachOnce) {
    for (int i = 0; i < 20'000; ++i) {
        const std::vector<AddressParts> readings = ambrel::readAddressLine(anyLine(random_));
        ASSERT_GE(readings.size(), 1U);
        ASSERT_LE(readings.size(), 12U);
        for (std::size_t one = 0; one < readings.size(); ++one) {
            EXPECT_EQ(std::ranges::count(readings, readings[one]), 1);
        }
    }
}

TEST_F(AddressLinePropertiesTest, AStreetsColumnNamesNoTown) {
    for (int i = 0; i < 5'000; ++i) {
        for (const AddressParts& parts : ambrel::readStreetText(anyLine(random_))) {
            EXPECT_EQ(parts.municipality + parts.province + parts.postalCode, "");
        }
    }
}

TEST_F(AddressLinePropertiesTest, AVeryLongLineIsReadAsWell) {
    for (const char* const piece :
         {"Calle Mayor 5 ", "5 ", "a", "(", "C/ ", "12-", "S/N ", "28009 ", "de la ", ", 3"}) {
        std::string line;
        while (line.size() < 10'000) {
            line += piece;
        }
        const std::vector<AddressParts> readings = ambrel::readAddressLine(line);
        expectNothingDropped(line, readings.front());
        EXPECT_LE(readings.size(), 12U);
    }
}

} // namespace
