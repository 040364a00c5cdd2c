// Municipalities from the lists that are always shown.
#include <QLineEdit>

#include "data/MunicipiDM.h"
#include "dbase/system/error.h"
#include "lookup/LookupTables.h"
#include "lookup/ModuleScope.h"
#include "lookup/RutCodPostales.h"
#include "services/Confamb.h"
#include "support/ShownWindow.h"

namespace {

using namespace lookup_tests;
using ambrel::test::ansi;

class MunicipalityList : public LookupTables {
protected:
    void SetUp() override {
        addProvinces({{"008", "BARCELONA"}, {"015", "CORUÑA, A"}, {"028", "MADRID"}});
        addNumberedMunicipalities({{"28079", "28001", "MADRID", "N", "0"},
                                   {"28084", "28840", "MEJORADA DEL CAMPO"},
                                   {"15030", "15001", "CORUÑA, A", "N", "0"},
                                   {"15036", "15570", "NARÓN"},
                                   {"08019", "08001", "BARCELONA", "N", "0"}});
    }

    bool choose(const QString& tag) {
        return IMunicipios(owner, codIne, postalCode, name, provinceName, provinceCode, number, tag,
                           QStringLiteral("Elija señor"));
    }
    void expectUntouched() {
        EXPECT_EQ(QStringList({codIne, postalCode, name, provinceName, provinceCode, number}), before);
    }
    /// Expects the list, on this municipality.
    void expectListAt(const std::string& municipality, const std::function<void(QDialog&)>& act) {
        dialogs.expect("TFMunicipiLista", [=](QDialog& list) {
            EXPECT_EQ(DMMunicipi->tbMunicipiNOMBRE.text(), ansi(municipality));
            act(list);
        });
    }

    QWidget* owner = nullptr;
    QString codIne = "15036", postalCode = "28500", name = "M", provinceName = "p", provinceCode = "c",
            number = "n";
    const QStringList before{"15036", "28500", "M", "p", "c", "n"};
};

TEST_F(MunicipalityList, AcceptedMunicipalityFillsEveryArgument) {
    expectListAt("MEJORADA DEL CAMPO", [](QDialog& list) {
        EXPECT_EQ(list.windowTitle(), QStringLiteral("Elija señor"));
        accept(list);
    });
    ASSERT_TRUE(choose("CODPOSTAL"));
    EXPECT_EQ(codIne, "28084");
    EXPECT_EQ(postalCode, "28840");
    EXPECT_EQ(name, "MEJORADA DEL CAMPO");
    EXPECT_EQ(number, "084");
    EXPECT_EQ(provinceCode, "028") << "three characters";
    EXPECT_EQ(provinceName, "MADRID");
}

TEST_F(MunicipalityList, TagSaysWhatIsSoughtAndWhichEditHasTheFocus) {
    expectListAt("NARÓN", [](QDialog& list) {
        EXPECT_EQ(list.focusWidget()->objectName(), "ECODINE");
        escape(list);
    });
    EXPECT_FALSE(choose("COD_INE"));
    expectListAt("MEJORADA DEL CAMPO", [](QDialog& list) {
        EXPECT_EQ(list.focusWidget()->objectName(), "ECODPOSTAL");
        escape(list);
    });
    EXPECT_FALSE(choose("CODPOSTAL"));
    expectListAt("MADRID", [](QDialog& list) {
        EXPECT_EQ(list.focusWidget()->objectName(), "ENOMBRE");
        escape(list);
    });
    EXPECT_FALSE(choose("NOMBRE"));
    expectUntouched();
}

TEST_F(MunicipalityList, CancellingChangesNoArgument) {
    const std::vector<std::function<void(QDialog&)>> waysOut{escape, [](QDialog& list) { leave(list); },
                                                             [](QDialog& list) { list.close(); },
                                                             [](QDialog& list) {
                                                                 type(list, "ENOMBRE", "BAR");
                                                                 escape(list);
                                                             }};
    for (const auto& wayOut : waysOut) {
        dialogs.expect("TFMunicipiLista", wayOut);
        EXPECT_FALSE(choose("NOMBRE"));
        expectUntouched();
    }
}

TEST_F(MunicipalityList, TypedNameWithAccentIsChosen) {
    dialogs.expect("TFMunicipiLista", [](QDialog& list) {
        type(list, "ENOMBRE", QStringLiteral("CORUÑ"));
        accept(list);
    });
    ASSERT_TRUE(choose("NOMBRE"));
    EXPECT_EQ(name, QStringLiteral("CORUÑA, A"));
    EXPECT_EQ(provinceName, QStringLiteral("CORUÑA, A"));
    EXPECT_EQ(provinceCode, "015");
}

TEST_F(MunicipalityList, ValueAfterTheLastShowsTheLast) {
    name = "ZZZ";
    expectListAt("NARÓN", escape);
    EXPECT_FALSE(choose("NOMBRE"));
}

TEST_F(MunicipalityList, TextThatTheCodePageCannotHoldSeeksNothing) {
    name = QStringLiteral("Ł");
    expectListAt("BARCELONA", escape);
    EXPECT_FALSE(choose("NOMBRE"));
    EXPECT_EQ(name, QStringLiteral("Ł"));
}

TEST_F(MunicipalityList, WithoutTagNothingIsSought) {
    expectListAt("MADRID", accept);
    ASSERT_TRUE(choose(""));
    EXPECT_EQ(codIne, "28079") << "the first record in the file";
}

TEST_F(MunicipalityList, TagThatTheTableLacksRaises) {
    EXPECT_THROW(static_cast<void>(choose("NADA")), dbase::Error);
    EXPECT_EQ(DMMunicipi, nullptr);
    expectUntouched();
}

TEST_F(MunicipalityList, NamesOf53CharactersComeBackWhole) {
    const QString longName = QStringLiteral("Ñ") + QString(52, 'X');
    addMunicipalities({{"50001", "50001", longName.toStdString()}});
    name = longName;
    expectListAt(longName.toStdString(), accept);
    ASSERT_TRUE(choose("NOMBRE"));
    EXPECT_EQ(name, longName);
    EXPECT_EQ(provinceCode, "050");
    EXPECT_EQ(provinceName, longName) << "no province, no capital: the record that was chosen";
}

TEST_F(MunicipalityList, ModuleThatExistsIsUsedAndStays) {
    {
        ambrel::ModuleScope<TDMMunicipi> own(DMMunicipi);
        dialogs.expect("TFMunicipiLista", [&](QDialog& list) {
            EXPECT_EQ(DMMunicipi, &own.module());
            EXPECT_TRUE(own.module().tbMunicipi.isOpen());
            escape(list);
        });
        EXPECT_FALSE(choose("NOMBRE"));
        EXPECT_EQ(DMMunicipi, &own.module());
        EXPECT_FALSE(own.module().tbMunicipi.isOpen()) << "found closed";

        own.module().tbMunicipi.open();
        dialogs.expect("TFMunicipiLista", [](QDialog& list) { accept(list); });
        EXPECT_TRUE(choose("NOMBRE"));
        EXPECT_TRUE(own.module().tbMunicipi.isOpen()) << "found open";
        EXPECT_FALSE(own.module().tbProvin.isOpen());
    }
    EXPECT_EQ(DMMunicipi, nullptr);
}

TEST_F(MunicipalityList, OwnerIsTheParentOrElseTheActiveWindow) {
    QWidget window, other;
    ambrel::test::showActive(window);
    for (QWidget* given : {static_cast<QWidget*>(nullptr), &other}) {
        owner = given;
        dialogs.expect("TFMunicipiLista", [&, given](QDialog& list) {
            EXPECT_EQ(list.parentWidget(), given ? given : &window);
            escape(list);
        });
        EXPECT_FALSE(choose("NOMBRE"));
    }
    EXPECT_TRUE(window.findChildren<QDialog*>().isEmpty());
    EXPECT_TRUE(other.findChildren<QDialog*>().isEmpty());
}

TEST_F(MunicipalityList, OwnerThatGoesWhileTheListIsShownCancelsIt) {
    owner = new QWidget;
    QWidget* const doomed = owner;
    dialogs.expect("TFMunicipiLista", [=](QDialog&) { delete doomed; });
    EXPECT_FALSE(choose("NOMBRE"));
    expectUntouched();
}

TEST_F(MunicipalityList, MissingTableRaisesAndTheGlobalIsEmpty) {
    removeTable("MUNICIPI");
    EXPECT_THROW(static_cast<void>(choose("NOMBRE")), dbase::Error);
    expectUntouched();
}

TEST_F(MunicipalityList, MissingProvincesRaiseBeforeAnArgumentChanges) {
    removeTable("PROVIN");
    dialogs.expect("TFMunicipiLista", [](QDialog& list) { accept(list); });
    EXPECT_THROW(static_cast<void>(choose("NOMBRE")), dbase::Error);
    EXPECT_EQ(DMMunicipi, nullptr);
    expectUntouched();
}

TEST_F(MunicipalityList, MinorEntitiesAreListedOnlyWithTheSetting) {
    addMunicipalities({{.codIne = "28079", .codPostal = "28002", .nombre = "MA", .entMenor = true}});
    name = "MA";
    expectListAt("MADRID", escape);
    EXPECT_FALSE(choose("NOMBRE"));
    Config.EntidadesMenores = true;
    expectListAt("MA", escape);
    EXPECT_FALSE(choose("NOMBRE"));
}

TEST_F(MunicipalityList, AModuleThatTheHostKeepsFollowsTheSettingAtEachList) {
    addMunicipalities({{.codIne = "28079", .codPostal = "28002", .nombre = "MA", .entMenor = true}});
    TDMMunicipi kept;
    DMMunicipi = &kept;
    for (const bool shows : {false, true, false}) {
        Config.EntidadesMenores = shows;
        name = "MA";
        expectListAt(shows ? "MA" : "MADRID", escape);
        EXPECT_FALSE(choose("NOMBRE"));
    }
    DMMunicipi = nullptr;
}

class AlternativeList : public LookupTables {
protected:
    void SetUp() override {
        addProvinces({{"008", "BARCELONA"}, {"08", "BARCELONA DOS"}, {"28", "MADRID DOS"}});
        addAlternatives({{"08", "187", "SABADELL"}, {"28", "005", "ALCALÁ"}, {"28", "084", "MEJORADA"}});
    }
    bool choose() { return IMunicipiosMJ(nullptr, provinceCode, name, provinceName, "Otra lista"); }

    QString provinceCode = "c", name = "B", provinceName = "p";
};

TEST_F(AlternativeList, AcceptedMunicipalityFillsEveryArgument) {
    dialogs.expect("TFMunicipiListaMJ", [](QDialog& list) {
        EXPECT_EQ(list.windowTitle(), "Otra lista");
        EXPECT_EQ(list.focusWidget()->objectName(), "ENOMBRE");
        EXPECT_EQ(DMMunicipi->tbMunicipiMJPOBLLITE.text(), "MEJORADA") << "the nearest name";
        type(list, "ENOMBRE", "SAB");
        accept(list);
    });
    ASSERT_TRUE(choose());
    EXPECT_EQ(provinceCode, "08");
    EXPECT_EQ(name, "SABADELL");
    EXPECT_EQ(provinceName, "BARCELONA DOS");
}

TEST_F(AlternativeList, CancellingChangesNoArgument) {
    dialogs.expect("TFMunicipiListaMJ", escape);
    EXPECT_FALSE(choose());
    EXPECT_EQ(QStringList({provinceCode, name, provinceName}), QStringList({"c", "B", "p"}));
}

TEST_F(AlternativeList, MissingTableRaisesAndTheGlobalIsEmpty) {
    removeTable("MUNICIMJ");
    EXPECT_THROW(static_cast<void>(choose()), dbase::Error);
    EXPECT_EQ(QStringList({provinceCode, name, provinceName}), QStringList({"c", "B", "p"}));
}

TEST_F(AlternativeList, ModuleThatExistsIsUsedAndStays) {
    ambrel::ModuleScope<TDMMunicipi> own(DMMunicipi);
    own.module().tbMunicipiMJ.open();
    dialogs.expect("TFMunicipiListaMJ", escape);
    EXPECT_FALSE(choose());
    EXPECT_EQ(DMMunicipi, &own.module());
    EXPECT_TRUE(own.module().tbMunicipiMJ.isOpen());
    own.module().tbMunicipiMJ.close();
    dialogs.expect("TFMunicipiListaMJ", escape);
    EXPECT_FALSE(choose());
    EXPECT_FALSE(own.module().tbMunicipiMJ.isOpen());
}

} // namespace
