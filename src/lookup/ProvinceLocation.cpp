// From a postal code to its province.
#include "lookup/ProvinceLocation.h"

#include <optional>

#include "data/TableDefinitions.h"
#include "data/TableScope.h"
#include "dbase/dataset/row_walk.h"
#include "dbase/lock/read_scope.h"
#include "services/Ruttb.h"

namespace ambrel {
namespace {

/// The code of a province as stored in PROVIN, from a postal code or an INE code.
std::string storedCode(std::string_view code) { return '0' + provinceOf(code); }

/// Searches from the postal code on for the capital among codes of the same province; false if there is none.
bool goToCapital(dbase::Dataset& municipalities, const std::string& postalCode) {
    const dbase::Field& code = municipalities.field("CODPOSTAL");
    const dbase::Field& mark = municipalities.field("CAPITAL");
    const std::string wanted = provinceOf(postalCode);
    return TBBusca(municipalities, {{"CODPOSTAL", postalCode}}, nearestSearch) &&
           dbase::walkTo(
               municipalities, [&] { return provinceOf(code.view()) == wanted; },
               [&] { return mark.view() == capitalMark; });
}

/// The capital of the province that a postal code begins with; its INE code gives the province.
std::optional<Province> provinceOfCapital(dbase::Dataset& municipalities, const std::string& postalCode) {
    const dbase::NotificationPause pause(municipalities);
    TagScope order(municipalities, "CODPOSTAL");
    std::optional<Province> found;
    if (goToCapital(municipalities, postalCode)) {
        found = Province{.name = municipalities.field("NOMBRE").text(),
                         .code = storedCode(municipalities.field("COD_INE").view())};
    }
    order.restore();
    return found;
}

/// Name of the province with a code; null for a code that only other territories have.
std::optional<std::string> nameOfProvince(dbase::Dataset& provinces, const std::string& code) {
    TBIndexa("CODIGO", provinces);
    const TableScope open(provinces);
    const dbase::Field& key = provinces.field("CODIGO");
    const dbase::Field& group = provinces.field("GRUPO");
    const bool isFound =
        TBBusca(provinces, {{"CODIGO", code}}, exactSearch) &&
        dbase::walkTo(
            provinces, [&] { return key.view() == code; }, [&] { return group.integer() == provinceGroup; });
    return isFound ? std::optional(provinces.field("PROVINCIA").text()) : std::nullopt;
}

} // namespace

Province locateProvince(dbase::Dataset& municipalities, dbase::Dataset& provinces,
                        const std::string& postalCode) {
    const dbase::ReadScope scope;
    Province province{.name = municipalities.field("NOMBRE").text(), .code = storedCode(postalCode)};
    if (const auto capital = provinceOfCapital(municipalities, postalCode)) {
        province = *capital;
    }
    if (const auto name = nameOfProvince(provinces, province.code)) {
        province.name = *name;
    }
    return province;
}

} // namespace ambrel
