// CSV as text, for outputs that are not written value by value.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace ambcp {

/// Adds a row to a text, with its line end; values are quoted where necessary.
void addCsvRow(std::string& text, std::initializer_list<std::string_view> values);

} // namespace ambcp
