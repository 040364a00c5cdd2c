// Light, dark, high-contrast and grey desktops.
#include "accessibility/Colours.h"

#include <algorithm>

namespace accessibility_tests {

const std::vector<Colours>& allColours() {
    static const std::vector<Colours> all{
        {"Claros", {239, 239, 239}, Qt::white, Qt::black, {239, 239, 239}, {30, 100, 170}, Qt::white},
        {"Oscuros", {53, 53, 53}, {35, 35, 35}, {230, 230, 230}, {53, 53, 53}, {42, 130, 218}, Qt::black},
        {"ContrasteNegro", Qt::black, Qt::black, Qt::yellow, Qt::black, Qt::cyan, Qt::black},
        {"ContrasteBlanco", Qt::white, Qt::white, Qt::black, Qt::white, {55, 0, 110}, Qt::white},
        {"GrisConNegro", {150, 150, 150}, {122, 122, 122}, Qt::black, {150, 150, 150}, Qt::black, Qt::white},
        {"GrisConBlanco",
         {100, 100, 100},
         {110, 110, 110},
         Qt::white,
         {100, 100, 100},
         Qt::white,
         Qt::black}};
    return all;
}

const Colours& colours(const std::string& name) {
    return *std::ranges::find(allColours(), name, [](const Colours& one) { return std::string(one.name); });
}

QPalette paletteOf(const Colours& colours) {
    QPalette palette(colours.button, colours.window);
    palette.setColor(QPalette::Base, colours.base);
    palette.setColor(QPalette::AlternateBase, colours.base);
    palette.setColor(QPalette::Highlight, colours.highlight);
    palette.setColor(QPalette::HighlightedText, colours.highlightedText);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, colours.text);
    }
    return palette;
}

} // namespace accessibility_tests
