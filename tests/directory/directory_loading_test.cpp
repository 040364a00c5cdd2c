// Editions of the official directory, one after another, beside what users have done to the tables.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

#include "data/TableDefinitions.h"
#include "dbase/dataset/dataset.h"
#include "dbase/system/error.h"
#include "directory/DirectoryRecords.h"
#include "directory/DirectoryTest.h"
#include "loading/failure.h"
#include "support/LockPatience.h"
#include "tools/edition/NextEdition.h"

namespace ambrel::directory {
namespace {

using DirectoryLoadingTest = DirectoryTest;

TEST_F(DirectoryLoadingTest, TheFirstEditionFillsTheTables) {
    const Outcome load = store(firstEdition());
    EXPECT_EQ(streets(), firstStreets);
    EXPECT_EQ(places(), (Lines{"09001 ABAJAS 09001 N", "09001 ABAJAS 09002 N"}));
    EXPECT_EQ(provenance(),
              (Lines{" 2025-06-30 09001M0000000090010", " 2025-06-30 09001M0000000090020",
                     "09000001 2025-06-30 09001V00001090010000", "09000002 2025-06-30 09001V00001090020000",
                     "09000003 2025-06-30 09001V00002090020000"}));
    EXPECT_EQ(load.summary.streets.comes, 3U);
    EXPECT_EQ(load.summary.municipalities.comes, 2U);
    EXPECT_EQ(load.summary.streetRows, 3U);
    EXPECT_EQ(load.summary.previousEdition, "");
    EXPECT_EQ(load.summary.byMunicipality.at(9001).comes, 3U);
    EXPECT_EQ(load.changes, (Lines{"+00000000 ABAJAS 09001 0 0 0 0", "+00000000 ABAJAS 09002 0 0 0 0",
                                   "+09000001 MAYOR 09001 1 9 2 8", "+09000002 MAYOR 09002 11 19 0 0",
                                   "+09000003 REAL 09002 1 5 0 0"}));
}

TEST_F(DirectoryLoadingTest, TheSameEditionAgainChangesNothing) {
    store(firstEdition());
    const Lines before = everything();
    const Outcome load = storeNext(firstEdition());
    EXPECT_EQ(load.changes, Lines());
    EXPECT_EQ(load.conflicts, Lines());
    EXPECT_EQ(everything(), before);
    EXPECT_EQ(load.summary.previousEdition, "2025-06-30");
    EXPECT_EQ(load.summary.streetRows, 3U);
    EXPECT_TRUE(load.summary.byMunicipality.empty());
}

TEST_F(DirectoryLoadingTest, NewGoneAndRenamedStreetsFollowTheOffice) {
    store(firstEdition());
    SmallEdition next;
    next.unit(9001, 101, "ABAJAS", "ABAJAS")
        .street(9001, 1, "MAYOR DE ARRIBA")
        .street(9001, 3, "NUEVA")
        .stretch(9001, 1, 9001, 1, 9)
        .stretch(9001, 1, 9001, 2, 8)
        .stretch(9001, 1, 9002, 11, 19)
        .stretch(9001, 3, 9002, 1, 3);
    const Outcome load = storeNext(next);
    EXPECT_EQ(streets(), (Lines{"09000001 CL MAYOR DE ARRIBA 1-9 2-8 09001 09001 ABAJAS",
                                "09000002 CL MAYOR DE ARRIBA 11-19 0-0 09002 09001 ABAJAS",
                                "09000004 CL NUEVA 1-3 0-0 09002 09001 ABAJAS"}));
    EXPECT_EQ(load.changes, (Lines{"~09000001 MAYOR DE ARRIBA name", "~09000002 MAYOR DE ARRIBA name",
                                   "-09000003 REAL 09002 1 5 0 0", "+09000004 NUEVA 09002 1 3 0 0"}));
    EXPECT_EQ(load.summary.renamed, 2U);
    EXPECT_EQ(load.summary.streets.goes, 1U);
    EXPECT_EQ(load.summary.byMunicipality.at(9001).changes, 2U);
    EXPECT_EQ(provenance()[2], "09000001 2025-12-31 09001V00001090010000");
    EXPECT_EQ(storeNext(next).changes, Lines());
}

TEST_F(DirectoryLoadingTest, AStreetWhoseLineIsMissingKeepsItsTypeAndItsWholeName) {
    const std::string name = "CONSTITUCION DE MIL NOVECIENTOS", shortName = name.substr(0, 25);
    SmallEdition edition = firstEdition();
    edition.street(9001, 3, name, "AVDA").stretch(9001, 3, 9001, 1, 9, 101, shortName);
    store(edition);
    SmallEdition next = firstEdition();
    next.stretch(9001, 3, 9001, 1, 11, 101, shortName);
    EXPECT_EQ(storeNext(next).changes, (Lines{"~09000004 " + name + " range"}));
    EXPECT_EQ(streets()[3], "09000004 AV " + name + " 1-11 0-0 09001 09001 ABAJAS");
}

TEST_F(DirectoryLoadingTest, ChangedRangesAndCodesKeepTheKeysOfTheirRows) {
    store(firstEdition());
    SmallEdition next;
    next.unit(9001, 101, "ABAJAS", "ABAJAS")
        .street(9001, 1, "MAYOR")
        .street(9001, 2, "REAL", "AVDA")
        .stretch(9001, 1, 9001, 1, 9)
        .stretch(9001, 1, 9001, 2, 18)  // longer
        .stretch(9001, 1, 9003, 11, 17) // with another code, and shorter
        .stretch(9001, 1, 9002, 21, 31) // new, with the code that the other one had
        .stretch(9001, 2, 9002, 1, 5);
    const Outcome load = storeNext(next);
    EXPECT_EQ(streets(), (Lines{"09000001 CL MAYOR 1-9 2-18 09001 09001 ABAJAS",
                                "09000002 CL MAYOR 21-31 0-0 09002 09001 ABAJAS",
                                "09000003 AV REAL 1-5 0-0 09002 09001 ABAJAS",
                                "09000004 CL MAYOR 11-17 0-0 09003 09001 ABAJAS"}));
    EXPECT_EQ(load.summary.otherRange, 2U);
    SmallEdition last;
    last.unit(9001, 101, "ABAJAS", "ABAJAS")
        .street(9001, 1, "MAYOR")
        .street(9001, 2, "REAL", "AVDA")
        .stretch(9001, 1, 9004, 1, 9) // codes that the street had not
        .stretch(9001, 1, 9004, 2, 18)
        .stretch(9001, 1, 9005, 11, 17)
        .stretch(9001, 1, 9002, 21, 31)
        .stretch(9001, 2, 9002, 1, 5);
    const Outcome second = storeNext(last);
    EXPECT_EQ(streets(), (Lines{"09000001 CL MAYOR 1-9 2-18 09004 09001 ABAJAS",
                                "09000002 CL MAYOR 21-31 0-0 09002 09001 ABAJAS",
                                "09000003 AV REAL 1-5 0-0 09002 09001 ABAJAS",
                                "09000004 CL MAYOR 11-17 0-0 09005 09001 ABAJAS"}));
    EXPECT_EQ(second.summary.otherCode, 2U);
}

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

TEST_F(DirectoryLoadingTest, OtherProvincesThanThoseAskedForStayAsTheyAre) {
    SmallEdition two = firstEdition();
    two.unit(28079, 101, "MADRID", "MADRID").street(28079, 1, "ALCALA").stretch(28079, 1, 28001, 1, 99);
    store(two);
    SmallEdition next;
    next.unit(28079, 101, "MADRID", "MADRID").street(28079, 1, "ALCALA").stretch(28079, 1, 28001, 1, 101);
    next.unit(9001, 101, "ABAJAS DEL MONTE", "ABAJAS DEL MONTE")
        .street(9001, 1, "MAYOR")
        .stretch(9001, 1, 9001, 1, 3);
    EditionFiles files = next.write(official, "251231");
    files.provinces = {28};
    EXPECT_EQ(store(files).changes, (Lines{"~28000001 ALCALA range"}));
    EXPECT_EQ(streets().size(), 4U);
    EXPECT_EQ(places().size(), 3U);
}

TEST_F(DirectoryLoadingTest, AProvinceThatTheFilesDoNotHaveStaysAsItIs) {
    SmallEdition two = firstEdition();
    two.unit(28079, 101, "MADRID", "MADRID").street(28079, 1, "ALCALA").stretch(28079, 1, 28001, 1, 99);
    store(two);
    const Lines before = everything();
    EXPECT_EQ(storeNext(firstEdition()).changes, Lines());
    EXPECT_EQ(everything(), before);
}

TEST_F(DirectoryLoadingTest, WithoutTheirFilePseudoStreetsStay) {
    SmallEdition edition = firstEdition();
    edition.pseudo(9001, 1, 9001, "FINCA EL ROBLE");
    store(edition);
    EXPECT_EQ(streets().size(), 4U);
    EditionFiles files = edition.write(official, "251231");
    files.pseudoStreets.clear();
    EXPECT_EQ(store(files).changes, Lines());
    EXPECT_EQ(store(firstEdition(), "251231").changes, Lines()) << "nothing says that it is gone";
}

TEST_F(DirectoryLoadingTest, AfterPostalWasEmptiedAnEditionFillsItAgainWithTheSameKeys) {
    store(firstEdition());
    dbase::createTable(folder.path(), streetTable(), dbase::IfExists::Replace);
    const Outcome load = storeNext(firstEdition());
    EXPECT_EQ(streets(), firstStreets);
    EXPECT_EQ(load.summary.streets.comes, 3U);
    EXPECT_EQ(provenance().size(), 5U);
}

TEST_F(DirectoryLoadingTest, WithoutNamesAnEmptyMunicipiIsRefused) {
    SmallEdition edition;
    edition.street(9001, 1, "MAYOR").stretch(9001, 1, 9001, 1, 9);
    EXPECT_THROW(store(edition), loading::Failure);
    store(firstEdition());
    EXPECT_EQ(store(edition, "251231").summary.streets.goes, 2U) << "the tables have the names";
}

TEST_F(DirectoryLoadingTest, AProgramWithATableOpenIsRefusedWithNothingChanged) {
    const test::LockPatience patience(std::chrono::milliseconds(50));
    store(firstEdition());
    const Lines before = everything();
    for (const char* const name : {"POSTAL", "PROCEDEN", "MUNICIPI"}) {
        dbase::Dataset open("DB", name);
        open.open();
        DirectoryLoading loading("DB", folder.path());
        EXPECT_THROW(loading.begin(), dbase::Error) << name;
        loading.take(std::make_unique<Edition>(SmallEdition(firstEdition()).write(official, "251231")));
        EXPECT_THROW(loading.store(RangeOpening::Ends, folder / "x.deshacer"), dbase::Error) << name;
        EXPECT_FALSE(std::filesystem::exists(folder / "x.deshacer"));
        open.close();
        EXPECT_EQ(everything(), before);
    }
}

TEST_F(DirectoryLoadingTest, WhatTheObserverThrowsEndsItWithNothingChanged) {
    store(firstEdition());
    const Lines before = everything();
    SmallEdition next = firstEdition();
    next.street(9001, 3, "NUEVA").stretch(9001, 3, 9001, 1, 3).stretch(9001, 2, 9002, 7, 11);
    DirectoryLoading loading("DB", folder.path());
    loading.take(std::make_unique<Edition>(next.write(official, "251231")));
    std::size_t names = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        names += entry.exists() ? 1 : 0;
    }
    EXPECT_THROW(loading.store(RangeOpening::None, folder / "next.deshacer",
                               {.change =
                                    [](const DirectoryChange& change) {
                                        if (change.name == "NUEVA") {
                                            throw std::runtime_error("enough");
                                        }
                                    }}),
                 std::runtime_error);
    EXPECT_EQ(everything(), before);
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        names -= entry.exists() ? 1 : 0;
    }
    EXPECT_EQ(names, 0U) << "files stay behind";
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

Lines sorted(Lines lines) {
    std::ranges::sort(lines);
    return lines;
}

/// Rows without their keys and without what only says when they came.
Lines withoutKeys(Lines lines) {
    for (std::string& line : lines) {
        line.erase(0, line.find(' '));
    }
    std::ranges::sort(lines);
    return lines;
}

TEST_F(DirectoryLoadingTest, ASecondEditionOverTheFirstIsWhatItIsByItself) {
    const edition::Files files =
        edition::writeEdition(official.path(), edition::inventedPlaces(104), {.stretches = 4000});
    const auto filesOf = [](const edition::Files& from) {
        return EditionFiles{from.stretches, from.streets,        from.pseudoStreets,
                            from.units,     from.municipalities, {}};
    };
    std::filesystem::create_directory(official / "next");
    const EditionFiles first = filesOf(files),
                       next = filesOf(edition::writeNextEdition(files, official / "next", 20));
    store(next, {}, RangeOpening::Ends);
    const Lines alone = withoutKeys(streets()), placesAlone = sorted(places());
    for (const auto& definition : {streetTable(), municipalityTable(), provenanceTable()}) {
        dbase::createTable(folder.path(), definition, dbase::IfExists::Replace);
    }
    store(first, {}, RangeOpening::Ends);
    const Lines before = everything();
    std::map<std::string, std::string> keys; // by what the office calls a row
    for (const std::string& line : provenance()) {
        keys.emplace(line.substr(20), line.substr(0, 8));
    }
    const Outcome load = store(next, folder / "next.deshacer", RangeOpening::Ends);
    EXPECT_EQ(withoutKeys(streets()), alone);
    EXPECT_EQ(sorted(places()), placesAlone);
    EXPECT_EQ(load.conflicts, Lines());
    EXPECT_GT(load.summary.streets.comes, 10U);
    EXPECT_GT(load.summary.streets.goes, 1U);
    EXPECT_GT(load.summary.streets.changes, 50U);
    std::set<std::string> given;
    for (const std::string& line : provenance()) {
        const std::string key = line.substr(0, 8);
        if (key[0] == ' ') {
            continue; // of MUNICIPI
        }
        EXPECT_TRUE(given.insert(key).second) << key;
        if (const auto was = keys.find(line.substr(20)); was != keys.end()) {
            EXPECT_EQ(key, was->second) << "not the key of the edition before";
        }
    }
    EXPECT_EQ(store(next, {}, RangeOpening::Ends).changes, Lines());
    EXPECT_EQ(undo(folder / "next.deshacer"), Lines());
    EXPECT_EQ(everything(), before);
}

} // namespace
} // namespace ambrel::directory
