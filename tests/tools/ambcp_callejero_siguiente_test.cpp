// ambcp callejero cargar with the edition that follows, and taking it back.
#include "AmbcpTest.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>

#include "dbase/dataset/dataset.h"
#include "dbase/system/databases.h"
#include "tools/edition/OfficialLines.h"

namespace ambcp::test {
namespace {

struct Street {
    std::uint32_t key, code, first, last;
    std::string name;
};

class AmbcpCallejeroSiguiente : public AmbcpTest {
protected:
    AmbcpCallejeroSiguiente() {
        static_cast<void>(folder.write("municipios.csv", "COD_INE,NOMBRE\n26071,Haro\n"));
        write("250630", {{1, 26200, 1, 9, "MAYOR"},
                         {2, 26200, 1, 5, "REAL"},
                         {2, 26210, 11, 15, "REAL"},
                         {3, 26200, 2, 8, "VIEJA"},
                         {5, 26200, 1, 3, "QUIETA"}});
        write("251231", {{1, 26200, 1, 9, "MAYOR ALTA"},
                         {2, 26200, 1, 5, "REAL"},
                         {2, 26211, 11, 15, "REAL"},
                         {4, 26200, 2, 8, "NUEVA"},
                         {5, 26200, 1, 3, "QUIETA"}});
    }

    void write(const std::string& date, const std::vector<Street>& streets) const {
        std::string stretches, names;
        for (const Street& street : streets) {
            stretches += edition::lineOf({.place = 26071,
                                          .street = street.key,
                                          .postalCode = street.code,
                                          .numbering = street.first % 2 == 1 ? '1' : '2',
                                          .first = street.first,
                                          .last = street.last,
                                          .entity = "HARO",
                                          .nucleus = "HARO"}) +
                         "\r\n";
            const std::string line = edition::streetLine(26071, street.key, "CALLE", street.name) + "\r\n";
            names += names.ends_with(line) ? "" : line;
        }
        static_cast<void>(folder.write("TRAM.D" + date, stretches));
        static_cast<void>(folder.write("VIAS.D" + date, names));
    }

    [[nodiscard]] std::vector<std::string> loadOf(const std::string& date,
                                                  const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments = {
            "callejero", "cargar",        "datos",        "--tramos",       "TRAM.D" + date,
            "--vias",    "VIAS.D" + date, "--municipios", "municipios.csv", "--abrir-rangos",
            "no"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return arguments;
    }
    void loadFirst() const { ASSERT_EQ(ambcp(loadOf("250630", {"--sin-deshacer"})).exitCode, 0); }

    [[nodiscard]] std::string streets() const {
        return done({"listar", "datos", "POSTAL", "--tag", "CODIGO1"});
    }

    /// The line of a street, empty if there is none.
    [[nodiscard]] std::string lineWith(const std::string& part) const {
        std::istringstream lines(streets());
        for (std::string line; std::getline(lines, line);) {
            if (line.find(part) != std::string::npos) {
                return line;
            }
        }
        return {};
    }

    /// Changes, or deletes, a street as a user does.
    void withStreet(const std::string& name, const std::function<void(dbase::Dataset&)>& use) const {
        dbase::setDatabaseFolder("DATOS", folder / "datos");
        dbase::Dataset table("DATOS", "POSTAL");
        table.open();
        for (table.first(); !table.eof() && table.field("VIA").text() != name;
             static_cast<void>(table.next())) {
        }
        ASSERT_EQ(table.field("VIA").text(), name);
        use(table);
    }
    void rename(const std::string& name, const std::string& other) const {
        withStreet(name, [&](dbase::Dataset& table) {
            table.edit();
            table.field("VIA").setText(other);
            table.post();
        });
    }
};

TEST_F(AmbcpCallejeroSiguiente, ATrialCountsWhatComesGoesAndChangesByMunicipality) {
    loadFirst();
    const std::string before = streets();
    const Outcome run = ambcp(loadOf("251231", {"--simular", "--informe", "antes.html"}));
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "COD_INE,MUNICIPIO,VIENEN,SE_VAN,CAMBIAN,CONFLICTOS\n26071,HARO,1,1,2,0\n");
    EXPECT_EQ(streets(), before);
    const std::string page = content("antes.html");
    for (const std::string part : {"2025-12-31", "2025-06-30", "Con otro nombre", "Con otro código postal",
                                   "CL REAL, impares 11 a 15, 26210", "CL REAL, impares 11 a 15, 26211"}) {
        EXPECT_NE(page.find(part), std::string::npos) << part;
    }
}

TEST_F(AmbcpCallejeroSiguiente, OnlyWhatChangedChangesAndKeysStay) {
    loadFirst();
    const std::string mayor = lineWith("MAYOR").substr(0, 8), real = lineWith("26210").substr(0, 8),
                      quiet = lineWith("QUIETA");
    const Outcome run = ambcp(loadOf("251231"));
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_NE(run.output.find("POSTAL: 1 fila nueva, 1 quitada y 2 cambiadas (1 de nombre, 1 de código, 0 de "
                              "números).\n"),
              std::string::npos)
        << run.output;
    EXPECT_EQ(lineWith("MAYOR ALTA").substr(0, 8), mayor);
    EXPECT_EQ(lineWith("26211").substr(0, 8), real);
    EXPECT_EQ(lineWith("QUIETA"), quiet);
    EXPECT_EQ(lineWith("VIEJA"), "");
    EXPECT_NE(lineWith("NUEVA"), "");
}

TEST_F(AmbcpCallejeroSiguiente, WarningsStandInTheReportOfALoadAndOfItsTrialAsWell) {
    ASSERT_EQ(ambcp(loadOf("251231", {"--sin-deshacer"})).exitCode, 0);
    std::filesystem::rename(folder / "VIAS.D250630", folder / "VIAS.D240630");
    std::vector<std::string> order = loadOf("250630", {"--informe", "informe.html"});
    *std::ranges::find(order, "VIAS.D250630") = "VIAS.D240630";
    for (const char* const way : {"--simular", "--sin-deshacer"}) {
        order.push_back(way);
        const Outcome run = ambcp(order);
        order.pop_back();
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        const std::string page = content("informe.html");
        for (const std::string warning : {"a edición es anterior a la que ya está cargada, de 2025-12-31",
                                          "l fichero VIAS.D240630 es de la edición de 2024-06-30, y los "
                                          "tramos son de la de 2025-06-30"}) {
            EXPECT_NE(run.errors.find(warning), std::string::npos) << way << run.errors;
            EXPECT_NE(page.find(warning), std::string::npos) << way << warning;
        }
    }
}

TEST_F(AmbcpCallejeroSiguiente, TheSameEditionAgainChangesNothingAndLeavesNoUndoFile) {
    loadFirst();
    const std::string before = streets();
    const Outcome run = ambcp(loadOf("250630", {"--informe", "otra.html"}));
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_NE(run.output.find("POSTAL: 0 filas nuevas, 0 quitadas y 0 cambiadas.\n"), std::string::npos);
    EXPECT_NE(content("otra.html").find("Sin cambios."), std::string::npos);
    EXPECT_EQ(streets(), before);
    EXPECT_FALSE(std::filesystem::exists(folder / "datos/callejero.deshacer"));
}

TEST_F(AmbcpCallejeroSiguiente, WhatUsersChangedStaysAndIsListedWhereTheOfficeChangedItToo) {
    loadFirst();
    rename("MAYOR", "MAYOR DE ABAJO");
    withStreet("QUIETA", [](dbase::Dataset& table) { table.erase(); });
    const Outcome run = ambcp(loadOf("251231", {"--conflictos", "c.csv", "--informe", "carga.html"}));
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.errors.find("1 conflicto: queda lo que había"), std::string::npos) << run.errors;
    EXPECT_NE(lineWith("MAYOR DE ABAJO"), "");
    EXPECT_EQ(lineWith("MAYOR ALTA"), "");
    EXPECT_EQ(lineWith("QUIETA"), "") << "deleted by a user";
    const std::string conflicts = content("c.csv");
    EXPECT_EQ(std::ranges::count(conflicts, '\n'), 2);
    EXPECT_NE(conflicts.find("\nCAMBIADA,26071,HARO," + lineWith("MAYOR DE ABAJO").substr(0, 8)),
              std::string::npos)
        << conflicts;
    EXPECT_NE(conflicts.find("MAYOR ALTA"), std::string::npos) << conflicts;
    EXPECT_NE(content("carga.html").find("Cambiadas por alguien"), std::string::npos);
}

TEST_F(AmbcpCallejeroSiguiente, ARowThatGrowsIntoAUsersRowIsListedBeforeAndAfterTheLoad) {
    loadFirst();
    withStreet("QUIETA", [](dbase::Dataset& table) {
        const std::string type = table.field("TIPO_VIA").text();
        table.append();
        for (const auto& [column, value] : std::map<std::string, std::string>{{"CODIGO1", "99000000"},
                                                                              {"PROVINCIA", "26"},
                                                                              {"CAPITAL", "9"},
                                                                              {"TIPO_VIA", type},
                                                                              {"VIA", "QUIETA"},
                                                                              {"IMPAR_INI", "5"},
                                                                              {"IMPAR_FIN", "7"},
                                                                              {"CODPOSTAL", "26299"},
                                                                              {"MUNICIPI", "HARO"},
                                                                              {"COD_INE", "26071"}}) {
            table.field(column).setText(value);
        }
        table.post();
    });
    write("260630", {{1, 26200, 1, 9, "MAYOR"},
                     {2, 26200, 1, 5, "REAL"},
                     {2, 26210, 11, 15, "REAL"},
                     {3, 26200, 2, 8, "VIEJA"},
                     {5, 26200, 1, 9, "QUIETA"}});
    const std::string listed =
        "VIA_PROPIA,26071,HARO,99000000,QUIETA,CL QUIETA 5-7 26299,CL QUIETA 1-9 26200\n";
    const Outcome trial = ambcp(loadOf("260630", {"--simular", "--conflictos", "antes.csv"}));
    EXPECT_EQ(trial.exitCode, 0) << trial.errors;
    EXPECT_EQ(trial.output, "COD_INE,MUNICIPIO,VIENEN,SE_VAN,CAMBIAN,CONFLICTOS\n26071,HARO,0,0,0,1\n");
    const Outcome run = ambcp(loadOf("260630", {"--conflictos", "c.csv", "--informe", "carga.html"}));
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    for (const std::string& errors : {trial.errors, run.errors}) {
        EXPECT_NE(errors.find("1 conflicto: queda lo que había"), std::string::npos) << errors;
    }
    EXPECT_TRUE(content("antes.csv").ends_with(listed)) << content("antes.csv");
    EXPECT_EQ(content("c.csv"), content("antes.csv"));
    EXPECT_NE(content("carga.html").find("se queda sin los números de la suya"), std::string::npos);
}

TEST_F(AmbcpCallejeroSiguiente, TablesThatAnotherImportFilledKeepItsStreets) {
    done({"crear", "datos", "--muestra"});
    const std::string before = streets();
    const Outcome run = ambcp(loadOf("250630"));
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    std::istringstream lines(before);
    const std::string now = streets();
    for (std::string line; std::getline(lines, line);) {
        EXPECT_NE(now.find(line), std::string::npos) << line;
    }
    EXPECT_GT(now.size(), before.size());
}

TEST_F(AmbcpCallejeroSiguiente, AnEditionIsTakenBackAndWhatUsersDidSinceStays) {
    loadFirst();
    const std::string before = streets(),
                      provenance = done({"listar", "datos", "PROCEDEN", "--tag", "CODIGO1"});
    const Outcome run = ambcp(loadOf("251231"));
    EXPECT_NE(run.errors.find("lo devuelve: ambcp deshacer "), std::string::npos) << run.errors;
    const Outcome undone = ambcp({"deshacer", "datos/callejero.deshacer"});
    EXPECT_EQ(undone.exitCode, 0) << undone.errors << undone.output;
    EXPECT_EQ(streets(), before);
    EXPECT_EQ(done({"listar", "datos", "PROCEDEN", "--tag", "CODIGO1"}), provenance);

    ASSERT_EQ(ambcp(loadOf("251231", {"--deshacer-en", "otro.deshacer"})).exitCode, 0);
    rename("NUEVA", "NUEVA DE ALGUIEN");
    rename("MAYOR ALTA", "MAYOR DE ALGUIEN");
    const Outcome partly = ambcp({"deshacer", "otro.deshacer"});
    EXPECT_EQ(partly.exitCode, 1) << partly.errors;
    EXPECT_NE(lineWith("NUEVA DE ALGUIEN"), "");
    EXPECT_NE(lineWith("MAYOR DE ALGUIEN"), "");
    EXPECT_NE(lineWith("VIEJA"), "");
    EXPECT_NE(lineWith("26210"), "");
}

TEST_F(AmbcpCallejeroSiguiente, WithoutAnUndoFileNoneIsLeft) {
    loadFirst();
    const Outcome run = ambcp(loadOf("251231", {"--sin-deshacer"}));
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.errors.find("ambcp deshacer"), std::string::npos);
    for (const auto& entry : std::filesystem::directory_iterator(folder / "datos")) {
        EXPECT_NE(entry.path().extension(), ".deshacer");
    }
}

TEST_F(AmbcpCallejeroSiguiente, TheFirstEditionIsTakenBackToo) {
    ASSERT_EQ(ambcp(loadOf("250630")).exitCode, 0);
    const Outcome undone = ambcp({"deshacer", "datos/callejero.deshacer"});
    EXPECT_EQ(undone.exitCode, 0) << undone.errors << undone.output;
    for (const std::string table : {"POSTAL", "MUNICIPI", "PROCEDEN"}) {
        EXPECT_EQ(std::ranges::count(done({"listar", "datos", table}), '\n'), 1) << table;
    }
}

} // namespace
} // namespace ambcp::test
