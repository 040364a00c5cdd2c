// Editions of the official directory, one after another.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

#include <pthread.h>

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

TEST_F(DirectoryLoadingTest, AStreetWhoseLineIsMissingTakesAShortNameThatIsAnotherOne) {
    SmallEdition edition = firstEdition();
    edition.street(9001, 3, "CONSTITUCION", "AVDA").stretch(9001, 3, 9001, 1, 9);
    store(edition);
    SmallEdition next = firstEdition();
    next.stretch(9001, 3, 9001, 1, 9, 101, "REPUBLICA");
    EXPECT_EQ(storeNext(next).changes, (Lines{"~09000004 REPUBLICA name"}));
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

/// From refuse() to its end the system grants no thread: none has so much memory for its stack.
class NoMoreThreads {
public:
    NoMoreThreads() { pthread_getattr_default_np(&usual_); }
    ~NoMoreThreads() {
        pthread_setattr_default_np(&usual_);
        pthread_attr_destroy(&usual_);
    }
    NoMoreThreads(const NoMoreThreads&) = delete;
    NoMoreThreads& operator=(const NoMoreThreads&) = delete;

    static void refuse() {
        pthread_attr_t none;
        pthread_attr_init(&none);
        pthread_attr_setstacksize(&none, std::size_t{1} << 60);
        pthread_setattr_default_np(&none);
        pthread_attr_destroy(&none);
    }

private:
    pthread_attr_t usual_;
};

TEST_F(DirectoryLoadingTest, TablesAreExchangedWithoutMoreThreads) {
    store(firstEdition());
    SmallEdition next = firstEdition("MAYOR DE ARRIBA");
    DirectoryLoading loading("DB", folder.path());
    loading.take(std::make_unique<Edition>(next.write(official, "251231")));
    const NoMoreThreads threads;
    const LoadSummary summary = loading.store(
        RangeOpening::None, {}, {.change = [](const DirectoryChange&) { NoMoreThreads::refuse(); }});
    EXPECT_GT(summary.streets.changes, 0U);
    EXPECT_TRUE(std::ranges::any_of(
        streets(), [](const std::string& row) { return row.find("MAYOR DE ARRIBA") != std::string::npos; }));
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
