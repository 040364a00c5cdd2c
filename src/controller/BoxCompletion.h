// Connects an edit box to the pure completion: reads text, caret and selection, and shows the result.
#pragma once

#include <optional>

#include "controller/Completion.h"

class QLineEdit;

namespace ambrel {

/// The box's contents; null if Windows-1252 cannot hold its text.
[[nodiscard]] std::optional<EditedText> editedText(const QLineEdit& box);

/// Shows a completion and sets the Tag to its code. Without one, keeps the text and sets the Tag to 0.
void showCompletion(QLineEdit& box, const std::optional<NamedCompletion>& completion);

} // namespace ambrel
