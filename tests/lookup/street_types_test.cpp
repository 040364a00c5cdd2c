// Street types by abbreviation and name, with and without the list.
#include <QTest>

#include "data/ViasDM.h"
#include "dbase/system/error.h"
#include "lookup/LookupTables.h"
#include "lookup/RutCodPostales.h"

namespace {

using namespace lookup_tests;
using ambrel::MessageAnswer;

constexpr bool ask = true, quietly = false;
constexpr bool catalan = true, spanish = false;

class StreetTypes : public LookupTables {
protected:
    void SetUp() override {
        addStreetTypes({{"CL", "CALLE", "CARRER"},
                        {"AV", "AVENIDA, GRAN", "AVINGUDA, GRAN"},
                        {"CÑ", "CAÑADA", "CANYADA"},
                        {"PZ", "PLAZA", "PLAÇA"},
                        {"CA", "CALLEJA", "CARRERÓ"}});
    }

    void expectUnknown(MessageAnswer answer) {
        messages.expect(QStringLiteral("¿Desea buscarlo en la relación alfabética (S/N)?"),
                        QStringLiteral("No se ha encontrado ningún tipo de vía con esta abreviatura"),
                        QStringLiteral("Atención"), answer);
    }
    void expectEmpty(MessageAnswer answer) {
        messages.expect(QStringLiteral("¿Desea buscar el tipo de vía en la relación alfabética (S/N)?"),
                        QStringLiteral("Atención"), answer);
    }
    void expectFailure() {
        messages.expect(QStringLiteral("No se puede buscar en la lista de vías"), QStringLiteral("Error"));
    }
    /// Expects the list, and chooses a type from it.
    void pick(const QString& abbreviation) {
        dialogs.expect("TFTipoViasLista", [=](QDialog& list) {
            EXPECT_NE(DMVias, nullptr) << "the list browses the module in the global";
            type(list, "EBUSCA", abbreviation);
            accept(list);
        });
    }
};

TEST_F(StreetTypes, KnownAbbreviationGivesItsNameWithoutAsking) {
    EXPECT_EQ(Tipo_Via("CL", ask, spanish), "CALLE");
    EXPECT_EQ(Tipo_Via("CL", ask, catalan), "CARRER");
    EXPECT_EQ(Tipo_Via("PZ", quietly, catalan), QStringLiteral("PLAÇA"));
    EXPECT_EQ(Tipo_Via(QStringLiteral("CÑ"), quietly, spanish), QStringLiteral("CAÑADA"));
}

TEST_F(StreetTypes, BlanksAroundAnAbbreviationAreTrimmed) {
    EXPECT_EQ(Tipo_Via("  PZ ", quietly, spanish), "PLAZA");
    QString name;
    EXPECT_EQ(Tipo_Via2(name, " PZ "), "");
    EXPECT_EQ(name, "PLAZA");
}

TEST_F(StreetTypes, NombreViaDoesNotTrimTheAbbreviation) {
    EXPECT_EQ(Nombre_Via(" PZ"), "");
    EXPECT_EQ(Nombre_Via("PZ"), "PLAZA");
    EXPECT_EQ(Nombre_Via("PZ "), "PLAZA") << "the column is filled with blanks";
}

TEST_F(StreetTypes, ShortFormEndsBeforeTheFirstComma) {
    addStreetTypes({{"XX", "A , B, C", ",D"}});
    EXPECT_EQ(Tipo_Via("AV", quietly, spanish), "AVENIDA");
    EXPECT_EQ(Tipo_Via("AV", quietly, catalan), "AVINGUDA");
    EXPECT_EQ(Tipo_Via("XX", quietly, spanish), "A ") << "the blank before the comma stays";
    EXPECT_EQ(Tipo_Via("XX", quietly, catalan), "");
}

TEST_F(StreetTypes, WholeNameKeepsItsComma) {
    EXPECT_EQ(Nombre_Via("AV"), "AVENIDA, GRAN");
    QString name;
    EXPECT_EQ(Tipo_Via2(name, "AV"), "");
    EXPECT_EQ(name, "AVENIDA, GRAN");
}

TEST_F(StreetTypes, UnknownAbbreviationWithoutAskingShowsNothing) {
    EXPECT_EQ(Tipo_Via("ZZ", quietly, spanish), "");
    EXPECT_TRUE(messages.shown().empty());
}

TEST_F(StreetTypes, EmptyAbbreviationWithoutAskingShowsNothing) {
    EXPECT_EQ(Tipo_Via("  ", quietly, spanish), "");
    EXPECT_TRUE(messages.shown().empty());
}

TEST_F(StreetTypes, UnknownAbbreviationAnsweredNoGivesNothing) {
    expectUnknown(MessageAnswer::No);
    EXPECT_EQ(Tipo_Via("ZZ", ask, spanish), "");
    expectUnknown(MessageAnswer::No);
    QString name = "?";
    EXPECT_EQ(Tipo_Via2(name, "ZZ"), "");
    EXPECT_EQ(name, "?");
}

TEST_F(StreetTypes, EmptyAbbreviationAnsweredNoGivesNothing) {
    expectEmpty(MessageAnswer::No);
    EXPECT_EQ(Tipo_Via(" ", ask, spanish), "");
    expectEmpty(MessageAnswer::Cancel);
    QString name = "?";
    EXPECT_EQ(Tipo_Via2(name, ""), "");
    EXPECT_EQ(name, "?");
}

TEST_F(StreetTypes, TypeFromTheListComesBackAsItsAbbreviation) {
    expectUnknown(MessageAnswer::Yes);
    pick("PZ");
    EXPECT_EQ(Tipo_Via("ZZ", ask, catalan), "PZ");
    expectEmpty(MessageAnswer::Yes);
    pick(QStringLiteral("CÑ"));
    EXPECT_EQ(Tipo_Via("", ask, spanish), QStringLiteral("CÑ"));
}

TEST_F(StreetTypes, ResultIsEmptyWhenNothingHadToBeChosen) {
    QString name = "?";
    EXPECT_EQ(Tipo_Via2(name, "PZ"), "");
    EXPECT_EQ(name, "PLAZA");
    expectUnknown(MessageAnswer::Yes);
    pick("AV");
    EXPECT_EQ(Tipo_Via2(name, "ZZ"), "AV");
    EXPECT_EQ(name, "AVENIDA, GRAN");
}

TEST_F(StreetTypes, CancellingTheListGivesNothing) {
    expectUnknown(MessageAnswer::Yes);
    dialogs.expect("TFTipoViasLista", [](QDialog& list) { leave(list); });
    EXPECT_EQ(Tipo_Via("ZZ", ask, spanish), "");

    expectEmpty(MessageAnswer::Yes);
    dialogs.expect("TFTipoViasLista", [](QDialog& list) { escape(list); });
    EXPECT_EQ(Tipo_Via("", ask, spanish), "");

    QString name = "?";
    expectUnknown(MessageAnswer::Yes);
    dialogs.expect("TFTipoViasLista", [](QDialog& list) { escape(list); });
    EXPECT_EQ(Tipo_Via2(name, "ZZ"), "");
    expectEmpty(MessageAnswer::Yes);
    dialogs.expect("TFTipoViasLista", [](QDialog& list) { list.close(); });
    EXPECT_EQ(Tipo_Via2(name, ""), "");
    EXPECT_EQ(name, "?");
}

TEST_F(StreetTypes, NameGivesItsAbbreviation) {
    EXPECT_EQ(Tipo_ViaPorNombre("  CALLE "), "CL");
    EXPECT_EQ(Tipo_ViaPorNombre("AVENIDA, GRAN"), "AV");
    EXPECT_EQ(Tipo_ViaPorNombre(QStringLiteral("CAÑADA")), QStringLiteral("CÑ"));
}

TEST_F(StreetTypes, OnlyTheExactNameCountsAndNobodyIsAsked) {
    for (const char* name : {"CALL", "calle", "AVENIDA", "", "  ", "ZZZ"}) {
        EXPECT_EQ(Tipo_ViaPorNombre(name), "") << name;
    }
    EXPECT_TRUE(messages.shown().empty());
}

TEST_F(StreetTypes, TextLongerThanTheColumnIsUnknown) {
    addStreetTypes({{"LA", "QUINCE LETRAS..", ""}});
    EXPECT_EQ(Tipo_Via("CALLE", quietly, spanish), "") << "not what CA stands for";
    EXPECT_EQ(Nombre_Via("CLX"), "");
    EXPECT_EQ(Tipo_ViaPorNombre("QUINCE LETRAS.."), "LA");
    EXPECT_EQ(Tipo_ViaPorNombre("QUINCE LETRAS... Y MAS"), "");
}

TEST_F(StreetTypes, TextThatTheCodePageCannotHoldIsUnknown) {
    EXPECT_EQ(Tipo_Via(QStringLiteral("ŁŁ"), quietly, spanish), "");
    EXPECT_EQ(Tipo_ViaPorNombre(QStringLiteral("ŁŁ")), "");
    EXPECT_EQ(Nombre_Via(QStringLiteral("ŁŁ")), "");
}

TEST_F(StreetTypes, MissingTableIsReported) {
    removeTable("TIPO_VIA");
    QString name = "?";
    expectFailure();
    EXPECT_EQ(Tipo_Via("CL", ask, spanish), "");
    expectFailure();
    EXPECT_EQ(Tipo_Via2(name, "CL"), "");
    expectFailure();
    EXPECT_EQ(Tipo_ViaPorNombre("CALLE"), "");
    EXPECT_TRUE(messages.isDone());
    EXPECT_EQ(name, "?");
}

TEST_F(StreetTypes, DamagedTableIsReported) {
    folder.write("TIPO_VIA.DBF", "nada");
    leaveUnchecked();
    expectFailure();
    EXPECT_EQ(Tipo_Via("CL", quietly, spanish), "");
    EXPECT_EQ(DMVias, nullptr);
}

TEST_F(StreetTypes, MissingTableRaisesOutOfNombreVia) {
    removeTable("TIPO_VIA");
    EXPECT_THROW(static_cast<void>(Nombre_Via("CL")), dbase::Error);
    EXPECT_EQ(DMVias, nullptr);
}

TEST_F(StreetTypes, ListIsThatOfItsRoutineThoughAnotherOneRanDuringTheQuestion) {
    expectEmpty(MessageAnswer::Yes);
    const auto shown = ambrel::setMessageShower({});
    ambrel::setMessageShower([&](const ambrel::MessageBox& box) {
        EXPECT_EQ(Nombre_Via("CL"), "CALLE"); // by a call that the host had posted
        EXPECT_NE(DMVias, nullptr);
        return shown(box);
    });
    pick("PZ");
    EXPECT_EQ(Tipo_Via("", ask, spanish), "PZ");
    EXPECT_EQ(DMVias, nullptr);
    ambrel::setMessageShower(shown);
}

TEST_F(StreetTypes, ModuleIsGoneBeforeTheFailureIsShown) {
    removeTable("TIPO_VIA");
    expectFailure();
    const auto shown = ambrel::setMessageShower({});
    bool wasEmpty = false;
    ambrel::setMessageShower([&](const ambrel::MessageBox& box) {
        wasEmpty = DMVias == nullptr;
        return shown(box);
    });
    static_cast<void>(Tipo_Via("CL", quietly, spanish));
    ambrel::setMessageShower(shown);
    EXPECT_TRUE(wasEmpty);
}

} // namespace
