// ambcp callejero: the files of the official street directory.
#include "AmbcpTest.h"

#include "tools/edition/OfficialEdition.h"
#include "tools/edition/OfficialLines.h"

namespace ambcp::test {
namespace {

class AmbcpCallejeroVer : public AmbcpTest {
protected:
    static std::string stretch(char numbering, std::uint32_t postalCode = 28001) {
        edition::StretchText text;
        text.place = 28079;
        text.postalCode = postalCode;
        text.numbering = numbering;
        text.first = text.last = numbering == '0' ? 0 : numbering == '1' ? 7 : 8;
        (numbering == '0' ? text.pseudo : text.street) = 5;
        return edition::lineOf(text) + "\r\n";
    }
};

TEST_F(AmbcpCallejeroVer, SaysWhatAFileOfStretchesHolds) {
    static_cast<void>(folder.write("TRAM.D250630.G250702",
                                   stretch('1') + stretch('1') + stretch('2', 19001) + stretch('0')));
    EXPECT_EQ(done({"callejero", "ver", "TRAM.D250630.G250702"}),
              "TRAM.D250630.G250702\n"
              "  tramos, datos a 2025-06-30: 4 líneas\n"
              "  1 provincia: 28\n"
              "  2 tramos de impares, 1 de pares, 1 sin números\n"
              "  1 tramo es de una seudovía; 1 tiene el código postal de otra provincia\n");
}

TEST_F(AmbcpCallejeroVer, WithoutAnEditionInTheNameGivesTheLatestChange) {
    static_cast<void>(folder.write("datos.txt", edition::streetLine(1001, 1, "KALE", "ALTA") + "\r\n" +
                                                    edition::streetLine(28079, 1, "CALLE", "ALTA") + "\r\n"));
    EXPECT_EQ(done({"callejero", "ver", "datos.txt"}),
              "datos.txt\n  vías, edición desconocida, último cambio 2019-06-30: 2 líneas\n  2 provincias: "
              "01 28\n");
}

TEST_F(AmbcpCallejeroVer, NamesEachLineThatIsNotUnderstood) {
    std::string text;
    for (int i = 0; i < 99; ++i) {
        text += stretch('1');
    }
    static_cast<void>(folder.write("TRAM", text + stretch('1', 99001)));
    EXPECT_NE(done({"callejero", "ver", "TRAM"})
                  .find("  1 línea no se entiende:\nTRAM: línea 100: no tiene un código postal\n"),
              std::string::npos);
}

TEST_F(AmbcpCallejeroVer, EndsWithOneWhenTooLittleIsUnderstood) {
    static_cast<void>(folder.write("TRAM", stretch('1') + stretch('1', 99001)));
    static_cast<void>(folder.write("VIAS", edition::streetLine(1001, 1, "KALE", "ALTA")));
    static_cast<void>(folder.write("notas.txt", "nada\n"));
    EXPECT_EQ(ambcp({"callejero", "ver", "TRAM"}).exitCode, 1);
    const Outcome run = ambcp({"callejero", "ver", "notas.txt", "VIAS"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output,
              "notas.txt\n  no tiene la forma de ningún fichero del callejero\n"
              "VIAS\n  vías, edición desconocida, último cambio 2019-06-30: 1 línea\n  1 provincia: 01\n");
}

TEST_F(AmbcpCallejeroVer, ReadsWholeEditionsWithAllTheirOddities) {
    const auto places = edition::inventedPlaces(60);
    for (const bool repeatsName : {false, true}) {
        for (const bool cutsBlanks : {false, true}) {
            const edition::Options options{.stretches = 3000,
                                           .repeatsName = repeatsName,
                                           .hasWholeSides = !repeatsName,
                                           .cutsBlanks = cutsBlanks,
                                           .hasMoreColumns = !cutsBlanks,
                                           .badEvery = 150};
            const edition::Files files = edition::writeEdition(folder.path(), places, options);
            const std::string output =
                done({"callejero", "ver", files.stretches, files.streets, files.pseudoStreets, files.units});
            for (const std::string part :
                 {": tramos", "  vías, ", "  seudovías, ", "  unidades de población, "}) {
                EXPECT_NE(output.find(part.substr(part[0] == ':' ? 2 : 0)), std::string::npos)
                    << output.substr(0, 500);
            }
            EXPECT_NE(output.find(": " + std::to_string(files.stretchLines) + " líneas"), std::string::npos);
            EXPECT_NE(output.find("  52 provincias"), std::string::npos);
            EXPECT_NE(output.find("  " + std::to_string(files.badLines) + " líneas no se entienden"),
                      std::string::npos);
        }
    }
}

TEST_F(AmbcpCallejeroVer, TheSampleIsAnEditionOfTwoMunicipalities) {
    const std::vector<edition::Place> places = {{.code = 9109,
                                                 .name = "CONDADO DE TREVI\xD1"
                                                         "O",
                                                 .postalCodes = {1118, 9215}},
                                                {.code = 26071, .name = "HARO", .postalCodes = {26200}}};
    const edition::Files files = edition::writeEdition(folder.path(), places, {.stretches = 60, .seed = 5});
    for (const std::string& file : {files.stretches, files.streets, files.pseudoStreets, files.units}) {
        EXPECT_EQ(content(SAMPLE_FOLDER "/callejero" + file.substr(file.rfind('/'))), content(file)) << file;
        EXPECT_EQ(done({"callejero", "ver", file}).find("no se entiende"), std::string::npos);
    }
    EXPECT_EQ(content(SAMPLE_FOLDER "/callejero/municipios.csv"), content(files.municipalities));
}

TEST_F(AmbcpCallejeroVer, HelpIsSpanish) {
    for (const std::vector<std::string>& order :
         {std::vector<std::string>{"callejero"}, {"callejero", "ver"}}) {
        std::vector<std::string> arguments = order;
        arguments.emplace_back("--help");
        const std::string help = done(arguments);
        EXPECT_NE(help.find("Uso: ambcp callejero"), std::string::npos) << help;
        for (const std::string word :
             {"Usage", "Options", "OPTIONS", "Positionals", "REQUIRED", "TEXT", "Subcommand"}) {
            EXPECT_EQ(help.find(word), std::string::npos) << word;
        }
    }
}

TEST_F(AmbcpCallejeroVer, AnUnknownOrderUnderItNamesTheNearestOne) {
    EXPECT_EQ(refused({"callejero", "vr"}),
              "ambcp: no existe la orden «vr»; ¿quería decir «ver»? Vea «ambcp callejero --help».\n");
    EXPECT_NE(refused({"callejero"}).find("falta la orden; las órdenes son ver"), std::string::npos);
    EXPECT_NE(refused({"callejero", "ver"}).find("falta FICHEROS. Vea «ambcp callejero ver --help»."),
              std::string::npos);
}

} // namespace
} // namespace ambcp::test
