// ambcp validar --tabla: the addresses of a host's table.
#include "AmbcpTest.h"

#include <filesystem>

#include "dbase/dataset/dataset.h"

namespace ambcp::test {
namespace {

class AmbcpValidarTabla : public AmbcpTest {
protected:
    AmbcpValidarTabla() {
        done({"crear", ".", "--muestra"});
        file = createTable(
            ambrel::test::defineTable("CLIENTES",
                                      {"CODIGO C2", "DIRECCION C30", "CP C5", "POBLACION C20", "ESTADO C21"},
                                      {"CODIGO"}),
            {"CODIGO", "DIRECCION", "CP", "POBLACION"},
            {{"A1", "CL ADRIANO VI 3", "", "VITORIA-GASTEIZ"},
             {"A2", "CL ADRINAO VI 3", "01008", "VITORIA-GASTEIZ"},
             {"A3", "CL DE NINGUNA PARTE 3", "01008", "VITORIA-GASTEIZ"}});
    }

    [[nodiscard]] Outcome fill(const std::string& parts, const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments{"validar", ".", "--tabla",    "CLIENTES",
                                           "--hilos", "1", "--escribir", parts};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return ambcp(arguments);
    }
    [[nodiscard]] std::string rows() const { return done({"listar", ".", "CLIENTES"}); }

    std::string file;
    std::string rowsBefore = "CODIGO,DIRECCION,CP,POBLACION,ESTADO\n"
                             "A1,CL ADRIANO VI 3,,VITORIA-GASTEIZ,\n"
                             "A2,CL ADRINAO VI 3,01008,VITORIA-GASTEIZ,\n"
                             "A3,CL DE NINGUNA PARTE 3,01008,VITORIA-GASTEIZ,\n";
};

TEST_F(AmbcpValidarTabla, WithoutMoreWritesTheVerdictsAndChangesNothing) {
    const std::string bytes = content("CLIENTES.DBF");
    const Outcome run = ambcp({"validar", ".", "--tabla", "CLIENTES.DBF"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_TRUE(run.output.starts_with("_REG,CODIGO,DIRECCION,CP,POBLACION,ESTADO,VEREDICTO,CONFIANZA,"))
        << run.output;
    EXPECT_NE(run.output.find("\n1,A1,CL ADRIANO VI 3,,VITORIA-GASTEIZ,,COMPLETADA,"), std::string::npos)
        << run.output;
    EXPECT_NE(run.output.find("\n3,A3,CL DE NINGUNA PARTE 3,01008,VITORIA-GASTEIZ,,VIA_DESCONOCIDA,"),
              std::string::npos)
        << run.output;
    EXPECT_NE(run.errors.find("ambcp: CLIENTES: 3 filas en "), std::string::npos) << run.errors;
    EXPECT_EQ(content("CLIENTES.DBF"), bytes);
    EXPECT_FALSE(std::filesystem::exists(folder / "CLIENTES.deshacer"));
}

TEST_F(AmbcpValidarTabla, FillsTheColumnsNamedAndCanBeUndone) {
    const Outcome run = fill("via,codpostal=CP,veredicto=ESTADO");
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "");
    EXPECT_NE(run.errors.find("CLIENTES: 3 filas cambiadas; 0 no se han tocado\n"), std::string::npos)
        << run.errors;
    EXPECT_NE(run.errors.find("lo devuelve: ambcp deshacer ./CLIENTES.deshacer\n"), std::string::npos)
        << run.errors;
    EXPECT_EQ(rows(), "CODIGO,DIRECCION,CP,POBLACION,ESTADO\n"
                      "A1,CL ADRIANO VI 3,01008,VITORIA-GASTEIZ,COMPLETADA\n"
                      "A2,\"CL ADRIANO VI, 3\",01008,VITORIA-GASTEIZ,CORREGIDA\n"
                      "A3,CL DE NINGUNA PARTE 3,01008,VITORIA-GASTEIZ,VIA_DESCONOCIDA\n");
    EXPECT_EQ(ambcp({"deshacer", "CLIENTES.deshacer"}).exitCode, 0);
    EXPECT_EQ(rows(), rowsBefore);
}

TEST_F(AmbcpValidarTabla, NeverWritesOverAnUndoFile) {
    EXPECT_EQ(fill("codpostal").exitCode, 0);
    const std::string first = content("CLIENTES.deshacer");
    EXPECT_EQ(fill("veredicto=ESTADO").exitCode, 0);
    EXPECT_EQ(content("CLIENTES.deshacer"), first);
    EXPECT_TRUE(std::filesystem::exists(folder / "CLIENTES-2.deshacer"));
    const std::string now = rows();
    const Outcome run = fill("via", {"--deshacer-en", "CLIENTES.deshacer"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.errors.find("ya existe"), std::string::npos) << run.errors;
    EXPECT_EQ(rows(), now);
    EXPECT_EQ(ambcp({"deshacer", "CLIENTES-2.deshacer"}).exitCode, 0);
    EXPECT_EQ(ambcp({"deshacer", "CLIENTES.deshacer"}).exitCode, 0);
    EXPECT_EQ(rows(), rowsBefore);
}

TEST_F(AmbcpValidarTabla, ThatChangesNothingLeavesNoUndoFile) {
    EXPECT_EQ(fill("codpostal").exitCode, 0);
    std::filesystem::remove(folder / "CLIENTES.deshacer");
    const Outcome again = fill("codpostal");
    EXPECT_EQ(again.exitCode, 0);
    EXPECT_NE(again.errors.find("0 filas cambiadas"), std::string::npos) << again.errors;
    EXPECT_FALSE(std::filesystem::exists(folder / "CLIENTES.deshacer"));
}

TEST_F(AmbcpValidarTabla, ListsRowsThatAnotherStationHolds) {
    dbase::Dataset station("DB", "CLIENTES", "CODIGO");
    station.open();
    station.edit();
    const Outcome run = fill("codpostal,veredicto=ESTADO", {"--salida", "dicho.csv"});
    EXPECT_EQ(run.exitCode, 1) << run.errors;
    EXPECT_EQ(run.output, "REGISTRO,COLUMNA,VALOR,MOTIVO\n1,,,otro usuario la está modificando\n");
    EXPECT_NE(content("dicho.csv").find("\n2,A2,"), std::string::npos);
    station.cancel();
}

TEST_F(AmbcpValidarTabla, FindsATableOfAnotherFolderByItsPath) {
    std::filesystem::create_directory(folder / "otra");
    for (const char* name : {"CLIENTES.DBF", "CLIENTES.MDX"}) {
        std::filesystem::rename(folder / name, std::filesystem::path(folder / "otra") / name);
    }
    const Outcome run = ambcp({"validar", ".", "--tabla", "otra/clientes", "--escribir", "codpostal",
                               "--clave", "CODIGO", "--deshacer-en", "lo-de-antes"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_NE(content("lo-de-antes").find("TABLA\t1\t"), std::string::npos);
    EXPECT_NE(content("lo-de-antes").find("\tCODIGO\tCODIGO C 2 0\t"), std::string::npos);
    EXPECT_NE(refused({"validar", ".", "--tabla", "CLIENTES"}).find("no hay ninguna tabla «CLIENTES»"),
              std::string::npos);
}

TEST_F(AmbcpValidarTabla, RefusesWhatItCannotDoBeforeAnythingChanges) {
    const auto refusal = [&](const std::vector<std::string>& more) {
        std::vector<std::string> arguments{"validar", ".", "--tabla", "CLIENTES"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return refused(arguments);
    };
    EXPECT_NE(refusal({"--escribir", "codpostal=NADA"}).find("no tiene la columna «NADA»"),
              std::string::npos);
    EXPECT_NE(refusal({"--escribir", "calle"}).find("--escribir: no se entiende «calle»"), std::string::npos);
    EXPECT_NE(refusal({"--escribir", "via,via"}).find("via se da más de una vez"), std::string::npos);
    EXPECT_NE(refusal({"--escribir", "codpostal", "--clave", "NADA"}).find("no tiene la columna «NADA»"),
              std::string::npos);
    EXPECT_NE(refusal({"--escribir", "codpostal", "--deshacer-en", "no/hay/tal"}).find("no/hay/tal"),
              std::string::npos);
    EXPECT_NE(refusal({"--columnas", "via=NADA"}).find("NADA"), std::string::npos);
    EXPECT_NE(refusal({"clientes.csv"}).find("--tabla"), std::string::npos);
    EXPECT_NE(refusal({"--salida", "CLIENTES.DBF"}).find("el mismo fichero"), std::string::npos);
    EXPECT_NE(refused({"validar", "."}).find("falta ENTRADA.csv"), std::string::npos);
    EXPECT_NE(refused({"validar", ".", "x.csv", "--escribir", "via"}).find("--tabla"), std::string::npos);
    EXPECT_EQ(rows(), rowsBefore);
    EXPECT_FALSE(std::filesystem::exists(folder / "CLIENTES.deshacer"));
}

} // namespace
} // namespace ambcp::test
