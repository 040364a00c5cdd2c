// Municipalities by name and their own streets, among neighbours with streets of the same names.
#include "address/AddressDirectory.h"

#include "data/PostalTables.h"
#include "services/Confamb.h"

namespace {

using namespace ambrel;

class AddressDirectoryTest : public postal_tests::PostalTables {
protected:
    void SetUp() override {
        addMunicipalities({{"17105", "17830", "MIERES", "S"},
                           {"26001", "26500", "ALTA"},
                           {"26001", "26501", "ALTA"},
                           {"26001", "26502", "ALDEA", "N", "9", true},
                           {"26002", "26510", "BAJA", "S"},
                           {"26003", "26500", "CERCA"},
                           {"09109", "01118", "TREVIÑO"},
                           {"09109", "09215", "TREVIÑO"},
                           {"28079", "28001", "MADRID", "N", "0"},
                           {"33037", "33600", "MIERES"}});
        addStreets({village("1", "MAYOR", "26510"),
                    village("2", "MAYOR", "26501"),
                    village("3", "MAYOR", "26500"),
                    village("4", "NUEVA", "26510"),
                    village("5", "NOGAL", "26502"),
                    village("6", "SOLANA", "26999", "26001"),
                    village("7", "UMBRIA", "26999", "26002"),
                    {.codigo1 = "8",
                     .via = "REAL",
                     .tipo = "CL",
                     .codPostal = "01118",
                     .provincia = "01",
                     .capital = ""},
                    {.codigo1 = "9",
                     .via = "REAL",
                     .tipo = "CL",
                     .codPostal = "09215",
                     .provincia = "09",
                     .capital = "9"},
                    {.codigo1 = "10", .via = "ATOCHA", .tipo = "CL", .codPostal = "28001", .capital = "9"},
                    {.codigo1 = "11", .via = "ATOCHA", .tipo = "RD", .codPostal = "28001", .capital = ""}});
        // ALTA and CERCA share 26500, and the rows say whose they are.
        addStreets({village("20", "IGLESIA", "26500", "26003"), village("21", "IGLESIA", "26500", "26001"),
                    village("22", "PRADO", "26500", "26003"), village("23", "RIO", "26500", "26003"),
                    village("24", "RIO", "26501", "26001"), village("25", "RIO", "26500"),
                    village("26", "SOL", "26500", "26003")});
        postal_tests::StreetRow square = village("27", "SOL", "26501", "26001");
        square.tipo = "PZ";
        addStreets({square});
    }

    static postal_tests::StreetRow village(std::string key, std::string name, std::string postalCode,
                                           std::string ineCode = {}) {
        return {.codigo1 = std::move(key),
                .via = std::move(name),
                .tipo = "CL",
                .codPostal = std::move(postalCode),
                .provincia = "26",
                .capital = "9",
                .ineCode = std::move(ineCode)};
    }

    std::string keys(const std::string& ineCode, const std::string& street) {
        std::string text;
        for (const StreetStretch& one : directory().stretches(*directory().municipality(ineCode), street)) {
            text += one.key + " ";
        }
        return text;
    }
    std::string beginning(const std::string& ineCode, const std::string& text, const std::string& type = {}) {
        const auto found = directory().streetBeginning(*directory().municipality(ineCode), text, type);
        return found ? found->key : std::string();
    }
    AddressDirectory& directory() {
        if (!directory_) {
            directory_.emplace();
        }
        return *directory_;
    }

private:
    std::optional<AddressDirectory> directory_;
};

TEST_F(AddressDirectoryTest, AMunicipalityHasTheCodesOfAllItsRowsHiddenOnesToo) {
    const auto found = directory().municipality("26001");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->postalCodes, (std::vector<std::string>{"26500", "26501", "26502"}));
    EXPECT_EQ(found->name, "ALTA");
    EXPECT_FALSE(found->hasOneCode);
    EXPECT_TRUE(directory().municipality("26002")->hasOneCode);
    EXPECT_FALSE(directory().municipality("26777"));
}

TEST_F(AddressDirectoryTest, AMunicipalityMayHaveCodesOfTwoProvinces) {
    EXPECT_EQ(directory().municipality("09109")->provinces, (std::vector<std::string>{"09", "01"}));
    EXPECT_EQ(keys("09109", "REAL"), "9 8 ");
}

TEST_F(AddressDirectoryTest, NamesakesAreSeveralAndTheRowsOfOneMunicipalityOne) {
    const auto namesakes = directory().municipalitiesNamed("MIERES");
    ASSERT_EQ(namesakes.size(), 2U);
    EXPECT_EQ(namesakes[0].ineCode, "17105");
    EXPECT_EQ(namesakes[1].ineCode, "33037");
    EXPECT_EQ(directory().municipalitiesNamed("ALTA").size(), 1U);
    EXPECT_TRUE(directory().municipalitiesNamed("").empty());
    EXPECT_TRUE(directory().municipalitiesNamed("MIER").empty());
}

TEST_F(AddressDirectoryTest, AMinorEntityIsFoundByNameOnlyWhereEntitiesAreShown) {
    EXPECT_TRUE(directory().municipalitiesNamed("ALDEA").empty());
    Config.EntidadesMenores = true;
    AddressDirectory all;
    ASSERT_EQ(all.municipalitiesNamed("ALDEA").size(), 1U);
    EXPECT_EQ(all.municipalitiesNamed("ALDEA")[0].name, "ALTA");
}

TEST_F(AddressDirectoryTest, AmongRowsOfEqualNameTheMunicipalitysOwnAreTakenWhereverTheyStand) {
    EXPECT_EQ(keys("26001", "MAYOR"), "2 3 ");
    EXPECT_EQ(keys("26002", "MAYOR"), "1 ");
    EXPECT_EQ(keys("26003", "MAYOR"), "3 ");
}

TEST_F(AddressDirectoryTest, WhereAStreetHasRowsOfTheMunicipalityANeighboursWithTheSameCodeDoNotCount) {
    EXPECT_EQ(keys("26001", "IGLESIA"), "21 ");
    EXPECT_EQ(keys("26003", "IGLESIA"), "20 ");
    EXPECT_EQ(beginning("26001", "IGL"), "21");
    EXPECT_EQ(beginning("26003", "IGL"), "20");
    EXPECT_EQ(keys("26001", "RIO"), "24 25 ") << "a blank one may be its own";
    EXPECT_EQ(keys("26001", "SOL"), "27 ") << "its square, not the neighbour's street";
    EXPECT_EQ(beginning("26001", "SOL", "CL"), "27");
    EXPECT_EQ(keys("26001", "PRADO"), "22 ") << "it may have been guessed";
    EXPECT_EQ(beginning("26001", "PRA"), "22");
}

TEST_F(AddressDirectoryTest, ACodeThatMunicipiLacksIsAdmittedByTheIneCode) {
    EXPECT_EQ(keys("26001", "SOLANA"), "6 ");
    EXPECT_EQ(keys("26003", "SOLANA"), "");
    EXPECT_EQ(keys("26002", "UMBRIA"), "") << "where there is only one code, another one is wrong";
}

TEST_F(AddressDirectoryTest, ABlankOrOtherCapitalMarkShutsNoRowOut) {
    EXPECT_EQ(keys("28079", "ATOCHA"), "10 11 ");
}

TEST_F(AddressDirectoryTest, AStreetOfAMinorEntityIsItsMunicipalitys) {
    EXPECT_EQ(keys("26001", "NOGAL"), "5 ");
}

TEST_F(AddressDirectoryTest, BeginningsLeadToOwnStreetsAlone) {
    EXPECT_EQ(beginning("26001", "N"), "5") << "NOGAL";
    EXPECT_EQ(beginning("26002", "N"), "4") << "NUEVA";
    EXPECT_EQ(beginning("26003", "N"), "");
    EXPECT_EQ(beginning("26001", "MAYOR"), "2");
    EXPECT_EQ(beginning("26001", ""), "");
}

TEST_F(AddressDirectoryTest, OfRowsOfOneNameTheTypedTypeComesFirst) {
    EXPECT_EQ(beginning("28079", "AT", "RD"), "11");
    EXPECT_EQ(beginning("28079", "AT", "CL"), "10");
    EXPECT_EQ(beginning("28079", "AT", "PZ"), "10");
}

TEST_F(AddressDirectoryTest, NamesLongerThanTheirColumnAreUnknown) {
    EXPECT_EQ(keys("26001", std::string(46, 'A')), "");
    EXPECT_TRUE(directory().municipalitiesNamed(std::string(54, 'A')).empty());
}

} // namespace
