// Reads and writes CSV.
#include "loading/csv.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <sstream>

#include <fcntl.h>
#include <unistd.h>

#include "support/TemporaryFolder.h"

namespace loading {
namespace {

using Records = std::vector<std::vector<std::string>>;

Records readAll(std::string_view text, std::size_t bufferSize = CsvReader::defaultBufferSize,
                char separator = ',') {
    CsvReader csv(textSource(text), "prueba.csv", separator, bufferSize);
    Records records;
    while (csv.next()) {
        auto& record = records.emplace_back();
        for (const CsvField& field : csv.fields()) {
            record.emplace_back(field.text);
        }
    }
    return records;
}

CsvError faultOf(std::string_view text) {
    try {
        readAll(text);
    } catch (const CsvError& error) {
        return error;
    }
    ADD_FAILURE() << "no fault in " << text;
    return {"", 0, 0, ""};
}

void expectFault(std::string_view text, std::uint64_t line, std::uint64_t column) {
    const CsvError error = faultOf(text);
    EXPECT_EQ(error.line(), line) << text;
    EXPECT_EQ(error.column(), column) << text;
}

TEST(CsvReader, SplitsRecordsAndValues) {
    EXPECT_EQ(readAll("A,B\n1,2\n"), (Records{{"A", "B"}, {"1", "2"}}));
}

TEST(CsvReader, EmptyTextHasNoRecords) { EXPECT_TRUE(readAll("").empty()); }

TEST(CsvReader, BlankValuesCount) { EXPECT_EQ(readAll(",a,\n,,\n"), (Records{{"", "a", ""}, {"", "", ""}})); }

TEST(CsvReader, LastLineNeedsNoEnd) {
    EXPECT_EQ(readAll("a,b"), (Records{{"a", "b"}}));
    EXPECT_EQ(readAll("a,"), (Records{{"a", ""}}));
    EXPECT_EQ(readAll("a,\"b\""), (Records{{"a", "b"}}));
}

TEST(CsvReader, CarriageReturnBelongsToTheLineEnd) {
    EXPECT_EQ(readAll("a,b\r\nc,\"d\"\r\n"), (Records{{"a", "b"}, {"c", "d"}}));
}

TEST(CsvReader, ByteOrderMarkIsNoPartOfTheFirstName) {
    EXPECT_EQ(readAll("\xEF\xBB\xBF"
                      "A,B\n"),
              (Records{{"A", "B"}}));
    EXPECT_EQ(readAll("\xEF\xBB\xBF"
                      "\"A\"\n",
                      1),
              (Records{{"A"}}));
    EXPECT_EQ(readAll("\xEF\xBB"), (Records{{"\xEF\xBB"}}));
}

TEST(CsvReader, QuotedValuesHoldCommasNewlinesAndQuotes) {
    EXPECT_EQ(readAll("\"a,b\",\"c\nd\",\"e\"\"f\"\"\"\n\"\"\"\"\n"),
              (Records{{"a,b", "c\nd", "e\"f\""}, {"\""}}));
}

TEST(CsvReader, AnotherSeparatorLeavesTheCommaToTheValues) {
    EXPECT_EQ(readAll("A;B\n1,5;\"d;o\"\"s\"\n", 4, ';'), (Records{{"A", "B"}, {"1,5", "d;o\"s"}}));
    EXPECT_EQ(readAll("A\tB\nx y\t\n", 4, '\t'), (Records{{"A", "B"}, {"x y", ""}}));
}

TEST(CsvReader, SeparatorIsATabOrASign) {
    for (const std::string name : {",", ";", "|", ":", "~"}) {
        EXPECT_EQ(separatorNamed(name), name.front());
    }
    EXPECT_EQ(separatorNamed("tab"), '\t');
    EXPECT_EQ(separatorNamed("\t"), '\t');
    for (const std::string name : {"", "\"", "\n", "\r", " ", "a", "Z", "0", "\x7F", "\xA7", "§", ";;"}) {
        EXPECT_EQ(separatorNamed(name), std::nullopt) << name;
    }
}

TEST(CsvReader, EmptyLinesArePassedOver) { EXPECT_EQ(readAll("\nA\n\n\r\n1\n\n"), (Records{{"A"}, {"1"}})); }

TEST(CsvReader, QuotedNothingIsAValue) { EXPECT_EQ(readAll("A\n\"\"\n"), (Records{{"A"}, {""}})); }

TEST(CsvReader, RecordsSurviveAnyBufferSize) {
    const std::string text = "uno,\"d\"\"o\ns\",tres\r\n\r\n4,\"\",seis,\"siete\"\nñ,o";
    const Records whole = readAll(text);
    for (std::size_t size = 1; size <= text.size() + 1; ++size) {
        EXPECT_EQ(readAll(text, size), whole) << "buffer of " << size;
    }
}

TEST(CsvReader, LinesCountNewlinesInsideQuotes) {
    CsvReader csv(textSource("A,B\n\n\"x\ny\",\"z\"\r\nlast,1\n"), "prueba.csv");
    ASSERT_TRUE(csv.next());
    EXPECT_EQ(csv.line(), 1U);
    ASSERT_TRUE(csv.next());
    EXPECT_EQ(csv.line(), 3U);
    EXPECT_EQ(csv.fields()[0].line, 3U);
    EXPECT_EQ(csv.fields()[1].line, 4U);
    ASSERT_TRUE(csv.next());
    EXPECT_EQ(csv.line(), 5U);
    EXPECT_FALSE(csv.next());
}

TEST(CsvReader, UnclosedQuotesAreReportedWhereTheyOpen) { expectFault("A,B\n1,\"dos\ntres\n", 2, 3); }

TEST(CsvReader, TextAfterClosingQuotesIsAFault) { expectFault("A\n\"x\ny\"z\n", 3, 3); }

TEST(CsvReader, QuotesInsideAPlainValueAreAFault) { expectFault("A\nx\"y\n", 2, 2); }

TEST(CsvReader, CarriageReturnAloneIsAFault) {
    expectFault("A\nx\ry\n", 2, 2);
    expectFault("A\nx\r", 2, 2);
}

TEST(CsvReader, ColumnsCountCharactersNotBytes) { expectFault("ñandú,x\"\n", 1, 8); }

TEST(CsvReader, FaultNamesTextLineAndCharacter) {
    EXPECT_EQ(std::string(faultOf("x\"").what()),
              "prueba.csv: línea 1, carácter 2: comillas dentro de un valor sin comillas");
}

TEST(CsvReader, RecordWithoutEndIsRefusedBeforeItFillsTheMemory) {
    std::uint64_t given = 0;
    const TextSource endless = [&](std::span<char> room) {
        std::ranges::fill(room, 'x');
        given += room.size();
        return room.size();
    };
    CsvReader csv(endless, "prueba.csv");
    EXPECT_THROW(static_cast<void>(csv.next()), CsvError);
    EXPECT_LE(given, CsvReader::maxRecordSize);
}

/// The raw text of all records, and of the lines of broken ones between brackets.
std::string rawOf(std::string_view text, std::size_t bufferSize = CsvReader::defaultBufferSize) {
    CsvReader csv(textSource(text), "prueba.csv", ',', bufferSize);
    csv.keepEmptyLines();
    std::string all;
    for (bool isMore = true; isMore;) {
        try {
            isMore = csv.next();
            all += csv.raw();
        } catch (const CsvError&) {
            while (!csv.takeLine()) {
                all += csv.raw();
            }
            all += '<' + std::string(csv.raw()) + '>';
        }
    }
    return all;
}

TEST(CsvReader, RawTextIsEveryByteThatWasRead) {
    const std::string text = "\xEF\xBB\xBF"
                             "A,B\r\n\n\"d\"\"o\ns\", x \n\r\n\n\"\",\"\"\"\"";
    for (std::size_t size = 1; size <= text.size() + 1; ++size) {
        EXPECT_EQ(rawOf(text, size), text) << "buffer of " << size;
    }
}

TEST(CsvReader, RawTextLeavesOutSkippedLines) {
    CsvReader csv(textSource("\n\nA\n\n\n\"1\"\n\n"), "prueba.csv");
    ASSERT_TRUE(csv.next());
    EXPECT_EQ(csv.raw(), "A\n");
    ASSERT_TRUE(csv.next());
    EXPECT_EQ(csv.raw(), "\"1\"\n");
    EXPECT_FALSE(csv.next());
    EXPECT_EQ(csv.raw(), "");
}

TEST(CsvReader, KeptEmptyLinesAreRecordsWithoutValues) {
    CsvReader csv(textSource("A\n\r\n1\n"), "prueba.csv");
    csv.keepEmptyLines();
    ASSERT_TRUE(csv.next());
    ASSERT_TRUE(csv.next());
    EXPECT_TRUE(csv.fields().empty());
    EXPECT_EQ(csv.raw(), "\r\n");
    EXPECT_EQ(csv.line(), 2U);
    ASSERT_TRUE(csv.next());
    EXPECT_EQ(csv.fields()[0].text, "1");
    EXPECT_EQ(csv.line(), 3U);
}

TEST(CsvReader, ReadingGoesOnAfterTheFirstLineOfABrokenRecord) {
    const std::string text = "1,\"a\nb\n2,\"c\"\n3,x\"y\n4,d\n\"e\"f\n5,\"";
    for (std::size_t size = 1; size <= text.size() + 1; ++size) {
        EXPECT_EQ(rawOf(text, size), "<1,\"a\n>b\n2,\"c\"\n<3,x\"y\n>4,d\n<\"e\"f\n><5,\">")
            << "buffer of " << size;
    }
    CsvReader csv(textSource(text), "prueba.csv");
    EXPECT_THROW(static_cast<void>(csv.next()), CsvError);
    EXPECT_TRUE(csv.takeLine());
    EXPECT_EQ(csv.line(), 1U);
    EXPECT_TRUE(csv.fields().empty());
    ASSERT_TRUE(csv.next());
    EXPECT_EQ(csv.line(), 2U);
    EXPECT_EQ(csv.fields()[0].text, "b");
}

TEST(CsvReader, FirstLineIsTakenInsteadOfAWholeRecord) {
    CsvReader csv(textSource("\"a\nb\"\nc\n"), "prueba.csv");
    ASSERT_TRUE(csv.next());
    EXPECT_TRUE(csv.takeLine());
    EXPECT_EQ(csv.raw(), "\"a\n");
    EXPECT_THROW(static_cast<void>(csv.next()), CsvError) << "b\"";
}

TEST(CsvReader, VeryLongLineIsTakenInPieces) {
    const std::string text = std::string(CsvReader::maxRecordSize * 2 + 5, 'x') + "\n1\n";
    EXPECT_EQ(rawOf(text).size(), text.size() + 2);
    EXPECT_TRUE(rawOf(text).ends_with("x\n>1\n"));
}

TEST(CsvReader, ReadsAFile) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.csv", "A\n1\n");
    CsvReader csv(fileSource(path), path);
    ASSERT_TRUE(csv.next());
    ASSERT_TRUE(csv.next());
    EXPECT_EQ(csv.fields()[0].text, "1");
    EXPECT_FALSE(csv.next());
}

TEST(CsvReader, FileThatIsNotThereIsAFailure) {
    const TemporaryFolder folder;
    EXPECT_THROW(static_cast<void>(fileSource(folder / "no.csv")), Failure);
}

TEST(CsvReader, FolderInPlaceOfAFileIsAFailure) {
    const TemporaryFolder folder;
    CsvReader csv(fileSource(folder.path()), "carpeta");
    EXPECT_THROW(static_cast<void>(csv.next()), Failure);
}

std::string written(const Records& records) {
    const TemporaryFolder folder;
    const std::string path = folder / "a.csv";
    const int file = open(path.c_str(), O_WRONLY | O_CREAT, 0600);
    CsvWriter csv(file);
    for (const auto& record : records) {
        for (const std::string& text : record) {
            csv.field(text);
        }
        csv.endRecord();
    }
    csv.flush();
    close(file);
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

TEST(CsvReader, RefusesARowOfMoreValuesThanAnyTableHasColumns) {
    const std::string most(CsvReader::maxFields - 1, ',');
    EXPECT_EQ(readAll(most).at(0).size(), CsvReader::maxFields);
    expectFault("a\n" + most + ",\n", 2, 1);
    expectFault("a\n\n" + std::string(5'000'000, ','), 3, 1);
}

TEST(CsvWriter, QuotesOnlyWhatMustBe) {
    EXPECT_EQ(written({{"a b", "c,d", "e\"f", "g\nh", "i\rj", "", " k "}}),
              "a b,\"c,d\",\"e\"\"f\",\"g\nh\",\"i\rj\",, k \n");
}

TEST(CsvWriter, OneBlankValueIsNoEmptyLine) { EXPECT_EQ(written({{"A"}, {""}, {"b"}}), "A\n\"\"\nb\n"); }

TEST(CsvWriter, WhatItWritesIsReadBack) {
    const Records records{{"A", "B"}, {"", ""}, {"ñ,\"", "\r\n"}, {"x", "\"\""}};
    EXPECT_EQ(readAll(written(records)), records);
    const Records many(20000, {"una fila larga", "otra columna"});
    EXPECT_EQ(readAll(written(many)), many);
}

TEST(CsvWriter, NoticesAReaderThatHasGoneAway) {
    std::signal(SIGPIPE, SIG_IGN);
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    close(ends[0]);
    CsvWriter csv(ends[1]);
    csv.field("a");
    csv.endRecord();
    EXPECT_THROW(csv.flush(), OutputClosed);
    close(ends[1]);
}

} // namespace
} // namespace loading
