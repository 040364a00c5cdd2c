// The style sheet that every page carries (style.css).
#pragma once

#include <string_view>

namespace report {

/// Without the signs that XML would escape: a browser reads the text of <style> as it stands.
[[nodiscard]] std::string_view styleSheet();

} // namespace report
