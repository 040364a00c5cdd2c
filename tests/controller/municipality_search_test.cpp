// Searches for municipalities in each order.
#include "controller/MunicipalitySearch.h"

#include "controller/StreetTables.h"
#include "services/Ruttb.h"

namespace {

using namespace ambrel;
using namespace postal_tests;

EditedText typed(const std::string& text) { return {.text = text, .caret = text.size()}; }

class MunicipalitySearch : public StreetTables {};

TEST_F(MunicipalitySearch, SearchesByTheColumnOfTheActiveTag) {
    TDMCodPostales& tables = openIn("MADRID");
    EXPECT_TRUE(findMunicipality(tables, "ALPEDRETE", exactSearch));
    tables.tbMunicipi.setTag("COD_INE");
    EXPECT_TRUE(findMunicipality(tables, "28093", exactSearch));
    EXPECT_EQ(tables.tbMunicipiNOMBRE.text(), "NAVACERRADA");
    tables.tbMunicipi.setTag("CODPOSTAL");
    EXPECT_TRUE(findMunicipality(tables, "08001", exactSearch));
    EXPECT_EQ(tables.tbMunicipiNOMBRE.text(), "BARCELONA");
}

TEST_F(MunicipalitySearch, OtherOrderFindsNothingWithoutSearching) {
    TDMCodPostales& tables = openIn("MADRID");
    tables.tbMunicipi.setTag("");
    EXPECT_FALSE(findMunicipality(tables, "BARCELONA", nearestSearch));
    EXPECT_EQ(tables.tbMunicipiNOMBRE.text(), "MADRID");
    EXPECT_EQ(municipalityText(tables), "");
    EXPECT_FALSE(completeMunicipality(tables, typed("MAD")));
}

TEST_F(MunicipalitySearch, CompletesFromTheNearestMunicipality) {
    TDMCodPostales& tables = openIn("BARCELONA");
    const auto completion = completeMunicipality(tables, typed("MAD"));
    ASSERT_TRUE(completion);
    EXPECT_EQ(completion->box.text, "MADRID");
    EXPECT_EQ(completion->box.caret, 3u);
    EXPECT_EQ(completion->code, 28079);
    EXPECT_EQ(tables.tbMunicipiNOMBRE.text(), "MADRID");
}

TEST_F(MunicipalitySearch, CompletesCodesInTheOrderOfCodes) {
    TDMCodPostales& tables = openIn("MADRID");
    tables.tbMunicipi.setTag("CODPOSTAL");
    const auto byPostalCode = completeMunicipality(tables, typed("284"));
    ASSERT_TRUE(byPostalCode);
    EXPECT_EQ(byPostalCode->box.text, "28430");
    EXPECT_EQ(byPostalCode->code, 28010);
    tables.tbMunicipi.setTag("COD_INE");
    const auto byIneCode = completeMunicipality(tables, typed("0"));
    ASSERT_TRUE(byIneCode);
    EXPECT_EQ(byIneCode->box.text, "08019");
    EXPECT_EQ(byIneCode->code, 8019);
}

TEST_F(MunicipalitySearch, NothingIsCompletedWhereNoNameBeginsSo) {
    TDMCodPostales& tables = openIn("MADRID");
    EXPECT_FALSE(completeMunicipality(tables, typed("MADX")));
    EXPECT_FALSE(completeMunicipality(tables, typed("ZZZ"))) << "behind the last name";
    EXPECT_FALSE(completeMunicipality(tables, typed("")));
}

TEST_F(MunicipalitySearch, OnlyPostalCodeIsThatOfAMunicipalityMarkedS) {
    EXPECT_EQ(onlyPostalCode(openIn("ALPEDRETE")), "28430");
    EXPECT_EQ(onlyPostalCode(openIn("MADRID")), std::nullopt);
}

} // namespace
