// Names in the cadastre's form.
#include "tools/callejero/CadastreNames.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace callejero {
namespace {

constexpr std::size_t municipalityWidth = 30;
constexpr std::array<std::string_view, 14> articles{"A",   "AS",  "EL", "ELS", "ES", "L'", "LA",
                                                    "LAS", "LES", "LO", "LOS", "O",  "OS", "SA"};

std::string articleInFront(const std::string& name) {
    const std::size_t comma = name.rfind(", ");
    if (comma == std::string::npos) {
        return name;
    }
    const std::string article = name.substr(comma + 2);
    if (std::ranges::find(articles, article) == articles.end()) {
        return name;
    }
    return article + (article.back() == '\'' ? "" : " ") + name.substr(0, comma);
}

std::string withoutDieresis(std::string text) {
    constexpr std::string_view letter = "Ü";
    for (std::size_t at = text.find(letter); at != std::string::npos; at = text.find(letter, at)) {
        text.replace(at, letter.size(), "U");
    }
    return text;
}

} // namespace

std::string cutAt(std::string text, std::size_t characters) {
    const auto isFirstByte = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
    std::size_t end = 0;
    for (std::size_t left = characters; end < text.size(); ++end) {
        if (isFirstByte(text[end]) && left-- == 0) {
            break;
        }
    }
    text.resize(end);
    while (!text.empty() && text.back() == ' ') {
        text.pop_back();
    }
    return text;
}

std::string municipalityName(const std::string& name) {
    std::string result;
    std::size_t begin = 0;
    for (std::size_t slash = name.find('/'); slash != std::string::npos; slash = name.find('/', begin)) {
        result += articleInFront(name.substr(begin, slash - begin)) + '/';
        begin = slash + 1;
    }
    return cutAt(withoutDieresis(result + articleInFront(name.substr(begin))), municipalityWidth);
}

std::string provinceName(const std::string& name) {
    if (name == "STA. CRUZ DE TENERIFE") {
        return "S.C. TENERIFE"; // the only name that follows no rule and has dots
    }
    return articleInFront(withoutDieresis(name.substr(name.rfind('/') + 1)));
}

} // namespace callejero
