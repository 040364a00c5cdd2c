// The municipality cursors of both data modules: filter, whole name, events.
#include <algorithm>
#include <filesystem>

#include "data/CodPostalesDM.h"
#include "data/MunicipiDM.h"
#include "data/PostalTables.h"
#include "dbase/system/error.h"
#include "dbase/table/table_definition.h"
#include "services/Confamb.h"
#include "services/Ruttb.h"

namespace {

using namespace postal_tests;
using ambrel::test::ansi;

/// Runs with each of the two modules, which show municipalities in the same way.
template<class Module>
class MunicipalityModule : public PostalTables {
protected:
    static std::vector<std::string> wholeNames(Module& module) {
        std::vector<std::string> names;
        for (module.tbMunicipi.first(); !module.tbMunicipi.eof(); module.tbMunicipi.next()) {
            names.push_back(module.tbMunicipiNOMBRE_COMPLETO.text());
        }
        return names;
    }
};

using Modules = ::testing::Types<TDMCodPostales, TDMMunicipi>;
TYPED_TEST_SUITE(MunicipalityModule, Modules);

using Names = std::vector<std::string>;

TYPED_TEST(MunicipalityModule, TableOfSomebodyElseIsRefusedForTheColumnThatItLacks) {
    std::filesystem::remove(this->folder / "MUNICIPI.DBF");
    std::filesystem::remove(this->folder / "MUNICIPI.MDX");
    this->createTable(ambrel::test::defineTable("MUNICIPI", {"CODIGO C5", "NOMBRE C53"}, {"CODIGO"}),
                      {{"28079", "MADRID"}});
    try {
        const TypeParam module;
        FAIL() << "opened";
    } catch (const dbase::Error& error) {
        EXPECT_EQ(error.code(), dbase::ErrorCode::BadLayout);
        EXPECT_NE(std::string(error.what()).find("COD_INE"), std::string::npos) << error.what();
    }
}

TYPED_TEST(MunicipalityModule, EntityShowsItsMunicipalityInBrackets) {
    this->addMunicipalities({{"15036", "15570", "NARON"},
                             {.codIne = "15036", .codPostal = "15578", .nombre = "XUBIA", .entMenor = true}});
    Config.EntidadesMenores = true;
    TypeParam module;
    module.tbMunicipi.open();
    EXPECT_EQ(this->wholeNames(module), (Names{"NARON", "XUBIA --> [NARON]"}));
}

TYPED_TEST(MunicipalityModule, EntityGroupWithoutMunicipalityTakesTheNextMunicipalityInCodeOrder) {
    this->addMunicipalities({{"28003", "28816", "SIGUIENTE"},
                             {.codIne = "28001", .codPostal = "28755", .nombre = "UNA", .entMenor = true},
                             {.codIne = "28001", .codPostal = "28756", .nombre = "OTRA", .entMenor = true},
                             {.codIne = "28002", .codPostal = "28757", .nombre = "AJENA", .entMenor = true}});
    Config.EntidadesMenores = true;
    TypeParam module;
    module.tbMunicipi.open();
    EXPECT_EQ(this->wholeNames(module),
              (Names{"UNA --> [SIGUIENTE]", "OTRA --> [SIGUIENTE]", "AJENA --> [SIGUIENTE]", "SIGUIENTE"}));
}

TYPED_TEST(MunicipalityModule, MunicipalityNeverGetsTheSuffixEvenWhenEntitiesShareItsCode) {
    this->addMunicipalities({{.codIne = "15036", .codPostal = "15578", .nombre = "XUBIA", .entMenor = true},
                             {"15036", "15570", "NARON"},
                             {"15036", "15571", "NARON"}});
    Config.EntidadesMenores = true;
    TypeParam module;
    module.tbMunicipi.open();
    EXPECT_EQ(this->wholeNames(module), (Names{"XUBIA --> [NARON]", "NARON", "NARON"}));
}

TYPED_TEST(MunicipalityModule, EntityAfterTheLastMunicipalityShowsItsNameAlone) {
    this->addMunicipalities(
        {{"28001", "28755", "PRIMERA"},
         {.codIne = "50999", .codPostal = "50999", .nombre = "ULTIMA", .entMenor = true}});
    Config.EntidadesMenores = true;
    TypeParam module;
    module.tbMunicipi.open();
    EXPECT_EQ(this->wholeNames(module), (Names{"PRIMERA", "ULTIMA"}));
}

TYPED_TEST(MunicipalityModule, FilterFollowsTheSwitchAtEachOpening) {
    this->addMunicipalities({{.codIne = "28001", .codPostal = "28755", .nombre = "A", .entMenor = true},
                             {"28001", "28756", "B"},
                             {.codIne = "28002", .codPostal = "28757", .nombre = "C", .entMenor = true}});
    TypeParam module;
    const Names hidden{"B"}, all{"A --> [B]", "B", "C"};
    for (const bool shows : {false, true, false, true, true, false, false}) {
        Config.EntidadesMenores = shows;
        module.tbMunicipi.open();
        EXPECT_EQ(module.tbMunicipiNOMBRE.text(), shows ? "A" : "B") << "it opens on its first row";
        EXPECT_EQ(this->wholeNames(module), shows ? all : hidden);
        Config.EntidadesMenores = !shows;
        EXPECT_EQ(this->wholeNames(module), shows ? all : hidden) << "an open table stays as it is";
        module.tbMunicipi.close();
    }
}

TYPED_TEST(MunicipalityModule, FilterOfAHostStaysWhereEntitiesAreShown) {
    this->addMunicipalities({{"28001", "28755", "A"}, {"08001", "08755", "B"}});
    Config.EntidadesMenores = true;
    TypeParam module;
    module.tbMunicipi.setFilter("COD_PROV='08'");
    module.tbMunicipi.open();
    EXPECT_EQ(this->wholeNames(module), Names{"B"});
}

TYPED_TEST(MunicipalityModule, WholeNameDoesNotMoveTheBrowsedTable) {
    this->addMunicipalities({{.codIne = "28001", .codPostal = "28755", .nombre = "A", .entMenor = true},
                             {"28001", "28756", "B"},
                             {.codIne = "28001", .codPostal = "28757", .nombre = "C", .entMenor = true}});
    Config.EntidadesMenores = true;
    TypeParam module;
    TBIndexa("NOMBRE", module.tbMunicipi);
    module.tbMunicipi.open();
    EXPECT_EQ(module.tbMunicipi.recordNumber(), 1u);
    EXPECT_EQ(module.tbMunicipiNOMBRE_COMPLETO.text(), "A --> [B]");
    module.tbMunicipi.last();
    EXPECT_EQ(module.tbMunicipi.recordNumber(), 3u);
    EXPECT_EQ(module.tbMunicipiNOMBRE_COMPLETO.text(), "C --> [B]");
    EXPECT_TRUE(module.tbMunicipi.prior());
    EXPECT_EQ(module.tbMunicipi.recordNumber(), 2u);
    EXPECT_EQ(module.tbMunicipi.tag(), "NOMBRE");
}

TYPED_TEST(MunicipalityModule, WithoutAutomaticCalculationNothingIsSet) {
    this->addMunicipalities({{"28079", "28001", "MADRID"}});
    TypeParam module;
    module.tbMunicipi.setAutoCalculates(false);
    module.tbMunicipi.open();
    EXPECT_EQ(module.tbMunicipiNOMBRE_COMPLETO.text(), "");
    EXPECT_EQ(module.tbMunicipiNOMBRE.text(), "MADRID");
    module.tbMunicipi.setAutoCalculates(true);
    module.tbMunicipi.refresh();
    EXPECT_EQ(module.tbMunicipiNOMBRE_COMPLETO.text(), "MADRID");
}

TYPED_TEST(MunicipalityModule, WithoutTheSettingNoEntityIsVisibleWhileTheSecondCursorSeesThem) {
    this->addMunicipalities({{.codIne = "15036", .codPostal = "15578", .nombre = "XUBIA", .entMenor = true},
                             {"15036", "15570", "NARON"},
                             {.codIne = "15037", .codPostal = "15579", .nombre = "NEDA", .entMenor = true}});
    TypeParam module;
    module.tbMunicipi.open();
    EXPECT_EQ(module.tbMunicipi.filter(), "ENT_MENOR=False");
    EXPECT_EQ(this->wholeNames(module), Names{"NARON"});
    EXPECT_FALSE(TBBusca(module.tbMunicipi, {{"COD_INE", "15037"}}, exactSearch));
    EXPECT_TRUE(TBBusca(module.tbMunicipiAux, {{"COD_INE", "15037"}}, exactSearch));
    EXPECT_EQ(module.tbMunicipiAux.filter(), "");
}

TYPED_TEST(MunicipalityModule, WithTheSettingEntitiesAreVisibleWithArrowAndBracket) {
    this->addMunicipalities({{.codIne = "15036", .codPostal = "15578", .nombre = "XUBIA", .entMenor = true},
                             {"15036", "15570", "NARÓN"}});
    Config.EntidadesMenores = true;
    TypeParam module;
    module.tbMunicipi.open();
    EXPECT_EQ(module.tbMunicipi.filter(), "");
    EXPECT_EQ(this->wholeNames(module), (Names{ansi("XUBIA --> [NARÓN]"), ansi("NARÓN")}));
}

TYPED_TEST(MunicipalityModule, NamesOfMoreThan30CharactersAreReadAndWrittenWhole) {
    const std::string name(53, 'X');
    this->addMunicipalities({{"28001", "28755", name}});
    TypeParam module;
    module.tbMunicipi.open();
    EXPECT_EQ(module.tbMunicipiNOMBRE.text(), name);
    EXPECT_EQ(module.tbMunicipiNOMBRE_COMPLETO.text(), name);
    module.tbMunicipi.edit();
    module.tbMunicipiNOMBRE.setText(std::string(53, 'Y'));
    module.tbMunicipi.post();
    dbase::Dataset again("DB", "MUNICIPI");
    again.open();
    EXPECT_EQ(again.field("NOMBRE").text(), std::string(53, 'Y'));
}

TYPED_TEST(MunicipalityModule, WholeNameIsCutToItsWidth) {
    const std::string entity(53, 'E'), municipality(53, 'M');
    this->addMunicipalities({{.codIne = "28001", .codPostal = "28755", .nombre = entity, .entMenor = true},
                             {"28001", "28756", municipality}});
    Config.EntidadesMenores = true;
    TypeParam module;
    module.tbMunicipi.open();
    EXPECT_EQ(module.tbMunicipiNOMBRE_COMPLETO.text(), (entity + " --> [" + municipality).substr(0, 100));
}

TYPED_TEST(MunicipalityModule, ConstructorOpensOnlyTheSecondCursorInTheOrderOfCodes) {
    this->addMunicipalities({{"28079", "28001", "MADRID"}, {"01059", "01001", "VITORIA"}});
    TypeParam module;
    EXPECT_TRUE(module.tbMunicipiAux.isOpen());
    EXPECT_EQ(module.tbMunicipiAux.tag(), "COD_INE");
    EXPECT_EQ(module.tbMunicipiAux.field("NOMBRE").text(), "VITORIA");
    EXPECT_FALSE(module.tbMunicipi.isOpen());
    EXPECT_EQ(module.tbMunicipi.tag(), "COD_INE");
}

TYPED_TEST(MunicipalityModule, DestructorClosesTheSecondCursor) {
    std::vector<dbase::DatasetChange> told;
    dbase::Dataset::Subscription listening;
    {
        TypeParam module;
        listening = module.tbMunicipiAux.listen([&](dbase::DatasetChange change) { told.push_back(change); });
    }
    EXPECT_EQ(told, std::vector{dbase::DatasetChange::Closed});
}

TYPED_TEST(MunicipalityModule, TagChangedTwiceThroughTheSameArgumentIsTheOldOne) {
    this->addMunicipalities({{"28079", "28001", "MADRID"}});
    TypeParam module;
    module.tbMunicipi.open();
    std::string tag = "NOMBRE";
    TBIndexa(module.tbMunicipi, tag);
    EXPECT_EQ(tag, "COD_INE");
    EXPECT_EQ(module.tbMunicipi.tag(), "NOMBRE");
    TBIndexa(module.tbMunicipi, tag);
    EXPECT_EQ(module.tbMunicipi.tag(), "COD_INE");
}

TYPED_TEST(MunicipalityModule, MissingTableRaisesThroughTheConstructor) {
    std::filesystem::remove(this->folder / "MUNICIPI.DBF");
    try {
        const TypeParam module;
        FAIL() << "created without its table";
    } catch (const dbase::Error& error) {
        EXPECT_EQ(error.code(), dbase::ErrorCode::NotFound);
    }
}

TYPED_TEST(MunicipalityModule, NameColumnOf30CharactersIsRefused) {
    dbase::TableDefinition narrow = ambrel::municipalityTable();
    std::ranges::find(narrow.columns, "NOMBRE", &dbase::Column::name)->width = 30;
    dbase::createTable(this->folder.path(), narrow, dbase::IfExists::Replace);
    TypeParam module;
    try {
        module.tbMunicipi.open();
        FAIL() << "opened with a narrow NOMBRE";
    } catch (const dbase::Error& error) {
        EXPECT_EQ(error.code(), dbase::ErrorCode::BadLayout);
        EXPECT_NE(std::string(error.what()).find("NOMBRE"), std::string::npos);
    }
}

TEST(DataModuleGlobals, AreEmptyWhileNoRoutineWorks) {
    EXPECT_EQ(DMCodPostales, nullptr);
    EXPECT_EQ(DMMunicipi, nullptr);
}

} // namespace
