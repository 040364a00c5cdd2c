// The look of the demo host.
#include "host/Style.h"

#include <QApplication>
#include <QFont>
#include <QPalette>

#include "host/OutlinedStyle.h"

namespace host {
namespace {

constexpr QColor windowColour(0xf3, 0xf5, 0xf8);
constexpr QColor textColour(0x1f, 0x29, 0x37);
constexpr QColor borderColour(0xd3, 0xd9, 0xe2);
constexpr QColor accentColour(0x1d, 0x5f, 0xa8);
constexpr int fixedFontPoints = 9;
constexpr int darkLightness = 128; // of 255

// No colours for edit boxes: they use the palette, which the focus colouring changes.
constexpr const char* rules = R"(
#MarcoFicha { background: palette(base); border: 1px solid palette(midlight); border-radius: 8px; }
#LTitulo { font-size: 15pt; font-weight: 600; }
#LEstado { background: palette(base);
           border: 1px solid palette(midlight); border-radius: 9px; padding: 3px 10px; }
#VistaDomicilio { border-top: 1px solid palette(midlight); }
#LDomicilio { font-weight: 600; }
#LRutina { font-size: 13pt; font-weight: 600; }
QPushButton { min-width: 5.5em; padding: 5px 10px; }
QPushButton[list="true"] { min-width: 1.2em; padding: 4px; }
QLineEdit { padding: 3px 4px; }
)";

// In dark colours the outline of an edit box is hardly visible: the box is a dark well in a brighter card.
constexpr const char* darkRules = R"(
#MarcoFicha, #LEstado { background: palette(button); border-color: palette(mid); }
#VistaDomicilio { border-color: palette(mid); }
)";

QPalette lightPalette() {
    QPalette palette(windowColour);
    palette.setColor(QPalette::Window, windowColour);
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Button, QColor(0xe9, 0xed, 0xf3));
    palette.setColor(QPalette::Midlight, borderColour);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Active, role, textColour);
    }
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Inactive, role, textColour);
    }
    palette.setColor(QPalette::Highlight, accentColour);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

} // namespace

void applyStyle(QApplication& application) {
    QApplication::setStyle(new OutlinedStyle); // the application owns it
    const QPalette desktop = QApplication::palette();
    const bool isDark = desktop.color(QPalette::Window).lightness() < darkLightness;
    if (!isDark && !isHighContrast(desktop)) {
        QApplication::setPalette(lightPalette());
    }
    application.setStyleSheet(QLatin1String(rules) + QLatin1String(isDark ? darkRules : ""));
}

void applyFixedLook(QApplication& application) {
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), fixedFontPoints));
    QApplication::setCursorFlashTime(0);
    QApplication::setStyle(new OutlinedStyle);
    QApplication::setPalette(lightPalette());
    application.setStyleSheet(QLatin1String(rules));
}

} // namespace host
