// Editions of the official directory over what users have added, changed and deleted.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "directory/DirectoryTest.h"

namespace ambrel::directory {
namespace {

using DirectoryLoadingTest = DirectoryTest;

TEST_F(DirectoryLoadingTest, UsersOwnStreetsStayWhateverTheEditionSays) {
    store(firstEdition());
    addStreet({{"PAR_INI", "2"}, {"PAR_FIN", "8"}});
    const Lines before = everything();
    EXPECT_EQ(storeNext(firstEdition()).changes, Lines());
    EXPECT_EQ(everything(), before);
}

TEST_F(DirectoryLoadingTest, AUsersStreetWithoutEndHasAllNumbers) {
    store(firstEdition());
    addStreet({{"IMPAR_FIN", "65536"}});
    SmallEdition next = firstEdition();
    next.street(9001, 10, "DEL MOLINO").stretch(9001, 10, 9001, 3, 7);
    EXPECT_EQ(storeNext(next).changes, Lines());
}

TEST_F(DirectoryLoadingTest, AnOfficialStretchThatSharesNumbersWithAUsersStreetIsNotAdded) {
    store(firstEdition());
    const auto add = [](const char* key, const char* type, const char* name, const char* first,
                        const char* last, const char* place) {
        addStreet({{"CODIGO1", key},
                   {"TIPO_VIA", type},
                   {"VIA", name},
                   {"IMPAR_INI", first},
                   {"IMPAR_FIN", last},
                   {"COD_INE", place}});
    };
    add("99000000", "CL", "DEL MOLINO", "1", "9", "09001"); // with more numbers than the office has
    add("99000001", "CL", "DEL SOL", "1", "9", "");         // its municipality by name; another code
    add("99000002", "", "DEL MAR", "1", "9", "09001");      // without a type; with fewer numbers
    add("99000003", "CL", "DEL RIO", "1", "9", "09001");    // other numbers
    add("99000004", "AV", "DEL PINO", "1", "9", "09001");   // another type
    add("99000005", "CL", "DEL OLMO", "1", "9", "28079");   // another municipality
    SmallEdition next = firstEdition();
    next.street(9001, 10, "DEL MOLINO").stretch(9001, 10, 9001, 3, 7);
    next.street(9001, 11, "DEL SOL").stretch(9001, 11, 9002, 3, 7);
    next.street(9001, 12, "DEL MAR").stretch(9001, 12, 9001, 1, 15);
    next.street(9001, 13, "DEL RIO").stretch(9001, 13, 9001, 11, 15);
    next.street(9001, 14, "DEL PINO").stretch(9001, 14, 9001, 1, 9);
    next.street(9001, 15, "DEL OLMO").stretch(9001, 15, 9001, 1, 9);
    const Outcome load = storeNext(next);
    EXPECT_EQ(load.changes, (Lines{"+09000004 DEL RIO 09001 11 15 0 0", "+09000005 DEL PINO 09001 1 9 0 0",
                                   "+09000006 DEL OLMO 09001 1 9 0 0"}));
    EXPECT_EQ(load.conflicts, (Lines{"own street 99000001: CL DEL SOL 1-9 09001 | CL DEL SOL 3-7 09002",
                                     "own street 99000002: DEL MAR 1-9 09001 | CL DEL MAR 1-15 09001"}));
    EXPECT_EQ(load.summary.kept, 3U);
    EXPECT_EQ(load.summary.conflicts, 2U);
    EXPECT_EQ(load.summary.byMunicipality.at(9001).conflicts, 2U);
    EXPECT_EQ(streets().size(), 12U);
}

TEST_F(DirectoryLoadingTest, AUsersStreetThatReachesBeyondAnOfficialStretchDoesNotCoverItsBeginning) {
    store(firstEdition());
    addStreet({{"IMPAR_INI", "15"}, {"IMPAR_FIN", "99"}});
    SmallEdition next = firstEdition();
    next.street(9001, 10, "DEL MOLINO").stretch(9001, 10, 9001, 1, 21);
    EXPECT_EQ(storeNext(next).conflicts,
              (Lines{"own street 99000000: CL DEL MOLINO 15-99 09001 | CL DEL MOLINO 1-21 09001"}));
}

TEST_F(DirectoryLoadingTest, AnOfficialStreetWhoseTypeIsUnknownIsNotAddedBesideAUsersStreet) {
    store(firstEdition());
    addStreet({});
    SmallEdition next = firstEdition();
    next.street(9001, 10, "DEL MOLINO", "XYZZY").stretch(9001, 10, 9001, 3, 7);
    const Outcome load = storeNext(next);
    EXPECT_EQ(load.changes, Lines());
    EXPECT_EQ(load.summary.kept, 1U);
}

TEST_F(DirectoryLoadingTest, StreetsOfAnotherImportStayAndTheOfficialOnesComeBesideThem) {
    addPlace({});
    addPlace({{"CODPOSTAL", "09002"}});
    addStreet({{"CODIGO1", "09000001"},
               {"VIA", "MAYOR"},
               {"IMPAR_FIN", "9999"},
               {"PAR_INI", "2"},
               {"PAR_FIN", "9998"},
               {"COD_INE", ""}});
    const Outcome load = store(firstEdition());
    EXPECT_EQ(streets(), (Lines{"09000001 CL MAYOR 1-9999 2-9998 09001  ABAJAS",
                                "09000002 AV REAL 1-5 0-0 09002 09001 ABAJAS"}));
    EXPECT_EQ(load.conflicts,
              (Lines{"own street 09000001: CL MAYOR 1-9999 2-9998 09001 | CL MAYOR 11-19 09002"}));
    EXPECT_EQ(load.summary.kept, 2U);
}

TEST_F(DirectoryLoadingTest, ARowChangedByHandStaysAndOnlyAChangeOfTheOfficeIsReported) {
    store(firstEdition());
    set("09000001", "VIA", "MAYOR VIEJA");
    set("09000003", "CODPOSTAL", "09009");
    const Outcome again = storeNext(firstEdition());
    EXPECT_EQ(again.changes, Lines());
    EXPECT_EQ(again.conflicts, Lines());
    EXPECT_EQ(again.summary.kept, 2U);
    SmallEdition next;
    next.unit(9001, 101, "ABAJAS", "ABAJAS")
        .street(9001, 1, "MAYOR")
        .street(9001, 2, "REAL", "AVDA")
        .stretch(9001, 1, 9001, 1, 9)
        .stretch(9001, 1, 9001, 2, 18)
        .stretch(9001, 1, 9002, 11, 19)
        .stretch(9001, 2, 9002, 1, 5);
    const Outcome load = storeNext(next);
    EXPECT_EQ(load.changes, Lines());
    EXPECT_EQ(load.conflicts,
              (Lines{"changed 09000001: CL MAYOR VIEJA 1-9 2-8 09001 | CL MAYOR 1-9 2-18 09001"}));
    EXPECT_EQ(streets()[0], "09000001 CL MAYOR VIEJA 1-9 2-8 09001 09001 ABAJAS");
    EXPECT_EQ(storeNext(next).conflicts, Lines()) << "reported once";
}

TEST_F(DirectoryLoadingTest, ARowChangedToWhatTheOfficeHasFollowsItAgain) {
    store(firstEdition());
    set("09000003", "IMPAR_FIN", "7");
    SmallEdition next;
    next.unit(9001, 101, "ABAJAS", "ABAJAS").street(9001, 1, "MAYOR").street(9001, 2, "REAL", "AVDA");
    next.stretch(9001, 1, 9001, 1, 9).stretch(9001, 1, 9001, 2, 8).stretch(9001, 1, 9002, 11, 19);
    SmallEdition last = next;
    next.stretch(9001, 2, 9002, 1, 7);
    EXPECT_EQ(storeNext(next).conflicts, Lines());
    last.stretch(9001, 2, 9002, 1, 11);
    EXPECT_EQ(storeNext(last).changes, (Lines{"~09000003 REAL range"}));
}

TEST_F(DirectoryLoadingTest, ARowChangedByHandAndGoneFromTheOfficeBecomesTheUsersOwn) {
    store(firstEdition());
    set("09000003", "IMPAR_FIN", "7");
    SmallEdition next;
    next.unit(9001, 101, "ABAJAS", "ABAJAS").street(9001, 1, "MAYOR");
    next.stretch(9001, 1, 9001, 1, 9).stretch(9001, 1, 9001, 2, 8).stretch(9001, 1, 9002, 11, 19);
    const Outcome load = storeNext(next);
    EXPECT_EQ(load.changes, Lines());
    EXPECT_EQ(load.conflicts, (Lines{"changed 09000003: AV REAL 1-7 09002 | "}));
    EXPECT_EQ(streets()[2], "09000003 AV REAL 1-7 0-0 09002 09001 ABAJAS");
    EXPECT_EQ(storeNext(next).conflicts, Lines());
    EXPECT_EQ(storeNext(firstEdition()).changes, Lines()) << "within the user's row";
}

TEST_F(DirectoryLoadingTest, ARowDeletedByHandDoesNotComeBack) {
    store(firstEdition());
    erase("09000002");
    erase("09000003");
    const Outcome again = storeNext(firstEdition());
    EXPECT_EQ(again.changes, Lines());
    EXPECT_EQ(again.conflicts, Lines());
    SmallEdition next;
    next.unit(9001, 101, "ABAJAS", "ABAJAS")
        .street(9001, 1, "MAYOR")
        .stretch(9001, 1, 9001, 1, 9)
        .stretch(9001, 1, 9001, 2, 8)
        .stretch(9001, 1, 9003, 11, 29); // the deleted one, with another code
    const Outcome load = storeNext(next);
    EXPECT_EQ(load.changes, (Lines{"~00000000 ABAJAS code"}));
    EXPECT_EQ(load.conflicts, (Lines{"deleted 09000002:  | CL MAYOR 11-29 09003"}));
    EXPECT_EQ(streets(), (Lines{firstStreets[0]}));
    EXPECT_EQ(storeNext(next).conflicts, Lines());
}

/// The PROCEDEN of earlier versions.
TEST_F(DirectoryLoadingTest, RowsOfAProvenanceWithoutFingerprintsFollowTheOfficeOnceTheyAreItsOwn) {
    store(firstEdition());
    const std::vector<std::string> columns = {"CODIGO1 C8", "FUENTE C3",  "EDICION C10", "CLAVE C20",
                                              "LINEA N10",  "ABIERTO C4", "ABREVIADO L"};
    std::filesystem::remove(folder / "PROCEDEN.DBF");
    std::filesystem::remove(folder / "PROCEDEN.MDX");
    createTable(test::defineTable("PROCEDEN", columns, {"CODIGO1"}),
                {{"09000001", "INE", "2025-06-30", "09001V00001090010000", "1", "----", "F"},
                 {"09000002", "INE", "2025-06-30", "09001V00001090020000", "3", "----", "F"},
                 {"09000003", "INE", "2025-06-30", "09001V00002090020000", "4", "----", "F"}});
    SmallEdition next;
    next.unit(9001, 101, "ABAJAS", "ABAJAS").street(9001, 1, "MAYOR").street(9001, 2, "REAL", "AVDA");
    next.stretch(9001, 1, 9001, 1, 9).stretch(9001, 1, 9001, 2, 8).stretch(9001, 1, 9002, 11, 19);
    next.stretch(9001, 2, 9002, 1, 11);
    const Outcome tried = simulate(next, "251231");
    const Outcome load = store(next, "251231");
    EXPECT_EQ(load.changes, tried.changes);
    EXPECT_EQ(load.changes, Lines());
    EXPECT_EQ(load.conflicts, (Lines{"changed 09000003: AV REAL 1-5 09002 | AV REAL 1-11 09002"}))
        << "whose change it was nobody knows";
    next.stretch(9001, 1, 9002, 21, 23);
    EXPECT_EQ(storeNext(next).changes, (Lines{"~09000002 MAYOR range"}));
}

} // namespace
} // namespace ambrel::directory
