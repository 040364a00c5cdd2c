// Rows of other programs, and ours beside them, that a stop of the machine took.
#include "restored_fixture.h"

namespace {

using namespace dbase;
using namespace dbase::test;

class BesideForeign : public RestoredTable {
protected:
    /// Other programs add rows that never reach the disk, then ours an acknowledged one, then the power
    /// fails.
    void loseRows(int foreignRows) {
        const Bytes onDisk = readFile(path());
        workAndDie(path(), [&](Table& table) {
            table.overwrite(1, row(1), row(1), Durability::Disk); // begins the journal
            for (int i = 0; i < foreignRows; ++i) {
                appendForeign(row(100 + i, "AJENA"));
            }
            static_cast<void>(table.append(row(50), Durability::Disk));
        });
        copyOver(path(), onDisk);
        restart();
    }
    [[nodiscard]] Bytes blank() const {
        Bytes bytes(schema_.recordLength, ' ');
        bytes[0] = deletedMark;
        return bytes;
    }
};

TEST_F(BesideForeign, OurRowAfterALostForeignOneReturnsToItsNumber) {
    loseRows(2);
    std::vector<Bytes> expected = rowsUpTo(10);
    expected.insert(expected.end(), {blank(), blank(), row(50)});
    EXPECT_EQ(rowsWhenSound(), expected);
    EXPECT_TRUE(notices_.empty());
}

TEST_F(BesideForeign, ALostForeignRowThatWeHaveChangedReturnsWithOurChange) {
    const Bytes onDisk = readFile(path());
    workAndDie(path(), [&](Table& table) {
        table.overwrite(1, row(1), row(1), Durability::Disk);
        appendForeign(row(100, "AJENA"));
        table.overwrite(11, row(100, "AJENA"), row(100, "NUESTRA"), Durability::Disk);
    });
    copyOver(path(), onDisk);
    restart();
    std::vector<Bytes> expected = rowsUpTo(10);
    expected.push_back(row(100, "NUESTRA"));
    EXPECT_EQ(rowsWhenSound(), expected);
}

TEST_F(BesideForeign, OurRowWhosePlaceAForeignOneHasTakenIsAddedAtTheEndOnce) {
    loseRows(0);
    appendForeign(row(200, "AJENA")); // in place of ours, before any program of ours opens the table
    appendForeign(row(201, "AJENA"));
    std::vector<Bytes> expected = rowsUpTo(10);
    expected.insert(expected.end(), {row(200, "AJENA"), row(201, "AJENA"), row(50)});
    EXPECT_EQ(rowsWhenSound(), expected);
    setBootIdentity("and again");
    EXPECT_EQ(rowsWhenSound(), expected);
}

TEST_F(BesideForeign, OurDisplacedRowIsListedWhereALiveRowHasItsKey) {
    loseRows(0);
    appendForeign(row(50, "AJENA")); // perhaps ours, which the other program has changed since
    std::vector<Bytes> expected = rowsUpTo(10);
    expected.push_back(row(50, "AJENA"));
    EXPECT_EQ(rowsWhenSound(), expected);
    ASSERT_EQ(notices_.size(), 1U);
    const std::string notes = notesOfCheck();
    EXPECT_NE(notes.find("registro 11: no está en la tabla: 99000050, CALLE"), std::string::npos) << notes;
}

TEST_F(BesideForeign, ARowThatTheOtherProgramHasDeletedStaysDeleted) {
    loseRows(0);
    Bytes deleted = row(50);
    deleted[0] = deletedMark;
    appendForeign(deleted);
    std::vector<Bytes> expected = rowsUpTo(10);
    expected.push_back(deleted);
    EXPECT_EQ(rowsWhenSound(), expected);
    EXPECT_TRUE(notices_.empty());
}

TEST_F(BesideForeign, ARecordThatBothHaveChangedStaysAsTheOtherLeftItAndOursIsListed) {
    workAndDie(path(),
               [&](Table& table) { table.overwrite(3, row(3), row(3, "NUESTRA"), Durability::Disk); });
    Bytes bytes = readFile(path());
    const Bytes theirs = row(3, "AJENA");
    std::ranges::copy(theirs, bytes.begin() + schema_.headerLength + 2 * schema_.recordLength);
    copyOver(path(), bytes);
    restart();
    std::vector<Bytes> expected = rowsUpTo(10);
    expected[2] = theirs;
    EXPECT_EQ(rowsWhenSound(), expected);
    EXPECT_EQ(notices_.size(), 1U);
    EXPECT_NE(notesOfCheck().find("registro 3: no está en la tabla: 99000003, NUESTRA"), std::string::npos);
}

TEST_F(BesideForeign, ATableWithoutEndMarkHasOneAfterRecovery) {
    for (const Bytes& end : {Bytes{}, Bytes{'\0'}, Bytes(300, '\0')}) {
        SCOPED_TRACE(end.size());
        workAndDie(path(), [&](Table& table) { table.overwrite(1, row(1), row(1), Durability::Disk); });
        Bytes bytes = readFile(path());
        bytes.pop_back();
        bytes.insert(bytes.end(), end.begin(), end.end());
        copyOver(path(), bytes);
        setBootIdentity("start " + std::to_string(end.size()));
        EXPECT_EQ(rowsWhenSound(), rowsUpTo(10));
        EXPECT_EQ(readFile(path()).size(), schema_.headerLength + 10U * schema_.recordLength + 1);
    }
}

} // namespace
