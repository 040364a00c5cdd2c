// ambcp cargar: rows of a CSV file into a table.
#include "AmbcpTest.h"

#include <cstdint>
#include <filesystem>

#include "dbase/mdx/index_layout.h"

namespace ambcp::test {
namespace {

class AmbcpCargar : public AmbcpTest {
protected:
    AmbcpCargar() { done({"crear", "."}); }

    /// The result of loading this text into a table.
    Outcome load(const std::string& table, const std::string& csv) const {
        folder.write("filas.csv", csv);
        return ambcp({"cargar", ".", table, "filas.csv"});
    }
    void expectRefusal(const std::string& table, const std::string& csv, const std::string& text) const {
        const std::string records = content(table + ".DBF"), index = indexOf(table);
        const Outcome run = load(table, csv);
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_EQ(run.errors, "ambcp: filas.csv: " + text + ". No se ha cargado nada.\n");
        EXPECT_EQ(content(table + ".DBF"), records);
        EXPECT_EQ(indexOf(table), index);
    }

private:
    /// Without the session of the journal, which is begun before the first row is read.
    std::string indexOf(const std::string& table) const {
        std::string bytes = content(table + ".MDX");
        return bytes.erase(dbase::mdx::stamp + dbase::mdx::stampSession, sizeof(std::uint64_t));
    }
};

TEST_F(AmbcpCargar, ColumnsAreKnownByTheirNames) {
    const Outcome run = load("tipo_via", "NOMBRE,CODIGO\nCALLE,CL\n\"AVENIDA, LA\",AV\n");
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "TIPO_VIA: 2 filas cargadas.\n");
    EXPECT_EQ(done({"listar", ".", "TIPO_VIA", "--tag", "CODIGO"}),
              "CODIGO,NOMBRE,NOMBRE_CAT,CODPOSTAL\nAV,\"AVENIDA, LA\",,\nCL,CALLE,,\n");
}

TEST_F(AmbcpCargar, OneRowIsCountedInTheSingular) {
    EXPECT_EQ(load("TIPO_VIA", "CODIGO\nCL\n").output, "TIPO_VIA: 1 fila cargada.\n");
}

TEST_F(AmbcpCargar, OtherSeparatorThanTheCommaIsSaid) {
    expectRefusal("TIPO_VIA", "CODIGO;NOMBRE\nCL;CALLE\n",
                  "línea 1, columna 1: la tabla no tiene ninguna columna «CODIGO;NOMBRE»; si las columnas se "
                  "separan con «;», use «--separador ';'»");
}

TEST_F(AmbcpCargar, EveryBadValueIsReportedWithTheNameOfTheProgram) {
    const Outcome run = load("PROVIN", "CODIGO,GRUPO\n0001,1\n002,uno\n");
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.errors, "ambcp: filas.csv: línea 2, columna CODIGO: «0001» ocupa 4 caracteres y en la "
                          "columna caben 3\n"
                          "ambcp: filas.csv: línea 3, columna GRUPO: «uno» no es un número\n"
                          "ambcp: filas.csv: hay 2 errores. No se ha cargado nada.\n");
    EXPECT_EQ(done({"listar", ".", "PROVIN"}), "PROVINCIA,CODIGO,COD_198,GRUPO\n");
}

TEST_F(AmbcpCargar, FileOfASpanishSpreadsheetIsTaken) {
    folder.write("hoja.csv", "NOMBRE;ENT_MENOR\r\n\"A CORU\xD1"
                             "A, LA\";VERDADERO\r\n");
    done({"cargar", ".", "MUNICIPI", "hoja.csv", "--separador", ";", "--codificacion", "windows-1252"});
    EXPECT_EQ(done({"buscar", ".", "MUNICIPI", "NOMBRE", "NOMBRE=A CORUÑA, LA"}),
              "COD_INE,CODPOSTAL,UNICO,CAPITAL,NOMBRE,COD_PROV,COD_MUN,COD_MUNMJ,ENT_MENOR,NOM_MUNICI\n"
              ",,,,\"A CORUÑA, LA\",,,,True,\n");
}

TEST_F(AmbcpCargar, UnicodeTextOfASpreadsheetIsTaken) {
    std::string text = "\xFF\xFE";
    for (const char c : std::string("CODIGO\tPROVINCIA\r\n001\t\xC1LAVA\r\n")) {
        text.append({c, '\0'});
    }
    folder.write("hoja.txt", text);
    done({"cargar", ".", "PROVIN", "hoja.txt", "--separador", "tab", "--codificacion", "UTF-16"});
    EXPECT_EQ(done({"listar", ".", "PROVIN"}), "PROVINCIA,CODIGO,COD_198,GRUPO\nÁLAVA,001,,\n");
    EXPECT_EQ(refused({"cargar", ".", "PROVIN", "hoja.txt", "--separador", "tab"}),
              "ambcp: hoja.txt: está en UTF-16; use «--codificacion utf-16». No se ha cargado nada.\n");
}

TEST_F(AmbcpCargar, HyphenIsTheStandardInput) {
    const Outcome run = shell("printf 'CODIGO\\n001\\n' | \"$AMBCP\" cargar . PROVIN -");
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "PROVIN: 1 fila cargada.\n");
    EXPECT_EQ(shell("printf 'CODIGO\\n0002\\n' | \"$AMBCP\" cargar . PROVIN -").errors,
              "ambcp: entrada estándar: línea 2, columna CODIGO: «0002» ocupa 4 caracteres y en la columna "
              "caben 3. No se ha cargado nada.\n");
    EXPECT_EQ(shell("printf 'CODIGO\\n002\\n' | \"$AMBCP\" cargar . PROVIN - --reemplazar").exitCode, 0);
    EXPECT_EQ(done({"listar", ".", "PROVIN"}), "PROVINCIA,CODIGO,COD_198,GRUPO\n,002,,\n");
}

TEST_F(AmbcpCargar, UnknownSeparatorOrEncodingIsRefused) {
    folder.write("filas.csv", "CODIGO\n001\n");
    EXPECT_EQ(
        refused({"cargar", ".", "PROVIN", "filas.csv", "--separador", "ab"}),
        "ambcp: valor no válido: «ab» no separa columnas; un signo, o «tab». Vea «ambcp cargar --help».\n");
    EXPECT_EQ(
        refused({"cargar", ".", "PROVIN", "filas.csv", "--codificacion", "ebcdic"}),
        "ambcp: valor no válido: «ebcdic» no se conoce; utf-8, windows-1252 o utf-16. Vea «ambcp cargar "
        "--help».\n");
}

TEST_F(AmbcpCargar, EveryKindOfColumnIsFilled) {
    load("MUNICIPI", "NOMBRE,ENT_MENOR\nA CORUÑA,S\nB,0\nC,\n");
    EXPECT_EQ(done({"listar", ".", "MUNICIPI", "--filtro", "ENT_MENOR=True OR NOMBRE='B'"}),
              "COD_INE,CODPOSTAL,UNICO,CAPITAL,NOMBRE,COD_PROV,COD_MUN,COD_MUNMJ,ENT_MENOR,NOM_MUNICI\n"
              ",,,,A CORUÑA,,,,True,\n,,,,B,,,,False,\n");
}

TEST_F(AmbcpCargar, AddsOrReplaces) {
    load("PROVIN", "CODIGO\n001\n");
    load("PROVIN", "CODIGO\n002\n");
    EXPECT_EQ(done({"listar", ".", "PROVIN"}), "PROVINCIA,CODIGO,COD_198,GRUPO\n,001,,\n,002,,\n");
    folder.write("filas.csv", "CODIGO,GRUPO\n003,1\n");
    done({"cargar", ".", "PROVIN", "filas.csv", "--reemplazar"});
    EXPECT_EQ(done({"listar", ".", "PROVIN", "--tag", "CODIGO"}),
              "PROVINCIA,CODIGO,COD_198,GRUPO\n,003,,1\n");
}

TEST_F(AmbcpCargar, ByteOrderMarkAndCarriageReturnsAreTaken) {
    const Outcome run = load("PROVIN", "\xEF\xBB\xBF"
                                       "CODIGO,GRUPO\r\n001,2\r\n");
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(done({"listar", ".", "PROVIN"}), "PROVINCIA,CODIGO,COD_198,GRUPO\n,001,,2\n");
}

TEST_F(AmbcpCargar, UnknownColumnLoadsNothing) {
    expectRefusal("PROVIN", "CODIGO,PAIS\n001,ES\n",
                  "línea 1, columna 2: la tabla no tiene ninguna columna «PAIS»");
}

TEST_F(AmbcpCargar, ValueTooLongLoadsNothing) {
    expectRefusal("PROVIN", "CODIGO\n001\n0002\n",
                  "línea 3, columna CODIGO: «0002» ocupa 4 caracteres y en la columna caben 3");
}

TEST_F(AmbcpCargar, CharacterOutsideTheCodePageLoadsNothing) {
    expectRefusal("PROVIN", "CODIGO,PROVINCIA\n001,Łódź\n",
                  "línea 2, columna PROVINCIA: «Łódź» lleva el carácter «Ł», que no existe en Windows-1252");
}

TEST_F(AmbcpCargar, WrongTypeLoadsNothing) {
    expectRefusal("PROVIN", "GRUPO\nuno\n", "línea 2, columna GRUPO: «uno» no es un número");
    expectRefusal("PROVIN", "GRUPO\n40000\n", "línea 2, columna GRUPO: «40000» no está entre -32768 y 32767");
    expectRefusal("MUNICIPI", "ENT_MENOR\nquizá\n",
                  "línea 2, columna ENT_MENOR: «quizá» no es un valor lógico (True o False)");
}

TEST_F(AmbcpCargar, BrokenCsvLoadsNothing) {
    expectRefusal("PROVIN", "CODIGO\n\"001\n", "línea 2, carácter 1: estas comillas no se cierran");
}

TEST_F(AmbcpCargar, FailedReplacementKeepsTheTable) {
    load("PROVIN", "CODIGO\n001\n");
    folder.write("filas.csv", "CODIGO\n002\n0003\n");
    refused({"cargar", ".", "PROVIN", "filas.csv", "--reemplazar"});
    EXPECT_EQ(done({"listar", ".", "PROVIN"}), "PROVINCIA,CODIGO,COD_198,GRUPO\n,001,,\n");
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        EXPECT_EQ(entry.path().string().find(".nuevo"), std::string::npos) << entry.path();
    }
}

TEST_F(AmbcpCargar, WhatIsNotThereIsNamed) {
    EXPECT_EQ(refused({"cargar", ".", "PROVIN", "nada.csv"}).rfind("ambcp: nada.csv: no se puede abrir", 0),
              0U);
    folder.write("filas.csv", "CODIGO\n001\n");
    EXPECT_EQ(refused({"cargar", ".", "OTRA", "filas.csv"}),
              "ambcp: en la carpeta «.» no hay ninguna tabla «OTRA»\n");
    EXPECT_EQ(refused({"cargar", "no", "OTRA", "filas.csv"}), "ambcp: no existe la carpeta «no»\n");
}

TEST_F(AmbcpCargar, FindsFilesWhateverTheirLetterCase) {
    std::filesystem::rename(folder / "PROVIN.DBF", folder / "Provin.dbf");
    std::filesystem::rename(folder / "PROVIN.MDX", folder / "provin.mdx");
    EXPECT_EQ(load("PROVIN.DBF", "CODIGO\n001\n").exitCode, 0);
    EXPECT_EQ(done({"listar", ".", "provin", "--tag", "codigo"}), "PROVINCIA,CODIGO,COD_198,GRUPO\n,001,,\n");
}

constexpr const char* entitiesFirst = "COD_INE,CODPOSTAL,NOMBRE,ENT_MENOR\n"
                                      "26002,26002,BARRIO,True\n"
                                      "26001,26011,ALDEA,True\n"
                                      "26001,26001,ALTA,False\n"
                                      "26002,26003,BAJA,False\n"
                                      "26001,26012,ALQUERIA,True\n"
                                      "26001,26002,ALTA,\n";

TEST_F(AmbcpCargar, ReplacedMunicipalitiesStandBeforeTheirEntities) {
    folder.write("filas.csv", entitiesFirst);
    EXPECT_EQ(ambcp({"cargar", ".", "municipi.dbf", "filas.csv", "--reemplazar"}).errors, "");
    const std::string header = done({"crear", "vacia"}).empty() ? "" : done({"listar", "vacia", "MUNICIPI"});
    const std::string ordered = header + "26001,26001,,,ALTA,,,,False,\n"
                                         "26001,26002,,,ALTA,,,,,\n"
                                         "26001,26011,,,ALDEA,,,,True,\n"
                                         "26001,26012,,,ALQUERIA,,,,True,\n"
                                         "26002,26003,,,BAJA,,,,False,\n"
                                         "26002,26002,,,BARRIO,,,,True,\n";
    EXPECT_EQ(done({"listar", ".", "MUNICIPI", "--tag", "COD_INE"}), ordered);
    EXPECT_EQ(done({"listar", ".", "MUNICIPI"}), ordered);
}

TEST_F(AmbcpCargar, AddingAMunicipalityAfterItsEntitiesWarns) {
    const Outcome run = load("MUNICIPI", entitiesFirst);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "MUNICIPI: 6 filas cargadas.\n");
    EXPECT_EQ(run.errors,
              "ambcp: aviso: en el orden de COD_INE hay entidades delante de su municipio (26001, "
              "26002); cargue la tabla entera con --reemplazar, que la ordena.\n");
    folder.write("filas.csv", done({"listar", ".", "MUNICIPI"}));
    done({"cargar", ".", "MUNICIPI", "filas.csv", "--reemplazar"});
    EXPECT_EQ(load("MUNICIPI", "COD_INE,NOMBRE,ENT_MENOR\n26003,SOLA,True\n26002,OTRA,True\n").errors, "");
    EXPECT_NE(load("MUNICIPI", "COD_INE,NOMBRE,ENT_MENOR\n26003,SUYO,False\n").errors.find("(26003)"),
              std::string::npos);
}

TEST_F(AmbcpCargar, OtherTablesKeepTheOrderOfTheirRows) {
    folder.write("filas.csv", "CODIGO\n003\n001\n002\n");
    done({"cargar", ".", "PROVIN", "filas.csv", "--reemplazar"});
    EXPECT_EQ(done({"listar", ".", "PROVIN"}), "PROVINCIA,CODIGO,COD_198,GRUPO\n,003,,\n,001,,\n,002,,\n");
}

TEST_F(AmbcpCargar, ListingLoadsBack) {
    const std::string csv = "CODIGO,NOMBRE,NOMBRE_CAT,CODPOSTAL\nÑ,\"a, \"\"b\"\"\",\"x\ny\",\n";
    EXPECT_EQ(load("TIPO_VIA", csv).exitCode, 0);
    EXPECT_EQ(done({"listar", ".", "TIPO_VIA"}), csv);
}

TEST_F(AmbcpCargar, SaysNothingAboutProgressWithoutATerminal) {
    std::string csv = "CODIGO\n";
    for (int row = 0; row < 50000; ++row) {
        csv += "001\n";
    }
    const Outcome run = load("PROVIN", csv);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.errors, "");
}

} // namespace
} // namespace ambcp::test
