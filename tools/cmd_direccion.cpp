// ambcp direccion: completes an address as the controller would.

#include <algorithm>
#include <string_view>

#include <unistd.h>

#include "address/AddressResolution.h"
#include "controller/ProvinceName.h"
#include "dbase/dbf/codepage.h"
#include "dbase/system/error.h"
#include "dbase/system/quoted.h"
#include "loading/csv.h"
#include "tools/commands.h"
#include "tools/complain.h"
#include "tools/table_folder.h"

namespace ambcp {

namespace {

using ambrel::AddressPart;

/// A text that the tables cannot hold must match nothing; passed as empty, it would drop a condition.
std::string ansi(const std::string& text) {
    return dbase::CodePage::windows1252().fromUtf8(text).value_or("?");
}

std::string utf8(const std::string& bytes) { return dbase::CodePage::windows1252().toUtf8(bytes); }

bool has(const std::vector<AddressPart>& parts, AddressPart part) {
    return std::ranges::find(parts, part) != parts.end();
}

const char* columnOf(AddressPart part) {
    switch (part) {
    case AddressPart::Municipality:
        return "MUNICIPIO";
    case AddressPart::StreetType:
        return "TIPO_VIA";
    case AddressPart::Street:
        return "VIA";
    case AddressPart::Number:
        break;
    }
    return "NUMERO";
}

void writeAddress(const ambrel::ResolvedAddress& address, const AddressOptions& typed) {
    // A part that was not found is shown as it was typed, whatever the tables could hold of it.
    const auto name = [&](AddressPart part, const std::string& found, const std::string& asTyped) {
        return has(address.unsettled, part) ? asTyped : utf8(found);
    };
    std::string completed;
    for (const AddressPart part : address.completed) {
        completed += (completed.empty() ? "" : " ") + std::string(columnOf(part));
    }
    loading::CsvWriter csv(STDOUT_FILENO);
    for (const std::string_view column :
         {"MUNICIPIO", "COD_INE", "VIA", "TIPO_VIA", "CODPOSTAL", "COMPLETADA"}) {
        csv.field(column);
    }
    csv.endRecord();
    csv.field(name(AddressPart::Municipality, address.municipality, typed.municipality));
    csv.field(utf8(address.ineCode));
    csv.field(name(AddressPart::Street, address.street, typed.street));
    csv.field(utf8(address.streetType));
    csv.field(utf8(address.postalCode));
    csv.field(completed);
    csv.endRecord();
    csv.flush();
}

/// The name of a province; empty where the folder has no table of provinces.
std::string nameInBrackets(const std::string& province) {
    try {
        const std::string name = utf8(ambrel::provinceName(province, folderDatabase));
        return name.empty() ? name : " (" + name + ")";
    } catch (const dbase::Error&) {
        return {}; // the code is enough, as the province was not the question
    }
}

std::string describeMunicipality(const ambrel::ResolvedAddress& address, const AddressOptions& typed) {
    if (address.candidates.empty()) {
        return "no se ha resuelto el municipio " + dbase::inQuotes(typed.municipality) + ".";
    }
    const std::string name = " «" + utf8(address.municipality) + "»";
    std::string text = address.candidates.size() == 1
                           ? "el municipio" + name + " no es el que se pide:"
                           : "hay " + std::to_string(address.candidates.size()) + " municipios" + name +
                                 "; elija uno de ellos con --provincia o --ine:";
    for (const ambrel::NamedMunicipality& one : address.candidates) {
        text += "\n  --ine " + utf8(one.ineCode) + ": " + utf8(one.name) + ", provincia " +
                utf8(one.province) + nameInBrackets(one.province);
    }
    return text;
}

std::string describeNumber(const ambrel::ResolvedAddress& address, const AddressOptions& typed) {
    const std::string number = "no se ha resuelto el número " + dbase::inQuotes(typed.number);
    switch (address.numberProblem) {
    case ambrel::NumberProblem::None:
    case ambrel::NumberProblem::NoStretch:
        return number;
    case ambrel::NumberProblem::NoNumber:
        return "la vía «" + utf8(address.street) +
               "» tiene varios códigos postales y el número es lo que decide";
    case ambrel::NumberProblem::NotANumber:
        return number + ": no es el de una casa";
    case ambrel::NumberProblem::SeveralCodes:
        return number + ": lo tienen tramos con códigos postales distintos";
    case ambrel::NumberProblem::NoCode:
        return "la vía «" + utf8(address.street) + "» no tiene código postal";
    }
    return number;
}

std::string describe(AddressPart part, const ambrel::ResolvedAddress& address, const AddressOptions& typed) {
    switch (part) {
    case AddressPart::Municipality:
        return describeMunicipality(address, typed);
    case AddressPart::StreetType:
    case AddressPart::Street:
        return "no se ha resuelto la vía " + dbase::inQuotes(typed.street) + ".";
    case AddressPart::Number:
        break;
    }
    return describeNumber(address, typed) +
           (address.postalCode.empty() ? "." : "; el código postal es el del comienzo de la vía.");
}

} // namespace

ExitCode direccion(const AddressOptions& options) {
    usePostalTables(options.folder);
    const ambrel::ResolvedAddress address =
        ambrel::resolveAddress(folderDatabase, {.municipality = ansi(options.municipality),
                                                .streetType = ansi(options.streetType),
                                                .street = ansi(options.street),
                                                .number = ansi(options.number),
                                                .province = ansi(options.province),
                                                .ineCode = ansi(options.ineCode)});
    writeAddress(address, options);
    for (const AddressPart part : address.unsettled) {
        complain(describe(part, address, options));
    }
    return address.isSettled() ? ExitCode::done : ExitCode::negative;
}

} // namespace ambcp
