// The pass that writes municipality and INE code into every street.
#include "controller/InePass.h"

#include <gtest/gtest.h>

#include "data/PostalTables.h"
#include "dbase/dataset/dataset.h"
#include "dbase/system/error.h"
#include "services/Confamb.h"
#include "support/DiskWaits.h"

namespace {

using namespace postal_tests;
using ambrel::InePassRows;

class InePass : public PostalTables {
protected:
    InePass() {
        addMunicipalities({{"28900", "28400", "LA NAVATA", "N", "9", true},
                           {"28047", "28400", "COLLADO VILLALBA", "N", "1"},
                           {"28048", "28400", "OTRO CON EL MISMO", "N", "1"},
                           {"28901", "28411", "CERCEDA", "N", "9", true},
                           {"28902", "28411", "EL BOALO", "N", "9", true},
                           {"28079", "28001", "MADRID", "N", "0"}});
    }

    static ambrel::InePassCount run(InePassRows rows = InePassRows::All) {
        return ambrel::fillIneCodes("DB", rows, [](std::uint32_t, std::uint32_t) {});
    }
    /// MUNICIPI and COD_INE of a street.
    static std::string stored(const std::string& codigo1) {
        dbase::Dataset streets("DB", "POSTAL", "CODIGO1");
        streets.open();
        EXPECT_TRUE(streets.seek({{"CODIGO1", codigo1}}, dbase::SeekMode::Exact)) << codigo1;
        return streets.field("MUNICIPI").text() + "/" + streets.field("COD_INE").text();
    }
    static void store(const std::string& codigo1, const std::string& name, const std::string& code) {
        dbase::Dataset streets("DB", "POSTAL", "CODIGO1");
        streets.open();
        EXPECT_TRUE(streets.seek({{"CODIGO1", codigo1}}, dbase::SeekMode::Exact)) << codigo1;
        streets.edit();
        streets.field("MUNICIPI").setText(name);
        streets.field("COD_INE").setText(code);
        streets.post();
    }
};

TEST_F(InePass, StreetGetsTheFirstMunicipalityOfItsPostalCodeThatIsNoMinorEntity) {
    addStreets({{"1", "MAYOR", "CL", "28400"}, {"2", "LA NAVATA", "LG", "28400"}});
    run();
    EXPECT_EQ(stored("1"), "COLLADO VILLALBA/28047");
    EXPECT_EQ(stored("2"), "COLLADO VILLALBA/28047") << "its name counts only among minor entities";
}

TEST_F(InePass, StreetWithOnlyMinorEntitiesGetsTheOneThatHasItsName) {
    addStreets({{"1", "EL BOALO", "LG", "28411"}, {"2", "MAYOR", "CL", "28411"}});
    run();
    EXPECT_EQ(stored("1"), "EL BOALO/28902");
    EXPECT_EQ(stored("2"), "/");
}

TEST_F(InePass, StreetWithOnlyMinorEntitiesAndACodeKeepsIt) {
    addStreets({{"1", "EL BOALO", "LG", "28411"}});
    store("1", "", "28001");
    run();
    EXPECT_EQ(stored("1"), "/28001");
}

TEST_F(InePass, StreetWhosePostalCodeNoMunicipalityHasStaysAsItIs) {
    addStreets({{"1", "MAYOR", "CL", "28999"}, {"2", "MENOR", "CL", ""}});
    store("1", "ANTES", "28000");
    run();
    EXPECT_EQ(stored("1"), "ANTES/28000");
    EXPECT_EQ(stored("2"), "/");
}

TEST_F(InePass, AllRowsAreOverwritten) {
    addStreets({{"1", "MAYOR", "CL", "28001"}});
    store("1", "ANTES", "28000");
    run();
    EXPECT_EQ(stored("1"), "MADRID/28079");
}

TEST_F(InePass, RowsWithoutDataAreThoseWhereBothColumnsAreBlank) {
    addStreets({{"1", "A", "CL", "28001"}, {"2", "B", "CL", "28001"}, {"3", "C", "CL", "28001"}});
    store("1", "ANTES", "");
    store("2", "", "28000");
    run(InePassRows::WithoutData);
    EXPECT_EQ(stored("1"), "ANTES/");
    EXPECT_EQ(stored("2"), "/28000");
    EXPECT_EQ(stored("3"), "MADRID/28079");
}

TEST_F(InePass, StreetThatAnotherUserHoldsIsSkipped) {
    addStreets({{"1", "A", "CL", "28001"}, {"2", "B", "CL", "28001"}, {"3", "C", "CL", "28001"}});
    dbase::Dataset other("DB", "POSTAL", "CODIGO1");
    other.open();
    other.next();
    other.edit();
    run();
    EXPECT_EQ(stored("1"), "MADRID/28079");
    EXPECT_EQ(stored("2"), "/");
    EXPECT_EQ(stored("3"), "MADRID/28079");
    other.field("VIA").setText("BB");
    other.post(); // the other user's change is not lost
}

TEST_F(InePass, DeletedStreetsAreLeftAlone) {
    addStreets({{"1", "A", "CL", "28001"}, {"2", "B", "CL", "28001"}});
    dbase::Dataset streets("DB", "POSTAL");
    streets.open();
    streets.erase();
    run();
    streets.first();
    EXPECT_EQ(streets.field("COD_INE").text(), "28079");
    EXPECT_FALSE(streets.next());
}

TEST_F(InePass, ProgressIsReportedWhileTheTablesCanBeRead) {
    std::vector<StreetRow> rows;
    for (int i = 0; i < 1100; ++i) {
        rows.push_back({std::to_string(i), "CALLE " + std::to_string(i), "CL", "28001"});
    }
    addStreets(rows);
    std::vector<std::uint32_t> told;
    ambrel::fillIneCodes("DB", InePassRows::All, [&](std::uint32_t done, std::uint32_t total) {
        EXPECT_EQ(total, 1100u);
        told.push_back(done);
        EXPECT_EQ(stored(std::to_string(done - 1)), "MADRID/28079");
    });
    ASSERT_GE(told.size(), 2u);
    EXPECT_LT(told.front(), told.back());
    EXPECT_EQ(stored("1099"), "MADRID/28079");
}

TEST_F(InePass, StreetsThatItFillsAreCountedAndThoseThatOthersHoldApart) {
    addStreets({{"1", "A", "CL", "28001"},
                {"2", "B", "CL", "28001"},
                {"3", "C", "CL", "28001"},
                {"4", "SIN MUNICIPIO", "CL", "28999"},
                {"5", "E", "CL", "28001"}});
    store("3", "MADRID", "28079");
    dbase::Dataset mine("DB", "POSTAL", "CODIGO1"), theirs("DB", "POSTAL", "CODIGO1");
    for (dbase::Dataset* const held : {&mine, &theirs}) {
        held->open();
    }
    mine.next();
    mine.edit();
    theirs.last();
    theirs.prior();
    theirs.edit(); // has no municipality, whether held or not
    const ambrel::InePassCount count = run();
    EXPECT_EQ(count.filled, 3u) << "1, 3 and 5";
    EXPECT_EQ(count.inUse, 1u);
    mine.cancel();
    EXPECT_EQ(run(InePassRows::WithoutData).filled, 1u);
    EXPECT_EQ(run(InePassRows::WithoutData).filled, 0u);
    EXPECT_EQ(run().filled, 4u);
    EXPECT_EQ(run().inUse, 0u);
}

/// Twelve stretches that are changed one after the other.
class InePassWaits : public InePass {
protected:
    InePassWaits() {
        std::vector<StreetRow> rows;
        for (int i = 0; i < 12 * 512; ++i) {
            rows.push_back({std::to_string(i), "CALLE " + std::to_string(i), "CL", "28001"});
        }
        addStreets(rows);
        streets.open();
    }
    ~InePassWaits() override { Config.AsegurarEnDisco = true; }

    void post(dbase::Durability durability) {
        streets.edit();
        streets.field("VIA").setText("OTRA" + std::to_string(++posts));
        streets.post(durability);
    }
    static int waits(InePassRows rows = InePassRows::All) {
        const int before = ambrel::test::diskWaits();
        run(rows);
        return ambrel::test::diskWaits() - before;
    }

    dbase::Dataset streets{"DB", "POSTAL", "CODIGO1"};
    int posts = 0;
};

TEST_F(InePassWaits, ItWaitsOnceForTheDiskAtItsEnd) {
    post(dbase::Durability::Process);
    EXPECT_EQ(waits(), 1);
}

TEST_F(InePassWaits, ItWaitsAsOftenWhateverWasPostedBefore) {
    for (int i = 0; i < 3; ++i) {
        post(dbase::Durability::Disk);
    }
    EXPECT_EQ(waits(), 1 + 2) << "what the posts kept in the journal goes to its place first, once";
    streets.refresh();
    store("0", "ANTES", "28000");
    EXPECT_EQ(waits(), 1);
}

TEST_F(InePassWaits, ItWaitsForNothingWhereNothingIsFilledOrTheConfigurationAsksForNone) {
    Config.AsegurarEnDisco = false;
    post(dbase::Durability::Process);
    EXPECT_EQ(waits(), 0);
    Config.AsegurarEnDisco = true;
    EXPECT_EQ(waits(InePassRows::WithoutData), 0);
}

TEST_F(InePass, OpenCursorsSeeWhatWasWritten) {
    addStreets({{"1", "A", "CL", "28001"}});
    dbase::Dataset streets("DB", "POSTAL");
    streets.open();
    run();
    streets.refresh();
    EXPECT_EQ(streets.field("MUNICIPI").text(), "MADRID");
}

TEST_F(InePass, EmptyDirectoryIsNoFault) { run(); }

TEST_F(InePass, TableThatCannotBeOpenedRaises) {
    EXPECT_THROW(ambrel::fillIneCodes("OTRA", InePassRows::All, [](std::uint32_t, std::uint32_t) {}),
                 dbase::Error);
}

} // namespace
