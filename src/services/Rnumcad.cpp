// Texts and numbers.
#include "services/Rnumcad.h"

#include <algorithm>
#include <charconv>

#include "dbase/dbf/codepage.h"
#include "dbase/system/trim.h"

namespace {

/// Number of characters to take out of `available` when n are requested.
std::size_t taken(int n, std::size_t available) {
    return n <= 0 ? 0 : std::min(static_cast<std::size_t>(n), available);
}

} // namespace

std::string Espacios(std::string_view text, int width) {
    std::string result(text);
    if (width > 0) {
        result.resize(static_cast<std::size_t>(width), ' ');
    }
    return result;
}

std::string StrLeft(std::string_view text, int n) {
    return std::string(text.substr(0, taken(n, text.size())));
}

std::string StrRight(std::string_view text, int n) {
    return std::string(text.substr(text.size() - taken(n, text.size())));
}

std::string UpperCase(std::string_view text) {
    const dbase::CodePage& page = dbase::CodePage::windows1252();
    std::string result(text);
    std::ranges::transform(result, result.begin(), [&page](char c) {
        return static_cast<char>(page.upper(static_cast<unsigned char>(c)));
    });
    return result;
}

std::string Int_Cad(int number) { return std::to_string(number); }

int Cad_Int(std::string_view text) {
    std::string_view digits = ambrel::withoutBlanks(text);
    if (digits.size() > 1 && digits.front() == '+' && digits[1] != '-') {
        digits.remove_prefix(1);
    }
    int number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [rest, error] = std::from_chars(digits.data(), end, number);
    return error == std::errc() && rest == end ? number : 0;
}

namespace ambrel {

std::string_view withoutBlanks(std::string_view text) { return dbase::trimmed(text, dbase::isBlank); }

bool isAlphanumeric(unsigned char character) {
    return (character >= '0' && character <= '9') || dbase::CodePage::windows1252().isLetter(character);
}

} // namespace ambrel
