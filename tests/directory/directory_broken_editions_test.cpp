// Editions whose files are cut, mixed or out of order, and keys that are gone.
#include <gtest/gtest.h>

#include <filesystem>

#include "data/TableDefinitions.h"
#include "dbase/dataset/dataset.h"
#include "dbase/dataset/row_walk.h"
#include "dbase/system/error.h"
#include "directory/DirectoryTest.h"
#include "loading/failure.h"

namespace ambrel::directory {
namespace {

class BrokenEditionsTest : public DirectoryTest {
protected:
    /// A village of Burgos with so many streets, of which the last ones may have lost their stretches, or be
    /// missing in the file of streets.
    static SmallEdition village(std::uint32_t streets, std::uint32_t withStretches, std::uint32_t listed) {
        SmallEdition edition;
        edition.unit(9001, 101, "ABAJAS", "ABAJAS");
        for (std::uint32_t i = 1; i <= streets; ++i) {
            const std::string name = "DEL NUMERO " + std::to_string(i);
            if (i <= listed) {
                edition.street(9001, i, name);
            }
            if (i <= withStretches) {
                edition.stretch(9001, i, 9001, 1, 9, 101, name);
            }
        }
        return edition;
    }
    static SmallEdition village(std::uint32_t streets) { return village(streets, streets, streets); }

    std::string refusalOf(const SmallEdition& edition) {
        try {
            store(edition, "251231", folder / "next.deshacer");
        } catch (const loading::Failure& failure) {
            return failure.what();
        }
        return {};
    }
};

TEST_F(BrokenEditionsTest, AnEditionWithoutMuchOfAProvinceIsRefusedWithNothingChanged) {
    store(village(300));
    const Lines before = everything();
    const SmallEdition cut = village(300, 200, 300);
    EXPECT_NE(refusalOf(cut).find("POSTAL, provincia 09: se irían 100 filas de las 300"), std::string::npos)
        << refusalOf(cut);
    EXPECT_EQ(everything(), before);
    EXPECT_FALSE(std::filesystem::exists(folder / "next.deshacer"));
    const Outcome tried = simulate(cut, "251231");
    EXPECT_EQ(tried.summary.streets.goes, 100U) << "a trial shows them";
    EXPECT_NE(tried.summary.unlikelyLosses, "");

    EditionFiles files = cut.write(official, "251231");
    files.areTakenAsWhole = true;
    EXPECT_EQ(store(files).summary.streets.goes, 100U) << "unless that is what is wanted";
}

TEST_F(BrokenEditionsTest, AFewStreetsThatTheOfficeGivesUpGo) {
    store(village(300));
    EXPECT_EQ(refusalOf(village(300, 280, 280)), "");
    EXPECT_EQ(streets().size(), 280U);
}

TEST_F(BrokenEditionsTest, AnEditionWithoutManyNamesOfEntitiesIsRefused) {
    SmallEdition whole, cut;
    for (std::uint32_t unit = 101; unit < 301; ++unit) {
        whole.unit(9001, unit, "ABAJAS", "ALDEA " + std::to_string(unit));
        if (unit < 201) {
            cut.unit(9001, unit, "ABAJAS", "ALDEA " + std::to_string(unit));
        }
        for (SmallEdition* const edition : {&whole, &cut}) {
            edition->street(9001, unit, "MAYOR").stretch(9001, unit, 9001, 1, 9, unit);
        }
    }
    store(whole);
    const Lines before = everything();
    EXPECT_NE(refusalOf(cut).find("MUNICIPI: se irían 100 filas de las 201"), std::string::npos)
        << refusalOf(cut);
    EXPECT_EQ(everything(), before);
}

TEST_F(BrokenEditionsTest, AFileOfStreetsThatLacksManyIsRefusedInTheFirstEditionToo) {
    EXPECT_NE(refusalOf(village(300, 300, 200)).find("faltan las vías de 100 de los 300 tramos"),
              std::string::npos);
    EXPECT_EQ(streets(), Lines());
    EXPECT_EQ(refusalOf(village(300, 300, 290)), "");
}

TEST_F(BrokenEditionsTest, AUnitWithMoreNamesThanItsKeysCanTellApartIsReported) {
    SmallEdition edition = village(1200);
    for (int i = 1; i <= 300; ++i) {
        edition.unit(9001, 202, "ABAJAS", "ALDEA " + std::to_string(i));
    }
    const std::string refusal = refusalOf(edition);
    EXPECT_NE(refusal.find("la unidad tiene más de diez nombres"), std::string::npos) << refusal;
}

TEST_F(BrokenEditionsTest, WithoutItsTablesNothingIsLoadedAndNoneIsMade) {
    for (const std::string table : {"POSTAL", "MUNICIPI"}) {
        for (const std::string extension : {".DBF", ".MDX"}) {
            std::filesystem::rename(folder / (table + extension), folder / (table + extension + "_"));
        }
        EXPECT_THROW(simulate(firstEdition()), dbase::Error) << table;
        EXPECT_THROW(store(firstEdition()), dbase::Error) << table;
        EXPECT_FALSE(std::filesystem::exists(folder / (table + ".DBF")));
        for (const std::string extension : {".DBF", ".MDX"}) {
            std::filesystem::rename(folder / (table + extension + "_"), folder / (table + extension));
        }
    }
}

TEST_F(BrokenEditionsTest, TheRowThatAUserRenamedDoesNotNameTheOthersOfItsStreet) {
    SmallEdition edition = firstEdition();
    store(edition);
    set("09000001", "VIA", "MAYOR DE ARRIBA");
    SmallEdition next;
    next.unit(9001, 101, "ABAJAS", "ABAJAS")
        .street(9001, 2, "REAL", "AVDA")
        .stretch(9001, 1, 9001, 1, 9, 101, "MAYOR")
        .stretch(9001, 1, 9001, 2, 8, 101, "MAYOR")
        .stretch(9001, 1, 9002, 11, 19, 101, "MAYOR")
        .stretch(9001, 2, 9002, 1, 5);
    EXPECT_EQ(storeNext(next).changes, Lines());
}

TEST_F(BrokenEditionsTest, FilesOfDifferentEditionsAndAnOlderOneAreReported) {
    store(firstEdition(), "251231");
    EXPECT_TRUE(simulate(firstEdition(), "250630").summary.isOlder);
    EXPECT_FALSE(simulate(firstEdition(), "251231").summary.isOlder);
    EditionFiles files = firstEdition().write(official, "251231");
    files.streets = firstEdition().write(official, "250630").streets;
    const Edition mixed(files);
    ASSERT_EQ(mixed.notes().otherDates.size(), 1U);
    EXPECT_NE(mixed.notes().otherDates.front().find("es de la edición de 2025-06-30"), std::string::npos);
    EXPECT_TRUE(Edition(firstEdition().write(official, "251231")).notes().otherDates.empty());
}

TEST_F(BrokenEditionsTest, TheKeyOfAStreetThatIsGoneIsNotGivenToAnother) {
    store(firstEdition());
    SmallEdition without;
    without.unit(9001, 101, "ABAJAS", "ABAJAS")
        .street(9001, 1, "MAYOR")
        .stretch(9001, 1, 9001, 1, 9)
        .stretch(9001, 1, 9001, 2, 8)
        .stretch(9001, 1, 9002, 11, 19);
    store(without, "251231"); // 09000003 goes
    SmallEdition other = without;
    other.unit(9003, 101, "AGES", "AGES").street(9003, 1, "MAYOR").stretch(9003, 1, 9199, 1, 9);
    EXPECT_EQ(storeNext(other).changes.back(), "+09000004 MAYOR 09199 1 9 0 0");
}

TEST_F(BrokenEditionsTest, RowsOfOtherSourcesStayWhenAnOldTableOfProvenanceIsRenewed) {
    store(firstEdition());
    std::filesystem::remove(folder / "PROCEDEN.DBF");
    std::filesystem::remove(folder / "PROCEDEN.MDX");
    createTable(test::defineTable("PROCEDEN",
                                  {"CODIGO1 C8", "FUENTE C3", "EDICION C10", "CLAVE C20", "LINEA N10",
                                   "ABIERTO C4", "ABREVIADO L"},
                                  {"CODIGO1"}),
                {{"09000001", "INE", "2025-06-30", "09001V00001090010000", "1", "----", "F"},
                 {"99000000", "AYU", "2025-01-01", "CALLE DE LA FERIA", "7", "----", "F"}});
    store(firstEdition(), "251231");
    dbase::Dataset table("DB", "PROCEDEN", "CODIGO1");
    table.open();
    ASSERT_TRUE(table.seek({{"CODIGO1", "99000000"}}, dbase::SeekMode::Exact));
    EXPECT_EQ(table.field("FUENTE").text(), "AYU");
    EXPECT_EQ(table.field("CLAVE").text(), "CALLE DE LA FERIA");
    EXPECT_EQ(table.field("LINEA").text(), "7");
}

} // namespace
} // namespace ambrel::directory
