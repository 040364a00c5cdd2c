// Municipality lookups of the controller.
#include "controller/MunicipalitySearch.h"

#include "services/Ruttb.h"

namespace ambrel {
namespace {

/// The column that the active tag orders by; null for a tag not used by any search.
dbase::Field* searchedField(TDMCodPostales& tables) {
    const std::string& tag = tables.tbMunicipi.tag();
    for (dbase::Field* field :
         {&tables.tbMunicipiNOMBRE, &tables.tbMunicipiCOD_INE, &tables.tbMunicipiCODPOSTAL}) {
        if (field->name() == tag) {
            return field;
        }
    }
    return nullptr;
}

} // namespace

bool findMunicipality(TDMCodPostales& tables, const std::string& value, bool exact) {
    const dbase::Field* field = searchedField(tables);
    return field && TBBusca(tables.tbMunicipi, {{field->name(), value}}, exact);
}

std::string municipalityText(TDMCodPostales& tables) {
    const dbase::Field* field = searchedField(tables);
    return field ? field->text() : std::string();
}

std::optional<NamedCompletion> completeMunicipality(TDMCodPostales& tables, const EditedText& edited) {
    static_cast<void>(findMunicipality(tables, edited.text, nearestSearch));
    const auto completion = complete(edited, municipalityText(tables));
    if (!completion) {
        return std::nullopt;
    }
    return NamedCompletion{*completion, tables.tbMunicipiCOD_INE.integer()};
}

std::optional<std::string> onlyPostalCode(const TDMCodPostales& tables) {
    if (tables.tbMunicipiUNICO.text() != singleCodeMark) {
        return std::nullopt;
    }
    return tables.tbMunicipiCODPOSTAL.text();
}

} // namespace ambrel
