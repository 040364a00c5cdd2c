// Seeks: how keys are built, and where an exact and a nearest seek end.
#include <gtest/gtest.h>

#include "dbase/table/towns_fixture.h"

namespace dbase {
namespace {

class SeekTest : public TownsTest {
protected:
    SeekTest() { towns.open(); }
};

TEST_F(SeekTest, ExactLandsOnTheFirstRecordWithTheKey) {
    EXPECT_TRUE(exact(towns, {{"CODE", "28013"}}));
    EXPECT_EQ(towns.recordNumber(), 3u);
    EXPECT_FALSE(towns.bof());
    EXPECT_FALSE(towns.eof());
}

TEST_F(SeekTest, ExactMissReturnsFalseAndLeavesPositionAndEnds) {
    towns.last();
    EXPECT_FALSE(exact(towns, {{"CODE", "28014"}}));
    EXPECT_EQ(towns.recordNumber(), 6u);
    EXPECT_TRUE(towns.eof());
    towns.first();
    EXPECT_FALSE(exact(towns, {{"CODE", "99999"}}));
    EXPECT_EQ(towns.recordNumber(), 2u);
    EXPECT_TRUE(towns.bof());
    EXPECT_FALSE(towns.eof());
}

TEST_F(SeekTest, NearestLandsOnTheKeyOrTheNextRecord) {
    EXPECT_TRUE(nearest(towns, {{"CODE", "28013"}}));
    EXPECT_EQ(towns.recordNumber(), 3u);
    EXPECT_TRUE(nearest(towns, {{"CODE", "28014"}}));
    EXPECT_EQ(towns.recordNumber(), 1u);
    EXPECT_TRUE(nearest(towns, {{"CODE", ""}}));
    EXPECT_EQ(towns.recordNumber(), 2u);
    EXPECT_FALSE(towns.bof());
}

TEST_F(SeekTest, NearestPastTheLastReturnsFalseWithTheLastRecordCurrentAndEof) {
    EXPECT_FALSE(nearest(towns, {{"CODE", "46251"}}));
    EXPECT_EQ(towns.recordNumber(), 6u);
    EXPECT_TRUE(towns.eof());
    EXPECT_FALSE(towns.bof());
}

TEST_F(SeekTest, LandingClearsBofAndEof) {
    EXPECT_TRUE(towns.bof());
    ASSERT_TRUE(exact(towns, {{"CODE", "08019"}}));
    EXPECT_FALSE(towns.bof());
    towns.last();
    ASSERT_TRUE(nearest(towns, {{"CODE", "46250"}}));
    EXPECT_FALSE(towns.eof());
}

TEST_F(SeekTest, ExactWithLeadingFieldsComparesThePartTheyCover) {
    towns.setTag("PROVNAME");
    EXPECT_TRUE(exact(towns, {{"PROV", "28"}}));
    EXPECT_EQ(towns.recordNumber(), 5u);
    EXPECT_FALSE(exact(towns, {{"PROV", "29"}}));
    EXPECT_TRUE(exact(towns, {{"PROV", "28"}, {"NAME", "MADRID"}}));
    EXPECT_EQ(towns.recordNumber(), 1u);
    EXPECT_FALSE(exact(towns, {{"PROV", "28"}, {"NAME", "MADRI"}})) << "a given field is compared whole";
}

TEST_F(SeekTest, ExactWithoutTheLeadingFieldComparesTheWholeKey) {
    towns.setTag("PROVNAME");
    EXPECT_FALSE(exact(towns, {{"NAME", "MADRID"}}));
    append(towns, {{"NAME", "MADRID"}});
    EXPECT_TRUE(exact(towns, {{"NAME", "MADRID"}}));
    EXPECT_EQ(towns.recordNumber(), 9u);
}

TEST_F(SeekTest, ExactWithAGapBetweenItsFieldsComparesTheWholeKey) {
    towns.setTag("THREE");
    EXPECT_TRUE(exact(towns, {{"PROV", "28"}}));
    EXPECT_FALSE(exact(towns, {{"PROV", "28"}, {"CODE", "28079"}}))
        << "no record has this code and a blank name";
    append(towns, {{"PROV", "28"}, {"CODE", "28079"}});
    EXPECT_TRUE(exact(towns, {{"PROV", "28"}, {"CODE", "28079"}}));
    EXPECT_EQ(towns.recordNumber(), 9u);
}

TEST_F(SeekTest, PairsThatAreNotTheTagsFieldsChangeNothing) {
    EXPECT_TRUE(exact(towns, {{"CODE", "28005"}, {"NAME", "NOWHERE"}, {"MISSING", "x"}}));
    EXPECT_EQ(towns.recordNumber(), 5u);
    towns.setTag("PROVNAME");
    EXPECT_TRUE(exact(towns, {{"PROV", "28"}, {"CODE", "00000"}})) << "still only leading fields";
    EXPECT_EQ(towns.recordNumber(), 5u);
}

TEST_F(SeekTest, KeyWithNoneOfTheTagsFieldsIsTheBlankOne) {
    EXPECT_FALSE(exact(towns, {{"NAME", "MADRID"}}));
    EXPECT_TRUE(nearest(towns, {{"NAME", "MADRID"}}));
    EXPECT_EQ(towns.recordNumber(), 2u);
    append(towns, {{"NAME", "UNCODED"}});
    EXPECT_TRUE(exact(towns, {}));
    EXPECT_EQ(towns.recordNumber(), 9u);
}

TEST_F(SeekTest, FieldNamesOfKeysIgnoreCase) {
    EXPECT_TRUE(exact(towns, {{"code", "28005"}}));
    EXPECT_EQ(towns.recordNumber(), 5u);
}

TEST_F(SeekTest, IntegerForACharacterColumnIsZeroPaddedToItsWidth) {
    EXPECT_TRUE(exact(towns, {{"CODE", 8019}}));
    EXPECT_EQ(towns.recordNumber(), 2u);
    towns.setTag("PROVNAME");
    EXPECT_TRUE(exact(towns, {{"PROV", 8}}));
    EXPECT_EQ(towns.recordNumber(), 2u);
}

TEST_F(SeekTest, NegativeIntegerForACharacterColumnKeepsItsSignInFront) {
    append(towns, {{"CODE", "-0005"}});
    EXPECT_TRUE(exact(towns, {{"CODE", -5}}));
    EXPECT_EQ(towns.field("CODE").text(), "-0005");
    EXPECT_TRUE(exact(towns, {{"CODE", 46250}})) << "as wide as the column";
    EXPECT_EQ(codeOf([&] { (void)exact(towns, {{"CODE", 462500}}); }), ErrorCode::BadValue);
}

TEST_F(SeekTest, NumericTagTakesIntegersAndTexts) {
    towns.setTag("GROUP");
    EXPECT_TRUE(exact(towns, {{"GROUP", 3}}));
    EXPECT_EQ(towns.recordNumber(), 4u);
    EXPECT_TRUE(exact(towns, {{"GROUP", "10"}}));
    EXPECT_EQ(towns.recordNumber(), 1u);
    EXPECT_TRUE(nearest(towns, {{"GROUP", 4}}));
    EXPECT_EQ(towns.recordNumber(), 5u);
    EXPECT_TRUE(nearest(towns, {{"GROUP", -1}}));
    EXPECT_EQ(towns.recordNumber(), 8u) << "a blank number counts as 0";
    EXPECT_FALSE(nearest(towns, {{"GROUP", 11}}));
    EXPECT_EQ(towns.recordNumber(), 6u);
}

TEST_F(SeekTest, ValueThatItsColumnCannotHoldRaisesAndMovesNothing) {
    towns.setTag("GROUP");
    towns.last();
    EXPECT_EQ(codeOf([&] { exact(towns, {{"GROUP", 12345678}}); }), ErrorCode::BadValue) << "not found as 0";
    EXPECT_EQ(codeOf([&] { exact(towns, {{"GROUP", "ten"}}); }), ErrorCode::BadValue);
    towns.setTag("SINCE");
    EXPECT_EQ(codeOf([&] { nearest(towns, {{"SINCE", "20210230"}}); }), ErrorCode::BadValue);
    EXPECT_EQ(towns.recordNumber(), 6u);
}

TEST_F(SeekTest, NumberWrittenAsTextThatItsColumnCannotHoldRaises) {
    towns.setTag("GROUP");
    EXPECT_EQ(codeOf([&] { (void)exact(towns, {{"GROUP", "12345678"}}); }), ErrorCode::BadValue);
    EXPECT_TRUE(exact(towns, {{"GROUP", "10"}}));
}

TEST_F(SeekTest, TextLongerThanItsColumnIsCut) {
    EXPECT_TRUE(exact(towns, {{"CODE", "2800599"}}));
    EXPECT_EQ(towns.recordNumber(), 5u);
}

TEST_F(SeekTest, DateTagTakesDatesAndSortsBlankOnesLast) {
    towns.setTag("SINCE");
    EXPECT_TRUE(exact(towns, {{"SINCE", "20000229"}}));
    EXPECT_EQ(towns.recordNumber(), 5u);
    EXPECT_TRUE(nearest(towns, {{"SINCE", "20200101"}}));
    EXPECT_EQ(towns.recordNumber(), 6u);
    EXPECT_TRUE(exact(towns, {{"SINCE", ""}}));
    EXPECT_EQ(towns.recordNumber(), 3u);
}

TEST_F(SeekTest, DeletedRecordsAreNotFound) {
    place(towns, 3);
    towns.erase();
    EXPECT_TRUE(exact(towns, {{"CODE", "28013"}}));
    EXPECT_EQ(towns.recordNumber(), 7u);
    towns.erase();
    EXPECT_FALSE(exact(towns, {{"CODE", "28013"}}));
    EXPECT_TRUE(nearest(towns, {{"CODE", "28013"}}));
    EXPECT_EQ(towns.recordNumber(), 1u);
}

TEST_F(SeekTest, DescendingTagSeeksInItsOwnOrder) {
    towns.setTag("FALLING");
    EXPECT_TRUE(exact(towns, {{"NAME", "MADRID"}}));
    EXPECT_EQ(towns.recordNumber(), 1u);
    EXPECT_TRUE(nearest(towns, {{"NAME", "LUGO"}}));
    EXPECT_EQ(towns.recordNumber(), 4u) << "HOSPITALET is the next one down";
    EXPECT_TRUE(nearest(towns, {{"NAME", "ZAMORA"}}));
    EXPECT_EQ(towns.recordNumber(), 6u);
    EXPECT_FALSE(nearest(towns, {{"NAME", "AAAA"}}));
    EXPECT_EQ(towns.recordNumber(), 5u);
}

TEST_F(SeekTest, UniqueTagHoldsTheFirstRecordOfEachKey) {
    towns.setTag("ONCE");
    EXPECT_TRUE(exact(towns, {{"PROV", "28"}}));
    EXPECT_EQ(towns.recordNumber(), 1u);
    EXPECT_TRUE(towns.next());
    EXPECT_EQ(towns.recordNumber(), 6u);
}

TEST_F(SeekTest, ForTagFindsOnlyTheRecordsOfItsCondition) {
    towns.setTag("BIG");
    EXPECT_TRUE(exact(towns, {{"NAME", "MADRID"}}));
    EXPECT_FALSE(exact(towns, {{"NAME", "ALCALA"}}));
    EXPECT_TRUE(nearest(towns, {{"NAME", "ALCALA"}}));
    EXPECT_EQ(towns.recordNumber(), 2u);
}

TEST_F(SeekTest, SeekWithoutATagRaises) {
    towns.setTag("");
    EXPECT_EQ(codeOf([&] { exact(towns, {{"CODE", "28005"}}); }), ErrorCode::BadState);
}

TEST_F(SeekTest, ClosedTableRaises) {
    towns.close();
    EXPECT_EQ(codeOf([&] { exact(towns, {{"CODE", "28005"}}); }), ErrorCode::BadState);
}

TEST_F(SeekTest, EmptyTableFindsNothing) {
    createEmpty();
    none.open();
    EXPECT_FALSE(exact(none, {{"CODE", "28005"}}));
    EXPECT_FALSE(nearest(none, {{"CODE", "28005"}}));
    EXPECT_TRUE(none.bof());
    EXPECT_TRUE(none.eof());
    EXPECT_EQ(none.recordNumber(), 0u);
}

// --- Inside range and filter

TEST_F(SeekTest, ExactInsideTheRangeOnly) {
    towns.setRange({{"CODE", "15030"}}, {{"CODE", "28013"}});
    EXPECT_TRUE(exact(towns, {{"CODE", "28005"}}));
    EXPECT_FALSE(exact(towns, {{"CODE", "28079"}}));
    EXPECT_FALSE(exact(towns, {{"CODE", "08019"}}));
    EXPECT_EQ(towns.recordNumber(), 5u);
}

TEST_F(SeekTest, NearestBelowTheRangeLandsOnItsFirstRecord) {
    towns.setRange({{"CODE", "15030"}}, {{"CODE", "28013"}});
    EXPECT_TRUE(nearest(towns, {{"CODE", "00000"}}));
    EXPECT_EQ(towns.recordNumber(), 8u);
}

TEST_F(SeekTest, NearestAfterTheRangeLandsOnItsLastRecordAtEof) {
    towns.setRange({{"CODE", "15030"}}, {{"CODE", "28013"}});
    EXPECT_FALSE(nearest(towns, {{"CODE", "28014"}}));
    EXPECT_EQ(towns.recordNumber(), 7u);
    EXPECT_TRUE(towns.eof());
}

TEST_F(SeekTest, LeadingFieldsAreFoundInARangeThatBeginsAmongThem) {
    towns.setTag("PROVNAME");
    towns.setRange({{"PROV", "28"}, {"NAME", "APEADERO"}}, {{"PROV", "46"}, {"NAME", "ZZZ"}});
    EXPECT_TRUE(exact(towns, {{"PROV", "28"}}));
    EXPECT_EQ(towns.recordNumber(), 7u);
}

TEST_F(SeekTest, ExactSkipsTheRecordsThatTheFilterHides) {
    towns.setFilter("NAME<>'ARANJUEZ'");
    EXPECT_TRUE(exact(towns, {{"CODE", "28013"}}));
    EXPECT_EQ(towns.recordNumber(), 7u);
    towns.setFilter("MINOR=False");
    EXPECT_FALSE(exact(towns, {{"CODE", "28013"}}));
}

TEST_F(SeekTest, NearestSkipsTheRecordsThatTheFilterHides) {
    towns.setFilter("MINOR=False");
    EXPECT_TRUE(nearest(towns, {{"CODE", "28013"}}));
    EXPECT_EQ(towns.recordNumber(), 1u);
    towns.setFilter("PROV='08'");
    EXPECT_FALSE(nearest(towns, {{"CODE", "28013"}}));
    EXPECT_EQ(towns.recordNumber(), 4u);
    EXPECT_TRUE(towns.eof());
}

// --- Language drivers

TEST_F(SeekTest, CollatingTableSeeksByWeight) {
    TableDefinition definition = ambrel::test::defineTable("WORDS", {"WORD C8"}, {"WORD"});
    definition.languageDriver = LanguageDriver::AnsiSpanish;
    createTable(definition, {{"ZAMORA"}, {"ÑORA"}, {"OCAÑA"}, {"NAVA"}, {"nieva"}});
    Dataset words("DB", "WORDS", "WORD");
    words.open();
    EXPECT_EQ(walk(words), (Records{5, 4, 2, 3, 1}));
    EXPECT_TRUE(nearest(words, {{"WORD", ambrel::test::ansi("Ñ")}}));
    EXPECT_EQ(words.recordNumber(), 2u);
    EXPECT_TRUE(exact(words, {{"WORD", ambrel::test::ansi("OCAÑA")}}));
}

} // namespace
} // namespace dbase
