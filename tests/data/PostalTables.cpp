// Creates and fills the five postal tables.
#include "data/PostalTables.h"

#include "data/TableDefinitions.h"
#include "dbase/dataset/dataset.h"
#include "services/Confamb.h"

namespace postal_tests {

using ambrel::test::ansi;

PostalTables::PostalTables() {
    for (const dbase::TableDefinition& definition : ambrel::tableDefinitions()) {
        dbase::createTable(folder.path(), definition);
    }
    Config = TConfig();
}

PostalTables::~PostalTables() { Config = TConfig(); }

void PostalTables::addMunicipalities(const std::vector<MunicipalityRow>& rows) {
    dbase::Dataset table("DB", "MUNICIPI");
    table.open();
    for (const MunicipalityRow& row : rows) {
        table.append();
        table.field("COD_INE").setText(row.codIne);
        table.field("CODPOSTAL").setText(row.codPostal);
        table.field("NOMBRE").setText(ansi(row.nombre));
        table.field("UNICO").setText(row.unico);
        table.field("CAPITAL").setText(row.capital);
        table.field("COD_PROV").setText(row.codIne.substr(0, 2));
        table.field("ENT_MENOR").setLogical(row.entMenor);
        table.post();
    }
}

void PostalTables::addStreets(const std::vector<StreetRow>& rows) {
    dbase::Dataset table("DB", "POSTAL");
    table.open();
    for (const StreetRow& row : rows) {
        table.append();
        table.field("CODIGO1").setText(row.codigo1);
        table.field("PROVINCIA").setText(row.provincia);
        table.field("CAPITAL").setText(row.capital);
        table.field("TIPO_VIA").setText(row.tipo);
        table.field("VIA").setText(ansi(row.via));
        table.field("IMPAR_INI").setInteger(row.odd.first);
        table.field("IMPAR_FIN").setInteger(row.odd.second);
        table.field("PAR_INI").setInteger(row.even.first);
        table.field("PAR_FIN").setInteger(row.even.second);
        table.field("CODPOSTAL").setText(row.codPostal);
        table.field("COD_INE").setText(row.ineCode);
        table.post();
    }
}

void PostalTables::addProvinces(const std::vector<ProvinceRow>& rows) {
    dbase::Dataset table("DB", "PROVIN");
    table.open();
    for (const ProvinceRow& row : rows) {
        table.append();
        table.field("PROVINCIA").setText(ansi(row.provincia));
        table.field("CODIGO").setText(row.codigo);
        table.field("GRUPO").setInteger(row.grupo);
        table.post();
    }
}

void PostalTables::addStreetTypes(const std::vector<StreetTypeRow>& rows) {
    dbase::Dataset table("DB", "TIPO_VIA");
    table.open();
    for (const StreetTypeRow& row : rows) {
        table.append();
        table.field("CODIGO").setText(ansi(row.codigo));
        table.field("NOMBRE").setText(ansi(row.nombre));
        table.field("NOMBRE_CAT").setText(ansi(row.nombreCat));
        table.post();
    }
}

void PostalTables::goToStreet(dbase::Dataset& streets, const std::string& codigo1) {
    for (streets.first(); streets.field("CODIGO1").text() != codigo1;) {
        if (!streets.next()) {
            FAIL() << "no street row " << codigo1;
        }
    }
}

void PostalTables::addAlternativeMunicipalities(
    const std::vector<std::pair<std::string, std::string>>& rows) {
    dbase::Dataset table("DB", "MUNICIMJ");
    table.open();
    for (const auto& [province, name] : rows) {
        table.append();
        table.field("PROVCOD").setText(province);
        table.field("POBLLITE").setText(ansi(name));
        table.post();
    }
}

} // namespace postal_tests
