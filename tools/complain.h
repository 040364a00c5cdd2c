// Messages of the program beside its output.
#pragma once

#include <string_view>

namespace ambcp {

/// Writes a text to standard error, each line with the name of the program, so that it can be told apart from
/// other programs' lines and searched for.
void complain(std::string_view text);

} // namespace ambcp
