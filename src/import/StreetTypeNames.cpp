// Looks up street types by name.
#include "import/StreetTypeNames.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "dbase/dataset/row_walk.h"
#include "dbase/system/trim.h"
#include "services/Ruttb.h"

namespace ambrel {
namespace {

using KnownType = std::pair<std::string_view, std::string_view>;

constexpr std::array<KnownType, 9> knownTypes{{
    {"PLACETA", "PZ"},
    {"PLAZUELA", "PZ"},
    {"CALLEJUELA", "CJ"},
    {"PUERTA", "ED"},
    {"PALACIO", "ED"},
    {"CERRO", "MT"},
    {"CAMINO VIEJO", "CM"},
    {"TRANSVERSAL", "TR"},
    {"RESIDENCIAL", "UR"},
}};

} // namespace

StreetTypeNames::StreetTypeNames(std::string database) : database_(std::move(database)) {}

void StreetTypeNames::open() {
    auto table = CreaTabla(database_, "TIPO_VIA.DBF", "NOMBRE", false, openNow);
    const dbase::Field& code = table->field("CODIGO");
    const dbase::Field& name = table->field("NOMBRE");
    dbase::forEachRow(*table, [&] {
        if (!code.isNull()) {
            types_.push_back({.name = name.text(), .code = code.text()});
        }
    });
    table_ = std::move(table);
}

std::string StreetTypeNames::ExtraeTipoVia(const std::string& name) {
    if (!table_) {
        open();
    }
    const std::string wanted(dbase::trimmedLine(std::string_view(name).substr(0, name.find('('))));
    std::string code;
    if (TBBusca(*table_, {{"NOMBRE", wanted}}, exactSearch)) {
        code = table_->field("CODIGO").text();
    } else if (!wanted.empty()) {
        const auto type = std::ranges::find_if(
            types_, [&](const Type& one) { return one.name.find(wanted) != std::string::npos; });
        code = type == types_.end() ? std::string() : type->code;
    }
    if (!code.empty()) {
        return code;
    }
    const auto known = std::ranges::find(knownTypes, wanted, &KnownType::first);
    return known == knownTypes.end() ? std::string() : std::string(known->second);
}

} // namespace ambrel
