// Malformed tables: each is refused with a clear text, or read as far as it is valid; nothing crashes, hangs
// or is changed.
#include <filesystem>
#include <fstream>

#include <sys/stat.h>
#include <unistd.h>

#include "hostile_fixture.h"

namespace {

using namespace dbase;
using namespace dbase::test;

TEST_F(HostileTest, TheSampleItselfIsSound) {
    putOnDisk();
    use(*Table::open(path()));
    EXPECT_EQ(findings(path()), "");
    EXPECT_NE(leaf(0), 0U);
}

TEST_F(HostileTest, AnEmptyTableFileIsRefused) {
    table.clear();
    expectBadTable("cortado");
}

TEST_F(HostileTest, ACutHeaderIsRefused) {
    for (const std::size_t size : {1U, 31U, 32U, 60U, 96U}) {
        table.resize(size);
        expectBadTable();
        table.resize(1000);
    }
}

TEST_F(HostileTest, AWrongVersionIsRefused) {
    for (const char version : {'\x00', '\x02', '\x30', '\xFF'}) {
        table[0] = version;
        expectBadTable("versión");
    }
}

TEST_F(HostileTest, ALyingHeaderLengthIsRefused) {
    for (const std::uint16_t length :
         {std::uint16_t{0}, std::uint16_t{32}, std::uint16_t{64}, std::uint16_t{0xFFFF}}) {
        store16(table.data() + 8, length);
        expectBadTable();
    }
}

TEST_F(HostileTest, ALyingRecordLengthIsRefused) {
    for (const std::uint16_t length :
         {std::uint16_t{0}, std::uint16_t{1}, std::uint16_t{106}, std::uint16_t{0xFFFF}}) {
        store16(table.data() + 10, length);
        expectBadTable();
    }
}

TEST_F(HostileTest, ALyingFieldListIsRefused) {
    table[32 + 11] = 'X';
    expectBadTable("NOMBRE");
    table[32 + 11] = 'C';
    table[32 + 16] = 0;
    expectBadTable("NOMBRE");
    table[32 + 16] = 100;
    table[96] = 0; // the end of the list
    expectBadTable();
}

TEST_F(HostileTest, ACountBeyondTheFileYieldsToWhatItHolds) {
    store32(table.data() + 4, 4000000000);
    putOnDisk();
    EXPECT_NE(findings(path()).find("4000000000 registros"), std::string::npos);
    {
        const auto opened = Table::open(path());
        EXPECT_EQ(opened->records().recordCount(), 60U);
        EXPECT_EQ(opened->records().announcedCount(), 60U);
        use(*opened);
    }
    EXPECT_EQ(findings(path()), "");
}

TEST_F(HostileTest, BytesAfterTheLastRecordAreNoError) {
    table.insert(table.end(), 5000, 'x');
    putOnDisk();
    use(*Table::open(path()));
    expectUnchanged();
    EXPECT_NE(findings(path()), "") << "and yet worth a finding";
}

TEST_F(HostileTest, AMissingEndMarkIsNoError) {
    table.pop_back();
    putOnDisk();
    use(*Table::open(path()));
    expectUnchanged();
}

TEST_F(HostileTest, ATableOfTwoGibibytesIsRefused) {
    putOnDisk();
    ASSERT_EQ(truncate(path().c_str(), static_cast<off_t>(maxFileSize)), 0);
    const Error error = errorOf([&] { (void)Table::open(path()); });
    EXPECT_EQ(error.code(), ErrorCode::TooLarge);
    EXPECT_EQ(error.file(), path());
    EXPECT_NE(findings(path()), "");
}

TEST_F(HostileTest, AnIndexOfTwoGibibytesIsRefused) {
    putOnDisk();
    ASSERT_EQ(truncate(indexPath().c_str(), static_cast<off_t>(maxFileSize)), 0);
    const Error error = errorOf([&] { (void)Table::open(path()); });
    EXPECT_EQ(error.code(), ErrorCode::TooLarge);
    EXPECT_EQ(error.file(), indexPath());
    EXPECT_NE(findings(path()), "");
}

TEST_F(HostileTest, ATableThatWouldGrowToTwoGibibytesIsRefusedAndStaysAsItWas) {
    const std::uint32_t most = (maxFileSize - headerLength) / recordLength - 1;
    putOnDisk();
    std::filesystem::remove(indexPath());
    ASSERT_EQ(
        truncate(path().c_str(), static_cast<off_t>(headerLength + std::uint64_t{most} * recordLength + 1)),
        0);
    {
        const auto file = openFile(path(), OpenMode::ReadWrite);
        char count[4];
        store32(count, most);
        file->write(4, count);
        const char noIndex = 0;
        file->write(28, std::span<const char>(&noIndex, 1));
    }
    const auto opened = Table::open(path());
    const Bytes record(recordLength, ' ');
    EXPECT_EQ(opened->records().recordCount(), most);
    const Error error = errorOf([&] {
        for (int i = 0; i < 3; ++i) {
            opened->append(record);
        }
    });
    EXPECT_EQ(error.code(), ErrorCode::TooLarge);
    EXPECT_LT(std::filesystem::file_size(path()), maxFileSize);
    EXPECT_EQ(std::filesystem::file_size(path()),
              headerLength + std::uint64_t{opened->records().recordCount()} * recordLength + 1);
}

TEST_F(HostileTest, ATableThatAnotherProgramMakesLargerThanItsViewIsReadNoFurther) {
    putOnDisk();
    const auto opened = Table::open(path());
    std::filesystem::resize_file(path(), std::uintmax_t{3} << 30);
    Bytes count(4);
    store32(count.data(), 25'000'000); // the last of them would lie beyond 2 GiB
    {
        std::fstream file(path(), std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(4);
        file.write(count.data(), 4);
    }
    const RecordNumber last = (maxFileSize - headerLength) / recordLength;
    EXPECT_EQ(opened->records().recordCount(), last);
    EXPECT_EQ(opened->records().record(last).bytes.size(), recordLength);
    EXPECT_EQ(errorOf([&] { (void)opened->records().record(last + 1); }).code(), ErrorCode::BadTable);
    EXPECT_EQ(errorOf([&] { (void)opened->records().record(25'000'000); }).code(), ErrorCode::BadTable);
}

TEST_F(HostileTest, AFolderInThePlaceOfATableIsRefused) {
    std::filesystem::create_directory(path());
    EXPECT_THROW((void)Table::open(path()), Error);
}

TEST_F(HostileTest, APipeInThePlaceOfATableIsRefusedAtOnce) {
    ASSERT_EQ(mkfifo(path().c_str(), 0600), 0);
    EXPECT_EQ(errorOf([&] { (void)Table::open(path()); }).code(), ErrorCode::BadTable);
}

TEST_F(HostileTest, AFileOrFolderThatIsNotThereIsNamed) {
    for (const std::string& missing : {path(), folder / "NO/HAY.DBF"}) {
        const Error error = errorOf([&] { (void)Table::open(missing); });
        EXPECT_EQ(error.code(), ErrorCode::NotFound);
        EXPECT_EQ(error.file(), missing);
        EXPECT_NE(std::string(error.what()).find(missing), std::string::npos) << error.what();
        EXPECT_EQ(errorOf([&] { (void)checkTable(missing); }).code(), ErrorCode::NotFound);
    }
}

} // namespace
