// The pieces of which the definitions of subcommands are made.
#include "tools/command_definition.h"

#include "dbase/system/quoted.h"
#include "loading/csv.h"
#include "loading/text_encoding.h"

namespace ambcp {

/// A minus sign would be read as a very large number.
std::string isCount(const std::string& text) {
    const bool isDigits = !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
    return isDigits ? std::string() : dbase::inQuotes(text) + " no es un número";
}

std::string isKnownSeparator(const std::string& text) {
    return loading::separatorNamed(text) ? std::string()
                                         : dbase::inQuotes(text) + " no separa columnas; un signo, o «tab»";
}

std::string isKnownEncoding(const std::string& text) {
    return loading::textEncodingNamed(text)
               ? std::string()
               : dbase::inQuotes(text) + " no se conoce; utf-8, windows-1252 o utf-16";
}

void requireText(CLI::App& command, const char* name, std::string& value, const char* help) {
    command.add_option(name, value, help)->required()->type_name("");
}

CLI::Option* offerText(CLI::App& command, const char* name, std::string& value, const char* type,
                       const char* help) {
    return command.add_option(name, value, help)->type_name(type);
}

} // namespace ambcp
