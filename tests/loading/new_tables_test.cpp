// The five tables are created together, or none of them.
#include "loading/new_tables.h"

#include "support/TableTest.h"

#include <filesystem>

#include "dbase/dataset/dataset.h"
#include "loading/failure.h"

namespace loading {
namespace {

namespace fs = std::filesystem;

class NewTables : public ambrel::test::TableTest {
protected:
    std::size_t filesIn(const std::string& path) const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(path), fs::directory_iterator()));
    }
};

TEST_F(NewTables, AreFiveWithTheirIndexes) {
    createPostalTables(folder.path(), dbase::IfExists::Refuse);
    EXPECT_EQ(filesIn(folder.path()), 10U);
}

TEST_F(NewTables, FillsEachTableAfterItsCreation) {
    std::string names;
    createPostalTables(folder.path(), dbase::IfExists::Refuse,
                       [&](const std::string& name, const std::string& file) {
                           EXPECT_TRUE(fs::exists(file));
                           names += name + ' ';
                       });
    EXPECT_EQ(names, "MUNICIPI POSTAL PROVIN TIPO_VIA MUNICIMJ ");
}

TEST_F(NewTables, NothingIsCreatedBesideAnExistingTable) {
    folder.write("tipo_via.dbf", "x");
    leaveUnchecked();
    EXPECT_THROW(createPostalTables(folder.path(), dbase::IfExists::Refuse), Failure);
    EXPECT_EQ(filesIn(folder.path()), 1U);
}

TEST_F(NewTables, AnIndexWithoutItsTableCountsAsExisting) {
    folder.write("POSTAL.MDX", "x");
    EXPECT_THROW(createPostalTables(folder.path(), dbase::IfExists::Refuse), Failure);
    EXPECT_EQ(filesIn(folder.path()), 1U);
}

TEST_F(NewTables, AFailureHalfWayLeavesNoNewTable) {
    const auto failAtThird = [](const std::string& name, const std::string&) {
        if (name == "PROVIN") {
            throw Failure("lleno");
        }
    };
    EXPECT_THROW(createPostalTables(folder / "a/b", dbase::IfExists::Refuse, failAtThird), Failure);
    EXPECT_EQ(filesIn(folder.path()), 0U);
}

TEST_F(NewTables, ATableInUseKeepsAllFromBeingReplaced) {
    createPostalTables(folder.path(), dbase::IfExists::Refuse);
    dbase::Dataset first("DB", "MUNICIPI"), last("DB", "MUNICIMJ");
    first.open();
    first.append();
    first.post();
    first.close();
    last.open();
    EXPECT_THROW(createPostalTables(folder.path(), dbase::IfExists::Replace), std::exception);
    first.open();
    EXPECT_FALSE(first.isEmpty());
}

TEST_F(NewTables, AFileInPlaceOfTheFolderIsAFailure) {
    const std::string file = folder.write("datos", "x");
    EXPECT_THROW(createPostalTables(file, dbase::IfExists::Refuse), Failure);
    EXPECT_THROW(createPostalTables(file + "/mas", dbase::IfExists::Refuse), Failure);
}

} // namespace
} // namespace loading
