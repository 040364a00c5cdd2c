// ambcp callejero cargar: an edition of the official directory into the tables.
#include "AmbcpTest.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include "dbase/dataset/dataset.h"
#include "dbase/system/databases.h"
#include "tools/edition/OfficialEdition.h"
#include "tools/edition/OfficialLines.h"

namespace ambcp::test {
namespace {

class AmbcpCallejeroCargar : public AmbcpTest {
protected:
    edition::Files write(std::uint64_t stretches, std::size_t places = 52, unsigned badEvery = 0) {
        std::filesystem::create_directory(folder / "oficial");
        return edition::writeEdition(folder / "oficial", edition::inventedPlaces(places),
                                     {.stretches = stretches, .badEvery = badEvery});
    }
    /// Lines of two streets of a municipality that has a code of another province.
    edition::Files writeSmall() {
        edition::Files files;
        const auto stretch = [](std::uint32_t street, std::uint32_t code, std::uint32_t first,
                                std::uint32_t last) {
            return edition::lineOf({.place = 9109,
                                    .street = street,
                                    .postalCode = code,
                                    .numbering = first % 2 == 1 ? '1' : '2',
                                    .first = first,
                                    .last = last,
                                    .entity = "VENTAS (LAS)",
                                    .nucleus = "VENTAS (LAS)"}) +
                   "\r\n";
        };
        files.stretches =
            folder.write("TRAM.D250630.G250702", stretch(1, 1118, 3, 9) + stretch(1, 1118, 2, 8) +
                                                     stretch(2, 9215, 1, 5) + stretch(2, 1118, 11, 15));
        files.streets =
            folder.write("VIAS.D250630.G250702", edition::streetLine(9109, 1, "CALLE", "MAYOR") + "\r\n" +
                                                     edition::streetLine(9109, 2, "QQQQQ", "REAL") + "\r\n");
        files.municipalities = folder.write("municipios.csv", "COD_INE,NOMBRE\n09109,Condado de Treviño\n");
        return files;
    }
    std::vector<std::string> load(const edition::Files& files,
                                  const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments = {"callejero",   "cargar",        "datos",
                                              "--tramos",    files.stretches, "--vias",
                                              files.streets, "--municipios",  files.municipalities};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return arguments;
    }
    static std::size_t linesOf(const std::string& text) {
        return static_cast<std::size_t>(std::ranges::count(text, '\n'));
    }
    /// The outcome of a load into whose work a signal falls; the editions grow until one is not loaded before
    /// it arrives.
    Outcome interrupted(const std::string& signal, bool hasTables) {
        for (const std::uint64_t stretches : {40'000, 160'000, 640'000}) {
            std::filesystem::remove_all(folder / "datos");
            if (hasTables) {
                done({"crear", "datos"});
            }
            const edition::Files files = write(stretches);
            // Shells let what runs in the background ignore Ctrl+C; env undoes that.
            const Outcome run =
                shell("env --default-signal \"$AMBCP\" callejero cargar datos --tramos '" + files.stretches +
                      "' --vias '" + files.streets + "' --municipios '" + files.municipalities +
                      "' & job=$!; until [ -e datos/POSTAL.DBF.nuevo ] || ! kill -0 $job 2>/dev/null; do :; "
                      "done; kill -" +
                      signal + " $job; wait $job; exit $?");
            if (run.output.empty()) {
                return run;
            }
        }
        ADD_FAILURE() << "every load was over first";
        return {};
    }
    [[nodiscard]] std::set<std::string> filesIn(const std::string& name) const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder / name)) {
            names.insert(entry.path().filename());
        }
        return names;
    }
    std::string listed(const std::string& table) const { return done({"listar", "datos", table}); }
};

TEST_F(AmbcpCallejeroCargar, FillsAnEmptyFolderWithProvinceAndOwnerOfEachStretch) {
    const Outcome run = ambcp(load(writeSmall()));
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "MUNICIPI: 4 filas nuevas, 0 quitadas y 0 cambiadas.\n"
                          "POSTAL: 3 filas nuevas, 0 quitadas y 0 cambiadas.\n"
                          "Edición: 3 filas, y 2 con algún extremo abierto.\n"
                          "Fuente: Instituto Nacional de Estadística.\n");
    EXPECT_EQ(run.errors, "ambcp: aviso: tipos de vía que no se conocen y quedan en blanco: QQQQQ (1)\n"
                          "ambcp: lo que había está en datos/callejero.deshacer; lo devuelve: ambcp deshacer "
                          "datos/callejero.deshacer\n");
    EXPECT_EQ(listed("POSTAL"), "CODIGO1,PROVINCIA,CAPITAL,TIPO_VIA,VIA,IMPAR_INI,IMPAR_FIN,PAR_INI,PAR_FIN,"
                                "CODPOSTAL,MUNICIPI,COD_INE\n"
                                "09000001,01,9,CL,MAYOR,1,9999,2,9998,01118,CONDADO DE TREVIÑO,09109\n"
                                "09000002,01,9,,REAL,11,9999,0,0,01118,CONDADO DE TREVIÑO,09109\n"
                                "09000003,09,9,,REAL,1,5,0,0,09215,CONDADO DE TREVIÑO,09109\n");
    EXPECT_EQ(listed("MUNICIPI"),
              "COD_INE,CODPOSTAL,UNICO,CAPITAL,NOMBRE,COD_PROV,COD_MUN,COD_MUNMJ,ENT_MENOR,NOM_MUNICI\n"
              "09109,01118,N,9,CONDADO DE TREVIÑO,09,0109,,False,CONDADO DE TREVIÑO\n"
              "09109,09215,N,9,CONDADO DE TREVIÑO,09,0109,,False,CONDADO DE TREVIÑO\n"
              "09109,01118,N,9,\"VENTAS, LAS\",09,0109,,True,CONDADO DE TREVIÑO\n"
              "09109,09215,N,9,\"VENTAS, LAS\",09,0109,,True,CONDADO DE TREVIÑO\n");
    EXPECT_EQ(listed("PROCEDEN"),
              "CODIGO1,FUENTE,EDICION,CLAVE,LINEA,ABIERTO,ABREVIADO,HUELLA,NOMBRE\n"
              ",INE,2025-06-30,09109M0000000011180,0,,False,73AFA3CA9C4F6230,CONDADO DE TREVIÑO\n"
              ",INE,2025-06-30,09109M0000000092150,0,,False,891307D89AA9385E,CONDADO DE TREVIÑO\n"
              ",INE,2025-06-30,09109E0000101011180,0,,False,708735925206BF3E,\"VENTAS, LAS\"\n"
              ",INE,2025-06-30,09109E0000101092150,0,,False,DDE210BD7A7AD720,\"VENTAS, LAS\"\n"
              "09000001,INE,2025-06-30,09109V00001011180000,1,EE-E,False,A3D2C79900D792AF,\n"
              "09000002,INE,2025-06-30,09109V00002011180000,4,-E--,False,20B9DCE1E7A7415B,\n"
              "09000003,INE,2025-06-30,09109V00002092150000,3,----,False,BE8010D4AD79C0B8,\n");
    EXPECT_EQ(linesOf(listed("PROVIN")), 98U);
    EXPECT_EQ(linesOf(listed("TIPO_VIA")), 94U);
}

TEST_F(AmbcpCallejeroCargar, AddressesAreFoundAfterwardsWithTheCodeOfTheirNumber) {
    ASSERT_EQ(ambcp(load(writeSmall())).exitCode, 0);
    const auto codeOf = [&](const std::string& street, const std::string& number) {
        return ambcp({"direccion", "datos", "--municipio", "CONDADO DE TREVIÑO", "--via", street, "--numero",
                      number})
            .output;
    };
    EXPECT_NE(codeOf("MAYOR", "412").find(",01118,"), std::string::npos);
    EXPECT_NE(codeOf("REAL", "5").find(",09215,"), std::string::npos);
    EXPECT_NE(codeOf("REAL", "101").find(",01118,"), std::string::npos);
    EXPECT_EQ(
        ambcp({"direccion", "datos", "--municipio", "CONDADO DE TREVIÑO", "--via", "REAL", "--numero", "7"})
            .exitCode,
        1)
        << "between two codes";
}

TEST_F(AmbcpCallejeroCargar, RangesAreOpenedAsAskedFor) {
    const edition::Files files = writeSmall();
    ASSERT_EQ(ambcp(load(files, {"--abrir-rangos", "no"})).exitCode, 0);
    EXPECT_NE(listed("POSTAL").find("MAYOR,3,9,2,8,01118"), std::string::npos);
    std::filesystem::remove_all(folder / "datos");
    ASSERT_EQ(ambcp(load(files, {"--abrir-rangos", "huecos"})).exitCode, 0);
    EXPECT_NE(listed("POSTAL").find("REAL,1,7,0,0,09215"), std::string::npos);
    EXPECT_NE(listed("POSTAL").find("REAL,9,9999,0,0,01118"), std::string::npos);
    EXPECT_NE(listed("PROCEDEN").find(",-H--,"), std::string::npos);
}

TEST_F(AmbcpCallejeroCargar, CompletesTablesOfWhichACreationThatWasKilledLeftSome) {
    const edition::Files files = writeSmall();
    done({"crear", "datos"});
    for (const std::string name : {"POSTAL", "TIPO_VIA"}) {
        std::filesystem::remove(folder / ("datos/" + name + ".DBF"));
        std::filesystem::remove(folder / ("datos/" + name + ".MDX"));
    }
    const Outcome run = ambcp(load(files));
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(linesOf(listed("POSTAL")), 4U);
    EXPECT_EQ(linesOf(listed("PROVIN")), 98U) << "an empty one is filled, too";
    EXPECT_EQ(linesOf(listed("TIPO_VIA")), 94U);
}

TEST_F(AmbcpCallejeroCargar, WarnsOfATableOfTypesThatIsEmpty) {
    const edition::Files files = writeSmall();
    done({"crear", "datos"});
    EXPECT_NE(ambcp(load(files)).errors.find("aviso: TIPO_VIA está vacía, y las vías quedan sin tipo"),
              std::string::npos);
}

TEST_F(AmbcpCallejeroCargar, AWholeEditionGivesSoundTables) {
    const edition::Files files = write(6000);
    const Outcome run = ambcp(load(files, {"--seudovias", files.pseudoStreets, "--unidades", files.units}));
    ASSERT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(linesOf(listed("PROCEDEN")), linesOf(listed("POSTAL")) + linesOf(listed("MUNICIPI")) - 1);
    EXPECT_GT(linesOf(listed("POSTAL")), 2500U);
    EXPECT_NE(done({"comprobar", "datos"}).find("PROCEDEN"), std::string::npos);
}

TEST_F(AmbcpCallejeroCargar, ATrialSaysWhatWouldComeAndChangesNothing) {
    const edition::Files files = writeSmall();
    EXPECT_NE(refused(load(files, {"--simular"})).find("faltan tablas"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(folder / "datos"));
    done({"crear", "datos"});
    EXPECT_EQ(ambcp(load(files, {"--simular"})).output, "COD_INE,MUNICIPIO,VIENEN,SE_VAN,CAMBIAN,CONFLICTOS\n"
                                                        "09109,CONDADO DE TREVIÑO,3,0,0,0\n");
    EXPECT_EQ(linesOf(listed("POSTAL")), 1U);
    EXPECT_FALSE(std::filesystem::exists(folder / "datos/PROCEDEN.DBF"));
}

TEST_F(AmbcpCallejeroCargar, StreetsThatAreThereStayAndTheOfficialOnesComeBesideThem) {
    const edition::Files files = writeSmall();
    done({"crear", "datos", "--muestra"});
    const std::size_t before = linesOf(listed("POSTAL"));
    EXPECT_EQ(ambcp(load(files)).exitCode, 0);
    EXPECT_EQ(linesOf(listed("POSTAL")), before + 3);
    EXPECT_EQ(ambcp({"deshacer", "datos/callejero.deshacer"}).exitCode, 0);
    EXPECT_EQ(linesOf(listed("POSTAL")), before);
}

TEST_F(AmbcpCallejeroCargar, MunicipalitiesThatAreThereStayAndNameTheStreets) {
    const edition::Files files = writeSmall();
    done({"crear", "datos"});
    static_cast<void>(folder.write("m.csv",
                                   "COD_INE,CODPOSTAL,UNICO,CAPITAL,NOMBRE,COD_PROV,COD_MUN,ENT_MENOR\n"
                                   "09109,09215,N,9,EL CONDADO,09,0109,False\n"));
    done({"cargar", "datos", "MUNICIPI", "m.csv"});
    const std::string before = listed("MUNICIPI");
    const Outcome run =
        ambcp({"callejero", "cargar", "datos", "--tramos", files.stretches, "--vias", files.streets});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(listed("MUNICIPI"), before);
    EXPECT_NE(listed("POSTAL").find(",EL CONDADO,09109"), std::string::npos);
}

TEST_F(AmbcpCallejeroCargar, FilesThatCannotBeUsedLeaveNothing) {
    edition::Files files = write(2000, 52, 20);
    EXPECT_NE(
        refused(load(files)).find("no se entiende más de una línea de cada cien. No se ha cargado nada."),
        std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(folder / "datos"));
    files = writeSmall();
    std::swap(files.stretches, files.streets);
    EXPECT_NE(refused(load(files)).find("hace falta uno de"), std::string::npos);
    EXPECT_NE(refused({"callejero", "cargar", "datos", "--tramos", files.streets, "--vias", files.stretches})
                  .find("--unidades o --municipios"),
              std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(folder / "datos"));
}

TEST_F(AmbcpCallejeroCargar, AFewBadLinesAreNamedAndTheRestIsLoaded) {
    const edition::Files files = write(3000, 52, 200);
    const Outcome run = ambcp(load(files));
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.errors.find("línea 200: no empieza por una provincia y un municipio"), std::string::npos);
    EXPECT_GT(linesOf(listed("POSTAL")), 1000U);
}

TEST_F(AmbcpCallejeroCargar, AStationWithATableOpenIsRefusedBeforeAnythingChanges) {
    const edition::Files files = writeSmall();
    done({"crear", "datos"});
    for (const std::string table : {"MUNICIPI", "POSTAL"}) {
        dbase::setDatabaseFolder("DATOS", folder / "datos");
        dbase::Dataset open("DATOS", table);
        open.open();
        edition::Files missing = files;
        missing.stretches = "no-hay"; // the files are not even looked at
        const std::string reason = refused(load(missing));
        EXPECT_NE(reason.find("abierta en otro programa"), std::string::npos) << reason;
        EXPECT_NE(reason.find("No se ha cambiado nada."), std::string::npos) << reason;
        EXPECT_EQ(ambcp(load(files, {"--simular"})).exitCode, 0) << "a trial reads only";
        open.close();
        for (const std::string other : {"MUNICIPI", "POSTAL"}) {
            EXPECT_EQ(linesOf(listed(other)), 1U);
        }
        EXPECT_FALSE(std::filesystem::exists(folder / "datos/PROCEDEN.DBF"));
    }
}

TEST_F(AmbcpCallejeroCargar, LeavesAReportOfALoadAndOfATrial) {
    const edition::Files files = writeSmall();
    ASSERT_EQ(ambcp(load(files, {"--informe", "carga.html"})).exitCode, 0);
    const std::string page = content("carga.html");
    for (const std::string part :
         {"Fuente: Instituto Nacional de Estadística", "2025-06-30", "QQQQQ", "BURGOS", "CONDADO DE TREVIÑO",
          "CL MAYOR, impares 1 a 9999, pares 2 a 9998, 01118",
          "TRAM.D250630.G250702, VIAS.D250630.G250702, municipios.csv"}) {
        EXPECT_NE(page.find(part), std::string::npos) << part;
    }
    EXPECT_EQ(page.find("No se ha cambiado nada"), std::string::npos);

    std::filesystem::remove_all(folder / "datos");
    done({"crear", "datos"});
    ASSERT_EQ(ambcp(load(files, {"--simular", "--informe", "antes.html"})).exitCode, 0);
    EXPECT_NE(content("antes.html").find("No se ha cambiado nada"), std::string::npos);
}

TEST_F(AmbcpCallejeroCargar, WhatItWritesDestroysNothing) {
    const edition::Files files = writeSmall();
    done({"crear", "datos"});
    const auto refusedWith = [&](const std::vector<std::string>& more) { return refused(load(files, more)); };
    EXPECT_NE(refusedWith({"--informe", files.stretches}).find("sería el mismo fichero que la entrada"),
              std::string::npos);
    EXPECT_NE(refusedWith({"--conflictos", "datos/POSTAL.DBF"}).find("el nombre de una tabla"),
              std::string::npos);
    EXPECT_NE(refusedWith({"--informe", "a.html", "--conflictos", "./a.html"}).find("sería el mismo fichero"),
              std::string::npos);
    EXPECT_NE(refusedWith({"--informe", "no/hay/a.html"}).find("no/hay"), std::string::npos);
    EXPECT_NE(refusedWith({"--deshacer-en", files.streets}).find("ya existe"), std::string::npos);
    EXPECT_EQ(linesOf(listed("POSTAL")), 1U);
    EXPECT_FALSE(std::filesystem::exists(folder / "a.html"));
}

TEST_F(AmbcpCallejeroCargar, ConflictsGoToAFileOfTheirOwn) {
    const edition::Files files = writeSmall();
    ASSERT_EQ(ambcp(load(files, {"--conflictos", "c.csv"})).exitCode, 0);
    EXPECT_EQ(content("c.csv"), "CLASE,COD_INE,MUNICIPIO,CLAVE,VIA,QUEDA,OFICIAL\n");
}

TEST_F(AmbcpCallejeroCargar, InterruptedInANewFolderItLeavesNothing) {
    for (const auto& [signal, code] : {std::pair("INT", 130), {"TERM", 143}}) {
        const Outcome run = interrupted(signal, false);
        EXPECT_EQ(run.exitCode, code) << run.errors;
        EXPECT_NE(run.errors.find("ambcp: interrumpido; no se ha cambiado nada"), std::string::npos)
            << run.errors;
        EXPECT_FALSE(std::filesystem::exists(folder / "datos"));
    }
}

TEST_F(AmbcpCallejeroCargar, InterruptedItLeavesTablesAsTheyWere) {
    done({"crear", "datos"});
    const std::string tables = listed("POSTAL") + listed("MUNICIPI");
    const std::set<std::string> files = filesIn("datos");
    const Outcome run = interrupted("INT", true);
    EXPECT_EQ(run.exitCode, 130) << run.errors;
    EXPECT_EQ(listed("POSTAL") + listed("MUNICIPI"), tables);
    EXPECT_EQ(filesIn("datos"), files);
}

/// It is held up by a full pipe when it says what it has done.
TEST_F(AmbcpCallejeroCargar, AnInterruptionAfterTheLoadDoesNotEndItAsIfNothingHadChanged) {
    const edition::Files files = writeSmall();
    done({"crear", "datos"});
    const Outcome run =
        shell("inode() { stat -c %i datos/POSTAL.DBF; }\n"
              "mkfifo salida && exec 3<>salida && head -c 65536 /dev/zero >&3\n"
              "before=$(inode)\n"
              "\"$AMBCP\" callejero cargar datos --tramos '" +
              files.stretches + "' --vias '" + files.streets + "' --municipios '" + files.municipalities +
              "' >salida 3>&- &\n"
              "while [ \"$(inode)\" = \"$before\" ] && kill -0 $!; do sleep 0.05; done\n"
              "sleep 0.5\n"
              "kill -TERM $!\n"
              "head -c 65536 <&3 >/dev/null\n"
              "wait $!");
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_GT(linesOf(listed("POSTAL")), 1U);
}

TEST_F(AmbcpCallejeroCargar, WithoutRoomForTheNewTablesItLeavesTheOldOnes) {
    const edition::Files files = write(20'000);
    done({"crear", "datos"});
    const std::set<std::string> before = filesIn("datos");
    int refusals = 0;
    for (const char* const blocks : {"64", "512", "1500", "2500"}) { // of 1 KiB
        const Outcome run = shell(
            "ulimit -f " + std::string(blocks) + "; \"$AMBCP\" callejero cargar datos --tramos '" +
            files.stretches + "' --vias '" + files.streets + "' --municipios '" + files.municipalities + "'");
        if (run.exitCode == 0) {
            break;
        }
        ++refusals;
        EXPECT_EQ(run.exitCode, 2) << run.errors;
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(linesOf(listed("POSTAL")) + linesOf(listed("MUNICIPI")), 2U) << blocks;
        EXPECT_EQ(filesIn("datos"), before) << blocks << ": " << run.errors;
    }
    EXPECT_GT(refusals, 1);
}

TEST_F(AmbcpCallejeroCargar, OnlyKnownProvincesAndOpeningsAreTaken) {
    const edition::Files files = writeSmall();
    EXPECT_NE(refused(load(files, {"--provincia", "53"})).find("no es el código de una provincia"),
              std::string::npos);
    EXPECT_NE(refused(load(files, {"--abrir-rangos", "todo"})).find("no, extremos o huecos"),
              std::string::npos);
    EXPECT_NE(
        refused(load(files, {"--provincia", "28"})).find("no hay ningún tramo de las provincias pedidas"),
        std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(folder / "datos"));
    EXPECT_EQ(ambcp(load(files, {"--provincia", "28", "--provincia", "09"})).exitCode, 0);
}

} // namespace
} // namespace ambcp::test
