// CSV into a table: all rows or none.
#include "loading/table_loading.h"

#include "dbase/dataset/dataset.h"
#include "support/TableTest.h"

namespace loading {
namespace {

using Mode = dbase::BulkLoader::Mode;

class TableLoading : public ambrel::test::TableTest {
protected:
    TableLoading() {
        file =
            createTable(ambrel::test::defineTable("T", {"COD C3", "NUM N5", "ALTA D", "SI L"}, {"COD"}), {});
    }

    std::uint64_t load(std::string_view text, Mode mode = Mode::Append,
                       const LoadProgress& progress = {}) const {
        CsvReader csv(textSource(text), "t.csv");
        return loadCsv(csv, file, mode, progress);
    }
    std::string refusal(std::string_view text) const {
        try {
            load(text);
        } catch (const Failure& failure) {
            return failure.what();
        }
        return "loaded";
    }
    /// Column COD of all records, in the order of its tag.
    std::string codes() const {
        dbase::Dataset table("DB", "T", "COD");
        table.open();
        std::string all;
        for (bool on = !table.isEmpty(); on; on = table.next()) {
            all += table.field("COD").text() + table.field("NUM").text() + ' ';
        }
        return all;
    }

    std::string file;
};

TEST_F(TableLoading, ColumnsComeInAnyOrderAndLetterCase) {
    EXPECT_EQ(load("num,COD\n2,b\n1,a\n"), 2U);
    EXPECT_EQ(codes(), "a1 b2 ");
}

TEST_F(TableLoading, MissingColumnsStayBlank) {
    load("COD\na\n");
    dbase::Dataset table("DB", "T");
    table.open();
    EXPECT_TRUE(table.field("NUM").isNull());
    EXPECT_TRUE(table.field("ALTA").isNull());
    EXPECT_TRUE(table.field("SI").isNull());
}

TEST_F(TableLoading, BlankValueDoesNotKeepTheOneOfTheRowBefore) {
    load("COD,NUM\na,1\nb,\n");
    EXPECT_EQ(codes(), "a1 b ");
}

TEST_F(TableLoading, AddsToWhatIsThere) {
    load("COD\nb\n");
    load("COD\na\n");
    EXPECT_EQ(codes(), "a b ");
}

TEST_F(TableLoading, ReplacesWhatIsThere) {
    load("COD\nb\n");
    EXPECT_EQ(load("COD\na\n", Mode::Replace), 1U);
    EXPECT_EQ(codes(), "a ");
}

TEST_F(TableLoading, HeaderAloneLoadsNothing) {
    load("COD\nb\n");
    EXPECT_EQ(load("COD\n"), 0U);
    EXPECT_EQ(codes(), "b ");
}

TEST_F(TableLoading, HeaderAloneEmptiesAReplacedTable) {
    load("COD\nb\n");
    EXPECT_EQ(load("COD\n", Mode::Replace), 0U);
    EXPECT_EQ(codes(), "");
}

TEST_F(TableLoading, UnknownColumnNamesItsPlace) {
    EXPECT_EQ(refusal("COD,OTRA\na,b\n"),
              "t.csv: línea 1, columna 2: la tabla no tiene ninguna columna «OTRA». No se ha cargado nada.");
}

TEST_F(TableLoading, RepeatedColumnIsRefused) {
    EXPECT_EQ(refusal("COD,cod\n"),
              "t.csv: línea 1, columna 2: la columna «cod» está repetida. No se ha cargado nada.");
}

TEST_F(TableLoading, TextWithoutHeaderIsRefused) {
    EXPECT_EQ(refusal(""),
              "t.csv: línea 1: falta la fila con los nombres de las columnas. No se ha cargado nada.");
}

TEST_F(TableLoading, WrongNumberOfValuesNamesTheLine) {
    const std::string text = "t.csv: línea 3: la cabecera tiene 2 columnas y esta fila ";
    EXPECT_EQ(refusal("COD,NUM\na,1\nb\n"), text + "1. No se ha cargado nada.");
    EXPECT_EQ(refusal("COD,NUM\na,1\nb,1,\n"), text + "3. No se ha cargado nada.");
    EXPECT_EQ(refusal("COD\na\nb,1\n"),
              "t.csv: línea 3: la cabecera tiene 1 columna y esta fila 2. No se ha cargado nada.");
}

TEST_F(TableLoading, NothingAtAllIsLoadedWhenTheLastRowIsWrong) {
    load("COD\nb\n");
    for (const Mode mode : {Mode::Append, Mode::Replace}) {
        EXPECT_THROW(load("COD,NUM\na,1\nc,x\n", mode), Failure);
        EXPECT_THROW(load("COD,NUM\na,1\nc,\"1\n", mode), Failure);
    }
    EXPECT_EQ(codes(), "b ");
}

TEST_F(TableLoading, WrongValueNamesLineAndColumn) {
    EXPECT_EQ(refusal("NUM,COD\n1,\"a\n\"\n2,largo\n"),
              "t.csv: línea 4, columna COD: «largo» ocupa 5 caracteres y en "
              "la columna caben 3. No se ha cargado nada.");
    EXPECT_EQ(
        refusal("COD,ALTA\na,2024-13-01\n"),
        "t.csv: línea 2, columna ALTA: «2024-13-01» no es una fecha (AAAA-MM-DD). No se ha cargado nada.");
}

TEST_F(TableLoading, EveryBadValueIsReportedInOneAttempt) {
    EXPECT_EQ(refusal("COD,NUM,SI\nlargo,x,1\nb,1,F\nc\nd,9999999,?\n"),
              "t.csv: línea 2, columna COD: «largo» ocupa 5 caracteres y en la columna caben 3\n"
              "t.csv: línea 2, columna NUM: «x» no es un número\n"
              "t.csv: línea 4: la cabecera tiene 3 columnas y esta fila 1\n"
              "t.csv: línea 5, columna NUM: «9999999» ocupa 7 caracteres y en la columna caben 5\n"
              "t.csv: línea 5, columna SI: «?» no es un valor lógico (True o False)\n"
              "t.csv: hay 5 errores. No se ha cargado nada.");
    EXPECT_EQ(codes(), "");
}

TEST_F(TableLoading, AfterAHundredBadValuesOnlyTheirNumberIsReported) {
    std::string text = "NUM\n", told;
    for (int row = 1; row <= 100; ++row) {
        text += "x\n";
        told += "t.csv: línea " + std::to_string(row + 1) + ", columna NUM: «x» no es un número\n";
    }
    EXPECT_EQ(refusal(text), told + "t.csv: hay 100 errores. No se ha cargado nada.");
    EXPECT_EQ(refusal(text + "x\n"), told + "t.csv: y 1 error más. No se ha cargado nada.");
    EXPECT_EQ(refusal(text + "x\n1\nx\n"), told + "t.csv: y 2 errores más. No se ha cargado nada.");
}

TEST_F(TableLoading, EveryUnknownColumnIsReported) {
    EXPECT_EQ(refusal("OTRA,COD,COD,MAS\nx\n"),
              "t.csv: línea 1, columna 1: la tabla no tiene ninguna columna «OTRA»\n"
              "t.csv: línea 1, columna 3: la columna «COD» está repetida\n"
              "t.csv: línea 1, columna 4: la tabla no tiene ninguna columna «MAS»\n"
              "t.csv: hay 3 errores. No se ha cargado nada.");
}

TEST_F(TableLoading, WhatEndsTheReadingIsReportedAfterTheBadValues) {
    EXPECT_EQ(refusal("NUM\nx\n1\"\nx\n"),
              "t.csv: línea 2, columna NUM: «x» no es un número\n"
              "t.csv: línea 3, carácter 2: comillas dentro de un valor sin comillas\n"
              "t.csv: hay 2 errores. No se ha cargado nada.");
}

TEST_F(TableLoading, TextThatIsNoUtf8NamesTheOtherEncoding) {
    EXPECT_EQ(refusal("COD\n\xD1\n"),
              "t.csv: línea 2, columna COD: «�» no está en UTF-8. No se ha cargado nada. Si el texto está en "
              "Windows-1252, use «--codificacion windows-1252».");
}

TEST_F(TableLoading, AnotherSeparatorIsGuessedFromTheHeader) {
    const std::string text = "t.csv: línea 1, columna 1: la tabla no tiene ninguna columna ";
    EXPECT_EQ(
        refusal("COD;NUM\na;1\n"),
        text +
            "«COD;NUM»; si las columnas se separan con «;», use «--separador ';'». No se ha cargado nada.");
    EXPECT_EQ(refusal("COD\tNUM\na\t1\n"), text +
                                               "«COD�NUM»; si las columnas se separan con tabuladores, use "
                                               "«--separador tab». No se ha cargado nada.");
}

TEST_F(TableLoading, BrokenCsvSaysThatNothingWasLoaded) {
    EXPECT_EQ(refusal("COD\na\"\n"),
              "t.csv: línea 2, carácter 2: comillas dentro de un valor sin comillas. No se ha "
              "cargado nada.");
}

TEST_F(TableLoading, ReportsHowFarItIs) {
    std::string text = "COD\n";
    for (int row = 0; row < 40000; ++row) {
        text += "a\n";
    }
    std::uint64_t rowsRead = 0;
    double share = 0;
    load(text, Mode::Append, [&](std::uint64_t rows, double done) {
        rowsRead = done < 0 ? rows : rowsRead;
        share = done;
    });
    EXPECT_EQ(rowsRead, 32768U);
    EXPECT_EQ(share, 1.0);
}

} // namespace
} // namespace loading
