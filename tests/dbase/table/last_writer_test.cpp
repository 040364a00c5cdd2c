// What becomes of the journal when the programs that work on a table leave it.
#include <filesystem>

#include "dbase/support/ChildProcess.h"
#include "restored_fixture.h"

namespace {

using namespace dbase;
using namespace dbase::test;

/// Holds the table open in another process without changing it.
class Reader {
public:
    explicit Reader(const std::string& path)
        : process_([path](const ChildProcess::Link& link) {
              const auto table = Table::open(path);
              link.tell();
              link.await();
              return 0;
          }) {
        process_.await();
    }
    ~Reader() {
        process_.tell();
        static_cast<void>(process_.join());
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

private:
    ChildProcess process_;
};

TEST_F(RestoredTable, TheLastWriterRemovesTheJournalAlthoughReadersStay) {
    const Reader reader(path());
    {
        const auto table = Table::open(path());
        static_cast<void>(table->append(row(11), Durability::Disk));
        EXPECT_TRUE(std::filesystem::exists(journalPath()));
    }
    EXPECT_FALSE(std::filesystem::exists(journalPath()));
}

TEST_F(RestoredTable, AWriterThatLeavesBeforeAnotherLeavesItsJournalToThatOne) {
    ChildProcess other([&](const ChildProcess::Link& link) {
        const auto table = Table::open(path());
        static_cast<void>(table->append(row(11), Durability::Disk));
        link.tell();
        link.await();
        return 0;
    });
    other.await();
    {
        const auto table = Table::open(path());
        static_cast<void>(table->append(row(12), Durability::Disk));
    }
    EXPECT_TRUE(std::filesystem::exists(journalPath()));
    other.tell();
    EXPECT_EQ(other.join(), 0);
    EXPECT_FALSE(std::filesystem::exists(journalPath()));
    EXPECT_EQ(rowsWhenSound(), rowsUpTo(12));
}

// Somebody has tidied up. The next writer begins a journal, and all of them go on with that one.
TEST_F(RestoredTable, AWriterWhoseJournalWasRemovedDoesNotGoOnInAFileWithoutName) {
    {
        ChildProcess first([&](const ChildProcess::Link& link) {
            const auto table = Table::open(path());
            for (int i = 11; i <= 13; i += 2) {
                static_cast<void>(table->append(row(i), Durability::Disk));
                link.tell();
                link.await();
            }
            return 0;
        });
        first.await();
        ASSERT_TRUE(std::filesystem::remove(journalPath()));
        addAndDie(12, 12);
        first.tell();
        first.await();
        first.kill();
        static_cast<void>(first.join());
    }
    restart();
    EXPECT_EQ(rowsWhenSound(), rowsUpTo(13));
    EXPECT_EQ(notices_, std::vector<std::string>());
}

/// It has seen the journal of another writer, who has removed it since.
TEST_F(RestoredTable, AReaderThatBeginsToWriteAfterTheLastWriterLeftBeginsAJournalOfItsOwn) {
    ChildProcess writer([&](const ChildProcess::Link& link) {
        {
            const auto table = Table::open(path());
            static_cast<void>(table->append(row(11), Durability::Disk));
            link.tell();
            link.await();
        }
        link.tell();
        link.await();
        return 0;
    });
    writer.await();
    const auto table = Table::open(path());
    writer.tell();
    writer.await();
    ASSERT_FALSE(std::filesystem::exists(journalPath()));
    static_cast<void>(table->append(row(12), Durability::Disk));
    EXPECT_TRUE(std::filesystem::exists(journalPath()));
    writer.tell();
    EXPECT_EQ(writer.join(), 0);
}

} // namespace
