// Searches whose result is the current record.
#include "dbase/dataset/go_to.h"

#include <gtest/gtest.h>

#include "dbase/table/towns_fixture.h"

namespace dbase {
namespace {

class GoToTest : public TownsTest {
protected:
    GoToTest() { towns.open(); } // in the order of CODE: records 2, 4, 8, 5, 3, 7, 1, 6
};

TEST_F(GoToTest, NearestEndsAtOrAfterTheKeyElseOnTheLastRecord) {
    goToNearest(towns, {{"CODE", "28079"}});
    const RecordNumber exactly = towns.recordNumber();
    EXPECT_EQ(towns.field("CODE").text(), "28079");
    goToNearest(towns, {{"CODE", "28078"}});
    EXPECT_EQ(towns.recordNumber(), exactly);
    goToNearest(towns, {{"CODE", "99999"}});
    EXPECT_EQ(towns.recordNumber(), 6u);
}

TEST_F(GoToTest, ExactStaysWhereItIsWithoutTheKey) {
    goToIfThere(towns, {{"CODE", "46250"}});
    EXPECT_EQ(towns.recordNumber(), 6u);
    goToIfThere(towns, {{"CODE", "28078"}});
    EXPECT_EQ(towns.recordNumber(), 6u);
}

} // namespace
} // namespace dbase
