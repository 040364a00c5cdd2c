// Texts of a form that are not shown completely.
#pragma once

#include <QWidget>
#include <string>
#include <vector>

namespace accessibility_tests {

/// A sentence for each text that has too little room where it is shown now: labels, buttons, frames, boxes,
/// titles and cells of grids, and the hints, each of which must fit into the status bar.
[[nodiscard]] std::vector<std::string> cutTexts(const QWidget& window);

} // namespace accessibility_tests
