// The layouts of the five tables, and the values that tables made from them must hold.
#include "data/TableDefinitions.h"

#include "data/PostalTables.h"
#include "dbase/dataset/dataset.h"
#include "dbase/system/databases.h"

namespace {

using namespace postal_tests;

class TableDefinitions : public PostalTables {};

std::string layout(const dbase::TableDefinition& definition) {
    std::string text;
    for (const dbase::Column& column : definition.columns) {
        text += column.name + ":" + static_cast<char>(column.type) + std::to_string(column.width) + " ";
    }
    return text;
}

std::string tags(const dbase::TableDefinition& definition) {
    std::string text;
    for (const dbase::TagDefinition& tag : definition.tags) {
        text += tag.name + "=" + tag.expression + " ";
    }
    return text;
}

TEST_F(TableDefinitions, MunicipalitiesHaveNamesOf53Characters) {
    EXPECT_EQ(layout(ambrel::municipalityTable()),
              "COD_INE:C5 CODPOSTAL:C5 UNICO:C1 CAPITAL:C1 NOMBRE:C53 COD_PROV:C2 COD_MUN:C4 COD_MUNMJ:C3 "
              "ENT_MENOR:L1 NOM_MUNICI:C30 ");
    EXPECT_EQ(tags(ambrel::municipalityTable()), "COD_INE=COD_INE CODPOSTAL=CODPOSTAL NOMBRE=NOMBRE ");
}

TEST_F(TableDefinitions, StreetsCarryMunicipalityAndIneCodeAtTheirEnd) {
    EXPECT_EQ(layout(ambrel::streetTable()),
              "CODIGO1:C8 PROVINCIA:C2 CAPITAL:C1 TIPO_VIA:C3 VIA:C45 IMPAR_INI:N6 IMPAR_FIN:N6 PAR_INI:N6 "
              "PAR_FIN:N6 CODPOSTAL:C5 MUNICIPI:C53 COD_INE:C5 ");
    EXPECT_EQ(tags(ambrel::streetTable()),
              "VIA=PROVINCIA+CAPITAL+VIA+TIPO_VIA NOMBREVIA=PROVINCIA+VIA CODIGO1=CODIGO1 ");
}

TEST_F(TableDefinitions, ProvincesAreSortedByCodeAndByName) {
    EXPECT_EQ(layout(ambrel::provinceTable()), "PROVINCIA:C21 CODIGO:C3 COD_198:C3 GRUPO:N6 ");
    EXPECT_EQ(tags(ambrel::provinceTable()), "CODIGO=CODIGO ALFABETICO=PROVINCIA ");
}

TEST_F(TableDefinitions, StreetTypesHaveTwoNames) {
    EXPECT_EQ(layout(ambrel::streetTypeTable()), "CODIGO:C2 NOMBRE:C15 NOMBRE_CAT:C15 CODPOSTAL:C3 ");
    EXPECT_EQ(tags(ambrel::streetTypeTable()), "CODIGO=CODIGO NOMBRE=NOMBRE ");
}

TEST_F(TableDefinitions, AlternativeMunicipalitiesAreSortedByName) {
    EXPECT_EQ(layout(ambrel::alternativeMunicipalityTable()), "PROVCOD:C10 POBLCOD:C10 POBLLITE:C41 ");
    EXPECT_EQ(tags(ambrel::alternativeMunicipalityTable()), "POBLLITE=POBLLITE ");
}

TEST_F(TableDefinitions, AreFoundByNameWithOrWithoutExtensionWhateverTheLetterCase) {
    for (const char* name : {"POSTAL", "postal", "POSTAL.DBF", "Postal.dbf"}) {
        const auto definition = ambrel::tableDefinition(name);
        ASSERT_TRUE(definition) << name;
        EXPECT_EQ(definition->name, "POSTAL");
    }
    EXPECT_FALSE(ambrel::tableDefinition("CLIENTES"));
    EXPECT_FALSE(ambrel::tableDefinition(""));
}

TEST_F(TableDefinitions, EveryCreatedTableOpensInEachOfItsTags) {
    for (const dbase::TableDefinition& definition : ambrel::tableDefinitions()) {
        for (const dbase::TagDefinition& tag : definition.tags) {
            dbase::Dataset table("DB", definition.name, tag.name);
            ASSERT_NO_THROW(table.open()) << definition.name << " " << tag.name;
            EXPECT_TRUE(table.isEmpty());
        }
    }
}

TEST_F(TableDefinitions, NameWithAndWithoutExtensionOpenTheSameFile) {
    addMunicipalities({{"28079", "28001", "MADRID"}});
    for (const char* name : {"MUNICIPI", "MUNICIPI.DBF"}) {
        dbase::Dataset table("DB", name);
        table.open();
        EXPECT_EQ(table.field("NOMBRE").text(), "MADRID") << name;
    }
}

TEST_F(TableDefinitions, SixteenBitNumbersOfBothSignsAreHeld) {
    dbase::Dataset table("DB", "POSTAL");
    dbase::Field& first = table.bindInteger("IMPAR_INI");
    dbase::Field& last = table.bindInteger("IMPAR_FIN");
    table.open();
    table.append();
    first.setInteger(-32768);
    last.setInteger(32767);
    table.post();
    EXPECT_EQ(first.integer(), -32768);
    EXPECT_EQ(last.integer(), 32767);
}

TEST_F(TableDefinitions, GroupFilterRestrictsTheProvinces) {
    addProvinces({{"001", "ÁLAVA", 1}, {"101", "FRANCIA", 2}, {"028", "MADRID", 1}});
    dbase::Dataset table("DB", "PROVIN", "CODIGO");
    table.open();
    table.setFilter("GRUPO=1");
    std::vector<std::string> codes;
    for (table.first(); !table.eof(); table.next()) {
        codes.push_back(table.field("CODIGO").text());
    }
    EXPECT_EQ(codes, (std::vector<std::string>{"001", "028"}));
}

} // namespace
