// Undo files that are cut, damaged or something else, and disks and folders that take none.
#include <algorithm>
#include <filesystem>
#include <random>

#include "UndoTest.h"
#include "dbase/support/OtherUser.h"
#include "dbase/system/error.h"
#include "support/FileSizeLimit.h"
#include "support/Seed.h"

namespace loading {
namespace {

TEST_F(Undo, UnderstandsALastLineThatWasWrittenByHalf) {
    {
        Batch batch(file, undoFile);
        batch.set(1, "VIA", "C/ MAYOR").set(2, "VIA", "C/ SOLANA").finish();
    }
    const std::string whole = text().substr(0, text().rfind("FIN")); // as of a run that died
    const std::string done = rows();
    const std::size_t last = whole.rfind("CAMBIO");
    for (std::size_t size = last; size < whole.size(); ++size) {
        writeText(whole.substr(0, size));
        const UndoReader reader(undoFile);
        EXPECT_EQ(reader.size(), 1U) << size;
        EXPECT_TRUE(reader.damagedLines().empty()) << size;
    }
    writeText(whole.substr(0, whole.size() - 9));
    EXPECT_EQ(undoAll(), "1 put back, 0 as before, 0 left");
}

TEST_F(Undo, KnowsWhetherLinesAreMissing) {
    {
        Batch batch(file, undoFile);
        batch.set(1, "VIA", "C/ MAYOR").set(2, "VIA", "C/ SOLANA").finish();
    }
    const std::string whole = text();
    EXPECT_TRUE(UndoReader(undoFile).isEnded());
    EXPECT_EQ(UndoReader(undoFile).missingEntries(), 0U);
    writeText(whole.substr(0, whole.rfind("CAMBIO"))); // a copy that was cut at the end of a line
    EXPECT_FALSE(UndoReader(undoFile).isEnded());
    const std::size_t first = whole.find("CAMBIO"), second = whole.find("CAMBIO", first + 1);
    writeText(whole.substr(0, first) + whole.substr(second));
    EXPECT_TRUE(UndoReader(undoFile).isEnded());
    EXPECT_EQ(UndoReader(undoFile).missingEntries(), 1U);
}

TEST_F(Undo, CutAnywhereNeverPutsAnythingWrongBack) {
    const std::string before = rows();
    {
        Batch batch(file, undoFile, code);
        batch.set(1, "VIA", "C/ MAYOR").set(2, "VIA", "C/ SOLANA").finish();
    }
    const std::string whole = text();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        writeText(whole.substr(0, size));
        EXPECT_NO_THROW(EXPECT_LE(UndoReader(undoFile).size(), 2U)) << size;
    }
    writeText(whole);
    EXPECT_EQ(undoAll(), "2 put back, 0 as before, 0 left");
    EXPECT_EQ(rows(), before);
}

TEST_F(Undo, NamesLinesThatWereDamagedAndUsesTheOthers) {
    {
        Batch batch(file, undoFile);
        batch.set(1, "VIA", "C/ MAYOR").set(2, "VIA", "C/ SOLANA").finish();
    }
    std::string spoilt = text();
    spoilt[spoilt.find("MAIOR")] = 'N';
    writeText(spoilt);
    EXPECT_EQ(UndoReader(undoFile).damagedLines(), (std::vector<std::uint64_t>{3}));
    EXPECT_EQ(undoAll(), "1 put back, 0 as before, 0 left");
    EXPECT_NE(rows().find("A1|Ana|C/ MAYOR|28013\nA2|Blas|C/ SOL|28013\n"), std::string::npos) << rows();
}

TEST_F(Undo, ALineThatSaysSoVoidsTheLastEntryOfItsRecordHoweverManyThereAre) {
    constexpr std::size_t lines = 60'000;
    const UndoTable table{.path = file, .schema = dbase::Table::open(file)->schema(), .key = {}};
    const std::vector<char> before(table.schema.recordLength, ' ');
    std::vector<char> after = before;
    after[1] = 'X';
    std::mt19937 random(ambrel::test::seedOfThisRun());
    std::uniform_int_distribution<dbase::RecordNumber> any(1, 1000);
    std::vector<dbase::RecordNumber> left; // the records of the entries, in their order
    std::string all = undoHeading("2026-11-22 20:00", "la prueba") + undoLine(table, std::size_t{0});
    for (std::size_t i = 0; i < lines; ++i) {
        const dbase::RecordNumber number = any(random);
        const bool isUnmade = any(random) % 2 == 0;
        all += isUnmade ? undoLine(table, {UndoKind::Unmade, 0, number, {}, {}})
                        : undoLine(table, {UndoKind::Change, 0, number, before, after});
        if (!isUnmade) {
            left.push_back(number);
        } else if (const auto last = std::find(left.rbegin(), left.rend(), number); last != left.rend()) {
            left.erase(std::next(last).base());
        }
    }
    for (std::size_t i = 0; i < lines; ++i) {
        all += undoLine(table, {UndoKind::Unmade, 0, 5000, {}, {}}); // which no entry has
    }
    writeText(all + undoEnd(2 * lines));
    const UndoReader reader(undoFile);
    EXPECT_EQ(reader.missingEntries(), 0U);
    ASSERT_EQ(reader.size(), left.size());
    for (std::size_t i = 0; i < left.size(); ++i) {
        ASSERT_EQ(reader.entry(i).number, left[i]) << i;
    }
}

TEST_F(Undo, RefusesFilesThatAreSomethingElse) {
    writeText("CODIGO,NOMBRE\nA1,Ana\n");
    EXPECT_NE(refusal().find("no es un fichero de deshacer"), std::string::npos) << refusal();
    writeText("CODIGO");
    EXPECT_NE(refusal().find("no es un fichero de deshacer"), std::string::npos) << refusal();
    writeText("AMBREL DESHACER 1\t2026\tx\t0123456789ABCDEF\n");
    EXPECT_NE(refusal().find("su primera línea está estropeada"), std::string::npos) << refusal();
    std::filesystem::remove(undoFile);
    EXPECT_NE(refusal().find("CLIENTES.deshacer"), std::string::npos) << refusal();
}

TEST_F(Undo, FileThatExistsIsNeverOverwritten) {
    writeText("lo de antes");
    EXPECT_EQ(dbase::test::errorOf([&] { Batch batch(file, undoFile); }).code(), dbase::ErrorCode::Exists);
    EXPECT_EQ(text(), "lo de antes");
}

TEST_F(Undo, FileWithoutEntriesIsRemoved) {
    {
        Batch batch(file, undoFile);
        batch.set(1, "VIA", "C/ MAIOR").finish(); // as it is
        EXPECT_EQ(batch.outcomes, "1D");
    }
    EXPECT_FALSE(std::filesystem::exists(undoFile));
}

TEST_F(Undo, FileThatFillsTheDiskEndsTheRunAndNothingIsLost) {
    std::vector<Row> many;
    for (int i = 0; i < 2000; ++i) {
        many.push_back({std::to_string(1000 + i), "N", "C/ SOL", std::to_string(10000 + i)});
    }
    createTable(definition("MUCHAS"), many);
    const std::string before = rows("MUCHAS");
    {
        Batch batch(folder / "MUCHAS.DBF", undoFile, code);
        const ambrel::test::FileSizeLimit limit(
            300'000); // a journal's room is allocated at once, and must fit
        const dbase::Error error = dbase::test::errorOf([&] {
            for (int round = 0; round < 10; ++round) {
                for (dbase::RecordNumber number = 1; number <= 2000; ++number) {
                    batch.set(number, "VIA", "C/ LUNA " + std::to_string(round));
                }
                batch.finish();
            }
        });
        EXPECT_EQ(error.code(), dbase::ErrorCode::DiskFull);
        EXPECT_NE(std::string(error.what()).find("CLIENTES.deshacer"), std::string::npos) << error.what();
    }
    EXPECT_NE(rows("MUCHAS"), before);
    const std::string result = undoAll();
    EXPECT_NE(result.find(" 0 left"), std::string::npos) << result;
    EXPECT_EQ(rows("MUCHAS"), before);
}

TEST_F(Undo, FolderThatMayNotBeWrittenPreventsTheChange) {
    if (!dbase::test::mayBecomeOthers()) {
        GTEST_SKIP() << dbase::test::wantsRoot;
    }
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
    for (const char* name : {"CLIENTES.DBF", "CLIENTES.MDX"}) {
        std::filesystem::permissions(folder / name, std::filesystem::perms(0666));
    }
    const std::string before = rows();
    const std::string error = dbase::test::as({4001, 4001}, [&] {
        Batch batch(file, undoFile);
        batch.set(1, "VIA", "C/ MAYOR").finish();
        return std::string("changed");
    });
    EXPECT_NE(error.find("CLIENTES"), std::string::npos) << error;
    EXPECT_EQ(rows(), before);
    EXPECT_FALSE(std::filesystem::exists(undoFile));
}

} // namespace
} // namespace loading
