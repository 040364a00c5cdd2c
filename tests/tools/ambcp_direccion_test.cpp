// ambcp direccion: an address resolved as in the dialogs.
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
    /// `completed`: the last column.
    static std::string row(const std::string& values, const std::string& completed = "") {
        return "MUNICIPIO,COD_INE,VIA,TIPO_VIA,CODPOSTAL,COMPLETADA\n" + values + ',' + completed + "\n";
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
    EXPECT_EQ(run.output, row("MADRID,28079,ALCALA,CL,28001", "TIPO_VIA"));
}

TEST_F(AmbcpDireccion, WhatTheAnswerCompletedIsSaid) {
    EXPECT_EQ(resolve("MADRID", "ALCAL", "60").output, row("MADRID,28079,ALCALA,CL,28001", "VIA"));
    EXPECT_EQ(resolve("MADRI", "ALCAL", "60").output, row("MADRID,28079,ALCALA,CL,28001", "MUNICIPIO VIA"));
    EXPECT_EQ(resolve("madrid", " alcala ", "60").output, row("MADRID,28079,ALCALA,CL,28001"));
    EXPECT_EQ(resolve("MADRI", "CALLE QUE NO HAY", "60").output,
              row("MADRID,28079,CALLE QUE NO HAY,,", "MUNICIPIO"));
}

TEST_F(AmbcpDireccion, StreetOfAnotherMunicipalityIsNoAnswer) {
    EXPECT_EQ(resolve("ALBACETE", "AGR", "1").exitCode, 1);
    EXPECT_EQ(resolve("ALBACETE", "AGR", "1").output, row("ALBACETE,02003,AGR,,"));
    EXPECT_EQ(resolve("ARANJUEZ", "A", "1", "").output, row("ARANJUEZ,28013,A,,28300"));
    EXPECT_EQ(resolve("ARANJUEZ", "A", "1", "").exitCode, 1);
}

TEST_F(AmbcpDireccion, SeveralMunicipalitiesOfOneNameAreListed) {
    const Outcome run = resolve("MIERES", "MAYOR", "1");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, row("MIERES,,,,"));
    EXPECT_EQ(run.errors, "ambcp: hay 2 municipios «MIERES»; elija uno de ellos con --provincia o --ine:\n"
                          "ambcp:   --ine 17105: MIERES, provincia 17 (GIRONA)\n"
                          "ambcp:   --ine 33037: MIERES, provincia 33 (ASTURIAS)\n");
}

TEST_F(AmbcpDireccion, ProvinceOrIneCodeChoosesAmongThem) {
    const auto in = [&](const std::string& option, const std::string& value) {
        return ambcp(
                   {"direccion", ".", "--municipio", "MIERES", option, value, "--via", "X", "--numero", "1"})
            .output;
    };
    EXPECT_EQ(in("--provincia", "33"), row("MIERES,33037,X,,"));
    EXPECT_EQ(in("--provincia", "Girona"), row("MIERES,17105,X,,17830"));
    EXPECT_EQ(in("--ine", "33037"), row("MIERES,33037,X,,"));
    EXPECT_EQ(in("--provincia", "28"), row("MIERES,,,,"));
    EXPECT_EQ(in("--provincia", "中"), row("MIERES,,,,")); // an impossible value must not drop the condition
}

TEST_F(AmbcpDireccion, MunicipalityThatIsNotTheOneAskedForIsSaid) {
    const Outcome run = ambcp(
        {"direccion", ".", "--municipio", "MADRID", "--provincia", "33", "--via", "ALCALA", "--numero", "1"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.errors, "ambcp: el municipio «MADRID» no es el que se pide:\n"
                          "ambcp:   --ine 28079: MADRID, provincia 28 (MADRID)\n");
}

TEST_F(AmbcpDireccion, NumbersAreReadAsTheyAreWritten) {
    for (const std::string number : {"60 BIS", "60B", "60-62", "nº 60", "60, 3º"}) {
        EXPECT_EQ(resolve("MADRID", "ALCALA", number).output, row("MADRID,28079,ALCALA,CL,28001")) << number;
    }
}

TEST_F(AmbcpDireccion, DividedStreetWithoutNumberHasNoCode) {
    for (const std::string number : {"S/N", ""}) {
        const Outcome run = resolve("MADRID", "ALCALA", number);
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.errors, "ambcp: la vía «ALCALA» tiene varios códigos postales y el número es lo que "
                              "decide; el código postal es el del comienzo de la vía.\n");
    }
    const Outcome wrong = resolve("MADRID", "ALCALA", "uno");
    EXPECT_EQ(wrong.exitCode, 1);
    EXPECT_EQ(wrong.errors,
              "ambcp: no se ha resuelto el número «uno»: no es el de una casa; el código postal es "
              "el del comienzo de la vía.\n");
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
    EXPECT_EQ(run.output, row("MADRID,28079,CALLE QUE NO HAY,,"));
}

TEST_F(AmbcpDireccion, UnsettledNumberIsSaid) {
    folder.write("filas.csv",
                 "CODIGO1,PROVINCIA,CAPITAL,TIPO_VIA,VIA,IMPAR_INI,IMPAR_FIN,PAR_INI,PAR_FIN,CODPOSTAL\n"
                 "28999999,28,0,CL,ZZZ CORTA,1,9,2,8,28001\n");
    done({"cargar", ".", "POSTAL", "filas.csv"});
    EXPECT_EQ(resolve("MADRID", "ZZZ CORTA", "7").exitCode, 0);
    const Outcome run = resolve("MADRID", "ZZZ CORTA", "11");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, row("MADRID,28079,ZZZ CORTA,CL,28001")); // as in the form before the number
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
