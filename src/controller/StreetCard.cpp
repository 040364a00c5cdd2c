// Provinces and street types of the street card.
#include "controller/StreetCard.h"

#include "data/TableScope.h"
#include "dbase/dataset/row_walk.h"
#include "services/Rnumcad.h"
#include "services/Ruttb.h"

namespace ambrel {

std::vector<Province> StreetCardTables::provinces() {
    TBIndexa("ALFABETICO", tbProvin);
    return spanishProvinces(tbProvin);
}

std::vector<StreetType> StreetCardTables::streetTypes() {
    std::vector<StreetType> found;
    const TableScope open(tbTipoVia);
    dbase::forEachRow(tbTipoVia, [&] { found.push_back({tbTipoViaCODIGO.text(), tbTipoViaNOMBRE.text()}); });
    return found;
}

std::optional<Province> StreetCardTables::findProvince(const std::string& code) {
    TBIndexa("CODIGO", tbProvin);
    const TableScope open(tbProvin);
    if (!TBBusca(tbProvin, {{"CODIGO", "0" + code}}, exactSearch)) {
        return std::nullopt;
    }
    return Province{tbProvinPROVINCIA.text(), tbProvinCODIGO.text()};
}

std::optional<StreetType> StreetCardTables::findStreetType(const std::string& code) {
    TBIndexa("CODIGO", tbTipoVia);
    const TableScope open(tbTipoVia);
    // A search compares only as much as the column holds; a longer code must not match its beginning.
    if (!TBBusca(tbTipoVia, {{"CODIGO", code}}, exactSearch) || tbTipoViaCODIGO.text() != code) {
        return std::nullopt;
    }
    return StreetType{tbTipoViaCODIGO.text(), tbTipoViaNOMBRE.text()};
}

std::string StreetCardTables::provinceCode(const std::string& name) {
    return ambrel::provinceCode(tbProvin, name);
}

std::string provinceNameIn(std::string_view text, std::string_view shown) {
    const std::size_t bracket = text.find('[');
    if (bracket == std::string_view::npos) {
        return std::string(withoutBlanks(text));
    }
    // Deliberate: the position is that of the bracket in the text passed in, the name that of the text shown.
    return std::string(withoutBlanks(withoutBlanks(shown).substr(0, bracket)));
}

std::string streetTypeCodeIn(std::string_view text) {
    const std::size_t hyphen = text.find('-');
    const std::string_view trimmed = withoutBlanks(text);
    return UpperCase(withoutBlanks(trimmed.substr(0, hyphen)));
}

bool isPostalCodeOf(std::string_view postalCode, std::string_view provinceCode) {
    return postalCode.size() == postalCodeDigits && provinceCode.size() == provinceDigits &&
           postalCode.starts_with(provinceCode);
}

} // namespace ambrel
