// Loads and opens the directory in our own tables.
#include "our_postal.h"

#include <filesystem>

#include "data/TableDefinitions.h"
#include "dbase/dbf/codec.h"
#include "dbase/system/databases.h"
#include "dbase/table/bulk_loader.h"

namespace bench {

void encodeRow(const PostalRow& row, const dbase::Schema& schema, std::span<char> record) {
    std::fill(record.begin(), record.end(), ' ');
    const auto raw = [&](std::size_t i) {
        return record.subspan(schema.columns[i].offset, schema.columns[i].width);
    };
    dbase::encodeText(raw(0), row.codigo1);
    dbase::encodeText(raw(1), row.provincia);
    dbase::encodeText(raw(2), row.capital);
    dbase::encodeText(raw(3), row.tipoVia);
    dbase::encodeText(raw(4), row.via);
    const int numbers[] = {row.imparIni, row.imparFin, row.parIni, row.parFin};
    for (std::size_t i = 0; i < 4; ++i) {
        static_cast<void>(dbase::encodeInteger(raw(5 + i), numbers[i]));
    }
    dbase::encodeText(raw(9), row.codPostal);
    dbase::encodeText(raw(10), row.municipi);
    dbase::encodeText(raw(11), row.codIne);
}

std::string loadOurs(const std::string& folder) {
    std::filesystem::create_directories(folder);
    dbase::createTable(folder, ambrel::streetTable(), dbase::IfExists::Replace);
    const std::string path = *dbase::findTableFile(folder, "POSTAL");
    dbase::BulkLoader loader(path, dbase::BulkLoader::Mode::Append);
    std::string record(loader.schema().recordLength, ' ');
    for (std::uint32_t i = 0; i < rowCount; ++i) {
        encodeRow(postalRow(i), loader.schema(), record);
        loader.add(record);
    }
    loader.finish();
    return path;
}

const std::string& ourFolder() {
    static const std::string folder = [] {
        std::string made = workFolder + "/ours";
        loadOurs(made);
        dbase::setDatabaseFolder("DB", made);
        return made;
    }();
    return folder;
}

void openOurs(dbase::Dataset& table, const std::string& tag) {
    static_cast<void>(ourFolder());
    table.setTable("DB", "POSTAL");
    table.setTag(tag);
    table.open();
}

void assignRow(const PostalRow& row, dbase::Dataset& table) {
    table.field("CODIGO1").setText(row.codigo1);
    table.field("PROVINCIA").setText(row.provincia);
    table.field("CAPITAL").setText(row.capital);
    table.field("TIPO_VIA").setText(row.tipoVia);
    table.field("VIA").setText(row.via);
    table.field("IMPAR_INI").setInteger(row.imparIni);
    table.field("IMPAR_FIN").setInteger(row.imparFin);
    table.field("PAR_INI").setInteger(row.parIni);
    table.field("PAR_FIN").setInteger(row.parFin);
    table.field("CODPOSTAL").setText(row.codPostal);
    table.field("MUNICIPI").setText(row.municipi);
    table.field("COD_INE").setText(row.codIne);
}

} // namespace bench
