// What ambcp says of itself, and of arguments that it does not understand.
#include "AmbcpTest.h"

namespace ambcp::test {
namespace {

class AmbcpUsage : public AmbcpTest {
protected:
    void expectUsageError(const std::vector<std::string>& arguments, const std::string& text) const {
        EXPECT_EQ(refused(arguments), "ambcp: " + text + ". Vea «ambcp --help».\n");
    }
};

TEST_F(AmbcpUsage, HelpIsSpanishAndNamesEveryCommand) {
    const std::string help = done({"--help"});
    for (const std::string word : {"Uso: ambcp", "Opciones:", "Órdenes:", "crear", "cargar", "listar",
                                   "buscar", "direccion", "comprobar", "reindexar", "candados"}) {
        EXPECT_NE(help.find(word), std::string::npos) << word;
    }
}

TEST_F(AmbcpUsage, HelpOfEachCommandHasNoEnglishWord) {
    for (const std::string command :
         {"crear", "cargar", "listar", "buscar", "direccion", "comprobar", "reindexar", "candados"}) {
        const std::string help = done({command, "--help"});
        EXPECT_NE(help.find("DIR"), std::string::npos);
        for (const std::string word :
             {"Usage", "Options", "OPTIONS", "Positionals", "REQUIRED", "TEXT", "Needs", "UINT"}) {
            EXPECT_EQ(help.find(word), std::string::npos) << command << ": " << word;
        }
    }
}

TEST_F(AmbcpUsage, AMissingOrUnknownCommandIsRefused) {
    expectUsageError({}, "falta la orden, o no existe la que se da");
    expectUsageError({"borrar"}, "falta la orden, o no existe la que se da");
}

TEST_F(AmbcpUsage, AMissingArgumentIsNamed) {
    expectUsageError({"crear"}, "falta DIR");
    expectUsageError({"listar", "."}, "falta TABLA");
    expectUsageError({"direccion", ".", "--via", "A", "--numero", "1"}, "falta --municipio");
    expectUsageError({"buscar", ".", "T", "TAG"}, "falta CAMPO=VALOR");
}

TEST_F(AmbcpUsage, AWrongOptionIsNamed) {
    expectUsageError({"listar", ".", "T", "--nada"}, "sobra --nada");
    expectUsageError({"listar", ".", "T", "U"}, "sobra U");
    expectUsageError({"listar", ".", "T", "--tag"}, "--tag necesita un valor");
    expectUsageError({"listar", ".", "T", "--tag", "A", "--tag", "B"}, "--tag se da más de una vez");
    expectUsageError({"listar", ".", "T", "--desde", "A"}, "--desde necesita --tag");
    expectUsageError({"listar", ".", "T", "--max", "-1"}, "valor no válido: «-1» no es un número");
    expectUsageError({"listar", ".", "T", "--max", "dos"}, "valor no válido: «dos» no es un número");
}

TEST_F(AmbcpUsage, FolderMayBeCalledLikeACommand) {
    done({"crear", "listar"});
    done({"listar", "listar", "POSTAL"});
}

} // namespace
} // namespace ambcp::test
