// Another cursor or process changes rows in the middle of a walk: a dataset and a plain model of it do the
// same random operations, and must show the same at every step. AMBREL_SEED repeats a run.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>

#include "dbase/lock/read_scope.h"
#include "dbase/table/workstation.h"
#include "support/ModelledCursor.h"
#include "support/Seed.h"
#include "support/TableTest.h"

namespace ambrel::test {
namespace {

/// Few codes and letters: long runs of equal keys.
constexpr ModelShape shape{.name = "", .blockPages = 2, .codes = 6, .nameLetters = 3, .hasConditions = true};

struct Setting {
    const char* name;
    bool otherProcess, inScopes;
};
void PrintTo(const Setting& setting, std::ostream* out) { *out << setting.name; }

class ChangesInTheMiddle : public TableTest, public ::testing::WithParamInterface<Setting> {
protected:
    static constexpr int operations = 1000, changes = 500, firstRows = 300, mostRows = 450;

    ChangesInTheMiddle() {
        dbase::createTable(folder.path(), modelDefinition(shape));
        dbase::Dataset writer("DB", "MODELO");
        writer.open();
        for (int i = 0; i < firstRows; ++i) {
            const ModelRow row = chance_.row(shape);
            append(writer, row);
            stored_.append(row);
        }
    }

    // --- The others' changes: drawn from the state of the table, which the model shares.

    struct Change {
        RecordNumber record; // an append if it does not exist
        bool isErase;
        ModelRow row;
    };
    static Change draw(Chance& chance, RecordNumber near) {
        const bool isNear = near != 0 && chance.oneIn(3); // often right at the reader's position
        const RecordNumber record = isNear ? near : 1 + chance.below(mostRows);
        const bool isErase = chance.oneIn(4);
        return {record, isErase, chance.row(shape)};
    }
    static void append(dbase::Dataset& table, const ModelRow& row) {
        table.append();
        setFields(table, row);
        table.post();
    }
    static void apply(const Change& change, dbase::Dataset& table) {
        if (!table.goTo(dbase::Bookmark(change.record))) {
            append(table, change.row);
        } else if (change.isErase) {
            table.erase();
        } else {
            table.edit();
            setFields(table, change.row);
            table.post();
        }
    }
    static void apply(const Change& change, TableModel& table) {
        if (!table.isThere(change.record)) {
            table.append(change.row);
        } else if (change.isErase) {
            table.erase(change.record);
        } else {
            table.overwrite(change.record, change.row);
        }
    }

    /// Starts the other process, which draws the same changes as this one.
    void startOtherProcess() {
        away_ = std::make_unique<dbase::Workstation>(std::vector<std::function<void()>>(changes, [this] {
            other_.open();
            apply(draw(changes_, 0), other_);
        }));
    }
    void change() {
        if (away_ == nullptr) {
            const Change change = draw(changes_, cursor_.model.record);
            apply(change, other_);
            apply(change, stored_);
        } else if (changesLeft_ > 0) {
            --changesLeft_;
            dbase::ReadScope::letGo(); // here one process waits for the other
            ASSERT_EQ(away_->step(), "");
            apply(draw(changes_, 0), stored_);
        }
    }

    // --- Operations of the dataset and the model

    void scan() {
        for (unsigned left = 1 + chance_.below(90); left > 0; --left) {
            cursor_.walk(true, 1);
            if (chance_.oneIn(40)) {
                change();
            }
        }
    }
    /// Puts some consecutive operations into one scope.
    void beginOrEndScope() {
        if (GetParam().inScopes && chance_.oneIn(4)) {
            scope_ ? scope_.reset() : static_cast<void>(scope_.emplace());
        }
    }
    void operate() {
        beginOrEndScope();
        const unsigned kind = chance_.below(20);
        if (kind < 4) {
            scan();
        } else if (kind < 7) {
            cursor_.step();
        } else if (kind < 9) {
            cursor_.goToEnd();
        } else if (kind < 11) {
            cursor_.seek();
        } else if (kind < 12) {
            cursor_.goTo();
        } else if (kind < 13) {
            cursor_.refresh();
        } else if (kind < 14) {
            cursor_.changeTag();
        } else if (kind < 15) {
            chance_.oneIn(2) ? cursor_.changeFilter() : cursor_.changeRange();
        } else if (kind < 16) {
            chance_.oneIn(2) ? cursor_.append() : cursor_.erase();
        } else if (kind < 17) {
            cursor_.edit();
        } else {
            change();
        }
    }

    Chance chance_{seedOfThisRun()};
    Chance changes_{seedOfThisRun() + 1}; // in step with the other process's
    int changesLeft_ = changes;
    std::vector<ModelTag> tags_ = modelTags(shape);
    TableModel stored_{tags_};
    ModelledCursor cursor_{stored_, shape, chance_};
    dbase::Dataset other_{"DB", "MODELO"};
    std::unique_ptr<dbase::Workstation> away_;
    std::optional<dbase::ReadScope> scope_;
};

TEST_P(ChangesInTheMiddle, AreShownAsTheModelShowsThem) {
    if (GetParam().otherProcess) {
        startOtherProcess();
    } else {
        other_.open();
    }
    cursor_.open();
    for (int operation = 0; operation < operations && !HasFailure(); ++operation) {
        SCOPED_TRACE("operation " + std::to_string(operation));
        operate();
        cursor_.expectSame();
    }
}

INSTANTIATE_TEST_SUITE_P(Of, ChangesInTheMiddle,
                         ::testing::Values(Setting{"OneProcess", false, false},
                                           Setting{"AnotherProcess", true, false},
                                           Setting{"OneProcessInScopes", false, true},
                                           Setting{"AnotherProcessInScopes", true, true}),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
} // namespace ambrel::test
