// Puts values at the columns that the layouts give them.
#include "tools/edition/OfficialLines.h"

#include <algorithm>
#include <string_view>

namespace edition {
namespace {

class Line {
public:
    explicit Line(std::size_t width) : text_(width, ' ') {}

    /// Columns count from 1; a longer text is cut.
    Line& text(std::size_t first, std::size_t last, std::string_view value) {
        std::ranges::copy(value.substr(0, last - first + 1),
                          text_.begin() + static_cast<std::ptrdiff_t>(first - 1));
        return *this;
    }
    Line& number(std::size_t first, std::size_t last, std::uint32_t value) {
        for (std::size_t column = last; column >= first; --column, value /= 10) {
            text_[column - 1] = static_cast<char>('0' + value % 10);
        }
        return *this;
    }
    [[nodiscard]] std::string take() { return std::move(text_); }

private:
    std::string text_;
};

constexpr std::string_view dateOfChange = "20190630";

// The key stands twice in a line; in the layout of stretches the second one begins here.
void putNumbers(Line& line, std::size_t numbering, const StretchText& stretch) {
    const bool hasNone = stretch.numbering == '0';
    line.text(numbering, numbering, std::string(1, stretch.numbering))
        .number(numbering + 1, numbering + 4, stretch.first)
        .text(numbering + 5, numbering + 5, std::string(1, hasNone ? 'S' : stretch.firstLetter))
        .number(numbering + 6, numbering + 9, stretch.last)
        .text(numbering + 10, numbering + 10, std::string(1, hasNone ? 'S' : stretch.lastLetter));
}

} // namespace

std::string lineOf(const StretchText& stretch) {
    Line line(273);
    line.number(1, 5, stretch.place).number(6, 7, 1).number(8, 10, stretch.section);
    line.number(14, 20, stretch.unit).number(21, 25, stretch.street).number(26, 30, stretch.pseudo);
    line.number(43, 47, stretch.postalCode).text(62, 69, dateOfChange);
    putNumbers(line, 48, stretch);
    line.number(71, 72, 1).number(73, 75, stretch.section).number(79, 85, stretch.unit);
    line.text(111, 135, stretch.entity).text(136, 160, stretch.nucleus);
    line.number(161, 165, stretch.street).text(166, 190, stretch.streetName);
    line.number(191, 195, stretch.pseudo).text(196, 245, stretch.pseudoName);
    line.number(258, 262, stretch.postalCode);
    putNumbers(line, 263, stretch);
    return line.take();
}

std::string streetLine(std::uint32_t place, std::uint32_t street, const std::string& type,
                       const std::string& name, bool repeatsName) {
    Line line(repeatsName ? 132 : 108);
    line.number(1, 5, place).number(6, 10, street);
    if (repeatsName) {
        line.text(11, 35, name).text(39, 46, dateOfChange).number(48, 52, street);
        line.text(53, 57, type).text(58, 107, name).text(108, 132, name);
    } else {
        line.text(14, 21, dateOfChange).number(23, 27, street).text(28, 32, type).number(33, 33, 0);
        line.text(34, 83, name).text(84, 108, name);
    }
    return line.take();
}

std::string pseudoLine(std::uint32_t place, std::uint32_t pseudo, const std::string& name, bool repeatsName) {
    Line line(repeatsName ? 127 : 77);
    line.number(1, 5, place).number(6, 10, pseudo);
    if (repeatsName) {
        line.text(11, 60, name).text(64, 71, dateOfChange).number(73, 77, pseudo).text(78, 127, name);
    } else {
        line.text(14, 21, dateOfChange).number(23, 27, pseudo).text(28, 77, name);
    }
    return line.take();
}

std::string unitLine(std::uint32_t place, std::uint32_t unit, const std::string& municipality,
                     const std::string& entity, const std::string& nucleus) {
    Line line(604);
    line.number(1, 5, place).number(6, 12, unit).text(16, 23, dateOfChange);
    line.text(25, 94, municipality).text(95, 144, municipality).text(145, 169, municipality);
    line.text(315, 384, entity).text(385, 434, entity).text(435, 459, entity);
    line.text(460, 529, nucleus).text(530, 579, nucleus).text(580, 604, nucleus);
    return line.take();
}

} // namespace edition
