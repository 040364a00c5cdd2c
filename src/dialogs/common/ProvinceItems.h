// A province in a combo: its name and, in brackets, its two-digit code.
#pragma once

#include <QString>
#include <QStringList>

namespace ambrel {

/// "MADRID [28]" from a name and a stored code, of which the last two characters are shown.
[[nodiscard]] QString provinceItem(const QString& name, const QString& code);

/// Text before " [", or the whole text if there is none; without blanks around it.
[[nodiscard]] QString nameOfItem(const QString& item);

/// The two characters after "[", without blanks around them; empty if there is no "[".
[[nodiscard]] QString codeOfItem(const QString& item);

/// Index of the first item that contains the text anywhere; -1 if none does or the text is empty.
[[nodiscard]] int findItemContaining(const QStringList& items, const QString& text);

} // namespace ambrel
