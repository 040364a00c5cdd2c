// Inventing customers.
#include "tools/customers/InventedCustomers.h"

#include <algorithm>

#include "tools/customers/Writing.h"

namespace customers {

using invented::Dice;

namespace {

enum Column { Number, Name, Address, House, Floor, PostalCode, Town, Province };

struct Kind {
    std::string_view name;
    std::string_view verdicts; // that are no mistake
};
constexpr std::array<Kind, faultCount> kinds{{
    {"ninguna", "CORRECTA"},
    {"mayusculas", "CORRECTA"},
    {"tipo y numero en la via", "CORRECTA"},
    {"errata en la via", "CORREGIDA DUDOSA AMBIGUA VIA_DESCONOCIDA"},
    {"abreviatura", "CORREGIDA DUDOSA"},
    {"errata en el municipio", "CORREGIDA DUDOSA MUNICIPIO_DESCONOCIDO"},
    {"otra escritura del municipio", "CORRECTA COMPLETADA CORREGIDA"},
    {"sin codigo", "COMPLETADA"},
    {"codigo de otra via", "CODIGO_DISTINTO"},
    {"sin municipio", "COMPLETADA"},
    {"letra, intervalo o piso", "CORRECTA"},
    {"sin numero", "CORRECTA"},
    {"via inexistente", "VIA_DESCONOCIDA DUDOSA"},
    {"municipio inexistente", "MUNICIPIO_DESCONOCIDO"},
    {"vacia", "VACIA"},
    {"fila rota", "FILA_ROTA"},
}};

const Kind& kindOf(Fault fault) { return kinds[static_cast<std::size_t>(fault)]; }

/// Words that no street or town of the sample has.
const std::vector<std::string> inventions{"PANGOLIN AZUL",   "TRECE TORTUGAS", "ZAPATILLAS VERDES",
                                          "QUIMERA DORMIDA", "YUNQUE ROTO",    "WOLFRAMIO",
                                          "OJOPLATICOS",     "XILOFONO GRANDE"};

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
        return dice.among(first) + " " + surname + " " + dice.among(last);
    }
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

bool isDivided(const Street& street) {
    return std::ranges::any_of(street.stretches, [&](const Stretch& one) {
        return one.postalCode != street.stretches.front().postalCode;
    });
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
    spoil(customer, street);
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
        customer.values[Floor] = std::to_string(1 + dice_.roll(9)) + "º " + "ABCD"[dice_.roll(4)];
    }
    return customer;
}

void InventedCustomers::spoil(Customer& customer, const Street& street) {
    std::vector<std::string>& values = customer.values;
    const auto mustNotBeSettled = [&] {
        customer.ineCode = customer.type = customer.street = customer.postalCode = "";
    };
    const auto isAsItWas = [&] {
        customer.fault = Fault::None;
        customer.verdicts = kindOf(Fault::None).verdicts;
    };
    switch (customer.fault) {
    case Fault::None:
        break;
    case Fault::LetterCase:
        values[Address] = dice_.oneIn(2) ? lowered(values[Address]) : titled(values[Address]);
        values[Town] = lowered(values[Town]);
        break;
    case Fault::TypeInStreet:
        values[Address] = typeWord(street.type, dice_) + ' ' + titled(street.name) +
                          (dice_.oneIn(2) ? ", " : " ") + values[House] +
                          (values[Floor].empty() ? "" : ", " + values[Floor]);
        values[House] = values[Floor] = "";
        break;
    case Fault::Slip:
        values[Address] = typeWord(street.type, dice_) + ' ' + mistyped(street.name, dice_);
        break;
    case Fault::ShortForm:
        if (shortened(street.name) == street.name) {
            return isAsItWas();
        }
        values[Address] = typeWord(street.type, dice_) + ' ' + shortened(street.name);
        break;
    case Fault::TownSlip:
        values[Town] = mistyped(street.town, dice_);
        break;
    case Fault::OtherLanguage:
        values[Town] = spokenTown(street.town, dice_);
        break;
    case Fault::NoCode:
        values[PostalCode] = "";
        break;
    case Fault::OtherCode: {
        const Street& other = dice_.among(streets_);
        const std::string& code = other.stretches.front().postalCode;
        if (other.ineCode != street.ineCode || std::ranges::any_of(street.stretches, [&](const Stretch& one) {
                return one.postalCode == code;
            })) {
            return isAsItWas();
        }
        values[PostalCode] = code;
        mustNotBeSettled();
        break;
    }
    case Fault::NoTown:
        values[Town] = values[Province] = "";
        break;
    case Fault::NumberAndFloor:
        values[House] += dice_.among(std::vector<std::string>{
            " bis", " A", "-" + std::to_string(std::stoi(values[House]) + 2), ", 2º izda.", " bajo"});
        values[Floor] = "";
        break;
    case Fault::NoNumber:
        values[House] = dice_.oneIn(2) ? "" : "s/n";
        if (isDivided(street)) {
            customer.verdicts = "SIN_NUMERO";
            mustNotBeSettled();
        }
        break;
    case Fault::UnknownStreet:
        values[Address] = typeWord(street.type, dice_) + ' ' + dice_.among(inventions);
        mustNotBeSettled();
        break;
    case Fault::UnknownTown:
        values[Town] = dice_.among(inventions);
        values[PostalCode] = "";
        mustNotBeSettled();
        break;
    case Fault::Empty:
        std::fill(values.begin() + Address, values.end(), "");
        mustNotBeSettled();
        break;
    case Fault::BrokenRow:
        values.emplace_back("sobra");
        mustNotBeSettled();
        break;
    }
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
