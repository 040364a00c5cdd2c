// The controller apart from its boxes: lifetime, orders, searches.
#include "controller/ClasCodPostales.h"

#include <QObject>
#include <filesystem>

#include "controller/StreetTables.h"
#include "dbase/system/error.h"

namespace {

using namespace postal_tests;

class Controller : public StreetTables {
protected:
    void SetUp() override {
        addStreets(
            {{"1", "ARENAL", "CL", "28013"},
             {"2", "MAYOR", "CL", "28001"},
             {.codigo1 = "3", .via = "BALMES", .tipo = "CL", .codPostal = "08007", .provincia = "08"}});
    }
};

TEST_F(Controller, ConstructorOpensMunicipalitiesByNameAndStreetsByStreet) {
    QObject owner;
    const TClassCodPostales controller(&owner);
    EXPECT_TRUE(controller.DM->tbMunicipi.isOpen());
    EXPECT_EQ(controller.DM->tbMunicipi.tag(), "NOMBRE");
    EXPECT_TRUE(controller.DM->tbPostal.isOpen());
    EXPECT_EQ(controller.DM->tbPostal.tag(), "VIA");
    EXPECT_EQ(controller.Padre, nullptr) << "the host assigns it";
    EXPECT_EQ(DMCodPostales, nullptr) << "each controller keeps a module of its own";
}

TEST_F(Controller, DestructorClosesMunicipalitiesThenStreets) {
    std::vector<std::string> closed;
    std::vector<dbase::Dataset::Subscription> listening;
    {
        const TClassCodPostales controller;
        for (const auto& [table, name] : {std::pair{&controller.DM->tbMunicipi, "MUNICIPI"},
                                          {&controller.DM->tbPostal, "POSTAL"},
                                          {&controller.DM->tbMunicipiAux, "AUX"}}) {
            listening.push_back(table->listen([&closed, name = name](dbase::DatasetChange change) {
                if (change == dbase::DatasetChange::Closed) {
                    closed.emplace_back(name);
                }
            }));
        }
    }
    EXPECT_EQ(closed, (std::vector<std::string>{"MUNICIPI", "POSTAL", "AUX"}));
}

TEST_F(Controller, TableThatCannotBeOpenedRaisesThroughTheConstructor) {
    std::filesystem::remove(folder / "POSTAL.DBF");
    EXPECT_THROW(TClassCodPostales(), dbase::Error);
}

TEST_F(Controller, TwoControllersDoNotMoveEachOther) {
    TClassCodPostales one, other;
    ASSERT_TRUE(one.BuscaPorNombreMunicipi("MADRID", true));
    ASSERT_TRUE(other.BuscaPorNombreMunicipi("BARCELONA", true));
    EXPECT_EQ(one.DM->tbMunicipiNOMBRE.text(), "MADRID");
}

TEST_F(Controller, SpaceOfNoneOrLessIsEmpty) {
    EXPECT_EQ(TClassCodPostales::space(0), "");
    EXPECT_EQ(TClassCodPostales::space(-3), "");
    EXPECT_EQ(TClassCodPostales::space(3), "   ");
}

TEST_F(Controller, OrdersChangeTheTagAndKeepTheMunicipality) {
    TClassCodPostales controller;
    ASSERT_TRUE(controller.BuscaPorNombreMunicipi("MADRID", true));
    controller.OrdenaPorCodIneMunicipi();
    EXPECT_EQ(controller.DM->tbMunicipi.tag(), "COD_INE");
    controller.OrdenaPorCodPostalMunicipi();
    EXPECT_EQ(controller.DM->tbMunicipi.tag(), "CODPOSTAL");
    controller.OrdenaPorNombreMunicipi();
    EXPECT_EQ(controller.DM->tbMunicipi.tag(), "NOMBRE");
    EXPECT_EQ(controller.DM->tbMunicipiNOMBRE.text(), "MADRID");
    controller.DM->tbPostal.setTag("NOMBREVIA");
    controller.OrdenaPorViaPostal();
    EXPECT_EQ(controller.DM->tbPostal.tag(), "VIA");
}

TEST_F(Controller, OrderThatIsActiveAlreadyDoesNothing) {
    TClassCodPostales controller;
    controller.DM->tbMunicipi.setRange({{"NOMBRE", "B"}}, {{"NOMBRE", "C"}});
    controller.OrdenaPorNombreMunicipi();
    controller.DM->tbMunicipi.last();
    EXPECT_EQ(controller.DM->tbMunicipiNOMBRE.text(), "BARCELONA") << "the range stays";
}

TEST_F(Controller, SearchesAreExactOrNearest) {
    TClassCodPostales controller;
    EXPECT_TRUE(controller.BuscaPorNombreMunicipi("MADRID", true));
    EXPECT_FALSE(controller.BuscaPorNombreMunicipi("MADRIX", true));
    EXPECT_EQ(controller.DM->tbMunicipiNOMBRE.text(), "MADRID") << "an exact miss moves nothing";
    EXPECT_TRUE(controller.BuscaPorNombreMunicipi("MADRIX", false));
    EXPECT_EQ(controller.DM->tbMunicipiNOMBRE.text(), "NAVACERRADA");
    EXPECT_FALSE(controller.BuscaPorNombreMunicipi("ZZZ", false)) << "behind the last one";
    controller.OrdenaPorCodIneMunicipi();
    EXPECT_TRUE(controller.BuscaPorCodIneMunicipi("28010", true));
    EXPECT_EQ(controller.DM->tbMunicipiNOMBRE.text(), "ALPEDRETE");
    controller.OrdenaPorCodPostalMunicipi();
    EXPECT_TRUE(controller.BuscaPorCodPostalMunicipi("08001", true));
    EXPECT_EQ(controller.DM->tbMunicipiNOMBRE.text(), "BARCELONA");
}

TEST_F(Controller, BuscaEnMunicipiFollowsTheActiveTag) {
    TClassCodPostales controller;
    EXPECT_TRUE(controller.BuscaEnMunicipi("MADRID", true));
    controller.OrdenaPorCodIneMunicipi();
    EXPECT_TRUE(controller.BuscaEnMunicipi("28010", true));
    controller.OrdenaPorCodPostalMunicipi();
    EXPECT_TRUE(controller.BuscaEnMunicipi("28491", true));
    EXPECT_EQ(controller.DM->tbMunicipiNOMBRE.text(), "NAVACERRADA");
    controller.DM->tbMunicipi.setTag("");
    EXPECT_FALSE(controller.BuscaEnMunicipi("MADRID", false));
    EXPECT_EQ(controller.DM->tbMunicipiNOMBRE.text(), "NAVACERRADA") << "other orders search nothing";
}

TEST_F(Controller, AccentedNamesAreFound) {
    addMunicipalities({{"15030", "15001", "CORUÑA, A"}});
    TClassCodPostales controller;
    EXPECT_TRUE(controller.BuscaPorNombreMunicipi(QStringLiteral("CORUÑA, A"), true));
}

TEST_F(Controller, TextThatTheCodePageCannotHoldMatchesNothing) {
    TClassCodPostales controller;
    ASSERT_TRUE(controller.BuscaPorNombreMunicipi("MADRID", true));
    EXPECT_FALSE(controller.BuscaPorNombreMunicipi(QStringLiteral("Ł"), false));
    EXPECT_FALSE(controller.BuscaEnMunicipi(QStringLiteral("Ł"), false));
    EXPECT_FALSE(controller.BuscaEnPostal(QStringLiteral("Ł"), "CL", false));
    EXPECT_FALSE(controller.BuscaEnPostal("MAYOR", QStringLiteral("Ł"), false));
    EXPECT_EQ(controller.DM->tbMunicipiNOMBRE.text(), "MADRID");
    EXPECT_EQ(controller.DM->tbPostalCODIGO1.text(), "3") << "POSTAL has not moved from its first row";
}

TEST_F(Controller, BuscaEnPostalNeedsTheOrderByStreet) {
    TClassCodPostales controller;
    ASSERT_TRUE(controller.BuscaPorNombreMunicipi("MADRID", true));
    EXPECT_TRUE(controller.BuscaEnPostal("MAYOR", "CL", true));
    EXPECT_EQ(controller.DM->tbPostalCODIGO1.text(), "2");
    controller.DM->tbPostal.setTag("CODIGO1");
    EXPECT_FALSE(controller.BuscaEnPostal("ARENAL", "CL", true));
    EXPECT_EQ(controller.DM->tbPostalCODIGO1.text(), "2");
}

TEST_F(Controller, SituaPrimerViaMunicipioGoesToTheStoredAddress) {
    TClassCodPostales controller;
    controller.SituaPrimerViaMunicipio("28079", "MAYOR", "CL");
    EXPECT_EQ(controller.DM->tbPostalCODIGO1.text(), "2");
    EXPECT_EQ(controller.DM->tbMunicipiNOMBRE.text(), "MADRID");
    EXPECT_EQ(controller.DM->tbMunicipi.tag(), "NOMBRE");
    controller.SituaPrimerViaMunicipio("08019", "NINGUNA", "");
    EXPECT_EQ(controller.DM->tbPostalCODIGO1.text(), "3");
}

TEST_F(Controller, LocalizaProvinciaNamesTheProvinceOfAPostalCode) {
    addProvinces({{"008", "BARCELONA"}, {"001", "ÁLAVA"}});
    EXPECT_EQ(LocalizaProvincia("08001"), "BARCELONA");
    EXPECT_EQ(LocalizaProvincia("01001"), QStringLiteral("ÁLAVA"));
    EXPECT_EQ(LocalizaProvincia("28001"), "");
    EXPECT_EQ(LocalizaProvincia(QStringLiteral("Ł")), "");
}

} // namespace
