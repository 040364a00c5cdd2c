// Recognising provinces.
#include "suggest/ProvinceText.h"

#include <algorithm>

#include "data/Province.h"
#include "dbase/dataset/dataset.h"
#include "dbase/dataset/row_walk.h"
#include "dbase/system/error.h"
#include "dbase/system/trim.h"
#include "suggest/Folding.h"
#include "suggest/Letters.h"

namespace ambrel::suggest {
namespace {

constexpr std::size_t nameWidth = 21;

/// The words that count, in an order of their own: "Illes Balears" and "Balears, Illes".
std::string lettersOf(std::string_view name) {
    std::vector<std::string> words;
    for (const NameWord& word : foldName(name)) {
        if (counts(word.role)) {
            words.push_back(word.text);
        }
    }
    std::ranges::sort(words);
    std::string letters;
    for (const std::string& word : words) {
        letters += word;
    }
    return letters;
}

template<class Use>
void forEachLanguage(std::string_view name, Use use) {
    use(name);
    const std::size_t slash = name.find('/');
    if (slash != std::string_view::npos) {
        use(name.substr(0, slash));
        use(name.substr(slash + 1));
    }
}

template<class Names>
std::string find(const Names& names, std::string_view letters) {
    const auto found = std::ranges::find_if(names, [&](const auto& name) { return name.first == letters; });
    return found == names.end() ? std::string() : found->second;
}

} // namespace

void ProvinceText::prepare() {
    if (isRead_) {
        return;
    }
    if (names_.empty()) {
        for (const auto& [name, digits] : WordLists::builtIn().provinces()) {
            names_.emplace_back(lettersOf(name), digits);
        }
    }
    try {
        readTable();
        isRead_ = true;
    } catch (const dbase::Error&) {
        // The lists know the provinces, too, until the next try.
    }
}

void ProvinceText::readTable() {
    dbase::Dataset table(database_, "PROVIN");
    const dbase::Field& name = table.bindCharacter("PROVINCIA", nameWidth);
    const dbase::Field& code = table.bindCharacter("CODIGO", 3);
    const dbase::Field& group = table.bindInteger("GRUPO");
    table.open();
    Names names, cut, shown;
    dbase::forEachRow(table, [&] {
        if (group.integer() != provinceGroup || code.view().size() != 3 || code.view().front() != '0') {
            return;
        }
        const std::string digits(code.view().substr(1));
        shown.emplace_back(digits, name.text());
        forEachLanguage(name.view(),
                        [&](std::string_view one) { names.emplace_back(lettersOf(one), digits); });
        if (name.view().size() == nameWidth) {
            cut.emplace_back(foldLetters(name.view()), digits);
        }
    });
    names_.insert(names_.end(), names.begin(), names.end());
    cut_ = std::move(cut);
    shown_ = std::move(shown);
}

std::string ProvinceText::digitsOf(const std::string& text) {
    prepare();
    const std::string typed(dbase::trimmedLine(text));
    if (!typed.empty() && typed.size() <= 3 && std::ranges::all_of(typed, isDigit)) {
        const std::string digits = typed.size() == 3   ? typed.substr(1)
                                   : typed.size() == 1 ? "0" + typed
                                                       : typed;
        const bool isKnown =
            std::ranges::any_of(names_, [&](const auto& name) { return name.second == digits; });
        return isKnown && (typed.size() < 3 || typed.front() == '0') ? digits : std::string();
    }
    std::string found;
    forEachLanguage(typed, [&](std::string_view one) {
        const std::string letters = lettersOf(one);
        if (found.empty() && !letters.empty()) {
            found = find(names_, letters);
            for (const auto& [beginning, digits] : cut_) {
                if (found.empty() && foldLetters(one).starts_with(beginning)) {
                    found = digits;
                }
            }
            const std::string sound = soundOf(letters);
            for (const auto& [name, digits] : names_) {
                if (found.empty() && soundOf(name) == sound) {
                    found = digits;
                }
            }
        }
    });
    return found;
}

std::string ProvinceText::nameOf(const std::string& digits) {
    prepare();
    return find(shown_, digits);
}

} // namespace ambrel::suggest
