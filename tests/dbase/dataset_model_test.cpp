// Property test: a dataset and a plain model of it do the same random things and must show the same at every
// step.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <random>

#include "dataset_model.h"
#include "dbase/error.h"
#include "dbase/table.h"
#include "support/TableTest.h"
#include "workstation.h"

namespace dbase {
namespace {

const std::vector<ModelTag>& tags() {
    const auto a = [](const ModelRow& row) { return padded(row.a, 2); };
    const auto b = [](const ModelRow& row) { return padded(row.b, 3); };
    const auto ab = [](const ModelRow& row) { return padded(row.a, 2) + padded(row.b, 3); };
    const auto n = [](const ModelRow& row) { return sortable(row.n); };
    static const std::vector<ModelTag> all{
        {.name = "A", .key = a},
        {.name = "AB", .key = ab},
        {.name = "N", .key = n},
        {.name = "DOWN", .key = b, .descending = true},
        {.name = "FIRSTS", .key = a, .unique = true},
        {.name = "SOME", .key = b, .condition = [](const ModelRow& row) { return row.n >= 5; }}};
    return all;
}

struct NamedFilter {
    const char* text;
    DatasetModel::Filter test;
};

const std::vector<NamedFilter>& filters() {
    static const std::vector<NamedFilter> all{
        {"", {}},
        {"N>=5", [](const ModelRow& row) { return row.n >= 5; }},
        {"A='b' OR A='da'", [](const ModelRow& row) { return row.a == "b" || row.a == "da"; }},
        {"NOT A='c' AND N<8", [](const ModelRow& row) { return row.a != "c" && row.n < 8; }},
        {"N=99", [](const ModelRow& row) { return row.n == 99; }}};
    return all;
}

struct Setting {
    const char* name;
    ReadGuard guard;
    bool otherProcess;
};
void PrintTo(const Setting& setting, std::ostream* out) { *out << setting.name; }

class ModelTest : public ambrel::test::TableTest, public ::testing::WithParamInterface<Setting> {
protected:
    static constexpr int operations = 1000, changes = 500;

    ModelTest() : random_(seed()) {
        std::cout << "AMBREL_SEED=" << seed() << '\n';
        TableDefinition layout =
            ambrel::test::defineTable("MODEL", {"A C2", "B C3", "N N4"}, {"A", "AB=A+B", "N"});
        layout.tags.push_back({.name = "DOWN", .expression = "B", .descending = true});
        layout.tags.push_back({.name = "FIRSTS", .expression = "A", .unique = true});
        layout.tags.push_back({.name = "SOME", .expression = "B", .condition = "N>=5"});
        std::vector<ambrel::test::Row> rows;
        for (int i = 0; i < 300; ++i) {
            const ModelRow row = randomRow(random_);
            model_.add(row);
            rows.push_back({row.a, row.b, std::to_string(row.n)});
        }
        createTable(layout, rows);
    }

    static unsigned seed() {
        static const unsigned chosen = [] {
            const char* given = std::getenv("AMBREL_SEED");
            return given != nullptr ? static_cast<unsigned>(std::atoi(given)) : std::random_device()();
        }();
        return chosen;
    }

    static unsigned below(std::mt19937& random, unsigned limit) {
        return static_cast<unsigned>(random() % limit);
    }
    unsigned below(unsigned limit) { return below(random_, limit); }

    static ModelRow randomRow(std::mt19937& random) {
        static const std::vector<std::string> as{"a", "b", "c", "d", "da", "e"};
        ModelRow row;
        row.a = as[below(random, static_cast<unsigned>(as.size()))];
        row.b = std::string(1, static_cast<char>('p' + below(random, 8))) +
                std::string(below(random, 2), static_cast<char>('a' + below(random, 3)));
        row.n = static_cast<int>(below(random, 13)) - 2;
        return row;
    }

    static void write(Dataset& table, const ModelRow& row) {
        table.field("A").setText(row.a);
        table.field("B").setText(row.b);
        table.field("N").setInteger(row.n);
    }

    // --- Changes that another cursor makes: drawn from the state of the table, which the model shares.

    struct Change {
        RecordNumber record; // an append where this one is not there
        bool isErase;
        ModelRow row;
    };
    static Change draw(std::mt19937& random, RecordNumber near) {
        const bool isNear = near != 0 && below(random, 3) == 0; // often right where the reader stands
        const RecordNumber record = isNear ? near : 1 + below(random, 450);
        return {record, below(random, 4) == 0, randomRow(random)};
    }
    static void apply(const Change& change, Dataset& table) {
        if (!table.goTo(Bookmark(change.record))) {
            table.append();
            write(table, change.row);
            table.post();
        } else if (change.isErase) {
            table.erase();
        } else {
            table.edit();
            write(table, change.row);
            table.post();
        }
    }
    static void apply(const Change& change, DatasetModel& model) {
        if (!model.isThere(change.record)) {
            model.add(change.row);
        } else if (change.isErase) {
            model.erase(change.record);
        } else {
            model.replace(change.record, change.row);
        }
    }

    // --- Operations on the dataset and the model alike

    void scan() {
        for (unsigned left = 1 + below(90); left > 0; --left) {
            EXPECT_EQ(table_.next(), model_.step(true));
            if (below(40) == 0) {
                change();
            }
        }
    }
    void changeTag() {
        const unsigned choice = below(static_cast<unsigned>(tags().size()) + 1);
        const ModelTag* tag = choice < tags().size() ? &tags()[choice] : nullptr;
        table_.setTag(tag != nullptr ? tag->name : "");
        if (tag != model_.tag()) {
            model_.setTag(tag);
            model_.reposition();
        }
    }
    void changeFilter() {
        const NamedFilter& filter = filters()[below(static_cast<unsigned>(filters().size()))];
        table_.setFilter(filter.text);
        model_.setFilter(filter.test);
        model_.reposition();
    }
    /// A random key of the active tag, for the table and for the model.
    std::pair<Key, std::string> randomKey() {
        const ModelRow row = randomRow(random_);
        const std::string& name = model_.tag()->name;
        if (name == "N") {
            return {{{"N", row.n}}, sortable(row.n)};
        }
        if (name == "DOWN" || name == "SOME") {
            return {{{"B", row.b}}, padded(row.b, 3)};
        }
        if (name == "AB" && below(2) == 0) {
            return {{{"A", row.a}, {"B", row.b}}, padded(row.a, 2) + padded(row.b, 3)};
        }
        return {{{"A", row.a}, {"OTHER", 5}}, padded(row.a, 2)};
    }
    void changeRange() {
        if (model_.tag() == nullptr) {
            return;
        }
        if (below(3) == 0) {
            table_.clearRange();
            if (model_.hasRange()) {
                model_.clearRange();
                model_.reposition();
            }
            return;
        }
        const auto low = randomKey(), high = randomKey();
        table_.setRange(low.first, high.first);
        model_.setRange(low.second, high.second);
        model_.goToEnd(true);
    }
    void seek() {
        if (model_.tag() != nullptr) {
            const auto key = randomKey();
            const bool exact = below(2) == 0;
            EXPECT_EQ(table_.seek(key.first, exact ? SeekMode::Exact : SeekMode::Nearest),
                      model_.seek(key.second, exact));
        }
    }
    void goTo() {
        const RecordNumber number = 1 + below(model_.recordCount() + 5);
        EXPECT_EQ(table_.goTo(Bookmark(number)), model_.goTo(number));
    }
    void append() {
        const ModelRow row = randomRow(random_);
        table_.append();
        write(table_, row);
        table_.post();
        model_.add(row);
        model_.land(model_.recordCount());
    }
    void edit() {
        if (model_.record == 0) {
            return;
        }
        const ModelRow row = randomRow(random_);
        if (!model_.isShownAsStored()) {
            EXPECT_THROW(table_.edit(), Error);
            model_.reposition();
            return;
        }
        table_.edit();
        write(table_, row);
        if (below(5) == 0) {
            table_.cancel();
            return;
        }
        table_.post();
        model_.replace(model_.record, row);
        model_.land(model_.record);
    }
    void erase() {
        if (model_.record == 0) {
            return;
        }
        if (!model_.isShownAsStored()) {
            EXPECT_THROW(table_.erase(), Error);
            return;
        }
        table_.erase();
        model_.erase(model_.record);
        model_.reposition();
    }
    void change() {
        if (away_ != nullptr) {
            if (changesLeft_ == 0) {
                return;
            }
            --changesLeft_;
            ASSERT_EQ(away_->step(), "");
            apply(draw(changes_, 0), model_);
        } else {
            const Change change = draw(changes_, model_.record);
            apply(change, other_);
            apply(change, model_);
        }
    }

    void operate() {
        switch (below(20)) {
        case 0:
        case 1:
        case 2:
        case 3:
            return scan();
        case 4:
        case 5:
            EXPECT_EQ(table_.next(), model_.step(true));
            return;
        case 6:
        case 7:
            EXPECT_EQ(table_.prior(), model_.step(false));
            return;
        case 8:
            return table_.first(), model_.goToEnd(true);
        case 9:
            return table_.last(), model_.goToEnd(false);
        case 10:
        case 11:
            return seek();
        case 12:
            return goTo();
        case 13:
            return table_.refresh(), model_.reposition();
        case 14:
            return changeTag();
        case 15:
            return below(2) == 0 ? changeFilter() : changeRange();
        case 16:
            return below(2) == 0 ? append() : erase();
        case 17:
            return edit();
        default:
            return change();
        }
    }

    void expectSame(int operation) {
        ASSERT_EQ(table_.recordNumber(), model_.record) << "operation " << operation;
        ASSERT_EQ(table_.isEmpty(), model_.record == 0) << "operation " << operation;
        ASSERT_EQ(table_.bof(), model_.bof) << "operation " << operation;
        ASSERT_EQ(table_.eof(), model_.eof) << "operation " << operation;
        const ModelRow& row = model_.shown;
        ASSERT_EQ(table_.field("A").text(), row.a) << "operation " << operation;
        ASSERT_EQ(table_.field("B").text(), row.b) << "operation " << operation;
        ASSERT_EQ(table_.field("N").integer(), row.n) << "operation " << operation;
    }

    std::mt19937 random_;
    std::mt19937 changes_{seed() + 1}; // in step with the other process's
    int changesLeft_ = changes;
    DatasetModel model_;
    Dataset table_{"DB", "MODEL", "A"}, other_{"DB", "MODEL"};
    std::unique_ptr<Workstation> away_;
};

TEST_P(ModelTest, ShowsWhatTheModelShows) {
    if (GetParam().otherProcess) {
        std::vector<std::function<void()>> steps(changes, [this] {
            other_.open();
            apply(draw(changes_, 0), other_);
        });
        away_ = std::make_unique<Workstation>(std::move(steps));
    } else {
        other_.open();
    }
    table_.open();
    table_.openTable().setReadGuard(GetParam().guard);
    model_.setTag(&tags().front());
    model_.goToEnd(true);
    for (int operation = 0; operation < operations && !HasFailure(); ++operation) {
        operate();
        expectSame(operation);
    }
}

INSTANTIATE_TEST_SUITE_P(Guards, ModelTest,
                         ::testing::Values(Setting{"Lock", ReadGuard::Lock, false},
                                           Setting{"Counter", ReadGuard::Counter, false},
                                           Setting{"LockAndAnotherProcess", ReadGuard::Lock, true},
                                           Setting{"CounterAndAnotherProcess", ReadGuard::Counter, true}),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
} // namespace dbase
