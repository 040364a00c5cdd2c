// Describes errors of the command line, in Spanish.
#include "tools/usage_errors.h"

#include <algorithm>
#include <string_view>

#include <CLI/CLI.hpp>

#include "dbase/system/quoted.h"
#include "tools/nearest_name.h"

namespace ambcp {

namespace {

std::string before(const std::string& text, std::string_view mark) { return text.substr(0, text.find(mark)); }

std::string after(const std::string& text, std::string_view mark) {
    const std::size_t at = text.find(mark);
    return at == std::string::npos ? text : text.substr(at + mark.size());
}

bool has(const std::string& text, std::string_view part) { return text.find(part) != std::string::npos; }

/// The orders that the help shows, in its order.
std::vector<std::string> commandNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands({})) {
        if (!command->get_group().empty()) {
            names.push_back(command->get_name());
        }
    }
    return names;
}

std::string listed(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : ", ") + name;
    }
    return "las órdenes son " + text;
}

/// The options of a command as they are written, "--tag".
std::vector<std::string> optionNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    return names;
}

/// What an order was given and does not take. After "--" that is left to the orders above it.
std::vector<std::string> superfluousOf(const CLI::App& app) {
    std::vector<std::string> given;
    for (const CLI::App* order = &app; order != nullptr && given.empty(); order = order->get_parent()) {
        given = order->remaining();
        std::erase(given, "--");
    }
    return given;
}

/// An argument that the command does not take; perhaps a mistyped option.
std::string describeSuperfluous(const std::string& given, const CLI::App& app) {
    const std::string option = before(given, "=");
    const auto nearest = given.starts_with("--") ? nearestName(option, optionNames(app)) : std::nullopt;
    return nearest ? "no existe la opción " + dbase::inQuotes(option) + "; ¿quería decir «" + *nearest + "»?"
                   : "sobra " + dbase::inQuotes(given);
}

/// Of several the first option, because what follows it may be its value.
std::string describeSuperfluous(const std::vector<std::string>& given, const CLI::App& app) {
    const auto option =
        std::ranges::find_if(given, [](const std::string& one) { return one.starts_with("--"); });
    return describeSuperfluous(option != given.end() ? *option : given.front(), app);
}

std::string unknownCommand(const std::string& typed, const CLI::App& app) {
    const std::vector<std::string> names = commandNames(app);
    const auto nearest = nearestName(typed, names);
    return "no existe la orden " + dbase::inQuotes(typed) + "; " +
           (nearest ? "¿quería decir «" + *nearest + "»?" : listed(names));
}

std::string describeMissing(const std::string& text, const CLI::App& app) {
    if (!has(text, "subcommand")) {
        return "falta " + before(text, " is required");
    }
    const std::vector<std::string> given = superfluousOf(app);
    if (given.empty()) {
        return "falta la orden; " + listed(commandNames(app));
    }
    return given.front().starts_with('-') ? describeSuperfluous(given.front(), app)
                                          : unknownCommand(given.front(), app);
}

std::string describe(const CLI::ParseError& error, const CLI::App& app) {
    const std::string text = error.what();
    const std::string kind = error.get_name();
    if (kind == "RequiredError") {
        return describeMissing(text, app);
    }
    if (has(text, "not expected: ")) {
        return describeSuperfluous(superfluousOf(app), app);
    }
    if (kind == "ConversionError" || kind == "ValidationError") {
        return "valor no válido: " + after(text, ": ");
    }
    if (kind == "ArgumentMismatch") {
        return before(text, ":") + (has(text, "At Most") ? " se da más de una vez" : " necesita un valor");
    }
    if (kind == "RequiresError") {
        return before(text, " requires ") + " necesita " + after(text, " requires ");
    }
    if (kind == "ExcludesError") {
        return before(text, " excludes ") + " no se da junto con " + after(text, " excludes ");
    }
    return "orden no comprendida: " + text;
}

std::string withHelp(const std::string& what, const std::string& call) {
    return what + (what.ends_with('?') ? " Vea «" : ". Vea «") + call + " --help».";
}

} // namespace

std::string describeUsageError(const CLI::ParseError& error, const CLI::App& app) {
    std::string call = app.get_name();
    const CLI::App* order = &app;
    while (!order->get_subcommands().empty()) {
        order = order->get_subcommands().front();
        call += ' ' + order->get_name();
    }
    return withHelp(describe(error, *order), call);
}

std::string describeUnknownCommand(const std::string& typed, const CLI::App& app, const std::string& call) {
    const bool hasOrders = !commandNames(app).empty();
    return withHelp(hasOrders ? unknownCommand(typed, app) : describeSuperfluous(typed, app), call);
}

} // namespace ambcp
