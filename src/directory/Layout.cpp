// Recognising layouts: by columns that must be digits, since a line may be shorter or longer than its layout.
#include "directory/Layout.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string>
#include <vector>

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

/// Six digits of a name that are no part of more, and the text before them.
struct SixDigits {
    std::string before, digits;
};

std::vector<SixDigits> sixDigitsOf(std::string_view name) {
    static constexpr std::string_view digits = "0123456789";
    std::vector<SixDigits> runs;
    for (std::size_t begin = name.find_first_of(digits); begin != std::string_view::npos;) {
        const std::size_t end = std::min(name.find_first_not_of(digits, begin), name.size());
        if (end - begin == 6) {
            runs.push_back({std::string(name.substr(0, begin)), std::string(name.substr(begin, 6))});
        }
        begin = name.find_first_of(digits, end);
    }
    return runs;
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
    const std::vector<SixDigits> runs = sixDigitsOf(dbase::upperName(fileName));
    for (const SixDigits& run : runs) { // a day: ".D260630"
        const std::string month = run.digits.substr(2, 2);
        const bool isDay = month >= "01" && month <= "12" && run.digits[4] <= '3';
        if (isDay && (run.before.ends_with(".D") || run.before.ends_with(".F"))) {
            return "20" + run.digits.substr(0, 2) + '-' + month + '-' + run.digits.substr(4);
        }
    }
    for (const SixDigits& run : runs) { // a month of publication: "072026"
        const std::string month = run.digits.substr(0, 2), year = run.digits.substr(2);
        if ((month == "01" || month == "07") && year.starts_with("20")) {
            return referenceOf(month, year);
        }
    }
    return {};
}

} // namespace ambrel::directory
