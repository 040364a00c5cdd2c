#include "report/Page.h"

#include <regex>

#include <gtest/gtest.h>

#include "report/ShownText.h"
#include "report/Style.h"

using namespace report;

namespace {

bool holds(const std::string& text, std::string_view part) { return text.find(part) != std::string::npos; }

Page somePage() { return Page("Informe", "Ambrel", "Validación"); }

} // namespace

TEST(Page, IsAWholeDocumentInSpanish) {
    const std::string html = somePage().html();
    EXPECT_TRUE(html.starts_with("<!DOCTYPE html><html lang=\"es\"><head><meta charset=\"utf-8\""))
        << html.substr(0, 200);
    EXPECT_TRUE(holds(html, "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\""));
    EXPECT_TRUE(holds(html, "<title>Informe</title>"));
    EXPECT_TRUE(holds(html, "<h1>Validación</h1>"));
    EXPECT_TRUE(html.ends_with("</html>\n"));
}

TEST(Page, ClosesByThemselvesOnlyElementsThatHtmlClosesSo) {
    Page page = somePage();
    PageBlock section = page.section("Nada", "");
    section.bars({{"Vacía", "", "", 0, 0, 0, Tone::Open}});
    section.table({"", {{""}, {"B", ColumnKind::Share, 10}}, {{Cell(""), Cell::share(0, 0)}}});
    section.balance(0, 0);
    section.folded("", "").paragraph("");
    const std::string html = page.html();
    const std::regex closed("<([a-z0-9]+)[^<>]*/>");
    for (std::sregex_iterator at(html.begin(), html.end(), closed), end; at != end; ++at) {
        EXPECT_TRUE((*at)[1] == "meta" || (*at)[1] == "col") << (*at)[0];
    }
    EXPECT_TRUE(holds(html, "></div>"));
    EXPECT_FALSE(holds(html, "</meta>"));
    EXPECT_FALSE(holds(html, "</col>"));
}

TEST(Page, IsTheSameEachTimeItIsWritten) {
    Page page = somePage();
    page.section("Una", "").paragraph("");
    const std::string first = page.html();
    EXPECT_EQ(page.html(), first);
}

TEST(Page, TakesMarkupInATextForText) {
    Page page("</title><script>alert(0)</script>", "<b>", "</h1>");
    const std::string hostile = "<script>alert(1)</script> & Hijos \"'";
    PageBlock section = page.section(hostile, hostile);
    section.notice(hostile, hostile);
    section.facts({{hostile, hostile}});
    section.keyFigures({{hostile, hostile, hostile}});
    section.bars({{hostile, hostile, hostile, 1, 2, 2, Tone::Settled}});
    section.table({hostile, {{hostile}}, {{Cell(hostile)}}});
    section.folded(hostile, hostile).paragraph(hostile);
    const std::string html = page.html();
    EXPECT_FALSE(holds(html, "<script"));
    EXPECT_FALSE(holds(html, "<b>"));
    EXPECT_TRUE(holds(html, "&lt;script&gt;alert(1)&lt;/script&gt; &amp; Hijos"));
    EXPECT_TRUE(holds(html, "data-title=\"&lt;script>alert(1)&lt;/script> &amp; Hijos &quot;"));
}

TEST(Page, FetchesAndRunsNothing) {
    const std::string html = somePage().html();
    EXPECT_TRUE(holds(html, "default-src 'none'"));
    for (const char* fetching : {"<script", "<link", "<img", "@import", "url(", "http:", "https:"}) {
        EXPECT_FALSE(holds(html, fetching)) << fetching;
    }
}

TEST(Page, CarriesItsStyleSheetAsItStands) {
    EXPECT_EQ(styleSheet().find_first_of("<>&"), std::string_view::npos);
    EXPECT_TRUE(holds(somePage().html(), styleSheet()));
}

TEST(Page, GivesEachBarItsFiguresInText) {
    Page page = somePage();
    page.section("Veredictos", "").bars({{"Correcta", "CORRECTA", "Está.", 1234, 4936, 2468, Tone::Settled}});
    const std::string html = page.html();
    EXPECT_TRUE(holds(html, "<strong>1.234</strong> <span class=\"quiet\">25,0\u00A0%</span>"));
    EXPECT_TRUE(holds(html, "style=\"width:50.0%\""));
}

TEST(Page, ShowsABarForTheSmallestShareAndNoneForNothing) {
    Page page = somePage();
    page.section("Veredictos", "")
        .bars({{"Pocas", "", "", 1, 10'000'000, 10'000'000, Tone::Open},
               {"Ninguna", "", "", 0, 7, 7, Tone::Open}});
    const std::string html = page.html();
    EXPECT_TRUE(holds(html, "style=\"width:0.3%\""));
    EXPECT_TRUE(holds(html, "style=\"width:0.0%\""));
}
