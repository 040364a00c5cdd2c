// The help of ambcp, and its errors for arguments that it does not understand.
#include "AmbcpTest.h"

namespace ambcp::test {
namespace {

class AmbcpUsage : public AmbcpTest {
protected:
    /// `order`: the one whose help the error points to; none for the program's own.
    void expectUsageError(const std::vector<std::string>& arguments, const std::string& text,
                          const std::string& order = "") const {
        EXPECT_EQ(refused(arguments), "ambcp: " + text + (text.ends_with('?') ? "" : ".") + " Vea «ambcp " +
                                          (order.empty() ? "" : order + ' ') + "--help».\n");
    }
};

TEST_F(AmbcpUsage, HelpIsSpanishAndNamesEveryCommand) {
    const std::string help = done({"--help"});
    for (const std::string word : {"Uso: ambcp", "Opciones:", "Órdenes:", "crear", "cargar", "listar",
                                   "buscar", "direccion", "sugerir", "validar", "callejero", "comprobar",
                                   "reindexar", "compactar", "revisar", "deshacer", "candados", "help"}) {
        EXPECT_NE(help.find(word), std::string::npos) << word;
    }
}

TEST_F(AmbcpUsage, HelpOfEachCommandHasNoEnglishWord) {
    for (const std::string command :
         {"crear", "cargar", "listar", "buscar", "direccion", "sugerir", "validar", "comprobar", "reindexar",
          "compactar", "revisar", "deshacer", "candados"}) {
        const std::string help = done({command, "--help"});
        EXPECT_NE(help.find("DIR"), std::string::npos);
        for (const std::string word : {"Usage", "Options", "OPTIONS", "Positionals", "REQUIRED", "TEXT",
                                       "Needs", "Excludes", "UINT"}) {
            EXPECT_EQ(help.find(word), std::string::npos) << command << ": " << word;
        }
    }
}

TEST_F(AmbcpUsage, AMissingCommandIsRefused) {
    const std::string all =
        "falta la orden; las órdenes son crear, cargar, listar, buscar, direccion, "
        "sugerir, validar, callejero, comprobar, reindexar, compactar, revisar, deshacer, "
        "candados, help";
    expectUsageError({}, all);
}

TEST_F(AmbcpUsage, AnUnknownCommandNamesTheNearestOne) {
    expectUsageError({"carga", ".", "T", "f.csv"}, "no existe la orden «carga»; ¿quería decir «cargar»?");
    expectUsageError({"direcion", "."}, "no existe la orden «direcion»; ¿quería decir «direccion»?");
    expectUsageError({"dirección", "."}, "no existe la orden «dirección»; ¿quería decir «direccion»?");
    expectUsageError({"lsitar"}, "no existe la orden «lsitar»; ¿quería decir «listar»?");
    expectUsageError({"CREAR", "."}, "no existe la orden «CREAR»; ¿quería decir «crear»?");
    expectUsageError({"re"}, "no existe la orden «re»; ¿quería decir «reindexar»?");
    expectUsageError({"help", "bucsar"}, "no existe la orden «bucsar»; ¿quería decir «buscar»?");
}

TEST_F(AmbcpUsage, AnUnknownCommandThatIsNearNoneNamesThemAll) {
    const std::string all =
        "crear, cargar, listar, buscar, direccion, sugerir, validar, callejero, comprobar, reindexar, "
        "compactar, revisar, deshacer, candados, help";
    expectUsageError({"xyz"}, "no existe la orden «xyz»; las órdenes son " + all);
    expectUsageError({""}, "no existe la orden «»; las órdenes son " + all);
}

TEST_F(AmbcpUsage, AMissingArgumentIsNamed) {
    expectUsageError({"crear"}, "falta DIR", "crear");
    expectUsageError({"listar", "."}, "falta TABLA", "listar");
    expectUsageError({"direccion", ".", "--via", "A", "--numero", "1"}, "falta --municipio", "direccion");
    expectUsageError({"buscar", ".", "T", "TAG"}, "falta CAMPO=VALOR", "buscar");
}

TEST_F(AmbcpUsage, AWrongOptionIsNamed) {
    expectUsageError({"--nada"}, "sobra «--nada»");
    expectUsageError({"listar", ".", "T", "--nada"}, "sobra «--nada»", "listar");
    expectUsageError({"listar", ".", "T", "U"}, "sobra «U»", "listar");
    expectUsageError({"listar", ".", "T", "--tag"}, "--tag necesita un valor", "listar");
    expectUsageError({"listar", ".", "T", "--tag", "A", "--tag", "B"}, "--tag se da más de una vez",
                     "listar");
    expectUsageError({"listar", ".", "T", "--desde", "A"}, "--desde necesita --tag", "listar");
    expectUsageError({"listar", ".", "T", "--max", "-1"}, "valor no válido: «-1» no es un número", "listar");
    expectUsageError({"listar", ".", "T", "--max", "dos"}, "valor no válido: «dos» no es un número",
                     "listar");
}

TEST_F(AmbcpUsage, AMistypedOptionNamesTheNearestOne) {
    expectUsageError({"listar", ".", "T", "--tga", "VIA"},
                     "no existe la opción «--tga»; ¿quería decir «--tag»?", "listar");
    expectUsageError({"listar", ".", "T", "--filtor=A=1"},
                     "no existe la opción «--filtor»; ¿quería decir «--filtro»?", "listar");
    expectUsageError({"callejero", "cargar", ".", "--tramos", "a", "--vias", "b", "--simula"},
                     "no existe la opción «--simula»; ¿quería decir «--simular»?", "callejero cargar");
    expectUsageError({"listar", ".", "T", "U", "V"}, "sobra «U»", "listar");
}

TEST_F(AmbcpUsage, WhatIsTooMuchAfterTwoHyphensIsNamed) {
    expectUsageError({"crear", "Q", "--", "x"}, "sobra «x»", "crear");
    expectUsageError({"crear", "--", "Q", "x", "y"}, "sobra «x»", "crear");
    expectUsageError({"crear", "Q", "--", "comprobar"}, "sobra «comprobar»", "crear");
    expectUsageError({"crear", "Q", "--", "--", "x"}, "sobra «x»", "crear");
    expectUsageError({"listar", "Q", "POSTAL", "--tag", "VIA", "--", "--tga"},
                     "no existe la opción «--tga»; ¿quería decir «--tag»?", "listar");
    expectUsageError({"callejero", "ver", "Q", "--", "x", "y"}, "sobra «x»", "callejero ver");
    expectUsageError({"callejero", "--", "x"}, "no existe la orden «x»; las órdenes son ver, cargar",
                     "callejero");
    expectUsageError({"--", "lsitar"}, "no existe la orden «lsitar»; ¿quería decir «listar»?");
    EXPECT_EQ(refused({"--"}), refused({}));
}

TEST_F(AmbcpUsage, HelpOfAnOrderOfTwoWordsIsShownByName) {
    EXPECT_EQ(done({"help", "callejero", "cargar"}), done({"callejero", "cargar", "--help"}));
    EXPECT_EQ(done({"help", "callejero", "ver"}), done({"callejero", "ver", "--help"}));
    expectUsageError({"help", "callejero", "carga"}, "no existe la orden «carga»; ¿quería decir «cargar»?",
                     "callejero");
    expectUsageError({"help", "listar", "POSTAL"}, "sobra «POSTAL»", "listar");
}

TEST_F(AmbcpUsage, HelpOfACommandIsShownByName) {
    for (const std::string command :
         {"crear", "cargar", "listar", "buscar", "direccion", "sugerir", "validar", "comprobar", "reindexar",
          "compactar", "revisar", "deshacer", "candados", "help"}) {
        EXPECT_EQ(done({"help", command}), done({command, "--help"})) << command;
    }
    EXPECT_EQ(done({"help"}), done({"--help"}));
    EXPECT_EQ(done({"ayuda", "cargar"}), done({"cargar", "--help"}));
}

TEST_F(AmbcpUsage, FolderMayBeCalledLikeACommand) {
    done({"crear", "listar"});
    done({"listar", "listar", "POSTAL"});
}

} // namespace
} // namespace ambcp::test
