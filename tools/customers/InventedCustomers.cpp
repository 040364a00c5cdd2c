// Inventing customers.
#include "tools/customers/InventedCustomers.h"

#include <algorithm>

#include "tools/customers/Writing.h"

namespace customers {

using invented::Dice;

namespace {

enum Column { Number, Name, Address, House, Floor, PostalCode, Town, Province };

/// A customer's row before a fault, and what the fault may use.
struct Spoiling {
    Customer& customer;
    const Street& street;
    const std::vector<Street>& streets;
    Dice& dice;

    [[nodiscard]] std::string& value(Column column) const { return customer.values[column]; }
    /// A way to write the street's type, and a blank.
    [[nodiscard]] std::string typeBefore() const { return typeWord(street.type, dice) + ' '; }
    void mustNotBeSettled() const {
        customer.ineCode = customer.type = customer.street = customer.postalCode = "";
    }
    /// For a row that cannot have the fault.
    void leaveAsItIs() const;
};

void changeLetterCase(const Spoiling& row) {
    std::string& address = row.value(Address);
    address = row.dice.oneIn(2) ? lowered(address) : titled(address);
    row.value(Town) = lowered(row.value(Town));
}

void writeAllInStreet(const Spoiling& row) {
    const std::string floor = row.value(Floor);
    const std::string separator = row.dice.oneIn(2) ? ", " : " ";
    row.value(Address) = row.typeBefore() + titled(row.street.name) + separator + row.value(House) +
                         (floor.empty() ? "" : ", " + floor);
    row.value(House) = row.value(Floor) = "";
}

void mistypeStreet(const Spoiling& row) {
    const std::string name = mistyped(row.street.name, row.dice);
    row.value(Address) = row.typeBefore() + name;
}

void shortenStreet(const Spoiling& row) {
    const std::string shorter = shortened(row.street.name);
    if (shorter == row.street.name) {
        return row.leaveAsItIs();
    }
    row.value(Address) = row.typeBefore() + shorter;
}

void mistypeTown(const Spoiling& row) { row.value(Town) = mistyped(row.street.town, row.dice); }

void speakTown(const Spoiling& row) { row.value(Town) = spokenTown(row.street.town, row.dice); }

void leaveOutCode(const Spoiling& row) { row.value(PostalCode) = ""; }

void takeOtherCode(const Spoiling& row) {
    const Street& other = row.dice.among(row.streets);
    const std::string& code = other.stretches.front().postalCode;
    const bool isOwn =
        std::ranges::find(row.street.stretches, code, &Stretch::postalCode) != row.street.stretches.end();
    if (other.ineCode != row.street.ineCode || isOwn) {
        return row.leaveAsItIs();
    }
    row.value(PostalCode) = code;
    row.mustNotBeSettled();
}

void leaveOutTown(const Spoiling& row) { row.value(Town) = row.value(Province) = ""; }

void addToNumber(const Spoiling& row) {
    std::string& house = row.value(House);
    house += row.dice.among(std::vector<std::string>{" bis", " A", "-" + std::to_string(std::stoi(house) + 2),
                                                     ", 2º izda.", " bajo"});
    row.value(Floor) = "";
}

bool isDivided(const Street& street) {
    return std::ranges::any_of(street.stretches, [&](const Stretch& one) {
        return one.postalCode != street.stretches.front().postalCode;
    });
}

void leaveOutNumber(const Spoiling& row) {
    row.value(House) = row.dice.oneIn(2) ? "" : "s/n";
    if (isDivided(row.street)) {
        row.customer.verdicts = "SIN_NUMERO";
        row.mustNotBeSettled();
    }
}

/// Words that no street or town of the sample has.
const std::vector<std::string> inventions{"PANGOLIN AZUL",   "TRECE TORTUGAS", "ZAPATILLAS VERDES",
                                          "QUIMERA DORMIDA", "YUNQUE ROTO",    "WOLFRAMIO",
                                          "OJOPLATICOS",     "XILOFONO GRANDE"};

void inventStreet(const Spoiling& row) {
    const std::string& name = row.dice.among(inventions);
    row.value(Address) = row.typeBefore() + name;
    row.mustNotBeSettled();
}

void inventTown(const Spoiling& row) {
    row.value(Town) = row.dice.among(inventions);
    row.value(PostalCode) = "";
    row.mustNotBeSettled();
}

void leaveOutAll(const Spoiling& row) {
    std::fill(row.customer.values.begin() + Address, row.customer.values.end(), "");
    row.mustNotBeSettled();
}

void breakRow(const Spoiling& row) {
    row.customer.values.emplace_back("sobra");
    row.mustNotBeSettled();
}

struct Kind {
    std::string_view name;
    std::string_view verdicts; // that are not a mistake
    void (*spoil)(const Spoiling& row);
};
constexpr std::array<Kind, faultCount> kinds{{
    {"ninguna", "CORRECTA", [](const Spoiling&) {}},
    {"mayusculas", "CORRECTA", changeLetterCase},
    {"tipo y numero en la via", "CORRECTA", writeAllInStreet},
    {"errata en la via", "CORREGIDA DUDOSA AMBIGUA VIA_DESCONOCIDA", mistypeStreet},
    {"abreviatura", "CORREGIDA DUDOSA", shortenStreet},
    {"errata en el municipio", "CORREGIDA DUDOSA MUNICIPIO_DESCONOCIDO", mistypeTown},
    {"otra escritura del municipio", "CORRECTA COMPLETADA CORREGIDA", speakTown},
    {"sin codigo", "COMPLETADA", leaveOutCode},
    {"codigo de otra via", "CODIGO_DISTINTO", takeOtherCode},
    {"sin municipio", "COMPLETADA", leaveOutTown},
    {"letra, intervalo o piso", "CORRECTA", addToNumber},
    {"sin numero", "CORRECTA", leaveOutNumber},
    {"via inexistente", "VIA_DESCONOCIDA DUDOSA", inventStreet},
    {"municipio inexistente", "MUNICIPIO_DESCONOCIDO", inventTown},
    {"vacia", "VACIA", leaveOutAll},
    {"fila rota", "FILA_ROTA", breakRow},
}};

const Kind& kindOf(Fault fault) { return kinds[static_cast<std::size_t>(fault)]; }

void Spoiling::leaveAsItIs() const {
    customer.fault = Fault::None;
    customer.verdicts = kindOf(Fault::None).verdicts;
}

std::string personName(Dice& dice) {
    static const std::vector<std::string> first{"Ana",   "Luis", "Begoña", "Íñigo",  "María José",
                                                "Jordi", "Uxía", "Ramón",  "Nekane", "Francisco"};
    static const std::vector<std::string> last{"García", "Pérez",  "Muñoz", "Etxeberria",
                                               "Puig",   "Castro", "Ortega"};
    const std::string surname = dice.among(last);
    switch (dice.roll(40)) {
    case 0:
        return surname + "; hijos y compañía"; // has to be quoted
    case 1:
        return "Hnos. \"" + surname + "\"";
    case 2:
        return "Talleres " + surname + "\n(almacén)"; // with a line break inside
    default:
        break;
    }
    const std::string second = dice.among(last);
    return dice.among(first) + " " + surname + " " + second;
}

std::string quoted(const std::string& value) {
    if (value.find_first_of(";,\"\n") == std::string::npos) {
        return value;
    }
    std::string text = "\"";
    for (const char letter : value) {
        text += letter;
        if (letter == '"') {
            text += letter;
        }
    }
    return text + '"';
}

int numberIn(const Stretch& stretch, Dice& dice) {
    const bool isOdd = dice.oneIn(2);
    const int first = isOdd ? stretch.oddFirst : stretch.evenFirst;
    const int last = isOdd ? stretch.oddLast : stretch.evenLast;
    return std::min(first + 2 * static_cast<int>(dice.roll(20)), last);
}

} // namespace

std::string_view faultName(Fault fault) { return kindOf(fault).name; }

InventedCustomers::InventedCustomers(std::uint64_t seed) : streets_(sampleStreets()), dice_(seed) {}

Customer InventedCustomers::next() {
    const Fault fault =
        dice_.roll(100) < 35 ? Fault::None : static_cast<Fault>(1 + dice_.roll(faultCount - 1));
    const Street& street = dice_.among(streets_);
    Customer customer = written(fault, street);
    kindOf(fault).spoil({customer, street, streets_, dice_});
    return customer;
}

Customer InventedCustomers::written(Fault fault, const Street& street) {
    const Stretch& stretch = dice_.among(street.stretches);
    const std::string number = std::to_string(numberIn(stretch, dice_));
    Customer customer{.number = ++count_,
                      .fault = fault,
                      .values = {std::to_string(count_), personName(dice_),
                                 typeWord(street.type, dice_) + ' ' + street.name, number, "",
                                 stretch.postalCode, street.town, street.province},
                      .verdicts = std::string(kindOf(fault).verdicts),
                      .ineCode = street.ineCode,
                      .type = street.type,
                      .street = street.name,
                      .postalCode = stretch.postalCode};
    if (dice_.oneIn(3)) {
        const char door = "ABCD"[dice_.roll(4)];
        customer.values[Floor] = std::to_string(1 + dice_.roll(9)) + "º " + door;
    }
    return customer;
}

std::string headingLine() {
    std::string line;
    for (const std::string_view name : columnNames) {
        line += (line.empty() ? "" : ";") + std::string(name);
    }
    return line + "\r\n";
}

std::string rowOf(const Customer& customer) {
    std::string line;
    for (const std::string& value : customer.values) {
        line += (&value == &customer.values.front() ? "" : ";") + quoted(value);
    }
    return line + "\r\n";
}

std::string truthHeading() { return "CLIENTE,FALTA,VEREDICTOS,COD_INE,TIPO_VIA,VIA,CODPOSTAL\n"; }

std::string truthOf(const Customer& customer) {
    std::string line = std::to_string(customer.number);
    for (const std::string& value : {std::string(faultName(customer.fault)), customer.verdicts,
                                     customer.ineCode, customer.type, customer.street, customer.postalCode}) {
        line += ',' + quoted(value);
    }
    return line + '\n';
}

} // namespace customers
