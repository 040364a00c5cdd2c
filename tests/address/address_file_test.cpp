// Whole files of addresses.
#include <algorithm>

#include "AddressFileTest.h"
#include "address/ValidatedColumns.h"
#include "dbase/system/error.h"
#include "loading/ansi_text.h"
#include "loading/csv.h"

namespace {

using namespace ambrel;
using ambrel::test::ansi;
using AddressFile = postal_tests::AddressFileTest;
using Outcome = postal_tests::FileOutcome;

/// The lines of a text, with their ends; line ends inside quotes do not count.
std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    bool isQuoted = false;
    for (std::size_t begin = 0, i = 0; i < text.size(); ++i) {
        isQuoted = isQuoted != (text[i] == '"');
        if ((text[i] == '\n' && !isQuoted) || i + 1 == text.size()) {
            lines.push_back(text.substr(begin, i + 1 - begin));
            begin = i + 1;
        }
    }
    return lines;
}

std::vector<std::string> plainLinesOf(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size() - 1) + 1;
        lines.push_back(text.substr(begin, end - begin));
        begin = end;
    }
    return lines;
}

/// The values of a line.
std::vector<std::string> valuesOf(const std::string& line, char separator = ',') {
    loading::CsvReader csv(loading::textSource(line), "line", separator);
    EXPECT_TRUE(csv.next()) << line;
    std::vector<std::string> values;
    for (const loading::CsvField& field : csv.fields()) {
        values.emplace_back(field.text);
    }
    return values;
}

/// A value that was added, counted from the end of the line.
std::string added(const std::string& line, std::string_view name, char separator = ',') {
    const auto values = valuesOf(line, separator);
    const auto place = std::ranges::find(validatedColumnNames, name) - validatedColumnNames.begin();
    return values.at(values.size() - validatedColumnCount + static_cast<std::size_t>(place));
}

const std::string addedNames =
    "VEREDICTO,CONFIANZA,COD_INE_V,MUNICIPIO_V,PROVINCIA_V,TIPO_V,VIA_V,NUMERO_V,RESTO_V,CODPOSTAL_V,"
    "CAMBIOS,ALTERNATIVAS";

TEST_F(AddressFile, AddsItsColumnsAfterEachRow) {
    const Outcome outcome = validate("ID,CALLE,NUMERO,POBLACION\n7,Gran Vía,45,Madrid\n");
    const auto lines = linesOf(outcome.result);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0], "ID,CALLE,NUMERO,POBLACION," + addedNames + "\n");
    EXPECT_TRUE(lines[1].starts_with("7,Gran Vía,45,Madrid,COMPLETADA,0.99,28079,MADRID,")) << lines[1];
    EXPECT_EQ(added(lines[1], "CODPOSTAL_V"), "28004");
    EXPECT_EQ(outcome.totals.rows, 1U);
    EXPECT_EQ(outcome.totals.of(Verdict::Completed), 1U);
    EXPECT_EQ(outcome.totals.settled(), 1U);
}

/// The rows of a result without what was added to them.
std::string withoutAdded(const std::string& result, char separator = ',') {
    std::string text;
    for (const std::string& line : linesOf(result)) {
        std::size_t end = line.find_last_not_of("\r\n") + 1;
        const std::string lineEnd = line.substr(end);
        bool isQuoted = false;
        for (std::size_t left = end == 0 ? 0 : validatedColumnCount; left > 0;) {
            --end;
            isQuoted = isQuoted != (line[end] == '"');
            left -= line[end] == separator && !isQuoted ? 1 : 0;
        }
        text += line.substr(0, end) + lineEnd;
    }
    return text;
}

TEST_F(AddressFile, EveryByteOfTheInputStays) {
    for (const std::string text :
         {"CALLE,CP,NOTA\nMayor,28013,\n", "CALLE,CP,NOTA\r\n\"Mayor\" ,28013,x\r\n", // broken
          "\xEF\xBB\xBF"
          "CALLE,\"CP\",NOTA\r\n \"Mayor 3\",28013,x\n\"Mayor 3\",\"28013\",\"a\nb\"\"c\"\"\"\r\n",
          "\n\r\nCALLE,CP,NOTA\n\nMayor,28013,\n\n\n", "CALLE,CP,NOTA\nMayor,28013,sin fin",
          "CALLE,CP,NOTA\nMayor\nMayor,28013,a,b,c\n", "CALLE,CP,NOTA"}) {
        EXPECT_EQ(withoutAdded(validate(text).result), text);
    }
}

TEST_F(AddressFile, RowsStayInTheirOrder) {
    constexpr int count = 40000;
    std::string text = "ID,CALLE,NUMERO,CP,POBLACION\n";
    for (int i = 0; i < count; ++i) {
        const std::array<const char*, 4> places{"28013,Madrid", "28901,Getafe", "15500,La Coruña", ","};
        text += std::to_string(i) + ",Mayor," + std::to_string(i % 50 + 1) + ',' +
                places.at(static_cast<std::size_t>(i) % places.size()) + '\n';
    }
    const Outcome outcome = validate(text, {.threads = 3});
    EXPECT_EQ(withoutAdded(outcome.result), text);
    EXPECT_EQ(outcome.totals.rows, static_cast<std::uint64_t>(count));
    ASSERT_EQ(outcome.places.size(), static_cast<std::size_t>(count));
    EXPECT_EQ(outcome.places.front(), "1:2");
    EXPECT_EQ(outcome.places.back(), "40000:40001");
    EXPECT_EQ(validate(text, {.threads = 1}).result, outcome.result) << "whatever the threads";
}

TEST_F(AddressFile, NoMoreThreadsAreStartedThanAMachineCanUse) {
    const std::string text = "CALLE,CP,POBLACION\nMayor 3,28013,Madrid\n";
    EXPECT_EQ(validate(text, {.threads = 4'000'000'000U}).result, validate(text, {.threads = 1}).result);
}

TEST_F(AddressFile, RowHasTheVerdictOfItsAddressAlone) {
    const std::vector<GivenAddress> addresses{
        {.street = "Gran Vía", .number = "45", .municipality = "Madrid"},
        {.street = "Calle Gran Via 3, 2º B", .postalCode = "28013", .municipality = "MADRID"},
        {.street = "Grann Via", .number = "3", .municipality = "Madrid"},
        {.street = "Gran Via", .municipality = "Madrid"},
        {.type = "AV",
         .street = "España",
         .postalCode = "15500",
         .municipality = "Coruña (La)",
         .province = "15"},
        {.street = "Inventada", .number = "1", .municipality = "Madrid"},
        {.street = "Mayor", .number = "1", .municipality = "Mordor"},
        {.street = "Mayor", .number = "1", .postalCode = "28004", .municipality = "Madrid"},
        {}};
    std::string text = "TIPO_VIA;VIA;NUMERO;CP;MUNICIPIO;PROVINCIA\n";
    for (const GivenAddress& one : addresses) {
        text += one.type + ';' + one.street + ';' + one.number + ';' + one.postalCode + ';' +
                one.municipality + ';' + one.province + '\n';
    }
    std::size_t row = 0;
    AddressValidator validator;
    validateAddressFile(input(text), {.threads = 2}, {.row = [&](const ValidatedRow& judged) {
                            GivenAddress given = addresses.at(row++);
                            for (std::string* const part : {&given.street, &given.municipality}) {
                                *part = ansi(*part);
                            }
                            const JudgedAddress alone = validator.validate(given);
                            EXPECT_EQ(verdictName(judged.judged.verdict), verdictName(alone.verdict))
                                << given.street;
                            EXPECT_EQ(validatedColumns(judged.judged, ""), validatedColumns(alone, ""))
                                << given.street;
                        }});
    EXPECT_EQ(row, addresses.size());
}

TEST_F(AddressFile, WholeAddressesOfOneColumnNeedNoQuotes) {
    const std::string address = "Calle Gran Vía, 45, 28004 Madrid";
    for (const char separator : {',', ';'}) {
        const std::string value = separator == ',' ? '"' + address + '"' : address;
        const std::string text = "DIRECCION\n" + value + '\n';
        std::string result;
        validateAddressFile(input(text), {},
                            {.write = [&](std::string_view piece) { result += piece; },
                             .row =
                                 [&](const ValidatedRow& row) {
                                     EXPECT_EQ(row.given.line, ansi(address));
                                     EXPECT_NE(row.judged.verdict, Verdict::BrokenRow);
                                 }});
        EXPECT_EQ(withoutAdded(result, separator), text) << "a separator that does not stand in the values";
    }
}

TEST_F(AddressFile, BrokenRowsAreAVerdictWithItsPlace) {
    const Outcome outcome = validate("CALLE,CP,NOTA\n"
                                     "Mayor,28013\n"
                                     "Mayor,28013,a,b\n"
                                     "May\"or,28013,a\n"
                                     "\"Mayor\"x,28013,a\n"
                                     "Mayor,28013,a\n");
    const auto lines = plainLinesOf(outcome.result);
    ASSERT_EQ(lines.size(), 6U);
    EXPECT_EQ(outcome.totals.of(Verdict::BrokenRow), 4U);
    EXPECT_EQ(added(lines[1], "VEREDICTO"), "FILA_ROTA");
    EXPECT_EQ(added(lines[1], "CAMBIOS"), "la fila tiene 2 valores y la cabecera 3");
    EXPECT_EQ(added(lines[2], "CAMBIOS"), "la fila tiene 4 valores y la cabecera 3");
    EXPECT_TRUE(
        lines[3].ends_with(",FILA_ROTA,0.00,,,,,,,,,carácter 4: comillas dentro de un valor sin comillas,\n"))
        << lines[3];
    EXPECT_TRUE(lines[4].find("carácter 8: texto ") != std::string::npos) << lines[4];
    EXPECT_NE(outcome.verdicts.at(4), Verdict::BrokenRow);
    EXPECT_EQ(outcome.places.at(1), "2:3");
}

TEST_F(AddressFile, QuotesThatAreNotClosedBreakOneRowOnly) {
    const std::string good = "\"Mayor\",\"28013\",\"b\"\n";
    for (const std::string broken : {"\"Mayor,28013,a\n", "Mayor,\"28013,a\n", "Mayor,28013,\"a\n"}) {
        const Outcome outcome = validate("CALLE,CP,NOTA\n" + good + broken + good + "Mayor,28013,c\n");
        const std::vector<Verdict> expected{Verdict::Correct, Verdict::BrokenRow, Verdict::Correct,
                                            Verdict::Correct};
        ASSERT_EQ(outcome.verdicts.size(), 4U) << broken;
        EXPECT_EQ(outcome.verdicts[1], Verdict::BrokenRow);
        EXPECT_EQ(outcome.verdicts[0], outcome.verdicts[2]);
        EXPECT_EQ(outcome.verdicts[0], outcome.verdicts[3]);
        const auto lines = linesOf(outcome.result);
        ASSERT_EQ(lines.size(), 5U) << "the quotes are closed in front of what is added\n" << outcome.result;
        EXPECT_TRUE(lines[2].starts_with(broken.substr(0, broken.size() - 1) + "\",FILA_ROTA,")) << lines[2];
        EXPECT_NE(added(lines[2], "CAMBIOS").find("estas comillas no se cierran"), std::string::npos);
    }
}

TEST_F(AddressFile, QuotesClosedByThoseOfAnotherRowBreakOneRowOnly) {
    const Outcome outcome = validate("CALLE,CP,NOTA\n\"Mayor,28013,a\nMayor,28013,b\nMayor,28013,c\"\n");
    EXPECT_EQ(outcome.totals.rows, 3U);
    EXPECT_EQ(outcome.verdicts.at(0), Verdict::BrokenRow);
    EXPECT_NE(outcome.verdicts.at(1), Verdict::BrokenRow);
    EXPECT_EQ(outcome.verdicts.at(2), Verdict::BrokenRow);
}

TEST_F(AddressFile, QuotedLineBreaksAreFine) {
    const Outcome outcome = validate("CALLE,CP,NOTA\n\"Mayor\",28013,\"dos\nlíneas\"\nMayor,28013,\n");
    EXPECT_EQ(outcome.totals.rows, 2U);
    EXPECT_EQ(outcome.totals.of(Verdict::BrokenRow), 0U);
    EXPECT_EQ(outcome.places.at(1), "2:4");
    EXPECT_EQ(linesOf(outcome.result).size(), 3U);
}

TEST_F(AddressFile, LineWithoutEndDoesNotFillTheMemory) {
    const std::string text = "CALLE,CP\nMayor,28013\n" + std::string(40'000'000, 'x') + "\nMayor,28013\n";
    const Outcome outcome = validate(text);
    EXPECT_EQ(outcome.totals.rows, 3U);
    EXPECT_EQ(outcome.verdicts.at(1), Verdict::BrokenRow);
    EXPECT_TRUE(withoutAdded(outcome.result) == text);
}

TEST_F(AddressFile, ResultIsInTheEncodingOfTheFile) {
    const std::string utf8 = "CALLE;NUMERO;POBLACION\nAvda. España;3;La Coruña\n";
    const std::string result = validate(utf8).result;
    EXPECT_NE(result.find(";ESPAÑA;"), std::string::npos) << result;
    EXPECT_EQ(validate(ansi(utf8)).result, ansi(result));
    const auto wide = [](const std::string& text) {
        return "\xFF\xFE" + loading::utf16FromUtf8(text, false);
    };
    EXPECT_EQ(validate(wide(utf8)).result, wide(result));
    const std::string marked = "\xEF\xBB\xBF";
    EXPECT_EQ(validate(marked + utf8).result, marked + result);
}

TEST_F(AddressFile, RowInAnotherEncodingIsBroken) {
    const Outcome outcome = validate("CALLE,CP\nEspaña,28013\nEspa\xF1"
                                     "a,28013\nNúñez,28013\n");
    EXPECT_EQ(outcome.verdicts.at(1), Verdict::BrokenRow);
    EXPECT_NE(outcome.result.find("Espa\xF1"
                                  "a,28013,FILA_ROTA,"),
              std::string::npos);
    EXPECT_NE(outcome.result.find("la columna CALLE no está en UTF-8"), std::string::npos);
    EXPECT_EQ(outcome.totals.of(Verdict::BrokenRow), 1U);
}

TEST_F(AddressFile, ValuesAddedAreQuotedWhereNecessary) {
    const Outcome outcome = validate("CALLE,NUMERO,POBLACION\nEspaña,3,La Coruña\n");
    EXPECT_EQ(added(linesOf(outcome.result).at(1), "MUNICIPIO_V"), "CORUÑA, LA");
}

TEST_F(AddressFile, UnsettledRowsAreAlsoWrittenApart) {
    const Outcome outcome = validate("CALLE,NUMERO,POBLACION\nMayor,3,Madrid\nInventada,1,Madrid\nMayor\n");
    const auto lines = linesOf(outcome.result), unsettled = linesOf(outcome.unsettled);
    ASSERT_EQ(unsettled.size(), 3U);
    EXPECT_EQ(unsettled[0], lines.at(0));
    EXPECT_EQ(unsettled[1], lines.at(2));
    EXPECT_EQ(unsettled[2], lines.at(3));
}

TEST_F(AddressFile, ResultWithoutItsHeading) {
    const std::string text = "\xEF\xBB\xBF"
                             "CALLE,CP\nMayor,28013\n";
    const std::string whole = validate(text).result;
    EXPECT_EQ(validate(text, {.writesHeading = false}).result, whole.substr(whole.find('\n') + 1));
}

TEST_F(AddressFile, ProgressGoesToTheWholeAndMayCancel) {
    std::string text = "CALLE,CP\n";
    for (int i = 0; i < 50000; ++i) {
        text += "Mayor,28013\n";
    }
    double last = 0;
    std::string result;
    AddressFileHandlers handlers{.write = [&](std::string_view piece) { result += piece; },
                                 .progress =
                                     [&](const AddressFileProgress& progress) {
                                         EXPECT_GE(progress.share, last);
                                         last = progress.share;
                                         return true;
                                     }};
    EXPECT_FALSE(validateAddressFile(input(text), {.threads = 2}, handlers).wasCancelled);
    EXPECT_GT(last, 0);
    EXPECT_LE(last, 1);
    const std::string whole = result;
    result.clear();
    handlers.progress = [](const AddressFileProgress& progress) { return progress.rows < 30000; };
    const AddressFileTotals totals = validateAddressFile(input(text), {.threads = 2}, handlers);
    EXPECT_TRUE(totals.wasCancelled);
    EXPECT_LT(totals.rows, 50000U);
    EXPECT_TRUE(whole.starts_with(result));
    EXPECT_TRUE(result.empty() || result.ends_with('\n'));
    EXPECT_EQ(static_cast<std::uint64_t>(std::ranges::count(result, '\n')), totals.rows + 1);
}

TEST_F(AddressFile, ErrorOfTheTablesReachesTheCaller) {
    std::string result;
    EXPECT_THROW(validateAddressFile(input("CALLE,CP\nMayor,28013\n"), {.database = "NO_HAY"},
                                     {.write = [&](std::string_view text) { result += text; }}),
                 dbase::Error);
    EXPECT_TRUE(result.empty() || result.ends_with('\n'));
}

TEST_F(AddressFile, ErrorOfAHandlerReachesTheCaller) {
    const AddressFileHandlers handlers{.write = [](std::string_view) { throw loading::OutputClosed(); }};
    EXPECT_THROW(validateAddressFile(input("CALLE,CP\nMayor,28013\n"), {}, handlers), loading::OutputClosed);
}

TEST_F(AddressFile, FileWithoutColumnsOfAddressesIsRefusedWithItsNames) {
    const auto refusal = [](std::string_view text) {
        try {
            validate(text);
        } catch (const AddressColumnsError& error) {
            return std::string(error.what());
        }
        return std::string("none");
    };
    EXPECT_EQ(refusal("ID;NOMBRE\n1;Ana\n"), "prueba.csv: no se reconoce la columna de la vía ni la de la "
                                             "dirección; las columnas son «ID», «NOMBRE»");
    EXPECT_EQ(refusal("CALLE,CP,VEREDICTO,CAMBIOS\n"),
              "prueba.csv: ya tiene columnas que se llaman como las que se añaden (VEREDICTO, CAMBIOS); "
              "quítelas o cámbieles el nombre");
    EXPECT_THROW(validate(""), loading::Failure);
    EXPECT_THROW(validate("\n\n"), loading::Failure);
}

TEST_F(AddressFile, PreviewShowsWhatIsRecognised) {
    const std::string text =
        ansi("ID;Dirección;Población\n1;Gran Vía 3;Madrid\n\n2;\"Ma;yor\";Madrid\n3;x\"\n4\n");
    const AddressFilePreview preview = previewAddressFile(input(text));
    EXPECT_EQ(preview.problem, "");
    EXPECT_EQ(preview.format.separator, ';');
    EXPECT_EQ(preview.format.encoding, loading::TextEncoding::Windows1252);
    EXPECT_EQ(preview.names, (std::vector<std::string>{"ID", "Dirección", "Población"}));
    EXPECT_EQ(preview.places.at(static_cast<std::size_t>(AddressColumn::Street)), 1U);
    ASSERT_EQ(preview.rows.size(), 4U);
    EXPECT_EQ(preview.rows[0], (std::vector<std::string>{"1", "Gran Vía 3", "Madrid"}));
    EXPECT_EQ(preview.rows[1], (std::vector<std::string>{"2", "Ma;yor", "Madrid"}));
    EXPECT_EQ(previewAddressFile(input(text), {}, 1).rows.size(), 1U);
}

TEST_F(AddressFile, PreviewOfAFileThatWouldBeRefusedSaysWhy) {
    const AddressFilePreview preview = previewAddressFile(input("ID,NOMBRE\n1,Ana\n"));
    EXPECT_NE(preview.problem.find("no se reconoce"), std::string::npos);
    EXPECT_EQ(preview.names, (std::vector<std::string>{"ID", "NOMBRE"}));
    EXPECT_EQ(preview.rows.size(), 1U);
}

TEST_F(AddressFile, BeginSaysWhatIsRecognisedBeforeTheFirstRow) {
    std::vector<std::string> events;
    validateAddressFile(
        input("CALLE,CP\nMayor,28013\n"), {},
        {.write = [&](std::string_view) { events.emplace_back("write"); },
         .begin = [&](const AddressFilePreview& preview) { events.push_back(preview.names[0]); }});
    EXPECT_EQ(events, (std::vector<std::string>{"CALLE", "write", "write"}));
}

} // namespace
