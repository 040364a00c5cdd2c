// Names of municipalities and the host's names for them.
#include "import/MunicipalityMatch.h"

#include <gtest/gtest.h>

#include <QStringList>

namespace {

using ambrel::matchMunicipality;
using ambrel::withArticleLast;

std::string moved(const char* name) { return withArticleLast(QString::fromUtf8(name)).toStdString(); }

TEST(MunicipalityMatchTest, ArticleInFrontGoesToTheEndInBrackets) {
    EXPECT_EQ(moved("EL ESCORIAL"), "ESCORIAL (EL)");
    EXPECT_EQ(moved("LA ACEBEDA"), "ACEBEDA (LA)");
    EXPECT_EQ(moved("LOS SANTOS DE LA HUMOSA"), "SANTOS DE LA HUMOSA (LOS)");
    EXPECT_EQ(moved("LAS ROZAS DE MADRID"), "ROZAS DE MADRID (LAS)");
    EXPECT_EQ(moved("EL  BERRUECO"), "BERRUECO (EL)");
}

TEST(MunicipalityMatchTest, OtherNamesStayAsTheyAre) {
    for (const char* const name : {"ELCHE", "LASARTE", "L'ALCORA", "ELS POBLETS", "A CORUÑA", "EL", "",
                                   "el escorial", "PUEBLA DE ALFINDEN, LA", "SAN LORENZO DE EL ESCORIAL"}) {
        EXPECT_EQ(moved(name), name);
    }
}

TEST(MunicipalityMatchTest, NameAsItIsGoesBeforeTheMovedArticle) {
    const QStringList names{"ESCORIAL (EL)", "EL ESCORIAL"};
    const auto match =
        matchMunicipality("EL ESCORIAL", [&](const QString& name) { return names.indexOf(name); });
    EXPECT_EQ(match.index, 1);
    EXPECT_EQ(match.name.toStdString(), "EL ESCORIAL");
}

TEST(MunicipalityMatchTest, NameThatWasLookedForLastIsKeptAlsoWithoutAMatch) {
    const auto match = matchMunicipality("EL ESCORIAL", [](const QString&) { return -1; });
    EXPECT_EQ(match.index, -1);
    EXPECT_EQ(match.name.toStdString(), "ESCORIAL (EL)");
}

} // namespace
