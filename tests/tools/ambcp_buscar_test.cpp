// ambcp buscar: one record by its key.
#include "AmbcpTest.h"

namespace ambcp::test {
namespace {

class AmbcpBuscar : public AmbcpTest {
protected:
    AmbcpBuscar() {
        createTable(
            ambrel::test::defineTable("CALLES", {"PROV C2", "VIA C9", "NUM N5", "ALTA D"},
                                      {"VIA=PROV+VIA", "NUM", "ALTA", "MAYUS=UPPER(VIA)"}),
            {{"28", "Sol", "3", "20240229"}, {"08", "Ñu", "10", ""}, {"28", "Alba", "20", "19991231"}});
    }

    std::string found(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"buscar", ".", "CALLES"});
        return done(arguments);
    }
    Outcome search(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"buscar", ".", "CALLES"});
        return ambcp(arguments);
    }
    void expectNothing(const std::vector<std::string>& arguments) const {
        const Outcome run = search(arguments);
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.errors.rfind("ambcp: no hay ningún registro con esa clave", 0), 0U) << run.errors;
    }
    void expectRefusal(const std::vector<std::string>& arguments, const std::string& text) const {
        const Outcome run = search(arguments);
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.errors, "ambcp: " + text + "\n");
    }
    static std::string row(const std::string& values) { return "PROV,VIA,NUM,ALTA\n" + values + "\n"; }
};

TEST_F(AmbcpBuscar, AWholeKeyFindsItsRecord) {
    EXPECT_EQ(found({"VIA", "PROV=28", "VIA=Sol"}), row("28,Sol,3,2024-02-29"));
    EXPECT_EQ(found({"via", "via=Ñu", "prov=08"}), row("08,Ñu,10,"));
}

TEST_F(AmbcpBuscar, LeadingColumnsOfAKeyFindTheFirstRecordThatHasThem) {
    EXPECT_EQ(found({"VIA", "PROV=28"}), row("28,Alba,20,1999-12-31"));
}

TEST_F(AmbcpBuscar, NumbersAndDatesAreKeysToo) {
    EXPECT_EQ(found({"NUM", "NUM=10"}), row("08,Ñu,10,"));
    EXPECT_EQ(found({"ALTA", "ALTA=2024-02-29"}), row("28,Sol,3,2024-02-29"));
}

TEST_F(AmbcpBuscar, AKeyExpressionIsEvaluated) {
    EXPECT_EQ(found({"MAYUS", "VIA=sol"}), row("28,Sol,3,2024-02-29"));
}

TEST_F(AmbcpBuscar, NotFoundIsANegativeAnswer) {
    expectNothing({"VIA", "PROV=28", "VIA=So"});
    expectNothing({"NUM", "NUM=4"});
}

TEST_F(AmbcpBuscar, NearestIsAtOrAfterTheKey) {
    EXPECT_EQ(found({"VIA", "PROV=28", "VIA=B", "--cercana"}), row("28,Sol,3,2024-02-29"));
    EXPECT_EQ(found({"NUM", "NUM=4", "--cercana"}), row("08,Ñu,10,"));
    EXPECT_EQ(found({"NUM", "NUM=20", "--cercana"}), row("28,Alba,20,1999-12-31"));
}

TEST_F(AmbcpBuscar, NothingIsNearestAfterTheLastKey) { expectNothing({"NUM", "NUM=21", "--cercana"}); }

TEST_F(AmbcpBuscar, UnknownColumnOrTagIsRefused) {
    expectRefusal({"VIA", "CALLE=Sol"}, "la tabla CALLES no tiene ninguna columna «CALLE»");
    expectRefusal({"CALLE", "VIA=Sol"},
                  "la tabla CALLES no tiene ningún tag «CALLE»; tiene VIA, NUM, ALTA, MAYUS");
}

TEST_F(AmbcpBuscar, ColumnOutsideTheTagChangesNothing) {
    const Outcome run = search({"NUM", "NUM=10", "VIA=Sol"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, row("08,Ñu,10,"));
    EXPECT_EQ(run.errors, "ambcp: aviso: la columna VIA no forma parte del tag NUM y no cuenta.\n");
}

TEST_F(AmbcpBuscar, ColumnsOutsideTheTagAloneAreRefused) {
    expectRefusal({"NUM", "VIA=Sol"}, "la columna VIA no forma parte del tag NUM");
}

TEST_F(AmbcpBuscar, AKeyThatLacksLeadingColumnsSaysWhich) {
    expectRefusal({"VIA", "VIA=Sol"}, "falta PROV, que en la clave del tag VIA va delante de lo que se "
                                      "busca; si está en blanco, escriba PROV=");
    createTable(ambrel::test::defineTable("TRES", {"A C1", "B C1", "C C1"}, {"T=A+B+C"}), {{"a", "", "c"}});
    EXPECT_EQ(refused({"buscar", ".", "TRES", "T", "C=c", "--cercana"}),
              "ambcp: faltan A y B, que en la clave del tag T van delante de lo que se busca; si están en "
              "blanco, escriba A= "
              "B=\n");
    EXPECT_EQ(refused({"buscar", ".", "TRES", "T", "A=a", "C=c"}),
              "ambcp: falta B, que en la clave del tag T va delante de lo que se busca; si está en blanco, "
              "escriba B=\n");
    EXPECT_EQ(done({"buscar", ".", "TRES", "T", "A=a", "B=", "C=c"}), "A,B,C\na,,c\n");
}

TEST_F(AmbcpBuscar, ValueThatItsColumnCannotHoldIsRefused) {
    expectRefusal({"NUM", "NUM=diez"}, "columna NUM: «diez» no es un número");
    expectRefusal({"VIA", "VIA=Ł"}, "columna VIA: «Ł» lleva el carácter «Ł», que no existe en Windows-1252");
    expectRefusal({"VIA", "PROV=280"}, "columna PROV: «280» ocupa 3 caracteres y en la columna caben 2");
}

TEST_F(AmbcpBuscar, MalformedPairIsRefused) {
    expectRefusal({"VIA", "28"}, "«28» no tiene la forma CAMPO=VALOR");
    expectRefusal({"VIA", "PROV=28", "prov=08"}, "la columna PROV se da dos veces");
}

TEST_F(AmbcpBuscar, ValueMayHoldAnEqualsSign) { expectNothing({"VIA", "PROV=28", "VIA=a=b"}); }

} // namespace
} // namespace ambcp::test
