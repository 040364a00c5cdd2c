// Looking a province up by postal code.
#include "controller/ProvinceName.h"

#include "data/Province.h"
#include "services/Rnumcad.h"
#include "services/Ruttb.h"

namespace ambrel {

std::string provinceName(const std::string& postalCode, const std::string& database) {
    const auto provinces = CreaTabla(database, "PROVIN.DBF", "CODIGO", false, openNow);
    // The code is passed as a number: the column has three characters, the postal code begins with two.
    const int code = Cad_Int(provinceOf(postalCode));
    if (!TBBusca(*provinces, {{"CODIGO", code}}, exactSearch)) {
        return {};
    }
    return provinces->field("PROVINCIA").text();
}

} // namespace ambrel
