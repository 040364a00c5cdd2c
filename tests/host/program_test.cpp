// The program as a whole: scripts, exit codes, first start.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QMap>
#include <QProcess>
#include <QProcessEnvironment>

#include "support/TemporaryFolder.h"

namespace {

struct Ended {
    int exitCode = -1;
    QStringList lines;
    QString errors;
};

class ProgramTest : public ::testing::Test {
protected:
    /// Runs the program without a display, in a folder of its own that also holds the user's data.
    Ended run(const QStringList& arguments) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
            environment.remove(QLatin1String(name));
        }
        environment.insert(QStringLiteral("XDG_DATA_HOME"), QString::fromStdString(folder / "datos"));
        environment.insert(QStringLiteral("no_proxy"), QStringLiteral("127.0.0.1"));
        QProcess program;
        program.setProcessEnvironment(environment);
        program.setWorkingDirectory(QString::fromStdString(folder.path()));
        program.start(QStringLiteral(AMBREL_PROGRAM), arguments);
        EXPECT_TRUE(program.waitForFinished(60000));
        return {
            program.exitCode(),
            QString::fromUtf8(program.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts),
            QString::fromUtf8(program.readAllStandardError())};
    }

    Ended play(const std::string& script) {
        return run({QStringLiteral("--guion"), QString::fromStdString(folder.write("prueba.guion", script))});
    }

    TemporaryFolder folder;
};

TEST_F(ProgramTest, TheTourOfANewUserCompletesAnAddress) {
    const Ended tour = run({QStringLiteral("--guion"), QStringLiteral(AMBREL_SCRIPTS "primer-uso.guion")});
    EXPECT_EQ(tour.exitCode, 0) << tour.errors.toStdString();
    EXPECT_TRUE(tour.lines.contains(QStringLiteral("EMunicipio\tMADRID\t28079\tactivo")));
    EXPECT_TRUE(tour.lines.contains(QStringLiteral("ECodPostal\t28028\t1\tactivo")));
    EXPECT_TRUE(tour.lines.contains(QStringLiteral("ECodPostal\t28014\t1\tactivo")));
    EXPECT_TRUE(tour.lines.contains(QStringLiteral("LMensaje\tCliente guardado.\t0\tactivo")));
    EXPECT_FALSE(QImage(QString::fromStdString(folder / "primer-uso.png")).isNull());
}

TEST_F(ProgramTest, TheTourOfTheListsSettlesTheBoxes) {
    const Ended tour = run({QStringLiteral("--guion"), QStringLiteral(AMBREL_SCRIPTS "listas.guion")});
    EXPECT_EQ(tour.exitCode, 0) << tour.errors.toStdString();
    for (const QString& line :
         {QStringLiteral("TFBuscarMunicipios\tLista de municipios del I.N.E.\t0"),
          QStringLiteral("DBGMUNICIPI\t33024,33201,GIJON\t0\tactivo"),
          QStringLiteral("EMunicipio\tGIJON\t33024\tactivo"), QStringLiteral("ETipoVia\tAV\t1\tactivo"),
          QStringLiteral("EProvincia\tASTURIAS\t1\tactivo"), QStringLiteral("RCodIne\t33037\t0\tactivo")}) {
        EXPECT_TRUE(tour.lines.contains(line)) << line.toStdString();
    }
}

TEST_F(ProgramTest, TheTourOfTheStreetsAddsFindsChangesAndDeletesOne) {
    const Ended tour = run({QStringLiteral("--guion"), QStringLiteral(AMBREL_SCRIPTS "vias.guion")});
    EXPECT_EQ(tour.exitCode, 0) << tour.errors.toStdString();
    for (const QString& line : {QStringLiteral("TFFichaVia\tDatos de la Via\t0"),
                                QStringLiteral("EVia\tHORNO NUEVO\t99000000\tactivo"),
                                QStringLiteral("DBGPostal\tCL,ALCALA,28014,1,57,2,56\t0\tactivo"),
                                QStringLiteral("DBGPostal\tCL,HORNO NUEVO,28013,1,99,2,9998\t0\tactivo"),
                                QStringLiteral("EVia\tHORNO NUEVO\t0\tactivo")}) {
        EXPECT_TRUE(tour.lines.contains(line)) << line.toStdString();
    }
}

/// The stand-in for the street-directory service, stopped at the end of the test.
class DirectoryProgram {
public:
    DirectoryProgram() {
        program_.start(QStringLiteral(CALLEJERO_PROGRAM), QStringList());
        if (program_.waitForReadyRead(60000)) {
            address_ = QString::fromUtf8(program_.readLine()).trimmed();
        }
    }
    ~DirectoryProgram() {
        program_.terminate();
        program_.waitForFinished();
    }
    DirectoryProgram(const DirectoryProgram&) = delete;
    DirectoryProgram& operator=(const DirectoryProgram&) = delete;

    [[nodiscard]] const QString& address() const { return address_; }

private:
    QProcess program_;
    QString address_;
};

TEST_F(ProgramTest, TheTourOfTheImportBringsStreetsThatThenComplete) {
    const DirectoryProgram directory;
    ASSERT_FALSE(directory.address().isEmpty());
    const QString ini = QString::fromStdString(
        folder.write("ambrel.ini", "[Callejero]\nServidor=" + directory.address().toStdString() + "\n"));
    const Ended tour = run({QStringLiteral("--ini"), ini, QStringLiteral("--guion"),
                            QStringLiteral(AMBREL_SCRIPTS "importar.guion")});
    EXPECT_EQ(tour.exitCode, 0) << tour.errors.toStdString();
    for (const QString& line :
         {QStringLiteral("LMensaje_\tSe han encontrado 23 vías\t0\tactivo"),
          QStringLiteral("información\tSe han importado 23 calles al módulo de Códigos Postales\t"
                         "Importación finalizada\taceptar"),
          QStringLiteral("información\tSe han importado 0 calles al módulo de Códigos Postales\t"
                         "Importación finalizada\taceptar"),
          QStringLiteral("CBMunicipiosAmbrel\tARANJUEZ\t0\tactivo"),
          QStringLiteral("ECodPostal\t28300\t1\tactivo")}) {
        EXPECT_TRUE(tour.lines.contains(line)) << line.toStdString();
    }
}

/// Name and content of every picture in a folder.
QMap<QString, QByteArray> picturesIn(const QString& folder) {
    QMap<QString, QByteArray> pictures;
    for (const QFileInfo& entry : QDir(folder).entryInfoList({QStringLiteral("*.png")})) {
        QFile file(entry.filePath());
        if (file.open(QIODevice::ReadOnly)) {
            pictures.insert(entry.fileName(), file.readAll());
        }
    }
    return pictures;
}

TEST_F(ProgramTest, ThePicturesOfTheDocumentsAreTheSameEachTime) {
    QMap<QString, QByteArray> before;
    ASSERT_TRUE(QFile::copy(QStringLiteral(AMBREL_SCRIPTS "clientes.csv"),
                            QString::fromStdString(folder / "clientes.csv")));
    for (int round = 0; round < 2; ++round) {
        QFile::remove(
            QString::fromStdString(folder / "clientes-validado.csv")); // replacing it would be asked
        for (const char* script :
             {AMBREL_SCRIPTS "capturas-importar.guion", AMBREL_SCRIPTS "capturas-listas.guion",
              AMBREL_SCRIPTS "capturas-validar.guion", AMBREL_SCRIPTS "capturas-vias.guion"}) {
            QDir(QString::fromStdString(folder / "datos")).removeRecursively();
            const Ended ended = run({QStringLiteral("--guion"), QString::fromUtf8(script)});
            EXPECT_EQ(ended.exitCode, 0) << ended.errors.toStdString();
        }
        const auto pictures = picturesIn(QString::fromStdString(folder.path()));
        EXPECT_EQ(pictures.size(), 15);
        if (round > 0) {
            EXPECT_EQ(pictures, before);
        }
        before = pictures;
    }
}

TEST_F(ProgramTest, WhatIsSavedIsThereTheNextTime) {
    EXPECT_EQ(play("pulsa BBNuevo\nescribe ENombre AAA\npulsa BBGuardar").exitCode, 0);
    EXPECT_EQ(play("muestra ENombre").lines, QStringList(QStringLiteral("ENombre\tAAA\t0\tactivo")));
}

TEST_F(ProgramTest, AStepThatCannotBeDoneEndsWithThree) {
    const Ended ended = play("ventana\npulsa BBNinguno\nventana");
    EXPECT_EQ(ended.exitCode, 3);
    EXPECT_EQ(ended.lines.size(), 1);
    EXPECT_TRUE(
        ended.errors.contains(QStringLiteral("prueba.guion:2: pulsa BBNinguno: no hay ningún objeto")));
}

TEST_F(ProgramTest, AQuestionThatNobodyAnswersEndsWithThree) {
    const Ended ended = play("escribe ENombre X\npulsa BBSiguiente");
    EXPECT_EQ(ended.exitCode, 3);
    EXPECT_EQ(ended.lines,
              QStringList(QStringLiteral("pregunta\t¿Desea descartar los cambios?\tAtención\t")));
}

TEST_F(ProgramTest, AQuestionTakesTheQueuedAnswer) {
    const Ended ended = play("escribe ENombre X\nresponde si\npulsa BBSiguiente\nmensajes\nmuestra ENombre");
    EXPECT_EQ(ended.exitCode, 0);
    EXPECT_EQ(ended.lines,
              QStringList({QStringLiteral("pregunta\t¿Desea descartar los cambios?\tAtención\tsi"),
                           QStringLiteral("ENombre\tBodegas Ribera del Tirón\t0\tactivo")}));
}

TEST_F(ProgramTest, AllSampleCustomersButTheOneOnAnUnknownStreetAreValidated) {
    std::string script;
    for (int customer = 0; customer < 12; ++customer) {
        script += "muestra EVia\nmuestra ECodPostal\ntecla ENombre PageDown\n";
    }
    const Ended ended = play(script);
    EXPECT_EQ(ended.exitCode, 0) << ended.errors.toStdString();
    ASSERT_EQ(ended.lines.size(), 24);
    for (const QString& line : ended.lines) {
        const QStringList columns = line.split(QLatin1Char('\t'));
        const bool isKnown =
            columns[1] != QStringLiteral("VEGA DE ARRIBA") && columns[1] != QStringLiteral("33600");
        EXPECT_EQ(columns[2] != QStringLiteral("0"), isKnown) << line.toStdString();
    }
}

TEST_F(ProgramTest, AnotherFolderBeginsWithoutCustomers) {
    (void)play("ventana"); // creates the user's tables
    const QString own = QString::fromStdString(folder / "propia");
    ASSERT_TRUE(QDir().mkpath(own));
    QDir sample(QString::fromStdString(folder / "datos/ambrel/datos"));
    for (const QString& file : sample.entryList(QDir::Files)) {
        if (!file.startsWith(QStringLiteral("CLIENTES"))) {
            ASSERT_TRUE(QFile::copy(sample.filePath(file), own + QLatin1Char('/') + file));
        }
    }
    const QString script =
        QString::fromStdString(folder.write("otra.guion", "muestra LEstado\nescribe EMunicipio haro\n"
                                                          "tecla EMunicipio Tab\nmuestra ECodPostal\n"));
    const Ended ended = run({QStringLiteral("--carpeta"), own, QStringLiteral("--guion"), script});
    EXPECT_EQ(ended.exitCode, 0) << ended.errors.toStdString();
    EXPECT_EQ(ended.lines, QStringList({QStringLiteral("LEstado\tSin clientes\t0\tactivo"),
                                        QStringLiteral("ECodPostal\t26200\t1\tactivo")}));
    EXPECT_TRUE(QFile::exists(own + QStringLiteral("/CLIENTES.DBF")));
}

TEST_F(ProgramTest, AFolderThatIsNotThereIsSaid) {
    const QString script = QString::fromStdString(folder.write("s.guion", "ventana\n"));
    const QString missing = QString::fromStdString(folder / "ninguna");
    const Ended ended = run({QStringLiteral("--carpeta"), missing, QStringLiteral("--guion"), script});
    EXPECT_EQ(ended.exitCode, 2);
    EXPECT_TRUE(ended.errors.contains(missing)) << ended.errors.toStdString();
    EXPECT_FALSE(QDir(missing).exists());
}

TEST_F(ProgramTest, AFolderWithoutTablesIsSaidAndLeftAlone) {
    const QString script = QString::fromStdString(folder.write("s.guion", "ventana\n"));
    const QString empty = QString::fromStdString(folder / "vacia");
    ASSERT_TRUE(QDir().mkpath(empty));
    const Ended ended = run({QStringLiteral("--carpeta"), empty, QStringLiteral("--guion"), script});
    EXPECT_EQ(ended.exitCode, 2);
    EXPECT_TRUE(ended.errors.contains(QStringLiteral("MUNICIPI"))) << ended.errors.toStdString();
    EXPECT_TRUE(QDir(empty).isEmpty());
}

TEST_F(ProgramTest, TheConfigurationMayNameTheFolder) {
    (void)play("ventana");
    const QString ini = QString::fromStdString(
        folder.write("ambrel.ini", "[BaseDeDatos]\nAlias=AMBREL\nCarpeta=datos/ambrel/datos\n"));
    const QString script = QString::fromStdString(folder.write("s.guion", "muestra ENombre\n"));
    const Ended ended = run({QStringLiteral("--ini"), ini, QStringLiteral("--guion"), script});
    EXPECT_EQ(ended.lines, QStringList(QStringLiteral("ENombre\tAcademia Trazo\t0\tactivo")));
}

TEST_F(ProgramTest, HelpIsSpanishAndNeedsNoDisplay) {
    const Ended ended = run({QStringLiteral("--help")});
    EXPECT_EQ(ended.exitCode, 0);
    const QString help = ended.lines.join(QLatin1Char('\n'));
    EXPECT_TRUE(help.contains(QStringLiteral("Uso: ")));
    EXPECT_TRUE(help.contains(QStringLiteral("--carpeta <DIR>")));
    EXPECT_TRUE(help.contains(QStringLiteral("Opciones:")));
}

TEST_F(ProgramTest, UnknownOptionsAreRefusedInSpanish) {
    const Ended ended = run({QStringLiteral("--guion"), QStringLiteral("x"), QStringLiteral("--nada")});
    EXPECT_EQ(ended.exitCode, 2);
    EXPECT_TRUE(ended.errors.contains(QStringLiteral("No se conoce la opción «nada».")))
        << ended.errors.toStdString();
}

TEST_F(ProgramTest, WithoutDisplayAndScriptItSaysWhy) {
    const Ended ended = run({});
    EXPECT_EQ(ended.exitCode, 2);
    EXPECT_TRUE(ended.errors.contains(QStringLiteral("no hay ninguna pantalla")));
}

TEST_F(ProgramTest, AScriptThatIsNotThereIsSaid) {
    const Ended ended = run({QStringLiteral("--guion"), QStringLiteral("no-esta.guion")});
    EXPECT_EQ(ended.exitCode, 2);
    EXPECT_TRUE(
        ended.errors.contains(QStringLiteral("ambrel: guion no-esta.guion: no se puede abrir: no existe")))
        << ended.errors.toStdString();
    EXPECT_TRUE(run({QStringLiteral("--guion"), QString::fromStdString(folder.path())})
                    .errors.contains(QStringLiteral("no se puede leer: es una carpeta")));
}

TEST_F(ProgramTest, AConfigurationThatIsNotThereIsSaid) {
    const QString script = QString::fromStdString(folder.write("s.guion", "ventana\n"));
    const Ended ended =
        run({QStringLiteral("--ini"), QStringLiteral("nada.ini"), QStringLiteral("--guion"), script});
    EXPECT_EQ(ended.exitCode, 2);
    EXPECT_TRUE(ended.errors.contains(
        QStringLiteral("ambrel: nada.ini: No se puede leer la configuración: no existe")))
        << ended.errors.toStdString();
}

TEST_F(ProgramTest, AnImageThatCannotBeWrittenSaysWhy) {
    const QString script = QString::fromStdString(folder.write("s.guion", "captura no/hay.png\n"));
    const Ended ended = run({QStringLiteral("--guion"), script});
    EXPECT_EQ(ended.exitCode, 3);
    EXPECT_TRUE(
        ended.errors.contains(QStringLiteral("no se puede escribir la imagen «no/hay.png»: no existe")))
        << ended.errors.toStdString();
}

} // namespace
