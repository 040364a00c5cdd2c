// Municipalities by name: without a list where only one has it, from the list otherwise.
#include <QLineEdit>
#include <QTest>

#include "data/MunicipiDM.h"
#include "data/TableDefinitions.h"
#include "dbase/system/error.h"
#include "lookup/LookupTables.h"
#include "lookup/RutCodPostales.h"
#include "services/Confamb.h"

namespace {

using namespace lookup_tests;
using ambrel::test::ansi;

/// The names that a table shows under its range and filter, in its order; the position stays.
std::vector<std::string> shownNames(dbase::Dataset& table, const dbase::Field& column) {
    const dbase::Bookmark here = table.bookmark();
    std::vector<std::string> names;
    table.first();
    for (bool moved = !table.isEmpty(); moved; moved = table.next()) {
        names.push_back(column.text());
    }
    table.goTo(here);
    return names;
}

class MunicipalityByName : public LookupTables {
protected:
    void SetUp() override {
        addMunicipalities({{"28079", "28001", "MADRID", "N", "0"},
                           {"28079", "28002", "MADRID", "N", "0"},
                           {"28079", "28003", "MADRID", "N", "0"},
                           {"09221", "09500", "MEDINA", "S", "9"},
                           {"47085", "47400", "MEDINA", "N", "8"},
                           {"15036", "15570", "NARÓN", "S", "9"},
                           {"15030", "15001", "PEÑA", "N", "0"}});
    }
    bool search(const QString& wanted) {
        name = wanted;
        return IBuscaMunicipio(name, codIne, postalCode, capital, "Busca");
    }
    QStringList outputs() { return {name, codIne, postalCode, capital}; }

    QString name, codIne = "i", postalCode = "p", capital = "c";
};

TEST_F(MunicipalityByName, NameOfOneMunicipalityIsSettledSilently) {
    ASSERT_TRUE(search(QStringLiteral("NARÓN")));
    EXPECT_EQ(outputs(), QStringList({QStringLiteral("NARÓN"), "15036", "15570", "9"}));
    ASSERT_TRUE(search(QStringLiteral("PEÑA"))) << "the last in the order";
    EXPECT_EQ(codIne, "15030");
}

TEST_F(MunicipalityByName, FirstPostalCodeOfAMunicipalityStands) {
    ASSERT_TRUE(search("MADRID"));
    EXPECT_EQ(outputs(), QStringList({"MADRID", "28079", "28001", "0"}));
}

TEST_F(MunicipalityByName, NameOfTwoMunicipalitiesShowsTheListOfThem) {
    dialogs.expect("TFMunicipiLista", [](QDialog& list) {
        EXPECT_EQ(list.windowTitle(), "Busca");
        EXPECT_EQ(shownNames(DMMunicipi->tbMunicipi, DMMunicipi->tbMunicipiNOMBRE),
                  (std::vector<std::string>{"MEDINA", "MEDINA"}));
        EXPECT_EQ(DMMunicipi->tbMunicipiCOD_INE.text(), "09221");
        QTest::keyClick(list.focusWidget(), Qt::Key_Down);
        accept(list);
    });
    ASSERT_TRUE(search("MEDINA"));
    EXPECT_EQ(outputs(), QStringList({"MEDINA", "47085", "47400", "8"}));
}

TEST_F(MunicipalityByName, LeavingTheListKeepsTheFirstOfSeveral) {
    dialogs.expect("TFMunicipiLista", escape);
    EXPECT_FALSE(search("MEDINA"));
    EXPECT_EQ(outputs(), QStringList({"MEDINA", "09221", "09500", "9"}));
}

TEST_F(MunicipalityByName, AnotherOrderOfTheListShowsAllMunicipalities) {
    dialogs.expect("TFMunicipiLista", [](QDialog& list) {
        ambrel::test::child<QLineEdit>(list, "ECODINE").setFocus();
        type(list, "ECODINE", "15030");
        accept(list);
    });
    ASSERT_TRUE(search("MEDINA"));
    EXPECT_EQ(name, QStringLiteral("PEÑA"));
}

TEST_F(MunicipalityByName, UnknownNameShowsTheWholeListFromTheNearestOn) {
    for (const char* unknown : {"MADRIZ", "MED", "medina", "MEDINA "}) {
        codIne = "i", postalCode = "p", capital = "c";
        dialogs.expect("TFMunicipiLista", [&](QDialog& list) {
            EXPECT_EQ(shownNames(DMMunicipi->tbMunicipi, DMMunicipi->tbMunicipiNOMBRE).size(), 7u) << unknown;
            escape(list);
        });
        EXPECT_FALSE(search(unknown)) << unknown;
        EXPECT_EQ(outputs(), QStringList({unknown, "i", "p", "c"}));
    }
    dialogs.expect("TFMunicipiLista", [](QDialog& list) {
        EXPECT_EQ(DMMunicipi->tbMunicipiCOD_INE.text(), "09221") << "the nearest following name";
        accept(list);
    });
    ASSERT_TRUE(search("MADRIZ"));
    EXPECT_EQ(outputs(), QStringList({"MEDINA", "09221", "09500", "9"}));
}

TEST_F(MunicipalityByName, EmptyNameOrOneAfterTheLastIsNoExactOne) {
    for (const QString& unknown : {QString(), QStringLiteral("ZZ"), QStringLiteral("Ł")}) {
        dialogs.expect("TFMunicipiLista", escape);
        EXPECT_FALSE(search(unknown)) << unknown.toStdString();
        EXPECT_EQ(outputs(), QStringList({unknown, "i", "p", "c"}));
    }
}

TEST_F(MunicipalityByName, EmptyTableHasNoExactName) {
    dbase::createTable(folder.path(), ambrel::municipalityTable(), dbase::IfExists::Replace);
    dialogs.expect("TFMunicipiLista", escape);
    EXPECT_FALSE(search(""));
    EXPECT_EQ(outputs(), QStringList({"", "i", "p", "c"}));
}

TEST_F(MunicipalityByName, NamesOf53CharactersAreExactAndLongerOnesAreNot) {
    const std::string longName(53, 'X');
    addMunicipalities({{"50001", "50001", longName}});
    ASSERT_TRUE(search(QString::fromStdString(longName)));
    EXPECT_EQ(codIne, "50001");
    dialogs.expect("TFMunicipiLista", [](QDialog& list) {
        EXPECT_EQ(DMMunicipi->tbMunicipiCOD_INE.text(), "50001");
        escape(list);
    });
    EXPECT_FALSE(search(QString::fromStdString(longName + "X")));
}

TEST_F(MunicipalityByName, MinorEntityIsNeverFoundWithoutTheSetting) {
    addMunicipalities({{.codIne = "15036", .codPostal = "15578", .nombre = "XUBIA", .entMenor = true}});
    dialogs.expect("TFMunicipiLista", [](QDialog& list) {
        EXPECT_EQ(shownNames(DMMunicipi->tbMunicipi, DMMunicipi->tbMunicipiNOMBRE).size(), 7u);
        escape(list);
    });
    EXPECT_FALSE(search("XUBIA"));
    Config.EntidadesMenores = true;
    EXPECT_TRUE(search("XUBIA"));
    EXPECT_EQ(postalCode, "15578");
}

TEST_F(MunicipalityByName, EntityWithTheNameOfAMunicipalityMakesItAmbiguousOnlyWithTheSetting) {
    addMunicipalities({{.codIne = "28079", .codPostal = "28009", .nombre = "NARÓN", .entMenor = true}});
    EXPECT_TRUE(search(QStringLiteral("NARÓN")));
    Config.EntidadesMenores = true;
    dialogs.expect("TFMunicipiLista", escape);
    EXPECT_FALSE(search(QStringLiteral("NARÓN")));
}

TEST_F(MunicipalityByName, MissingTableRaisesAndTheGlobalIsEmpty) {
    removeTable("MUNICIPI");
    EXPECT_THROW(static_cast<void>(search("MADRID")), dbase::Error);
    EXPECT_EQ(outputs(), QStringList({"MADRID", "i", "p", "c"}));
}

TEST_F(MunicipalityByName, GlobalIsEmptyAfterwardsAlsoWhenThereWasAModule) {
    TDMMunicipi own;
    DMMunicipi = &own;
    EXPECT_TRUE(search("MADRID"));
    EXPECT_EQ(DMMunicipi, nullptr);
    EXPECT_FALSE(own.tbMunicipi.isOpen()) << "the routine works with a module of its own";
}

class AlternativeByName : public LookupTables {
protected:
    void SetUp() override {
        addAlternatives({{"08", "001", "ARRIBA"},
                         {"28", "010", "MEDINA"},
                         {"08", "020", "MEDINA"},
                         {"47", "030", "MEDINA"},
                         {"15", "040", "PEÑA"},
                         {"50", "050", "ULTIMA"}});
    }
    bool search(const QString& wanted, const QString& province, bool range = false) {
        name = wanted;
        provinceCode = province;
        return IBuscaMunicipioMJ(name, provinceCode, municipalityCode, "Busca MJ", range);
    }
    QStringList outputs() { return {name, provinceCode, municipalityCode}; }
    void expectList(const std::vector<std::string>& names, const std::function<void(QDialog&)>& act) {
        dialogs.expect("TFMunicipiListaMJ", [=](QDialog& list) {
            EXPECT_EQ(list.windowTitle(), "Busca MJ");
            EXPECT_EQ(shownNames(DMMunicipi->tbMunicipiMJ, DMMunicipi->tbMunicipiMJPOBLLITE), names);
            act(list);
        });
    }

    const std::vector<std::string> all{"ARRIBA", "MEDINA", "MEDINA", "MEDINA", ansi("PEÑA"), "ULTIMA"};
    const std::vector<std::string> medinas{"MEDINA", "MEDINA", "MEDINA"};
    QString name, provinceCode, municipalityCode = "m";
};

constexpr bool onlyThatName = true;

TEST_F(AlternativeByName, ProvinceCodeOfOneDigitMatchesTwo) {
    ASSERT_TRUE(search("MEDINA", "8"));
    EXPECT_EQ(outputs(), QStringList({"MEDINA", "08", "020"}));
}

TEST_F(AlternativeByName, LastTwoDigitsOfALongerProvinceCodeCount) {
    ASSERT_TRUE(search("MEDINA", "047"));
    EXPECT_EQ(outputs(), QStringList({"MEDINA", "47", "030"}));
}

TEST_F(AlternativeByName, OneMunicipalityIsTakenWhateverTheProvince) {
    ASSERT_TRUE(search(QStringLiteral("PEÑA"), "99"));
    EXPECT_EQ(outputs(), QStringList({QStringLiteral("PEÑA"), "15", "040"}));
    ASSERT_TRUE(search(QStringLiteral("PEÑA"), QStringLiteral("Ł")));
    EXPECT_EQ(provinceCode, "15");
}

TEST_F(AlternativeByName, NameThatSeveralHaveShowsTheWholeList) {
    expectList(all, [](QDialog& list) {
        EXPECT_EQ(DMMunicipi->tbMunicipiMJPOBLLITE.text(), "MEDINA");
        accept(list);
    });
    ASSERT_TRUE(search("MEDINA", "99"));
    EXPECT_EQ(name, "MEDINA");
    EXPECT_EQ(outputs(), QStringList({"MEDINA", "08", "020"})) << "the second, where the walk ended";
}

TEST_F(AlternativeByName, RangeFlagShowsOnlyThatName) {
    expectList(medinas, [](QDialog& list) {
        EXPECT_EQ(DMMunicipi->tbMunicipiMJPOBLCOD.text(), "010");
        QTest::keyClick(list.focusWidget(), Qt::Key_PageDown);
        accept(list);
    });
    ASSERT_TRUE(search("MEDINA", "", onlyThatName));
    EXPECT_EQ(outputs(), QStringList({"MEDINA", "47", "030"}));
}

TEST_F(AlternativeByName, LeavingTheListKeepsTheFirstOfSeveral) {
    expectList(medinas, escape);
    EXPECT_FALSE(search("MEDINA", "99", onlyThatName));
    EXPECT_EQ(outputs(), QStringList({"MEDINA", "28", "010"}));
}

// Deliberate: the step to the next record does not check whether there was one.
TEST_F(AlternativeByName, LastNameInTheOrderCountsAsSharedByAnother) {
    expectList(all, escape);
    EXPECT_FALSE(search("ULTIMA", "99"));
    EXPECT_EQ(outputs(), QStringList({"ULTIMA", "50", "050"}));
    expectList({"ULTIMA"}, accept);
    EXPECT_TRUE(search("ULTIMA", "99", onlyThatName));
    ASSERT_TRUE(search("ULTIMA", "50")) << "the province settles it";
}

TEST_F(AlternativeByName, UnknownNameShowsTheWholeListFromTheNearestOn) {
    for (const bool range : {false, true}) {
        expectList(all, [](QDialog& list) {
            EXPECT_EQ(DMMunicipi->tbMunicipiMJPOBLCOD.text(), "010");
            escape(list);
        });
        EXPECT_FALSE(search("MED", "8", range));
        EXPECT_EQ(outputs(), QStringList({"MED", "8", "m"}));
    }
    expectList(all, accept);
    EXPECT_TRUE(search("MED", "8"));
    EXPECT_EQ(outputs(), QStringList({"MEDINA", "28", "010"}));
}

TEST_F(AlternativeByName, NamesOf41CharactersAreExact) {
    const std::string longName(41, 'Q');
    addAlternatives({{"33", "060", longName}});
    ASSERT_TRUE(search(QString::fromStdString(longName), "33"));
    EXPECT_EQ(municipalityCode, "060");
}

TEST_F(AlternativeByName, MissingTableRaisesAndTheGlobalIsEmpty) {
    removeTable("MUNICIMJ");
    EXPECT_THROW(static_cast<void>(search("MEDINA", "8")), dbase::Error);
    EXPECT_EQ(outputs(), QStringList({"MEDINA", "8", "m"}));
}

} // namespace
