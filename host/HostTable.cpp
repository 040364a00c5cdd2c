// Creates the host's own table and its sample customers.
#include "host/HostTable.h"

#include <array>

#include "dbase/dbf/codepage.h"
#include "dbase/system/databases.h"
#include "dbase/table/table_definition.h"

namespace host {
namespace {

constexpr const char* tableName = "CLIENTES";

/// Texts in UTF-8.
struct Customer {
    const char *name, *streetType, *street, *number, *floor, *postalCode, *municipality, *province;
};

// Addresses of the sample tables: towns with one and with several codes, two towns of one name, an unknown
// street.
constexpr std::array sampleCustomers{
    Customer{"Academia Trazo", "CL", "ALCALA", "45", "2º B", "28014", "MADRID", "MADRID"},
    Customer{"Bodegas Ribera del Tirón", "CL", "VEGA", "12", "", "26200", "HARO", "RIOJA, LA"},
    Customer{"Cafetería Diagonal", "AV", "DIAGONAL", "442", "bajo", "08008", "BARCELONA", "BARCELONA"},
    Customer{"Dulces Sierpes", "CL", "SIERPES", "8", "", "41001", "SEVILLA", "SEVILLA"},
    Customer{"Electricidad Poza", "CL", "LICENCIADO POZA", "31", "1º", "48011", "BILBAO", "BIZKAIA"},
    Customer{"Ferretería Dato", "CL", "DATO", "14", "", "01001", "VITORIA-GASTEIZ", "ALAVA/ARABA"},
    Customer{"Gestoría Goya", "CL", "GOYA", "88", "4º dcha.", "28009", "MADRID", "MADRID"},
    Customer{"Hotel Corrida", "CL", "CORRIDA", "40", "", "33206", "GIJON", "ASTURIAS"},
    Customer{"Imprenta Colón", "CL", "COLON", "20", "", "46004", "VALENCIA", "VALENCIA"},
    Customer{"Librería Complutense", "CL", "LIBREROS", "5", "", "28801", "ALCALA DE HENARES", "MADRID"},
    Customer{"Minas del Caudal", "CL", "VEGA DE ARRIBA", "10", "3º", "33600", "MIERES", "ASTURIAS"},
    Customer{"Náutica Finisterre", "AV", "FINISTERRE", "120", "", "15010", "CORUÑA, A", "CORUÑA, A"},
};

dbase::Column character(const char* name, std::uint16_t width) {
    return {.name = name, .type = dbase::ColumnType::Character, .width = width};
}

dbase::TableDefinition definition() {
    return {.name = tableName,
            .columns = {character("NOMBRE", 40), character("TIPO_VIA", 3), character("DOMICILIO", 45),
                        character("NUMERO", 6), character("PISO", 10), character("CODPOSTAL", 5),
                        character("VECINDAD", 53), character("PROVINCIA", 21)},
            .tags = {{.name = "NOMBRE", .expression = "NOMBRE"}}};
}

void addCustomer(HostTable& table, const Customer& customer) {
    const auto set = [](dbase::Field& field, const char* text) {
        field.setText(dbase::CodePage::windows1252().fromUtf8(text).value_or(std::string()));
    };
    table.data.append();
    set(table.name, customer.name);
    set(table.streetType, customer.streetType);
    set(table.street, customer.street);
    set(table.number, customer.number);
    set(table.floor, customer.floor);
    set(table.postalCode, customer.postalCode);
    set(table.municipality, customer.municipality);
    set(table.province, customer.province);
    table.data.post();
}

} // namespace

void createHostTable(const std::string& folder, FirstRows rows) {
    if (dbase::findTableFile(folder, tableName)) {
        return;
    }
    dbase::createTable(folder, definition());
    if (rows == FirstRows::None) {
        return;
    }
    constexpr const char* temporaryName = "CLIENTES_NUEVOS";
    dbase::setDatabaseFolder(temporaryName, folder);
    HostTable table(temporaryName);
    table.data.open();
    for (const Customer& customer : sampleCustomers) {
        addCustomer(table, customer);
    }
    table.data.close();
    dbase::setDatabaseFolder(temporaryName, {});
}

HostTable::HostTable(const std::string& database) : data(database, tableName, "NOMBRE") {}

} // namespace host
