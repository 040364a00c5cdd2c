// Filter and display name of the municipality cursors.
#include "data/WholeName.h"

#include <optional>

#include "dbase/dataset/row_walk.h"
#include "services/Confamb.h"
#include "services/Ruttb.h"

namespace ambrel {
namespace {

constexpr const char* withoutEntities = "ENT_MENOR=False";

/// Name of the municipality that an entity belongs to; null if none is found.
std::optional<std::string> municipalityOf(const std::string& ineCode, dbase::Dataset& all) {
    if (!TBBusca(all, {{"COD_INE", ineCode}}, exactSearch)) {
        return std::nullopt;
    }
    // Deliberate: the walk does not end with the code. If a code has only entities, the next municipality in
    // code order lends its name.
    const bool isFound = dbase::walkTo(all, [&] { return !all.field("ENT_MENOR").logical(); });
    return isFound ? std::optional(all.field("NOMBRE").text()) : std::nullopt;
}

} // namespace

void hideMinorEntities(dbase::Dataset& municipalities) {
    if (!Config.EntidadesMenores) {
        TBFiltra(municipalities, withoutEntities);
    } else if (municipalities.filter() == withoutEntities) { // left by an opening under another setting
        municipalities.clearFilter();
        municipalities.first();
    }
}

void calculateWholeName(dbase::Dataset& municipalities, dbase::Dataset& all) {
    if (!municipalities.autoCalculates()) {
        return;
    }
    std::string name = municipalities.field("NOMBRE").text();
    if (municipalities.field("ENT_MENOR").logical()) {
        if (const auto municipality = municipalityOf(municipalities.field("COD_INE").text(), all)) {
            name += " --> [" + *municipality + "]";
        }
    }
    municipalities.field("NOMBRE_COMPLETO").setText(name);
}

} // namespace ambrel
