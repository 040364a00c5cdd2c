// Blanks and capitals of typed texts.
#include "address/TidyText.h"

#include "services/Rnumcad.h"

namespace ambrel {

std::string tidied(std::string_view text) {
    constexpr std::string_view blanks = " \t\n\v\f\r\xA0";
    std::string tidy;
    for (const char c : UpperCase(text)) {
        const bool isBlank = blanks.find(c) != std::string_view::npos;
        if (!isBlank) {
            tidy += c;
        } else if (!tidy.empty() && tidy.back() != ' ') {
            tidy += ' ';
        }
    }
    if (!tidy.empty() && tidy.back() == ' ') {
        tidy.pop_back();
    }
    return tidy;
}

} // namespace ambrel
