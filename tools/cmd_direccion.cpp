// ambcp direccion: an address as the controller would complete it.

#include <algorithm>
#include <cstdio>
#include <string_view>

#include <unistd.h>

#include "address/AddressResolution.h"
#include "dbase/codepage.h"
#include "dbase/databases.h"
#include "tools/commands.h"
#include "tools/csv.h"
#include "tools/cut_table.h"
#include "tools/table_folder.h"

namespace ambcp {

namespace {

/// A text that the tables cannot hold matches nothing, like an empty one.
std::string ansi(const std::string& text) {
    return dbase::CodePage::windows1252().fromUtf8(text).value_or(std::string());
}

bool isUnsettled(const ambrel::ResolvedAddress& address, ambrel::AddressPart part) {
    return std::ranges::find(address.unsettled, part) != address.unsettled.end();
}

void writeAddress(const ambrel::ResolvedAddress& address, const AddressOptions& typed) {
    const dbase::CodePage& page = dbase::CodePage::windows1252();
    // What was not found is shown as it was typed, whatever the tables could hold of it.
    const auto name = [&](ambrel::AddressPart part, const std::string& found, const std::string& asTyped) {
        return isUnsettled(address, part) ? asTyped : page.toUtf8(found);
    };
    CsvWriter csv(STDOUT_FILENO);
    for (const std::string_view column : {"MUNICIPIO", "COD_INE", "VIA", "TIPO_VIA", "CODPOSTAL"}) {
        csv.field(column);
    }
    csv.endRecord();
    csv.field(name(ambrel::AddressPart::Municipality, address.municipality, typed.municipality));
    csv.field(page.toUtf8(address.ineCode));
    csv.field(name(ambrel::AddressPart::Street, address.street, typed.street));
    csv.field(page.toUtf8(address.streetType));
    csv.field(page.toUtf8(address.postalCode));
    csv.endRecord();
    csv.flush();
}

std::string describe(ambrel::AddressPart part, const AddressOptions& typed) {
    switch (part) {
    case ambrel::AddressPart::Municipality:
        return "el municipio «" + typed.municipality + "»";
    case ambrel::AddressPart::Street:
        return "la vía «" + typed.street + "»";
    case ambrel::AddressPart::Number:
        return "el número «" + typed.number + "»";
    }
    return {};
}

} // namespace

ExitCode direccion(const AddressOptions& options) {
    const std::string folder = useFolder(options.folder);
    for (const char* table : {"MUNICIPI", "POSTAL"}) {
        if (const auto file = dbase::findTableFile(folder, table)) { // the search says which one is not there
            requireWhole(*file);
        }
    }
    const ambrel::ResolvedAddress address =
        ambrel::resolveAddress(folderDatabase, {.municipality = ansi(options.municipality),
                                                .streetType = ansi(options.streetType),
                                                .street = ansi(options.street),
                                                .number = ansi(options.number)});
    writeAddress(address, options);
    for (const ambrel::AddressPart part : address.unsettled) {
        const bool keepsCode = part == ambrel::AddressPart::Number && !address.postalCode.empty();
        std::fprintf(stderr, "ambcp: no se ha resuelto %s%s.\n", describe(part, options).c_str(),
                     keepsCode ? "; el código postal es el del comienzo de la vía" : "");
    }
    return address.isSettled() ? ExitCode::done : ExitCode::negative;
}

} // namespace ambcp
