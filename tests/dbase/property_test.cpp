// Random work on a table against a model made of standard containers. AMBREL_SEED repeats a run.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <optional>
#include <random>

#include "dbase/table.h"
#include "support/StoredTable.h"

namespace {

using namespace dbase;
using namespace dbase::test;

struct Row {
    std::string code, name;
    std::optional<int> number;
    std::string day; // eight digits or empty
    std::string kind;
    bool isDeleted = false;
};

/// Rows as they should be, and the orders that follow from them.
class Model {
public:
    std::vector<Row> rows;

    template<typename KeyOf, typename Compare>
    [[nodiscard]] std::vector<RecordNumber> order(KeyOf keyOf, Compare compare, bool isUnique = false,
                                                  const std::function<bool(const Row&)>& belongs = {}) const {
        std::multimap<decltype(keyOf(rows.front())), RecordNumber, Compare> entries(compare);
        for (std::size_t i = 0; i < rows.size(); ++i)
            if ((!belongs || belongs(rows[i])) && (!isUnique || !entries.contains(keyOf(rows[i]))))
                entries.emplace(keyOf(rows[i]), static_cast<RecordNumber>(i + 1));
        std::vector<RecordNumber> numbers;
        for (const auto& [key, number] : entries)
            numbers.push_back(number);
        return numbers;
    }
};

const auto codeOf = [](const Row& row) { return row.code; };
const auto nameOf = [](const Row& row) { return row.name; };
const auto numberOf = [](const Row& row) { return row.number.value_or(0); }; // a blank number counts as 0
const auto dayOf = [](const Row& row) {
    return row.day.empty() ? std::string("99999999") : row.day;
}; // blank: last

struct Shape {
    const char* name;
    unsigned blockPages;
    int changes;
    unsigned codes, nameLetters; // how many different ones: few make long runs of equal keys
};

class TableAgainstModel : public ::testing::TestWithParam<Shape> {
protected:
    TableAgainstModel() : stored_(definition(), GetParam().blockPages) {
        const char* given = std::getenv("AMBREL_SEED");
        const auto seed =
            given != nullptr ? static_cast<unsigned>(std::stoul(given)) : std::random_device()();
        std::cout << "AMBREL_SEED=" << seed << '\n';
        random_.seed(seed);
        table_ = stored_.open();
    }

    static TableDefinition definition() {
        return {.name = "MODELO",
                .columns = {{"CODE", ColumnType::Character, 2, 0, 0},
                            {"NAME", ColumnType::Character, 60, 0, 0},
                            {"NUM", ColumnType::Numeric, 6, 0, 0},
                            {"DAY", ColumnType::Date, 8, 0, 0},
                            {"KIND", ColumnType::Character, 1, 0, 0}},
                .tags = {{.name = "CODE", .expression = "CODE"},
                         {.name = "NAME", .expression = "NAME"},
                         {.name = "NAMEDES", .expression = "NAME", .descending = true},
                         {.name = "NUM", .expression = "NUM"},
                         {.name = "NUMDES", .expression = "NUM", .descending = true},
                         {.name = "DAY", .expression = "DAY"},
                         {.name = "ONLY", .expression = "CODE", .unique = true}},
                .languageDriver = LanguageDriver::AnsiUs};
    }

    unsigned pick(unsigned low, unsigned high) {
        return std::uniform_int_distribution<unsigned>(low, high)(random_);
    }

    Row anyRow() {
        Row row;
        const unsigned code = pick(0, GetParam().codes - 1);
        row.code = {static_cast<char>('A' + code / 26), static_cast<char>('A' + code % 26)};
        for (int i = 0; i < 5; ++i)
            row.name += static_cast<char>('A' + pick(0, GetParam().nameLetters - 1));
        if (pick(0, 9) > 0)
            row.number = static_cast<int>(pick(0, 400)) - 200;
        if (pick(0, 9) > 0)
            row.day = std::to_string(20200101 + pick(0, 3) * 10000 + pick(0, 11) * 100 + pick(0, 27));
        row.kind = pick(0, 2) == 0 ? "A" : "B";
        return row;
    }

    Bytes recordOf(const Row& row) const {
        Bytes record =
            makeRecord(table_->schema(), {row.code, row.name, row.number ? std::to_string(*row.number) : "",
                                          row.day, row.kind});
        record[0] = row.isDeleted ? '*' : ' ';
        return record;
    }

    void append(const Row& row) {
        model_.rows.push_back(row);
        EXPECT_EQ(table_->append(recordOf(row)), model_.rows.size());
    }
    void overwrite(std::size_t i, const Row& row) {
        table_->overwrite(static_cast<RecordNumber>(i + 1), recordOf(model_.rows[i]), recordOf(row));
        model_.rows[i] = row;
    }
    void erase(std::size_t i) {
        table_->erase(static_cast<RecordNumber>(i + 1), recordOf(model_.rows[i]));
        model_.rows[i].isDeleted = true;
    }

    void changeAnything() {
        const unsigned kind = model_.rows.empty() ? 0 : pick(0, 9);
        if (kind < 4)
            append(anyRow());
        else if (kind < 9)
            overwrite(anyPlace(), anyRow());
        else
            erase(anyPlace());
    }
    std::size_t anyPlace() { return pick(0, static_cast<unsigned>(model_.rows.size()) - 1); }

    virtual void expectOrders() {
        expectOrder("CODE", model_.order(codeOf, std::less<>()));
        expectOrder("NAME", model_.order(nameOf, std::less<>()));
        expectOrder("NAMEDES", model_.order(nameOf, std::greater<>()));
        expectOrder("NUM", model_.order(numberOf, std::less<>()));
        expectOrder("NUMDES", model_.order(numberOf, std::greater<>()));
        expectOrder("DAY", model_.order(dayOf, std::less<>()));
        expectOrder("ONLY", model_.order(codeOf, std::less<>(), true));
    }
    void expectOrder(const char* tag, std::vector<RecordNumber> expected) {
        EXPECT_EQ(order(*table_, tag), expected) << tag;
        std::reverse(expected.begin(), expected.end());
        EXPECT_EQ(orderBackwards(*table_, tag), expected) << tag;
    }
    void expectSeek(const std::string& wanted) {
        std::vector<RecordNumber> expected = model_.order(nameOf, std::less<>());
        const auto at = std::find_if(expected.begin(), expected.end(), [&](RecordNumber number) {
            return model_.rows[number - 1].name >= wanted;
        });
        EXPECT_EQ(seek(*table_, "NAME", wanted), at == expected.end() ? 0 : *at) << wanted;
    }
    void expectAgreement() {
        expectOrders();
        for (int i = 0; i < 10; ++i)
            expectSeek(anyRow().name);
        EXPECT_EQ(stored_.findings(), "");
    }

    MemoryTable stored_;
    Model model_;
    std::mt19937 random_;
    std::unique_ptr<Table> table_;
};

TEST_P(TableAgainstModel, AgreesThroughRandomChanges) {
    for (int i = 1; i <= GetParam().changes; ++i) {
        changeAnything();
        if (i % 400 == 0) {
            expectAgreement();
            ASSERT_FALSE(HasFailure()) << "after " << i << " changes";
        }
    }
    expectAgreement();
}

// All keys of every tag move to one side and back: leaves and whole subtrees empty themselves one after
// another.
TEST_P(TableAgainstModel, AgreesWhenWholeSubtreesEmpty) {
    for (int i = 0; i < GetParam().changes / 4; ++i)
        append(anyRow());
    for (const char* side : {"ZZ", "00"}) {
        std::vector<RecordNumber> sequence = model_.order(nameOf, std::less<>());
        if (*side == '0')
            std::shuffle(sequence.begin(), sequence.end(), random_);
        for (const RecordNumber number : sequence) {
            Row row = model_.rows[number - 1];
            row.code = side;
            row.name = side + std::to_string(pick(0, 99999));
            row.number = *side == 'Z' ? 999 : -999;
            row.day = *side == 'Z' ? "20300101" : "19000101";
            overwrite(number - 1, row);
        }
        expectAgreement();
        ASSERT_FALSE(HasFailure()) << side;
    }
}

TEST_P(TableAgainstModel, AgreesAfterARebuildAndMoreChanges) {
    for (int i = 0; i < GetParam().changes / 4; ++i)
        changeAnything();
    table_->rebuildTags();
    expectAgreement();
    for (int i = 0; i < GetParam().changes / 4; ++i)
        changeAnything();
    expectAgreement();
}

INSTANTIATE_TEST_SUITE_P(Shapes, TableAgainstModel,
                         ::testing::Values(Shape{"FewEqualKeys", 2, 1600, 400, 26},
                                           Shape{"ManyEqualKeys", 2, 1600, 4, 2},
                                           Shape{"SmallBlocks", 1, 1200, 60, 6}),
                         [](const auto& test) { return std::string(test.param.name); });

/// Tags with a FOR condition, which need blocks of 1024 bytes.
class ConditionsAgainstModel : public TableAgainstModel {
protected:
    ConditionsAgainstModel() {
        TableDefinition conditional = definition();
        conditional.tags = {
            {.name = "KINDA", .expression = "NAME", .condition = "KIND=\"A\""},
            {.name = "LIVE", .expression = "CODE+NAME", .condition = ".NOT. DELETED()"},
            {.name = "ONLYLIVE", .expression = "CODE", .condition = ".NOT.DELETED()", .unique = true}};
        stored_ = MemoryTable(conditional);
        table_ = stored_.open();
    }
    void expectOrders() override {
        const auto isLive = [](const Row& row) { return !row.isDeleted; };
        expectOrder("KINDA", model_.order(nameOf, std::less<>(), false,
                                          [](const Row& row) { return row.kind == "A"; }));
        expectOrder("LIVE", model_.order([](const Row& row) { return row.code + row.name; }, std::less<>(),
                                         false, isLive));
        expectOrder("ONLYLIVE", model_.order(codeOf, std::less<>(), true, isLive));
    }
};

TEST_P(ConditionsAgainstModel, AgreesThroughRandomChanges) {
    for (int i = 1; i <= GetParam().changes; ++i) {
        changeAnything();
        if (i % 400 == 0) {
            expectOrders();
            ASSERT_EQ(stored_.findings(), "") << "after " << i << " changes";
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Shapes, ConditionsAgainstModel,
                         ::testing::Values(Shape{"ManyEqualKeys", 2, 1200, 30, 6}),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
