// Addresses in a host's table, and filling its columns with what was found out.
#include "address/TableValidation.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "address/ValidatedColumns.h"
#include "controller/StreetTables.h"
#include "dbase/dataset/dataset.h"
#include "dbase/dbf/codepage.h"
#include "dbase/system/error.h"
#include "loading/undo.h"
#include "loading/undo_reader.h"
#include "support/Tables.h"

namespace {

using namespace ambrel;
using namespace postal_tests;
using ambrel::test::ansi;
using ambrel::test::defineTable;
using Rows = std::vector<ambrel::test::Row>;
using Key = std::vector<std::string>;

class TableValidation : public StreetTables {
protected:
    void SetUp() override {
        addMunicipalities({{"28079", "28004", "MADRID", "N", "0"}, {"28079", "28013", "MADRID", "N", "0"}});
        addStreets({{"10", "GRAN VIA", "CL", "28013", {1, 41}, {2, 48}},
                    {"11", "GRAN VIA", "CL", "28004", {43, 9999}, {50, 9998}},
                    {"12", "MAYOR", "CL", "28013"},
                    {"13", "EMBAJADORES", "CL", "28004"}});
    }

    /// The usual layout: every part has a column.
    void makeCustomers(const Rows& rows) {
        file = createTable(defineTable("CLIENTES",
                                       {"CODIGO C3", "TIPO_VIA C2", "VIA C20", "NUMERO C10", "RESTO C10",
                                        "CP C5", "POBLACION C20", "VEREDICTO C21", "INE C5"},
                                       {"CODIGO"}),
                           {"CODIGO", "TIPO_VIA", "VIA", "NUMERO", "RESTO", "CP", "POBLACION"}, rows);
    }
    /// Another usual one: the street's column carries everything.
    void makeShortCustomers(const Rows& rows, const std::string& streetColumn = "DIRECCION C40") {
        file = createTable(
            defineTable("CLIENTES", {"CODIGO C3", streetColumn, "CP C5", "POBLACION C20"}, {"CODIGO"}), rows);
    }

    [[nodiscard]] std::string undoFile() const { return folder / "CLIENTES.deshacer"; }
    static AddressFileOptions options() { return {.threads = 1}; }

    /// Runs it, and returns what was left alone.
    std::string fill(const FillNames& names, const Key& key = {},
                     const std::function<void(ambrel::TableValidation&)>& before = {}) {
        loading::UndoWriter undo(undoFile(), file, "la prueba");
        ambrel::TableValidation validation(file, options());
        std::string left;
        validation.fill(names, undo, key, [&](const UnfilledRow& row) {
            left += std::to_string(row.record) + ' ' + row.problem.column + ": " + row.problem.reason + '\n';
        });
        if (before) {
            before(validation);
        }
        totals = validation.run(handlers);
        return left;
    }
    std::string refusal(const FillNames& names) {
        try {
            return "filled: " + fill(names);
        } catch (const std::exception& error) {
            return error.what();
        }
    }

    [[nodiscard]] std::string value(const std::string& code, const std::string& column) const {
        dbase::Dataset table("DB", "CLIENTES", "CODIGO");
        table.open();
        EXPECT_TRUE(table.seek({{"CODIGO", code}}, dbase::SeekMode::Exact));
        return dbase::CodePage::windows1252().toUtf8(table.field(column).text());
    }
    void edit(const std::string& code, const std::string& column, const std::string& text) const {
        dbase::Dataset table("DB", "CLIENTES", "CODIGO");
        table.open();
        ASSERT_TRUE(table.seek({{"CODIGO", code}}, dbase::SeekMode::Exact));
        table.edit();
        table.field(column).setText(ansi(text));
        table.post();
    }
    [[nodiscard]] loading::UndoTotals undo() const {
        return loading::undo(loading::UndoReader(undoFile()), {}, [](const auto&) {});
    }

    std::string file;
    AddressFileHandlers handlers;
    TableTotals totals;
};

const FillNames allHome{{FillPart::Type, ""},
                        {FillPart::Street, ""},
                        {FillPart::Number, ""},
                        {FillPart::Rest, ""},
                        {FillPart::Municipality, ""},
                        {FillPart::PostalCode, ""},
                        {FillPart::Verdict, "VEREDICTO"},
                        {FillPart::IneCode, "INE"}};

TEST_F(TableValidation, WritesEveryRecordWithItsNumberAndItsColumns) {
    makeCustomers({{"A1", "CL", "MAYOR", "3", "\"2º\", B", "28013", "MADRID"},
                   {"A2", "CL", "NADIE", "3", "", "28013", "MADRID"},
                   {"A3", "", "", "", "", "", ""}});
    const auto before = std::filesystem::last_write_time(file);
    std::string csv;
    handlers.write = [&](std::string_view text) { csv += text; };
    ambrel::TableValidation validation(file, options());
    totals = validation.run(handlers);
    EXPECT_TRUE(
        csv.starts_with("_REG,CODIGO,TIPO_VIA,VIA,NUMERO,RESTO,CP,POBLACION,INE,VEREDICTO,CONFIANZA,"))
        << csv;
    EXPECT_NE(csv.find("\n1,A1,CL,MAYOR,3,\"\"\"2º\"\", B\",28013,MADRID,,CORRECTA,"), std::string::npos)
        << csv;
    EXPECT_NE(csv.find("\n2,A2,CL,NADIE,3,,28013,MADRID,,VIA_DESCONOCIDA,"), std::string::npos) << csv;
    EXPECT_NE(csv.find("\n3,A3,,,,,,,,VACIA,"), std::string::npos) << csv;
    EXPECT_EQ(totals.addresses.rows, 3U);
    EXPECT_EQ(totals.changed, 0U);
    EXPECT_EQ(std::filesystem::last_write_time(file), before);
}

TEST_F(TableValidation, SkipsDeletedRecordsAndKeepsTheNumbersOfTheOthers) {
    makeCustomers({{"A1", "CL", "MAYOR", "3", "", "28013", "MADRID"},
                   {"A2", "CL", "MAYOR", "5", "", "28013", "MADRID"}});
    {
        dbase::Dataset table("DB", "CLIENTES", "CODIGO");
        table.open();
        table.erase();
    }
    EXPECT_EQ(fill(allHome), "");
    EXPECT_EQ(totals.addresses.rows, 1U);
    EXPECT_EQ(value("A2", "VEREDICTO"), "CORRECTA");
}

TEST_F(TableValidation, FillsWhatWasMissingAndCorrectsWhatIsClear) {
    makeCustomers({{"A1", "CL", "MAYOR", "3", "2º B", "", "MADRID"},
                   {"A2", "CL", "EMBAJADROES", "7", "", "28004", "MADRID"}});
    EXPECT_EQ(fill(allHome), "");
    EXPECT_EQ(value("A1", "CP"), "28013");
    EXPECT_EQ(value("A1", "VEREDICTO"), "COMPLETADA");
    EXPECT_EQ(value("A1", "INE"), "28079");
    EXPECT_EQ(value("A1", "RESTO"), "2º B");
    EXPECT_EQ(value("A2", "VIA"), "EMBAJADORES");
    EXPECT_EQ(value("A2", "VEREDICTO"), "CORREGIDA");
    EXPECT_EQ(totals.changed, 2U);
    EXPECT_EQ(undo().putBack, 2U);
    EXPECT_EQ(value("A2", "VIA"), "EMBAJADROES");
    EXPECT_EQ(value("A1", "CP"), "");
    EXPECT_EQ(value("A1", "VEREDICTO"), "");
}

TEST_F(TableValidation, LeavesUnsettledRowsButForTheirVerdict) {
    makeCustomers({{"A1", "CL", "NADIE DE NADA", "3", "", "", "MADRID"},
                   {"A2", "CL", "MAYOR", "3", "", "28004", "MADRID"}});
    EXPECT_EQ(fill(allHome), "");
    EXPECT_EQ(value("A1", "VIA"), "NADIE DE NADA");
    EXPECT_EQ(value("A1", "CP"), "");
    EXPECT_EQ(value("A1", "INE"), "");
    EXPECT_EQ(value("A1", "VEREDICTO"), "VIA_DESCONOCIDA");
    EXPECT_EQ(value("A2", "CP"), "28004");
    EXPECT_EQ(value("A2", "VEREDICTO"), "CODIGO_DISTINTO");
}

TEST_F(TableValidation, LeavesTheWritingOfWhatIsRight) {
    makeCustomers({{"A1", "CL", "Mayor", "3", "", "28013", "Madrid"}});
    EXPECT_EQ(fill(allHome), "");
    EXPECT_EQ(value("A1", "VIA"), "Mayor");
    EXPECT_EQ(value("A1", "POBLACION"), "Madrid");
    EXPECT_EQ(value("A1", "VEREDICTO"), "CORRECTA");
}

TEST_F(TableValidation, LosesNothingOfAStreetsColumnThatCarriesMore) {
    makeShortCustomers(
        {{"A1", "C/ Embajadroes 7, 2º izda.", "28004", "MADRID"}, {"A2", "C/ Mayor, 5, 3º B", "", "MADRID"}});
    EXPECT_EQ(fill({{FillPart::Street, ""}, {FillPart::PostalCode, ""}}), "");
    EXPECT_EQ(value("A1", "DIRECCION"), "CL EMBAJADORES, 7, 2º izda.");
    EXPECT_EQ(value("A2", "DIRECCION"), "C/ Mayor, 5, 3º B");
    EXPECT_EQ(value("A2", "CP"), "28013");
}

TEST_F(TableValidation, TakesAStreetsColumnApartIntoColumnsOfTheirOwn) {
    file = createTable(
        defineTable("CLIENTES", {"CODIGO C3", "VIA C40", "CP C5", "POBLACION C20", "T C2", "N C10", "R C20"},
                    {"CODIGO"}),
        {"CODIGO", "VIA", "CP", "POBLACION"}, {{"A1", "C/ Mayor, 5, 3º B", "28013", "MADRID"}});
    EXPECT_EQ(
        fill({{FillPart::Street, ""}, {FillPart::Type, "T"}, {FillPart::Number, "N"}, {FillPart::Rest, "R"}}),
        "");
    EXPECT_EQ(value("A1", "VIA"), "MAYOR");
    EXPECT_EQ(value("A1", "T"), "CL");
    EXPECT_EQ(value("A1", "N"), "5");
    EXPECT_EQ(value("A1", "R"), "3º B");
}

TEST_F(TableValidation, LeavesARowWhoseFloorMayBelongToEitherColumn) {
    file = createTable(
        defineTable("CLIENTES", {"CODIGO C3", "VIA C40", "NUMERO C12", "CP C5", "POBLACION C20"}, {"CODIGO"}),
        {{"A1", "C/ Embajadroes, Edificio Sol", "5, 2º", "28004", "MADRID"}});
    const std::string left = fill({{FillPart::Street, ""}, {FillPart::PostalCode, ""}});
    EXPECT_NE(left.find("1 VIA: la columna lleva también el piso"), std::string::npos) << left;
    EXPECT_EQ(value("A1", "VIA"), "C/ Embajadroes, Edificio Sol");
    EXPECT_EQ(value("A1", "NUMERO"), "5, 2º");
}

TEST_F(TableValidation, LosesNoFloorOfAStreetsColumnBesideAnother) {
    makeCustomers({{"A1", "CL", "EMBAJADROES 7, 2º B", "", "3º A", "28004", "MADRID"}});
    for (const FillNames& names :
         {FillNames{{FillPart::Street, ""}}, {{FillPart::Street, ""}, {FillPart::Rest, ""}}}) {
        EXPECT_EQ(fill(names), "");
        EXPECT_EQ(value("A1", "VIA"), "EMBAJADORES, 7, 2º B");
        EXPECT_EQ(value("A1", "RESTO"), "3º A");
        EXPECT_EQ(undo().putBack, 1U);
        std::filesystem::remove(undoFile());
    }
}

TEST_F(TableValidation, LosesNoCodeOrProvinceOfAMunicipalitysColumn) {
    addProvinces({{"028", "MADRID"}});
    const FillNames names{{FillPart::Municipality, ""}};
    for (const char* municipality : {"28013 Madrit", "Madrit (Madrid)"}) {
        file = createTable(defineTable("CLIENTES", {"CODIGO C3", "VIA C40", "POBLACION C20"}, {"CODIGO"}),
                           {{"A1", "C/ Mayor, 5", municipality}});
        const std::string left = fill(names);
        EXPECT_NE(left.find("1 POBLACION: la columna lleva también el código o la provincia"),
                  std::string::npos)
            << left;
        EXPECT_EQ(value("A1", "POBLACION"), municipality);
        std::filesystem::remove(file);
        std::filesystem::remove(folder / "CLIENTES.MDX");
        std::filesystem::remove(undoFile());
    }
    makeShortCustomers({{"A1", "C/ Mayor, 5", "28013", "28013 Madrit"}});
    EXPECT_EQ(fill(names), "");
    EXPECT_EQ(value("A1", "POBLACION"), "MADRID");
}

TEST_F(TableValidation, LosesNoSignOfACodePageThatHasMoreThanTheTables) {
    file = createTable(defineTable("CLIENTES", {"VIA C40", "CP C5", "POBLACION C20"}),
                       {{"EMBAJADROES 7, 2# B", "28004", "MADRID"}});
    std::fstream table(file, std::ios::binary | std::ios::in | std::ios::out);
    table.seekp(29).put('\x02'); // code page 850
    table.seekg(30);
    const std::string bytes(std::istreambuf_iterator<char>(table), {});
    table.clear();
    table.seekp(static_cast<std::streamoff>(30 + bytes.find('#'))).put('\xB2'); // a shaded block
    table.close();
    const std::string left = fill({{FillPart::Street, ""}});
    EXPECT_NE(left.find("1 VIA: el registro tiene signos que no están en Windows-1252"), std::string::npos)
        << left;
    EXPECT_EQ(totals.changed, 0U);
}

TEST_F(TableValidation, NeverCutsAValue) {
    makeShortCustomers({{"A1", "EMBAJADROE 7", "28004", "MADRID"}, {"A2", "MAYOR 3", "", "MADRID"}},
                       "DIRECCION C12");
    const std::string left = fill({{FillPart::Street, ""}, {FillPart::PostalCode, ""}});
    EXPECT_NE(left.find("1 DIRECCION: "), std::string::npos) << left;
    EXPECT_NE(left.find("y en la columna caben 12"), std::string::npos) << left;
    EXPECT_EQ(value("A1", "DIRECCION"), "EMBAJADROE 7");
    EXPECT_EQ(value("A2", "CP"), "28013");
    EXPECT_EQ(totals.leftAlone, 1U);
    EXPECT_EQ(totals.changed, 1U);
}

TEST_F(TableValidation, RefusesColumnsThatCannotServeBeforeAnythingChanges) {
    makeCustomers({{"A1", "CL", "MAYOR", "3", "", "", "MADRID"}});
    EXPECT_EQ(refusal({{FillPart::PostalCode, "NADA"}}), "la tabla no tiene la columna «NADA»");
    EXPECT_EQ(refusal({{FillPart::PostalCode, "VIA"}}),
              "de la columna «VIA» se lee via, y no se puede escribir codpostal en ella");
    EXPECT_EQ(refusal({{FillPart::Verdict, "INE"}}),
              "en la columna «INE» caben 5 caracteres, y veredicto necesita 21");
    EXPECT_EQ(refusal({{FillPart::IneCode, "INE"}, {FillPart::PostalCode, "INE"}}),
              "en la columna «INE» se escribirían dos partes: codpostal y cod_ine");
    EXPECT_EQ(
        refusal({{FillPart::Province, ""}}),
        "no hay ninguna columna de la que se lea «provincia»; diga en cuál se escribe: provincia=COLUMNA");
    EXPECT_EQ(value("A1", "CP"), "");
    EXPECT_FALSE(std::filesystem::exists(undoFile()));
}

TEST_F(TableValidation, RefusesADateAsTheColumnOfAText) {
    file = createTable(
        defineTable("CLIENTES", {"CODIGO C3", "VIA C40", "POBLACION C20", "ALTA D", "CP N5"}, {"CODIGO"}),
        {{"A1", "MAYOR 3", "MADRID", "20200101", ""}});
    EXPECT_EQ(refusal({{FillPart::Verdict, "ALTA"}}),
              "la columna «ALTA» no es de texto, y no se puede escribir veredicto en ella");
    EXPECT_EQ(fill({{FillPart::PostalCode, ""}}), ""); // a number will do for a code
    EXPECT_EQ(value("A1", "CP"), "28013");
}

TEST_F(TableValidation, RefusesATableThatCanOnlyBeRead) {
    makeCustomers({{"A1", "CL", "MAYOR", "3", "", "", "MADRID"}});
    std::filesystem::remove(folder / "CLIENTES.MDX"); // a missing production index
    EXPECT_NE(refusal(allHome).find("sólo se puede leer"), std::string::npos) << refusal(allHome);
    ambrel::TableValidation validation(file, options()); // which suffices for a dry run
    EXPECT_EQ(validation.run({}).addresses.rows, 1U);
    leaveUnchecked();
}

TEST_F(TableValidation, TriesARowThatAnotherStationHoldsAndThenListsIt) {
    makeCustomers(
        {{"A1", "CL", "MAYOR", "3", "", "", "MADRID"}, {"A2", "CL", "MAYOR", "5", "", "", "MADRID"}});
    dbase::Dataset station("DB", "CLIENTES", "CODIGO");
    station.open();
    station.edit();
    EXPECT_EQ(fill(allHome), "1 : otro usuario la está modificando\n");
    station.cancel();
    EXPECT_EQ(value("A1", "CP"), "");
    EXPECT_EQ(value("A2", "CP"), "28013");
    EXPECT_EQ(totals.changed, 1U);
    EXPECT_EQ(totals.addresses.rows, 2U);
    EXPECT_EQ(undo().putBack, 1U);
}

TEST_F(TableValidation, JudgesARowAgainThatWasChangedMeanwhile) {
    makeCustomers(
        {{"A1", "CL", "MAYOR", "3", "", "", "MADRID"}, {"A2", "CL", "MAYOR", "5", "", "", "MADRID"}});
    handlers.row = [&](const ValidatedRow& row) {
        if (row.number == 1) { // it has been judged, and is not posted yet
            edit("A1", "VIA", "EMBAJADORES");
        }
    };
    EXPECT_EQ(fill(allHome), "");
    EXPECT_EQ(value("A1", "VIA"), "EMBAJADORES");
    EXPECT_EQ(value("A1", "CP"), "28004");
    EXPECT_EQ(totals.changed, 2U);
    EXPECT_EQ(undo().putBack, 2U);
    EXPECT_EQ(value("A1", "VIA"), "EMBAJADORES") << "what the station has written";
    EXPECT_EQ(value("A1", "CP"), "");
}

TEST_F(TableValidation, RespectsTheCodePageOfTheTable) {
    addStreets({{"20", "CAÑADAVERDE", "CL", "28004"}});
    file = createTable(defineTable("CLIENTES", {"VIA C20", "CP C5", "POBLACION C20"}),
                       {{"CA¥ADAVEDRE 3", "", "MADRID"}}); // in code page 850 its second letter is an Ñ
    std::fstream(file, std::ios::binary | std::ios::in | std::ios::out).seekp(29).put('\x02'); // that page
    EXPECT_EQ(fill({{FillPart::Street, ""}, {FillPart::PostalCode, ""}}), "");
    std::ostringstream bytes;
    bytes << std::ifstream(file, std::ios::binary).rdbuf();
    EXPECT_NE(bytes.str().find("CA\xA5"
                               "ADAVERDE, 3"),
              std::string::npos);
    EXPECT_NE(bytes.str().find("28004MADRID"), std::string::npos);
}

TEST_F(TableValidation, ThatIsInterruptedKeepsWhatWasDone) {
    makeCustomers({{"A1", "CL", "MAYOR", "3", "", "", "MADRID"}});
    handlers.progress = [](const AddressFileProgress&) { return false; };
    EXPECT_EQ(fill(allHome), "");
    EXPECT_TRUE(totals.addresses.wasCancelled);
    EXPECT_EQ(totals.changed, 0U);
    EXPECT_EQ(value("A1", "CP"), "");
}

} // namespace
