// Each class of findings: a row that has it, and its sound neighbour that has not.
#include "directory/audit/Audit.h"

#include <algorithm>

#include "AuditTest.h"
#include "dbase/dataset/dataset.h"

namespace ambrel::directory {
namespace {

TEST_F(Audit, SoundTablesHaveNoFindings) {
    street({});
    street({{"VIA", "SIN TIPO"}, {"TIPO_VIA", ""}});
    street({{"VIA", "SIN PARES"}, {"PAR_INI", "0"}, {"PAR_FIN", "0"}});
    street({{"VIA", "UNA CASA"}, {"IMPAR_INI", "7"}, {"IMPAR_FIN", "7"}});
    runToNothing();
    EXPECT_EQ(totals.municipalityRows, 3U);
    EXPECT_EQ(totals.streetRows, 6U);
    EXPECT_EQ(totals.streets, 6U);
    const ProvinceCount& madrid = totals.provinces["28"];
    EXPECT_EQ(madrid.municipalities, 2U);
    EXPECT_EQ(madrid.withStreets, 2U);
    EXPECT_EQ(madrid.streets, 6U);
    EXPECT_EQ(madrid.withCode, 6U);
    EXPECT_EQ(madrid.withRanges, 2U);
    EXPECT_EQ(madrid.withFindings, 0U);
}

TEST_F(Audit, AReversedRangeIsProposedTheOtherWayRound) {
    street({{"IMPAR_INI", "99"}, {"IMPAR_FIN", "1"}});
    const Finding found = runToOne(FindingClass::ReversedRange);
    EXPECT_EQ(found.proposal, "IMPAR_INI=1, IMPAR_FIN=99");
    EXPECT_EQ(found.record, 3U);
    EXPECT_EQ(found.key, "28000003");
    EXPECT_EQ(found.table, AuditedTable::Streets);
    EXPECT_EQ(found.severity, Severity::Grave);
    EXPECT_EQ(found.text, "el tramo 99–1 de CL MAYOR está al revés");
}

TEST_F(Audit, ARangeWithoutAnEndHasNoProposal) {
    street({{"PAR_INI", "2"}, {"PAR_FIN", "0"}});
    EXPECT_EQ(runToOne(FindingClass::ReversedRange).proposal, "");
}

TEST_F(Audit, AReversedRangeThatEndsOnTheOtherSideHasNoProposal) {
    street({{"IMPAR_INI", "99"}, {"IMPAR_FIN", "2"}});
    const std::vector<Finding> found = run();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].kind, FindingClass::ReversedRange);
    EXPECT_EQ(found[0].proposal, "");
    EXPECT_EQ(found[1].kind, FindingClass::WrongParity);
}

TEST_F(Audit, EvenNumbersInOddColumnsAreFound) {
    street({{"IMPAR_INI", "2"}, {"IMPAR_FIN", "9998"}});
    EXPECT_EQ(runToOne(FindingClass::WrongParity).text,
              "el tramo 2–9998 de CL MAYOR no es de números impares");
}

TEST_F(Audit, OddNumbersInEvenColumnsAreFound) {
    street({{"PAR_INI", "1"}, {"PAR_FIN", "9999"}});
    EXPECT_EQ(runToOne(FindingClass::WrongParity).text, "el tramo 1–9999 de CL MAYOR no es de números pares");
}

TEST_F(Audit, AStreetWithSeveralFindingsIsCountedOnce) {
    street({{"VIA", "sol  alto"}, {"IMPAR_FIN", "9"}});
    street({{"VIA", "sol  alto"}, {"IMPAR_INI", "11"}});
    street({{"VIA", "DOS"}});
    street({{"VIA", "DOS"}});
    EXPECT_EQ(run().size(), 5U);
    EXPECT_EQ(totals.provinces["28"].withFindings, 2U);
}

TEST_F(Audit, TheSameRowTwiceIsFound) {
    street({});
    street({});
    const Finding found = runToOne(FindingClass::RepeatedRow);
    EXPECT_EQ(found.record, 4U);
    EXPECT_EQ(found.text, "CL MAYOR: la fila dice lo mismo que el registro 3");
}

TEST_F(Audit, StretchesOfOneStreetAreNotTheSameRow) {
    street({{"IMPAR_FIN", "51"}});
    street({{"IMPAR_INI", "53"}});
    runToNothing();
}

TEST_F(Audit, RowsAlikeAreFoundAlsoWhereTheirMunicipalityIsNotKnown) {
    town({{"COD_INE", "28079"}, {"CODPOSTAL", "28901"}, {"NOMBRE", "MADRID"}});
    const Values ownerless{{"COD_INE", ""}, {"MUNICIPI", ""}};
    street(ownerless);
    street(ownerless);
    EXPECT_EQ(runToOne(FindingClass::RepeatedRow).record, 4U);
}

TEST_F(Audit, TwoRowsWithOneKeyAreFound) {
    street({{"CODIGO1", "28000001"}});
    const Finding found = runToOne(FindingClass::RepeatedKey);
    EXPECT_EQ(found.severity, Severity::Grave);
    EXPECT_EQ(found.record, 3U);
    EXPECT_EQ(found.key, "28000001");
    EXPECT_EQ(found.province, "28");
    EXPECT_EQ(found.text, "la clave 28000001 es también la del registro 1");
}

TEST_F(Audit, AKeyThatThreeRowsHaveIsFoundTwice) {
    street({{"CODIGO1", "28000001"}});
    street({{"CODIGO1", "28000001"}, {"VIA", "OTRA"}});
    const std::vector<Finding> found = run();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[1].text, "la clave 28000001 es también la del registro 1");
}

TEST_F(Audit, ARowWithoutAKeyIsNeverAKnownStreet) {
    for (const char* const key : {"", "00000000", "2800000A"}) {
        street({{"CODIGO1", key}});
        const Finding found = runToOne(FindingClass::BadKey);
        EXPECT_EQ(found.severity, Severity::Grave) << key;
        streets.pop_back();
    }
    street({{"CODIGO1", "00000000"}});
    EXPECT_EQ(runToOne(FindingClass::BadKey).text,
              "la clave «00000000» de CL MAYOR es cero, que no es de ninguna");
    streets.pop_back();
    street({{"CODIGO1", ""}});
    EXPECT_EQ(runToOne(FindingClass::BadKey).text, "CL MAYOR no tiene clave");
}

TEST_F(Audit, AKeyOfFewerDigitsIsAWarning) {
    street({{"CODIGO1", "12345"}});
    const Finding found = runToOne(FindingClass::BadKey);
    EXPECT_EQ(found.severity, Severity::Warning);
    EXPECT_EQ(found.text, "la clave «12345» de CL MAYOR no es un número de ocho cifras");
}

TEST_F(Audit, APostalCodeWithoutTheFormOfOneIsFound) {
    street({{"CODPOSTAL", "2890"}});
    EXPECT_EQ(runToOne(FindingClass::NoPostalCode).text, "«2890» no es un código postal (CL MAYOR)");
}

TEST_F(Audit, TheGeneralCodeOfAProvinceIsAWarning) {
    street({{"CODPOSTAL", "28000"}});
    EXPECT_EQ(runToOne(FindingClass::NoPostalCode).severity, Severity::Warning);
}

TEST_F(Audit, AProvinceThatDoesNotExistMakesNoPostalCode) {
    street({{"CODPOSTAL", "53001"}});
    EXPECT_EQ(runToOne(FindingClass::NoPostalCode).severity, Severity::Grave);
}

TEST_F(Audit, APostalCodeOfAnotherProvinceIsGrave) {
    street({{"CODPOSTAL", "45001"}});
    const Finding found = runToOne(FindingClass::ForeignPostalCode);
    EXPECT_EQ(found.severity, Severity::Grave);
    EXPECT_EQ(found.text,
              "ninguna fila de 28065 GETAFE tiene el código 45001 de CL MAYOR, ni otro de su provincia");
}

TEST_F(Audit, APostalCodeThatTheMunicipalityLacksIsAWarning) {
    street({{"CODPOSTAL", "28931"}});
    EXPECT_EQ(runToOne(FindingClass::ForeignPostalCode).severity, Severity::Warning);
}

TEST_F(Audit, ACodeOfAnotherProvinceInMunicipiIsFoundUnlessItIsKnownToBeRight) {
    town({{"COD_INE", "09109"}, {"CODPOSTAL", "09215"}, {"UNICO", "N"}, {"NOMBRE", "CONDADO DE TREVIÑO"}});
    town({{"COD_INE", "09109"}, {"CODPOSTAL", "01118"}, {"UNICO", "N"}, {"NOMBRE", "CONDADO DE TREVIÑO"}});
    const Values burgos{{"COD_INE", "09109"}, {"MUNICIPI", "CONDADO DE TREVIÑO"}};
    for (const std::string code : {"01118", "09215"}) {
        Values values = burgos;
        values["CODPOSTAL"] = code;
        values["PROVINCIA"] = code.substr(0, 2);
        street(values);
    }
    runToNothing();
    town({{"COD_INE", "09109"}, {"CODPOSTAL", "08001"}, {"UNICO", "N"}, {"NOMBRE", "CONDADO DE TREVIÑO"}});
    EXPECT_EQ(runToOne(FindingClass::ForeignPostalCode).text,
              "el código 08001 de CONDADO DE TREVIÑO es de otra provincia");
}

TEST_F(Audit, AStreetsCodeThatMunicipiLacksIsNoFindingWhereItIsKnownToBeRight) {
    town({{"COD_INE", "09109"}, {"CODPOSTAL", "09215"}, {"NOMBRE", "CONDADO DE TREVIÑO"}});
    street({{"COD_INE", "09109"},
            {"MUNICIPI", "CONDADO DE TREVIÑO"},
            {"CODPOSTAL", "01118"},
            {"PROVINCIA", "09"}});
    runToNothing();
}

TEST_F(Audit, AProvinceByWhichNobodySeeksTheStreetIsFound) {
    street({{"PROVINCIA", "45"}});
    EXPECT_EQ(runToOne(FindingClass::WrongProvince).text,
              "la provincia «45» de CL MAYOR no es la de ningún código postal de su municipio");
    EXPECT_EQ(runToOne(FindingClass::WrongProvince).proposal, "PROVINCIA=28");
}

TEST_F(Audit, ABlankOrCutProvinceIsFoundAlsoWhereTheMunicipalityIsNotKnown) {
    town({{"COD_INE", "28079"}, {"CODPOSTAL", "28001"}, {"NOMBRE", "UNO"}});
    town({{"COD_INE", "28080"}, {"CODPOSTAL", "28001"}, {"NOMBRE", "OTRO"}});
    for (const char* const province : {"", "2"}) {
        street({{"PROVINCIA", province}, {"CODPOSTAL", "28001"}, {"COD_INE", ""}, {"MUNICIPI", ""}});
        EXPECT_EQ(runToOne(FindingClass::WrongProvince).proposal, "PROVINCIA=28") << province;
        streets.pop_back();
    }
}

TEST_F(Audit, TheProvinceOfACodeThatTheMunicipalityLacksIsNotProposed) {
    street({{"PROVINCIA", "45"}, {"CODPOSTAL", "46001"}});
    street({{"PROVINCIA", "45"}, {"CODPOSTAL", "46001"}, {"COD_INE", ""}, {"MUNICIPI", ""}});
    const std::vector<Finding> found = run();
    EXPECT_GE(std::ranges::count(found, FindingClass::WrongProvince, &Finding::kind), 2);
    for (const Finding& one : found) {
        EXPECT_EQ(one.proposal, "") << className(one.kind);
    }
}

TEST_F(Audit, AStreetWithoutMunicipalityIsFoundUnlessItsCodeSaysWhich) {
    street({{"COD_INE", ""}, {"MUNICIPI", ""}});
    runToNothing();
    street({{"COD_INE", ""}, {"MUNICIPI", ""}, {"CODPOSTAL", "28999"}});
    const std::vector<Finding> found = run();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].kind, FindingClass::NoPostalCode);
    EXPECT_EQ(found[0].severity, Severity::Warning);
    EXPECT_EQ(found[1].kind, FindingClass::NoMunicipality);
}

TEST_F(Audit, AMunicipalityThatMunicipiLacksIsFound) {
    street({{"COD_INE", "28999"}});
    EXPECT_EQ(runToOne(FindingClass::UnknownMunicipality).text,
              "MUNICIPI no tiene el código INE «28999» de CL MAYOR");
}

TEST_F(Audit, ATypeThatTheTableOfTypesLacksIsFound) {
    street({{"TIPO_VIA", "ZZ"}});
    EXPECT_EQ(runToOne(FindingClass::UnknownType).text, "TIPO_VIA no tiene el tipo «ZZ» de ZZ MAYOR");
}

TEST_F(Audit, NamesInSmallLettersAreProposedInCapitals) {
    street({{"VIA", "Peña"}});
    const Finding found = runToOne(FindingClass::SmallLetters);
    EXPECT_EQ(found.proposal, "VIA=PEÑA");
    EXPECT_EQ(found.severity, Severity::Grave);
}

TEST_F(Audit, NamesOfMunicipalitiesAreReadAsWell) {
    town({{"COD_INE", "28079"}, {"CODPOSTAL", "28001"}, {"NOMBRE", "MADRID  (CAPITAL"}});
    street({{"COD_INE", "28079"}, {"CODPOSTAL", "28001"}, {"MUNICIPI", "MADRID"}});
    const std::vector<Finding> found = run();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].kind, FindingClass::NeedlessBlanks);
    EXPECT_EQ(found[0].proposal, "NOMBRE=MADRID (CAPITAL");
    EXPECT_EQ(found[1].kind, FindingClass::OpenBracket);
    EXPECT_EQ(found[1].table, AuditedTable::Municipalities);
    EXPECT_EQ(found[1].key, "28079 28001");
}

TEST_F(Audit, BrokenLettersComeWithTheNameThatIsLikely) {
    street({{"VIA", "CASTA\\AR"}});
    EXPECT_EQ(runToOne(FindingClass::BrokenLetters).proposal, "VIA=CASTAÑAR");
}

TEST_F(Audit, ABracketThatIsNeverClosedIsFound) {
    street({{"VIA", "MAYOR (ARIJA"}});
    EXPECT_EQ(runToOne(FindingClass::OpenBracket).proposal, "");
}

TEST_F(Audit, ABlankNameIsFound) {
    street({{"VIA", ""}});
    EXPECT_EQ(runToOne(FindingClass::NoName).severity, Severity::Grave);
}

TEST_F(Audit, ABlankCapitalMarkIsProposedAsMunicipiHasIt) {
    street({{"CAPITAL", ""}});
    EXPECT_EQ(runToOne(FindingClass::BlankCapital).proposal, "CAPITAL=9");
}

TEST_F(Audit, TextsAreUtf8WhateverTheTablesHold) {
    town({{"COD_INE", "28079"}, {"CODPOSTAL", "28001"}, {"NOMBRE", "MADRID"}, {"CAPITAL", "Á"}});
    const Values madrid{{"COD_INE", "28079"}, {"MUNICIPI", "MADRID"}, {"CAPITAL", ""}};
    Values one = madrid, other = madrid;
    one["CODPOSTAL"] = "28001";
    other["CODPOSTAL"] = "Ñ8001";
    street(one);
    street(other);
    std::string all;
    for (const Finding& finding : run()) {
        all += finding.text + '\n' + finding.proposal + '\n';
    }
    EXPECT_NE(all.find("CAPITAL=Á"), std::string::npos) << all;
    EXPECT_NE(all.find("(Ñ8001)"), std::string::npos) << all;
}

TEST_F(Audit, ACardThatWasCancelledIsTheUsersRowWithoutMarkAndMunicipality) {
    street({{"CODIGO1", "99000000"}, {"CAPITAL", ""}, {"MUNICIPI", ""}, {"COD_INE", ""}});
    const Finding found = runToOne(FindingClass::CancelledCard);
    EXPECT_EQ(found.proposal, "CAPITAL=9");
    EXPECT_EQ(totals.userKeys, 1U);
    EXPECT_EQ(totals.highestUserKey, "99000000");
}

TEST_F(Audit, ACapitalMarkThatNoRowOfTheMunicipalityHasIsFound) {
    street({{"CAPITAL", "0"}});
    const Finding found = runToOne(FindingClass::ForeignCapital);
    EXPECT_EQ(found.severity, Severity::Warning);
    EXPECT_EQ(found.proposal, "CAPITAL=9");
    EXPECT_EQ(found.text, "ninguna fila de 28065 GETAFE tiene la marca de capital «0» de CL MAYOR");
}

TEST_F(Audit, AMarkOfAnotherRowOfTheMunicipalityReachesTheStreet) {
    town({{"COD_INE", "28065"}, {"CAPITAL", "1"}, {"NOMBRE", "PERALES"}, {"ENT_MENOR", "T"}});
    street({{"CAPITAL", "1"}});
    runToNothing();
}

TEST_F(Audit, ABlankMarkIsSoundWhereTheMunicipalityHasNone) {
    town({{"COD_INE", "28079"}, {"CODPOSTAL", "28001"}, {"NOMBRE", "MADRID"}, {"CAPITAL", ""}});
    street({{"COD_INE", "28079"}, {"CODPOSTAL", "28001"}, {"MUNICIPI", "MADRID"}, {"CAPITAL", ""}});
    runToNothing();
}

TEST_F(Audit, AMunicipalityWithoutStreetsIsNoted) {
    town({{"COD_INE", "28079"}, {"CODPOSTAL", "28001"}, {"NOMBRE", "MADRID"}});
    const Finding found = runToOne(FindingClass::NoStreets);
    EXPECT_EQ(found.severity, Severity::Note);
    EXPECT_EQ(found.text, "POSTAL no tiene ninguna vía de MADRID");
    EXPECT_EQ(found.record, 4U);
}

TEST_F(Audit, AMunicipalityWhoseStreetsMayBeAnothersIsNotSaidToHaveNone) {
    town({{"COD_INE", "28079"}, {"CODPOSTAL", "28001"}, {"NOMBRE", "UNO"}});
    town({{"COD_INE", "28080"}, {"CODPOSTAL", "28001"}, {"NOMBRE", "OTRO"}});
    street({{"CODPOSTAL", "28001"}, {"COD_INE", ""}, {"MUNICIPI", ""}});
    runToNothing();
}

TEST_F(Audit, TheMarkOfASingleCodeIsComparedWithTheCodes) {
    town({{"COD_INE", "28079"}, {"CODPOSTAL", "28001"}, {"NOMBRE", "MADRID"}, {"UNICO", "N"}});
    street({{"COD_INE", "28079"}, {"CODPOSTAL", "28001"}, {"MUNICIPI", "MADRID"}});
    const Finding found = runToOne(FindingClass::SingleCodeMark);
    EXPECT_EQ(found.proposal, "UNICO=S");
    EXPECT_EQ(found.severity, Severity::Warning);
}

TEST_F(Audit, AMarkThatHidesTheOtherCodesIsGrave) {
    town({{"COD_INE", "28092"}, {"CODPOSTAL", "28933"}, {"NOMBRE", "MOSTOLES"}, {"UNICO", "S"}});
    const Finding found = runToOne(FindingClass::SingleCodeMark);
    EXPECT_EQ(found.proposal, "UNICO=N");
    EXPECT_EQ(found.severity, Severity::Grave);
    EXPECT_EQ(found.text, "MOSTOLES tiene UNICO «S» y su municipio 3 códigos postales");
}

TEST_F(Audit, TheBlockOfUsersKeysIsReportedWhenItIsNearlyFull) {
    street({{"CODIGO1", "99899999"}});
    runToNothing();
    EXPECT_EQ(totals.highestUserKey, "99899999");
    EXPECT_EQ(totals.keysLeft(), 100'000U);
    street({{"CODIGO1", "99999999"}, {"VIA", "OTRA"}});
    const Finding found = runToOne(FindingClass::FullBlock);
    EXPECT_EQ(found.severity, Severity::Grave);
    EXPECT_EQ(found.text,
              "el bloque «99» tiene 2 claves y la más alta es 99999999; la siguiente repetirá 99000000");
}

TEST_F(Audit, DeletedRowsDoNotCount) {
    street({{"VIA", "minúsculas"}});
    run();
    dbase::Dataset postal("DB", "POSTAL", "CODIGO1");
    postal.open();
    postal.last();
    postal.erase();
    std::size_t found = 0;
    static_cast<void>(auditTables("DB", [&](const Finding&) { ++found; }));
    EXPECT_EQ(found, 0U);
}

TEST(FindingClasses, AreFoundByTheirNamesInAnyCase) {
    for (std::size_t i = 0; i < findingClassCount; ++i) {
        const auto kind = static_cast<FindingClass>(i);
        EXPECT_EQ(findingClassNamed(className(kind)), kind);
        EXPECT_FALSE(classTitle(kind).empty() || classMeaning(kind).empty() || classAdvice(kind).empty());
    }
    EXPECT_EQ(findingClassNamed("minusculas"), FindingClass::SmallLetters);
    EXPECT_FALSE(findingClassNamed("OTRA"));
}

} // namespace
} // namespace ambrel::directory
