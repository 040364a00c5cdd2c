// The progress window: a small window with a text, shown during long work.
#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <functional>

#include "AmbrelExport.h"

namespace ambrel {

/// Null if the window is gone, also when it was destroyed with its owner.
using ProgressWindow = QPointer<QWidget>;

/// Functions that show progress; a host or a test may replace them.
struct ProgressDisplay {
    std::function<ProgressWindow(const QString& text, QWidget* owner)> show;
    std::function<void(const QString& text, QWidget& window)> change;
    std::function<void(QWidget& window)> close; // frees the window
};

/// The display with real windows: object "Progreso" with the label "LMensaje".
[[nodiscard]] AMBREL_EXPORT ProgressDisplay windowProgressDisplay();

/// Returns the previous display. All three functions must be given.
AMBREL_EXPORT ProgressDisplay setProgressDisplay(ProgressDisplay display);

} // namespace ambrel

/// Shows a small window that takes no focus and lets the caller go on. Without an owner it belongs to the
/// active window.
[[nodiscard]] AMBREL_EXPORT ambrel::ProgressWindow MuestraMensaje(const QString& text,
                                                                  QWidget* owner = nullptr);

/// Replaces the text and repaints at once; when texts follow each other faster than they can be read, only
/// some of them are painted. Does nothing if the window is gone.
AMBREL_EXPORT void CambiaMensaje(const QString& text, const ambrel::ProgressWindow& window);

/// Closes and frees the window. Does nothing if it is gone.
AMBREL_EXPORT void CierraMensaje(const ambrel::ProgressWindow& window);
