// Searches for streets by name and type.
#include "controller/StreetSearch.h"

#include "controller/StreetSearchKey.h"
#include "controller/StreetTables.h"
#include "services/Ruttb.h"

namespace {

using namespace ambrel;
using namespace postal_tests;

EditedText typed(const std::string& text) { return {.text = text, .caret = text.size()}; }

class FindStreet : public StreetTables {
protected:
    void SetUp() override {
        addStreets({{"1", "ARENAL", "CL", "28013"},
                    {"2", "MAYOR", "AV", "28001"},
                    {"3", "MAYOR", "CL", "28013"},
                    {"4", "SERRANO", "", "28006"},
                    {.codigo1 = "5", .via = "MAYOR", .tipo = "CL", .codPostal = "08001", .provincia = "08"},
                    {.codigo1 = "6", .via = "SOL", .tipo = "CL", .codPostal = "28430", .capital = "9"},
                    {.codigo1 = "7", .via = "LUNA", .tipo = "CL", .codPostal = "28491", .capital = "9"}});
    }
};

TEST_F(FindStreet, ExactSearchGoesToTheStreetOfThatType) {
    TDMCodPostales& tables = openIn("MADRID");
    EXPECT_TRUE(findStreet(tables, "MAYOR", "CL", exactSearch));
    EXPECT_EQ(currentRow(), "3");
}

TEST_F(FindStreet, LooksInTheCurrentMunicipalityOnly) {
    TDMCodPostales& tables = openIn("BARCELONA");
    EXPECT_TRUE(findStreet(tables, "MAYOR", "CL", exactSearch));
    EXPECT_EQ(currentRow(), "5");
    EXPECT_FALSE(findStreet(tables, "ARENAL", "CL", exactSearch));
    EXPECT_EQ(currentRow(), "5") << "a miss moves nothing";
}

TEST_F(FindStreet, OtherNameReachedIsSoughtOnceMoreWithoutTypeAndTheFirstResultCounts) {
    TDMCodPostales& tables = openIn("MADRID");
    EXPECT_FALSE(findStreet(tables, "SERRANO", "CL", exactSearch));
    EXPECT_EQ(currentRow(), "4") << "the street without type";
}

TEST_F(FindStreet, NearestSearchOfAnUnknownTypeComesToTheFirstRowOfTheName) {
    TDMCodPostales& tables = openIn("MADRID");
    EXPECT_TRUE(findStreet(tables, "MAYOR", "ZZ", nearestSearch));
    EXPECT_EQ(currentRow(), "2");
}

TEST_F(FindStreet, NameAlreadyReachedIsNotSoughtAgain) {
    TDMCodPostales& tables = openIn("MADRID");
    goToRow("3");
    EXPECT_FALSE(findStreet(tables, "MAYOR", "ZZ", exactSearch));
    EXPECT_EQ(currentRow(), "3");
}

/// What findStreet must do, spelled out: search with type and, if it ends on another name, again without.
bool searchTwice(TDMCodPostales& tables, const std::string& name, const std::string& type) {
    const StreetPlace place{tables.tbMunicipiCODPOSTAL.text(), tables.tbMunicipiCAPITAL.text()};
    const bool found = TBBusca(tables.tbPostal, paddedStreetSearchKey(place, name, type), nearestSearch);
    if (tables.tbPostalVIA.text() != name) {
        static_cast<void>(TBBusca(tables.tbPostal, paddedStreetSearchKey(place, name, {}), nearestSearch));
    }
    return found;
}

TEST_F(FindStreet, NearestSearchEndsWhereBothSearchesEndWhateverIsTyped) {
    const std::string longName(45, 'X');
    std::vector<StreetRow> rows;
    int key = 100;
    for (const char* name : {"A", "AB", "A B", "ABÑ", "AÑ", "B", longName.c_str()}) {
        for (const char* type : {"", "AV", "CL", "PZ"}) {
            if (++key % 3 != 0) { // not every name has every type
                rows.push_back({std::to_string(key), name, type, "28001"});
            }
        }
    }
    addStreets(rows);
    for (const char* town : {"MADRID", "BARCELONA"}) {
        TDMCodPostales& tables = openIn(town);
        for (const std::string& typedName :
             {std::string(), std::string(" "), std::string("A"), std::string("A "), std::string("AB"),
              std::string("ABC"), ambrel::test::ansi("AÑ"), ambrel::test::ansi("Ñ"), std::string("B"),
              std::string("B  "), std::string("SERRANO"), std::string("MAYO"), std::string("ZZZ"),
              longName.substr(0, 44), longName, longName + "X", longName + " "}) {
            for (const char* type : {"", "AA", "AV", "CL", "PZ", "ZZ"}) {
                const bool found = searchTwice(tables, typedName, type);
                const auto there = std::pair(currentRow(), tables.tbPostal.eof());
                tables.tbPostal.first();
                EXPECT_EQ(findStreet(tables, typedName, type, nearestSearch), found)
                    << '"' << typedName << "\" " << type;
                EXPECT_EQ(std::pair(currentRow(), tables.tbPostal.eof()), there)
                    << '"' << typedName << "\" " << type;
            }
        }
    }
}

TEST_F(FindStreet, InAMunicipalityWithOneCodeAStreetWithAnotherCodeLeavesTheFirstRow) {
    TDMCodPostales& tables = openIn("ALPEDRETE");
    EXPECT_TRUE(findStreet(tables, "LUNA", "CL", exactSearch)) << "the result is that of the search";
    tables.tbPostal.prior();
    EXPECT_TRUE(tables.tbPostal.bof()) << "street of NAVACERRADA";
    EXPECT_TRUE(findStreet(tables, "SOL", "CL", exactSearch));
    EXPECT_EQ(currentRow(), "6");
}

TEST_F(FindStreet, InAMunicipalityWithSeveralCodesAnyCodeIsAHit) {
    TDMCodPostales& tables = openIn("MADRID");
    EXPECT_TRUE(findStreet(tables, "ARENAL", "CL", exactSearch));
    EXPECT_EQ(currentRow(), "1");
}

TEST_F(FindStreet, OtherTagThanViaFindsNothingWithoutSearching) {
    TDMCodPostales& tables = openIn("MADRID");
    tables.tbPostal.setTag("NOMBREVIA");
    goToRow("1");
    EXPECT_FALSE(findInStreets(tables, "MAYOR", "CL", exactSearch));
    EXPECT_EQ(currentRow(), "1");
}

TEST_F(FindStreet, CompletionCarriesTheStreetsKeyAsANumber) {
    TDMCodPostales& tables = openIn("MADRID");
    const auto completion = completeStreet(tables, typed("SER"), "CL");
    ASSERT_TRUE(completion);
    EXPECT_EQ(completion->box.text, "SERRANO");
    EXPECT_EQ(completion->code, 4);
}

TEST_F(FindStreet, CompletionPrefersTheGivenType) {
    TDMCodPostales& tables = openIn("MADRID");
    const auto completion = completeStreet(tables, typed("MAYOR"), "CL");
    ASSERT_TRUE(completion);
    EXPECT_EQ(completion->code, 3);
}

TEST_F(FindStreet, NothingIsCompletedWhereNoStreetBeginsSo) {
    TDMCodPostales& tables = openIn("MADRID");
    EXPECT_FALSE(completeStreet(tables, typed("XYZ"), "CL"));
    EXPECT_FALSE(completeStreet(tables, typed(""), "CL"));
}

class ChooseStreetType : public StreetTables {
protected:
    void SetUp() override {
        addStreets({{"1", "MAYOR", "AV", "28001"},
                    {"2", "MAYOR", "CL", "28013"},
                    {"3", "MAYOR", "PZ", "28012"},
                    {"4", "SERRANO", "CL", "28006"},
                    {"5", "TOLEDO", "CL", "28005"},
                    {"6", "TOLEDO", "PZ", "28004"}});
    }

    /// The row that choosing a type leads to from another row, in Madrid.
    std::string chosenFrom(const std::string& row, const std::string& name, const std::string& type) {
        TDMCodPostales& tables = openIn("MADRID");
        goToRow(row);
        chooseStreetType(tables, name, type);
        return currentRow();
    }
};

TEST_F(ChooseStreetType, GoesForwardToTheRowOfTheType) { EXPECT_EQ(chosenFrom("1", "MAYOR", "PZ"), "3"); }

TEST_F(ChooseStreetType, PreviousRowIsANeighbourToo) { EXPECT_EQ(chosenFrom("6", "TOLEDO", "PZ"), "6"); }

TEST_F(ChooseStreetType, ReturnsWhenNoRowHasTheType) {
    EXPECT_EQ(chosenFrom("2", "MAYOR", "AV"), "2") << "only rows further on are looked at";
    EXPECT_EQ(chosenFrom("5", "TOLEDO", "ZZ"), "5") << "also when the walk reaches the end of the table";
}

TEST_F(ChooseStreetType, StreetOfOneRowStays) { EXPECT_EQ(chosenFrom("4", "SERRANO", "PZ"), "4"); }

TEST_F(ChooseStreetType, StepThatDidNotMoveIsNeitherComparedNorUndone) {
    for (const char* edge : {"1", "6"}) {
        EXPECT_EQ(chosenFrom(edge, "OTRA", "CL"), edge);
    }
    TDMCodPostales& tables = openIn("MADRID");
    tables.tbPostal.setFilter("VIA = \"SERRANO\"");
    chooseStreetType(tables, "SERRANO", "CL");
    EXPECT_EQ(currentRow(), "4");
}

TEST_F(ChooseStreetType, ErrorsOfTheNeighbourStepsAreSwallowed) {
    TDMCodPostales& tables = openIn("MADRID");
    tables.tbPostal.close();
    EXPECT_NO_THROW(chooseStreetType(tables, "MAYOR", "CL"));
}

class GoToStreetOfMunicipality : public StreetTables {
protected:
    void SetUp() override {
        addStreets({{"1", "ARENAL", "CL", "28013"},
                    {"2", "MAYOR", "AV", "28001"},
                    {"3", "MAYOR", "CL", "28013"},
                    {"4", "SERRANO", "", "28006"},
                    {.codigo1 = "5", .via = "BALMES", .tipo = "CL", .codPostal = "08007", .provincia = "08"},
                    {.codigo1 = "6", .via = "MAYOR", .tipo = "CL", .codPostal = "08001", .provincia = "08"}});
    }
};

TEST_F(GoToStreetOfMunicipality, GoesToNameAndType) {
    TDMCodPostales& tables = openIn("BARCELONA");
    goToStreetOfMunicipality(tables, "28079", "MAYOR", "CL");
    EXPECT_EQ(currentRow(), "3");
    EXPECT_EQ(tables.tbMunicipiNOMBRE.text(), "MADRID");
}

TEST_F(GoToStreetOfMunicipality, SecondTryIsTheNameWithoutType) {
    TDMCodPostales& tables = openIn("MADRID");
    goToStreetOfMunicipality(tables, "28079", "MAYOR", "ZZ");
    EXPECT_EQ(currentRow(), "2");
}

TEST_F(GoToStreetOfMunicipality, LastTryIsTheFirstStreetOfTheMunicipality) {
    TDMCodPostales& tables = openIn("MADRID");
    goToStreetOfMunicipality(tables, "28079", "NO EXISTE", "CL");
    EXPECT_EQ(currentRow(), "1");
    goToStreetOfMunicipality(tables, "08019", "NO EXISTE", "CL");
    EXPECT_EQ(currentRow(), "5");
}

TEST_F(GoToStreetOfMunicipality, FirstTryIsUnconditional) {
    TDMCodPostales& tables = openIn("MADRID");
    goToRow("3");
    goToStreetOfMunicipality(tables, "08019", "MAYOR", "CL");
    EXPECT_EQ(currentRow(), "6") << "the row it stood on had the name already, in another municipality";
}

TEST_F(GoToStreetOfMunicipality, UnknownMunicipalityMovesNothing) {
    TDMCodPostales& tables = openIn("MADRID");
    goToRow("3");
    goToStreetOfMunicipality(tables, "99999", "ARENAL", "CL");
    EXPECT_EQ(currentRow(), "3");
    EXPECT_EQ(tables.tbMunicipiNOMBRE.text(), "MADRID");
    EXPECT_EQ(tables.tbMunicipi.tag(), "NOMBRE");
}

TEST_F(GoToStreetOfMunicipality, MunicipalitiesKeepTheirOrder) {
    TDMCodPostales& tables = openIn("MADRID");
    for (const char* tag : {"NOMBRE", "CODPOSTAL", "COD_INE"}) {
        tables.tbMunicipi.setTag(tag);
        goToStreetOfMunicipality(tables, "28079", "MAYOR", "CL");
        EXPECT_EQ(tables.tbMunicipi.tag(), tag);
    }
}

} // namespace
