// Focus colouring: the control that has the focus stands out.
#pragma once

#include <functional>

#include "AmbrelExport.h"

class QWidget;

/// Gives a control the focus colour.
AMBREL_EXPORT void TomaFocoControl(QWidget* control);

/// Gives a control the colours back that it had before TomaFocoControl; nothing for one that has them.
AMBREL_EXPORT void DejaFocoControl(QWidget* control);

namespace ambrel {

/// Colours a control as focused or as normal.
using FocusColouring = std::function<void(QWidget& control, bool focused)>;

/// Background behind the text: pale yellow, or dark olive behind a bright text.
AMBREL_EXPORT void colourByPalette(QWidget& control, bool focused);

/// Puts a host's own colouring in place; an empty one brings colourByPalette back.
AMBREL_EXPORT void setFocusColouring(FocusColouring colouring);

} // namespace ambrel
