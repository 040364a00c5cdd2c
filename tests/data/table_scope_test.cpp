// Tables opened and reordered for a block, and restored afterwards.
#include "data/TableScope.h"

#include <stdexcept>

#include "data/PostalTables.h"
#include "dbase/lock/locks.h"
#include "dbase/system/error.h"
#include "dbase/system/file.h"
#include "support/LockPatience.h"

namespace {

using ambrel::TableScope;
using ambrel::TagScope;

class Scopes : public postal_tests::PostalTables {
protected:
    Scopes() {
        addMunicipalities(
            {{"28079", "28001", "MADRID"}, {"28005", "28801", "ALCALA"}, {"08019", "08001", "BARNA"}});
    }
    [[nodiscard]] std::string name() { return table.field("NOMBRE").text(); }
    void openOn(const char* code) {
        table.open();
        ASSERT_TRUE(table.seek({{"COD_INE", code}}, dbase::SeekMode::Exact));
    }

    dbase::Dataset table{"DB", "MUNICIPI", "COD_INE"};
};

TEST_F(Scopes, ATableFoundClosedIsOpenForTheBlock) {
    {
        const TableScope open(table);
        EXPECT_TRUE(table.isOpen());
    }
    EXPECT_FALSE(table.isOpen());
}

TEST_F(Scopes, ATableFoundOpenStaysWhereItIs) {
    openOn("28079");
    { const TableScope open(table); }
    ASSERT_TRUE(table.isOpen());
    EXPECT_EQ(name(), "MADRID");
}

TEST_F(Scopes, ATableIsClosedThoughSomebodyFailsWhoIsNotified) {
    const auto listening = table.listen([](dbase::DatasetChange change) {
        if (change == dbase::DatasetChange::Closed) {
            throw std::runtime_error("a list that cannot be drawn");
        }
    });
    { const TableScope open(table); }
    EXPECT_FALSE(table.isOpen());
}

TEST_F(Scopes, AnOrderComesBackWithTheRecordThatTheWorkEndedAt) {
    openOn("28079");
    TagScope order(table, "NOMBRE");
    table.first();
    order.restore();
    EXPECT_EQ(table.tag(), "COD_INE");
    EXPECT_EQ(name(), "ALCALA");
    ASSERT_TRUE(table.next());
    EXPECT_EQ(name(), "MADRID");
}

TEST_F(Scopes, AnOrderThatATableLacksChangesNothing) {
    openOn("28005");
    EXPECT_THROW(TagScope(table, "FALTA"), dbase::Error);
    EXPECT_EQ(table.tag(), "COD_INE");
    EXPECT_EQ(name(), "ALCALA");
}

TEST_F(Scopes, AnOrderThatSomebodyElsesLockKeepsFromBeingReadIsGivenUp) {
    openOn("28005");
    const auto stranger = dbase::openFile(folder / "MUNICIPI.MDX", dbase::OpenMode::ReadWrite);
    ASSERT_TRUE(stranger->tryLock(dbase::structureLock, dbase::LockKind::Exclusive));
    {
        const ambrel::test::LockPatience noPatience(std::chrono::milliseconds(0));
        EXPECT_THROW(TagScope(table, "NOMBRE"), dbase::Error);
    }
    stranger->unlock(dbase::structureLock);
    EXPECT_EQ(table.tag(), "COD_INE");
    EXPECT_EQ(name(), "ALCALA");
    ASSERT_TRUE(table.next());
    EXPECT_EQ(name(), "MADRID");
}

} // namespace
