// Focus colouring: highlights the control that has the focus.
#pragma once

#include <functional>

#include "AmbrelExport.h"

class QWidget;

/// Gives a control the focus colour.
AMBREL_EXPORT void TomaFocoControl(QWidget* control);

/// Restores the colours that a control had before TomaFocoControl; does nothing if it has them already.
AMBREL_EXPORT void DejaFocoControl(QWidget* control);

namespace ambrel {

/// Colours a control as focused or as normal.
using FocusColouring = std::function<void(QWidget& control, bool focused)>;

/// Colours the background behind the text: pale yellow, or dark olive behind bright text.
AMBREL_EXPORT void colourByPalette(QWidget& control, bool focused);

/// Installs a host's own colouring; an empty one restores colourByPalette.
AMBREL_EXPORT void setFocusColouring(FocusColouring colouring);

} // namespace ambrel
