// ambcp sugerir: what may have been meant.
#include "AmbcpTest.h"

namespace ambcp::test {
namespace {

class AmbcpSugerir : public AmbcpTest {
protected:
    AmbcpSugerir() {
        done({"crear", "."});
        load("MUNICIPI", "COD_INE,CODPOSTAL,NOMBRE,COD_PROV,UNICO,ENT_MENOR\n"
                         "28079,28001,MADRID,28,N,False\n28079,28013,MADRID,28,N,False\n"
                         "15030,15001,\"CORUÑA, A\",15,N,False\n"
                         "17105,17830,MIERES,17,S,False\n33037,33600,MIERES,33,S,False\n"
                         "33037,33600,UJO,33,S,True\n");
        load("PROVIN",
             "PROVINCIA,CODIGO,GRUPO\nMADRID,028,1\n\"CORUÑA, A\",015,1\nASTURIAS,033,1\nGIRONA,017,1\n");
        load("TIPO_VIA", "CODIGO,NOMBRE,NOMBRE_CAT\nCL,CALLE,CARRER\nAV,AVENIDA,AVINGUDA\nPZ,PLAZA,PLAÇA\n");
        load("POSTAL",
             "CODIGO1,PROVINCIA,CAPITAL,TIPO_VIA,VIA,CODPOSTAL,COD_INE\n"
             "28000001,28,0,CL,GRAN VIA,28013,28079\n28000002,28,0,CL,GRAN VIA,28001,28079\n"
             "28000003,28,0,CL,CONSTITUCION,28001,28079\n28000004,28,0,AV,CONSTITUCION,28013,28079\n"
             "28000005,28,0,CL,VELAZQUEZ,28001,28079\n33000001,33,9,CL,REAL,33600,33037\n");
    }

    void load(const std::string& table, const std::string& rows) const {
        folder.write(table + ".csv", rows);
        done({"cargar", ".", table, table + ".csv"});
    }
    Outcome suggest(std::vector<std::string> options) const {
        options.insert(options.begin(), {"sugerir", "."});
        return ambcp(options);
    }
    static std::string rows(const std::string& text) {
        return "PUNTOS,COD_INE,MUNICIPIO,PROVINCIA,TIPO_VIA,VIA,CODPOSTALES\n" + text;
    }
    static std::string numbered(const std::string& text) { return "CONSULTA," + rows(text); }
};

TEST_F(AmbcpSugerir, StreetHasOneLineWithAllItsCodes) {
    const Outcome run = suggest({"--municipio", "madrid", "--via", "c/ gran vía"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, rows("1.000,28079,MADRID,MADRID,CL,GRAN VIA,28001 28013\n"));
}

TEST_F(AmbcpSugerir, MunicipalitiesAloneAreSuggestedWithoutAStreet) {
    EXPECT_EQ(suggest({"--municipio", "La Coruña"}).output,
              rows("1.000,15030,\"CORUÑA, A\",\"CORUÑA, A\",,,15001\n"));
    EXPECT_EQ(suggest({"--municipio", "mieres"}).output,
              rows("1.000,17105,MIERES,GIRONA,,,17830\n1.000,33037,MIERES,ASTURIAS,,,33600\n"));
}

TEST_F(AmbcpSugerir, ProvinceIsTakenInAnyWriting) {
    for (const std::string province : {"33", "asturias", "Oviedo"}) {
        EXPECT_EQ(suggest({"--municipio", "mieres", "--provincia", province}).output,
                  rows("1.000,33037,MIERES,ASTURIAS,,,33600\n"))
            << province;
    }
    const std::string errors = refused({"sugerir", ".", "--municipio", "mieres", "--provincia", "Mordor"});
    EXPECT_EQ(errors, "ambcp: no se conoce la provincia «Mordor»\n");
}

TEST_F(AmbcpSugerir, TypePutsItsStreetFirst) {
    EXPECT_EQ(suggest({"--municipio", "madrid", "--via", "constitución", "--tipo", "AV"}).output,
              rows("1.000,28079,MADRID,MADRID,AV,CONSTITUCION,28013\n"
                   "1.000,28079,MADRID,MADRID,CL,CONSTITUCION,28001\n"));
}

TEST_F(AmbcpSugerir, OnlyAsManyAsAskedForAreWritten) {
    EXPECT_EQ(
        suggest({"--municipio", "madrid", "--via", "constitucion", "--tipo", "CL", "--max", "1"}).output,
        rows("1.000,28079,MADRID,MADRID,CL,CONSTITUCION,28001\n"));
    EXPECT_EQ(suggest({"--municipio", "madrid", "--max", "0"}).exitCode, 1);
}

TEST_F(AmbcpSugerir, NothingNearEndsWithOne) {
    const Outcome run = suggest({"--municipio", "madrid", "--via", "xyzzyw"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, rows(""));
    EXPECT_EQ(suggest({"--municipio", "Łódź"}).exitCode, 1);
}

TEST_F(AmbcpSugerir, PointsAreOneOnlyForTheSameName) {
    EXPECT_EQ(suggest({"--municipio", "madrid", "--via", "velazques"}).output.find("1.000"),
              std::string::npos);
    EXPECT_EQ(suggest({"--municipio", "madird", "--via", "velazquez"}).output.find("1.000"),
              std::string::npos);
}

TEST_F(AmbcpSugerir, ManyQueriesAreAnsweredInOneRun) {
    folder.write("lote.csv", "municipio,provincia,via,tipo\n"
                             "madrid,,gran via,\n"
                             "madrid,28,xyzzyw,\n"
                             "mieres,Asturias,,\n"
                             "mieres,Mordor,,\n"
                             "madird,,velazqez,\n");
    const Outcome run = suggest({"--lote", "lote.csv", "--max", "1"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.errors, "ambcp: consulta 4: no se conoce la provincia «Mordor».\n");
    const std::string last = run.output.substr(run.output.rfind("\n5,") + 1);
    EXPECT_EQ(run.output.substr(0, run.output.size() - last.size()),
              numbered("1,1.000,28079,MADRID,MADRID,CL,GRAN VIA,28001 28013\n"
                       "3,1.000,33037,MIERES,ASTURIAS,,,33600\n"));
    EXPECT_NE(last.find(",28079,MADRID,MADRID,CL,VELAZQUEZ,28001\n"), std::string::npos) << last;
}

TEST_F(AmbcpSugerir, QueriesComeFromStandardInputToo) {
    const Outcome run = shell("printf 'MUNICIPIO,otra\\nmadrid,x\\n' | \"$AMBCP\" sugerir . --lote -");
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output.substr(0, run.output.find("MADRID")), numbered("1,1.000,28079,"));
}

TEST_F(AmbcpSugerir, BrokenFilesOfQueriesAreRefused) {
    folder.write("sin.csv", "via\nreal\n");
    EXPECT_NE(suggest({"--lote", "sin.csv"}).errors.find("falta la columna municipio"), std::string::npos);
    folder.write("corta.csv", "municipio,via\nmadrid\n");
    const Outcome run = suggest({"--lote", "corta.csv"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.errors.find("la fila tiene 1 valor"), std::string::npos) << run.errors;
    folder.write("nada.csv", "");
    EXPECT_EQ(suggest({"--lote", "nada.csv"}).exitCode, 2);
    EXPECT_EQ(suggest({"--lote", "falta.csv"}).exitCode, 2);
}

TEST_F(AmbcpSugerir, AFileOfQueriesThatIsNotInUtf8IsRefused) {
    folder.write("hoja.csv", "municipio,via\nmadrid,gran via\nmadrid,constituci\xf3n\n");
    const Outcome run = suggest({"--lote", "hoja.csv"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.errors.find("hoja.csv: línea 3"), std::string::npos) << run.errors;
    EXPECT_NE(run.errors.find("no está en UTF-8"), std::string::npos) << run.errors;
}

TEST_F(AmbcpSugerir, AColumnOfQueriesThatIsThereTwiceIsRefused) {
    folder.write("dos.csv", "municipio,Vía,VIA\nmadrid,gran via,velazquez\n");
    const Outcome run = suggest({"--lote", "dos.csv"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.errors.find("la columna «VIA» está repetida"), std::string::npos) << run.errors;
}

TEST_F(AmbcpSugerir, MunicipalityOrFileIsRequiredAndNotBoth) {
    EXPECT_NE(refused({"sugerir", "."}).find("--municipio"), std::string::npos);
    folder.write("lote.csv", "municipio\nmadrid\n");
    const std::string errors = refused({"sugerir", ".", "--municipio", "madrid", "--lote", "lote.csv"});
    EXPECT_NE(errors.find("--municipio no se da junto con --lote"), std::string::npos) << errors;
}

TEST_F(AmbcpSugerir, AnOptionThatWouldNotCountIsRefused) {
    folder.write("lote.csv", "municipio\nmadrid\n");
    for (const std::string option : {"--provincia", "--via"}) {
        const std::string errors = refused({"sugerir", ".", "--lote", "lote.csv", option, "28"});
        EXPECT_NE(errors.find(option + " necesita --municipio"), std::string::npos) << errors;
    }
    const std::string errors = refused({"sugerir", ".", "--municipio", "madrid", "--tipo", "CL"});
    EXPECT_NE(errors.find("--tipo necesita --via"), std::string::npos) << errors;
}

TEST_F(AmbcpSugerir, MissingTablesAreAFailure) {
    leaveUnchecked();
    EXPECT_EQ(shell("rm POSTAL.DBF POSTAL.MDX").exitCode, 0);
    EXPECT_EQ(suggest({"--municipio", "madrid"}).exitCode, 0);
    EXPECT_EQ(suggest({"--municipio", "madrid", "--via", "real"}).exitCode, 2);
}

} // namespace
} // namespace ambcp::test
