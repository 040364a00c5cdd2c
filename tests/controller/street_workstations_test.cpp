// Several programs add and delete streets of one POSTAL at the same time.
#include <algorithm>
#include <csignal>
#include <memory>
#include <set>

#include "controller/StreetDriver.h"
#include "data/PostalTables.h"
#include "data/TableDefinitions.h"
#include "dbase/dataset/dataset.h"
#include "dbase/table/check.h"

namespace {

using namespace postal_tests;

using Streets = std::map<std::string, std::string>; // name to key

class StreetWorkstations : public PostalTables {
protected:
    static constexpr int driverCount = 8;

    StreetWorkstations() { addMunicipalities({{"28079", "28001", "MADRID", "N", "0"}}); }

    /// Every second driver deletes as well.
    void start(int streetsEach) {
        for (int i = 0; i < driverCount; ++i) {
            drivers.push_back(std::make_unique<StreetDriver>(
                DriverWork{.driver = i, .streets = streetsEach, .deletes = i % 2 == 0}));
        }
    }

    void expectThatAllFinish() {
        int refusals = 0;
        for (const auto& driver : drivers) {
            EXPECT_EQ(driver->join(), 0);
            EXPECT_TRUE(driver->inFlight().empty());
            refusals += driver->refusals();
        }
        RecordProperty("refusals", refusals);
    }

    [[nodiscard]] Streets acknowledged() const {
        Streets all;
        for (const auto& driver : drivers) {
            all.insert(driver->acknowledged().begin(), driver->acknowledged().end());
        }
        return all;
    }

    /// The drivers' streets as stored; a key or a name that occurs twice fails the test.
    static Streets stored() {
        Streets streets;
        std::set<std::string> keys;
        dbase::Dataset table("DB", "POSTAL");
        table.open();
        for (table.first(); !table.isEmpty() && !table.eof(); table.next()) {
            const std::string key = table.field("CODIGO1").text();
            EXPECT_TRUE(keys.insert(key).second) << "twice: " << key;
            if (!key.starts_with("99")) {
                continue;
            }
            const std::string name = table.field("VIA").text();
            EXPECT_TRUE(streets.emplace(name, key).second) << "twice: " << name;
        }
        return streets;
    }

    void expectClean() const { EXPECT_TRUE(dbase::checkTable(folder / "POSTAL.DBF").findings.empty()); }

    void addAndDeleteAtOnce(int streetsEach) {
        start(streetsEach);
        expectThatAllFinish();
        EXPECT_EQ(stored(), acknowledged());
        const auto each = static_cast<std::size_t>(streetsEach);
        EXPECT_EQ(acknowledged().size(), driverCount * each - driverCount / 2 * (each / 3));
        expectClean();
    }

    /// Kills a driver that would add for ever, once that many of its rows are stored. It deletes none, so
    /// only its last row is in doubt.
    void killOneAfter(std::size_t storedRows, int streetsOfTheOthers) {
        start(streetsOfTheOthers);
        drivers.push_back(
            std::make_unique<StreetDriver>(DriverWork{.driver = driverCount, .streets = 1'000'000}));
        StreetDriver& victim = *drivers.back();
        ASSERT_TRUE(victim.awaitStored(storedRows));
        victim.kill();
        EXPECT_EQ(victim.join(), -SIGKILL);
        for (const auto& driver : drivers) {
            if (driver.get() != &victim) {
                EXPECT_EQ(driver->join(), 0);
            }
        }
        Streets rows = stored();
        const Streets promised = acknowledged();
        if (!promised.contains(victim.inFlight())) {
            rows.erase(victim.inFlight()); // complete or absent: it was never acknowledged
        }
        EXPECT_EQ(rows, promised);
        expectClean();
        drivers.clear();
        dbase::createTable(folder.path(), ambrel::streetTable(), dbase::IfExists::Replace);
    }

    std::vector<std::unique_ptr<StreetDriver>> drivers;
};

/// The table begins empty, so that its first row is one that gets deleted: the lock moves from row to row.
TEST_F(StreetWorkstations, EightAddAndDeleteStreetsAndEveryAcknowledgedRowIsThereUnderAKeyOfItsOwn) {
    addAndDeleteAtOnce(60);
}

TEST_F(StreetWorkstations, LongRunOfEightThatAddAndDelete) { addAndDeleteAtOnce(500); }

TEST_F(StreetWorkstations, LongRunOfEightInAFilledTable) {
    std::vector<StreetRow> rows;
    for (int i = 0; i < 200; ++i) {
        rows.push_back({std::to_string(28000000 + i), "VIA " + std::to_string(i), "CL", "28001"});
    }
    addStreets(rows);
    addAndDeleteAtOnce(500);
}

TEST_F(StreetWorkstations, OneThatIsKilledInTheMiddleLeavesTheOthersWorkingAndTheTableClean) {
    for (const std::size_t stored : {5U, 17U, 40U}) {
        killOneAfter(stored, 60);
    }
}

TEST_F(StreetWorkstations, LongRunInWhichOneAfterAnotherIsKilled) {
    for (std::size_t stored = 1; stored <= 40; ++stored) {
        killOneAfter(stored, 60);
    }
}

} // namespace
