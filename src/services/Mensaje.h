// Message boxes. All functions return after the user has answered.
#pragma once

#include <QString>

#include "AmbrelExport.h"
#include "services/MessageBox.h"

class QWidget;

/// Returned by questions for yes; any other value is no.
inline constexpr int answeredYes = 1;

/// Error box with an OK button.
AMBREL_EXPORT void Mensaje_Error(const QString& text, const QString& title);
AMBREL_EXPORT void Mensaje_Error(QWidget* owner, const QString& text, const QString& title);

/// Information box with an OK button.
AMBREL_EXPORT void Mensaje_Info(QWidget* owner, const QString& text, const QString& title);

/// Question with an explanatory line, which may be empty; yes is the default button.
[[nodiscard]] AMBREL_EXPORT int Mensaje_SiNo(const QString& text, const QString& line, const QString& title);
[[nodiscard]] AMBREL_EXPORT int Mensaje_SiNo(QWidget* owner, const QString& text, const QString& line,
                                             const QString& title);

/// The same, with no as the default button.
[[nodiscard]] AMBREL_EXPORT int Mensaje_NoSi(const QString& text, const QString& line, const QString& title);

/// System colours for Mensajes: face and text of a button.
inline constexpr int buttonFaceColour = 15;
inline constexpr int buttonTextColour = 18;

/// General warning box with an OK button. Returns the number of the button pressed, 1 for OK. `kind`, `icon`,
/// the colours and `option` are there for existing calls and have no effect: callers pass 0, 0 and false, and
/// the box keeps to the colours of the user's desktop.
AMBREL_EXPORT int Mensajes(int kind, const QString& text, int icon, const QString& title,
                           const QString& secondTitle = {}, int colour = buttonFaceColour,
                           int textColour = buttonTextColour, bool option = false);
