// Editions of the official directory taken back by their undo files.
#include <gtest/gtest.h>

#include <filesystem>

#include "dbase/system/error.h"
#include "directory/DirectoryTest.h"

namespace ambrel::directory {
namespace {

using DirectoryUndoTest = DirectoryTest;

TEST_F(DirectoryUndoTest, AnEditionIsTakenBackAsIfItHadNeverCome) {
    store(firstEdition());
    const Lines before = everything();
    SmallEdition next;
    next.unit(9001, 101, "ABAJAS DE ARRIBA", "ABAJAS DE ARRIBA")
        .unit(9003, 101, "AGES", "AGES")
        .street(9001, 1, "MAYOR")
        .street(9001, 3, "NUEVA")
        .street(9003, 1, "MAYOR")
        .stretch(9001, 1, 9001, 1, 19)
        .stretch(9001, 1, 9004, 2, 8)
        .stretch(9001, 3, 9001, 1, 3)
        .stretch(9003, 1, 9199, 1, 9);
    storeNext(next, folder / "next.deshacer");
    EXPECT_NE(everything(), before);
    EXPECT_EQ(undo(folder / "next.deshacer"), Lines());
    EXPECT_EQ(everything(), before);
    EXPECT_EQ(undo(folder / "next.deshacer"), Lines()) << "may be repeated";
    EXPECT_EQ(everything(), before);
    EXPECT_EQ(storeNext(firstEdition()).changes, Lines());
}

TEST_F(DirectoryUndoTest, TheFirstEditionIsTakenBackToEmptyTables) {
    store(firstEdition(), "250630", folder / "first.deshacer");
    EXPECT_EQ(undo(folder / "first.deshacer"), Lines());
    EXPECT_EQ(everything(), Lines());
    store(firstEdition(), "250630");
    EXPECT_EQ(streets(), firstStreets);
}

TEST_F(DirectoryUndoTest, WhatUsersChangedOrAddedSinceStaysWhenAnEditionIsTakenBack) {
    store(firstEdition());
    SmallEdition next = firstEdition();
    next.street(9001, 3, "NUEVA").stretch(9001, 3, 9001, 1, 3).stretch(9001, 2, 9002, 7, 11);
    next.street(9001, 4, "ANCHA").stretch(9001, 4, 9001, 1, 3);
    store(next, "251231", folder / "next.deshacer");
    EXPECT_EQ(streets()[2], "09000003 AV REAL 1-11 0-0 09002 09001 ABAJAS");
    set("09000003", "IMPAR_FIN", "21");
    set("09000004", "VIA", "NOVISIMA");
    addStreet({});
    EXPECT_EQ(undo(folder / "next.deshacer").size(), 2U);
    EXPECT_EQ(streets(),
              (Lines{firstStreets[0], firstStreets[1], "09000003 AV REAL 1-21 0-0 09002 09001 ABAJAS",
                     "09000004 CL NOVISIMA 1-3 0-0 09001 09001 ABAJAS",
                     "99000000 CL DEL MOLINO 1-9 0-0 09001 09001 ABAJAS"}));
}

/// The second edition of the tests with three: the first street has another name.
SmallEdition renamedEdition() { return firstEdition("MAYOR NUEVA"); }

TEST_F(DirectoryUndoTest, UndoingAnEditionBelowALaterOneLeavesTheRowsThatTheLaterOneChanged) {
    store(firstEdition());
    const Lines first = everything();
    store(renamedEdition(), "251231", folder / "second.deshacer");
    store(firstEdition("MAYOR NUEVA", 9003), "260630", folder / "third.deshacer");
    const Lines left = undo(folder / "second.deshacer");
    EXPECT_EQ(left.size(), 2U) << ::testing::PrintToString(left);
    EXPECT_EQ(streets(), (Lines{firstStreets[0], "09000002 CL MAYOR NUEVA 11-19 0-0 09003 09001 ABAJAS",
                                firstStreets[2]}));
    EXPECT_EQ(undo(folder / "third.deshacer"), Lines());
    static_cast<void>(undo(folder / "second.deshacer"));
    EXPECT_EQ(everything(), first);
}

TEST_F(DirectoryUndoTest, TwoEditionsAreTakenBackOneAfterTheOther) {
    store(firstEdition());
    const Lines first = everything();
    store(renamedEdition(), "251231", folder / "second.deshacer");
    const Lines second = everything();
    SmallEdition third = renamedEdition();
    third.street(9001, 3, "NUEVA").stretch(9001, 3, 9001, 1, 3).stretch(9001, 2, 9002, 7, 11);
    store(third, "260630", folder / "third.deshacer");
    EXPECT_EQ(undo(folder / "third.deshacer"), Lines());
    EXPECT_EQ(everything(), second);
    EXPECT_EQ(undo(folder / "second.deshacer"), Lines());
    EXPECT_EQ(everything(), first);
}

TEST_F(DirectoryUndoTest, ARowStaysWithWhatProcedenSaysOfItOrBothArePutBack) {
    SmallEdition first = firstEdition();
    store(first.write(official, "250630"), {}, RangeOpening::Ends);
    SmallEdition second;
    second.unit(9001, 101, "ABAJAS", "ABAJAS")
        .street(9001, 1, "MAYOR")
        .street(9001, 2, "REAL NUEVA", "AVDA")
        .street(9001, 3, "DEL RIO")
        .stretch(9001, 1, 9001, 1, 9)
        .stretch(9001, 1, 9001, 2, 8)
        .stretch(9001, 1, 9002, 11, 19)
        .stretch(9001, 2, 9002, 3, 5)
        .stretch(9001, 3, 9002, 3, 9);
    store(second.write(official, "251231"), folder / "second.deshacer", RangeOpening::Ends);
    SmallEdition third = second; // number 1 has been seen: the rows of POSTAL are the same
    third.stretch(9001, 2, 9002, 1, 1).stretch(9001, 3, 9002, 1, 1);
    EXPECT_EQ(store(third.write(official, "260630"), {}, RangeOpening::Ends).changes, Lines());
    const Lines before = everything();
    EXPECT_NE(undo(folder / "second.deshacer"), Lines());
    EXPECT_EQ(everything(), before);
    SmallEdition fourth = third;
    fourth.stretch(9001, 3, 9002, 2, 8);
    const Outcome next = store(fourth.write(official, "261231"), {}, RangeOpening::Ends);
    EXPECT_EQ(next.conflicts, Lines());
    EXPECT_EQ(next.summary.kept, 0U);
}

TEST_F(DirectoryUndoTest, AnUndoFileThatExistsIsNotOverwrittenAndNothingChanges) {
    store(firstEdition());
    const Lines before = everything();
    const std::string file = folder.write("mine.deshacer", "mine");
    SmallEdition next = firstEdition();
    next.stretch(9001, 2, 9002, 7, 11);
    EXPECT_THROW(store(next, "251231", file), dbase::Error);
    EXPECT_EQ(everything(), before);
    EXPECT_EQ(std::filesystem::file_size(file), 4U);
}

TEST_F(DirectoryUndoTest, AnEditionWithoutChangesLeavesNoUndoFile) {
    store(firstEdition());
    store(firstEdition(), "251231", folder / "next.deshacer");
    EXPECT_FALSE(std::filesystem::exists(folder / "next.deshacer"));
}

} // namespace
} // namespace ambrel::directory
