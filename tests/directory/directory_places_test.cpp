// MUNICIPI from one edition of the official directory to the next.
#include <gtest/gtest.h>

#include "directory/DirectoryTest.h"

namespace ambrel::directory {
namespace {

using DirectoryPlacesTest = DirectoryTest;

TEST_F(DirectoryPlacesTest, ATownThatGetsASecondCodeIsNotMarkedAsHavingOneAnyMore) {
    SmallEdition edition;
    edition.unit(9001, 101, "ABAJAS", "ABAJAS")
        .unit(9001, 202, "ABAJAS", "VENTAS (LAS)")
        .street(9001, 1, "MAYOR")
        .stretch(9001, 1, 9001, 1, 9)
        .stretch(9001, 1, 9001, 11, 13, 202);
    store(edition);
    EXPECT_EQ(places(), (Lines{"09001 ABAJAS 09001 S", "09001 VENTAS, LAS 09001 S E"}));
    edition.stretch(9001, 1, 9002, 15, 19);
    const Outcome load = storeNext(edition);
    EXPECT_EQ(places(),
              (Lines{"09001 ABAJAS 09001 N", "09001 VENTAS, LAS 09001 N E", "09001 ABAJAS 09002 N"}));
    EXPECT_EQ(load.summary.municipalities.comes, 1U);
    EXPECT_EQ(load.summary.municipalities.changes, 2U);
    EXPECT_EQ(load.summary.municipalities.goes, 0U);
}

TEST_F(DirectoryPlacesTest, MunicipalitiesComeGoAndChangeTheirNames) {
    SmallEdition edition = firstEdition();
    edition.unit(9002, 101, "ADRADA DE HAZA", "ADRADA DE HAZA")
        .street(9002, 1, "MAYOR")
        .stretch(9002, 1, 9462, 1, 9);
    store(edition);
    SmallEdition next;
    next.unit(9002, 101, "ADRADA", "ADRADA").street(9002, 1, "MAYOR").stretch(9002, 1, 9462, 1, 9);
    next.unit(9003, 101, "AGES", "AGES").street(9003, 1, "MAYOR").stretch(9003, 1, 9199, 1, 9);
    const Outcome load = storeNext(next);
    EXPECT_EQ(places(), (Lines{"09002 ADRADA 09462 S", "09003 AGES 09199 S"}));
    EXPECT_EQ(load.summary.municipalities.goes, 2U);
    EXPECT_EQ(streets(), (Lines{"09000004 CL MAYOR 1-9 0-0 09462 09002 ADRADA",
                                "09000005 CL MAYOR 1-9 0-0 09199 09003 AGES"}));
}

TEST_F(DirectoryPlacesTest, UsersRowsOfMunicipiStay) {
    SmallEdition edition = firstEdition();
    edition.unit(9002, 101, "ADRADA", "ADRADA").street(9002, 1, "MAYOR").stretch(9002, 1, 9462, 1, 9);
    store(edition);
    setPlace("ADRADA", "NOMBRE", "ADRADA LA NUEVA");
    addPlace({{"NOMBRE", "URBANIZACION SOL"}, {"ENT_MENOR", "True"}});
    const Lines before = everything();
    EXPECT_EQ(storeNext(edition).changes, Lines());
    EXPECT_EQ(everything(), before);
    edition.stretch(9002, 1, 9463, 11, 13); // no longer its only code
    const Outcome load = storeNext(edition);
    EXPECT_EQ(load.conflicts,
              (Lines{"changed 00000000: ADRADA LA NUEVA 09462, UNICO S | ADRADA 09462, UNICO N"}));
    EXPECT_EQ(places()[3], "09002 ADRADA LA NUEVA 09462 S");
}

TEST_F(DirectoryPlacesTest, AMunicipalityThatOnlyTheUsersHaveStaysAndNamesItsStreets) {
    addPlace({{"UNICO", "S"}, {"NOMBRE", "ABAJAS DE USUARIO"}});
    const Outcome load = store(firstEdition());
    EXPECT_EQ(places(), (Lines{"09001 ABAJAS DE USUARIO 09001 S"}));
    EXPECT_EQ(load.conflicts, (Lines{"own municipality 00000000: 09001 , UNICO S | 09001 09002 , UNICO N"}));
    EXPECT_EQ(streets()[0], "09000001 CL MAYOR 1-9 2-8 09001 09001 ABAJAS DE USUARIO");
}

} // namespace
} // namespace ambrel::directory
