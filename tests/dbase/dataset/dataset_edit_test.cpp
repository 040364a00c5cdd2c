// Changing rows: append, edit, post, cancel, delete; and no row is ever posted implicitly.
#include <gtest/gtest.h>

#include <filesystem>

#include "dbase/dataset/pending.h"
#include "dbase/table/towns_fixture.h"

namespace dbase {
namespace {

class EditTest : public TownsTest {
protected:
    EditTest() {
        towns.open();
        other.open();
    }

    std::string storedName(RecordNumber record) {
        place(other, record);
        return name(other);
    }
};

TEST_F(EditTest, AppendStartsABlankRow) {
    towns.append();
    EXPECT_EQ(towns.state(), DatasetState::Insert);
    EXPECT_EQ(towns.recordNumber(), 0u);
    EXPECT_FALSE(towns.bookmark());
    EXPECT_FALSE(towns.isModified());
    for (Field* field : towns.fields()) {
        EXPECT_TRUE(field->isNull()) << field->name();
    }
    EXPECT_FALSE(towns.bof() || towns.eof());
    towns.cancel();
}

TEST_F(EditTest, PostedRowIsCurrentAndInEveryTag) {
    append(towns, {{"CODE", "08007"}, {"PROV", "08"}, {"NAME", "BADALONA"}, {"GROUP", "12"}});
    EXPECT_EQ(towns.state(), DatasetState::Browse);
    EXPECT_EQ(towns.recordNumber(), 9u);
    EXPECT_EQ(name(towns), "BADALONA");
    EXPECT_TRUE(towns.next());
    EXPECT_EQ(towns.recordNumber(), 2u);
    towns.setTag("BIG");
    EXPECT_EQ(walk(towns), (Records{9, 2, 1, 6}));
}

TEST_F(EditTest, EqualKeysKeepRecordNumberOrder) {
    append(towns, {{"CODE", "28013"}, {"NAME", "LATER"}});
    change(towns, {{"NAME", "LATEST"}});
    place(towns, 3);
    change(towns, {{"CODE", "00000"}});
    change(towns, {{"CODE", "28013"}});
    EXPECT_EQ(walk(towns), (Records{2, 4, 8, 5, 3, 7, 9, 1, 6}));
}

TEST_F(EditTest, EditedRowIsCurrentAtItsNewPlace) {
    place(towns, 5);
    towns.edit();
    EXPECT_EQ(towns.state(), DatasetState::Edit);
    EXPECT_EQ(towns.recordNumber(), 5u);
    towns.field("CODE").setText("45000");
    EXPECT_TRUE(towns.isModified());
    towns.post();
    EXPECT_FALSE(towns.isModified());
    EXPECT_EQ(towns.recordNumber(), 5u);
    EXPECT_TRUE(towns.next());
    EXPECT_EQ(towns.recordNumber(), 6u);
    EXPECT_EQ(walk(towns), (Records{2, 4, 8, 3, 7, 1, 5, 6}));
}

TEST_F(EditTest, PostedRowStaysCurrentThoughTheFilterHidesIt) {
    towns.setFilter("MINOR=False");
    place(towns, 5);
    change(towns, {{"MINOR", "True"}});
    EXPECT_EQ(towns.recordNumber(), 5u);
    EXPECT_TRUE(towns.field("MINOR").logical());
    EXPECT_TRUE(towns.next());
    EXPECT_EQ(towns.recordNumber(), 1u);
    EXPECT_TRUE(towns.prior());
    EXPECT_EQ(towns.recordNumber(), 8u);
}

TEST_F(EditTest, PostedRowStaysCurrentThoughTheTagDoesNotHoldIt) {
    towns.setTag("BIG");
    place(towns, 1);
    change(towns, {{"GROUP", "1"}});
    EXPECT_EQ(name(towns), "MADRID");
    EXPECT_TRUE(towns.next()) << "from the place that its name has";
    EXPECT_EQ(name(towns), "VALENCIA");
    append(towns, {{"NAME", "CADIZ"}});
    EXPECT_EQ(towns.recordNumber(), 9u);
    EXPECT_TRUE(towns.prior());
    EXPECT_EQ(name(towns), "BARCELONA");
}

TEST_F(EditTest, LastStepFromAHiddenPostedRowStaysOnIt) {
    towns.setFilter("PROV='28'");
    append(towns, {{"CODE", "99000"}, {"PROV", "99"}});
    EXPECT_FALSE(towns.next());
    EXPECT_TRUE(towns.eof());
    EXPECT_EQ(towns.recordNumber(), 9u);
    towns.refresh();
    EXPECT_EQ(towns.recordNumber(), 1u) << "read again, it is hidden: nothing follows, so the last";
}

TEST_F(EditTest, PostWithoutChangesWritesNothingAndEndsTheEdit) {
    place(towns, 5);
    towns.edit();
    towns.post();
    EXPECT_EQ(towns.state(), DatasetState::Browse);
    EXPECT_EQ(towns.recordNumber(), 5u);
    place(other, 5);
    other.edit();
    other.cancel();
}

TEST_F(EditTest, CancelBringsBackWhatWasShown) {
    place(towns, 5);
    towns.edit();
    towns.field("NAME").setText("NOTHING");
    towns.cancel();
    EXPECT_EQ(towns.state(), DatasetState::Browse);
    EXPECT_EQ(name(towns), "ALCALA");
    towns.append();
    towns.field("NAME").setText("NOTHING");
    towns.cancel();
    EXPECT_EQ(towns.recordNumber(), 5u);
    EXPECT_EQ(name(towns), "ALCALA");
    towns.cancel();
    EXPECT_EQ(walk(other).size(), 8u);
}

TEST_F(EditTest, CancelOfAnAppendToAnEmptyTableLeavesItEmpty) {
    createEmpty();
    none.open();
    none.append();
    none.field("NAME").setText("NOTHING");
    none.cancel();
    EXPECT_TRUE(none.isEmpty());
    EXPECT_TRUE(none.bof() && none.eof());
    EXPECT_EQ(name(none), "");
}

TEST_F(EditTest, DeleteMakesTheNextCurrentElseTheLast) {
    place(towns, 3);
    towns.erase();
    EXPECT_EQ(towns.recordNumber(), 7u);
    EXPECT_FALSE(towns.eof());
    towns.last();
    towns.erase();
    EXPECT_EQ(towns.recordNumber(), 1u);
    EXPECT_EQ(walk(towns), (Records{2, 4, 8, 5, 7, 1}));
}

TEST_F(EditTest, DeleteInsideFilterAndRangeStaysInside) {
    towns.setFilter("MINOR=False");
    towns.setRange({{"CODE", "28000"}}, {{"CODE", "28999"}});
    place(towns, 5);
    towns.erase();
    EXPECT_EQ(towns.recordNumber(), 1u);
    towns.erase();
    EXPECT_TRUE(towns.isEmpty());
    EXPECT_TRUE(towns.bof() && towns.eof());
    EXPECT_EQ(name(towns), "");
}

TEST_F(EditTest, DeleteOfTheOnlyRecordLeavesAnEmptyTableThatTakesRowsAgain) {
    createEmpty();
    none.open();
    append(none, {{"NAME", "ONE"}});
    none.erase();
    EXPECT_TRUE(none.isEmpty());
    append(none, {{"NAME", "TWO"}});
    EXPECT_EQ(name(none), "TWO");
    EXPECT_EQ(walk(none), (Records{2}));
}

TEST_F(EditTest, DeleteWhileAppendingOnlyDropsTheRow) {
    place(towns, 5);
    towns.append();
    towns.erase();
    EXPECT_EQ(towns.recordNumber(), 5u);
    EXPECT_EQ(walk(towns).size(), 8u);
}

TEST_F(EditTest, DeleteWhileEditingDeletesTheRecord) {
    place(towns, 5);
    towns.edit();
    towns.field("NAME").setText("OTHER");
    towns.erase();
    EXPECT_EQ(towns.recordNumber(), 3u);
    EXPECT_FALSE(other.goTo(Bookmark(5)));
}

TEST_F(EditTest, EditWhileEditingOrAppendingGoesOn) {
    towns.edit();
    towns.field("NAME").setText("OTHER");
    towns.edit();
    EXPECT_EQ(name(towns), "OTHER");
    towns.append();
    towns.field("NAME").setText("NEW");
    towns.edit();
    EXPECT_EQ(towns.state(), DatasetState::Insert);
    EXPECT_EQ(name(towns), "NEW");
}

TEST_F(EditTest, WrongStatesRaise) {
    EXPECT_EQ(codeOf([&] { towns.post(); }), ErrorCode::BadState);
    EXPECT_EQ(codeOf([&] { towns.field("NAME").setText("X"); }), ErrorCode::BadState);
    EXPECT_EQ(codeOf([&] { towns.field("GROUP").setInteger(1); }), ErrorCode::BadState);
    EXPECT_EQ(codeOf([&] { towns.field("MINOR").setLogical(true); }), ErrorCode::BadState);
    EXPECT_EQ(codeOf([&] { towns.field("NAME").clear(); }), ErrorCode::BadState);
    towns.close();
    EXPECT_EQ(codeOf([&] { towns.edit(); }), ErrorCode::BadState);
    EXPECT_EQ(codeOf([&] { towns.append(); }), ErrorCode::BadState);
    EXPECT_EQ(codeOf([&] { towns.post(); }), ErrorCode::BadState);
    EXPECT_EQ(codeOf([&] { towns.erase(); }), ErrorCode::BadState);
    EXPECT_EQ(codeOf([&] { towns.next(); }), ErrorCode::BadState);
    EXPECT_EQ(codeOf([&] { towns.refresh(); }), ErrorCode::BadState);
    EXPECT_EQ(codeOf([&] { static_cast<void>(towns.lockCurrent()); }), ErrorCode::BadState);
    towns.cancel();
    towns.unlockAll();
}

TEST_F(EditTest, ReadOnlyTableSaysWhyAndRefuses) {
    TableDefinition definition = ambrel::test::defineTable("NOTES", {"NAME C5"}, {"NAME"});
    const std::string file = createTable(definition, {{"A"}});
    std::filesystem::remove(file.substr(0, file.size() - 3) + "MDX");
    leaveUnchecked();
    Dataset notes("DB", "NOTES");
    notes.open();
    EXPECT_TRUE(notes.isReadOnly());
    EXPECT_NE(notes.readOnlyReason().find("NOTES.DBF"), std::string::npos);
    EXPECT_EQ(walk(notes), (Records{1}));
    EXPECT_EQ(codeOf([&] { notes.append(); }), ErrorCode::ReadOnly);
    EXPECT_EQ(codeOf([&] { notes.edit(); }), ErrorCode::ReadOnly);
    EXPECT_EQ(codeOf([&] { notes.erase(); }), ErrorCode::ReadOnly);
    EXPECT_EQ(notes.state(), DatasetState::Browse);
}

// --- Nothing is posted implicitly

using Operation = void (*)(Dataset&);
struct ImplicitEnd {
    const char* name;
    Operation operation;
};
void PrintTo(const ImplicitEnd& end, std::ostream* out) { *out << end.name; }

class NothingIsPostedImplicitly : public TownsTest, public ::testing::WithParamInterface<ImplicitEnd> {};

TEST_P(NothingIsPostedImplicitly, ByThis) {
    const Operation operation = GetParam().operation;
    towns.open();
    towns.setRange({{"CODE", "08000"}}, {{"CODE", "46999"}});
    place(towns, 5);
    towns.edit();
    towns.field("NAME").setText("LOST");
    operation(towns);
    EXPECT_NE(towns.state(), DatasetState::Edit);
    EXPECT_FALSE(towns.isModified());
    other.open();
    place(other, 5);
    EXPECT_EQ(name(other), "ALCALA");
    other.edit(); // and the record's lock is free
    other.cancel();

    towns.open();
    towns.append();
    towns.field("NAME").setText("LOST");
    operation(towns);
    EXPECT_NE(towns.state(), DatasetState::Insert);
    EXPECT_EQ(walk(other).size(), 8u);
}

INSTANTIATE_TEST_SUITE_P(
    Each, NothingIsPostedImplicitly,
    ::testing::Values(
        ImplicitEnd{"First", [](Dataset& table) { table.first(); }},
        ImplicitEnd{"Last", [](Dataset& table) { table.last(); }},
        ImplicitEnd{"Next", [](Dataset& table) { table.next(); }},
        ImplicitEnd{"Prior", [](Dataset& table) { table.prior(); }},
        ImplicitEnd{"ExactSeek",
                    [](Dataset& table) {
                        static_cast<void>(table.seek({{"CODE", "28079"}}, SeekMode::Exact));
                    }},
        ImplicitEnd{"SeekThatMisses",
                    [](Dataset& table) {
                        static_cast<void>(table.seek({{"CODE", "X"}}, SeekMode::Exact));
                    }},
        ImplicitEnd{"NearestSeek",
                    [](Dataset& table) {
                        static_cast<void>(table.seek({{"CODE", "2"}}, SeekMode::Nearest));
                    }},
        ImplicitEnd{"GoTo", [](Dataset& table) { table.goTo(Bookmark(1)); }},
        ImplicitEnd{"GoToNowhere", [](Dataset& table) { table.goTo(Bookmark()); }},
        ImplicitEnd{"Refresh", [](Dataset& table) { table.refresh(); }},
        ImplicitEnd{"Append",
                    [](Dataset& table) {
                        table.append();
                        EXPECT_EQ(table.field("NAME").text(), "");
                        table.cancel();
                    }},
        ImplicitEnd{"SetTag", [](Dataset& table) { table.setTag(table.tag() == "NAME" ? "CODE" : "NAME"); }},
        ImplicitEnd{"SetRange",
                    [](Dataset& table) {
                        table.setRange({{"CODE", "08000"}}, {{"CODE", "46999"}});
                    }},
        ImplicitEnd{"ClearRange",
                    [](Dataset& table) {
                        table.clearRange();
                        table.cancel(); // the second call finds no range
                    }},
        ImplicitEnd{"SetFilter", [](Dataset& table) { table.setFilter("GROUP>0"); }},
        ImplicitEnd{"ClearFilter", [](Dataset& table) { table.clearFilter(); }},
        ImplicitEnd{"Close", [](Dataset& table) { table.close(); }}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(TownsTest, NothingIsPostedByTheEndOfTheDataset) {
    {
        Dataset brief("DB", "TOWNS", "CODE");
        brief.open();
        brief.edit();
        brief.field("NAME").setText("LOST");
    }
    towns.open();
    EXPECT_EQ(name(towns), "BARCELONA");
    towns.edit();
    towns.cancel();
}

TEST_F(EditTest, RowIsPendingWhileItIsAddedOrChanged) {
    EXPECT_FALSE(isPending(towns.state()));
    towns.edit();
    EXPECT_TRUE(isPending(towns.state()));
    towns.cancel();
    EXPECT_FALSE(isPending(towns.state()));
    towns.append();
    EXPECT_TRUE(isPending(towns.state()));
    towns.close();
    EXPECT_FALSE(isPending(towns.state()));
}

} // namespace
} // namespace dbase
