// The page that a validation of many addresses leaves.
#include "address/ValidationReport.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "address/ValidatedRow.h"
#include "address/VerdictTexts.h"
#include "dbase/dbf/codepage.h"
#include "dbase/system/error.h"
#include "support/TemporaryFolder.h"

using namespace ambrel;

namespace {

std::string latin(std::string_view utf8) { return dbase::CodePage::windows1252().fromUtf8(utf8).value(); }

class ValidationReportTest : public testing::Test {
protected:
    void add(const GivenAddress& given, const JudgedAddress& judged) {
        ++rows_;
        report_.add({rows_, rows_ + 1, given, judged});
    }
    void add(const JudgedAddress& judged, int times = 1) {
        for (int i = 0; i < times; ++i) {
            add(GivenAddress{.line = "CALLE MAYOR 5"}, judged);
        }
    }

    /// The page as it is written to a file.
    [[nodiscard]] std::string page() const {
        const std::string path = folder_ / "informe.html";
        report_.write(path);
        std::ifstream file(path, std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        return std::move(text).str();
    }
    static bool holds(const std::string& text, std::string_view part) {
        return text.find(part) != std::string::npos;
    }
    static std::size_t times(const std::string& text, std::string_view part) {
        std::size_t found = 0;
        for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
            ++found;
        }
        return found;
    }

    TemporaryFolder folder_;
    ValidationReport report_{{.input = "clientes <1>.csv",
                              .tables = "/datos/POSTAL",
                              .threshold = 0.9,
                              .provinceName = [](const std::string& code) {
                                  return code == "28" ? latin("MADRID") : code == "05" ? latin("ÁVILA") : "";
                              }}};
    std::uint64_t rows_ = 0;
};

JudgedAddress judgedAs(Verdict verdict, std::string province = "28") {
    JudgedAddress judged;
    judged.verdict = verdict;
    judged.province = std::move(province);
    return judged;
}

} // namespace

TEST_F(ValidationReportTest, SaysWhatWasValidated) {
    add(judgedAs(Verdict::Correct));
    const std::string html = page();
    EXPECT_TRUE(
        holds(html, "<div class=\"term\">Fichero</div><div class=\"value\">clientes &lt;1&gt;.csv</div>"));
    EXPECT_TRUE(holds(html, "<div class=\"term\">Tablas</div><div class=\"value\">/datos/POSTAL</div>"));
    EXPECT_TRUE(holds(html, "<div class=\"term\">Confianza exigida</div><div class=\"value\">0,90</div>"));
    EXPECT_FALSE(holds(html, "Informe parcial"));
}

TEST_F(ValidationReportTest, CountsEveryVerdictAndTheSettledOnes) {
    add(judgedAs(Verdict::Correct), 1500);
    add(judgedAs(Verdict::Completed), 300);
    add(judgedAs(Verdict::Corrected), 200);
    add(judgedAs(Verdict::UnknownStreet), 400);
    add(judgedAs(Verdict::Empty), 100);
    const std::string html = page();
    EXPECT_TRUE(holds(html, "<div class=\"term\">Direcciones leídas</div><div class=\"value\">2.500</div>"));
    EXPECT_TRUE(holds(html, "<div class=\"term\">Resueltas</div><div class=\"value\">80,0\u00A0%</div>"));
    EXPECT_TRUE(holds(html, "<div class=\"term\">Por revisar</div><div class=\"value\">500</div>"));
    EXPECT_TRUE(holds(html, "<strong>Vía desconocida</strong> <code>VIA_DESCONOCIDA</code>"));
    EXPECT_TRUE(holds(html, "<strong>400</strong> <span class=\"quiet\">16,0\u00A0%</span>"));
    EXPECT_TRUE(holds(html, "Sin ningún caso: Fila rota, Municipio desconocido, Ambigua, Dudosa"));
}

TEST_F(ValidationReportTest, HasATitleAndAMeaningForEveryVerdictAndAdviceForThoseToReview) {
    for (std::size_t i = 0; i < verdictCount; ++i) {
        const auto verdict = static_cast<Verdict>(i);
        EXPECT_FALSE(verdictTitle(verdict).empty());
        EXPECT_FALSE(verdictMeaning(verdict).empty());
        EXPECT_EQ(verdictAdvice(verdict).empty(), isSettled(verdict)) << verdictTitle(verdict);
    }
}

TEST_F(ValidationReportTest, ListsTheProvincesThatNeedTheMostWorkFirst) {
    add(judgedAs(Verdict::Correct, "28"), 10);
    add(judgedAs(Verdict::Doubtful, "05"), 3);
    add(judgedAs(Verdict::Doubtful, "28"), 1);
    add(judgedAs(Verdict::Empty, ""), 2);
    add(judgedAs(Verdict::Doubtful, "99"), 1);
    const std::string html = page();
    const std::size_t avila = html.find("<div class=\"plain\">ÁVILA</div>"),
                      none = html.find("Sin provincia conocida"),
                      madrid = html.find("<div class=\"plain\">MADRID</div>"),
                      unnamed = html.find("Provincia 99");
    ASSERT_NE(unnamed, std::string::npos);
    EXPECT_LT(avila, none);
    EXPECT_LT(none, madrid);
    EXPECT_LT(madrid, unnamed);
    EXPECT_TRUE(holds(html, "90,9\u00A0%"));
}

TEST_F(ValidationReportTest, CountsTheCorrectionsOfSettledAddresses) {
    JudgedAddress corrected = judgedAs(Verdict::Corrected);
    corrected.changes = {{JudgedPart::Street, latin("PEÑON"), latin("PEÑÓN")},
                         {JudgedPart::PostalCode, "", "28009"}};
    add(corrected, 3);
    JudgedAddress doubtful = judgedAs(Verdict::Doubtful);
    doubtful.changes = {{JudgedPart::Municipality, "MADRIZ", "MADRID"}};
    add(doubtful);
    const std::string html = page();
    EXPECT_TRUE(holds(html, "PEÑON</div></td><td data-title=\"Ahora\"><div class=\"strong\">PEÑÓN</div></td>"
                            "<td class=\"number\" data-title=\"Veces\"><div class=\"plain\">3</div>"));
    EXPECT_TRUE(holds(html, "<strong>Código postal</strong></div>"));
    EXPECT_FALSE(holds(html, "<div class=\"strong\">MADRID</div>")) << "a proposal is no correction";
    EXPECT_FALSE(holds(html, "aproximadas"));
}

TEST_F(ValidationReportTest, SaysThatCountsAreNotExactWhenThereAreTooManyCorrections) {
    JudgedAddress corrected = judgedAs(Verdict::Corrected);
    for (int i = 0; i < 20'000; ++i) {
        corrected.changes = {{JudgedPart::Street, "UNA " + std::to_string(i), "OTRA"}};
        add(corrected);
        corrected.changes = {{JudgedPart::Street, "ALCLA", "ALCALA"}};
        add(corrected);
    }
    const std::string html = page();
    EXPECT_TRUE(holds(html, "<div class=\"strong\">ALCALA</div>"));
    EXPECT_TRUE(holds(html, "las veces son aproximadas"));
}

TEST_F(ValidationReportTest, KeepsTheFirstHundredFailuresOfEachKind) {
    add(judgedAs(Verdict::Doubtful), 250);
    add(judgedAs(Verdict::NoNumber), 2);
    const std::string html = page();
    EXPECT_TRUE(holds(html, "<strong>Dudosa</strong> <span class=\"quiet\">las 100 primeras de 250</span>"));
    EXPECT_TRUE(holds(html, "<strong>Falta el número</strong> <span class=\"quiet\">2</span>"));
    EXPECT_EQ(times(html, ">CALLE MAYOR 5<"), 102U);
    EXPECT_TRUE(holds(html, ">línea 101<"));
    EXPECT_FALSE(holds(html, ">línea 102<"));
    EXPECT_TRUE(holds(html, ">línea 252<"));
}

TEST_F(ValidationReportTest, ShowsAFailureWithWhatWasUnderstoodAndItsAlternatives) {
    JudgedAddress doubtful = judgedAs(Verdict::Doubtful);
    doubtful.confidence = 0.87;
    doubtful.type = "CL";
    doubtful.street = "ALCALA";
    doubtful.number = "100";
    doubtful.rest = latin("3º B");
    doubtful.postalCode = "28009";
    doubtful.municipality = "MADRID";
    doubtful.reason = latin("Se parece a una vía.");
    doubtful.changes = {{JudgedPart::Street, "ALCLA", "ALCALA"}};
    doubtful.alternatives = {{.points = 0.8,
                              .municipality = "ARENAS",
                              .province = "05",
                              .type = "AV",
                              .street = "ALCALDE",
                              .postalCodes = {"05001", "05002", "05003", "05004", "05005"}}};
    add(GivenAddress{.street = "C/ ALCLA",
                     .number = "100",
                     .rest = latin("3º B"),
                     .municipality = "MADRID",
                     .province = "28"},
        doubtful);
    const std::string html = page();
    EXPECT_TRUE(holds(html, ">C/ ALCLA 100, 3º B, MADRID (28)<"));
    EXPECT_TRUE(holds(html, ">CL ALCALA 100, 3º B<"));
    EXPECT_TRUE(holds(html, ">28009 MADRID (MADRID)<"));
    EXPECT_TRUE(holds(html, ">Se parece a una vía.<"));
    EXPECT_TRUE(holds(html, ">vía: ALCLA → ALCALA<"));
    EXPECT_TRUE(holds(html, ">confianza 0,87<"));
    EXPECT_TRUE(holds(html, ">AV ALCALDE<"));
    EXPECT_TRUE(holds(html, ">05001, 05002, 05003, 05004… ARENAS (ÁVILA)<"));
}

TEST_F(ValidationReportTest, ShowsALineAndColumnsThatWereBothGiven) {
    add(GivenAddress{.line = "MAYOR 5", .postalCode = "28013", .municipality = "MADRID"},
        judgedAs(Verdict::Doubtful));
    EXPECT_TRUE(holds(page(), ">MAYOR 5 · 28013 MADRID<"));
}

TEST_F(ValidationReportTest, ShowsThatNothingWasGiven) {
    add(GivenAddress{}, judgedAs(Verdict::Empty, ""));
    EXPECT_TRUE(holds(page(), "data-title=\"Venía\"><div class=\"quiet\">–</div>"));
}

TEST_F(ValidationReportTest, TakesHostileTextsForTexts) {
    JudgedAddress ambiguous = judgedAs(Verdict::Ambiguous, "<i>");
    ambiguous.street = "<img src=x onerror=alert(1)>";
    ambiguous.reason = "\x01\x81 & \"";
    add(GivenAddress{.line = "<script>alert(1)</script> & Hijos\r\n\x1B[31m"}, ambiguous);
    const std::string html = page();
    EXPECT_TRUE(holds(html, "&lt;script&gt;alert(1)&lt;/script&gt; &amp; Hijos↵\uFFFD[31m"));
    EXPECT_FALSE(holds(html, "<script"));
    EXPECT_FALSE(holds(html, "<img"));
    EXPECT_EQ(html.find_first_of("\x01\x1B"), std::string::npos);
    EXPECT_TRUE(holds(html, "Sin provincia conocida"));
}

TEST_F(ValidationReportTest, StaysSmallWhateverTheRowsHold) {
    JudgedAddress broken = judgedAs(Verdict::BrokenRow, "");
    broken.reason = std::string(2'000'000, 'x');
    JudgedAddress corrected = judgedAs(Verdict::Corrected);
    corrected.changes = {{JudgedPart::Street, std::string(100'000, 'y'), "Z"}};
    for (int i = 0; i < 200; ++i) {
        add(GivenAddress{.line = std::string(50'000, 'x')}, broken);
        add(corrected);
    }
    EXPECT_LT(page().size(), 200'000U);
}

TEST_F(ValidationReportTest, SaysWhenItIsPartial) {
    add(judgedAs(Verdict::Correct), 3);
    report_.setInterrupted();
    EXPECT_TRUE(holds(page(), "<strong>Informe parcial.</strong>"));
    EXPECT_TRUE(holds(page(), "3 direcciones"));
}

TEST_F(ValidationReportTest, SaysWhenThereWasNothing) {
    const std::string html = page();
    EXPECT_TRUE(holds(html, "No se ha leído ninguna fila."));
    EXPECT_FALSE(holds(html, "Veredictos"));
}

TEST_F(ValidationReportTest, CanBeWrittenAgainAfterMoreRows) {
    add(judgedAs(Verdict::Correct));
    EXPECT_TRUE(holds(page(), "<div class=\"value\">1</div>"));
    add(judgedAs(Verdict::Correct));
    EXPECT_TRUE(holds(page(), "<div class=\"value\">2</div>"));
}

TEST_F(ValidationReportTest, IsNotWrittenWhereThereIsNoFolder) {
    EXPECT_THROW(report_.write(folder_ / "no-hay/informe.html"), dbase::Error);
    EXPECT_THROW(ValidationReport::requireWritable(folder_ / "no-hay/informe.html"), dbase::Error);
    EXPECT_NO_THROW(ValidationReport::requireWritable(folder_ / "informe.html"));
    EXPECT_FALSE(std::filesystem::exists(folder_ / "informe.html"));
}
