// The folder of a test's tables, and their check at its end.
#include "support/TableTest.h"

#include <filesystem>

#include "dbase/system/databases.h"
#include "dbase/table/check.h"

namespace ambrel::test {
namespace {

constexpr const char* database = "DB";

bool isTable(const std::filesystem::path& file) {
    const std::string extension = file.extension().string();
    return extension == ".DBF" || extension == ".dbf";
}

} // namespace

TableTest::TableTest() { dbase::setDatabaseFolder(database, folder.path()); }

TableTest::~TableTest() {
    dbase::setDatabaseFolder(database, {});
    if (!isChecked_) {
        return;
    }
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        if (isTable(entry.path())) {
            expectSound(entry.path().string());
        }
    }
}

std::string TableTest::createTable(const dbase::TableDefinition& definition,
                                   const std::vector<std::string>& columns,
                                   const std::vector<Row>& rows) const {
    return test::createTable(folder.path(), definition, columns, rows);
}

std::string TableTest::createTable(const dbase::TableDefinition& definition,
                                   const std::vector<Row>& rows) const {
    return test::createTable(folder.path(), definition, rows);
}

void expectSound(const std::string& tableFile) {
    try {
        for (const dbase::Finding& finding : dbase::checkTable(tableFile).findings) {
            ADD_FAILURE() << finding.file << ", " << finding.place << ": " << finding.text;
        }
    } catch (const std::exception& error) {
        ADD_FAILURE() << error.what();
    }
}

} // namespace ambrel::test
