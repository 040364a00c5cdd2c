// The steps of a scripted run and their effects.
#include "ScriptedRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <unordered_set>

#include "dbase/table/write_scope.h"

namespace dbase::test {

namespace {

constexpr int firstRows = 12;

Step append(const Schema& schema, int number) {
    const Bytes row = scriptedRow(schema, number);
    return {"append " + std::to_string(number),
            [row](Table& table, const Rows&, Durability durability) {
                static_cast<void>(table.append(row, durability));
            },
            [row](Rows rows) {
                rows.push_back(row);
                return rows;
            }};
}

Step overwrite(const Schema& schema, RecordNumber record, int number) {
    const Bytes row = scriptedRow(schema, number);
    return {"overwrite " + std::to_string(record) + " with " + std::to_string(number),
            [=](Table& table, const Rows& now, Durability durability) {
                if (record <= now.size()) {
                    table.overwrite(record, now[record - 1], row, durability);
                }
            },
            [=](Rows rows) {
                if (record <= rows.size()) {
                    rows[record - 1] = row;
                }
                return rows;
            }};
}

Step erase(RecordNumber record) {
    return {"erase " + std::to_string(record),
            [=](Table& table, const Rows& now, Durability durability) {
                if (record <= now.size()) {
                    table.erase(record, now[record - 1], durability);
                }
            },
            [=](Rows rows) {
                if (record <= rows.size()) {
                    rows[record - 1][0] = '*';
                }
                return rows;
            }};
}

/// Gives each of some neighbours another number, so that tags move and the records are written together.
Step amend(const Schema& schema, RecordNumber first, RecordNumber most, int number) {
    const auto amended = [=](RecordNumber record) {
        return scriptedRow(schema, number + static_cast<int>(record));
    };
    return {"amend " + std::to_string(first) + " and " + std::to_string(most - 1) + " more",
            [=](Table& table, const Rows&, Durability durability) {
                const auto renumber = [&](const RecordView& before, std::span<char> after) {
                    std::ranges::copy(amended(before.number), after.begin());
                };
                static_cast<void>(table.amend(first, most, renumber, durability));
            },
            [=](Rows rows) {
                for (RecordNumber record = first; record < first + most && record <= rows.size(); ++record) {
                    if (rows[record - 1][0] != '*') {
                        rows[record - 1] = amended(record);
                    }
                }
                return rows;
            }};
}

/// Adds rows and overwrites one that is there, all of it together; a middle row of those added is changed
/// once more before they are stored.
Step together(const Schema& schema, RecordNumber record, int rows, int number) {
    const auto added = [=](int i) { return scriptedRow(schema, number + i); };
    return {"store " + std::to_string(rows) + " rows together with a change of " + std::to_string(record),
            [=](Table& table, const Rows& now, Durability durability) {
                WriteScope scope(table, WriteScope::Writing::Together);
                RecordNumber middle = 0;
                for (int i = 0; i < rows; ++i) {
                    const RecordNumber last = table.append(added(i), durability);
                    middle = i == rows / 2 ? last : middle;
                }
                table.overwrite(middle, added(rows / 2), added(rows + 1), durability);
                if (record <= now.size()) {
                    table.overwrite(record, now[record - 1], added(rows), durability);
                }
                scope.commit();
            },
            [=](Rows state) {
                if (record <= state.size()) {
                    state[record - 1] = added(rows);
                }
                for (int i = 0; i < rows; ++i) {
                    state.push_back(added(i == rows / 2 ? rows + 1 : i));
                }
                return state;
            }};
}

Step sync() {
    return {"sync", [](Table& table, const Rows&, Durability) { table.sync(); },
            [](Rows rows) { return rows; }, true};
}

Step rebuild() {
    return {"rebuildTags", [](Table& table, const Rows&, Durability) { table.rebuildTags(); },
            [](Rows rows) { return rows; }};
}

Step walk() {
    return {"walk",
            [](Table& table, const Rows&, Durability) {
                const std::size_t rows = rowsOf(table).size();
                EXPECT_EQ(order(table, "NOMBRE").size(), rows);
                EXPECT_EQ(orderBackwards(table, "NUMDES").size(), rows);
            },
            [](Rows rows) { return rows; }};
}

} // namespace

TableDefinition scriptedDefinition() {
    return {.name = "GUION",
            .columns = {{"NOMBRE", ColumnType::Character, 100, 0, 0}, {"NUM", ColumnType::Numeric, 6, 0, 0}},
            .tags = {{.name = "NOMBRE", .expression = "NOMBRE"},
                     {.name = "NUMDES", .expression = "NUM", .descending = true},
                     {.name = "CORTA", .expression = "LEFT(NOMBRE,8)"}}};
}

Bytes scriptedRow(const Schema& schema, int number) {
    return makeRecord(schema, {"CALLE " + std::to_string(1000 + number * 373 % 997), std::to_string(number)});
}

MemoryTable scriptedTable() {
    MemoryTable stored(scriptedDefinition(), 1);
    const auto table = stored.open();
    for (int number = 1; number <= firstRows; ++number) {
        static_cast<void>(table->append(scriptedRow(table->schema(), number * 70)));
    }
    return stored;
}

// A record has 107 bytes and the first begins at 97: the fourth and the ninth cross a sector border.
std::vector<Step> shortScript(const Schema& schema) {
    return {append(schema, 501),
            append(schema, 17),
            overwrite(schema, 4, 601),
            append(schema, 502),
            erase(2),
            overwrite(schema, 9, 18),
            amend(schema, 3, 5, 700),
            sync(),
            append(schema, 503),
            append(schema, 19),
            overwrite(schema, 14, 20),
            walk(),
            rebuild(),
            together(schema, 6, 5, 800),
            append(schema, 504),
            amend(schema, 8, 4, 30),
            overwrite(schema, 4, 602),
            erase(9)};
}

std::vector<Step> randomScript(const Schema& schema, unsigned seed, int steps) {
    std::mt19937 random(seed);
    const auto below = [&](std::size_t limit) { return static_cast<unsigned>(random() % limit); };
    std::vector<Step> script;
    std::size_t rows = firstRows;
    for (int i = 0; i < steps; ++i) {
        const auto record = static_cast<RecordNumber>(1 + below(rows));
        const int number = static_cast<int>(below(990));
        switch (const unsigned kind = below(40); kind) {
        case 0:
            script.push_back(rebuild());
            break;
        case 1:
        case 2:
            script.push_back(sync());
            break;
        default:
            if (kind < 18) {
                script.push_back(append(schema, number));
                ++rows;
            } else if (kind < 30) {
                script.push_back(overwrite(schema, record, number));
            } else if (kind < 34) {
                script.push_back(erase(record));
            } else if (kind < 38) {
                script.push_back(amend(schema, record, 1 + below(7), number));
            } else {
                const int added = 1 + static_cast<int>(below(4));
                script.push_back(together(schema, record, added, number));
                rows += static_cast<std::size_t>(added);
            }
        }
    }
    return script;
}

Rows rowsOf(Table& table) {
    Rows rows;
    const RecordNumber count = table.read([&] { return table.records().recordCount(); });
    for (RecordNumber number = 1; number <= count; ++number) {
        rows.push_back(storedRecord(table, number));
    }
    return rows;
}

std::string freshFindings(const MemoryTable& stored) {
    static std::unordered_set<std::size_t> soundContents;
    const auto hash = [](const Bytes& bytes) {
        return std::hash<std::string_view>()({bytes.data(), bytes.size()});
    };
    const std::size_t content = hash(stored.records->bytes) * 31 + hash(stored.index->bytes);
    if (soundContents.contains(content)) {
        return {};
    }
    std::string findings = stored.findings();
    if (findings.empty()) {
        soundContents.insert(content);
    }
    return findings;
}

Rows rowsWhenSound(const MemoryTable& stored, const std::vector<const char*>& tags) {
    Rows found;
    try {
        const auto table = stored.open();
        found = rowsOf(*table);
        for (const char* const tag : tags) {
            EXPECT_EQ(order(*table, tag).size(), found.size()) << tag;
        }
    } catch (const Error& error) {
        ADD_FAILURE() << "it does not open: " << error.what();
    }
    EXPECT_EQ(freshFindings(stored), "");
    EXPECT_EQ(stored.journal->content, nullptr) << "the journal was left";
    return found;
}

std::string difference(const Rows& expected, const Rows& found) {
    if (expected.size() != found.size()) {
        return std::to_string(found.size()) + " rows instead of " + std::to_string(expected.size());
    }
    for (std::size_t i = 0; i < expected.size(); ++i) {
        if (expected[i] != found[i]) {
            return "record " + std::to_string(i + 1) + " is \"" +
                   std::string(found[i].begin(), found[i].end()) + "\" instead of \"" +
                   std::string(expected[i].begin(), expected[i].end()) + '"';
        }
    }
    return {};
}

void PossibleRows::done(const Step& step) {
    for (Rows& state : states_) {
        state = step.effect(state);
    }
    dropTwins();
}

void PossibleRows::doneOrNot(const Step& step) {
    for (std::size_t i = states_.size(); i-- > 0;) {
        states_.push_back(step.effect(states_[i]));
    }
    dropTwins();
}

bool PossibleRows::accept(const Rows& found) {
    const bool isPossible = std::ranges::find(states_, found) != states_.end();
    if (!isPossible) {
        ADD_FAILURE() << states_.size()
                      << " possible states; against the first one: " << difference(states_.front(), found);
    }
    states_ = {found};
    return isPossible;
}

void PossibleRows::dropTwins() {
    std::ranges::sort(states_);
    const auto twins =
        std::unique(states_.begin(), states_.end()); // Clang 14 cannot compile that of std::ranges
    states_.erase(twins, states_.end());
}

} // namespace dbase::test
