// ambcp validar: files of addresses.
#include "AmbcpTest.h"

#include <algorithm>

namespace ambcp::test {
namespace {

const std::string addedNames =
    "VEREDICTO,CONFIANZA,COD_INE_V,MUNICIPIO_V,PROVINCIA_V,TIPO_V,VIA_V,NUMERO_V,RESTO_V,CODPOSTAL_V,"
    "CAMBIOS,ALTERNATIVAS";

class AmbcpValidar : public AmbcpTest {
protected:
    AmbcpValidar() {
        done({"crear", "datos"});
        load("MUNICIPI", "COD_INE,CODPOSTAL,NOMBRE,COD_PROV,UNICO,ENT_MENOR\n"
                         "28079,28001,MADRID,28,N,False\n28079,28013,MADRID,28,N,False\n"
                         "33037,33600,MIERES,33,S,False\n");
        load("PROVIN", "PROVINCIA,CODIGO,GRUPO\nMADRID,028,1\nASTURIAS,033,1\n");
        load("TIPO_VIA", "CODIGO,NOMBRE,NOMBRE_CAT\nCL,CALLE,CARRER\nAV,AVENIDA,AVINGUDA\n");
        load("POSTAL",
             "CODIGO1,PROVINCIA,CAPITAL,TIPO_VIA,VIA,IMPAR_INI,IMPAR_FIN,PAR_INI,PAR_FIN,CODPOSTAL,COD_INE\n"
             "28000001,28,0,CL,GRAN VIA,1,41,2,48,28013,28079\n"
             "28000002,28,0,CL,GRAN VIA,43,9999,50,9998,28001,28079\n"
             "33000001,33,9,CL,REAL,1,9999,2,9998,33600,33037\n");
    }

    void load(const std::string& table, const std::string& rows) const {
        folder.write(table + ".csv", rows);
        done({"cargar", "datos", table, table + ".csv"});
    }
    /// Validates a text given as a file.
    Outcome validate(const std::string& text, std::vector<std::string> options = {}) const {
        folder.write("clientes.csv", text);
        options.insert(options.begin(), {"validar", "datos", "clientes.csv"});
        return ambcp(options);
    }
    static std::string customers(int count) {
        std::string text = "ID,CALLE,NUMERO,CP,POBLACION\n";
        for (int i = 0; i < count; ++i) {
            const std::array<const char*, 6> rows{
                "Gran Vía,3,28013,Madrid",  "Real,5,,Mieres", "Inventada,1,,Madrid",
                "Grann Vía,45,,\"Madrid\"", "Real,2",         "\"Real,3,33600,Mieres"};
            text += std::to_string(i) + ',' + rows.at(static_cast<std::size_t>(i) % rows.size()) + '\n';
        }
        return text;
    }
    /// Rows that take no time.
    static std::string brokenRows(int count) {
        std::string text = "CALLE,CP\n";
        for (int i = 0; i < count; ++i) {
            text += std::to_string(i) + ",x,y\n";
        }
        return text;
    }
};

TEST_F(AmbcpValidar, RowsStayAndVerdictsFollow) {
    const Outcome run =
        validate("ID,CALLE,NUMERO,CP,POBLACION\n7,Gran Vía,3,28013,Madrid\n8,Inventada,1,,Madrid\n");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(
        run.output.starts_with("ID,CALLE,NUMERO,CP,POBLACION," + addedNames + "\n7,Gran Vía,3,28013,Madrid,"))
        << run.output;
    EXPECT_NE(run.output.find(",28079,MADRID,MADRID,CL,GRAN VIA,3,,28013,"), std::string::npos) << run.output;
    EXPECT_NE(run.output.find("\n8,Inventada,1,,Madrid,VIA_DESCONOCIDA,"), std::string::npos) << run.output;
}

TEST_F(AmbcpValidar, WhatWasRecognisedAndTheTotalsAreSaid) {
    const Outcome run = validate("ID;Calle;C.P.\n1;Real 3;33600\n2;Real\n3;;\n");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(
        run.errors.starts_with("ambcp: clientes.csv: utf-8, separado por «;»; via=Calle, codpostal=C.P.\n"
                               "ambcp: clientes.csv: línea 3: la fila tiene 2 valores y la cabecera 3\n"
                               "ambcp: clientes.csv: 3 filas en "))
        << run.errors;
    for (const std::string line :
         {"  FILA_ROTA                      1   33,3 %\n", "  VACIA                          1   33,3 %\n",
          "  resueltas solas                1   33,3 %\n"}) {
        EXPECT_NE(run.errors.find(line), std::string::npos) << line << run.errors;
    }
}

TEST_F(AmbcpValidar, StandardInputAndOutputAreAFilter) {
    folder.write("clientes.csv", customers(50));
    const Outcome file = ambcp({"validar", "datos", "clientes.csv"});
    EXPECT_EQ(shell("\"$AMBCP\" validar datos - <clientes.csv").output, file.output);
    EXPECT_EQ(shell("cat clientes.csv | \"$AMBCP\" validar datos - --salida salida.csv").output, "");
    EXPECT_EQ(content("salida.csv"), file.output);
}

TEST_F(AmbcpValidar, UnsettledRowsGoToAFileOfTheirOwn) {
    const Outcome run = validate(customers(6), {"--solo-fallos", "fallos.csv"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    const std::string unsettled = content("fallos.csv");
    EXPECT_TRUE(unsettled.starts_with("ID,CALLE,NUMERO,CP,POBLACION," + addedNames + "\n2,Inventada,"))
        << unsettled;
    EXPECT_EQ(unsettled.find("\n0,"), std::string::npos);
    EXPECT_NE(unsettled.find("\n4,Real,2,FILA_ROTA,"), std::string::npos);
}

TEST_F(AmbcpValidar, ReportIsWritten) {
    const Outcome run = validate(customers(6), {"--informe", "informe.html", "--salida", "salida.csv"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_NE(content("informe.html").find("clientes.csv"), std::string::npos);
}

TEST_F(AmbcpValidar, ReportThatCannotBeWrittenIsRefusedAtOnce) {
    const Outcome run = validate(customers(6), {"--informe", "no/informe.html"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.output, "");
}

TEST_F(AmbcpValidar, ColumnsMayBeNamed) {
    const std::string text = "A;B;C\nReal;Gran Vía 3;28013\n";
    EXPECT_EQ(validate(text, {"--columnas", "via=B,codpostal=3"}).exitCode, 0);
    EXPECT_NE(validate(text, {"--columnas", "via=B,codpostal=3"}).output.find(";GRAN VIA;3;;28013;"),
              std::string::npos);
    const Outcome run = validate(text);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.output, "");
    EXPECT_TRUE(run.errors.starts_with(
        "ambcp: clientes.csv: no se reconoce la columna de la vía ni la de la dirección; "
        "las columnas son «A», «B», «C»; diga cuál es cada una con --columnas"))
        << run.errors;
    EXPECT_EQ(validate(text, {"--columnas", "calle=B"}).exitCode, 2);
    EXPECT_EQ(validate(text, {"--columnas", "via"}).exitCode, 2);
    EXPECT_EQ(validate(text, {"--columnas", "via=B,via=C"}).exitCode, 2);
}

TEST_F(AmbcpValidar, ThresholdDecidesWhatIsCorrected) {
    const std::string text = "CALLE,NUMERO,CP,POBLACION\nGran Vis,3,28013,Madrid\n";
    EXPECT_NE(validate(text, {"--umbral", "0.5"}).output.find(",CORREGIDA,"), std::string::npos);
    EXPECT_NE(validate(text, {"--umbral", "1"}).output.find(",DUDOSA,"), std::string::npos);
    for (const std::string wrong : {"2", "-1", "x", "0,9"}) {
        EXPECT_EQ(validate(text, {"--umbral", wrong}).exitCode, 2) << wrong;
    }
}

TEST_F(AmbcpValidar, SeparatorAndEncodingMayBeGiven) {
    const std::string text = "CALLE|A,B|CP\nEspa\xF1"
                             "a|,|28013\n";
    const Outcome run = validate(text, {"--separador", "|", "--codificacion", "windows-1252"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_NE(run.output.find("\nEspa\xF1"
                              "a|,|28013|VIA_DESCONOCIDA|"),
              std::string::npos)
        << run.output;
    EXPECT_EQ(validate(text, {"--codificacion", "ebcdic"}).exitCode, 2);
}

TEST_F(AmbcpValidar, OutputIsNeverATable) {
    std::filesystem::create_symlink("datos/POSTAL.DBF", folder / "enlace.csv");
    for (const std::string option : {"--salida", "--solo-fallos", "--informe"}) {
        for (const std::string file :
             {"datos/POSTAL.DBF", "datos/municipi.mdx", "enlace.csv", "a.deshacer"}) {
            const std::string before = content("datos/POSTAL.DBF");
            const Outcome run = validate(customers(3), {option, file});
            EXPECT_EQ(run.exitCode, 2) << option << ' ' << file;
            EXPECT_NE(run.errors.find("es el nombre de una tabla"), std::string::npos) << run.errors;
            EXPECT_TRUE(content("datos/POSTAL.DBF") == before);
        }
    }
}

TEST_F(AmbcpValidar, OutputIsNeverTheInput) {
    const std::string text = customers(3);
    for (const std::string option : {"--salida", "--solo-fallos", "--informe"}) {
        const Outcome run = validate(text, {option, "./clientes.csv"});
        EXPECT_EQ(run.exitCode, 2) << option;
        EXPECT_NE(run.errors.find("el mismo fichero que la entrada"), std::string::npos) << run.errors;
        EXPECT_EQ(content("clientes.csv"), text);
    }
    EXPECT_EQ(shell("\"$AMBCP\" validar datos - --salida clientes.csv <clientes.csv").exitCode, 2);
    EXPECT_EQ(shell("\"$AMBCP\" validar datos clientes.csv >>clientes.csv").exitCode, 2);
    EXPECT_EQ(content("clientes.csv"), text);
    EXPECT_EQ(validate(text, {"--salida", "x.csv", "--solo-fallos", "./x.csv"}).exitCode, 2);
}

TEST_F(AmbcpValidar, RefusedFileLeavesAnEarlierResultAlone) {
    folder.write("salida.csv", "de antes");
    EXPECT_EQ(validate("A,B\n1,2\n", {"--salida", "salida.csv"}).exitCode, 2);
    EXPECT_EQ(content("salida.csv"), "de antes");
}

TEST_F(AmbcpValidar, FolderWithoutTablesLeavesAnEarlierResultAlone) {
    folder.write("salida.csv", "de antes");
    folder.write("fallos.csv", "de antes");
    folder.write("clientes.csv", "DIRECCION;POBLACION\nMayor 5;Mieres\n");
    folder.write("vacia/otro.txt", "");
    const std::string problem = refused(
        {"validar", "vacia", "clientes.csv", "--salida", "salida.csv", "--solo-fallos", "fallos.csv"});
    EXPECT_NE(problem.find("MUNICIPI"), std::string::npos) << problem;
    EXPECT_EQ(content("salida.csv"), "de antes");
    EXPECT_EQ(content("fallos.csv"), "de antes");
}

TEST_F(AmbcpValidar, PartsTogetherAreTheWhole) {
    const std::string text = customers(500) + "x,\"Re\nal\",1,,Mieres\n";
    const std::string whole = validate(text).output;
    std::string together;
    for (const std::string part : {"1/3", "2/3", "3/3"}) {
        together += validate(text, {"--parte", part}).output;
    }
    EXPECT_EQ(together, whole);
    for (const std::string wrong : {"0/2", "3/2", "2", "1/", "/2", "a/b", "1/2/3"}) {
        EXPECT_EQ(validate(text, {"--parte", wrong}).exitCode, 2) << wrong;
    }
    EXPECT_EQ(shell("\"$AMBCP\" validar datos - --parte 1/2 <clientes.csv").exitCode, 2)
        << "a pipe has no size";
}

TEST_F(AmbcpValidar, FourJobsOfParallelGiveTheSameAsOneRun) {
    if (shell("parallel --version").exitCode != 0) {
        GTEST_SKIP() << "wants GNU parallel";
    }
    folder.write("clientes.csv", customers(600));
    const Outcome one = shell("\"$AMBCP\" validar datos clientes.csv --sin-cabecera");
    EXPECT_EQ(one.exitCode, 0) << one.errors;
    const Outcome four =
        shell("parallel -k -j4 --block 4k --pipe --header : \"$AMBCP\" validar datos - --hilos 1 "
              "--sin-cabecera <clientes.csv");
    EXPECT_EQ(four.exitCode, 0) << four.errors;
    EXPECT_GT(std::ranges::count(one.output, '\n'), 599);
    EXPECT_TRUE(four.output == one.output);
    const Outcome parts =
        shell("parallel -k -j4 \"$AMBCP\" validar datos clientes.csv --hilos 1 --parte {}/4 ::: 1 2 3 4");
    EXPECT_TRUE(parts.output == shell("\"$AMBCP\" validar datos clientes.csv").output);
}

TEST_F(AmbcpValidar, ReaderThatHasReadEnoughIsNoFailure) {
    folder.write("clientes.csv", brokenRows(50000));
    const Outcome run = shell("{ \"$AMBCP\" validar datos clientes.csv; echo $? >rc; } | head -1");
    EXPECT_EQ(run.output, "CALLE,CP," + addedNames + '\n');
    EXPECT_EQ(content("rc"), "0\n") << run.errors;
}

/// Whether every line of a result is whole; the rows here hold no line ends.
bool hasWholeLines(const std::string& text) { return text.empty() || text.ends_with('\n'); }

TEST_F(AmbcpValidar, InterruptedRunLeavesWholeLines) {
    folder.write("clientes.csv", brokenRows(110000));
    // The pipe stays open after the rows, so that the command waits for more when the signal comes. Shells
    // let what runs in the background ignore Ctrl+C; env undoes that.
    for (const auto& [signal, code] : {std::pair("INT", 130), {"TERM", 143}}) {
        const Outcome run = shell(
            std::string("rm -f rows salida.csv; mkfifo rows; exec 3<>rows; "
                        "env --default-signal \"$AMBCP\" validar datos - --salida salida.csv <rows & job=$!; "
                        "cat clientes.csv >rows; "
                        "until [ -s salida.csv ]; do :; done; kill -") +
            signal + " $job; wait $job; exit $?");
        EXPECT_EQ(run.exitCode, code) << run.errors;
        EXPECT_NE(run.errors.find("interrumpido"), std::string::npos) << run.errors;
        EXPECT_TRUE(hasWholeLines(content("salida.csv")));
    }
}

TEST_F(AmbcpValidar, FullDiskLeavesWholeLines) {
    folder.write("clientes.csv", brokenRows(20000));
    const Outcome run = shell("ulimit -f 600; \"$AMBCP\" validar datos clientes.csv --salida salida.csv");
    EXPECT_EQ(run.exitCode, 2) << run.errors;
    EXPECT_NE(run.errors.find("salida.csv: no se puede escribir"), std::string::npos) << run.errors;
    EXPECT_TRUE(hasWholeLines(content("salida.csv")));
}

TEST_F(AmbcpValidar, FileThatIsMissingOrEmptyIsRefused) {
    refused({"validar", "datos", "no.csv"});
    folder.write("vacio.csv", "");
    EXPECT_NE(refused({"validar", "datos", "vacio.csv"}).find("no hay ninguna fila"), std::string::npos);
    refused({"validar", "no", "vacio.csv"});
}

TEST_F(AmbcpValidar, HeadingAloneGetsItsColumns) {
    const Outcome run = validate("CALLE,CP\r\n");
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "CALLE,CP," + addedNames + "\r\n");
}

} // namespace
} // namespace ambcp::test
