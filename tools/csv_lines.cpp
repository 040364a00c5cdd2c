// Writes rows of CSV into a text.
#include "tools/csv_lines.h"

namespace ambcp {

namespace {

void addValue(std::string& text, std::string_view value) {
    const bool isQuoted = value.find_first_of(",\"\r\n") != std::string_view::npos;
    text += isQuoted ? "\"" : "";
    for (const char c : value) {
        text.append(c == '"' ? 2 : 1, c);
    }
    text += isQuoted ? "\"" : "";
}

} // namespace

void addCsvRow(std::string& text, std::initializer_list<std::string_view> values) {
    bool isFirst = true;
    for (const std::string_view value : values) {
        text += isFirst ? "" : ",";
        addValue(text, value);
        isFirst = false;
    }
    text += '\n';
}

} // namespace ambcp
