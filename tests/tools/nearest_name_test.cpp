// The name that a mistyped one is taken for.
#include "tools/nearest_name.h"

#include <gtest/gtest.h>

namespace ambcp {
namespace {

const std::vector<std::string> names{"crear", "cargar", "comprobar"};

TEST(NearestName, ForgivesALetterWrongMissingTooManyOrExchanged) {
    for (const char* typed : {"cargur", "carga", "cargarr", "cagrar", "CARGAR", "carggar"}) {
        EXPECT_EQ(nearestName(typed, names), "cargar") << typed;
    }
}

TEST(NearestName, TakesABeginningForTheWholeName) {
    EXPECT_EQ(nearestName("com", names), "comprobar");
    EXPECT_EQ(nearestName("c", names), "crear"); // the first of several
}

TEST(NearestName, TakesTheOneWithTheFewestSlips) {
    EXPECT_EQ(nearestName("carear", {"crear", "cargar", "carear"}), "carear");
    EXPECT_EQ(nearestName("crerar", names), "crear");
}

TEST(NearestName, IsNoneWhenNothingIsNear) {
    EXPECT_EQ(nearestName("xyz", names), std::nullopt);
    EXPECT_EQ(nearestName("", names), std::nullopt);
    EXPECT_EQ(nearestName("cargar", {}), std::nullopt);
    EXPECT_EQ(nearestName(std::string(5000, 'c'), names), std::nullopt);
}

} // namespace
} // namespace ambcp
