// The text that an object shows.
#pragma once

#include <QString>

class QObject;

namespace host::script {

/// The text of a box, label, button or list; the current row of a grid as CSV, empty when it has none.
/// One line.
[[nodiscard]] QString textOf(const QObject& object);

/// Object name, text, Tag, and "activo" or "inactivo", separated by tabs.
[[nodiscard]] QString describe(const QObject& object);

} // namespace host::script
