// The header of a .DBF: read, written, refused.
#include "dbase/dbf/table_header.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <utility>

#include "dbase/system/error.h"

namespace {

using namespace dbase;
using Bytes = std::vector<char>;

// Offsets in the header, of lengths in two bytes, and in the descriptor of a column.
constexpr std::size_t headerLengthAt = 8, recordLengthAt = 10;
constexpr std::size_t firstDescriptor = 32, secondDescriptor = 64, descriptorSize = 32;
constexpr std::size_t typeAt = 11, widthAt = 16, decimalsAt = 17, fieldTagAt = 31;

Column column(std::string name, ColumnType type, std::uint16_t width, std::uint8_t decimals = 0) {
    return {std::move(name), type, width, decimals, 0};
}

Schema sampleSchema() {
    Schema schema;
    schema.columns = {column("COD", ColumnType::Character, 5), column("SALDO", ColumnType::Numeric, 9, 2),
                      column("ALTA", ColumnType::Date, 8), column("ACTIVO", ColumnType::Logical, 1)};
    completeLayout(schema, "T.DBF");
    return schema;
}

Bytes sampleHeader() { return encodeHeader(sampleSchema(), HeaderCounts{7, 126, 11, 21}); }

void putLength(Bytes& bytes, std::size_t at, std::size_t length) {
    bytes[at] = static_cast<char>(length & 0xFF);
    bytes[at + 1] = static_cast<char>(length >> 8);
}

/// A header with this many character columns of this width.
Bytes headerOf(std::size_t columns, std::size_t width) {
    Bytes bytes(firstDescriptor + columns * descriptorSize + 1, 0);
    bytes[0] = 0x03;
    putLength(bytes, headerLengthAt, bytes.size());
    putLength(bytes, recordLengthAt, 1 + columns * width);
    for (std::size_t i = 0; i < columns; ++i) {
        const std::size_t descriptor = firstDescriptor + i * descriptorSize;
        const std::string name = "C" + std::to_string(i);
        std::ranges::copy(name, bytes.begin() + static_cast<std::ptrdiff_t>(descriptor));
        bytes[descriptor + typeAt] = 'C';
        bytes[descriptor + widthAt] = static_cast<char>(width);
    }
    bytes.back() = 0x0D;
    return bytes;
}

Schema decode(const Bytes& bytes) {
    HeaderCounts counts;
    return decodeHeader(bytes, counts, "T.DBF");
}

/// The text of the BadTable error that decoding throws; "" when it throws none.
std::string refusal(const Bytes& bytes) {
    try {
        (void)decode(bytes);
    } catch (const Error& error) {
        EXPECT_EQ(error.code(), ErrorCode::BadTable);
        EXPECT_EQ(error.file(), "T.DBF");
        return error.what();
    }
    return {};
}

std::string layoutRefusal(std::vector<Column> columns) {
    Schema schema;
    schema.columns = std::move(columns);
    try {
        completeLayout(schema, "T.DBF");
    } catch (const Error& error) {
        EXPECT_EQ(error.code(), ErrorCode::BadTable);
        return error.what();
    }
    return {};
}

bool mentions(const std::string& text, std::string_view part) { return text.find(part) != std::string::npos; }

TEST(Schema, HeaderSurvivesARoundTrip) {
    HeaderCounts counts;
    const Schema schema = decodeHeader(sampleHeader(), counts, "T.DBF");
    EXPECT_EQ(counts.records, 7u);
    EXPECT_EQ(counts.year, 126);
    EXPECT_EQ(counts.month, 11);
    EXPECT_EQ(counts.day, 21);
    EXPECT_EQ(schema.headerLength, 33 + 4 * 32);
    EXPECT_EQ(schema.recordLength, 1 + 5 + 9 + 8 + 1);
    EXPECT_EQ(schema.languageDriver, 0x57);
    EXPECT_FALSE(schema.hasProductionIndex);
    ASSERT_EQ(schema.columns.size(), 4u);
    EXPECT_EQ(schema.columns[1].name, "SALDO");
    EXPECT_EQ(schema.columns[1].type, ColumnType::Numeric);
    EXPECT_EQ(schema.columns[1].width, 9);
    EXPECT_EQ(schema.columns[1].decimals, 2);
    EXPECT_EQ(schema.columns[1].offset, 6);
    EXPECT_EQ(schema.columns[3].offset, 23);
}

TEST(Schema, EncodedHeaderHasTheBytesOfTheFormat) {
    Schema schema = sampleSchema();
    schema.hasProductionIndex = true;
    const Bytes bytes =
        encodeHeader(schema, HeaderCounts{0x01020304, 126, 1, 2}, {true, false, false, false});
    ASSERT_EQ(bytes.size(), 161u);
    EXPECT_EQ(bytes[0], 0x03);
    EXPECT_EQ((Bytes{bytes.begin() + 4, bytes.begin() + 12}), (Bytes{4, 3, 2, 1, '\xA1', 0, 24, 0}));
    EXPECT_EQ(bytes[28], 1);
    EXPECT_EQ(bytes[29], 0x57);
    EXPECT_EQ((Bytes{bytes.begin() + 32, bytes.begin() + 44}),
              (Bytes{'C', 'O', 'D', 0, 0, 0, 0, 0, 0, 0, 0, 'C'}));
    EXPECT_EQ(bytes[firstDescriptor + fieldTagAt], 1); // the column itself is a tag
    EXPECT_EQ(bytes[secondDescriptor + fieldTagAt], 0);
    EXPECT_EQ(bytes[160], 0x0D);
}

TEST(Schema, FindIgnoresLetterCase) {
    const Schema schema = sampleSchema();
    EXPECT_EQ(schema.find("saldo"), 1u);
    EXPECT_EQ(schema.find("SALD"), std::nullopt);
    EXPECT_EQ(schema.find(""), std::nullopt);
}

TEST(Schema, KnownVersionsAreAccepted) {
    for (const int version : {0x03, 0x05, 0x83, 0x8B}) {
        Bytes bytes = sampleHeader();
        bytes[0] = static_cast<char>(version);
        EXPECT_EQ(decode(bytes).version, version);
    }
}

TEST(Schema, OtherVersionsAreRefused) {
    for (const int version : {0x00, 0x02, 0x04, 0x30, 0x43, 0xF5}) {
        Bytes bytes = sampleHeader();
        bytes[0] = static_cast<char>(version);
        EXPECT_TRUE(mentions(refusal(bytes), "versión")) << version;
    }
}

TEST(Schema, OneMoreByteAfterTheTerminatorIsAccepted) {
    Bytes bytes = sampleHeader();
    bytes.push_back(0);
    bytes[headerLengthAt] = '\xA2';
    EXPECT_EQ(decode(bytes).headerLength, 162);
}

TEST(Schema, LongerHeaderIsTrustedAndItsRestIgnored) {
    Bytes bytes = sampleHeader();
    bytes.resize(161 + 263, '\xAB');
    putLength(bytes, headerLengthAt, 161 + 263);
    const Schema schema = decode(bytes);
    EXPECT_EQ(schema.headerLength, 161 + 263);
    EXPECT_EQ(schema.columns.size(), 4u);
}

TEST(Schema, BytesAfterTheHeaderAreNotLookedAt) {
    Bytes bytes = sampleHeader();
    bytes.resize(bytes.size() + 100, '\xFF');
    EXPECT_EQ(decode(bytes).columns.size(), 4u);
}

TEST(Schema, NameEndsAtItsFirstZeroWhateverFollows) {
    Bytes bytes = sampleHeader();
    bytes[firstDescriptor + 3] = 0;
    bytes[firstDescriptor + 4] = 'X';
    bytes[firstDescriptor + 5] = 0x07;
    EXPECT_EQ(decode(bytes).columns[0].name, "COD");
}

TEST(Schema, NameIsReadInCapitals) {
    Bytes bytes = sampleHeader();
    bytes[firstDescriptor] = 'c';
    EXPECT_EQ(decode(bytes).columns[0].name, "COD");
}

TEST(Schema, DecimalsByteOfACharacterColumnIsIgnored) {
    Bytes bytes = sampleHeader();
    bytes[firstDescriptor + decimalsAt] = '\xC8';
    EXPECT_EQ(decode(bytes).columns[0].decimals, 0);
}

TEST(Schema, MemoColumnIsTolerated) {
    Bytes bytes = sampleHeader();
    bytes[firstDescriptor + typeAt] = 'M';
    bytes[firstDescriptor + widthAt] = 10;
    bytes[recordLengthAt] = 29;
    EXPECT_EQ(decode(bytes).columns[0].type, ColumnType::Memo);
}

TEST(Schema, WideColumnsOfOtherProgramsAreTolerated) {
    Bytes bytes = sampleHeader();
    bytes[firstDescriptor + widthAt] = '\xFF';
    putLength(bytes, recordLengthAt, 24 + 250);
    EXPECT_EQ(decode(bytes).columns[0].width, 255);
}

TEST(Schema, EveryTruncationIsRefused) {
    const Bytes whole = sampleHeader();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_FALSE(refusal({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)}).empty())
            << size;
    }
}

TEST(Schema, HeaderTooShortForOneColumnIsRefused) {
    for (const int length : {0, 1, 32, 33, 64}) {
        Bytes bytes = sampleHeader();
        bytes[headerLengthAt] = static_cast<char>(length);
        EXPECT_FALSE(refusal(bytes).empty()) << length;
    }
}

TEST(Schema, HeaderLongerThanTheFileIsRefusedWithBothLengths) {
    Bytes bytes = sampleHeader();
    bytes[headerLengthAt + 1] = 0x10;
    const std::string text = refusal(bytes);
    EXPECT_TRUE(mentions(text, std::to_string(0x1000 + 161))) << text;
    EXPECT_TRUE(mentions(text, "161")) << text;
}

TEST(Schema, MissingTerminatorIsRefused) {
    Bytes bytes = sampleHeader();
    bytes[headerLengthAt] = '\xA0'; // ends right after the last descriptor
    EXPECT_TRUE(mentions(refusal(bytes), "0x0D"));
}

TEST(Schema, DescriptorCutByTheHeaderLengthNamesItsOffset) {
    Bytes bytes = sampleHeader();
    bytes[headerLengthAt] = '\x96';
    EXPECT_TRUE(mentions(refusal(bytes), "posición 128"));
}

TEST(Schema, TableWithoutColumnsIsRefused) {
    Bytes bytes = sampleHeader();
    bytes[firstDescriptor] = 0x0D;
    EXPECT_TRUE(mentions(refusal(bytes), "no tiene columnas"));
}

TEST(Schema, RecordLengthThatDiffersFromTheSumIsRefused) {
    Bytes bytes = sampleHeader();
    bytes[recordLengthAt] = 25;
    const std::string text = refusal(bytes);
    EXPECT_TRUE(mentions(text, "24")) << text;
    EXPECT_TRUE(mentions(text, "25")) << text;
}

TEST(Schema, ColumnThatLeavesTheRecordIsNamed) {
    Bytes bytes = sampleHeader();
    bytes[firstDescriptor + widthAt] = '\xFA';
    EXPECT_TRUE(mentions(refusal(bytes), "COD"));
}

TEST(Schema, WidthsThatSumToMoreThanTheHeaderSaysAreRefused) {
    Bytes bytes = headerOf(255, 255);
    EXPECT_EQ(decode(bytes).recordLength, 1 + 255 * 255) << "it fits in sixteen bits";
    bytes[recordLengthAt + 1] = 0;
    EXPECT_FALSE(refusal(bytes).empty());
}

TEST(Schema, MoreThan255ColumnsAreRefused) {
    EXPECT_EQ(decode(headerOf(255, 1)).columns.size(), 255u);
    EXPECT_TRUE(mentions(refusal(headerOf(256, 1)), "255"));
}

TEST(Schema, ZeroWidthIsRefusedByName) {
    Bytes bytes = sampleHeader();
    bytes[secondDescriptor + widthAt] = 0;
    EXPECT_TRUE(mentions(refusal(bytes), "SALDO"));
}

TEST(Schema, WidthThatItsTypeForbidsIsRefusedByName) {
    for (const auto& [name, descriptor] : {std::pair{"ALTA", 96u}, std::pair{"ACTIVO", 128u}}) {
        Bytes bytes = sampleHeader();
        bytes[descriptor + widthAt] = 4;
        EXPECT_TRUE(mentions(refusal(bytes), name)) << refusal(bytes);
    }
}

TEST(Schema, DecimalsThatDoNotFitAreRefusedByName) {
    Bytes bytes = sampleHeader();
    bytes[secondDescriptor + decimalsAt] = 9;
    EXPECT_TRUE(mentions(refusal(bytes), "SALDO"));
}

TEST(Schema, UnknownTypeIsRefusedByName) {
    for (const char type : {'\0', 'B', 'I', 'c', '@'}) {
        Bytes bytes = sampleHeader();
        bytes[secondDescriptor + typeAt] = static_cast<char>(type);
        EXPECT_TRUE(mentions(refusal(bytes), "SALDO")) << int(type);
    }
}

TEST(Schema, RepeatedNameIsRefusedAlsoInOtherCase) {
    Bytes bytes = sampleHeader();
    const std::string name("cod\0\0", 5);
    std::copy(name.begin(), name.end(), bytes.begin() + secondDescriptor);
    EXPECT_TRUE(mentions(refusal(bytes), "COD está repetida"));
}

TEST(Schema, NameWithoutEndIsRefusedWithItsOffset) {
    Bytes bytes = sampleHeader();
    std::fill_n(bytes.begin() + secondDescriptor, 11, 'A');
    EXPECT_TRUE(mentions(refusal(bytes), "64"));
}

TEST(Schema, EmptyNameIsRefusedWithItsOffset) {
    Bytes bytes = sampleHeader();
    bytes[secondDescriptor] = 0;
    EXPECT_TRUE(mentions(refusal(bytes), "64"));
}

TEST(Schema, NameWithControlCharactersIsRefused) {
    Bytes bytes = sampleHeader();
    bytes[secondDescriptor + 1] = 0x1B;
    EXPECT_FALSE(refusal(bytes).empty());
}

TEST(Schema, RandomDamageNeverDecodesToColumnsOutsideTheRecord) {
    std::mt19937 random(20261121);
    const Bytes good = sampleHeader();
    for (int round = 0; round < 20000; ++round) {
        Bytes bytes = good;
        for (unsigned i = 0; i <= random() % 4; ++i) {
            bytes[random() % bytes.size()] = static_cast<char>(random());
        }
        try {
            const Schema schema = decode(bytes);
            std::size_t end = 1;
            for (const Column& each : schema.columns) {
                EXPECT_EQ(each.offset, end);
                end += each.width;
            }
            EXPECT_EQ(end, schema.recordLength);
            EXPECT_LE(schema.headerLength, bytes.size());
        } catch (const Error& error) {
            EXPECT_EQ(error.code(), ErrorCode::BadTable);
        }
    }
}

TEST(NewLayout, AcceptsTheLimitsOfTheFormat) {
    EXPECT_EQ(
        layoutRefusal({column("A", ColumnType::Character, 254),
                       column("ABCDEFGHI_", ColumnType::Numeric, 20, 18), column("F", ColumnType::Float, 1)}),
        "");
}

TEST(NewLayout, RefusesWhatTheFormatCannotHold) {
    EXPECT_TRUE(mentions(layoutRefusal({}), "columnas"));
    EXPECT_TRUE(mentions(layoutRefusal({column("A", ColumnType::Character, 255)}), "A"));
    EXPECT_TRUE(mentions(layoutRefusal({column("A", ColumnType::Character, 0)}), "anchura 0"));
    EXPECT_TRUE(mentions(layoutRefusal({column("A", ColumnType::Numeric, 21)}), "anchura 21"));
    EXPECT_TRUE(mentions(layoutRefusal({column("A", ColumnType::Numeric, 3, 2)}), "anchura 3"));
    EXPECT_TRUE(mentions(layoutRefusal({column("A", ColumnType::Logical, 2)}), "anchura 2"));
    EXPECT_TRUE(mentions(layoutRefusal({column("A", ColumnType::Date, 10)}), "anchura 10"));
    EXPECT_TRUE(mentions(layoutRefusal({column("A", ColumnType::Memo, 10)}), "memo"));
}

TEST(NewLayout, RefusesNamesThatTheFormatCannotHold) {
    for (const char* name : {"", "1A", "_A", "abc", "A B", "ABCDEFGHIJK", "AÑO", "A.B"}) {
        EXPECT_TRUE(mentions(layoutRefusal({column(name, ColumnType::Logical, 1)}), "nombre")) << name;
    }
    EXPECT_TRUE(mentions(
        layoutRefusal({column("A", ColumnType::Logical, 1), column("A", ColumnType::Date, 8)}), "repetida"));
}

TEST(NewLayout, RefusesRecordsOfMoreThan4000Bytes) {
    std::vector<Column> columns;
    for (int i = 0; i < 15; ++i) {
        columns.push_back(column("C" + std::to_string(i), ColumnType::Character, 254));
    }
    columns.push_back(column("RESTO", ColumnType::Character, 4000 - 1 - 15 * 254));
    EXPECT_EQ(layoutRefusal(columns), "");
    ++columns.back().width;
    EXPECT_TRUE(mentions(layoutRefusal(columns), "RESTO"));
}

TEST(NewLayout, RefusesMoreThan255Columns) {
    std::vector<Column> columns;
    for (int i = 0; i < 256; ++i) {
        columns.push_back(column("C" + std::to_string(i), ColumnType::Logical, 1));
    }
    EXPECT_TRUE(mentions(layoutRefusal(columns), "255"));
}

} // namespace
