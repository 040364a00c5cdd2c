// Tables that we write, read by other software.
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "dbase/mdx/index_layout.h"
#include "dbase/support/OtherReaders.h"
#include "dbase/support/StoredTable.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/table.h"
#include "dbase/table/table_definition.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;

/// A table with a tag of every kind, changed in every way.
class InterchangeTest : public ::testing::Test {
protected:
    InterchangeTest() { createTable(folder_.path(), definition()); }

    static TableDefinition definition() {
        return {.name = "INTERCAM",
                .columns = {{"CODIGO", ColumnType::Character, 5, 0, 0},
                            {"NOMBRE", ColumnType::Character, 40, 0, 0},
                            {"NUM", ColumnType::Numeric, 6, 0, 0},
                            {"SALDO", ColumnType::Numeric, 10, 2, 0},
                            {"ALTA", ColumnType::Date, 8, 0, 0},
                            {"MENOR", ColumnType::Logical, 1, 0, 0}},
                .tags = {{.name = "CODIGO", .expression = "CODIGO"},
                         {.name = "NOMBRE", .expression = "NOMBRE"},
                         {.name = "MAYUS", .expression = "UPPER(NOMBRE)+CODIGO"},
                         {.name = "BAJA", .expression = "NOMBRE", .descending = true},
                         {.name = "NUM", .expression = "NUM"},
                         {.name = "SALDODES", .expression = "SALDO", .descending = true},
                         {.name = "ALTA", .expression = "ALTA"},
                         {.name = "MEZCLA", .expression = "CODIGO+STR(NUM,6)+DTOS(ALTA)"},
                         {.name = "SOLO", .expression = "CODIGO", .unique = true},
                         {.name = "VIVOS", .expression = "NOMBRE", .condition = ".NOT.DELETED()"}},
                .languageDriver = LanguageDriver::AnsiUs};
    }

    [[nodiscard]] std::string path() const { return folder_ / "INTERCAM.DBF"; }
    unsigned pick(unsigned low, unsigned high) {
        return std::uniform_int_distribution<unsigned>(low, high)(random_);
    }

    Bytes anyRecord(const Schema& schema) {
        static constexpr const char* names[] = {"ALCAL\xC1", "\xD1ORA",  "a\xF1il", "Zafra",
                                                "BURGOS",    "\xC1vila", "",        "LUGO "};
        const int cents =
            static_cast<int>(pick(0, 20000)) - 10000; // no tenths below 0.1: their order is disputed
        const std::string sign = cents < 0 ? "-" : "";
        return makeRecord(
            schema, {std::to_string(10000 + pick(0, 30)),
                     std::string(names[pick(0, 7)]) + (pick(0, 1) == 0 ? std::to_string(pick(0, 50)) : ""),
                     pick(0, 5) == 0 ? "" : std::to_string(static_cast<int>(pick(0, 3000)) - 1000),
                     sign + std::to_string(std::abs(cents) / 100 + 1) + ".50",
                     pick(0, 5) == 0 ? "" : std::to_string(20000101 + pick(0, 20) * 10000 + pick(0, 27)),
                     pick(0, 1) == 0 ? "T" : "F"});
    }
    void change(Table& table, int times) {
        for (int i = 0; i < times; ++i) {
            const RecordNumber count = table.records().recordCount();
            const unsigned kind = count == 0 ? 0 : pick(0, 9);
            const RecordNumber number = count == 0 ? 0 : pick(1, count);
            if (kind < 5) {
                table.append(anyRecord(table.schema()));
            } else if (kind < 9) {
                table.overwrite(number, storedRecord(table, number), anyRecord(table.schema()));
            } else {
                table.erase(number, storedRecord(table, number));
            }
        }
    }
    void expectRight() const {
        EXPECT_EQ(findings(path()), "");
        EXPECT_EQ(verifierComplaint(path(), true), "");
    }

    TemporaryFolder folder_;
    std::mt19937 random_{4711};
};

class VerifiedTest : public InterchangeTest {
protected:
    void SetUp() override {
        if (!hasPerlReader()) {
            GTEST_SKIP() << "wants Perl with XBase::Index (libdbd-xbase-perl, which scripts/setup installs)";
        }
    }
};

TEST_F(VerifiedTest, ANewTable) { expectRight(); }

TEST_F(VerifiedTest, ATableOfOneRecord) {
    const auto table = Table::open(path());
    table->append(anyRecord(table->schema()));
    expectRight();
}

TEST_F(VerifiedTest, ATableThatGrewRecordByRecord) {
    const auto table = Table::open(path());
    change(*table, 1200);
    expectRight();
}

TEST_F(VerifiedTest, ATableInKeyOrder) {
    const auto table = Table::open(path());
    for (int i = 0; i < 600; ++i) {
        table->append(
            makeRecord(table->schema(), {std::to_string(10000 + i), "CALLE " + std::to_string(100 + i)}));
    }
    expectRight();
}

TEST_F(VerifiedTest, ALoadedTable) {
    {
        BulkLoader loader(path(), BulkLoader::Mode::Append);
        for (int i = 0; i < 3000; ++i) {
            loader.add(anyRecord(loader.schema()));
        }
        loader.finish();
    }
    expectRight();
    change(*Table::open(path()), 200);
    expectRight();
    {
        BulkLoader loader(path(), BulkLoader::Mode::Replace);
        for (int i = 0; i < 300; ++i) {
            loader.add(anyRecord(loader.schema()));
        }
        loader.finish();
    }
    expectRight();
}

TEST_F(VerifiedTest, AReindexedTable) {
    change(*Table::open(path()), 400);
    reindexTable(path());
    expectRight();
    std::filesystem::remove(folder_ / "INTERCAM.MDX");
    reindexTable(path(), definition().tags);
    expectRight();
    change(*Table::open(path()), 100);
    expectRight();
}

TEST_F(VerifiedTest, ATableWhoseKeysAllMoved) {
    const auto table = Table::open(path());
    for (int i = 0; i < 400; ++i) {
        table->append(anyRecord(table->schema()));
    }
    for (const char* name : {"ZZZ", "AAA"}) {
        for (RecordNumber number = 1; number <= 400; ++number) {
            const Bytes shown = storedRecord(*table, number);
            Bytes moved = withValue(table->schema(), shown, "NOMBRE", name + std::to_string(number));
            moved = withValue(table->schema(), std::move(moved), "NUM",
                              std::to_string(*name == 'Z' ? 5000 : -5000));
            table->overwrite(number, shown, moved);
        }
    }
    expectRight();
}

TEST_F(VerifiedTest, ATableThatADeadWriterLeft) {
    change(*Table::open(path()), 100);
    {
        const auto index = openFile(folder_ / "INTERCAM.MDX", OpenMode::ReadWrite);
        const char mark = 1;
        index->write(mdx::stamp + 8, std::span<const char>(&mark, 1));
    }
    EXPECT_GT(Table::open(path())->records().recordCount(), 0U);
    expectRight();
}

TEST_F(VerifiedTest, ATableWithWeightedKeys) {
    TableDefinition weighted = definition();
    weighted.languageDriver = LanguageDriver::AnsiSpanish;
    createTable(folder_.path(), weighted, IfExists::Replace);
    change(*Table::open(path()), 500);
    expectRight();
    Table::open(path())->rebuildTags();
    expectRight();
}

TEST_F(VerifiedTest, TagNamesInAnyOrderOfCreation) {
    for (const auto& names : {std::vector<std::string>{"A", "B", "C", "D", "E"},
                              {"E", "D", "C", "B", "A"},
                              {"C", "A", "E", "B", "D"},
                              {"A1", "A", "A10", "AB", "A_"}}) {
        TableDefinition named = definition();
        named.tags.clear();
        for (const std::string& name : names) {
            named.tags.push_back({.name = name, .expression = "CODIGO"});
        }
        createTable(folder_.path(), named, IfExists::Replace);
        Table::open(path())->append(anyRecord(Table::open(path())->schema()));
        expectRight();
    }
}

/// Every row through DBI, in the order of the file and in that of a tag.
class PerlReaderTest : public InterchangeTest {
protected:
    void SetUp() override {
        if (!hasPerlReader()) {
            GTEST_SKIP() << "wants Perl with DBD::XBase (libdbd-xbase-perl, which scripts/setup installs)";
        }
    }
};

TEST_F(PerlReaderTest, ReadsTheRowsWeWrote) {
    const auto table = Table::open(path());
    change(*table, 300);
    std::vector<std::string> expected;
    for (RecordNumber number = 1; number <= table->records().recordCount(); ++number) {
        const Bytes record = storedRecord(*table, number);
        if (record[0] == '*') {
            continue;
        }
        std::string line;
        for (const char* column : {"CODIGO", "NOMBRE", "NUM", "SALDO", "ALTA", "MENOR"}) {
            const std::string value = valueOf(table->schema(), record, column);
            line += (column == std::string("MENOR") ? (value == "T" ? "1" : "0") : value) + '|';
        }
        expected.push_back(line);
    }
    EXPECT_EQ(runPerl(R"(
use strict; use XBase;
binmode STDOUT, ':raw';
my $table = XBase->new(name => $ARGV[0], ignorememo => 1) or die XBase->errstr;
for my $i (0 .. $table->last_record) {
    my ($deleted, @values) = $table->get_record($i);
    next if $deleted;
    $values[3] = sprintf '%.2f', $values[3];
    print join('', map { (my $v = defined $_ ? $_ : '') =~ s/^ +| +$//g; "$v|" } @values), "\n";
})",
                      {path()}),
              expected);
}

TEST_F(PerlReaderTest, WalksTheTagsWeWrote) {
    const auto table = Table::open(path());
    change(*table, 500);
    for (const std::string& tag : table->tagNames()) {
        std::vector<std::string> expected;
        for (const RecordNumber number : order(*table, tag)) {
            expected.push_back(std::to_string(number));
        }
        EXPECT_EQ(runPerl(R"(
use strict; use XBase; use XBase::Index;
my $index = XBase::Index->new($ARGV[0], tag => $ARGV[1]) or die XBase->errstr;
$index->prepare_select;
while (my ($key, $number) = $index->fetch) { print "$number\n" }
)",
                          {folder_ / "INTERCAM.MDX", tag}),
                  expected)
            << tag;
    }
}

TEST_F(PerlReaderTest, SelectsThroughItsDatabaseInterface) {
    const auto table = Table::open(path());
    for (int i = 0; i < 50; ++i) {
        table->append(makeRecord(table->schema(), {std::to_string(10000 + i), "CALLE", std::to_string(i)}));
    }
    EXPECT_EQ(runPerl(R"(
use strict; use DBI;
my $dbh = DBI->connect("dbi:XBase:$ARGV[0]", '', '', { RaiseError => 1 });
my $rows = $dbh->selectall_arrayref("select CODIGO from INTERCAM where NUM > 46");
print "$_->[0]\n" for @$rows;
)",
                      {folder_.path()}),
              (std::vector<std::string>{"10047", "10048", "10049"}));
}

} // namespace
