// Random changes of a table against a model made of standard containers. AMBREL_SEED repeats a run.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>

#include "dbase/support/StoredTable.h"
#include "dbase/table/table.h"
#include "support/ModelRows.h"
#include "support/Seed.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using ambrel::test::Chance;
using ambrel::test::ModelOrder;
using ambrel::test::ModelRow;
using ambrel::test::ModelShape;
using ambrel::test::ModelTag;
using ambrel::test::TableModel;

struct Plan {
    ModelShape shape;
    int changes;
};
void PrintTo(const Plan& plan, std::ostream* out) { *out << plan.shape.name; }

class TableAgainstModel : public ::testing::TestWithParam<Plan> {
protected:
    static constexpr int changesBetweenChecks = 400;

    [[nodiscard]] static const ModelShape& shape() { return GetParam().shape; }

    [[nodiscard]] Bytes recordOf(const ModelRow& row) const {
        Bytes record = makeRecord(table_->schema(), ambrel::test::textsOf(row));
        record[0] = row.isDeleted ? '*' : ' ';
        return record;
    }

    void append(const ModelRow& row) {
        const RecordNumber number = model_.append(row);
        EXPECT_EQ(table_->append(recordOf(row)), number);
    }
    void overwrite(RecordNumber number, const ModelRow& row) {
        table_->overwrite(number, recordOf(model_.row(number)), recordOf(row));
        model_.overwrite(number, row);
    }
    void erase(RecordNumber number) {
        table_->erase(number, recordOf(model_.row(number)));
        model_.erase(number);
    }
    void changeAnything() {
        const unsigned kind = model_.recordCount() == 0 ? 0 : chance_.below(10);
        if (kind < 4) {
            append(chance_.row(shape()));
        } else if (kind < 9) {
            overwrite(anyRecord(), chance_.row(shape()));
        } else {
            erase(anyRecord());
        }
    }
    [[nodiscard]] RecordNumber anyRecord() { return 1 + chance_.below(model_.recordCount()); }

    void expectOrder(const ModelOrder& order) {
        const std::string& tag = order.tag().name;
        std::vector<RecordNumber> expected = order.records();
        EXPECT_EQ(test::order(*table_, tag), expected) << tag;
        std::ranges::reverse(expected);
        EXPECT_EQ(orderBackwards(*table_, tag), expected) << tag;
    }
    void expectSeek(const ModelOrder& order, const std::string& wanted) {
        std::vector<RecordNumber> expected = order.records();
        const auto at = std::ranges::find_if(expected, [&](RecordNumber number) {
            return order.tag().compare(order.tag().key(model_.row(number)), wanted) >= 0;
        });
        EXPECT_EQ(seek(*table_, order.tag().name, wanted), at == expected.end() ? 0 : *at) << wanted;
    }
    void expectAgreement() {
        for (const ModelOrder& order : model_.orders()) {
            const ModelTag& tag = order.tag();
            if (tag.name.empty()) {
                continue; // the order of the file
            }
            expectOrder(order);
            for (int i = 0; tag.name.starts_with("NAME") && i < 10; ++i) {
                expectSeek(order, tag.key(chance_.row(shape())));
            }
        }
        EXPECT_EQ(stored_.findings(), "");
    }

    MemoryTable stored_{ambrel::test::modelDefinition(shape()), shape().blockPages};
    std::vector<ModelTag> tags_ = ambrel::test::modelTags(shape());
    TableModel model_{tags_};
    Chance chance_{ambrel::test::seedOfThisRun()};
    std::unique_ptr<Table> table_ = stored_.open();
};

TEST_P(TableAgainstModel, AgreesThroughRandomChanges) {
    for (int i = 1; i <= GetParam().changes; ++i) {
        changeAnything();
        if (i % changesBetweenChecks == 0) {
            expectAgreement();
            ASSERT_FALSE(HasFailure()) << "after " << i << " changes";
        }
    }
    expectAgreement();
}

// All keys of every tag move to one side and back: leaves and whole subtrees become empty one after
// another.
TEST_P(TableAgainstModel, AgreesWhenWholeSubtreesEmpty) {
    for (int i = 0; i < GetParam().changes / 4; ++i) {
        append(chance_.row(shape()));
    }
    std::mt19937 random(ambrel::test::seedOfThisRun());
    for (const bool isLast :
         {true, false}) { // in the order of a tag to its end, in no order to its beginning
        std::vector<RecordNumber> sequence = model_.order("NAME").records();
        if (!isLast) {
            std::ranges::shuffle(sequence, random);
        }
        for (const RecordNumber number : sequence) {
            ModelRow row = model_.row(number);
            row.code = isLast ? "ZZ" : "00";
            row.name = row.code + std::to_string(chance_.below(100'000));
            row.number = isLast ? 999 : -999;
            row.day = isLast ? "20300101" : "19000101";
            overwrite(number, row);
        }
        expectAgreement();
        ASSERT_FALSE(HasFailure()) << (isLast ? "last" : "first");
    }
}

TEST_P(TableAgainstModel, AgreesAfterARebuildAndMoreChanges) {
    for (int i = 0; i < GetParam().changes / 4; ++i) {
        changeAnything();
    }
    table_->rebuildTags();
    expectAgreement();
    for (int i = 0; i < GetParam().changes / 4; ++i) {
        changeAnything();
    }
    expectAgreement();
}

INSTANTIATE_TEST_SUITE_P(Shapes, TableAgainstModel,
                         ::testing::Values(Plan{{"FewEqualKeys", 2, 400, 26, false}, 1600},
                                           Plan{{"ManyEqualKeys", 2, 4, 2, false}, 1600},
                                           Plan{{"SmallBlocks", 1, 60, 6, false}, 1200},
                                           Plan{{"Conditions", 2, 30, 6, true}, 1200}),
                         [](const auto& test) { return std::string(test.param.shape.name); });

} // namespace
