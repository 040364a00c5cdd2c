// The host's own table: customers with their addresses, in dBase format.
#pragma once

#include <string>

#include "dbase/dataset/dataset.h"

namespace host {

enum class FirstRows { None, Sample };

/// Creates CLIENTES with its index in a folder, unless it is there.
/// Errors: dbase::Error if it cannot be created.
void createHostTable(const std::string& folder, FirstRows rows);

/// CLIENTES in the order of the names. Its six address columns are those that the package expects in any host
/// table; the street's name is in DOMICILIO and the municipality's in VECINDAD. Texts are Windows-1252.
struct HostTable {
    explicit HostTable(const std::string& database);

    dbase::Dataset data;
    dbase::Field& name = data.bindCharacter("NOMBRE", 40);
    dbase::Field& streetType = data.bindCharacter("TIPO_VIA", 3);
    dbase::Field& street = data.bindCharacter("DOMICILIO", 45);
    dbase::Field& number = data.bindCharacter("NUMERO", 6);
    dbase::Field& floor = data.bindCharacter("PISO", 10);
    dbase::Field& postalCode = data.bindCharacter("CODPOSTAL", 5);
    dbase::Field& municipality = data.bindCharacter("VECINDAD", 53);
    dbase::Field& province = data.bindCharacter("PROVINCIA", 21);
};

} // namespace host
