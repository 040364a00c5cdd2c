// Table access.
#include "services/Ruttb.h"

#include <filesystem>
#include <functional>

#include "dbase/journal/journal_place.h"
#include "dbase/system/databases.h"
#include "dbase/system/error.h"
#include "services/Confamb.h"
#include "support/DiskWaits.h"
#include "support/TableTest.h"

namespace {

using ambrel::test::Row;

class Ruttb : public ambrel::test::TableTest {
protected:
    Ruttb() {
        createTable(ambrel::test::defineTable("MUNICIPI", {"COD_INE C5", "NOMBRE C20", "ENT_MENOR L"},
                                              {"COD_INE", "NOMBRE"}),
                    {{"28079", "MADRID", "F"},
                     {"08019", "BARCELONA", "F"},
                     {"41091", "SEVILLA", "F"},
                     {"28079", "ARAVACA", "T"},
                     {"46250", "VALENCIA", "F"}});
        createTable(ambrel::test::defineTable("PROVIN", {"PROVINCIA C21", "CODIGO C3"}, {"CODIGO"}),
                    {{"BARCELONA", "008"}, {"MADRID", "028"}});
        createTable(ambrel::test::defineTable("POSTAL", {"PROVINCIA C2", "VIA C10", "CODPOSTAL C5"},
                                              {"VIA=PROVINCIA+VIA"}),
                    {{"28", "MAYOR", "28013"}, {"28", "ALCALA", "28014"}, {"08", "MAYOR", "08017"}});
        table = CreaTabla("DB", "MUNICIPI.DBF", "NOMBRE", false, openNow);
    }

    static std::vector<std::string> names(dbase::Dataset& dataset) {
        std::vector<std::string> result;
        for (dataset.first(); !dataset.eof(); dataset.next()) {
            result.push_back(dataset.field("NOMBRE").text());
        }
        return result;
    }
    [[nodiscard]] std::string name() const { return table->field("NOMBRE").text(); }

    std::unique_ptr<dbase::Dataset> table;
};

using Names = std::vector<std::string>;

TEST_F(Ruttb, TBIndexaSelectsATagOfAnOpenTableAndKeepsTheRecord) {
    ASSERT_TRUE(TBBusca(*table, {{"NOMBRE", "MADRID"}}, exactSearch));
    TBIndexa("COD_INE", *table);
    EXPECT_EQ(table->tag(), "COD_INE");
    EXPECT_EQ(name(), "MADRID");
}

TEST_F(Ruttb, TBIndexaSelectsATagOfAClosedTable) {
    const auto closed = CreaTabla("DB", "MUNICIPI.DBF", "COD_INE", false, leaveClosed);
    TBIndexa("NOMBRE", *closed);
    closed->open();
    EXPECT_EQ(names(*closed).front(), "ARAVACA");
}

TEST_F(Ruttb, TBIndexaCalledTwiceWithTheInOutArgumentRestoresTheTag) {
    std::string tag = "COD_INE";
    TBIndexa(*table, tag);
    EXPECT_EQ(table->tag(), "COD_INE");
    EXPECT_EQ(tag, "NOMBRE");
    TBIndexa(*table, tag);
    EXPECT_EQ(table->tag(), "NOMBRE");
    EXPECT_EQ(tag, "COD_INE");
}

TEST_F(Ruttb, TBIndexaWithTheInOutArgumentLeavesItWhenTheTagIsMissing) {
    std::string tag = "NO_HAY";
    EXPECT_THROW(TBIndexa(*table, tag), dbase::Error);
    EXPECT_EQ(tag, "NO_HAY");
    EXPECT_EQ(table->tag(), "NOMBRE");
}

TEST_F(Ruttb, TBIndexaToTheActiveTagKeepsTheRange) {
    TBRango(*table, {{"NOMBRE", "MADRID"}}, {{"NOMBRE", "SEVILLA"}});
    TBIndexa("NOMBRE", *table);
    EXPECT_EQ(names(*table), (Names{"MADRID", "SEVILLA"}));
}

TEST_F(Ruttb, TBBuscaExactFindsTheKeyOrMovesNothing) {
    EXPECT_TRUE(TBBusca(*table, {{"NOMBRE", "SEVILLA"}}, exactSearch));
    EXPECT_EQ(name(), "SEVILLA");
    EXPECT_FALSE(TBBusca(*table, {{"NOMBRE", "SEV"}}, exactSearch));
    EXPECT_EQ(name(), "SEVILLA");
}

TEST_F(Ruttb, TBBuscaExactGoesToTheFirstOfEqualKeys) {
    TBIndexa("COD_INE", *table);
    EXPECT_TRUE(TBBusca(*table, {{"COD_INE", "28079"}}, exactSearch));
    EXPECT_EQ(name(), "MADRID");
}

TEST_F(Ruttb, TBBuscaNearestGoesToTheFirstAtOrAfterTheKey) {
    EXPECT_TRUE(TBBusca(*table, {{"NOMBRE", "MAE"}}, nearestSearch));
    EXPECT_EQ(name(), "SEVILLA");
    EXPECT_TRUE(TBBusca(*table, {{"NOMBRE", "MADRID"}}, nearestSearch));
    EXPECT_EQ(name(), "MADRID");
}

TEST_F(Ruttb, TBBuscaNearestPastTheEndAnswersFalseAtTheLastRecord) {
    EXPECT_FALSE(TBBusca(*table, {{"NOMBRE", "ZAMORA"}}, nearestSearch));
    EXPECT_EQ(name(), "VALENCIA");
    EXPECT_TRUE(table->eof());
}

TEST_F(Ruttb, TBBuscaTakesAnIntegerPaddedWithZeros) {
    const auto provinces = CreaTabla("DB", "PROVIN", "CODIGO", false, openNow);
    EXPECT_TRUE(TBBusca(*provinces, {{"CODIGO", 28}}, exactSearch));
    EXPECT_EQ(provinces->field("PROVINCIA").text(), "MADRID");
    EXPECT_FALSE(TBBusca(*provinces, {{"CODIGO", "28"}}, exactSearch));
}

TEST_F(Ruttb, TBBuscaTakesSeveralPairs) {
    const auto streets = CreaTabla("DB", "POSTAL", "VIA", false, openNow);
    EXPECT_TRUE(TBBusca(*streets, {{"PROVINCIA", "28"}, {"VIA", "MAYOR"}}, exactSearch));
    EXPECT_EQ(streets->field("CODPOSTAL").text(), "28013");
}

TEST_F(Ruttb, TBRangoShowsTheRecordsBetweenBothKeysIncluded) {
    TBRango(*table, {{"NOMBRE", "BARCELONA"}}, {{"NOMBRE", "MADRID"}});
    EXPECT_EQ(names(*table), (Names{"BARCELONA", "MADRID"}));
}

TEST_F(Ruttb, TBFiltraHidesWhatDoesNotFulfilTheCondition) {
    TBFiltra(*table, "ENT_MENOR=False");
    EXPECT_EQ(names(*table), (Names{"BARCELONA", "MADRID", "SEVILLA", "VALENCIA"}));
    EXPECT_FALSE(TBBusca(*table, {{"NOMBRE", "ARAVACA"}}, exactSearch));
}

TEST_F(Ruttb, TBFiltraKeepsTheOldFilterWhenTheConditionIsNotUnderstood) {
    TBFiltra(*table, "ENT_MENOR=True");
    EXPECT_THROW(TBFiltra(*table, "NO_HAY=1"), dbase::Error);
    EXPECT_EQ(names(*table), Names{"ARAVACA"});
}

TEST_F(Ruttb, TBPostWritesAnInsertAndMakesItCurrent) {
    table->append();
    table->field("NOMBRE").setText("BILBAO");
    TBPost(*table);
    EXPECT_EQ(table->state(), dbase::DatasetState::Browse);
    EXPECT_EQ(name(), "BILBAO");
    EXPECT_EQ(names(*CreaTabla("DB", "MUNICIPI", "NOMBRE", false, openNow)),
              (Names{"ARAVACA", "BARCELONA", "BILBAO", "MADRID", "SEVILLA", "VALENCIA"}));
}

TEST_F(Ruttb, TBPostWritesAnEdit) {
    ASSERT_TRUE(TBBusca(*table, {{"NOMBRE", "SEVILLA"}}, exactSearch));
    table->edit();
    table->field("NOMBRE").setText("ALMERIA");
    TBPost(*table);
    EXPECT_EQ(names(*table).front(), "ALMERIA");
}

TEST_F(Ruttb, TBDeleteMakesTheNextRecordCurrentElseTheLast) {
    ASSERT_TRUE(TBBusca(*table, {{"NOMBRE", "MADRID"}}, exactSearch));
    TBDelete(*table);
    EXPECT_EQ(name(), "SEVILLA");
    table->last();
    TBDelete(*table);
    EXPECT_EQ(name(), "SEVILLA");
    EXPECT_EQ(names(*table), (Names{"ARAVACA", "BARCELONA", "SEVILLA"}));
}

TEST_F(Ruttb, BloqueaActualIsRefusedWhileAnotherCursorHoldsTheRecord) {
    const auto other = CreaTabla("DB", "MUNICIPI", "NOMBRE", false, openNow);
    EXPECT_TRUE(BloqueaActual(*table));
    EXPECT_FALSE(BloqueaActual(*other));
    other->last();
    EXPECT_TRUE(BloqueaActual(*other));
}

TEST_F(Ruttb, DesbloqueaAllReleasesEveryRecord) {
    const auto other = CreaTabla("DB", "MUNICIPI", "NOMBRE", false, openNow);
    EXPECT_TRUE(BloqueaActual(*table));
    table->last();
    EXPECT_TRUE(BloqueaActual(*table));
    DesbloqueaAll(*table);
    EXPECT_TRUE(BloqueaActual(*other));
    other->last();
    EXPECT_TRUE(BloqueaActual(*other));
}

TEST_F(Ruttb, CreaTablaOpensOnlyWhenAsked) {
    EXPECT_TRUE(table->isOpen());
    EXPECT_FALSE(CreaTabla("DB", "MUNICIPI", "NOMBRE", false, leaveClosed)->isOpen());
}

TEST_F(Ruttb, CreaTablaRaisesForATableThatIsNotThere) {
    EXPECT_THROW(static_cast<void>(CreaTabla("DB", "NO_HAY.DBF", "NOMBRE", false, openNow)), dbase::Error);
}

// --- Waiting for the disk

class RuttbDiskWaits : public Ruttb {
protected:
    RuttbDiskWaits() { addTown(); } // the first change of a table waits more often
    ~RuttbDiskWaits() override { Config.AsegurarEnDisco = true; }

    void addTown() {
        table->append();
        table->field("NOMBRE").setText("LUGO");
        TBPost(*table);
    }
    static int waitsFor(const std::function<void()>& work) {
        const int before = ambrel::test::diskWaits();
        work();
        return ambrel::test::diskWaits() - before;
    }
};

TEST_F(RuttbDiskWaits, TBPostAndTBDeleteWaitOnceEach) {
    EXPECT_EQ(waitsFor([this] { addTown(); }), 1);
    EXPECT_EQ(waitsFor([this] { TBDelete(*table); }), 1);
}

TEST_F(RuttbDiskWaits, TBPostAndTBDeleteDoNotWaitWhereTheConfigurationSaysSo) {
    Config.AsegurarEnDisco = false;
    addTown();
    EXPECT_EQ(waitsFor([this] {
                  addTown();
                  TBDelete(*table);
              }),
              0);
}

TEST_F(RuttbDiskWaits, WhatOnePostAskedForIsNothingToTheNext) {
    dbase::Dataset other("DB", "MUNICIPI", "NOMBRE");
    other.open();
    const auto rename = [&] {
        other.edit();
        other.field("NOMBRE").setText("LEON");
        other.post();
    };
    addTown();
    rename(); // the engine first puts TBPost's journal entry in its place
    EXPECT_EQ(waitsFor([&] {
                  rename();
                  other.append();
                  other.post();
                  other.erase();
              }),
              0);
    EXPECT_EQ(waitsFor([&] {
                  other.append();
                  other.post(dbase::Durability::Disk);
              }),
              3)
        << "the change and, once, what was posted without waiting before it";
    EXPECT_EQ(waitsFor([&] { other.erase(dbase::Durability::Disk); }), 1);
}

// --- After a power cut

/// The table after a power cut, when the disk has only what was waited for.
class RuttbPowerCut : public Ruttb {
protected:
    ~RuttbPowerCut() override {
        dbase::setBootIdentity(boot_);
        dbase::setDatabaseFolder("DISCO", {});
        Config.AsegurarEnDisco = true;
    }
    [[nodiscard]] Names namesAfterThePowerCut(const std::function<void()>& work) {
        const TemporaryFolder disk;
        addTown("AVILES"); // the first change: from now on the index names the session of the journal
        table->sync();
        for (const char* file : {"MUNICIPI.DBF", "MUNICIPI.MDX"}) {
            std::filesystem::copy_file(folder / file, disk / file);
        }
        work();
        std::filesystem::copy_file(folder / "MUNICIPI.AMJ", disk / "MUNICIPI.AMJ");
        dbase::setBootIdentity("otro arranque");
        dbase::setDatabaseFolder("DISCO", disk.path());
        dbase::Dataset found("DISCO", "MUNICIPI", "NOMBRE");
        found.open();
        return names(found);
    }
    void addTown(const std::string& name = "LUGO") {
        table->append();
        table->field("NOMBRE").setText(name);
        TBPost(*table);
    }

private:
    std::string boot_ = dbase::bootIdentity();
};

TEST_F(RuttbPowerCut, AnAcceptedRowAndADeletionAreThere) {
    EXPECT_EQ(namesAfterThePowerCut([this] {
                  addTown();
                  ASSERT_TRUE(TBBusca(*table, {{"NOMBRE", "SEVILLA"}}, exactSearch));
                  TBDelete(*table);
              }),
              (Names{"ARAVACA", "AVILES", "BARCELONA", "LUGO", "MADRID", "VALENCIA"}));
}

TEST_F(RuttbPowerCut, WithoutWaitingForTheDiskTheRowMayBeMissingAndTheTableIsWhole) {
    Config.AsegurarEnDisco = false;
    EXPECT_EQ(namesAfterThePowerCut([this] { addTown(); }),
              (Names{"ARAVACA", "AVILES", "BARCELONA", "MADRID", "SEVILLA", "VALENCIA"}));
}

} // namespace
