// A table and a model of it do the same random operations through two cursors: every answer is compared, and
// the full check passes at every stage. AMBREL_SEED repeats a run; a failure prints the seed of its round.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <numeric>
#include <optional>

#include "dbase/lock/read_scope.h"
#include "dbase/mdx/index_file.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "dbase/system/file.h"
#include "dbase/table/table.h"
#include "support/LongForm.h"
#include "support/ModelledCursor.h"
#include "support/Seed.h"
#include "support/TableTest.h"

namespace ambrel::test {
namespace {

using dbase::Bookmark;
using dbase::ErrorCode;
using dbase::test::errorOf;
using Cursor = ModelledCursor;

struct ModelRun {
    ModelShape shape;
    bool inScopes;
    int operations;
};
void PrintTo(const ModelRun& run, std::ostream* out) { *out << run.shape.name; }

class RandomOperations : public TableTest, public ::testing::WithParamInterface<ModelRun> {
protected:
    static constexpr int operationsOfARound = 10'000, operationsBetweenChecks = 5'000;

    [[nodiscard]] static const ModelShape& shape() { return GetParam().shape; }
    [[nodiscard]] std::string file() const { return folder / "MODELO.DBF"; }

    void playRound(unsigned seed, int operations) {
        chance_ = Chance(seed);
        makeTable();
        std::optional<dbase::ReadScope> scope;
        for (int done = 1; done <= operations; ++done) {
            if (GetParam().inScopes && chance_.oneIn(10)) {
                scope ? scope.reset() : static_cast<void>(scope.emplace());
            }
            play();
            if (done % operationsBetweenChecks == 0 || done == operations) {
                expectSoundOrders();
            }
            if (HasFailure()) {
                FAIL() << "operation " << done << " of AMBREL_SEED=" << seed;
            }
        }
        one_.reset();
        two_.reset();
        expectSound(file());
    }

    void makeTable() {
        const dbase::TableDefinition definition = modelDefinition(shape());
        dbase::createTable(folder.path(), definition, dbase::IfExists::Replace);
        dbase::Schema schema = dbase::Table::open(file())->schema();
        dbase::IndexFile::format(*dbase::openFile(folder / "MODELO.MDX", dbase::OpenMode::ReadWrite), schema,
                                 definition.name, definition.tags, dbase::UpdateStamp{true, false, 0, 2},
                                 shape().blockPages);
        table_ = std::make_unique<TableModel>(tags_);
        one_ = std::make_unique<Cursor>(*table_, shape(), chance_);
        two_ = std::make_unique<Cursor>(*table_, shape(), chance_);
        open();
    }
    void open() {
        for (Cursor* cursor : {one_.get(), two_.get()}) {
            cursor->open();
        }
    }

    // --- Comparing

    void expectSoundOrders() {
        dbase::Table& table = one_->table.openTable();
        for (const ModelOrder& order : table_->orders()) {
            const std::string& name = order.tag().name;
            if (!name.empty()) {
                std::vector<RecordNumber> expected = order.records();
                EXPECT_EQ(dbase::test::order(table, name), expected) << name;
                std::ranges::reverse(expected);
                EXPECT_EQ(dbase::test::orderBackwards(table, name), expected) << name;
            }
        }
        expectSound(file());
    }

    // --- Operations on both the table and the model

    void play() {
        struct Kind {
            unsigned share;
            std::function<void(RandomOperations&, Cursor&)> play;
        };
        using Run = RandomOperations;
        const auto by = [](void (Cursor::*operation)()) {
            return [operation](Run&, Cursor& cursor) { (cursor.*operation)(); };
        };
        static const std::vector<Kind> kinds{
            {140, by(&Cursor::append)},
            {170, by(&Cursor::edit)},
            {70, by(&Cursor::erase)},
            {30, &Run::amend},
            {20, &Run::contend},
            {10, &Run::overtake},
            {150, by(&Cursor::step)},
            {60, by(&Cursor::walkFromMark)},
            {30, by(&Cursor::goToEnd)},
            {120, by(&Cursor::seek)},
            {40, by(&Cursor::goTo)},
            {30, by(&Cursor::keepOrReturn)},
            {20, by(&Cursor::refresh)},
            {50, by(&Cursor::changeTag)},
            {30, by(&Cursor::changeFilter)},
            {25, by(&Cursor::changeRange)},
            {2, &Run::reopen},
            {1, &Run::rebuild},
        };
        static const unsigned shares = std::accumulate(
            kinds.begin(), kinds.end(), 0U, [](unsigned sum, const Kind& kind) { return sum + kind.share; });
        unsigned drawn = chance_.below(shares);
        auto kind = kinds.begin();
        while (drawn >= kind->share) {
            drawn -= kind++->share;
        }
        kind->play(*this, chance_.oneIn(2) ? *one_ : *two_);
        one_->expectSame();
        two_->expectSame();
    }
    Cursor& otherThan(const Cursor& cursor) { return &cursor == one_.get() ? *two_ : *one_; }

    void amend(Cursor& cursor) { amendAround(cursor, 0); }
    /// Amends several records at once, one of which another cursor may hold.
    void amendAround(Cursor& cursor, RecordNumber held) {
        const RecordNumber first =
            held != 0 ? std::max(held, RecordNumber{4}) - 3 : 1 + chance_.below(table_->recordCount() + 2);
        const RecordNumber most = chance_.below(9);
        const ModelRow drawn = chance_.row(shape());
        const auto change = [&](RecordNumber record, ModelRow row) {
            (record % 2 == 0 ? row.name : row.kind) = record % 2 == 0 ? drawn.name : drawn.kind;
            row.number = record % 3 == 0 ? row.number : drawn.number;
            return row;
        };
        dbase::Table& table = cursor.table.openTable();
        const RecordNumber next =
            table.amend(first, most, [&](const dbase::RecordView& before, std::span<char> after) {
                const std::vector<std::string> texts =
                    textsOf(change(before.number, table_->row(before.number)));
                const dbase::test::Bytes bytes = dbase::test::makeRecord(table.schema(), texts);
                std::ranges::copy(bytes, after.begin());
            });
        const bool isAny = most > 0 && first <= table_->recordCount();
        const RecordNumber end = isAny ? std::min(first + most, table_->recordCount() + 1) : first;
        EXPECT_EQ(next, isAny && end <= table_->recordCount() ? end : 0);
        for (RecordNumber record = first; record < end; ++record) {
            if (table_->isThere(record) && record != held) {
                table_->overwrite(record, change(record, table_->row(record)));
            }
        }
    }
    /// While one cursor edits a record, no other one gets it.
    void contend(Cursor& cursor) {
        Cursor& other = otherThan(cursor);
        const RecordNumber record = cursor.model.record;
        EXPECT_EQ(other.table.goTo(Bookmark(record)), other.model.goTo(record));
        if (record == 0 || other.model.record != record || !other.model.isShownAsStored()) {
            return;
        }
        other.table.edit();
        EXPECT_EQ(errorOf([&] { cursor.table.edit(); }).code(), ErrorCode::LockRefused);
        EXPECT_EQ(errorOf([&] { cursor.table.erase(); }).code(), ErrorCode::LockRefused);
        amendAround(cursor, record);
        other.finishEdit();
    }
    /// A change that expects another state of the record.
    void overtake(Cursor& cursor) {
        const RecordNumber record = 1 + chance_.below(table_->recordCount() + 1);
        dbase::Table& table = cursor.table.openTable();
        const dbase::test::Bytes believed =
            dbase::test::makeRecord(table.schema(), {"??", "", "", "", ""}); // no row has this code
        EXPECT_EQ(errorOf([&] { table.overwrite(record, believed, believed); }).code(),
                  ErrorCode::RecordChanged);
        EXPECT_EQ(errorOf([&] { table.erase(record, believed); }).code(), ErrorCode::RecordChanged);
    }

    void reopen(Cursor&) {
        one_->table.close();
        two_->table.close();
        open();
    }
    void rebuild(Cursor& cursor) { cursor.table.openTable().rebuildTags(); }

    std::vector<ModelTag> tags_ = modelTags(shape());
    Chance chance_{0};
    std::unique_ptr<TableModel> table_;
    std::unique_ptr<Cursor> one_, two_;
};

TEST_P(RandomOperations, AreAnsweredAsTheModelAnswersThem) {
    unsigned seed = seedOfThisRun();
    for (int left = GetParam().operations; left > 0 && !HasFailure(); left -= operationsOfARound) {
        playRound(seed++, std::min(left, operationsOfARound));
    }
}

std::vector<ModelRun> runs(int operations) {
    return {{{"SmallPages", 1, 400, 26, false}, false, operations},
            {{"SmallPagesEqualKeys", 1, 6, 2, false}, true, operations},
            {{"Conditions", 2, 400, 26, true}, true, operations},
            {{"ConditionsEqualKeys", 2, 30, 3, true}, false, operations}};
}
std::string nameOf(const ::testing::TestParamInfo<ModelRun>& run) { return run.param.shape.name; }

INSTANTIATE_TEST_SUITE_P(HundredThousand, RandomOperations, ::testing::ValuesIn(runs(25'000)), nameOf);
INSTANTIATE_TEST_SUITE_P(Million, RandomOperations, ::testing::ValuesIn(runs(longForm(250'000, 2'500'000))),
                         nameOf);

} // namespace
} // namespace ambrel::test
