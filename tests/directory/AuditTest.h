// Fixture of the tests that audit tables row by row.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "data/TableDefinitions.h"
#include "directory/audit/Audit.h"
#include "support/TableTest.h"

namespace ambrel::directory {

using Values = std::map<std::string, std::string>;

/// Sound tables of two municipalities, to which a test adds a row of each kind.
class Audit : public test::TableTest {
protected:
    Audit() {
        town({});
        town({{"COD_INE", "28092"}, {"CODPOSTAL", "28931"}, {"NOMBRE", "MOSTOLES"}, {"UNICO", "N"}});
        town({{"COD_INE", "28092"}, {"CODPOSTAL", "28932"}, {"NOMBRE", "MOSTOLES"}, {"UNICO", "N"}});
        street({{"CODPOSTAL", "28931"}, {"MUNICIPI", "MOSTOLES"}, {"COD_INE", "28092"}, {"VIA", "SOL"}});
        street({{"VIA", "LUNA"}});
    }

    /// A row of MUNICIPI, that of Getafe except for some values.
    void town(const Values& values) {
        towns.push_back(row(townColumns,
                            {{"COD_INE", "28065"},
                             {"CODPOSTAL", "28901"},
                             {"UNICO", "S"},
                             {"CAPITAL", "9"},
                             {"NOMBRE", "GETAFE"},
                             {"ENT_MENOR", "F"}},
                            values));
    }

    /// A row of POSTAL, a sound one of Getafe except for some values.
    void street(const Values& values) {
        streets.push_back(row(streetColumns,
                              {{"CODIGO1", std::to_string(28000001 + streets.size())},
                               {"PROVINCIA", "28"},
                               {"CAPITAL", "9"},
                               {"TIPO_VIA", "CL"},
                               {"VIA", "MAYOR"},
                               {"IMPAR_INI", "1"},
                               {"IMPAR_FIN", "9999"},
                               {"PAR_INI", "2"},
                               {"PAR_FIN", "9998"},
                               {"CODPOSTAL", "28901"},
                               {"MUNICIPI", "GETAFE"},
                               {"COD_INE", "28065"}},
                              values));
    }

    std::vector<Finding> run() {
        for (const char* const table : {"MUNICIPI", "POSTAL", "TIPO_VIA"}) { // of an earlier run
            for (const char* const extension : {".DBF", ".MDX"}) {
                std::filesystem::remove(folder / (std::string(table) + extension));
            }
        }
        createTable(municipalityTable(), townColumns, towns);
        createTable(streetTable(), streetColumns, streets);
        createTable(streetTypeTable(), {"CODIGO", "NOMBRE"}, {{"CL", "CALLE"}, {"AV", "AVENIDA"}});
        std::vector<Finding> found;
        totals = auditTables("DB", [&](const Finding& finding) { found.push_back(finding); });
        EXPECT_EQ(totals.all(), found.size());
        return found;
    }

    /// The only finding, which has to be of this class.
    Finding runToOne(FindingClass kind) {
        const std::vector<Finding> found = run();
        std::string all;
        for (const Finding& finding : found) {
            all += std::string(className(finding.kind)) + ": " + finding.text + '\n';
        }
        EXPECT_EQ(found.size(), 1U) << all;
        if (found.empty()) {
            return {};
        }
        EXPECT_EQ(className(found.front().kind), className(kind)) << all;
        return found.front();
    }

    void runToNothing() {
        const std::vector<Finding> found = run();
        for (const Finding& finding : found) {
            ADD_FAILURE() << className(finding.kind) << ": " << finding.text;
        }
    }

    static test::Row row(const std::vector<std::string>& columns, Values values, const Values& changes) {
        for (const auto& [column, value] : changes) {
            values[column] = value;
        }
        test::Row texts;
        for (const std::string& column : columns) {
            texts.push_back(values[column]);
        }
        return texts;
    }

    const std::vector<std::string> townColumns{"COD_INE", "CODPOSTAL", "UNICO",
                                               "CAPITAL", "NOMBRE",    "ENT_MENOR"};
    const std::vector<std::string> streetColumns{"CODIGO1", "PROVINCIA", "CAPITAL",   "TIPO_VIA",
                                                 "VIA",     "IMPAR_INI", "IMPAR_FIN", "PAR_INI",
                                                 "PAR_FIN", "CODPOSTAL", "MUNICIPI",  "COD_INE"};
    std::vector<test::Row> towns, streets;
    AuditTotals totals;
};

} // namespace ambrel::directory
