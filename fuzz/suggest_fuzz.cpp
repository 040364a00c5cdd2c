// Any bytes as names and as what is typed for them: folded, read and compared; and as word lists.
#include <stdexcept>

#include "Trial.h"
#include "suggest/Folding.h"
#include "suggest/Marks.h"
#include "suggest/NameMatch.h"
#include "suggest/WordLists.h"

namespace {

using namespace ambrel::suggest;

/// Names that a column can hold, and no longer than those that are compared whole.
bool isComparedWhole(std::string_view name, const std::vector<NameWord>& words) {
    return name.size() <= 60 && !words.empty() && words.size() <= 12;
}

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty() && lines.size() < 24) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

void requireWordsOf(std::string_view name, const std::vector<NameWord>& words) {
    for (const NameWord& word : words) {
        trial::require(!word.text.empty() && word.begin + word.length <= name.size());
    }
}

/// What is typed, compared with the names; `same`: the number of the name that it is, or of none.
void compare(const NameView& view, std::string_view typed, NameNumber same) {
    const TypedStreet street = readStreet(typed);
    requireWordsOf(typed, street.words);
    trial::require(street.words.empty() || !street.readings.empty());
    for (const TypedStreet::Reading& reading : street.readings) {
        trial::require(reading.first < reading.last || street.words.empty());
        trial::require(reading.last <= street.words.size() && typed.find(reading.number) != typed.npos);
    }
    if (street.words.empty()) {
        return;
    }
    bool isFound = false;
    for (const NameMatch& match : matchNames(view, {street.words, street.readings}, 0.5)) {
        trial::require(match.points >= 0.5 && match.points <= 1);
        trial::require(match.name < view.pool().nameCount() && match.reading < street.readings.size());
        isFound = isFound || (match.name == same && match.points > 0.9);
        for (const auto& [first, length] : matchingLetters(view.pool().stored(match.name), typed)) {
            trial::require(first + length <= view.pool().stored(match.name).size());
        }
    }
    trial::require(isFound || same == view.pool().nameCount() || !isComparedWhole(typed, street.words));
}

void readLists(std::string_view text) {
    try {
        const WordLists lists(text);
        trial::require(lists.find("SANTA") == lists.find("SANTA"));
    } catch (const std::invalid_argument&) { // names the line
    }
}

} // namespace

/// Each line is a name; each is typed as well, and the last one is only typed.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    readLists(text);
    const std::vector<std::string_view> lines = linesOf(text);
    if (lines.empty()) {
        return 0;
    }
    NamePool pool;
    std::vector<NameNumber> names;
    for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
        requireWordsOf(lines[i], foldName(lines[i]));
        names.push_back(pool.add(lines[i]));
    }
    pool.finish();
    const NameView view(pool, names);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        compare(view, lines[i], static_cast<NameNumber>(i));
    }
    return 0;
}
