#include <optional>
#include <string>
#include <vector>

#include "package/AmbCodPostales.h"

// A table of the host, with the columns that it needs; a file whose columns do not fit is not opened.
struct Customers {
    dbase::Dataset data{"CLIENTES", "CLIENTES.DBF", "NOMBRE"};
    dbase::Field& name = data.bindCharacter("NOMBRE", 40);
    dbase::Field& postalCode = data.bindCharacter("CODPOSTAL", 5);
};

// Stores many rows with a wait for the disk at the end instead of one each: the last one is stored as
// Config.AsegurarEnDisco says, and puts those before it on the disk, too.
void storeAll(Customers& customers, const std::vector<std::string>& names) {
    std::optional<ambrel::SyncedTogether> together(std::in_place);
    for (const std::string& name : names) {
        customers.data.append();
        customers.name.setText(name);
        if (&name == &names.back())
            together.reset();
        TBPost(customers.data);
    }
}
