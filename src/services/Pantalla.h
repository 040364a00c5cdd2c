// The progress window: a small window with a text that stays while something long is done.
#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <functional>

#include "AmbrelExport.h"

namespace ambrel {

/// Null when the window is gone, also when it went with its owner.
using ProgressWindow = QPointer<QWidget>;

/// How progress is shown; a host or a test may put its own functions in place.
struct ProgressDisplay {
    std::function<ProgressWindow(const QString& text, QWidget* owner)> show;
    std::function<void(const QString& text, QWidget& window)> change;
    std::function<void(QWidget& window)> close; // frees the window
};

/// The display with real windows: object "Progreso" with the label "LMensaje".
[[nodiscard]] AMBREL_EXPORT ProgressDisplay windowProgressDisplay();

/// Returns the display that was in force. All three functions must be given.
AMBREL_EXPORT ProgressDisplay setProgressDisplay(ProgressDisplay display);

} // namespace ambrel

/// Shows a small window that takes no focus and lets the caller go on. Without owner it belongs to the active
/// window.
[[nodiscard]] AMBREL_EXPORT ambrel::ProgressWindow MuestraMensaje(const QString& text,
                                                                  QWidget* owner = nullptr);

/// Replaces the text and repaints at once; where texts follow each other faster than they can be read, only
/// some of them. Nothing for a window that is gone.
AMBREL_EXPORT void CambiaMensaje(const QString& text, const ambrel::ProgressWindow& window);

/// Closes and frees the window. Nothing for one that is gone.
AMBREL_EXPORT void CierraMensaje(const ambrel::ProgressWindow& window);
