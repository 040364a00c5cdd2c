// Marking the letters that match.
#include "suggest/Marks.h"

#include <algorithm>
#include <string>

#include "suggest/Folding.h"
#include "suggest/Letters.h"
#include "suggest/SlipCount.h"

namespace ambrel::suggest {
namespace {

/// Which letters of `word` belong to a longest common subsequence with `typed`.
std::vector<bool> commonLetters(std::string_view word, std::string_view typed) {
    std::vector<std::vector<unsigned>> length(word.size() + 1, std::vector<unsigned>(typed.size() + 1));
    for (std::size_t i = word.size(); i-- > 0;) {
        for (std::size_t j = typed.size(); j-- > 0;) {
            length[i][j] =
                word[i] == typed[j] ? length[i + 1][j + 1] + 1 : std::max(length[i + 1][j], length[i][j + 1]);
        }
    }
    std::vector<bool> common(word.size());
    for (std::size_t i = 0, j = 0; i < word.size() && j < typed.size();) {
        if (word[i] == typed[j]) {
            common[i++] = true;
            ++j;
        } else if (length[i + 1][j] >= length[i][j + 1]) {
            ++i;
        } else {
            ++j;
        }
    }
    return common;
}

/// The typed word that a word of the name is most likely to be; null if it is none of them.
const NameWord* counterpart(const NameWord& word, const std::vector<NameWord>& typed) {
    const NameWord* best = nullptr;
    unsigned fewest = ~0U;
    for (const NameWord& one : typed) {
        const SlipCount::Found found = SlipCount(one.text).to(word.text);
        const unsigned slips =
            one.number != 0 && one.number == word.number ? 0 : std::min(found.whole, found.beginning);
        if (slips * 2 < one.text.size() && slips * 3 <= std::max<std::size_t>(one.text.size(), 3) &&
            slips < fewest) {
            best = &one;
            fewest = slips;
        }
    }
    return best;
}

} // namespace

std::vector<std::pair<std::size_t, std::size_t>> matchingLetters(std::string_view name,
                                                                 std::string_view typed) {
    const std::vector<NameWord> typedWords = foldName(typed);
    std::vector<bool> isMarked(name.size());
    for (const NameWord& word : foldName(name)) {
        const NameWord* const other = counterpart(word, typedWords);
        if (other == nullptr) {
            continue;
        }
        const bool isWritten =
            other->literal == other->text && word.literal == word.text && other->number == 0;
        const std::vector<bool> common =
            isWritten ? commonLetters(word.literal, other->literal) : std::vector<bool>(word.length, true);
        std::size_t letter = 0;
        for (std::size_t i = word.begin; i < word.begin + word.length; ++i) {
            const char folded = foldedLetter(name[i]);
            if (folded != 0 && folded != dropped && letter < common.size()) {
                isMarked[i] = common[letter++];
            }
        }
    }
    std::vector<std::pair<std::size_t, std::size_t>> runs;
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (!isMarked[i]) {
            continue;
        }
        if (!runs.empty() && runs.back().first + runs.back().second == i) {
            ++runs.back().second;
        } else {
            runs.emplace_back(i, 1);
        }
    }
    return runs;
}

} // namespace ambrel::suggest
