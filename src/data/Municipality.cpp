// What the rows of a municipality say of it.
#include "data/Municipality.h"

#include <algorithm>

#include "data/Province.h"
#include "data/TableDefinitions.h"
#include "dbase/dataset/row_walk.h"
#include "dbase/lock/read_scope.h"

namespace ambrel {
namespace {

void addOnce(std::vector<std::string>& values, std::string_view value) {
    if (std::ranges::find(values, value) == values.end()) {
        values.emplace_back(value);
    }
}

} // namespace

bool Municipality::hasPostalCode(std::string_view postalCode) const {
    return std::ranges::binary_search(postalCodes, postalCode);
}

bool Municipality::owns(std::string_view streetPostalCode, std::string_view streetIneCode) const {
    // A code missing from MUNICIPI; a municipality marked as having a single code cannot have another one.
    return hasPostalCode(streetPostalCode) || (streetIneCode == ineCode && !hasOneCode);
}

void MunicipalityRows::add(std::string_view postalCode, std::string_view province, std::string_view name,
                           bool isEntity, std::string_view onlyCode) {
    if (!postalCode.empty()) {
        addOnce(found_.postalCodes, postalCode);
    }
    if (!province.empty()) {
        addOnce(found_.provinces, province);
    }
    if (found_.name.empty() || (!isNamed_ && !isEntity)) {
        found_.name = name;
        isNamed_ = !isEntity;
    }
    isMarked_ = isMarked_ || onlyCode == singleCodeMark;
}

Municipality MunicipalityRows::finish() {
    for (const std::string& code : found_.postalCodes) {
        addOnce(found_.provinces, provinceOf(code));
    }
    std::ranges::sort(found_.postalCodes);
    found_.hasOneCode = isMarked_ && found_.postalCodes.size() == 1;
    return std::move(found_);
}

MunicipalityCursor::MunicipalityCursor(const std::string& database) : rows_(database, "MUNICIPI", "COD_INE") {
    rows_.open();
}

std::optional<Municipality> MunicipalityCursor::find(const std::string& ineCode) {
    const dbase::ReadScope scope;
    if (ineCode.empty() || !rows_.seek({{"COD_INE", ineCode}}, dbase::SeekMode::Exact)) {
        return std::nullopt;
    }
    MunicipalityRows rows(ineCode);
    const auto hasCode = [&] { return ineCode_.view() == ineCode; };
    dbase::forEachRowWhile(rows_, hasCode, [&] {
        rows.add(postalCode_.view(), province_.view(), name_.view(), isEntity_.logical(), onlyCode_.view());
    });
    return rows.finish();
}

bool MunicipalityCursor::mentions(const std::string& ineCode, std::string_view name) {
    const dbase::ReadScope scope;
    return !ineCode.empty() && rows_.seek({{"COD_INE", ineCode}}, dbase::SeekMode::Exact) &&
           dbase::walkTo(
               rows_, [&] { return ineCode_.view() == ineCode; },
               [&] { return name_.view().find(name) != std::string_view::npos; });
}

} // namespace ambrel
