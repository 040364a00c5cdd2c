// The colours of desktops in which the forms are looked at.
#pragma once

#include <QColor>
#include <QPalette>
#include <string>
#include <vector>

namespace accessibility_tests {

struct Colours {
    const char* name;
    QColor window, base, text, button, highlight, highlightedText;
};

[[nodiscard]] const std::vector<Colours>& allColours();
[[nodiscard]] const Colours& colours(const std::string& name);
[[nodiscard]] QPalette paletteOf(const Colours& colours);

} // namespace accessibility_tests
