// What windows under an edit box have in common: where they stand, how they look, when they go.
#pragma once

#include <QPalette>
#include <QRect>
#include <QSize>

class QEvent;
class QObject;
class QWidget;

namespace ambrel {

/// Makes a window of its own of a widget, for a place under a box: it takes neither the keyboard nor the
/// place of the active window. Not installed: internal to SuggestionList and PasteOffer.
void makeWindowUnderBox(QWidget& view);

/// The place of a window with the wanted size under a box, or over it where there is more room, inside its
/// screen.
[[nodiscard]] QRect placeUnder(const QWidget& box, const QSize& wanted);

/// The colours of a box's window, with a frame that stands out from boxes of the same colour.
[[nodiscard]] QPalette paletteUnder(const QWidget& box);

/// What an event anywhere in the application means for a window under a box.
enum class ElsewhereEvent { None, Moved, Left };
[[nodiscard]] ElsewhereEvent elsewhereEvent(const QWidget& box, const QWidget& view, const QObject& watched,
                                            const QEvent& event);

} // namespace ambrel
