// Fixture of the tests that work on tables.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "support/Tables.h"
#include "support/TemporaryFolder.h"

namespace ambrel::test {

/// Gives a test a folder that database "DB" stands for. After the test, when its own datasets are
/// closed, every table in the folder goes through the full consistency check.
class TableTest : public ::testing::Test {
protected:
    TableTest();
    ~TableTest() override;

    /// Like ambrel::test::createTable, in the test's folder.
    std::string createTable(const dbase::TableDefinition& definition, const std::vector<std::string>& columns,
                            const std::vector<Row>& rows) const;
    std::string createTable(const dbase::TableDefinition& definition, const std::vector<Row>& rows) const;

    /// For a test that damages its tables on purpose.
    void leaveUnchecked() { isChecked_ = false; }

    TemporaryFolder folder;

private:
    bool isChecked_ = true;
};

/// Adds a test failure for each finding in a table.
void expectSound(const std::string& tableFile);

} // namespace ambrel::test
