// NOMBREPROV of the alternative municipality list, and the data sources of the modules.
#include "data/MunicipiDM.h"
#include "data/PostalTables.h"
#include "data/ViasDM.h"

namespace {

using namespace postal_tests;

class ProvinceNameField : public PostalTables {
protected:
    void SetUp() override {
        addProvinces({{"001", "ALAVA"}, {"008", "BARCELONA"}, {"028", "MADRID"}, {"050", "ZARAGOZA"}});
    }

    std::string nameFor(const std::string& province) {
        addAlternativeMunicipalities({{province, "PUEBLO"}});
        TDMMunicipi module;
        module.tbMunicipiMJ.open();
        return module.tbMunicipiMJNOMBREPROV.text();
    }
};

TEST_F(ProvinceNameField, IsTheProvinceOfTheCode) { EXPECT_EQ(nameFor("028"), "MADRID"); }

TEST_F(ProvinceNameField, CodeThatIsNotThereShowsTheNextProvince) { EXPECT_EQ(nameFor("010"), "MADRID"); }

TEST_F(ProvinceNameField, CodeAfterTheLastOneShowsTheLastProvince) { EXPECT_EQ(nameFor("099"), "ZARAGOZA"); }

TEST_F(ProvinceNameField, TwoDigitTextIsSoughtLiterallyAmongCodesOfThreeCharacters) {
    EXPECT_EQ(nameFor("08"), "ZARAGOZA")
        << "\"08\" stands behind every code that begins with 0 and a lower digit";
}

TEST_F(ProvinceNameField, CursorIsClosedBetweenRecords) {
    addAlternativeMunicipalities({{"028", "A"}, {"008", "B"}});
    TDMMunicipi module;
    std::vector<dbase::DatasetChange> told;
    const auto listening = module.tbProvinAux.listen([&](dbase::DatasetChange change) {
        if (change == dbase::DatasetChange::Opened || change == dbase::DatasetChange::Closed) {
            told.push_back(change);
        }
    });
    module.tbMunicipiMJ.open();
    EXPECT_FALSE(module.tbProvinAux.isOpen());
    told.clear();
    ASSERT_TRUE(module.tbMunicipiMJ.next());
    EXPECT_EQ(module.tbMunicipiMJNOMBREPROV.text(), "BARCELONA");
    EXPECT_FALSE(module.tbProvinAux.isOpen());
    EXPECT_EQ(told, (std::vector{dbase::DatasetChange::Opened, dbase::DatasetChange::Closed}));
}

TEST_F(ProvinceNameField, CursorThatWasFoundOpenIsClosedBetweenRecordsToo) {
    addAlternativeMunicipalities({{"028", "A"}});
    TDMMunicipi module;
    module.tbProvinAux.open();
    module.tbMunicipiMJ.open();
    EXPECT_EQ(module.tbMunicipiMJNOMBREPROV.text(), "MADRID");
    EXPECT_FALSE(module.tbProvinAux.isOpen());
}

TEST_F(ProvinceNameField, WithoutAutomaticCalculationTheCursorIsOpenedAndClosedAndNothingSet) {
    addAlternativeMunicipalities({{"028", "A"}});
    TDMMunicipi module;
    bool opened = false;
    const auto listening = module.tbProvinAux.listen(
        [&](dbase::DatasetChange change) { opened = opened || change == dbase::DatasetChange::Opened; });
    module.tbMunicipiMJ.setAutoCalculates(false);
    module.tbMunicipiMJ.open();
    EXPECT_TRUE(opened);
    EXPECT_FALSE(module.tbProvinAux.isOpen());
    EXPECT_EQ(module.tbMunicipiMJNOMBREPROV.text(), "");
}

TEST_F(ProvinceNameField, ListIsInTheOrderOfNames) {
    addAlternativeMunicipalities({{"028", "ZARZALEJO"}, {"008", "ABRERA"}});
    TDMMunicipi module;
    module.tbMunicipiMJ.open();
    EXPECT_EQ(module.tbMunicipiMJPOBLLITE.text(), "ABRERA");
}

TEST_F(ProvinceNameField, DataSourcesTellOfTheirTables) {
    addMunicipalities({{"01059", "01001", "VITORIA"}, {"28079", "28001", "MADRID"}});
    TDMMunicipi module;
    EXPECT_EQ(module.dsMunicipi.dataset(), &module.tbMunicipi);
    EXPECT_EQ(module.dsMunicipiMJ.dataset(), &module.tbMunicipiMJ);
    module.tbMunicipi.open();
    int moves = 0;
    const auto listening = module.dsMunicipi.listen(
        [&](dbase::DatasetChange change) { moves += change == dbase::DatasetChange::Moved ? 1 : 0; });
    ASSERT_TRUE(module.tbMunicipi.next());
    EXPECT_EQ(moves, 1);
}

class StreetTypeModule : public PostalTables {};

TEST_F(StreetTypeModule, OpensTheTypesInTheOrderOfCodes) {
    dbase::Dataset types("DB", "TIPO_VIA");
    types.open();
    for (const auto& [code, name] : {std::pair{"PZ", "PLAZA"}, {"AV", "AVENIDA"}}) {
        types.append();
        types.field("CODIGO").setText(code);
        types.field("NOMBRE").setText(name);
        types.post();
    }
    TDMVias module;
    EXPECT_FALSE(module.tbTipo_Via.isOpen());
    EXPECT_EQ(module.dsTipo_Via.dataset(), &module.tbTipo_Via);
    module.tbTipo_Via.open();
    EXPECT_EQ(module.tbTipo_ViaCODIGO.text(), "AV");
    EXPECT_EQ(module.tbTipo_ViaNOMBRE.text(), "AVENIDA");
    EXPECT_EQ(module.tbTipo_ViaNOMBRE_CAT.text(), "");
    EXPECT_EQ(DMVias, nullptr);
}

} // namespace
