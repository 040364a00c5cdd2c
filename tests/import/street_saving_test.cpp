// Saves imported streets in POSTAL.
#include "import/StreetSaving.h"

#include <gtest/gtest.h>

#include <fstream>
#include <optional>

#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "data/PostalTables.h"
#include "dbase/dataset/dataset.h"
#include "dbase/lock/locks.h"
#include "dbase/system/file.h"
#include "dbase/table/table.h"
#include "services/MessageBox.h"
#include "support/ScriptedMessages.h"

namespace {

using namespace postal_tests;
using ambrel::HostMunicipality;
using ambrel::ImportedStreet;
using ambrel::StreetCodes;
using ambrel::test::ansi;
using Outcome = ambrel::StreetSaving::Outcome;
using Texts = std::vector<std::string>;

class StreetSavingTest : public PostalTables {
protected:
    StreetSavingTest() {
        addMunicipalities({{"28010", "28430", "ALPEDRETE", "S"},
                           {"28079", "28001", "MADRID", "N", "0"},
                           {"28079", "28002", "MADRID", "N", "0"},
                           {"15009", "15165", "SADA", "N"},
                           {"31223", "31491", "SADA", "S"},
                           {"28999", "28999", "ÑORA", "S"}});
        controller.emplace();
    }
    ~StreetSavingTest() override { controller.reset(); }

    Outcome add(const std::vector<ImportedStreet>& streets, StreetCodes codes = StreetCodes::OfMunicipality) {
        return ambrel::StreetSaving{*controller, streets, municipality, codes}.addNew();
    }
    Outcome complete(const std::vector<ImportedStreet>& streets, const Texts& codes) {
        return ambrel::StreetSaving{*controller, streets, municipality}.completeTypes(codes);
    }
    /// Every column of the stored streets except the key, joined by "|".
    static Texts stored() {
        dbase::Dataset table("DB", "POSTAL");
        table.open();
        Texts rows;
        if (table.isEmpty()) {
            return rows;
        }
        do {
            std::string row;
            for (const char* const field : {"PROVINCIA", "CAPITAL", "TIPO_VIA", "VIA", "IMPAR_INI",
                                            "IMPAR_FIN", "PAR_INI", "PAR_FIN", "CODPOSTAL"}) {
                row += table.field(field).text() + "|";
            }
            rows.push_back(row);
        } while (table.next());
        return rows;
    }

    /// As another program sees it.
    [[nodiscard]] bool isTableLocked() const {
        return dbase::openFile(folder / "POSTAL.MDX", dbase::OpenMode::ReadOnly)
            ->isLockedByOthers(dbase::structureLock);
    }

    ambrel::test::ScriptedMessages messages;
    std::optional<TClassCodPostales> controller;
    HostMunicipality municipality{.provinceCode = "28", .postalCode = "28430", .name = "ALPEDRETE"};
};

// --- New streets.

TEST_F(StreetSavingTest, NewStreetIsWholeInCapitalsWithTheMunicipalitysCode) {
    const Outcome outcome = add({{.type = "cl", .name = ansi("peña la")}});
    EXPECT_EQ(outcome.count, 1);
    EXPECT_TRUE(outcome.failure.isEmpty());
    EXPECT_EQ(stored(), (Texts{ansi("28|9|CL|PEÑA LA|1|9999|2|9998|28430|")}));
}

TEST_F(StreetSavingTest, CapitalIsAlwaysNine) {
    municipality = {
        .provinceCode = "28", .postalCode = "28001", .name = "MADRID"}; // a capital, "0" in MUNICIPI
    EXPECT_EQ(add({{.type = "CL", .name = "SOL"}}).count, 1);
    EXPECT_EQ(stored(), (Texts{"28|9|CL|SOL|1|9999|2|9998|28001|"}));
}

TEST_F(StreetSavingTest, SavingTheSameStreetsTwiceAddsNothingTheSecondTime) {
    const std::vector<ImportedStreet> streets{{.type = "CL", .name = "SOL"}, {.type = "AV", .name = "LUNA"}};
    EXPECT_EQ(add(streets).count, 2);
    EXPECT_EQ(add(streets).count, 0);
    EXPECT_EQ(stored().size(), 2U);
}

TEST_F(StreetSavingTest, AnotherTypeUnderTheSameNameAndCodeIsAnotherStreet) {
    EXPECT_EQ(add({{.type = "CL", .name = "SOL"}}).count, 1);
    EXPECT_EQ(add({{.type = "PZ", .name = "SOL"}}).count, 1);
    EXPECT_EQ(stored().size(), 2U);
}

TEST_F(StreetSavingTest, SameNameInAnotherCodeOrProvinceIsAnotherStreet) {
    addStreets(
        {{"28000001", "SOL", "CL", "28431"}, {"15000001", "SOL", "CL", "28430", {1, 9999}, {2, 9998}, "15"}});
    EXPECT_EQ(add({{.type = "CL", .name = "SOL"}}).count, 1);
    EXPECT_EQ(stored().size(), 3U);
}

TEST_F(StreetSavingTest, TypeStoredInSmallLettersIsTheSameType) {
    addStreets({{"28000001", "SOL", "cl", "28430"}});
    EXPECT_EQ(add({{.type = "CL", .name = "SOL"}}).count, 0) << "the type's case does not matter";
}

TEST_F(StreetSavingTest, SameStreetMayStandAfterOthersOfItsName) {
    addStreets({{"28000001", "SOL", "CL", "28001"},
                {"28000002", "SOL", "CL", "28002"},
                {"28000003", "SOL", "CL", "28430"},
                {"28000004", "SOLANA", "CL", "28430"}});
    EXPECT_EQ(add({{.type = "CL", .name = "SOL"}}).count, 0);
}

TEST_F(StreetSavingTest, RangesOfAFileAreStoredAndCompared) {
    const ImportedStreet part{.type = "CL",
                              .name = "MAYOR",
                              .postalCode = "28001",
                              .oddFirst = 1,
                              .oddLast = 33,
                              .evenFirst = 2,
                              .evenLast = 9998};
    ImportedStreet other = part;
    other.oddFirst = 35;
    EXPECT_EQ(add({part, other, part}, StreetCodes::Own).count, 2);
    EXPECT_EQ(stored(), (Texts{"28|9|CL|MAYOR|1|33|2|9998|28001|", "28|9|CL|MAYOR|35|33|2|9998|28001|"}));
}

TEST_F(StreetSavingTest, RowOfAFileWithoutNumbersIsStoredWholeAndRecognisedAfterwards) {
    const ImportedStreet whole{.type = "CL", .name = "SOL", .postalCode = "28002"};
    EXPECT_EQ(add({whole, whole}, StreetCodes::Own).count, 1);
    EXPECT_EQ(stored(), (Texts{"28|9|CL|SOL|1|9999|2|9998|28002|"}));
}

TEST_F(StreetSavingTest, NameThatWasCutAfterABlankIsRecognisedAfterwards) {
    const ImportedStreet street{.type = "CL", .name = std::string(44, 'X') + " "};
    EXPECT_EQ(add({street, street}).count, 1);
    EXPECT_EQ(stored(), (Texts{"28|9|CL|" + std::string(44, 'X') + "|1|9999|2|9998|28430|"}));
}

TEST_F(StreetSavingTest, TypeAndCodeThatTheirColumnsCutAreRecognisedAfterwards) {
    const ImportedStreet street{.type = "PLAZA", .name = "SOL", .postalCode = "28002 y 28003"};
    EXPECT_EQ(add({street, street}, StreetCodes::Own).count, 1);
    EXPECT_EQ(stored(), (Texts{"28|9|PLA|SOL|1|9999|2|9998|28002|"}));
}

TEST_F(StreetSavingTest, CodeOfAFileIsStoredAsItStands) {
    EXPECT_EQ(add({{.type = "CL", .name = "SOL"}}, StreetCodes::Own).count, 1);
    EXPECT_EQ(stored(), (Texts{"28|9|CL|SOL|1|9999|2|9998||"}));
}

TEST_F(StreetSavingTest, StreetWithoutNameIsRefusedAndCountedAllTheSame) {
    messages.expect("Rellene el campo Nombre de la Via", "ATENCIÓN:");
    EXPECT_EQ(add({{}, {.type = "CL", .name = "SOL"}}).count, 2);
    EXPECT_EQ(stored().size(), 1U);
}

TEST_F(StreetSavingTest, NewStreetsGetKeysOfTheUsersBlock) {
    EXPECT_EQ(add({{.type = "CL", .name = "SOL"}, {.type = "CL", .name = "LUNA"}}).count, 2);
    dbase::Dataset table("DB", "POSTAL", "CODIGO1");
    table.open();
    EXPECT_EQ(table.field("CODIGO1").text(), "99000000");
    EXPECT_TRUE(table.next());
    EXPECT_EQ(table.field("CODIGO1").text(), "99000001");
}

TEST_F(StreetSavingTest, EachRowIsAnnouncedBefore) {
    const std::vector<ImportedStreet> streets{{.type = "CL", .name = "SOL"}, {.type = "CL", .name = "LUNA"}};
    std::vector<std::size_t> rows;
    ambrel::StreetSaving saving{*controller, streets, municipality};
    saving.beforeRow = [&](std::size_t row) { rows.push_back(row); };
    EXPECT_EQ(saving.addNew().count, 2);
    EXPECT_EQ(rows, (std::vector<std::size_t>{1, 2}));
}

TEST_F(StreetSavingTest, ListsBehindAreNotifiedOnce) {
    int told = 0;
    const auto subscription = controller->DM->tbPostal.listen([&](dbase::DatasetChange) { ++told; });
    EXPECT_EQ(add({{.type = "CL", .name = "SOL"}, {.type = "CL", .name = "LUNA"}}).count, 2);
    EXPECT_EQ(told, 1);
}

// --- Failures.

TEST_F(StreetSavingTest, RefusedLockIsReportedTheRowIsLeftOutAndTheNextFollows) {
    addStreets({{"28000001", "PRIMERA", "CL", "28430"}});
    dbase::Dataset other("DB", "POSTAL");
    other.open();
    ASSERT_TRUE(other.lockCurrent());
    for (int row = 0; row < 2; ++row) {
        messages.expect("Repita nuevamente la última operación", "Acceso concurrente");
    }
    const Outcome outcome = add({{.type = "CL", .name = "SOL"}, {.type = "CL", .name = "LUNA"}});
    EXPECT_EQ(outcome.count, 2) << "those offered are counted";
    EXPECT_TRUE(outcome.failure.isEmpty()) << "the user was told already";
    EXPECT_EQ(controller->DM->tbPostal.state(), dbase::DatasetState::Browse);
    other.close();
    EXPECT_EQ(stored().size(), 1U);
}

TEST_F(StreetSavingTest, RowThatFailsAsksWhetherToCancelAndTheNextFollows) {
    addStreets({{"99000000", "SOL", "", "28001"}, {"99000001", "LUNA", "", "28001"}});
    dbase::Dataset other("DB", "POSTAL");
    other.open();
    other.edit(); // SOL is held
    messages.expect("¿Desea cancelar esta operación (S/N)?", "Esta modificando los datos de una via",
                    "Atención", ambrel::MessageAnswer::Yes);
    const Outcome outcome =
        complete({{.type = "CL", .name = "SOL"}, {.type = "CL", .name = "LUNA"}}, {"28001"});
    EXPECT_EQ(outcome.count, 1);
    EXPECT_FALSE(outcome.failure.isEmpty());
    other.cancel();
    EXPECT_EQ(stored(), (Texts{"28|0||SOL|1|9999|2|9998|28001|", "28|0|CL|LUNA|1|9999|2|9998|28001|"}));
}

TEST_F(StreetSavingTest, TableForReadingOnlyAsksNothingAndSaysWhyOnce) {
    controller.reset();
    leaveUnchecked();
    {
        std::fstream file(folder / "POSTAL.DBF", std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(29); // the language driver: one whose order of keys is unknown
        file.put('\x14');
    }
    controller.emplace();
    const Outcome outcome = add({{.type = "CL", .name = "SOL"}, {.type = "CL", .name = "LUNA"}});
    EXPECT_EQ(outcome.count, 0);
    EXPECT_FALSE(outcome.failure.isEmpty());
}

// --- Together.

TEST_F(StreetSavingTest, StreetsAreStoredInOneChangeUnderConsecutiveKeys) {
    addStreets({{"99000000", "SOL", "CL", "28430"}, {"99000006", "MAR", "CL", "28430"}});
    dbase::Table& table = controller->DM->tbPostal.openTable();
    const std::uint64_t before = table.changeCounter();
    std::vector<ImportedStreet> streets{{.type = "CL", .name = "SOL"}}; // there already
    for (int i = 0; i < 300; ++i) {
        streets.push_back({.type = "CL", .name = "CALLE " + std::to_string(i % 250)}); // the last ones twice
    }
    const Outcome outcome = add(streets);
    EXPECT_EQ(outcome.count, 250);
    EXPECT_EQ(outcome.stored, 250);
    EXPECT_EQ(table.changeCounter(), before + 2);
    dbase::Dataset keys("DB", "POSTAL");
    keys.open();
    keys.last();
    EXPECT_EQ(keys.field("CODIGO1").text(), "99000256");
    EXPECT_EQ(keys.field("VIA").text(), "CALLE 249");
    EXPECT_EQ(controller->DM->tbPostalVIA.text(), "CALLE 49") << "the last row touched";
}

TEST_F(StreetSavingTest, TypesAreCompletedInOneChange) {
    addStreets({{"99000000", "SOL", "", "28001"}, {"99000001", "LUNA", "", "28001"}});
    dbase::Table& table = controller->DM->tbPostal.openTable();
    const std::uint64_t before = table.changeCounter();
    const Outcome outcome =
        complete({{.type = "CL", .name = "SOL"}, {.type = "PZ", .name = "LUNA"}}, {"28001"});
    EXPECT_EQ(outcome.stored, 2);
    EXPECT_EQ(table.changeCounter(), before + 2);
}

TEST_F(StreetSavingTest, AStreetWithoutNameIsRefusedWhileOthersMayUseTheTable) {
    bool isLocked = true;
    const ambrel::MessageShower before = ambrel::setMessageShower([&](const ambrel::MessageBox&) {
        isLocked = isTableLocked();
        return ambrel::MessageAnswer::Accept;
    });
    const Outcome outcome =
        add({{.type = "CL", .name = "SOL"}, {.type = "CL"}, {.type = "CL", .name = "MAR"}});
    ambrel::setMessageShower(before);
    EXPECT_FALSE(isLocked);
    EXPECT_EQ(outcome.count, 3);
    EXPECT_EQ(outcome.stored, 2);
}

TEST_F(StreetSavingTest, RowsAreAnnouncedWhileOthersMayUseTheTable) {
    bool isLocked = false;
    const std::vector<ImportedStreet> streets{{.type = "CL", .name = "SOL"}, {.type = "CL", .name = "LUNA"}};
    ambrel::StreetSaving saving{*controller, streets, municipality};
    saving.beforeRow = [&](std::size_t) { isLocked = isLocked || isTableLocked(); };
    EXPECT_EQ(saving.addNew().stored, 2);
    EXPECT_FALSE(isLocked);
}

TEST_F(StreetSavingTest, WhenAGroupCannotBeStoredItsRowsAreStoredOneByOne) {
    addStreets({{"99000000", "SOL", "", "28001"}, {"99000001", "LUNA", "", "28001"}});
    dbase::Dataset other("DB", "POSTAL", "CODIGO1");
    other.open();
    other.last();
    other.edit(); // LUNA is held
    messages.expect("¿Desea cancelar esta operación (S/N)?", "Esta modificando los datos de una via",
                    "Atención", ambrel::MessageAnswer::Yes);
    std::vector<std::size_t> rows;
    ambrel::StreetSaving saving{
        *controller, {{.type = "CL", .name = "SOL"}, {.type = "CL", .name = "LUNA"}}, municipality};
    saving.beforeRow = [&](std::size_t row) { rows.push_back(row); };
    const Outcome outcome = saving.completeTypes({"28001"});
    EXPECT_EQ(outcome.count, 1);
    EXPECT_EQ(rows, (std::vector<std::size_t>{1, 2, 1, 2})) << "the row that failed is the one shown";
    other.cancel();
}

// --- Completing types.

TEST_F(StreetSavingTest, EmptyTypesOfTheMunicipalitysStreetsAreCompletedAndCounted) {
    addStreets({{"99000000", "SOL", "", "28002"},
                {"99000001", "LUNA", "PZ", "28001"},
                {"99000002", "MAR", "", "28430"}});
    const Outcome outcome = complete({{.type = "cl", .name = "sol"},
                                      {.type = "CL", .name = "LUNA"},
                                      {.type = "CL", .name = "MAR"},
                                      {.type = "CL", .name = "NUEVA"}},
                                     {"28001", "28002"});
    EXPECT_EQ(outcome.count, 1) << "one has a type, one another municipality's code, one is not there";
    EXPECT_EQ(stored(), (Texts{"28|0|CL|SOL|1|9999|2|9998|28002|", "28|0|PZ|LUNA|1|9999|2|9998|28001|",
                               "28|0||MAR|1|9999|2|9998|28430|"}));
}

// --- The host's municipality.

TEST_F(StreetSavingTest, MunicipalityHasOneCodeByItsMarkInItsProvince) {
    const auto only = [](const HostMunicipality& asked) { return ambrel::hasOnlyOneCode("DB", asked); };
    EXPECT_TRUE(only({.provinceCode = "28", .postalCode = "28430", .name = "ALPEDRETE"}));
    EXPECT_FALSE(only({.provinceCode = "28", .postalCode = "28001", .name = "MADRID"}));
    EXPECT_TRUE(only({.provinceCode = "31", .postalCode = "31491", .name = "SADA"}));
    EXPECT_FALSE(only({.provinceCode = "15", .postalCode = "15165", .name = "SADA"}));
    EXPECT_FALSE(only({.provinceCode = "28", .postalCode = "28430", .name = "alpedrete"})) << "as it stands";
    EXPECT_FALSE(only({.provinceCode = "28", .postalCode = "28430", .name = "NINGUNO"}));
    EXPECT_TRUE(only({.provinceCode = "28", .postalCode = "28999", .name = ansi("ÑORA")}));
}

TEST_F(StreetSavingTest, MunicipalityWithoutChoiceHasNotOneCode) {
    const auto only = [](const HostMunicipality& asked) { return ambrel::hasOnlyOneCode("DB", asked); };
    EXPECT_FALSE(only({.postalCode = "28430", .name = "ALPEDRETE"}));
    EXPECT_FALSE(only({.provinceCode = "28", .name = "ALPEDRETE"}));
    EXPECT_FALSE(only({.provinceCode = "28", .postalCode = "28430"}));
    EXPECT_FALSE(only({.provinceCode = "00", .postalCode = "28430", .name = "ALPEDRETE"}));
    EXPECT_FALSE(only({.provinceCode = "28", .postalCode = "00000", .name = "ALPEDRETE"}));
}

TEST_F(StreetSavingTest, PostalCodesAreThoseOfTheNameInTheProvince) {
    const auto codes = [](const HostMunicipality& asked) {
        return ambrel::CodigosPostalesMunicipio("DB", asked);
    };
    EXPECT_EQ(codes({.provinceCode = "28", .name = "MADRID"}), (Texts{"28001", "28002"}));
    EXPECT_EQ(codes({.provinceCode = "28", .name = "madrid"}), (Texts{"28001", "28002"})) << "in capitals";
    EXPECT_EQ(codes({.provinceCode = "31", .name = "SADA"}), (Texts{"31491"}));
    EXPECT_EQ(codes({.name = "MADRID"}), Texts());
    EXPECT_EQ(codes({.provinceCode = "28"}), Texts());
}

TEST_F(StreetSavingTest, FirstMunicipalityOfTheListHasNoPostalCodes) {
    EXPECT_EQ(ambrel::CodigosPostalesMunicipio(
                  "DB", {.provinceCode = "28", .name = "MADRID", .isFirstOfList = true}),
              Texts());
}

} // namespace
