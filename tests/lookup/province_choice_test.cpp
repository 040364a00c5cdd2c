// Choosing a province or country from the list.
#include <QGroupBox>
#include <QLabel>

#include "dbase/system/error.h"
#include "dialogs/ProvList.h"
#include "lookup/LookupTables.h"
#include "lookup/RutCodPostales.h"
#include "services/Confamb.h"
#include "support/ShownWindow.h"

namespace {

using namespace lookup_tests;

class ProvinceChoice : public LookupTables {
protected:
    void SetUp() override {
        addProvinces({{"008", "BARCELONA"}, {"028", "MADRID"}, {"015", "CORUÑA, A"}, {"001", "FRANCIA", 2}});
        Config.setProvince(28, ambrel::test::ansi("MI PROVINCIA Ñ"), "MADRID");
    }
    int choose(int initialCode) {
        return SeleccionaProvincia(name, group, QStringLiteral("Elija país"), "Residencia", initialCode);
    }

    QString name = "?";
    int group = 1;
};

TEST_F(ProvinceChoice, AcceptedProvinceComesBackWithGroupAndName) {
    dialogs.expect("TFProvList", [](QDialog& list) {
        EXPECT_EQ(list.windowTitle(), QStringLiteral("Elija país"));
        EXPECT_EQ(ambrel::test::child<QGroupBox>(list, "GBTitulo").title(), "Residencia");
        type(list, "E_BUSQUEDA", QStringLiteral("CORUÑA"));
        accept(list);
    });
    EXPECT_EQ(choose(0), 15);
    EXPECT_EQ(name, QStringLiteral("CORUÑA, A"));
    EXPECT_EQ(group, 1);
}

TEST_F(ProvinceChoice, CountryComesBackWithItsGroup) {
    dialogs.expect("TFProvList", [](QDialog& list) {
        type(list, "E_BUSQUEDA", "FRANCIA");
        accept(list);
    });
    group = 7;
    EXPECT_EQ(choose(0), 1);
    EXPECT_EQ(name, "FRANCIA");
    EXPECT_EQ(group, 2);
}

TEST_F(ProvinceChoice, CancellingGivesTheHostsProvinceAndGroupZero) {
    for (const bool byEscape : {true, false}) {
        name = "?";
        group = 1;
        dialogs.expect("TFProvList", [=](QDialog& list) { byEscape ? escape(list) : leave(list); });
        EXPECT_EQ(choose(8), 28);
        EXPECT_EQ(name, QStringLiteral("MI PROVINCIA Ñ"));
        EXPECT_EQ(group, 0);
    }
    dialogs.expect("TFProvList", [](QDialog& list) { list.close(); });
    EXPECT_EQ(choose(0), 28);
}

TEST_F(ProvinceChoice, InitialCodeZeroShowsAllWhateverTheGroup) {
    group = 2;
    dialogs.expect("TFProvList", [](QDialog& list) {
        const auto& provinces = dynamic_cast<TFProvList&>(list).TProvin;
        EXPECT_EQ(provinces.filter(), "");
        EXPECT_EQ(ambrel::test::child<QLabel>(list, "LProvincia_").text(), QStringLiteral("País"));
        escape(list);
    });
    static_cast<void>(choose(0));
}

TEST_F(ProvinceChoice, InitialCodeShowsItsGroupOnly) {
    dialogs.expect("TFProvList", [](QDialog& list) {
        const auto& provinces = dynamic_cast<TFProvList&>(list).TProvin;
        EXPECT_TRUE(provinces.isOpen());
        EXPECT_EQ(provinces.filter(), "GRUPO = 1");
        EXPECT_EQ(ambrel::test::child<QLabel>(list, "LProvincia_").text(), "Provincia");
        accept(list);
    });
    EXPECT_EQ(choose(8), 28) << "the text 8 lies behind every code, so that the list stands on the last";
    EXPECT_EQ(group, 1);
}

TEST_F(ProvinceChoice, ActiveWindowIsTheParent) {
    QWidget window;
    ambrel::test::showActive(window);
    dialogs.expect("TFProvList", [&](QDialog& list) {
        EXPECT_EQ(list.parentWidget(), &window);
        escape(list);
    });
    static_cast<void>(choose(0));
    EXPECT_TRUE(window.findChildren<QDialog*>().isEmpty());
}

TEST_F(ProvinceChoice, MissingTableRaisesAndNothingChanges) {
    removeTable("PROVIN");
    EXPECT_THROW(static_cast<void>(choose(8)), dbase::Error);
    EXPECT_EQ(name, "?");
    EXPECT_EQ(group, 1);
}

} // namespace
