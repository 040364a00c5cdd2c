#include "tools/usage_errors.h"

#include <string_view>

#include <CLI/CLI.hpp>

namespace ambcp {

namespace {

std::string before(const std::string& text, std::string_view mark) { return text.substr(0, text.find(mark)); }

std::string behind(const std::string& text, std::string_view mark) {
    const std::size_t at = text.find(mark);
    return at == std::string::npos ? text : text.substr(at + mark.size());
}

bool has(const std::string& text, std::string_view part) { return text.find(part) != std::string::npos; }

} // namespace

std::string describeUsageError(const CLI::ParseError& error) {
    const std::string text = error.what();
    const std::string kind = error.get_name();
    if (kind == "RequiredError") {
        return has(text, "subcommand") ? "falta la orden, o no existe la que se da"
                                       : "falta " + before(text, " is required");
    }
    if (has(text, "not expected: ")) {
        return "sobra " + behind(text, ": ");
    }
    if (kind == "ConversionError" || kind == "ValidationError") {
        return "valor no válido: " + behind(text, ": ");
    }
    if (kind == "ArgumentMismatch") {
        return before(text, ":") + (has(text, "At Most") ? " se da más de una vez" : " necesita un valor");
    }
    if (kind == "RequiresError") {
        return before(text, " requires ") + " necesita " + behind(text, " requires ");
    }
    return "orden no comprendida: " + text;
}

} // namespace ambcp
