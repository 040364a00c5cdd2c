// The page that an audit leaves.
#include "directory/audit/AuditReport.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "directory/audit/AuditPage.h"
#include "support/Tables.h"
#include "support/TemporaryFolder.h"

namespace ambrel::directory {
namespace {

class AuditReportTest : public testing::Test {
protected:
    AuditReportTest() {
        totals.streetRows = 1'500'000;
        totals.userKeys = 3;
        totals.highestUserKey = "99000002";
    }

    void add(FindingClass kind, const std::string& text, const std::string& proposal = {}) {
        report.add({.kind = kind,
                    .severity = usualSeverity(kind),
                    .table = AuditedTable::Streets,
                    .record = ++record,
                    .key = "28000001",
                    .text = text,
                    .proposal = proposal,
                    .province = "28"});
    }

    [[nodiscard]] std::string page() const { return auditPage(report, totals); }
    static bool holds(const std::string& page, std::string_view part) {
        return page.find(part) != std::string::npos;
    }

    TemporaryFolder folder;
    AuditReport report{{.tables = "/datos/<POSTAL>", .only = "", .provinceName = [](const std::string& code) {
                            return code == "05" ? test::ansi("ÁVILA") : "";
                        }}};
    AuditTotals totals;
    dbase::RecordNumber record = 0;
};

TEST_F(AuditReportTest, SaysWhatWasAuditedWithEveryTextEscaped) {
    add(FindingClass::SmallLetters, "«<b>Sol</b>» lleva minúsculas", "VIA=SOL & MAR");
    const std::string html = page();
    EXPECT_TRUE(holds(html, "1.500.000"));
    EXPECT_TRUE(holds(html, "/datos/&lt;POSTAL&gt;"));
    EXPECT_TRUE(holds(html, "«&lt;b&gt;Sol&lt;/b&gt;» lleva minúsculas"));
    EXPECT_TRUE(holds(html, "VIA=SOL &amp; MAR"));
    EXPECT_TRUE(holds(html, "la más alta, 99000002: quedan 999.997"));
    EXPECT_TRUE(holds(html, "MINUSCULAS"));
}

TEST_F(AuditReportTest, KeepsTheFirstHundredOfAClassAndCountsAll) {
    for (int i = 1; i <= 101; ++i) {
        add(FindingClass::Gap, "hueco " + std::to_string(i) + ".");
    }
    const std::string html = page();
    EXPECT_TRUE(holds(html, "hueco 100."));
    EXPECT_FALSE(holds(html, "hueco 101."));
    EXPECT_TRUE(holds(html, "los 100 primeros de 101"));
}

TEST_F(AuditReportTest, CountsAClassUnderTheSeverityOfEachOfItsFindings) {
    add(FindingClass::Overlap, "uno.");
    report.add({.kind = FindingClass::Overlap, .severity = Severity::Note, .text = "otro."});
    EXPECT_EQ(report.count(FindingClass::Overlap), 2U);
    EXPECT_EQ(report.count(Severity::Grave), 1U);
    EXPECT_EQ(report.count(Severity::Note, FindingClass::Overlap), 1U);
    const std::string html = page();
    EXPECT_TRUE(holds(html, ">Graves</h3>") && holds(html, ">Notas</h3>"));
    EXPECT_FALSE(holds(html, ">Avisos</h3>"));
}

TEST_F(AuditReportTest, HasProvincesWithTheirShares) {
    totals.provinces["05"] = {.municipalities = 4,
                              .withStreets = 1,
                              .streets = 200,
                              .withCode = 150,
                              .withRanges = 20,
                              .withFindings = 6};
    totals.provinces["28"] = {};
    const std::string html = page();
    EXPECT_TRUE(holds(html, "ÁVILA"));
    EXPECT_TRUE(holds(html, "Provincia 28"));
    EXPECT_TRUE(holds(html, "75\u00a0%") || holds(html, "75,0\u00a0%"));
    EXPECT_TRUE(holds(html, "10\u00a0%") || holds(html, "10,0\u00a0%"));
    EXPECT_TRUE(holds(html, "class=\"bar open\" style=\"width:3.0%\""));
    EXPECT_TRUE(holds(html, "Todas"));
}

TEST_F(AuditReportTest, FindingsByProvinceAddUpToThoseTold) {
    totals.provinces["28"] = {.municipalities = 1, .withStreets = 1};
    add(FindingClass::Overlap, "uno.");
    add(FindingClass::Gap, "una nota.");
    report.add({.kind = FindingClass::BadKey, .severity = Severity::Grave, .text = "en ninguna."});
    report.add(
        {.kind = FindingClass::BadKey, .severity = Severity::Grave, .text = "lejos.", .province = "05"});
    const std::string html = page();
    const auto figures =
        [&](const std::string& name) { // the last column of its row in the last table of provinces
            const std::size_t section = html.rfind("En cifras"), row = html.find(name, section);
            const std::string text = html.substr(row, html.find("</tr>", row) - row);
            const std::size_t begin = text.rfind("\">");
            return begin == std::string::npos ? text
                                              : text.substr(begin + 2, text.find('<', begin) - begin - 2);
        };
    EXPECT_EQ(figures("Todas"), "3");
    EXPECT_EQ(figures("Provincia 28"), "1");
    EXPECT_EQ(figures("ÁVILA"), "1");
    EXPECT_EQ(figures("Sin provincia"), "1");
}

TEST_F(AuditReportTest, SaysWhenNothingWasFound) { EXPECT_TRUE(holds(page(), "Sin hallazgos.")); }

TEST_F(AuditReportTest, IsWrittenToAFileThatIsThereWhole) {
    const std::string file = folder / "informe.html";
    AuditReport::requireWritable(file);
    report.write(file, totals);
    std::ifstream input(file);
    std::ostringstream text;
    text << input.rdbuf();
    EXPECT_EQ(text.str(), page());
    EXPECT_ANY_THROW(AuditReport::requireWritable(folder / "no/hay/informe.html"));
}

} // namespace
} // namespace ambrel::directory
