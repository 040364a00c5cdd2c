// The boxes' searches, run one after the other on plain texts.
#include "address/AddressResolution.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>

#include "address/AddressDirectory.h"
#include "address/HouseNumber.h"
#include "address/StreetCode.h"
#include "address/TidyText.h"
#include "controller/Completion.h"
#include "controller/ProvinceName.h"
#include "dbase/dbf/codepage.h"
#include "dbase/lock/read_scope.h"
#include "services/KeyCodes.h"
#include "services/Rnumcad.h"

namespace ambrel {
namespace {

/// Code of the key that types a character; none for signs other than the comma.
std::uint16_t keyOf(char c) {
    const auto byte = static_cast<unsigned char>(c);
    if (isAlphanumeric(byte)) {
        return byte;
    }
    return c == ',' ? key_code::comma : key_code::none;
}

/// Types a text into an empty box. Only the last key that requests completion matters: each lookup starts
/// from scratch, and the keys after it overwrite the completed tail. Null if the box would then show
/// something other than what was found.
template<class Asks, class Lookup>
std::optional<std::string> typeInto(const std::string& text, Asks asks, Lookup lookup) {
    const auto last = std::find_if(text.rbegin(), text.rend(), [&](char c) { return asks(keyOf(c)); }).base();
    if (last == text.begin()) {
        return std::nullopt;
    }
    const std::optional<std::string> found = lookup(std::string(text.begin(), last));
    return found && (last == text.end() || text == *found) ? found : std::nullopt;
}

/// Whether a province's name equals the given one, in full or on one side of a slash: "ALAVA/ARABA".
bool hasName(std::string_view province, std::string_view given) {
    while (!province.empty()) {
        const std::string_view one = province.substr(0, province.find('/'));
        if (one == given || province == given) {
            return true;
        }
        province.remove_prefix(std::min(one.size() + 1, province.size()));
    }
    return false;
}

bool isIn(const Municipality& municipality, const std::string& province, const std::string& database) {
    if (province.empty()) {
        return true;
    }
    if (municipality.provinces.empty()) {
        return false;
    }
    const std::string& own = municipality.provinces.front();
    return own == province || hasName(tidied(provinceName(own, database)), province);
}

/// Resolves an address part by part; each step returns whether the next one makes sense.
class Resolution {
public:
    Resolution(const std::string& database, const TypedAddress& typed)
        : database_(database), typed_(typed), directory_(database) {}

    ResolvedAddress run() {
        if (resolveMunicipality() && resolveStreet()) {
            resolveNumber();
        }
        return result_;
    }

private:
    bool resolveMunicipality() {
        result_.municipality = tidied(typed_.municipality);
        std::vector<Municipality> named = directory_.municipalitiesNamed(result_.municipality);
        if (named.empty()) {
            const auto whole =
                typeInto(result_.municipality, completesMunicipality,
                         [&](const std::string& text) { return directory_.municipalityNameBeginning(text); });
            if (!whole) {
                return refuse(AddressPart::Municipality);
            }
            result_.municipality = *whole;
            result_.completed.push_back(AddressPart::Municipality);
            named = directory_.municipalitiesNamed(*whole);
        }
        std::vector<Municipality> meant = named;
        std::erase_if(meant, [&](const Municipality& one) { return !isMeant(one); });
        if (meant.size() != 1) {
            for (const Municipality& one : meant.empty() ? named : meant) {
                result_.candidates.push_back(
                    {one.name, one.ineCode, one.provinces.empty() ? std::string() : one.provinces.front()});
            }
            return refuse(AddressPart::Municipality);
        }
        municipality_ = meant.front();
        result_.ineCode = municipality_.ineCode;
        return true;
    }

    [[nodiscard]] bool isMeant(const Municipality& one) const {
        const std::string ineCode = tidied(typed_.ineCode);
        return (ineCode.empty() || one.ineCode == ineCode) && isIn(one, tidied(typed_.province), database_);
    }

    bool resolveStreet() {
        type_ = tidied(typed_.streetType);
        result_.street = tidied(typed_.street);
        stretches_ = directory_.stretches(municipality_, result_.street);
        if (stretches_.empty()) {
            const auto whole = typeInto(result_.street, completesStreet, [&](const std::string& text) {
                const auto first = directory_.streetBeginning(municipality_, text, type_);
                return first ? std::optional(first->name) : std::nullopt;
            });
            if (!whole) {
                if (municipality_.hasOneCode) {
                    result_.postalCode = municipality_.postalCodes.front();
                }
                return refuse(AddressPart::Street);
            }
            result_.street = *whole;
            result_.completed.push_back(AddressPart::Street);
            stretches_ = directory_.stretches(municipality_, *whole);
        } else if (stretches_.front().name != result_.street) { // a name too long for the table
            result_.street = stretches_.front().name;
            result_.completed.push_back(AddressPart::Street);
        }
        stretches_ = stretchesOfType(stretches_, type_);
        return true;
    }

    void resolveNumber() {
        const StreetCode code = streetCode(stretches_, municipality_.ineCode, readHouseNumber(typed_.number));
        result_.streetType = code.stretch.type;
        result_.postalCode = code.stretch.postalCode;
        if (result_.streetType != type_) {
            result_.completed.push_back(AddressPart::StreetType);
        }
        result_.numberProblem = problemOf(code.certainty);
        if (!code.isSure()) {
            refuse(AddressPart::Number);
        }
    }

    static NumberProblem problemOf(StreetCode::Certainty certainty) {
        using enum StreetCode::Certainty;
        switch (certainty) {
        case Sure:
            break;
        case NoNumber:
            return NumberProblem::NoNumber;
        case NoStretch:
            return NumberProblem::NoStretch;
        case Unclear:
            return NumberProblem::NotANumber;
        case Several:
            return NumberProblem::SeveralCodes;
        case NoCode:
            return NumberProblem::NoCode;
        }
        return NumberProblem::None;
    }

    bool refuse(AddressPart part) {
        result_.unsettled.push_back(part);
        return false;
    }

    const std::string& database_;
    const TypedAddress& typed_;
    AddressDirectory directory_;
    Municipality municipality_;
    std::string type_;
    std::vector<StreetStretch> stretches_;
    ResolvedAddress result_;
};

} // namespace

ResolvedAddress resolveAddress(const std::string& database, const TypedAddress& typed) {
    const dbase::ReadScope scope;
    return Resolution(database, typed).run();
}

ResolvedAddress resolveAddressUtf8(const std::string& database, const TypedAddress& typed) {
    const dbase::CodePage& page = dbase::CodePage::windows1252();
    // No name equals "?"; an empty text would drop a condition.
    const auto bytes = [&](const std::string& utf8) { return page.fromUtf8(utf8).value_or("?"); };
    auto result =
        resolveAddress(database, typed.as<std::string>(bytes)).as<std::string>([&](const auto& text) {
            return page.toUtf8(text);
        });
    if (!page.fromUtf8(typed.municipality)) {
        result.municipality = typed.municipality;
    }
    if (!result.street.empty() && !page.fromUtf8(typed.street)) {
        result.street = typed.street;
    }
    return result;
}

} // namespace ambrel
