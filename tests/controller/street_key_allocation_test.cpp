// The keys that new streets get.
#include "controller/StreetKeyAllocation.h"

#include "data/PostalTables.h"
#include "dbase/dataset/dataset.h"
#include "dbase/system/error.h"

namespace {

using namespace postal_tests;

/// A table of streets to which one cursor adds rows while others come and go.
class StreetKeyAllocation : public PostalTables {
protected:
    StreetKeyAllocation() { streets.open(); }

    void addKeys(const std::vector<std::string>& keys) {
        std::vector<StreetRow> rows;
        for (const std::string& key : keys) {
            rows.push_back({key, "CALLE " + key, "CL", "28001"});
        }
        addStreets(rows);
        streets.first();
    }
    void begin(const std::string& key = {}) {
        streets.append();
        streets.field("VIA").setText("NUEVA");
        streets.field("CODIGO1").setText(key);
    }
    [[nodiscard]] bool post() { return ambrel::postUnderFreeKey(streets, streets.field("CODIGO1")); }
    /// The key under which a new row was stored.
    std::string added(const std::string& key = {}) {
        begin(key);
        EXPECT_TRUE(post());
        EXPECT_EQ(streets.field("VIA").text(), "NUEVA");
        return streets.field("CODIGO1").text();
    }

    dbase::Dataset streets{"DB", "POSTAL", "VIA"};
};

TEST_F(StreetKeyAllocation, FirstUserStreetOfAnEmptyBlockGets99000000) {
    addKeys({"28000001", "28000002"});
    EXPECT_EQ(added(), "99000000");
}

TEST_F(StreetKeyAllocation, FirstStreetOfAnEmptyTableGets99000000) { EXPECT_EQ(added(), "99000000"); }

TEST_F(StreetKeyAllocation, InAnEmptyTableTheKeyOfTheRowIsKeptUnlooked) {
    EXPECT_EQ(added("12345678"), "12345678");
}

TEST_F(StreetKeyAllocation, With99000000To99000041StoredTheNextKeyIs99000042) {
    std::vector<std::string> keys{"28000001"};
    for (int i = 0; i <= 41; ++i) {
        keys.push_back(std::to_string(99000000 + i));
    }
    addKeys(keys);
    EXPECT_EQ(added(), "99000042");
}

TEST_F(StreetKeyAllocation, KeysBelowTheHighestAreNotUsedAgain) {
    addKeys({"99000000", "99000007"});
    EXPECT_EQ(added(), "99000008");
}

TEST_F(StreetKeyAllocation, KeyOfTheDeletedHighestIsUsedAgain) {
    addKeys({"99000000", "99000001"});
    streets.last();
    streets.erase();
    EXPECT_EQ(added(), "99000001");
}

TEST_F(StreetKeyAllocation, After99999999ComesTheFirstKeyOfTheBlockAgainAlthoughItIsTaken) {
    addKeys({"99000000", "99999999"});
    EXPECT_EQ(ambrel::keyAfter("99999999"), "99000000");
    EXPECT_EQ(added(), "99000000");
}

TEST_F(StreetKeyAllocation, ImportedRowKeepsAFreeKeyOutsideTheBlock) {
    addKeys({"28000001", "99000000"});
    EXPECT_EQ(added("28000002"), "28000002");
}

TEST_F(StreetKeyAllocation, ImportedRowWithATakenKeyGetsTheNextUserKey) {
    addKeys({"28000001", "99000004"});
    EXPECT_EQ(added("28000001"), "99000005");
}

TEST_F(StreetKeyAllocation, ImportedRowWithATakenKeyGets99000000WhereNoUserStreetIsStored) {
    addKeys({"28000001"});
    EXPECT_EQ(added("28000001"), "99000000");
}

TEST_F(StreetKeyAllocation, KeyIsLookedUpAsANumber) {
    addKeys({"00000000"});
    EXPECT_EQ(added("ABC"), "99000000"); // not a number: looked up as 0, which is taken
    addKeys({"00000042"});
    EXPECT_EQ(added("42"), "99000001");
}

TEST_F(StreetKeyAllocation, FilterAndRangeOfTheCursorHideNoKey) {
    addKeys({"99000000", "99000001"});
    streets.setFilter("VIA=\"OTRA\"");
    EXPECT_EQ(added(), "99000002");
    streets.clearFilter();
    streets.setTag("CODIGO1");
    streets.setRange({{"CODIGO1", "0"}}, {{"CODIGO1", "1"}});
    EXPECT_EQ(added(), "99000003");
}

TEST_F(StreetKeyAllocation, RefusedWhileAnotherHoldsTheFirstRowAndTheRowStaysPending) {
    addKeys({"28000001"});
    dbase::Dataset other("DB", "POSTAL");
    other.open();
    ASSERT_TRUE(other.lockCurrent());
    begin();
    EXPECT_FALSE(post());
    EXPECT_EQ(streets.state(), dbase::DatasetState::Insert);
    EXPECT_EQ(streets.field("VIA").text(), "NUEVA");
    other.unlockAll();
    EXPECT_TRUE(post());
}

TEST_F(StreetKeyAllocation, RefusedInAnEmptyTableWhileAnotherHoldsThePlaceOfItsFirstRow) {
    dbase::Dataset other("DB", "POSTAL");
    other.open();
    ASSERT_TRUE(other.lockCurrent());
    begin();
    EXPECT_FALSE(post());
    other.unlockAll();
    EXPECT_TRUE(post());
}

TEST_F(StreetKeyAllocation, LockIsGivenBackAfterPosting) {
    addKeys({"28000001"});
    static_cast<void>(added());
    dbase::Dataset other("DB", "POSTAL");
    other.open();
    EXPECT_TRUE(other.lockCurrent());
}

TEST_F(StreetKeyAllocation, LockIsGivenBackWhenPostingFails) {
    addKeys({"28000001"});
    EXPECT_THROW(static_cast<void>(post()), dbase::Error); // nothing is pending
    dbase::Dataset other("DB", "POSTAL");
    other.open();
    EXPECT_TRUE(other.lockCurrent());
}

TEST_F(StreetKeyAllocation, FirstRowDeletedBetweenLookingAndLockingIsNotTheLock) {
    addKeys({"99000000", "99000001"});
    dbase::Dataset looking("DB", "POSTAL"), deleting("DB", "POSTAL"), other("DB", "POSTAL");
    looking.open();
    deleting.open();
    deleting.erase();
    ASSERT_TRUE(ambrel::lockFirstRow(looking));
    EXPECT_EQ(looking.field("CODIGO1").text(), "99000001");
    other.open();
    EXPECT_FALSE(ambrel::lockFirstRow(other));
}

TEST_F(StreetKeyAllocation, OnlyRowDeletedBetweenLookingAndLockingLeavesAnEmptyTable) {
    addKeys({"99000000"});
    dbase::Dataset looking("DB", "POSTAL"), deleting("DB", "POSTAL"), other("DB", "POSTAL");
    looking.open();
    deleting.open();
    deleting.erase();
    ASSERT_TRUE(ambrel::lockFirstRow(looking));
    EXPECT_TRUE(looking.isEmpty());
    other.open();
    EXPECT_FALSE(ambrel::lockFirstRow(other));
}

TEST_F(StreetKeyAllocation, FirstRowThatComesBetweenLookingAndLockingIsTheLock) {
    addKeys({"99000000"});
    streets.erase(); // record 1 exists but is no longer a row
    dbase::Dataset looking("DB", "POSTAL"), other("DB", "POSTAL");
    looking.open();
    ASSERT_TRUE(looking.isEmpty());
    addKeys({"99000000"});
    ASSERT_TRUE(ambrel::lockFirstRow(looking));
    EXPECT_EQ(looking.recordNumber(), 2U);
    other.open();
    EXPECT_FALSE(ambrel::lockFirstRow(other));
}

TEST_F(StreetKeyAllocation, HeldFirstRowCannotBeDeleted) {
    addKeys({"99000000", "99000001"});
    dbase::Dataset locking("DB", "POSTAL");
    locking.open();
    ASSERT_TRUE(ambrel::lockFirstRow(locking));
    EXPECT_THROW(streets.erase(), dbase::Error);
}

TEST_F(StreetKeyAllocation, UserKeysBeginWith99) {
    EXPECT_TRUE(ambrel::isUserKey("99000000"));
    EXPECT_TRUE(ambrel::isUserKey("99"));
    EXPECT_FALSE(ambrel::isUserKey("98999999"));
    EXPECT_FALSE(ambrel::isUserKey("9"));
    EXPECT_FALSE(ambrel::isUserKey(""));
}

} // namespace
