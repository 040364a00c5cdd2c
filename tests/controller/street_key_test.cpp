#include "controller/StreetKey.h"

#include <gtest/gtest.h>

namespace {

using namespace ambrel;

const StreetPlace madrid{.postalCode = "28001", .capital = "0"};

std::string value(const dbase::Key& key, std::size_t part) {
    return std::get<std::string>(key.at(part).value);
}

TEST(StreetKey, NamesTheColumnsOfTheTagInItsOrder) {
    const dbase::Key key = streetKey(madrid, "MAYOR", "CL");
    ASSERT_EQ(key.size(), 4u);
    EXPECT_EQ(key[0].field, "PROVINCIA");
    EXPECT_EQ(key[1].field, "CAPITAL");
    EXPECT_EQ(key[2].field, "VIA");
    EXPECT_EQ(key[3].field, "TIPO_VIA");
}

TEST(StreetKey, ProvinceIsTheBeginningOfThePostalCode) {
    const dbase::Key key = streetKey(madrid, "MAYOR", "CL");
    EXPECT_EQ(value(key, 0), "28");
    EXPECT_EQ(value(key, 1), "0");
    EXPECT_EQ(value(key, 3), "CL");
}

TEST(StreetKey, NameIsNotPadded) { EXPECT_EQ(value(streetKey(madrid, "MAYOR", "CL"), 2), "MAYOR"); }

TEST(PaddedStreetKey, NameIsPaddedToTheColumn) {
    EXPECT_EQ(value(paddedStreetKey(madrid, "MAYOR", "CL"), 2), "MAYOR" + std::string(40, ' '));
}

TEST(PaddedStreetKey, LongNameIsCutToTheColumn) {
    EXPECT_EQ(value(paddedStreetKey(madrid, std::string(60, 'X'), "CL"), 2), std::string(45, 'X'));
}

TEST(StreetKey, NameInAPaddedKeyIsCutAndHasNoTrailingBlanks) {
    EXPECT_EQ(nameInKey("MAYOR"), "MAYOR");
    EXPECT_EQ(nameInKey(" MAYOR  "), " MAYOR");
    EXPECT_EQ(nameInKey(std::string(46, 'X')), std::string(45, 'X'));
    EXPECT_EQ(nameInKey(std::string(44, 'X') + " X"), std::string(44, 'X'));
    EXPECT_EQ(nameInKey("   "), "");
    EXPECT_EQ(nameInKey(""), "");
}

} // namespace
