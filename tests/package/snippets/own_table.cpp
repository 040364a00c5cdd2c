#include <string>
#include <vector>

#include "package/AmbCodPostales.h"

// A table of the host, with the columns that it needs; a file whose columns do not fit is not opened.
struct Customers {
    dbase::Dataset data{"CLIENTES", "CLIENTES.DBF", "NOMBRE"};
    dbase::Field& name = data.bindCharacter("NOMBRE", 40);
    dbase::Field& postalCode = data.bindCharacter("CODPOSTAL", 5);
};

// Stores many rows with one wait for the disk, behind them, instead of one each.
void storeAll(Customers& customers, const std::vector<std::string>& names) {
    const ambrel::SyncedTogether together;
    for (const std::string& name : names) {
        customers.data.append();
        customers.name.setText(name);
        TBPost(customers.data);
    }
    customers.data.sync();
}
