// Recognising layouts: by columns that must be digits, since a line may be shorter or longer than its layout.
#include "directory/Layout.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <regex>

#include "dbase/system/names.h"
#include "directory/FixedLine.h"

namespace ambrel::directory {
namespace {

struct NamedKind {
    FileKind kind;
    std::string_view prefix; // of file names
    const char* name;
};
constexpr std::array namedKinds = {NamedKind{FileKind::Stretches, "TRAM", "tramos"},
                                   NamedKind{FileKind::Streets, "VIAS", "vías"},
                                   NamedKind{FileKind::PseudoStreets, "PSEU", "seudovías"},
                                   NamedKind{FileKind::Units, "UP", "unidades de población"},
                                   NamedKind{FileKind::Sections, "SECC", "secciones"}};

constexpr std::array layouts = {Layout{FileKind::Stretches, false},     Layout{FileKind::Streets, true},
                                Layout{FileKind::Streets, false},       Layout{FileKind::PseudoStreets, true},
                                Layout{FileKind::PseudoStreets, false}, Layout{FileKind::Units, false},
                                Layout{FileKind::Sections, false}};

/// Where each layout has digits that no other has.
bool follows(const FixedLine& line, const Layout& layout) {
    switch (layout.kind) {
    case FileKind::Stretches:
        return line.hasDigits(1, 10) && line.hasDigits(14, 30) && line.hasDigits(43, 48);
    case FileKind::Streets:
        return line.hasDigits(1, 10) &&
               (layout.repeatsName ? line.hasDigits(48, 52) && !line.hasDigits(14, 20)
                                   : line.hasDigits(23, 27) && line.hasDigits(33, 33));
    case FileKind::PseudoStreets:
        return line.hasDigits(1, 10) &&
               (layout.repeatsName ? line.hasDigits(73, 77)
                                   : line.hasDigits(23, 27) && !line.hasDigits(33, 33));
    case FileKind::Units:
        return line.hasDigits(1, 12) && line.hasDigits(16, 23) && !line.hasDigits(25, 30);
    case FileKind::Sections:
        return line.hasDigits(1, 10) && line.text(12, 40).empty();
    }
    return false;
}

/// The last day of the half-year before an edition's month.
std::string referenceOf(const std::string& month, const std::string& year) {
    return month == "01" ? std::to_string(std::stoi(year) - 1) + "-12-31" : year + "-06-30";
}

} // namespace

const char* kindName(FileKind kind) { return std::ranges::find(namedKinds, kind, &NamedKind::kind)->name; }

std::optional<FileKind> kindOfName(std::string_view fileName) {
    const std::string upper = dbase::upperName(fileName.substr(fileName.rfind('/') + 1));
    for (const NamedKind& one : namedKinds) {
        const char after = upper.size() > one.prefix.size() ? upper[one.prefix.size()] : '.';
        if (upper.starts_with(one.prefix) &&
            (one.prefix != "UP" || std::isalpha(static_cast<unsigned char>(after)) == 0)) {
            return one.kind;
        }
    }
    return std::nullopt;
}

std::optional<Layout> recognise(std::string_view fileName, std::span<const std::string> lines) {
    const std::optional<FileKind> named = kindOfName(fileName);
    std::optional<Layout> best;
    std::size_t most = 0;
    for (const Layout& layout : layouts) {
        if (named && layout.kind != *named) {
            continue;
        }
        const auto count = static_cast<std::size_t>(std::ranges::count_if(
            lines, [&](const std::string& line) { return follows(FixedLine(line), layout); }));
        if (count > most && count * 2 >= lines.size()) {
            most = count;
            best = layout;
        }
    }
    return best;
}

std::string editionOfName(std::string_view fileName) {
    static const std::regex day(R"(\.[DF](\d\d)(0[1-9]|1[0-2])([0-3]\d)(?!\d))", std::regex::icase);
    static const std::regex publication(R"((?:^|[^0-9])(01|07)(20\d\d)(?!\d))");
    const std::string name(fileName);
    std::smatch match;
    if (std::regex_search(name, match, day)) {
        return "20" + match[1].str() + '-' + match[2].str() + '-' + match[3].str();
    }
    if (std::regex_search(name, match, publication)) {
        return referenceOf(match[1], match[2]);
    }
    return {};
}

} // namespace ambrel::directory
