// The street card's lookups in PROVIN and TIPO_VIA, and the interpretation of its texts.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "controller/ProvinceStreets.h"
#include "dbase/dataset/dataset.h"

namespace ambrel {

/// A row of TIPO_VIA.
struct StreetType {
    std::string code;
    std::string name;
};

/// The card's own tables, closed except during an operation, unless other code has opened them. Errors of the
/// operations: dbase::Error of a table that cannot be opened.
class StreetCardTables {
public:
    /// Spanish provinces by name, and all street types by code.
    [[nodiscard]] std::vector<Province> provinces();
    [[nodiscard]] std::vector<StreetType> streetTypes();

    /// By the two digits of a province code, as stored in streets.
    [[nodiscard]] std::optional<Province> findProvince(const std::string& code);
    [[nodiscard]] std::optional<StreetType> findStreetType(const std::string& code);

    /// Two digits of the province with exactly this name; "00" if there is none.
    [[nodiscard]] std::string provinceCode(const std::string& name);

    /// Street types.
    dbase::Dataset tbTipoVia{"DB", "TIPO_VIA.DBF", "CODIGO"};
    dbase::Field& tbTipoViaCODIGO = tbTipoVia.bindCharacter("CODIGO", 2);
    dbase::Field& tbTipoViaCODPOSTAL = tbTipoVia.bindCharacter("CODPOSTAL", 3);
    dbase::Field& tbTipoViaNOMBRE = tbTipoVia.bindCharacter("NOMBRE", 15);

    /// Provinces and countries.
    dbase::Dataset tbProvin{"DB", "PROVIN.DBF", "ALFABETICO"};
    dbase::Field& tbProvinPROVINCIA = tbProvin.bindCharacter("PROVINCIA", 21);
    dbase::Field& tbProvinCODIGO = tbProvin.bindCharacter("CODIGO", 3);
    dbase::Field& tbProvinCOD_198 = tbProvin.bindCharacter("COD_198", 3);
    dbase::Field& tbProvinGRUPO = tbProvin.bindInteger("GRUPO");
};

/// Name of the province given by a text such as "MADRID [28]", while the card shows `shown`. Without "[" it
/// is the text itself.
[[nodiscard]] std::string provinceNameIn(std::string_view text, std::string_view shown);

/// Code, in capitals, of the street type given by a text such as "cl" or "CL - CALLE".
[[nodiscard]] std::string streetTypeCodeIn(std::string_view text);

/// True for five characters that begin with the province's two digits.
[[nodiscard]] bool isPostalCodeOf(std::string_view postalCode, std::string_view provinceCode);

} // namespace ambrel
