// The search keys of streets.
#include "controller/StreetSearchKey.h"

#include <gtest/gtest.h>

namespace {

using namespace ambrel;

const StreetPlace madrid{.postalCode = "28001", .capital = "0"};

std::string value(const dbase::Key& key, std::size_t part) {
    return std::get<std::string>(key.at(part).value);
}

TEST(StreetSearchKey, NamesTheColumnsOfTheTagInItsOrder) {
    const dbase::Key key = streetSearchKey(madrid, "MAYOR", "CL");
    ASSERT_EQ(key.size(), 4u);
    EXPECT_EQ(key[0].field, "PROVINCIA");
    EXPECT_EQ(key[1].field, "CAPITAL");
    EXPECT_EQ(key[2].field, "VIA");
    EXPECT_EQ(key[3].field, "TIPO_VIA");
}

TEST(StreetSearchKey, ProvinceIsTheBeginningOfThePostalCode) {
    const dbase::Key key = streetSearchKey(madrid, "MAYOR", "CL");
    EXPECT_EQ(value(key, 0), "28");
    EXPECT_EQ(value(key, 1), "0");
    EXPECT_EQ(value(key, 3), "CL");
}

TEST(StreetSearchKey, NameIsNotPadded) {
    EXPECT_EQ(value(streetSearchKey(madrid, "MAYOR", "CL"), 2), "MAYOR");
}

TEST(PaddedStreetSearchKey, NameIsPaddedToTheColumn) {
    EXPECT_EQ(value(paddedStreetSearchKey(madrid, "MAYOR", "CL"), 2), "MAYOR" + std::string(40, ' '));
}

TEST(PaddedStreetSearchKey, LongNameIsCutToTheColumn) {
    EXPECT_EQ(value(paddedStreetSearchKey(madrid, std::string(60, 'X'), "CL"), 2), std::string(45, 'X'));
}

TEST(StreetSearchKey, NameInAPaddedKeyIsCutAndHasNoTrailingBlanks) {
    EXPECT_EQ(nameInKey("MAYOR"), "MAYOR");
    EXPECT_EQ(nameInKey(" MAYOR  "), " MAYOR");
    EXPECT_EQ(nameInKey(std::string(46, 'X')), std::string(45, 'X'));
    EXPECT_EQ(nameInKey(std::string(44, 'X').append(" X")), std::string(44, 'X'));
    EXPECT_EQ(nameInKey("   "), "");
    EXPECT_EQ(nameInKey(""), "");
}

} // namespace
