#include <string>
#include <vector>

#include "package/AmbCodPostales.h"

// A table of the host, with the columns that it needs; a file whose columns do not match is not opened.
struct Members {
    dbase::Dataset data{"CLIENTES", "SOCIOS.DBF", "NOMBRE"};
    dbase::Field& name = data.bindCharacter("NOMBRE", 40);
    dbase::Field& postalCode = data.bindCharacter("CODPOSTAL", 5);
};

// Creates SOCIOS.DBF and SOCIOS.MDX; dbase::Error with code Exists if they are already there.
void createMembers(const std::string& folder) {
    dbase::createTable(folder, {.name = "SOCIOS",
                                .columns = {{.name = "NOMBRE", .width = 40},
                                            {.name = "ALTA", .type = dbase::ColumnType::Date, .width = 8},
                                            {.name = "CODPOSTAL", .width = 5}},
                                .tags = {{.name = "NOMBRE", .expression = "UPPER(NOMBRE)"},
                                         {.name = "POR_CODIGO",
                                          .expression = "CODPOSTAL+DTOS(ALTA)",
                                          .condition = "CODPOSTAL<>' '"}}});
}

// Stores many rows with one wait for the disk, at the end, instead of one each.
void storeAll(Members& members, const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        members.data.append();
        members.name.setText(name);
        members.data.post(dbase::Durability::Process);
    }
    members.data.sync();
}

// Reads many rows under one lock. Nothing in a scope may wait, neither for the user nor for another program.
std::vector<std::string> namesAt(Members& members, const std::string& postalCode) {
    const dbase::ReadScope scope;
    std::vector<std::string> names;
    members.data.first();
    for (bool isRow = !members.data.isEmpty(); isRow; isRow = members.data.next()) {
        if (members.postalCode.view() == postalCode) {
            names.push_back(members.name.text());
        }
    }
    return names;
}
