// ambcp revisar: what is wrong in the content of the tables.
#include "AmbcpTest.h"

namespace ambcp::test {
namespace {

class AmbcpRevisar : public AmbcpTest {
protected:
    AmbcpRevisar() {
        done({"crear", "."});
        folder.write("tipos.csv", "CODIGO,NOMBRE\nCL,CALLE\n");
        folder.write("municipios.csv", "COD_INE,CODPOSTAL,UNICO,CAPITAL,NOMBRE,ENT_MENOR\n"
                                       "28065,28901,S,9,GETAFE,False\n");
        done({"cargar", ".", "TIPO_VIA", "tipos.csv"});
        done({"cargar", ".", "MUNICIPI", "municipios.csv"});
        load("28000001,28,9,CL,MAYOR,1,9999,2,9998,28901,GETAFE,28065\n");
    }

    void load(const std::string& rows) {
        folder.write("vias.csv", "CODIGO1,PROVINCIA,CAPITAL,TIPO_VIA,VIA,IMPAR_INI,IMPAR_FIN,PAR_INI,PAR_FIN,"
                                 "CODPOSTAL,MUNICIPI,COD_INE\n" +
                                     rows);
        done({"cargar", ".", "POSTAL", "vias.csv"});
    }

    static constexpr const char* heading = "GRAVEDAD,TABLA,REGISTRO,CLAVE,CLASE,TEXTO,PROPUESTA\n";
};

TEST_F(AmbcpRevisar, SoundTablesEndWithZeroAndAHeading) {
    const Outcome run = ambcp({"revisar", "."});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, heading);
    EXPECT_EQ(run.errors, "ambcp: MUNICIPI: 1 fila; POSTAL: 1 fila; 0 hallazgos\n"
                          "ambcp: bloque «99»: 0 claves\n");
}

TEST_F(AmbcpRevisar, FindingsAreRowsAndTotalsGoToStandardError) {
    load("99000000,28,9,CL,\"Sol, \"\"el\"\"\",99,1,2,9998,28901,GETAFE,28065\n");
    const Outcome run = ambcp({"revisar", "."});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(
        run.output,
        "GRAVEDAD,TABLA,REGISTRO,CLAVE,CLASE,TEXTO,PROPUESTA\n"
        "GRAVE,POSTAL,2,99000000,MINUSCULAS,\"«Sol, \"\"el\"\"» lleva minúsculas\",\"VIA=SOL, \"\"EL\"\"\"\n"
        "GRAVE,POSTAL,2,99000000,RANGO_INVERTIDO,\"el tramo 99–1 de CL Sol, \"\"el\"\" está al revés\","
        "\"IMPAR_INI=1, IMPAR_FIN=99\"\n");
    EXPECT_EQ(run.errors, "ambcp: MUNICIPI: 1 fila; POSTAL: 2 filas; 2 hallazgos\n"
                          "ambcp:   RANGO_INVERTIDO               1\n"
                          "ambcp:   MINUSCULAS                    1\n"
                          "ambcp: bloque «99»: 1 clave; la más alta, 99000000\n");
}

TEST_F(AmbcpRevisar, ATableConfinesTheFindingsToItsOwn) {
    load("28000002,28,9,CL,sol,1,9999,2,9998,28901,GETAFE,28065\n");
    const Outcome towns = ambcp({"revisar", ".", "municipi.dbf"});
    EXPECT_EQ(towns.exitCode, 0);
    EXPECT_EQ(towns.output, heading);
    EXPECT_EQ(ambcp({"revisar", ".", "postal"}).exitCode, 1);
}

TEST_F(AmbcpRevisar, FindingsMayGoToAFile) {
    const Outcome run = ambcp({"revisar", ".", "--salida", "hallazgos.csv"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(content("hallazgos.csv"), heading);
}

TEST_F(AmbcpRevisar, AReportMayBeWrittenAsWell) {
    load("28000002,28,9,CL,sol,1,9999,2,9998,28901,GETAFE,28065\n");
    const Outcome run = ambcp({"revisar", ".", "--informe", "informe.html"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(content("informe.html").find("«sol» lleva minúsculas"), std::string::npos);
    EXPECT_EQ(refused({"revisar", ".", "--informe", "f", "--salida", "f"}),
              "ambcp: --informe sería el mismo fichero que la salida\n");
}

TEST_F(AmbcpRevisar, WhatCannotBeAuditedIsRefused) {
    EXPECT_EQ(refused({"revisar", ".", "PROVIN"}),
              "ambcp: de la tabla «PROVIN» no se revisa el contenido; se revisan MUNICIPI y POSTAL\n");
    EXPECT_EQ(refused({"revisar", "nada"}), "ambcp: no existe la carpeta «nada»\n");
}

TEST_F(AmbcpRevisar, TheSampleHasOnlyNotes) {
    done({"crear", "muestra", "--muestra"});
    const Outcome run = ambcp({"revisar", "muestra"});
    EXPECT_EQ(run.output.find("GRAVE,"), std::string::npos);
    EXPECT_EQ(run.output.find("AVISO,"), std::string::npos);
}

} // namespace
} // namespace ambcp::test
