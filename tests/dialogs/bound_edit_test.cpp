// An edit box bound to a field.
#include "dialogs/common/BoundEdit.h"

#include <gtest/gtest.h>

#include <QTest>
#include <memory>

#include "data/PostalTables.h"

namespace {

using ambrel::BoundEdit;

class BoundEdits : public postal_tests::PostalTables {
protected:
    BoundEdits() {
        addStreets(
            {{"99000000", "GRAN VIA", "CL", "28013", {1, 99}}, {"99000001", "SERRANO", "CL", "28006"}});
        table.bindInteger("IMPAR_INI");
        table.open();
        street.bind(source, "VIA");
        number.bind(source, "IMPAR_INI");
    }
    [[nodiscard]] std::string value(const char* field) { return table.field(field).text(); }

    dbase::Dataset table{"DB", "POSTAL", "VIA"};
    dbase::DataSource source{&table};
    BoundEdit street, number;
};

TEST_F(BoundEdits, FollowTheRecord) {
    EXPECT_EQ(street.text(), "GRAN VIA");
    EXPECT_EQ(number.text(), "1");
    ASSERT_TRUE(table.next());
    EXPECT_EQ(street.text(), "SERRANO");
    table.edit();
    table.field("VIA").setText("GOYA");
    EXPECT_EQ(street.text(), "GOYA");
    table.cancel();
    EXPECT_EQ(street.text(), "SERRANO");
    table.append();
    EXPECT_EQ(street.text(), "");
}

TEST_F(BoundEdits, AreReadOnlyWhileNothingIsPending) {
    EXPECT_TRUE(street.isReadOnly());
    table.edit();
    EXPECT_FALSE(street.isReadOnly());
    table.post();
    EXPECT_TRUE(street.isReadOnly());
    street.setText("GOYA");
    EXPECT_EQ(value("VIA"), "GRAN VIA");
}

TEST_F(BoundEdits, EveryLetterReachesThePendingRecordAtOnce) {
    table.edit();
    QTest::keyClicks(&street, " 2");
    EXPECT_EQ(value("VIA"), "GRAN VIA 2");
    QTest::keyClick(&street, Qt::Key_Backspace);
    EXPECT_EQ(value("VIA"), "GRAN VIA");
    EXPECT_EQ(street.text(), "GRAN VIA ") << "a blank that was typed stays in sight";
    street.setText("GOYA");
    EXPECT_EQ(value("VIA"), "GOYA");
    EXPECT_EQ(number.text(), "1");
}

TEST_F(BoundEdits, TextThatIsNoNumberStaysInTheBoxAndOutOfTheRecord) {
    table.edit();
    for (const char* text : {"abc", "32768", "-32769", "1,5", "12 a"}) {
        number.setText(text);
        EXPECT_TRUE(number.isRefused()) << text;
        EXPECT_EQ(number.text(), text);
        EXPECT_EQ(value("IMPAR_INI"), "1") << text;
    }
    table.field("VIA").setText("GOYA");
    EXPECT_EQ(number.text(), "12 a") << "another field's value takes nothing away";
    number.setText("32767");
    EXPECT_FALSE(number.isRefused());
    EXPECT_EQ(value("IMPAR_INI"), "32767");
}

TEST_F(BoundEdits, AnEmptyNumberIsBlank) {
    table.edit();
    number.clear();
    EXPECT_FALSE(number.isRefused());
    EXPECT_TRUE(table.field("IMPAR_INI").isNull());
}

TEST_F(BoundEdits, LettersThatTheTableLacksAreKeptAsTheNearestOnes) {
    table.edit();
    street.setText(QStringLiteral("ŁÓDŹ"));
    EXPECT_EQ(value("VIA"), ambrel::test::ansi("LÓDZ"));
}

TEST_F(BoundEdits, TextThatTheFieldWouldCutOrChangeIsRefused) {
    table.edit();
    street.setText(QStringLiteral("NUEVA \u2605"));
    EXPECT_TRUE(street.isRefused());
    street.setText(QString(46, QLatin1Char('A')));
    EXPECT_TRUE(street.isRefused());
    street.setText(QString(45, QLatin1Char('A')) + QStringLiteral("  "));
    EXPECT_FALSE(street.isRefused()) << "blanks at the end are nothing";
    street.setText(QStringLiteral("¿QUÉ?"));
    EXPECT_FALSE(street.isRefused());
}

TEST_F(BoundEdits, AreEmptyWithoutSourceDatasetOrField) {
    BoundEdit unknown;
    unknown.bind(source, "NO_HAY");
    EXPECT_EQ(unknown.text(), "");
    source.setDataset(nullptr);
    EXPECT_EQ(street.text(), "");
    source.setDataset(&table);
    EXPECT_EQ(street.text(), "GRAN VIA");
    table.close();
    EXPECT_EQ(street.text(), "");
    street.unbind();
    table.open();
    EXPECT_EQ(street.text(), "");
}

TEST_F(BoundEdits, MayOutliveTheirSource) {
    auto passing = std::make_unique<dbase::DataSource>(&table);
    BoundEdit edit;
    edit.bind(*passing, "VIA");
    table.edit();
    passing.reset();
    edit.setText("GOYA");
    EXPECT_EQ(value("VIA"), "GRAN VIA");
}

} // namespace
