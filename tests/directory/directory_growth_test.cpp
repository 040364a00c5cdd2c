// Official rows that grow into rows of the users' own: of the same street, with another postal code.
#include <gtest/gtest.h>

#include "dbase/dataset/dataset.h"
#include "directory/DirectoryTest.h"

namespace ambrel::directory {
namespace {

using DirectoryGrowthTest = DirectoryTest;

/// An edition with CL DEL MOLINO (street 10) from one odd and one even number to others.
SmallEdition withMolino(std::uint32_t code, std::uint32_t firstOdd, std::uint32_t lastOdd,
                        std::uint32_t firstEven = 0, std::uint32_t lastEven = 0,
                        const std::string& name = "DEL MOLINO") {
    SmallEdition edition = firstEdition();
    edition.street(9001, 10, name).stretch(9001, 10, code, firstOdd, lastOdd);
    if (lastEven != 0) {
        edition.stretch(9001, 10, code, firstEven, lastEven);
    }
    return edition;
}

const std::string molino = "09000004"; // its key

TEST_F(DirectoryGrowthTest, AnOfficialRowThatGrowsTowardsAUsersRowEndsBeforeIt) {
    store(withMolino(9002, 21, 29));
    addStreet({{"IMPAR_INI", "31"}, {"IMPAR_FIN", "39"}});
    addStreet({{"CODIGO1", "99000001"}, {"IMPAR_INI", "11"}, {"IMPAR_FIN", "15"}});
    const SmallEdition next = withMolino(9002, 1, 31, 2, 40);
    const Outcome load = storeNext(next);
    EXPECT_EQ(load.changes, (Lines{'~' + molino + " DEL MOLINO range"}));
    const Lines reported = {"own street 99000000: CL DEL MOLINO 31-39 09001 | CL DEL MOLINO 1-31 2-40 09002",
                            "own street 99000001: CL DEL MOLINO 11-15 09001 | CL DEL MOLINO 1-31 2-40 09002"};
    EXPECT_EQ(load.conflicts, reported);
    EXPECT_EQ(load.summary.conflicts, 2U);
    EXPECT_EQ(load.summary.kept, 1U);
    EXPECT_EQ(load.summary.byMunicipality.at(9001).conflicts, 2U);
    EXPECT_EQ(streets()[3], molino + " CL DEL MOLINO 17-29 2-40 09002 09001 ABAJAS");
    EXPECT_EQ(streets()[4], "99000000 CL DEL MOLINO 31-39 0-0 09001 09001 ABAJAS");
    const Lines loaded = everything();
    const Outcome again = storeNext(next);
    EXPECT_EQ(again.changes, Lines());
    EXPECT_EQ(again.conflicts, reported) << "as long as it is so";
    EXPECT_EQ(everything(), loaded);
    erase("99000000");
    erase("99000001");
    EXPECT_EQ(storeNext(next).changes, (Lines{'~' + molino + " DEL MOLINO range"}));
    EXPECT_EQ(streets()[3], molino + " CL DEL MOLINO 1-31 2-40 09002 09001 ABAJAS");
}

TEST_F(DirectoryGrowthTest, ProvenanceSaysWhichBoundsOfARowWereCut) {
    store(withMolino(9002, 21, 29));
    addStreet({{"IMPAR_INI", "31"}, {"IMPAR_FIN", "39"}});
    store(withMolino(9002, 19, 33), "251231");
    dbase::Dataset table("DB", "PROCEDEN", "CODIGO1");
    table.open();
    ASSERT_TRUE(table.seek({{"CODIGO1", molino}}, dbase::SeekMode::Exact));
    EXPECT_EQ(table.field("ABIERTO").text(), "-C--");
}

TEST_F(DirectoryGrowthTest, ARowThatGrowsIntoAUsersRowWithTheSameCodeIsTheOffices) {
    store(withMolino(9001, 21, 29));
    addStreet({{"IMPAR_INI", "31"}, {"IMPAR_FIN", "39"}});
    const Outcome load = storeNext(withMolino(9001, 1, 35));
    EXPECT_EQ(load.changes, (Lines{'~' + molino + " DEL MOLINO range"}));
    EXPECT_EQ(load.conflicts, Lines());
    EXPECT_EQ(load.summary.kept, 0U);
    EXPECT_EQ(streets()[3], molino + " CL DEL MOLINO 1-35 0-0 09001 09001 ABAJAS");
    // Once the office gives it another code, the number would have two answers.
    const Outcome next = storeNext(withMolino(9002, 1, 35));
    EXPECT_EQ(next.conflicts,
              (Lines{"own street 99000000: CL DEL MOLINO 31-39 09001 | CL DEL MOLINO 1-35 09002"}));
    EXPECT_EQ(streets()[3], molino + " CL DEL MOLINO 1-29 0-0 09002 09001 ABAJAS");
}

TEST_F(DirectoryGrowthTest, NumbersOfTheOtherSideAndRowsWithoutNumbersLimitNothing) {
    store(withMolino(9002, 21, 29));
    addStreet({{"IMPAR_INI", "0"}, {"IMPAR_FIN", "0"}, {"PAR_INI", "2"}, {"PAR_FIN", "98"}});
    addStreet({{"CODIGO1", "99000001"}, {"IMPAR_INI", "0"}, {"IMPAR_FIN", "0"}});
    addStreet({{"CODIGO1", "99000002"}, {"IMPAR_INI", "9"}, {"IMPAR_FIN", "1"}});     // reversed
    addStreet({{"CODIGO1", "99000003"}, {"IMPAR_INI", "100"}, {"IMPAR_FIN", "100"}}); // even among the odd
    const Outcome load = storeNext(withMolino(9002, 1, 199));
    EXPECT_EQ(load.conflicts, Lines());
    EXPECT_EQ(streets()[3], molino + " CL DEL MOLINO 1-199 0-0 09002 09001 ABAJAS");
}

TEST_F(DirectoryGrowthTest, AUsersRowWithoutBeginningOrBeyondAllNumbersLimitsARowAsFarAsItGoes) {
    store(withMolino(9002, 21, 29));
    addStreet({{"IMPAR_INI", "0"}, {"IMPAR_FIN", "11"}});
    addStreet({{"CODIGO1", "99000001"}, {"IMPAR_INI", "98"}, {"IMPAR_FIN", "999999"}});
    const Outcome load = storeNext(withMolino(9002, 1, 9999));
    EXPECT_EQ(load.conflicts.size(), 2U);
    EXPECT_EQ(streets()[3], molino + " CL DEL MOLINO 13-97 0-0 09002 09001 ABAJAS");
}

TEST_F(DirectoryGrowthTest, ANewRowIsNotAddedBesideAUsersRowWithoutBeginning) {
    store(firstEdition());
    addStreet({{"IMPAR_INI", "0"}, {"IMPAR_FIN", "11"}});
    const Outcome load = storeNext(withMolino(9002, 11, 29));
    EXPECT_EQ(load.changes, Lines());
    EXPECT_EQ(load.conflicts,
              (Lines{"own street 99000000: CL DEL MOLINO 0-11 09001 | CL DEL MOLINO 11-29 09002"}));
}

TEST_F(DirectoryGrowthTest, OpenedRowsEndBeforeUsersRows) {
    SmallEdition edition = withMolino(9002, 21, 29);
    edition.stretch(9001, 10, 9002, 20, 28);
    store(edition);
    addStreet({{"IMPAR_INI", "31"}, {"IMPAR_FIN", "39"}});
    const EditionFiles files = edition.write(official, "251231");
    const Outcome load = store(files, {}, RangeOpening::Ends);
    EXPECT_EQ(load.conflicts,
              (Lines{"own street 99000000: CL DEL MOLINO 31-39 09001 | CL DEL MOLINO 1-9999 2-9998 09002"}));
    EXPECT_EQ(streets()[3], molino + " CL DEL MOLINO 1-29 2-9998 09002 09001 ABAJAS");
    EXPECT_EQ(store(files, {}, RangeOpening::Ends).changes, Lines());
}

TEST_F(DirectoryGrowthTest, ARowThatTheOfficeRenamesToAUsersStreetLosesTheNumbersOfThat) {
    store(withMolino(9002, 21, 29, 2, 8, "DEL RIO"));
    addStreet({{"IMPAR_INI", "1"}, {"IMPAR_FIN", "99"}});
    const Outcome load = storeNext(withMolino(9002, 21, 29, 2, 8));
    EXPECT_EQ(load.conflicts,
              (Lines{"own street 99000000: CL DEL MOLINO 1-99 09001 | CL DEL MOLINO 21-29 2-8 09002"}));
    EXPECT_EQ(streets()[3], molino + " CL DEL MOLINO 0-0 2-8 09002 09001 ABAJAS");
}

TEST_F(DirectoryGrowthTest, ARowThatAUserHasOverlappedFollowsTheOfficeWhereItDoesNotGrowIntoTheirs) {
    store(withMolino(9002, 1, 99));
    addStreet({{"IMPAR_INI", "91"}, {"IMPAR_FIN", "109"}});
    EXPECT_EQ(storeNext(withMolino(9002, 1, 95)).conflicts, Lines()) << "no number more";
    EXPECT_EQ(streets()[3], molino + " CL DEL MOLINO 1-95 0-0 09002 09001 ABAJAS");
    EXPECT_EQ(storeNext(withMolino(9002, 1, 199)).conflicts.size(), 1U);
    EXPECT_EQ(streets()[3], molino + " CL DEL MOLINO 1-95 0-0 09002 09001 ABAJAS");
}

/// B gives numbers to A while it grows into a user's row.
TEST_F(DirectoryGrowthTest, WhatAUsersRowLimitsStillGivesItsNumbersToOtherRowsOfTheStreet) {
    SmallEdition edition = withMolino(9001, 1, 99), next = withMolino(9001, 1, 149);
    edition.stretch(9001, 10, 9002, 101, 199);
    next.stretch(9001, 10, 9002, 151, 299);
    store(edition);
    addStreet({{"IMPAR_INI", "201"}, {"IMPAR_FIN", "209"}, {"CODPOSTAL", "09009"}});
    EXPECT_EQ(storeNext(next).conflicts,
              (Lines{"own street 99000000: CL DEL MOLINO 201-209 09009 | CL DEL MOLINO 151-299 09002"}));
    EXPECT_EQ(streets()[3], molino + " CL DEL MOLINO 1-149 0-0 09001 09001 ABAJAS");
    EXPECT_EQ(streets()[4], "09000005 CL DEL MOLINO 151-199 0-0 09002 09001 ABAJAS");
}

TEST_F(DirectoryGrowthTest, ARowChangedByHandLimitsItsNeighboursInTheStreet) {
    store(firstEdition()); // MAYOR: 1-9 with 09001, 11-19 with 09002
    set("09000001", "IMPAR_FIN", "9");
    set("09000001", "CODPOSTAL", "09007");
    SmallEdition next;
    next.unit(9001, 101, "ABAJAS", "ABAJAS").street(9001, 1, "MAYOR").street(9001, 2, "REAL", "AVDA");
    next.stretch(9001, 1, 9001, 2, 8).stretch(9001, 1, 9002, 5, 19).stretch(9001, 2, 9002, 1, 5);
    EXPECT_EQ(storeNext(next).conflicts,
              (Lines{"changed 09000001: CL MAYOR 1-9 2-8 09007 | CL MAYOR 2-8 09001",
                     "own street 09000001: CL MAYOR 1-9 2-8 09007 | CL MAYOR 5-19 09002"}));
    EXPECT_EQ(streets()[1], "09000002 CL MAYOR 11-19 0-0 09002 09001 ABAJAS");
}

} // namespace
} // namespace ambrel::directory
