// Auditing tables with more findings than are listed, and interrupting it.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QTableView>
#include <QTest>
#include <filesystem>
#include <span>
#include <string>

#include "dbase/dbf/codec.h"
#include "dbase/system/databases.h"
#include "dbase/table/bulk_loader.h"
#include "host/AuditWindowTest.h"
#include "support/ScriptedMessages.h"

namespace {

using host_tests::AuditWindowTest;

class ManyFindings : public AuditWindowTest {
protected:
    static constexpr int rows = 120'000;

    ManyFindings() {
        dbase::BulkLoader loader(*dbase::findTableFile(folder.path(), "POSTAL"),
                                 dbase::BulkLoader::Mode::Append);
        const dbase::Schema& schema = loader.schema();
        std::string record(schema.recordLength, ' ');
        const auto set = [&](const char* column, const std::string& value) {
            const dbase::Column& one = schema.columns.at(schema.find(column).value());
            const std::string aligned(one.type == dbase::ColumnType::Numeric ? one.width - value.size() : 0,
                                      ' ');
            dbase::encodeText(std::span(record).subspan(one.offset, one.width), aligned + value);
        };
        set("PROVINCIA", "28");
        set("CAPITAL", "0");
        set("TIPO_VIA", "CL");
        set("CODPOSTAL", "28005");
        set("IMPAR_INI", "1");
        set("IMPAR_FIN", "99");
        for (int row = 0; row < rows; ++row) {
            set("CODIGO1", std::to_string(28'100'000 + row));
            set("VIA", "calle " + std::to_string(row));
            loader.add(record);
        }
        loader.finish();
    }
    void startAndSeeProgress() {
        open();
        choose("MIRevisarTablas");
        ASSERT_TRUE(QTest::qWaitFor([] { return says("LProgreso").contains("faltan"); }, 20000))
            << says("LProgreso").toStdString();
    }
};

TEST_F(ManyFindings, AreAllCountedAndAHundredThousandOfAClassListed) {
    audit();
    EXPECT_EQ(part<QTableView>("GHallazgos").model()->rowCount(), 100'003);
    EXPECT_TRUE(rowsOf("GClases", {0, 1}).contains("Nombre en minúsculas|120.000"));
    EXPECT_TRUE(says("LGuardados").startsWith("Se enseñan los 100.000 primeros"))
        << says("LGuardados").toStdString();
    EXPECT_TRUE(part<QLabel>("LGuardados").isVisible());
    chooseClass("Nombre en minúsculas");
    auto& list = part<QTableView>("GHallazgos");
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(list.currentIndex().row(), 99'999);
}

TEST_F(ManyFindings, CanBeInterrupted) {
    startAndSeeProgress();
    clickIn("BBInterrumpir");
    ASSERT_TRUE(waitForTheEnd());
    EXPECT_EQ(says("LProgreso"), "Interrumpido: los hallazgos no son todos.");
    EXPECT_FALSE(mayClick("BBInforme")) << "a report would pass for whole";
    EXPECT_FALSE(mayClick("BBReparar"));
}

TEST_F(ManyFindings, EscapeInterruptsFirstAndClosesThen) {
    startAndSeeProgress();
    QTest::keyClick(dialog(), Qt::Key_Escape);
    ASSERT_TRUE(waitForTheEnd());
    QTest::keyClick(dialog(), Qt::Key_Escape);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(dialog());
}

TEST_F(ManyFindings, AnInterruptedDryRunChangesNothing) {
    audit();
    chooseClass("Nombre en minúsculas");
    const auto shown = ambrel::test::boxesDuring([&] {
        clickIn("BBReparar");
        clickIn("BBInterrumpir");
        ASSERT_TRUE(waitForTheEnd());
    });
    ASSERT_EQ(shown.size(), 1U);
    EXPECT_EQ(shown.front().text, "Interrumpido. Cambiado: 0 filas.");
    EXPECT_FALSE(std::filesystem::exists(file("revisar.deshacer")));
}

TEST_F(ManyFindings, TheProgramEndsInTheMiddleOfAnAudit) {
    startAndSeeProgress();
    close();
    EXPECT_FALSE(dialog());
}

} // namespace
