// Completion in an edit box.
#include "controller/BoxCompletion.h"

#include <QLineEdit>

#include "services/TagProperty.h"
#include "services/Text.h"

namespace ambrel {
namespace {

/// Completes the box's text to one that begins with it. The missing tail is inserted as an undo step of its
/// own, so that undoing it restores what was typed.
void insertTail(QLineEdit& box, const QString& text) {
    const auto typed = box.text().size();
    if (text.size() == typed) {
        return;
    }
    box.setCursorPosition(0); // moving the caret ends the undo step of the typed letters
    box.setCursorPosition(static_cast<int>(typed));
    box.insert(text.mid(typed));
}

} // namespace

std::optional<EditedText> editedText(const QLineEdit& box) {
    const auto text = toWindows1252(box.text());
    if (!text) {
        return std::nullopt;
    }
    // One byte is one character here, so positions are the same on both sides.
    const auto start = static_cast<std::size_t>(box.hasSelectedText() ? box.selectionStart() : 0);
    return EditedText{.text = *text,
                      .caret = static_cast<std::size_t>(box.cursorPosition()),
                      .selectionStart = start,
                      .selectionLength = static_cast<std::size_t>(box.selectionLength())};
}

void showCompletion(QLineEdit& box, const std::optional<NamedCompletion>& completion) {
    if (completion) {
        insertTail(box, fromWindows1252(completion->box.text));
        // Selected backwards from its end, so that the caret stays before the completed tail.
        const int end = static_cast<int>(completion->box.text.size());
        if (const int length = static_cast<int>(completion->box.selectionLength); length > 0) {
            box.setSelection(end, -length);
        } else {
            box.setCursorPosition(end);
        }
    }
    setTag(box, completion ? completion->code : 0); // after the text: hosts react to its change with a 0
}

} // namespace ambrel
