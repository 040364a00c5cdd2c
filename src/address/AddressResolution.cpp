// The boxes' searches, run one after the other on plain texts.
#include "address/AddressResolution.h"

#include <algorithm>
#include <optional>

#include "controller/Completion.h"
#include "controller/MunicipalitySearch.h"
#include "controller/NumberWalk.h"
#include "controller/StreetSearch.h"
#include "services/KeyCodes.h"
#include "services/Rnumcad.h"
#include "services/Ruttb.h"

namespace ambrel {
namespace {

/// Code of the key that types a character; none for signs other than the comma.
std::uint16_t keyOf(char c) {
    const auto byte = static_cast<unsigned char>(c);
    if (isAlphanumeric(byte))
        return byte;
    return c == ',' ? key_code::comma : key_code::none;
}

/// Types a text into an empty box. Only the last key that asks for completion matters: each lookup starts
/// afresh, and the keys behind it overwrite the completed tail. Null when the box then shows something else
/// than what was found.
template<class Asks, class Lookup>
std::optional<std::string> typeInto(const std::string& text, Asks asks, Lookup lookup) {
    const auto last = std::find_if(text.rbegin(), text.rend(), [&](char c) { return asks(keyOf(c)); }).base();
    if (last == text.begin())
        return std::nullopt;
    const std::string shown(text.begin(), last);
    const std::optional<NamedCompletion> found = lookup(EditedText{.text = shown, .caret = shown.size()});
    if (!found || found->code == 0)
        return std::nullopt;
    const std::string left = last == text.end() ? found->box.text : text;
    return left == found->box.text ? std::optional(left) : std::nullopt;
}

bool settleMunicipality(TDMCodPostales& tables, const std::string& typed, ResolvedAddress& result) {
    const auto shown = typeInto(typed, completesMunicipality, [&](const EditedText& edited) {
        return completeMunicipality(tables, edited);
    });
    result.municipality = shown.value_or(typed);
    if (!shown)
        return false;
    result.ineCode = tables.tbMunicipiCOD_INE.text();
    result.postalCode = onlyPostalCode(tables).value_or(std::string());
    return true;
}

bool settleStreet(TDMCodPostales& tables, const std::string& typed, const std::string& type,
                  ResolvedAddress& result) {
    const auto shown = typeInto(typed, completesStreet, [&](const EditedText& edited) {
        return completeStreet(tables, edited, type);
    });
    result.street = shown.value_or(typed);
    if (!shown)
        return false;
    chooseStreetType(tables, result.street, type);
    result.postalCode = tables.tbPostalCODPOSTAL.text();
    return true;
}

bool settleNumber(TDMCodPostales& tables, const std::string& number, const std::string& type,
                  ResolvedAddress& result) {
    // The walk begins at the current row, so the street is sought again first, as its box did.
    static_cast<void>(findInStreets(tables, result.street, type, nearestSearch));
    if (!walkToNumber(tables, Cad_Int(number)))
        return false;
    result.postalCode = tables.tbPostalCODPOSTAL.text();
    return true;
}

} // namespace

ResolvedAddress resolveAddress(const std::string& database, const TypedAddress& typed) {
    TDMCodPostales tables(database);
    tables.tbMunicipi.setTag("NOMBRE");
    tables.tbMunicipi.open();
    tables.tbPostal.open();

    ResolvedAddress result;
    const std::string type = UpperCase(typed.streetType);
    if (!settleMunicipality(tables, UpperCase(typed.municipality), result)) {
        result.unsettled.push_back(AddressPart::Municipality);
        return result;
    }
    if (!settleStreet(tables, UpperCase(typed.street), type, result)) {
        result.unsettled.push_back(AddressPart::Street);
        return result;
    }
    if (!settleNumber(tables, typed.number, type, result))
        result.unsettled.push_back(AddressPart::Number);
    result.streetType = tables.tbPostalTIPO_VIA.text();
    return result;
}

} // namespace ambrel
