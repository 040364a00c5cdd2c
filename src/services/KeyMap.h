// The one map from Qt's keys to the 16-bit key codes.
#pragma once

#include <cstdint>

#include "AmbrelExport.h"

class QKeyEvent;

namespace ambrel {

/// Code of an event's key: one of key_code, a digit (keypad included), or the capital of the letter typed; 0
/// for any other key.
[[nodiscard]] AMBREL_EXPORT std::uint16_t keyCode(const QKeyEvent& event);

} // namespace ambrel
