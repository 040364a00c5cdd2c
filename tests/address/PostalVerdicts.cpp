// Towns and streets for verdicts.
#include "PostalVerdicts.h"

namespace postal_tests {

PostalVerdicts::PostalVerdicts() {
    addProvinces({{"028", "MADRID"}, {"003", "ALICANTE/ALACANT"}, {"045", "TOLEDO"}});
    addMunicipalities({{"28079", "28001", "MADRID"},
                       {"28079", "28013", "MADRID"},
                       {"28079", "28014", "MADRID"},
                       {"28013", "28300", "ARANJUEZ", "S"},
                       {"28045", "28770", "COLMENAR VIEJO"},
                       {"28144", "28770", "SOTO DEL REAL"},
                       {"28150", "28720", "VILLANUEVA", "S"},
                       {"45100", "45720", "VILLANUEVA", "S"},
                       {"03014", "03001", "ALICANTE/ALACANT"},
                       {"03014", "03002", "ALICANTE/ALACANT"}});
    addStreetTypes({{"CL", "CALLE", "CARRER"},
                    {"PZ", "PLAZA", "PLAÇA"},
                    {"AV", "AVENIDA", "AVINGUDA"},
                    {"CR", "CARRETERA"},
                    {"PS", "PASEO", "PASSEIG"},
                    {"PL", "POLIGONO", "POLIGON"}});
    addStreets({{"28000001", "GRAN VIA", "CL", "28013", {1, 49}, {2, 50}},
                {"28000002", "GRAN VIA", "CL", "28001", {51, 99}, {52, 98}},
                {"28000003", "SANTA TERESA", "CL", "28001"},
                {"28000004", "CONSTITUCION", "AV", "28001"},
                {"28000005", "CONSTITUCION", "PZ", "28013"},
                {"28000006", "ROSAS", "CL", "28001"},
                {"28000007", "VELAZQUEZ", "CL", "28001", {1, 99}, {2, 98}},
                {"28000008", "ALCALA", "CL", "28014"},
                {"28000009", "TOLEDO", "CR", "28014"},
                {"28000010", "DOCTOR FLEMING", "CL", "28001"},
                {"28000011", "DOBLE", "CL", "28001"},
                {"28000012", "DOBLE", "CL", "28013"},
                {"28000013", "ALFONSO XII", "CL", "28014"},
                {"28000019", "SECTOR A", "CL", "28014"},
                {"28000020", "PARLA", "CL", "28014"},
                {"28000021", "MADRESELVA", "CL", "28001"},
                {"28000022", "MADRESILVA", "CL", "28014"},
                {"28000023", "PUENTE DE TOLEDO", "CL", "28014"},
                {"28000024", "COSTANILLA DEL OLMO", "CL", "28014"},
                {"28000025", "OLMO", "CL", "28014"},
                {"28000026", "ALMENDRO", "PL", "28014"},
                {"28000014", "MAYOR", "CL", "28300"},
                {"28000015", "REAL", "CL", "28770", {1, 9999}, {2, 9998}, "28", "9", "28045"},
                {"28000016", "REAL", "CL", "28770", {1, 9999}, {2, 9998}, "28", "9", "28144"},
                {"28000017", "MERCADO", "PZ", "28770", {1, 9999}, {2, 9998}, "28", "9", "28144"},
                {"28000018", "OLIVO", "CL", "28720", {1, 9999}, {2, 9998}, "28", "9", "28150"},
                {"45000018", "OLIVO", "CL", "45720", {1, 9999}, {2, 9998}, "45", "9", "45100"},
                {"45000019", "PARRA", "CL", "45720", {1, 9999}, {2, 9998}, "45", "9", "45100"},
                {"03000001", "MAISONNAVE", "AV", "03001", {1, 9999}, {2, 9998}, "03", "0", "03014"}});
}

ambrel::JudgedAddress PostalVerdicts::judge(ambrel::GivenAddress given) {
    for (std::string* text : {&given.line, &given.type, &given.street, &given.number, &given.rest,
                              &given.postalCode, &given.municipality, &given.province}) {
        *text = ambrel::test::ansi(*text);
    }
    return validator.validate(given);
}

std::string PostalVerdicts::verdict(const ambrel::GivenAddress& given) {
    return std::string(verdictName(judge(given).verdict));
}

} // namespace postal_tests
