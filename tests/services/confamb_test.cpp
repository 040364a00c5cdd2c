// The host's configuration.
#include "services/Confamb.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "dbase/system/databases.h"
#include "dbase/system/error.h"
#include "support/Tables.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace std::string_literals;
using ambrel::test::ansi;

class Configuration : public ::testing::Test {
protected:
    ~Configuration() override {
        for (const char* const name : {"DB", "AMBREL"}) {
            dbase::setDatabaseFolder(name, {});
        }
    }

    /// Loads a file with this content. Returns the text of the error, or empty.
    std::string load(const std::string& content) {
        try {
            config.loadIni(folder.write("ambrel.ini", content));
        } catch (const dbase::Error& error) {
            EXPECT_EQ(error.code(), dbase::ErrorCode::BadValue);
            return error.what();
        }
        return {};
    }

    void expectUnreadable(const std::string& path, const std::string& reason) {
        try {
            config.loadIni(path);
            ADD_FAILURE() << path;
        } catch (const dbase::Error& error) {
            EXPECT_EQ(error.code(), dbase::ErrorCode::NotFound);
            EXPECT_EQ(std::string(error.what()), path + ": No se puede leer la configuración: " + reason);
        }
    }

    TemporaryFolder folder;
    TConfig config;
};

TEST_F(Configuration, IsEmptyAtFirst) {
    EXPECT_EQ(config.GetProvin(), 0);
    EXPECT_EQ(config.GetProvin2(), "");
    EXPECT_EQ(config.GetProvin3(), "");
    EXPECT_EQ(config.GetsMunicipio(), "");
    EXPECT_EQ(config.GetnMunicipio(), 0);
    EXPECT_EQ(config.GetAliasAmbrel(), "DB");
    EXPECT_FALSE(config.EntidadesMenores);
    EXPECT_TRUE(config.AsegurarEnDisco);
}

TEST_F(Configuration, SpeaksToThePublicDirectoryAtFirst) {
    EXPECT_EQ(config.directoryService.server, "http://ovc.catastro.meh.es");
    EXPECT_EQ(config.directoryService.actionPrefix, "http://tempuri.org");
    EXPECT_EQ(config.directoryService.xmlNamespace, "http://www.catastro.meh.es/");
}

TEST_F(Configuration, ReadsAnotherDirectory) {
    EXPECT_EQ(load("[Callejero]\nServidor=http://127.0.0.1:8099\nAccion=http://localhost\n"), "");
    EXPECT_EQ(config.directoryService.server, "http://127.0.0.1:8099");
    EXPECT_EQ(config.directoryService.actionPrefix, "http://localhost");
    EXPECT_EQ(config.directoryService.xmlNamespace, "http://www.catastro.meh.es/");
}

TEST_F(Configuration, RefusesADirectoryThatIsNoAddress) {
    EXPECT_NE(load("[Callejero]\nServidor=ovc.catastro.meh.es\n").find("http://"), std::string::npos);
    EXPECT_EQ(config.directoryService.server, "http://ovc.catastro.meh.es");
}

TEST_F(Configuration, HasWhatTheHostSets) {
    config.setProvince(8, "BARCELONA", "BARCELONA [08]");
    config.setMunicipality(3, "VIC");
    EXPECT_EQ(config.GetProvin(), 8);
    EXPECT_EQ(config.GetProvin2(), "BARCELONA");
    EXPECT_EQ(config.GetProvin3(), "BARCELONA [08]");
    EXPECT_EQ(config.GetsMunicipio(), "VIC");
    EXPECT_EQ(config.GetnMunicipio(), 3);
}

TEST_F(Configuration, DatabaseIsRegisteredUnderItsAliasAndUnderDB) {
    config.setDatabase("AMBREL", folder.path());
    EXPECT_EQ(config.GetAliasAmbrel(), "AMBREL");
    EXPECT_EQ(dbase::databaseFolder("DB"), folder.path());
    EXPECT_EQ(dbase::databaseFolder("ambrel"), folder.path());
    EXPECT_EQ(config.DatabasePath("AMBREL"), folder.path());
    EXPECT_EQ(config.DatabasePath("DB"), folder.path());
}

TEST_F(Configuration, DatabasePathKnowsFoldersThatOthersRegistered) {
    dbase::setDatabaseFolder("DB", "/datos");
    EXPECT_EQ(config.DatabasePath("DB"), "/datos");
}

TEST_F(Configuration, DatabasePathOfAnUnknownNameRaises) {
    EXPECT_THROW(static_cast<void>(config.DatabasePath("NADIE")), dbase::Error);
}

TEST_F(Configuration, IniFileFillsEverything) {
    ASSERT_EQ(load("; comentario\r\n"
                   "[BaseDeDatos]\r\n"
                   "Alias=AMBREL\r\n"
                   "Carpeta=/srv/datos\r\n"
                   "\r\n"
                   "[Provincia]\r\n"
                   "Codigo = 15\r\n"
                   "Nombre = A CORUÑA\r\n"
                   "NombreEnVias = CORUÑA, A\r\n"
                   "# otro comentario\r\n"
                   "[ municipio ]\r\n"
                   "codigo=2\r\n"
                   "nombre=15030\r\n"
                   "[Opciones]\r\n"
                   "EntidadesMenores=Sí\r\n"
                   "AsegurarEnDisco=no\r\n"),
              "");
    EXPECT_EQ(config.GetAliasAmbrel(), "AMBREL");
    EXPECT_EQ(config.DatabasePath("AMBREL"), "/srv/datos");
    EXPECT_EQ(config.DatabasePath("DB"), "/srv/datos");
    EXPECT_EQ(config.GetProvin(), 15);
    EXPECT_EQ(config.GetProvin2(), ansi("A CORUÑA"));
    EXPECT_EQ(config.GetProvin3(), ansi("CORUÑA, A"));
    EXPECT_EQ(config.GetnMunicipio(), 2);
    EXPECT_EQ(config.GetsMunicipio(), "15030");
    EXPECT_TRUE(config.EntidadesMenores);
    EXPECT_FALSE(config.AsegurarEnDisco);
}

/// The file in a comment of a header, indented by four blanks.
std::string exampleOf(const std::string& header) {
    std::ifstream file(header);
    std::string example;
    const std::string mark = "    ///     ";
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(mark)) {
            example += line.substr(mark.size()) + "\n";
        }
    }
    return example;
}

TEST_F(Configuration, IniFileOfTheHeaderCanBeReadAsItStands) {
    ASSERT_EQ(load(exampleOf(AMBREL_SOURCES "/services/Confamb.h")), "");
    EXPECT_EQ(config.DatabasePath("AMBREL"), folder / "datos");
    EXPECT_EQ(config.GetProvin(), 28);
    EXPECT_EQ(config.GetProvin3(), "MADRID");
    EXPECT_EQ(config.GetnMunicipio(), 3);
    EXPECT_TRUE(config.AsegurarEnDisco);
    EXPECT_EQ(config.directoryService.xmlNamespace, "http://www.catastro.meh.es/");
}

TEST_F(Configuration, IniFileLeavesWhatItDoesNotName) {
    config.setProvince(8, "BARCELONA", "BCN");
    config.EntidadesMenores = true;
    ASSERT_EQ(load("[Municipio]\nCodigo=1\n"), "");
    EXPECT_EQ(config.GetProvin2(), "BARCELONA");
    EXPECT_EQ(config.GetProvin3(), "BCN");
    EXPECT_EQ(config.GetnMunicipio(), 1);
    EXPECT_TRUE(config.EntidadesMenores);
}

TEST_F(Configuration, ProvinceOfStreetsIsTheProvinceUnlessNamed) {
    ASSERT_EQ(load("[Provincia]\nNombre=MADRID"), "");
    EXPECT_EQ(config.GetProvin3(), "MADRID");
}

TEST_F(Configuration, FolderIsRelativeToTheIniFile) {
    ASSERT_EQ(load("[BaseDeDatos]\nCarpeta=./datos\n"), "");
    EXPECT_EQ(config.DatabasePath("DB"), folder / "datos");
    EXPECT_EQ(config.GetAliasAmbrel(), "DB");
}

TEST_F(Configuration, IniFileMayBeEmptyOrBeginWithAByteOrderMark) {
    EXPECT_EQ(load(""), "");
    EXPECT_EQ(load("\xEF\xBB\xBF[Municipio]\nCodigo=7\n"), "");
    EXPECT_EQ(config.GetnMunicipio(), 7);
}

TEST_F(Configuration, IniErrorsNameFileAndLineAndChangeNothing) {
    const std::string file = folder / "ambrel.ini";
    const std::string good = "[Municipio]\nCodigo=7\n";
    EXPECT_EQ(load(good + "[Provincia\n"), file + ": línea 3: falta el corchete de cierre de la sección");
    EXPECT_EQ(load(good + "sin valor\n"), file + ": línea 3: se esperaba clave=valor");
    EXPECT_EQ(load(good + "Color=rojo\n"), file + ": línea 3: clave desconocida: «[Municipio] Color»");
    EXPECT_EQ(load(good + "\nCodigo=7a\n"), file + ": línea 4: se esperaba un número: «7a»");
    EXPECT_EQ(load(good + "Codigo=-7\n"), file + ": línea 3: se esperaba un número: «-7»");
    EXPECT_EQ(load(good + "[Opciones]\nEntidadesMenores=1\n"), file + ": línea 4: se esperaba si o no: «1»");
    EXPECT_EQ(load(good + "[BaseDeDatos]\nCarpeta=\n"), file + ": línea 4: falta la carpeta");
    EXPECT_EQ(load(good + "[BaseDeDatos]\nAlias=\nCarpeta=.\n"),
              file + ": línea 4: falta el nombre de la base de datos");
    EXPECT_EQ(load(good + "[BaseDeDatos]\nAlias=X\n"), file + ": línea 4: hay un Alias sin su Carpeta");
    EXPECT_EQ(load(good + "Nombre=ŁÓDŹ\n"),
              file + ": línea 3: el texto no es UTF-8 o tiene letras que las tablas no admiten: «ŁÓDŹ»");
    EXPECT_EQ(config.GetnMunicipio(), 0);
}

TEST_F(Configuration, IniFileThatCannotBeReadRaises) {
    expectUnreadable(folder / "falta.ini", "no existe");
    expectUnreadable(folder.path(), "es una carpeta");
}

TEST_F(Configuration, IniFileIsAPlainFileOfSensibleSize) {
    const std::string pipe = folder / "tubo.ini", endless = folder / "sin fin.ini";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/zero", endless);
    for (const std::string& path : {pipe, endless}) {
        expectUnreadable(path, "no es un fichero corriente");
    }
    EXPECT_EQ(load(std::string(1 << 20, '\n')), "");
    EXPECT_NE(load(std::string((1 << 20) + 1, '\n')).find("demasiado grande"), std::string::npos);
}

TEST_F(Configuration, RefusesControlCharacters) {
    EXPECT_NE(load("[BaseDeDatos]\nCarpeta=datos\0/otros\n"s).find("línea 2"), std::string::npos);
    EXPECT_NE(load("[Callejero]\nAccion=http://x\rCookie: y\n").find("carácter de control"),
              std::string::npos);
    EXPECT_EQ(load("[Provincia]\nNombre=A\tB\n"), "");
    EXPECT_EQ(load("; un comentario con \x01\n"), "");
}

TEST_F(Configuration, TakesBlanksTabsAndLineEndsOffAValueButNoOtherControlCharacter) {
    EXPECT_EQ(load("[Provincia]\r\n\tNombre \t=\t A\tB \t\r\n"), "");
    EXPECT_EQ(config.GetProvin2(), "A\tB");
    for (const std::string end : {"\f", "\v", "\x01", "\x1F"}) {
        EXPECT_NE(load("[Provincia]\nNombre=A" + end + "\n").find("carácter de control"), std::string::npos);
        EXPECT_NE(load("[Provincia]\nNombre=" + end + "A\n").find("carácter de control"), std::string::npos);
    }
}

} // namespace
