// The municipality of a street.
#include "controller/MunicipalityOfStreet.h"

#include <gtest/gtest.h>

#include <optional>

#include "controller/ProvinceStreets.h"
#include "data/PostalTables.h"

namespace {

using namespace postal_tests;

/// 28001 is shared by a locality, the capital and another town; 28900 is the last code of all.
class MunicipalityOfStreet : public PostalTables {
protected:
    MunicipalityOfStreet() {
        addMunicipalities({{"28800", "28001", "ARRABAL", "N", "9"},
                           {"28079", "28001", "MADRID", "N", "0"},
                           {"28801", "28001", "ZARZALEJO", "N", "9"},
                           {"28010", "28430", "ALPEDRETE", "S", "1"},
                           {"28011", "28430", "LOS NEGRALES", "S", "1"},
                           {"28093", "28900", "NAVACERRADA", "S", "1"},
                           {"28094", "28900", "EL VENTORRILLO", "S", "1"}});
    }

    /// Opens the tables with one street as the current row.
    TDMCodPostales& openOn(const StreetRow& street) {
        addStreets({street});
        tables_.emplace();
        tables_->tbMunicipi.setTag("NOMBRE");
        tables_->tbMunicipi.open();
        tables_->tbPostal.open();
        return *tables_;
    }
    [[nodiscard]] std::string municipality() const { return tables_->tbMunicipiNOMBRE.text(); }

    static StreetRow street(const std::string& codPostal, const std::string& capital,
                            const std::string& via = "MAYOR") {
        return {"1", via, "CL", codPostal, {1, 9999}, {2, 9998}, codPostal.substr(0, 2), capital};
    }

private:
    std::optional<TDMCodPostales> tables_;
};

TEST_F(MunicipalityOfStreet, CapitalAmongTheMunicipalitiesOfTheCodeIsShown) {
    EXPECT_EQ(ambrel::municipalityOfStreet(openOn(street("28001", "0")), "28"), "MADRID");
    EXPECT_EQ(municipality(), "MADRID");
}

TEST_F(MunicipalityOfStreet, LastMunicipalityOfTheCodeIsShownWhenNoneIsACapital) {
    EXPECT_EQ(ambrel::municipalityOfStreet(openOn(street("28430", "1")), "28"), "LOS NEGRALES");
}

TEST_F(MunicipalityOfStreet, WalkToTheCapitalEndsAtTheEndOfTheTable) {
    EXPECT_EQ(ambrel::municipalityOfStreet(openOn(street("28900", "1")), "28"), "EL VENTORRILLO");
}

TEST_F(MunicipalityOfStreet, LocalityIsShownWhereTheStreetHasItsName) {
    EXPECT_EQ(ambrel::municipalityOfStreet(openOn(street("28001", "9", "ZARZALEJO")), "28"), "ZARZALEJO");
}

TEST_F(MunicipalityOfStreet, LeadingBlanksOfTheStreetsNameDoNotCount) {
    EXPECT_EQ(ambrel::municipalityOfStreet(openOn(street("28001", "9", "  ZARZALEJO")), "28"), "ZARZALEJO");
}

TEST_F(MunicipalityOfStreet, FirstMunicipalityOfTheCodeIsShownWhereNoLocalityHasTheName) {
    EXPECT_EQ(ambrel::municipalityOfStreet(openOn(street("28001", "9")), "28"), "ARRABAL");
    EXPECT_EQ(municipality(), "ARRABAL");
}

TEST_F(MunicipalityOfStreet, FirstMunicipalityIsShownAlsoWhenTheWalkReachesTheEndOfTheTable) {
    EXPECT_EQ(ambrel::municipalityOfStreet(openOn(street("28900", "9")), "28"), "NAVACERRADA");
}

TEST_F(MunicipalityOfStreet, StreetWhosePostalCodeNoMunicipalityHasShowsItsOwnName) {
    EXPECT_EQ(ambrel::municipalityOfStreet(openOn(street("28999", "1", "PERDIDA")), "28"), "PERDIDA");
}

TEST_F(MunicipalityOfStreet, NothingIsShownForAnotherProvinceOrWithoutPostalCode) {
    TDMCodPostales& tables = openOn(street("28430", "1"));
    EXPECT_EQ(ambrel::municipalityOfStreet(tables, "08"), "");
    EXPECT_EQ(ambrel::municipalityOfStreet(tables, ""), "");
    tables.tbPostal.edit();
    tables.tbPostalCODPOSTAL.clear();
    EXPECT_EQ(ambrel::municipalityOfStreet(tables, ""), "");
    tables.tbPostal.cancel();
}

TEST_F(MunicipalityOfStreet, TagOfTheMunicipalitiesIsRestored) {
    TDMCodPostales& tables = openOn(street("28430", "1"));
    EXPECT_NE(ambrel::municipalityOfStreet(tables, "28"), "");
    EXPECT_EQ(tables.tbMunicipi.tag(), "NOMBRE");
}

TEST_F(MunicipalityOfStreet, AcceptedStreetOfACapitalGoesToTheCapital) {
    TDMCodPostales& tables = openOn(street("28001", "0"));
    ambrel::goToMunicipalityOfStreet(tables);
    EXPECT_EQ(municipality(), "MADRID");
    EXPECT_EQ(tables.tbMunicipi.tag(), "CODPOSTAL");
}

TEST_F(MunicipalityOfStreet, AcceptedStreetOfACapitalWithoutOneInItsCodeGoesToTheLastOfTheCode) {
    ambrel::goToMunicipalityOfStreet(openOn(street("28430", "0")));
    EXPECT_EQ(municipality(), "LOS NEGRALES");
}

TEST_F(MunicipalityOfStreet, AcceptedStreetOfATownGoesToTheFirstOfItsCode) {
    ambrel::goToMunicipalityOfStreet(openOn(street("28430", "1")));
    EXPECT_EQ(municipality(), "ALPEDRETE");
}

TEST_F(MunicipalityOfStreet, AcceptedStreetWithoutMunicipalityGoesToTheFirstOfItsProvince) {
    ambrel::goToMunicipalityOfStreet(openOn(street("28999", "0")));
    EXPECT_EQ(municipality(), "ARRABAL");
}

// --- Provinces

TEST_F(MunicipalityOfStreet, ProvinceIsFoundByItsNameAndItsFirstMunicipalityBecomesCurrent) {
    addProvinces({{"028", "MADRID"}, {"008", "BARCELONA"}});
    addMunicipalities({{"08019", "08001", "BARCELONA", "N", "0"}, {"50001", "50001", "ABANTO"}});
    TDMCodPostales& tables = openOn(street("28430", "1"));
    dbase::Dataset provinces("DB", "PROVIN.DBF", "CODIGO");
    ambrel::goToFirstMunicipality(tables, provinces, "BARCELONA");
    EXPECT_EQ(municipality(), "BARCELONA");
    ambrel::goToFirstMunicipality(tables, provinces, "MADRID");
    EXPECT_EQ(municipality(), "ARRABAL");
    EXPECT_EQ(tables.tbMunicipi.tag(), "CODPOSTAL");
    EXPECT_FALSE(provinces.isOpen());
}

TEST_F(MunicipalityOfStreet, ProvinceNameThatIsNotFoundStandsFor00000) {
    addMunicipalities({{"00000", "00001", "SIN PROVINCIA"}});
    TDMCodPostales& tables = openOn(street("28430", "1"));
    dbase::Dataset provinces("DB", "PROVIN.DBF", "CODIGO");
    ambrel::goToFirstMunicipality(tables, provinces, "NINGUNA");
    EXPECT_EQ(municipality(), "SIN PROVINCIA");
}

TEST_F(MunicipalityOfStreet, SpanishProvincesAreThoseOfGroup1InTheOrderOfTheTag) {
    addProvinces({{"028", "MADRID"}, {"110", "FRANCIA", 3}, {"008", "BARCELONA"}});
    dbase::Dataset provinces("DB", "PROVIN.DBF", "ALFABETICO");
    std::vector<std::string> names;
    for (const ambrel::Province& province : ambrel::spanishProvinces(provinces)) {
        names.push_back(province.name + province.code);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"BARCELONA008", "MADRID028"}));
    EXPECT_FALSE(provinces.isOpen());
}

} // namespace
