// Reports the faults of names.
#include "directory/audit/NameAudit.h"

#include "directory/audit/NameFaults.h"
#include "directory/audit/PlaceBook.h"
#include "loading/ansi_text.h"

namespace ambrel::directory {

namespace {

using loading::utf8FromAnsi;

std::string shown(std::string_view ansi) { return "«" + utf8FromAnsi(ansi) + "»"; }

} // namespace

Finding withText(Finding about, FindingClass kind, std::string text, std::string proposal) {
    about.kind = kind;
    about.severity = usualSeverity(kind);
    about.text = std::move(text);
    about.proposal = std::move(proposal);
    return about;
}

Finding withoutPostalCode(const Finding& about, std::string_view code, const std::string& ofWhat) {
    Finding found =
        withText(about, FindingClass::NoPostalCode, shown(code) + " no es un código postal (" + ofWhat + ")");
    // Lists have it where the code is not known, for the whole of a capital.
    const bool isGeneral =
        code.size() == 5 && code.ends_with("000") && isPostalCode(std::string(code.substr(0, 2)) + "001");
    found.severity = isGeneral ? Severity::Warning : found.severity;
    return found;
}

void auditName(std::string_view name, std::string_view column, const Finding& about,
               const FindingSink& sink) {
    const auto propose = [&](std::string_view text) {
        return text.empty() ? std::string() : std::string(column) + '=' + utf8FromAnsi(text);
    };
    if (name.empty()) {
        sink(withText(about, FindingClass::NoName, std::string(column) + " está en blanco"));
        return;
    }
    const auto broken = findBrokenLetters(name);
    if (broken) {
        sink(withText(about, FindingClass::BrokenLetters, shown(name) + " lleva letras rotas",
                      propose(broken->likely)));
    }
    if (hasSmallLetters(name) && !(broken && broken->wasUtf8)) {
        sink(withText(about, FindingClass::SmallLetters, shown(name) + " lleva minúsculas",
                      propose(inCapitals(name))));
    }
    if (hasNeedlessBlanks(name)) {
        sink(withText(about, FindingClass::NeedlessBlanks, shown(name) + " lleva blancos de más",
                      propose(withoutNeedlessBlanks(name))));
    }
    if (hasOpenBracket(name)) {
        sink(withText(about, FindingClass::OpenBracket, shown(name) + " tiene un paréntesis sin pareja"));
    }
}

} // namespace ambrel::directory
