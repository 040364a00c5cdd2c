// Orders the rows of MUNICIPI.
#include "loading/municipality_order.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

#include "data/TableDefinitions.h"
#include "dbase/dataset/row_walk.h"

namespace loading {

namespace {

constexpr const char* codeColumn = "COD_INE";
constexpr const char* entityColumn = "ENT_MENOR";

std::string_view valueOf(const std::string& record, const dbase::Column& column) {
    return std::string_view(record).substr(column.offset, column.width);
}

} // namespace

bool isMunicipalityTable(const std::string& tableFile) {
    const auto definition =
        ambrel::tableDefinition(std::string_view(tableFile).substr(tableFile.rfind('/') + 1));
    return definition && definition->name == ambrel::municipalityTable().name;
}

std::optional<MunicipalityRows> MunicipalityRows::of(const std::string& tableFile,
                                                     const dbase::Schema& schema) {
    const auto code = schema.find(codeColumn), entity = schema.find(entityColumn);
    if (!isMunicipalityTable(tableFile) || !code || !entity) {
        return std::nullopt;
    }
    return MunicipalityRows(schema.columns[*code], schema.columns[*entity]);
}

void MunicipalityRows::storeIn(dbase::BulkLoader& loader) {
    const auto place = [&](const std::string& record) {
        return std::pair(valueOf(record, code_), valueOf(record, entity_) == "T");
    };
    std::ranges::stable_sort(rows_, {}, place);
    for (const std::string& record : rows_) {
        loader.add(record);
    }
    rows_.clear();
}

std::vector<std::string> codesWithEntitiesInFront(dbase::Dataset& table) {
    std::set<std::string> withEntity, inFront;
    dbase::Field* const code = table.findField(codeColumn);
    dbase::Field* const entity = table.findField(entityColumn);
    if (!code || !entity) {
        return {};
    }
    dbase::forEachRow(table, [&] {
        if (entity->logical()) {
            withEntity.insert(code->text());
        } else if (withEntity.contains(code->text())) {
            inFront.insert(code->text());
        }
    });
    return {inFront.begin(), inFront.end()};
}

} // namespace loading
