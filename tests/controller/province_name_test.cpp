// The name of a province by its code.
#include "controller/ProvinceName.h"

#include "data/PostalTables.h"

namespace {

using namespace postal_tests;
using ambrel::test::ansi;

class ProvinceName : public PostalTables {
protected:
    void SetUp() override {
        addProvinces({{"001", "ÁLAVA"}, {"008", "BARCELONA"}, {"028", "MADRID"}, {"080", "OCHENTA"}});
    }
};

TEST_F(ProvinceName, CodeBeginning08FindsTheProvinceWithTheNumber8) {
    EXPECT_EQ(ambrel::provinceName("08001"), "BARCELONA");
    EXPECT_EQ(ambrel::provinceName("28001"), "MADRID");
    EXPECT_EQ(ambrel::provinceName("01001"), ansi("ÁLAVA"));
}

TEST_F(ProvinceName, CodeWithoutProvinceGivesAnEmptyName) {
    EXPECT_EQ(ambrel::provinceName("99001"), "");
    EXPECT_EQ(ambrel::provinceName("02001"), "") << "the next province is not taken";
    EXPECT_EQ(ambrel::provinceName(""), "");
    EXPECT_EQ(ambrel::provinceName("XX001"), "");
}

TEST_F(ProvinceName, TwoCharactersAreEnough) { EXPECT_EQ(ambrel::provinceName("28"), "MADRID"); }

} // namespace
