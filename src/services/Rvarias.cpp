// Focus colouring through the palette, which styles and desktop themes respect.
#include "services/Rvarias.h"

#include <QPalette>
#include <QVariant>
#include <QWidget>
#include <utility>

namespace ambrel {
namespace {

constexpr const char* normalPaletteProperty = "normalPalette";
constexpr QColor paleYellow(255, 249, 214);
constexpr QColor darkOlive(64, 60, 30);
constexpr int brightText = 139; // of 255; a grey of this brightness contrasts equally with both

FocusColouring& colouring() {
    static FocusColouring function = colourByPalette;
    return function;
}

/// Chosen by the text, not by the current background: a control's own colours may be of any brightness.
QColor readableBehind(const QColor& text) { return qGray(text.rgb()) > brightText ? darkOlive : paleYellow; }

void takeFocusColour(QWidget& control) {
    if (control.property(normalPaletteProperty).isValid()) {
        return;
    }
    QPalette palette = control.palette(); // keeps which colours are the control's own and which its parent's
    control.setProperty(normalPaletteProperty, palette);
    palette.setColor(QPalette::Base, readableBehind(palette.color(QPalette::Text)));
    control.setPalette(palette);
}

void restoreNormalColour(QWidget& control) {
    const QVariant normal = control.property(normalPaletteProperty);
    if (!normal.isValid()) {
        return;
    }
    control.setPalette(normal.value<QPalette>());
    control.setProperty(normalPaletteProperty, QVariant());
}

} // namespace

void colourByPalette(QWidget& control, bool focused) {
    if (focused) {
        takeFocusColour(control);
    } else {
        restoreNormalColour(control);
    }
}

void setFocusColouring(FocusColouring function) {
    colouring() = function ? std::move(function) : colourByPalette;
}

} // namespace ambrel

void TomaFocoControl(QWidget* control) {
    if (control) {
        ambrel::colouring()(*control, true);
    }
}

void DejaFocoControl(QWidget* control) {
    if (control) {
        ambrel::colouring()(*control, false);
    }
}
