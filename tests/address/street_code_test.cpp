// Chooses the stretch of an address, and says how sure its code is.
#include "address/StreetCode.h"

#include <gtest/gtest.h>

namespace {

using namespace ambrel;
using Certainty = StreetCode::Certainty;
using Stretches = std::vector<StreetStretch>;

StreetStretch stretch(std::string key, std::string postalCode, std::string ineCode = {},
                      StretchRanges ranges = {.odd = {1, 9999}, .even = {2, 9998}}, std::string type = "CL") {
    return {.record = 1,
            .key = std::move(key),
            .type = std::move(type),
            .name = "MAYOR",
            .postalCode = std::move(postalCode),
            .ineCode = std::move(ineCode),
            .ranges = ranges};
}

const StretchRanges low{.odd = {1, 99}, .even = {2, 98}};
const StretchRanges high{.odd = {101, 9999}, .even = {100, 9998}};

StreetCode choose(const Stretches& stretches, const char* number) {
    return streetCode(stretches, "26001", readHouseNumber(number));
}

TEST(StreetCodeTest, TheNumberChoosesTheStretch) {
    const Stretches street{stretch("1", "26001", "", low), stretch("2", "26002", "", high)};
    EXPECT_EQ(choose(street, "5").stretch.postalCode, "26001");
    EXPECT_EQ(choose(street, "150").stretch.postalCode, "26002");
    EXPECT_TRUE(choose(street, "150").isSure());
}

TEST(StreetCodeTest, WithoutNumberAStreetOfSeveralCodesIsNotSure) {
    const Stretches street{stretch("1", "26001", "", low), stretch("2", "26002", "", high)};
    EXPECT_EQ(choose(street, "").certainty, Certainty::NoNumber);
    EXPECT_EQ(choose(street, "S/N").certainty, Certainty::NoNumber);
    EXPECT_EQ(choose(street, "").stretch.key, "1");
}

TEST(StreetCodeTest, WithoutNumberAStreetOfOneCodeIsSure) {
    EXPECT_TRUE(choose({stretch("1", "26001", "", low), stretch("2", "26001", "", high)}, "").isSure());
}

TEST(StreetCodeTest, ANumberThatNoStretchHasIsNotSureEvenWithOneCode) {
    const StreetCode code = choose({stretch("1", "26001", "", low)}, "150");
    EXPECT_EQ(code.certainty, Certainty::NoStretch);
    EXPECT_EQ(code.stretch.key, "1");
}

TEST(StreetCodeTest, ATextThatIsNoNumberIsNotSure) {
    EXPECT_EQ(choose({stretch("1", "26001")}, "bajo").certainty, Certainty::Unclear);
}

TEST(StreetCodeTest, TheIneCodeChoosesAmongStretchesThatHaveTheNumber) {
    const StreetCode code = choose({stretch("1", "26002", "26099"), stretch("2", "26001", "26001")}, "5");
    EXPECT_TRUE(code.isSure());
    EXPECT_EQ(code.stretch.key, "2");
}

TEST(StreetCodeTest, StretchesThatOnlyCarryAnotherIneCodeCount) {
    EXPECT_TRUE(choose({stretch("1", "26002", "26099")}, "5").isSure()) << "the code was guessed";
}

TEST(StreetCodeTest, ABlankIneCodeCountsBesideOnesOwn) {
    const Stretches street{stretch("1", "26001", "26001", low), stretch("2", "26002", "", high)};
    EXPECT_EQ(choose(street, "150").stretch.key, "2");
}

TEST(StreetCodeTest, SeveralPossibleCodesAreNotSure) {
    EXPECT_EQ(choose({stretch("1", "26001"), stretch("2", "26002")}, "5").certainty, Certainty::Several);
    EXPECT_EQ(choose({stretch("1", "26001", "26001"), stretch("2", "26002", "26001")}, "5").certainty,
              Certainty::Several);
}

TEST(StreetCodeTest, AStretchWithoutCodeIsNotSure) {
    EXPECT_EQ(choose({stretch("1", "", "26001")}, "5").certainty, Certainty::NoCode);
}

TEST(StreetCodeTest, OfTypesTheTypedOneIsMeantThenNoneThenAny) {
    const Stretches all{stretch("1", "26001", "", low, "PZ"), stretch("2", "26001", "", low, ""),
                        stretch("3", "26001", "", low, "CL")};
    const auto keys = [](const Stretches& some) {
        std::string text;
        for (const StreetStretch& one : some) {
            text += one.key;
        }
        return text;
    };
    EXPECT_EQ(keys(stretchesOfType(all, "CL")), "3");
    EXPECT_EQ(keys(stretchesOfType(all, "AV")), "2");
    EXPECT_EQ(keys(stretchesOfType({all[0], all[2]}, "AV")), "13");
    EXPECT_EQ(keys(stretchesOfType(all, "")), "123");
}

} // namespace
