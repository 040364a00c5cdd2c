// Shortening names by the word lists.
#include "suggest/Abbreviation.h"

#include "suggest/WordLists.h"

namespace ambrel::suggest {

std::string abbreviated(std::string_view name, std::size_t width) {
    const WordLists& lists = WordLists::builtIn();
    std::string text(name);
    std::size_t end = text.size();
    while (text.size() > width && end > 0) {
        const std::size_t blank = text.rfind(' ', end - 1);
        const std::size_t begin = blank == std::string::npos ? 0 : blank + 1;
        const std::string_view shorter = lists.shortFormOf(std::string_view(text).substr(begin, end - begin));
        if (!shorter.empty()) {
            text.replace(begin, end - begin, shorter);
        }
        end = blank == std::string::npos ? 0 : blank;
    }
    return text;
}

} // namespace ambrel::suggest
