// Records of a table, column by column.
#include "directory/RecordForm.h"

#include <gtest/gtest.h>

#include <random>

namespace ambrel::directory {
namespace {

enum { Name, Count, Code };

class RecordFormTest : public testing::Test {
protected:
    RecordFormTest() {
        const auto add = [&](const char* name, std::uint16_t width) {
            schema.columns.push_back({.name = name, .width = width, .offset = schema.recordLength});
            schema.recordLength = static_cast<std::uint16_t>(schema.recordLength + width);
        };
        schema.recordLength = 1; // the deletion mark
        add("COUNT", 6);
        add("NAME", 21);
        add("NOTE", 5); // of others
        add("CODE", 5);
    }
    [[nodiscard]] RecordForm form() const { return RecordForm(schema, {"NAME", "COUNT", "CODE"}); }
    /// Blanks and letters: columns of all lengths, with blanks on either side and between.
    std::vector<char> anyRecord() {
        std::vector<char> record(schema.recordLength, ' ');
        const unsigned blanks = random() % 4;
        for (std::size_t i = 1; i < record.size(); ++i) {
            record[i] = random() % 4 < blanks ? ' ' : static_cast<char>('A' + random() % 26);
        }
        return record;
    }
    /// As the table of provenance has had it since its first version.
    [[nodiscard]] Fingerprint expected(const std::vector<char>& record) const {
        Fingerprint sum = 0xCBF29CE484222325;
        const auto add = [&](char sign) { sum = (sum ^ static_cast<unsigned char>(sign)) * 0x100000001B3; };
        for (const char* const name : {"NAME", "COUNT", "CODE"}) {
            const dbase::Column& column = schema.columns[schema.find(name).value()];
            const std::string text(record.data() + column.offset, column.width);
            const std::size_t first = text.find_first_not_of(' '), last = text.find_last_not_of(' ');
            for (std::size_t i = first; i != std::string::npos && i <= last; ++i) {
                add(text[i]);
            }
            add('\t');
        }
        return sum;
    }
    dbase::Schema schema;
    std::mt19937 random{11};
};

TEST_F(RecordFormTest, FingerprintsAreTheSameOneByOneAndSideBySide) {
    const RecordForm records = form();
    for (int round = 0; round < 5000; ++round) {
        SideBySide<std::vector<char>> rows;
        SideBySide<std::span<const char>> views;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            rows[i] = anyRecord();
            views[i] = rows[i];
        }
        const SideBySide<Fingerprint> prints = records.fingerprints(views);
        for (std::size_t i = 0; i < rows.size(); ++i) {
            ASSERT_EQ(prints[i], expected(rows[i]));
            ASSERT_EQ(records.fingerprint(rows[i]), prints[i]);
        }
    }
}

TEST_F(RecordFormTest, ARecordSaysTheSameWhateverTheOtherColumnsHold) {
    RecordForm written = form();
    written.setText(Name, "MAYOR");
    written.setNumber(Count, 12);
    written.setDigits(Code, 28013, 5);
    const std::vector<char> same(written.record().begin(), written.record().end());
    EXPECT_EQ(std::string(same.begin(), same.end()), "     12MAYOR                     28013");
    const dbase::Column& note = schema.columns[schema.find("NOTE").value()];
    for (std::size_t i = 0; i < same.size(); ++i) {
        std::vector<char> other = same;
        other[i] = '9';
        const bool isOfOthers = i == 0 || (i >= note.offset && i < note.offset + note.width);
        EXPECT_EQ(written.isSaidBy(other), isOfOthers || same[i] == '9') << i;
    }
}

TEST_F(RecordFormTest, ANumberThatIsTooLongLeavesItsColumnBlank) {
    RecordForm written = form();
    written.setNumber(Count, 123456);
    EXPECT_EQ(written.number(Count, written.record()), 123456U);
    written.setNumber(Count, 1234567);
    EXPECT_EQ(written.number(Count, written.record()), std::nullopt);
}

} // namespace
} // namespace ambrel::directory
