// Reads rows for an audit: some under each lock, and none is held while they are being looked at.
#include "directory/audit/AuditedRows.h"

#include <vector>

#include "dbase/dataset/dataset.h"
#include "dbase/lock/read_scope.h"
#include "dbase/table/table.h"

namespace ambrel::directory {

namespace {

constexpr std::size_t rowsAtOnce = 512;

/// `read` fills a row from the current record.
template<typename Row, typename Read, typename Visit>
void forEachRow(dbase::Dataset& table, const Read& read, const Visit& visit) {
    std::vector<Row> rows(rowsAtOnce);
    table.first();
    bool isOnRow = !table.isEmpty();
    while (isOnRow) {
        std::size_t size = 0;
        {
            const dbase::ReadScope scope;
            for (; isOnRow && size < rowsAtOnce; ++size) {
                read(rows[size]);
                isOnRow = table.next();
            }
        }
        for (std::size_t i = 0; i < size; ++i) {
            visit(rows[i]);
        }
    }
}

void take(std::string& text, const dbase::Field* field) {
    text.clear();
    if (field != nullptr) { // a foreign table may lack it
        text = field->view();
    }
}

} // namespace

void forEachMunicipality(const std::string& database,
                         const std::function<void(const MunicipalityRow&)>& visit) {
    dbase::Dataset table(database, "MUNICIPI");
    table.open();
    const dbase::Field &ineCode = table.field("COD_INE"), &postalCode = table.field("CODPOSTAL"),
                       &name = table.field("NOMBRE"), &isEntity = table.field("ENT_MENOR");
    const dbase::Field *const single = table.findField("UNICO"), *const capital = table.findField("CAPITAL"),
                              *const municipality = table.findField("NOM_MUNICI");
    const auto read = [&](MunicipalityRow& row) {
        row.record = table.recordNumber();
        row.ineCode = ineCode.view();
        row.postalCode = postalCode.view();
        row.name = name.view();
        row.isEntity = isEntity.text() == "True";
        take(row.singleMark, single);
        take(row.capital, capital);
        take(row.municipality, municipality);
    };
    forEachRow<MunicipalityRow>(table, read, visit);
}

void forEachStreet(const std::string& database, const std::string& tag,
                   const std::function<void(const StreetRow&)>& visit) {
    dbase::Dataset table(database, "POSTAL", tag);
    table.open();
    const dbase::Field &key = table.field("CODIGO1"), &province = table.field("PROVINCIA"),
                       &capital = table.field("CAPITAL"), &type = table.field("TIPO_VIA"),
                       &name = table.field("VIA"), &postalCode = table.field("CODPOSTAL"),
                       &oddFirst = table.field("IMPAR_INI"), &oddLast = table.field("IMPAR_FIN"),
                       &evenFirst = table.field("PAR_INI"), &evenLast = table.field("PAR_FIN");
    const dbase::Field *const municipality = table.findField("MUNICIPI"), *const ineCode =
                                                                              table.findField("COD_INE");
    const auto read = [&](StreetRow& row) {
        row.record = table.recordNumber();
        row.key = key.view();
        row.province = province.view();
        row.capital = capital.view();
        row.type = type.view();
        row.name = name.view();
        row.postalCode = postalCode.view();
        row.oddFirst = oddFirst.integer();
        row.oddLast = oddLast.integer();
        row.evenFirst = evenFirst.integer();
        row.evenLast = evenLast.integer();
        take(row.municipality, municipality);
        take(row.ineCode, ineCode);
    };
    forEachRow<StreetRow>(table, read, visit);
}

PlaceBook readPlaces(const std::string& database) {
    PlaceBook book;
    forEachMunicipality(database, [&](const MunicipalityRow& row) { book.add(row); });
    book.finish();
    return book;
}

std::uint64_t recordCount(const std::string& database, AuditedTable table) {
    dbase::Dataset rows(database, std::string(tableName(table)));
    rows.open();
    return rows.openTable().records().recordCount();
}

} // namespace ambrel::directory
