// Tables written by another program: read as that program reads them, and kept right when changed.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "dbase/mdx/tree_cursor.h"
#include "dbase/support/ForeignTables.h"
#include "dbase/support/OtherReaders.h"
#include "dbase/support/StoredTable.h"
#include "dbase/table/check.h"
#include "dbase/table/table.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;

class ForeignTable : public ::testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        listing_ = listingOf(GetParam());
        file_ = copyForeignTable(GetParam(), folder_.path());
    }

    /// The key of a listed seek in the form that the tag stores.
    static std::string keyOf(const Tag& tag, const ListedSeek& seek) {
        std::string key(tag.keyLength, ' ');
        Value value;
        value.type = seek.number ? ValueType::Number : ValueType::Text;
        value.text = seek.key;
        value.number = seek.number.value_or(0);
        encodeKey(value, tag.keyType, key);
        return key;
    }

    /// The first record at or after the key, or the exact one where asked: the other program's answer.
    static RecordNumber answer(Table& table, const Tag& tag, const ListedSeek& seek) {
        const std::string key = keyOf(tag, seek);
        return table.read([&] {
            TreeCursor cursor(*table.index(), tag);
            const bool isFound =
                cursor.seek(key) && (!seek.isExact || tag.order.compare(cursor.key(), key) == 0);
            return isFound ? cursor.record() : RecordNumber{0};
        });
    }

    /// A record similar to others of the table: one of them with some characters and numbers changed.
    Bytes anyRecord(Table& table) {
        const Schema& schema = table.schema();
        const RecordNumber count = table.records().recordCount();
        Bytes record = count == 0 ? Bytes(schema.recordLength, ' ') : storedRecord(table, pick(1, count));
        record[0] = ' ';
        for (const Column& column : schema.columns) {
            if (column.isNumber() && pick(0, 3) == 0) {
                record = withValue(schema, std::move(record), column.name, numberFor(column));
            } else if (column.type == ColumnType::Character && pick(0, 2) == 0) {
                record[column.offset + pick(0, column.width - 1U)] = static_cast<char>(pick('A', 'Z'));
            }
        }
        return record;
    }

    std::string numberFor(const Column& column) {
        const int digits = column.width - (column.decimals > 0 ? column.decimals + 1 : 0);
        std::string text =
            std::to_string(static_cast<int>(pick(0, 999)) - 300).substr(0, static_cast<std::size_t>(digits));
        if (text == "-") {
            text = "0";
        }
        return column.decimals == 0 ? text : text + '.' + std::string(column.decimals, '7');
    }

    std::uint32_t pick(std::uint32_t low, std::uint32_t high) {
        return std::uniform_int_distribution<std::uint32_t>(low, high)(random_);
    }

    void change(Table& table) {
        const RecordNumber count = table.records().recordCount();
        const std::uint32_t kind = count == 0 ? 0 : pick(0, 9);
        if (kind < 4) {
            table.append(anyRecord(table));
            return;
        }
        const RecordNumber number = pick(1, count);
        const Bytes shown = storedRecord(table, number);
        if (kind < 8) {
            table.overwrite(number, shown, anyRecord(table));
        } else {
            table.erase(number, shown);
        }
    }

    void expectRight() const {
        EXPECT_EQ(findings(file_), "");
        if (hasPerlReader()) {
            EXPECT_EQ(verifierComplaint(file_, false), "");
        }
    }

    TemporaryFolder folder_;
    std::string file_;
    Listing listing_;
    std::mt19937 random_{20240101};
};

TEST_P(ForeignTable, OpensForWritingWithItsTags) {
    const auto table = Table::open(file_);
    EXPECT_FALSE(table->isReadOnly()) << table->readOnlyReason();
    EXPECT_EQ(table->records().recordCount(), listing_.records);
    EXPECT_EQ(table->schema().languageDriver, listing_.languageDriver);
    ASSERT_EQ(table->tagNames().size(), listing_.tags.size());
    for (const ListedTag& listed : listing_.tags) {
        const Tag* tag = table->findTag(listed.name);
        ASSERT_NE(tag, nullptr) << listed.name;
        EXPECT_EQ(tag->definition.expression, listed.expression);
        EXPECT_EQ(tag->definition.unique, listed.isUnique) << listed.name;
        EXPECT_EQ(tag->definition.descending, listed.isDescending) << listed.name;
    }
}

TEST_P(ForeignTable, ListsInEveryTagsOrder) {
    const auto table = Table::open(file_);
    for (const ListedTag& listed : listing_.tags) {
        EXPECT_EQ(order(*table, listed.name), listed.order) << listed.name;
        std::vector<RecordNumber> backwards = orderBackwards(*table, listed.name);
        std::reverse(backwards.begin(), backwards.end());
        EXPECT_EQ(backwards, listed.order) << listed.name;
    }
}

TEST_P(ForeignTable, SeeksAsListed) {
    const auto table = Table::open(file_);
    for (const ListedTag& listed : listing_.tags) {
        for (const ListedSeek& seek : listed.seeks) {
            EXPECT_EQ(answer(*table, *table->findTag(listed.name), seek), seek.found)
                << listed.name << (seek.isExact ? " eq " : " ge ") << seek.key << seek.number.value_or(0);
        }
    }
}

TEST_P(ForeignTable, KnowsItsDeletedRecords) {
    const auto table = Table::open(file_);
    std::vector<RecordNumber> deleted;
    for (RecordNumber number = 1; number <= listing_.records; ++number) {
        if (storedRecord(*table, number)[0] == '*') {
            deleted.push_back(number);
        }
    }
    EXPECT_EQ(deleted, listing_.deleted);
}

TEST_P(ForeignTable, IsFoundSoundWithoutBeingChanged) {
    const std::string indexFile = file_.substr(0, file_.size() - 4) + ".MDX";
    const Bytes table = readFile(file_), index = readFile(indexFile);
    EXPECT_EQ(findings(file_), "");
    EXPECT_EQ(readFile(file_), table);
    EXPECT_EQ(readFile(indexFile), index);
}

TEST_P(ForeignTable, StaysRightUnderChanges) {
    const auto table = Table::open(file_);
    for (int i = 0; i < 300; ++i) {
        change(*table);
        if (i % 100 == 0) {
            ASSERT_EQ(findings(file_), "") << i;
        }
    }
    expectRight();
}

TEST_P(ForeignTable, StaysRightAfterARebuild) {
    const auto table = Table::open(file_);
    table->rebuildTags();
    EXPECT_EQ(findings(file_), "");
    for (int i = 0; i < 100; ++i) {
        change(*table);
    }
    expectRight();
}

INSTANTIATE_TEST_SUITE_P(Fixtures, ForeignTable,
                         ::testing::Values("CALLES", "COLACION", "CORTAS", "ETIQ", "GRANDE", "MUNIS",
                                           "NUMEROS", "RETAG", "UNICA", "VACIA"),
                         [](const auto& test) { return std::string(test.param); });

} // namespace
