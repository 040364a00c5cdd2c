// ambcp revisar: what is wrong in the content of the tables.
#include "AmbcpTest.h"
#include "dbase/dataset/dataset.h"

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
                          "ambcp: 1 vía; 0 van en la clave detrás de otra del mismo nombre, de otro "
                          "municipio\n"
                          "ambcp: bloque «99»: 0 claves; hasta 99999999 quedan 1000000\n");
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
    EXPECT_EQ(run.errors,
              "ambcp: MUNICIPI: 1 fila; POSTAL: 2 filas; 2 hallazgos\n"
              "ambcp:   RANGO_INVERTIDO               1\n"
              "ambcp:   MINUSCULAS                    1\n"
              "ambcp: 2 vías; 0 van en la clave detrás de otra del mismo nombre, de otro "
              "municipio\n"
              "ambcp: bloque «99»: 1 clave; la más alta, 99000000; hasta 99999999 quedan 999999\n");
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
              "ambcp: --salida sería el mismo fichero que --informe\n");
}

TEST_F(AmbcpRevisar, AReportNamesTheTableThatItIsAbout) {
    ASSERT_EQ(ambcp({"revisar", ".", "postal.dbf", "--informe", "informe.html"}).exitCode, 0);
    EXPECT_NE(content("informe.html").find("de POSTAL<"), std::string::npos);
}

TEST_F(AmbcpRevisar, NothingIsWrittenOverATable) {
    const std::string before = content("POSTAL.DBF");
    for (const char* const option : {"--salida", "--informe"}) {
        EXPECT_EQ(refused({"revisar", ".", option, "POSTAL.DBF"}),
                  "ambcp: " + std::string(option) +
                      " no puede ser POSTAL.DBF: es el nombre de una tabla o de un fichero de deshacer\n");
    }
    EXPECT_EQ(content("POSTAL.DBF"), before);
    for (const char* const file : {"postal.mdx", "POSTAL.AMJ", "INTENCION.AMI", "revisar.deshacer"}) {
        static_cast<void>(refused({"revisar", ".", "--salida", file}));
    }
}

TEST_F(AmbcpRevisar, WhatARepairWouldIgnoreIsRefused) {
    const std::string seeHelp = ". Vea «ambcp revisar --help».\n";
    for (const char* const option : {"--salida", "--informe"}) {
        EXPECT_EQ(refused({"revisar", ".", "--reparar", "BLANCOS", option, "f"}),
                  "ambcp: " + std::string(option) + " no se da junto con --reparar" + seeHelp);
    }
    EXPECT_NE(refused({"revisar", ".", "--reparar", "", "--escribir"}).find("no es ninguna clase"),
              std::string::npos);
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

class AmbcpRevisarReparar : public AmbcpRevisar {
protected:
    AmbcpRevisarReparar() {
        load("28000002,28,9,CL,Peña  alta,99,1,98,2,28901,GETAFE,28065\n"
             "28000003,28,,CL,LUNA,1,9999,2,9998,28901,GETAFE,28065\n"
             "99000000,28,,CL,CASTAÃ‘AR,1,9999,2,9998,28901,,\n"
             "28000005,28,9,CL,CASTA\\AR,1,9999,2,9998,28901,GETAFE,28065\n");
        folder.write("mas.csv",
                     "COD_INE,CODPOSTAL,UNICO,CAPITAL,NOMBRE,ENT_MENOR\n28092,28931,N,9,Mostoles,False\n");
        done({"cargar", ".", "MUNICIPI", "mas.csv"});
        streets = done({"listar", ".", "POSTAL", "--registro"});
        towns = done({"listar", ".", "MUNICIPI", "--registro"});
    }

    static constexpr const char* all =
        "RANGO_INVERTIDO,MINUSCULAS,BLANCOS,LETRA_ROTA,CAPITAL_EN_BLANCO,FICHA_CANCELADA,UNICO";
    std::string streets, towns;
};

TEST_F(AmbcpRevisarReparar, WithoutEscribirOnlyListsWhatWouldChange) {
    const Outcome run = ambcp({"revisar", ".", "--reparar", all});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(
        run.output,
        "TABLA,REGISTRO,CLAVE,CLASE,PROPUESTA\n"
        "POSTAL,2,28000002,RANGO_INVERTIDO MINUSCULAS BLANCOS,\"VIA=PEÑA ALTA, IMPAR_INI=1, IMPAR_FIN=99, "
        "PAR_INI=2, PAR_FIN=98\"\n"
        "POSTAL,3,28000003,CAPITAL_EN_BLANCO,CAPITAL=9\n"
        "POSTAL,4,99000000,LETRA_ROTA FICHA_CANCELADA,\"VIA=CASTAÑAR, CAPITAL=9\"\n"
        "MUNICIPI,2,28092 28931,MINUSCULAS UNICO,\"NOMBRE=MOSTOLES, UNICO=S\"\n");
    EXPECT_EQ(run.errors, "ambcp: 4 filas cambiarían; con --escribir se cambian\n");
    EXPECT_EQ(done({"listar", ".", "POSTAL", "--registro"}), streets);
}

TEST_F(AmbcpRevisarReparar, WhatIsWrittenIsFoundNoMoreAndCanBeUndone) {
    const std::string before = content("POSTAL.DBF"), townsBefore = content("MUNICIPI.DBF");
    const Outcome run = ambcp({"revisar", ".", "--reparar", all, "--escribir"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "");
    EXPECT_TRUE(run.errors.starts_with("ambcp: 4 filas cambiadas; 0 no se han tocado\n")) << run.errors;
    const Outcome again = ambcp({"revisar", "."});
    for (const char* const kind : {"RANGO", "MINUSCULAS", "BLANCOS,", "CAPITAL_EN", "FICHA", "UNICO,"}) {
        EXPECT_EQ(again.output.find(kind), std::string::npos) << again.output;
    }
    EXPECT_NE(again.output.find("LETRA_ROTA,«CASTA\\AR»"), std::string::npos) << "its repair is only likely";
    EXPECT_EQ(ambcp({"deshacer", "revisar.deshacer"}).exitCode, 0);
    EXPECT_EQ(done({"listar", ".", "POSTAL", "--registro"}), streets);
    EXPECT_EQ(done({"listar", ".", "MUNICIPI", "--registro"}), towns);
    const auto rowsOf = [](const std::string& table) { // after the header, whose size stands in it
        return table.substr(static_cast<unsigned char>(table.at(8)) +
                            256U * static_cast<unsigned char>(table.at(9)));
    };
    EXPECT_EQ(rowsOf(content("POSTAL.DBF")), rowsOf(before));
    EXPECT_EQ(rowsOf(content("MUNICIPI.DBF")), rowsOf(townsBefore));
}

TEST_F(AmbcpRevisarReparar, OnlyTheClassesAndTheTableThatAreNamedAreMended) {
    const Outcome run = ambcp({"revisar", ".", "POSTAL", "--reparar", "minusculas"});
    EXPECT_EQ(run.output, "TABLA,REGISTRO,CLAVE,CLASE,PROPUESTA\n"
                          "POSTAL,2,28000002,MINUSCULAS,VIA=PEÑA  ALTA\n");
}

TEST_F(AmbcpRevisarReparar, MarkAndProvinceBecomeThoseOfTheMunicipality) {
    load("28000007,45,0,CL,NORTE,1,9999,2,9998,28901,GETAFE,28065\n");
    EXPECT_EQ(ambcp({"revisar", ".", "--reparar", "PROVINCIA_AJENA,CAPITAL_AJENA"}).output,
              "TABLA,REGISTRO,CLAVE,CLASE,PROPUESTA\n"
              "POSTAL,6,28000007,PROVINCIA_AJENA CAPITAL_AJENA,\"PROVINCIA=28, CAPITAL=9\"\n");
}

TEST_F(AmbcpRevisarReparar, TheUndoFileMayBeNamedAndIsNeverWrittenOver) {
    EXPECT_EQ(ambcp({"revisar", ".", "--reparar", "BLANCOS", "--escribir", "--deshacer-en", "uno.deshacer"})
                  .exitCode,
              0);
    EXPECT_FALSE(content("uno.deshacer").empty());
    static_cast<void>(
        refused({"revisar", ".", "--reparar", "UNICO", "--escribir", "--deshacer-en", "uno.deshacer"}));
    EXPECT_EQ(done({"listar", ".", "MUNICIPI", "--registro"}), towns);
}

TEST_F(AmbcpRevisarReparar, ClassesWithoutOneRightRepairAreRefusedByName) {
    const std::string repairable = "se reparan RANGO_INVERTIDO, PROVINCIA_AJENA, MINUSCULAS, BLANCOS, "
                                   "LETRA_ROTA, CAPITAL_EN_BLANCO, CAPITAL_AJENA, FICHA_CANCELADA, UNICO\n";
    EXPECT_EQ(refused({"revisar", ".", "--reparar", "BLANCOS,SOLAPE"}),
              "ambcp: --reparar: SOLAPE no tiene una reparación única; " + repairable);
    EXPECT_EQ(refused({"revisar", ".", "--reparar", "OTRA"}),
              "ambcp: --reparar: «OTRA» no es ninguna clase; " + repairable);
}

/// ALCALA's name, in small letters, stands in rows of streets and of an entity as well.
class AmbcpRevisarNames : public AmbcpRevisar {
protected:
    AmbcpRevisarNames() {
        folder.write("mas.csv", "COD_INE,CODPOSTAL,UNICO,CAPITAL,NOMBRE,ENT_MENOR,NOM_MUNICI\n"
                                "28005,28801,S,9,Alcalá  de los Caballeros de la Vega,False,\n"
                                "28005,28801,S,9,EL VAL,True,Alcalá  de los Caballeros de l\n");
        done({"cargar", ".", "MUNICIPI", "mas.csv"});
        load("28000002,28,9,CL,LUNA,1,9999,2,9998,28801,Alcalá  de los Caballeros de la Vega,28005\n"
             "28000003,28,9,CL,SOL,1,9999,2,9998,28801,Alcalá  de los Caballeros de la Vega,\n"
             "28000004,28,9,CL,MAR,1,9999,2,9998,28801,EL VAL,28005\n");
    }

    static constexpr const char* kinds = "MINUSCULAS,BLANCOS";
};

TEST_F(AmbcpRevisarNames, WhatRepeatsANameIsRepairedBeforeTheNameItself) {
    EXPECT_EQ(ambcp({"revisar", ".", "--reparar", kinds}).output,
              "TABLA,REGISTRO,CLAVE,CLASE,PROPUESTA\n"
              "POSTAL,2,28000002,MINUSCULAS BLANCOS,MUNICIPI=ALCALÁ DE LOS CABALLEROS DE LA VEGA\n"
              "POSTAL,3,28000003,MINUSCULAS BLANCOS,MUNICIPI=ALCALÁ DE LOS CABALLEROS DE LA VEGA\n"
              "MUNICIPI,3,28005 28801,MINUSCULAS BLANCOS,NOM_MUNICI=ALCALÁ DE LOS CABALLEROS DE LA\n"
              "MUNICIPI,2,28005 28801,MINUSCULAS BLANCOS,NOMBRE=ALCALÁ DE LOS CABALLEROS DE LA VEGA\n");
}

TEST_F(AmbcpRevisarNames, ARepairOfMunicipiAloneTakesTheCopiesInPostalAlong) {
    const std::string all = ambcp({"revisar", ".", "--reparar", kinds}).output;
    EXPECT_EQ(ambcp({"revisar", ".", "MUNICIPI", "--reparar", kinds}).output, all);
    EXPECT_EQ(ambcp({"revisar", ".", "POSTAL", "--reparar", kinds}).exitCode, 0) << "nothing of its own";
}

TEST_F(AmbcpRevisarNames, AreWrittenAndUndoneWithTheirCopies) {
    const std::string streets = done({"listar", ".", "POSTAL", "--registro"}),
                      towns = done({"listar", ".", "MUNICIPI", "--registro"});
    EXPECT_EQ(ambcp({"revisar", ".", "--reparar", kinds, "--escribir"}).exitCode, 0);
    for (const char* const table : {"POSTAL", "MUNICIPI"}) {
        EXPECT_EQ(done({"listar", ".", table}).find("Alcalá"), std::string::npos) << table;
    }
    EXPECT_EQ(ambcp({"deshacer", "revisar.deshacer"}).exitCode, 0);
    EXPECT_EQ(done({"listar", ".", "POSTAL", "--registro"}), streets);
    EXPECT_EQ(done({"listar", ".", "MUNICIPI", "--registro"}), towns);
}

TEST_F(AmbcpRevisarNames, ANameStaysAsLongAsACopyOfItIsHeldAndTheNextRepairFindsTheRest) {
    {
        dbase::Dataset postal("DB", "POSTAL", "CODIGO1");
        postal.open();
        ASSERT_TRUE(postal.seek({{"CODIGO1", "28000003"}}, dbase::SeekMode::Exact));
        postal.edit();
        const Outcome run = ambcp({"revisar", ".", "--reparar", kinds, "--escribir"});
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_NE(run.output.find("POSTAL,3,28000003,MINUSCULAS BLANCOS,MUNICIPI=ALCALÁ DE LOS CABALLEROS DE "
                                  "LA VEGA,otro usuario la está cambiando\n"),
                  std::string::npos)
            << run.output;
        EXPECT_NE(
            run.output.find("MUNICIPI,2,28005 28801,MINUSCULAS BLANCOS,NOMBRE=ALCALÁ DE LOS CABALLEROS "
                            "DE LA VEGA,\"otra fila, que repite su nombre, no se ha podido cambiar\"\n"),
            std::string::npos)
            << run.output;
        postal.cancel();
    }
    EXPECT_EQ(ambcp({"revisar", ".", "--reparar", kinds, "--escribir"}).exitCode, 0);
    EXPECT_EQ(done({"listar", ".", "POSTAL"}).find("Alcalá"), std::string::npos);
    EXPECT_EQ(done({"listar", ".", "MUNICIPI"}).find("Alcalá"), std::string::npos);
}

} // namespace
} // namespace ambcp::test
