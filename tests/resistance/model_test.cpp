// A table and a model of it do the same random things through two cursors: every answer is compared, and the
// full check passes at every stage. AMBREL_SEED repeats a run; what fails tells the seed of its round.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <memory>

#include "cursor_model.h"
#include "dbase/dataset.h"
#include "dbase/error.h"
#include "dbase/file.h"
#include "dbase/index_file.h"
#include "dbase/support/StoredTable.h"
#include "dbase/table.h"
#include "model_rows.h"
#include "support/LongForm.h"
#include "support/TableTest.h"

namespace ambrel::test {
namespace {

using dbase::Bookmark;
using dbase::ErrorCode;

struct ModelRun {
    ModelShape shape;
    dbase::ReadGuard guard;
    int operations;
};
void PrintTo(const ModelRun& run, std::ostream* out) { *out << run.shape.name; }

unsigned baseSeed() {
    static const unsigned chosen = [] {
        const char* given = std::getenv("AMBREL_SEED");
        return given != nullptr ? static_cast<unsigned>(std::stoul(given)) : std::random_device()();
    }();
    return chosen;
}

/// A dataset and what it ought to show.
struct Cursor {
    explicit Cursor(const TableModel& stored) : model(stored) {}

    dbase::Dataset table{"DB", "MODELO"};
    CursorModel model;
    Bookmark kept;
};

class RandomOperations : public TableTest, public ::testing::WithParamInterface<ModelRun> {
protected:
    static constexpr int operationsOfARound = 10'000, operationsBetweenChecks = 5'000;

    [[nodiscard]] static const ModelShape& shape() { return GetParam().shape; }
    [[nodiscard]] std::string file() const { return folder / "MODELO.DBF"; }

    void playRound(unsigned seed, int operations) {
        chance_ = Chance(seed);
        makeTable();
        for (int done = 1; done <= operations; ++done) {
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
        one_ = std::make_unique<Cursor>(*table_);
        two_ = std::make_unique<Cursor>(*table_);
        open();
    }
    void open() {
        for (Cursor* cursor : {one_.get(), two_.get()}) {
            cursor->table.open();
            cursor->model.open();
        }
        one_->table.openTable().setReadGuard(GetParam().guard);
    }

    // --- Judging

    void expectSame(Cursor& cursor) {
        const CursorModel& model = cursor.model;
        EXPECT_EQ(cursor.table.recordNumber(), model.record);
        EXPECT_EQ(cursor.table.isEmpty(), model.record == 0);
        EXPECT_EQ(cursor.table.bof(), model.bof);
        EXPECT_EQ(cursor.table.eof(), model.eof);
        const std::vector<std::string> texts = textsOf(model.shown);
        const std::vector<dbase::Field*> fields = cursor.table.fields();
        for (std::size_t i = 0; i < texts.size(); ++i) {
            EXPECT_EQ(fields[i]->text(), texts[i]);
        }
    }
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
    template<typename Operation>
    void expectRefusal(ErrorCode code, Operation&& operation) {
        try {
            operation();
        } catch (const dbase::Error& error) {
            EXPECT_EQ(error.code(), code) << error.what();
            return;
        }
        ADD_FAILURE() << "nothing was refused";
    }

    // --- Operations on the table and the model alike

    void play() {
        struct Kind {
            unsigned share;
            void (RandomOperations::*play)(Cursor&);
        };
        using Run = RandomOperations;
        static constexpr Kind kinds[] = {
            {140, &Run::append}, {170, &Run::edit},     {70, &Run::erase},        {30, &Run::amend},
            {20, &Run::contend}, {10, &Run::overtake},  {150, &Run::step},        {60, &Run::walkFromMark},
            {30, &Run::goToEnd}, {120, &Run::seek},     {40, &Run::goTo},         {30, &Run::keepOrReturn},
            {20, &Run::refresh}, {50, &Run::changeTag}, {30, &Run::changeFilter}, {25, &Run::changeRange},
            {2, &Run::reopen},   {1, &Run::rebuild},
        };
        unsigned drawn = chance_.below(998);
        const Kind* kind = kinds;
        while (drawn >= kind->share) {
            drawn -= kind++->share;
        }
        (this->*kind->play)(chance_.oneIn(2) ? *one_ : *two_);
        expectSame(*one_);
        expectSame(*two_);
    }
    Cursor& otherThan(const Cursor& cursor) { return &cursor == one_.get() ? *two_ : *one_; }

    static void write(Cursor& cursor, const ModelRow& row) {
        const std::vector<std::string> texts = textsOf(row);
        const std::vector<dbase::Field*> fields = cursor.table.fields();
        for (std::size_t i = 0; i < texts.size(); ++i) {
            fields[i]->setText(texts[i]);
        }
    }

    void append(Cursor& cursor) {
        const ModelRow row = chance_.row(shape());
        cursor.table.append();
        write(cursor, row);
        cursor.table.post();
        cursor.model.land(table_->append(row));
    }
    void edit(Cursor& cursor) {
        if (cursor.model.record == 0) {
            return;
        }
        if (!cursor.model.isShownAsStored()) {
            expectRefusal(ErrorCode::RecordChanged, [&] { cursor.table.edit(); });
            cursor.model.reposition();
            return;
        }
        cursor.table.edit();
        finishEdit(cursor);
    }
    void finishEdit(Cursor& cursor) {
        const ModelRow row = chance_.row(shape());
        write(cursor, row);
        if (chance_.oneIn(5)) {
            cursor.table.cancel();
            return;
        }
        cursor.table.post();
        table_->overwrite(cursor.model.record, row);
        cursor.model.land(cursor.model.record);
    }
    void erase(Cursor& cursor) {
        if (cursor.model.record == 0) {
            return;
        }
        if (!cursor.model.isShownAsStored()) {
            expectRefusal(ErrorCode::RecordChanged, [&] { cursor.table.erase(); });
            return;
        }
        cursor.table.erase();
        table_->erase(cursor.model.record);
        cursor.model.reposition();
    }
    void amend(Cursor& cursor) { amendAround(cursor, 0); }
    /// Several records at once, one of which may be held by somebody.
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
    /// While one cursor edits a record, nobody else gets it.
    void contend(Cursor& cursor) {
        Cursor& other = otherThan(cursor);
        const RecordNumber record = cursor.model.record;
        EXPECT_EQ(other.table.goTo(Bookmark(record)), other.model.goTo(record));
        if (record == 0 || other.model.record != record || !other.model.isShownAsStored()) {
            return;
        }
        other.table.edit();
        expectRefusal(ErrorCode::LockRefused, [&] { cursor.table.edit(); });
        expectRefusal(ErrorCode::LockRefused, [&] { cursor.table.erase(); });
        amendAround(cursor, record);
        finishEdit(other);
    }
    /// A change that takes another state of the record for granted.
    void overtake(Cursor& cursor) {
        const RecordNumber record = 1 + chance_.below(table_->recordCount() + 1);
        dbase::Table& table = cursor.table.openTable();
        const dbase::test::Bytes believed =
            dbase::test::makeRecord(table.schema(), {"??", "", "", "", ""}); // no row has this code
        expectRefusal(ErrorCode::RecordChanged, [&] { table.overwrite(record, believed, believed); });
        expectRefusal(ErrorCode::RecordChanged, [&] { table.erase(record, believed); });
    }

    void step(Cursor& cursor) { walk(cursor, chance_.oneIn(2), 1 + chance_.below(4)); }
    static void walk(Cursor& cursor, bool isForward, unsigned steps) {
        for (bool isOn = true; isOn && steps > 0; --steps) {
            isOn = isForward ? cursor.table.next() : cursor.table.prior();
            EXPECT_EQ(isOn, cursor.model.step(isForward));
            EXPECT_EQ(cursor.table.recordNumber(), cursor.model.record);
        }
    }
    void walkFromMark(Cursor& cursor) {
        const Bookmark mark = cursor.table.bookmark();
        for (const bool isForward : {true, false}) {
            walk(cursor, isForward, 1 + chance_.below(40));
            EXPECT_EQ(cursor.table.goTo(mark), cursor.model.goTo(mark.record()));
        }
    }
    void goToEnd(Cursor& cursor) {
        const bool isFirst = chance_.oneIn(2);
        isFirst ? cursor.table.first() : cursor.table.last();
        cursor.model.goToEnd(isFirst);
    }
    std::pair<dbase::Key, std::string> anyKey(Cursor& cursor) {
        const bool isStored = table_->recordCount() > 0 && chance_.oneIn(2);
        return chance_.key(cursor.model.tag(), isStored
                                                   ? table_->row(1 + chance_.below(table_->recordCount()))
                                                   : chance_.row(shape()));
    }
    void seek(Cursor& cursor) {
        if (cursor.model.tag().name.empty()) {
            return;
        }
        const auto [key, text] = anyKey(cursor);
        const bool isExact = chance_.oneIn(2);
        EXPECT_EQ(cursor.table.seek(key, isExact ? dbase::SeekMode::Exact : dbase::SeekMode::Nearest),
                  cursor.model.seek(text, isExact));
    }
    void goTo(Cursor& cursor) {
        const RecordNumber record = chance_.below(table_->recordCount() + 4);
        EXPECT_EQ(cursor.table.goTo(Bookmark(record)), cursor.model.goTo(record));
    }
    void keepOrReturn(Cursor& cursor) {
        if (chance_.oneIn(2)) {
            cursor.kept = cursor.table.bookmark();
        } else {
            EXPECT_EQ(cursor.table.goTo(cursor.kept), cursor.model.goTo(cursor.kept.record()));
        }
    }
    void refresh(Cursor& cursor) {
        cursor.table.refresh();
        cursor.model.reposition();
    }

    void changeTag(Cursor& cursor) {
        const auto& orders = table_->orders();
        const ModelOrder& order = orders[chance_.below(static_cast<unsigned>(orders.size()))];
        cursor.table.setTag(order.tag().name);
        cursor.model.setOrder(order);
    }
    void changeFilter(Cursor& cursor) {
        const auto& filters = modelFilters();
        const NamedFilter& filter = filters[chance_.below(static_cast<unsigned>(filters.size()))];
        cursor.table.setFilter(filter.text);
        cursor.model.setFilter(filter.test);
    }
    void changeRange(Cursor& cursor) {
        if (cursor.model.hasRange() || cursor.model.tag().name.empty()) {
            cursor.table.clearRange();
            cursor.model.clearRange();
            return;
        }
        const auto low = anyKey(cursor), high = anyKey(cursor);
        cursor.table.setRange(low.first, high.first);
        cursor.model.setRange(low.second, high.second);
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
    std::cout << "AMBREL_SEED=" << baseSeed() << '\n';
    unsigned seed = baseSeed();
    for (int left = GetParam().operations; left > 0 && !HasFailure(); left -= operationsOfARound) {
        playRound(seed++, std::min(left, operationsOfARound));
    }
}

std::vector<ModelRun> runs(int operations) {
    using dbase::ReadGuard;
    return {{{"SmallPages", 1, 400, 26, false}, ReadGuard::Lock, operations},
            {{"SmallPagesEqualKeys", 1, 6, 2, false}, ReadGuard::Counter, operations},
            {{"Conditions", 2, 400, 26, true}, ReadGuard::Counter, operations},
            {{"ConditionsEqualKeys", 2, 30, 3, true}, ReadGuard::Lock, operations}};
}
std::string nameOf(const ::testing::TestParamInfo<ModelRun>& run) { return run.param.shape.name; }

INSTANTIATE_TEST_SUITE_P(HundredThousand, RandomOperations, ::testing::ValuesIn(runs(25'000)), nameOf);
INSTANTIATE_TEST_SUITE_P(Million, RandomOperations, ::testing::ValuesIn(runs(longForm(250'000, 2'500'000))),
                         nameOf);

} // namespace
} // namespace ambrel::test
