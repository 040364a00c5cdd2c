// ambcp direccion: an address resolved as the screens do.
#include "AmbcpTest.h"

namespace ambcp::test {
namespace {

class AmbcpDireccion : public AmbcpTest {
protected:
    AmbcpDireccion() { done({"crear", ".", "--muestra"}); }

    Outcome resolve(const std::string& municipality, const std::string& street, const std::string& number,
                    const std::string& type = "CL") const {
        return ambcp({"direccion", ".", "--municipio", municipality, "--tipo", type, "--via", street,
                      "--numero", number});
    }
    static std::string row(const std::string& values) {
        return "MUNICIPIO,COD_INE,VIA,TIPO_VIA,CODPOSTAL\n" + values + "\n";
    }
};

TEST_F(AmbcpDireccion, NumberDecidesTheCodeOfADividedStreet) {
    EXPECT_EQ(resolve("MADRID", "ALCALA", "1").output, row("MADRID,28079,ALCALA,CL,28014"));
    EXPECT_EQ(resolve("MADRID", "ALCALA", "60").output, row("MADRID,28079,ALCALA,CL,28001"));
    EXPECT_EQ(resolve("MADRID", "ALCALA", "2000").output, row("MADRID,28079,ALCALA,CL,28037"));
}

TEST_F(AmbcpDireccion, SettledAddressEndsWithZero) {
    const Outcome run = resolve("MADRID", "ALCALA", "60");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.errors, "");
}

TEST_F(AmbcpDireccion, SmallLettersCountAsCapitals) {
    EXPECT_EQ(resolve("madrid", "alcala", "1", "cl").output, row("MADRID,28079,ALCALA,CL,28014"));
}

TEST_F(AmbcpDireccion, StreetTypeMayBeLeftOut) {
    const Outcome run =
        ambcp({"direccion", ".", "--municipio", "MADRID", "--via", "ALCALA", "--numero", "60"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, row("MADRID,28079,ALCALA,CL,28001"));
}

TEST_F(AmbcpDireccion, UnsettledMunicipalityIsSaid) {
    const Outcome run = resolve("MORDOR", "ALCALA", "1");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, row("MORDOR,,,,"));
    EXPECT_EQ(run.errors, "ambcp: no se ha resuelto el municipio «MORDOR».\n");
}

TEST_F(AmbcpDireccion, UnsettledStreetIsSaid) {
    const Outcome run = resolve("MADRID", "CALLE QUE NO HAY", "1");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.errors, "ambcp: no se ha resuelto la vía «CALLE QUE NO HAY».\n");
    EXPECT_EQ(run.output.find("MADRID,28079,CALLE QUE NO HAY,"), row("").size() - 1);
}

TEST_F(AmbcpDireccion, UnsettledNumberIsSaid) {
    folder.write("filas.csv",
                 "CODIGO1,PROVINCIA,CAPITAL,TIPO_VIA,VIA,IMPAR_INI,IMPAR_FIN,PAR_INI,PAR_FIN,CODPOSTAL\n"
                 "28999999,28,0,CL,ZZZ CORTA,1,9,2,8,28001\n");
    done({"cargar", ".", "POSTAL", "filas.csv"});
    EXPECT_EQ(resolve("MADRID", "ZZZ CORTA", "7").exitCode, 0);
    const Outcome run = resolve("MADRID", "ZZZ CORTA", "11");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, row("MADRID,28079,ZZZ CORTA,CL,28001")); // what the form shows before the number
    EXPECT_EQ(run.errors,
              "ambcp: no se ha resuelto el número «11»; el código postal es el del comienzo de la vía.\n");
}

TEST_F(AmbcpDireccion, TextThatTheTablesCannotHoldMatchesNothing) {
    const Outcome run = resolve("Łódź", "ALCALA", "1");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, row("Łódź,,,,"));
    EXPECT_EQ(resolve("MADRID", "Łódź", "1").errors, "ambcp: no se ha resuelto la vía «Łódź».\n");
}

TEST_F(AmbcpDireccion, MissingTablesAreAFailure) {
    leaveUnchecked();
    EXPECT_EQ(shell("rm POSTAL.DBF POSTAL.MDX").exitCode, 0);
    EXPECT_EQ(refused({"direccion", ".", "--municipio", "MADRID", "--via", "ALCALA", "--numero", "1"}),
              "ambcp: "
              "./POSTAL: no existe la tabla\n");
}

} // namespace
} // namespace ambcp::test
