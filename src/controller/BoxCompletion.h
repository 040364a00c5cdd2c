// Between an edit box and the pure completion: reads text, caret and selection, and shows what came of it.
#pragma once

#include <optional>

#include "controller/Completion.h"

class QLineEdit;

namespace ambrel {

/// What the box holds; null when Windows-1252 cannot hold its text.
[[nodiscard]] std::optional<EditedText> editedText(const QLineEdit& box);

/// Shows a completion and sets the Tag to its code. Without one the text stays as it is and the Tag becomes
/// 0.
void showCompletion(QLineEdit& box, const std::optional<NamedCompletion>& completion);

} // namespace ambrel
