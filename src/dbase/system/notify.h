// Sends notices; for the functions that receive them see notices.h.
#pragma once

#include <string>

namespace dbase {

/// Reports something to the user, once. Spanish, UTF-8, with the name of the file.
void notify(const std::string& text) noexcept;

} // namespace dbase
