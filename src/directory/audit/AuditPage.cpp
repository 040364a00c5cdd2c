// Draws the report on an audit, section by section.
#include "directory/audit/AuditPage.h"

#include <algorithm>
#include <map>

#include "dbase/dbf/codepage.h"
#include "report/Page.h"
#include "report/ShownText.h"
#include "report/SpanishNumbers.h"

namespace ambrel::directory {

namespace {

using namespace report;

class Drawing {
public:
    Drawing(const AuditReport& found, const AuditTotals& totals)
        : found_(found), totals_(totals),
          all_(found.count(Severity::Grave) + found.count(Severity::Warning) + found.count(Severity::Note)),
          page_("Revisión de " + shownText(found.run().tables, 80), "Ambrel Códigos Postales",
                "Revisión del callejero") {}

    std::string draw() {
        drawHead();
        if (all_ > 0) {
            drawClasses();
        }
        drawProvinces();
        if (all_ > 0) {
            drawFindings();
        }
        page_.foot().paragraph(
            "Los totales cuentan todas las filas. Este informe es un solo fichero, que se abre sin red: se "
            "puede guardar, imprimir y enviar. La orden ambcp revisar escribe todos los hallazgos como CSV.");
        return page_.html();
    }

private:
    [[nodiscard]] std::string provinceName(const std::string& province) const {
        const std::string name =
            found_.run().provinceName ? found_.run().provinceName(province) : std::string();
        return name.empty() ? "Provincia " + shownText(province)
                            : shownText(dbase::CodePage::windows1252().toUtf8(name));
    }

    void drawHead() {
        PageBlock head = page_.head();
        head.facts(
            {{"Tablas", shownText(found_.run().tables)},
             {"Hallazgos", found_.run().only.empty() ? "de MUNICIPI y POSTAL" : "de " + found_.run().only},
             {"Fecha", dateAndTime(found_.run().begun)}});
        head.keyFigures(
            {{grouped(totals_.streetRows), "Filas de POSTAL",
              grouped(totals_.streets) + (totals_.streets == 1 ? " vía, " : " vías, ") +
                  grouped(totals_.hiddenStreets) +
                  (totals_.hiddenStreets == 1 ? " oculta por otra" : " ocultas por otra")},
             {grouped(totals_.municipalityRows), "Filas de MUNICIPI"},
             {grouped(found_.count(Severity::Grave)), "Graves", "alguna búsqueda falla"},
             {grouped(found_.count(Severity::Warning)), "Avisos", "conviene corregirlos"},
             {grouped(found_.count(Severity::Note)), "Notas", "normales en tablas sanas"},
             {grouped(totals_.userKeys), "Claves del bloque «99»",
              totals_.highestUserKey.empty() ? "ninguna en uso"
                                             : "la más alta, " + shownText(totals_.highestUserKey) +
                                                   ": quedan " + grouped(totals_.keysLeft())}});
        if (all_ == 0) {
            head.notice("Sin hallazgos.", "No se ha encontrado nada que corregir.");
        }
    }

    /// The classes found, those with the most findings first.
    [[nodiscard]] std::vector<FindingClass> classes() const {
        std::vector<FindingClass> some;
        for (std::size_t i = 0; i < findingClassCount; ++i) {
            if (found_.count(static_cast<FindingClass>(i)) > 0) {
                some.push_back(static_cast<FindingClass>(i));
            }
        }
        std::ranges::stable_sort(some, [&](FindingClass one, FindingClass other) {
            return found_.count(one) > found_.count(other);
        });
        return some;
    }

    void drawClasses() {
        PageBlock section =
            page_.section("Qué se ha encontrado", "Los porcentajes son de todos los hallazgos.");
        drawSeverity(section, "Graves", Severity::Grave, Tone::Open);
        drawSeverity(section, "Avisos", Severity::Warning, Tone::Open);
        drawSeverity(section, "Notas", Severity::Note, Tone::Settled);
    }

    void drawSeverity(PageBlock& section, const char* title, Severity severity, Tone tone) {
        std::vector<Bar> bars;
        for (const FindingClass kind : classes()) {
            if (const std::uint64_t count = found_.count(severity, kind); count > 0) {
                bars.push_back({std::string(classTitle(kind)), std::string(className(kind)),
                                std::string(classMeaning(kind)) + ' ' + std::string(classAdvice(kind)), count,
                                all_, all_, tone});
            }
        }
        std::ranges::stable_sort(bars,
                                 [](const Bar& one, const Bar& other) { return one.count > other.count; });
        for (Bar& bar : bars) {
            bar.scale = bars.front().count;
        }
        if (!bars.empty()) {
            section.subheading(title);
            section.bars(bars);
        }
    }

    /// The picture of the country: a line of bars for each province, and one for all of them.
    void drawProvinces() {
        // Findings may be of provinces that have no municipality, or of none.
        std::map<std::string, ProvinceCount> provinces = totals_.provinces;
        for (const auto& [code, count] : found_.countByProvince()) {
            provinces.try_emplace(code);
        }
        if (provinces.empty()) {
            return;
        }
        ProvinceCount all;
        Table picture{"",
                      {{"Provincia", ColumnKind::Text, 22},
                       {"Con código", ColumnKind::Share, 26},
                       {"Con tramos", ColumnKind::Share, 26},
                       {"Con hallazgos", ColumnKind::Share, 26}},
                      {}};
        Table figures{"",
                      {{"Provincia", ColumnKind::Text, 28},
                       {"Vías", ColumnKind::Number, 18},
                       {"Municipios", ColumnKind::Number, 18},
                       {"Sin vías", ColumnKind::Number, 18},
                       {"Hallazgos", ColumnKind::Number, 18}},
                      {}};
        const auto add = [&](const std::vector<Line>& name, const ProvinceCount& count,
                             std::uint64_t findings) {
            picture.rows.push_back({Cell(name), Cell::share(count.withCode, count.streets),
                                    Cell::share(count.withRanges, count.streets),
                                    Cell::share(count.withFindings, count.streets, Tone::Open)});
            figures.rows.push_back(
                {Cell(name), Cell(grouped(count.streets)), Cell(grouped(count.municipalities)),
                 Cell(grouped(count.municipalities - count.withStreets)), Cell(grouped(findings))});
        };
        for (const auto& [code, count] : provinces) {
            all += count;
        }
        add({{"Todas", Voice::Strong}}, all, found_.count(Severity::Grave) + found_.count(Severity::Warning));
        for (const auto& [code, count] : provinces) {
            const auto findings = found_.countByProvince().find(code);
            add({{code.empty() ? "Sin provincia" : provinceName(code)}}, count,
                findings == found_.countByProvince().end() ? 0 : findings->second);
        }
        PageBlock section = page_.section(
            "Por provincia",
            "De las vías de cada una, cuántas tienen en todas sus filas un código postal de MUNICIPI, "
            "cuántas tienen números que no son todos, y en cuántas hay algo grave o un aviso (rayado).");
        section.table(picture);
        section.folded("En cifras", "vías, municipios y hallazgos, sin las notas").table(figures);
    }

    void drawFindings() {
        PageBlock section =
            page_.section("Los hallazgos", "De cada clase, los " + grouped(AuditReport::mostShown) +
                                               " primeros. Se abren con un clic; en papel salen abiertos.");
        for (const FindingClass kind : classes()) {
            const std::vector<Finding>& first = found_.first(kind);
            const std::uint64_t all = found_.count(kind);
            PageBlock part =
                section.folded(classTitle(kind), all > first.size() ? "los " + grouped(first.size()) +
                                                                          " primeros de " + grouped(all)
                                                                    : grouped(all));
            part.paragraph(std::string(classMeaning(kind)) + ' ' + std::string(classAdvice(kind)));
            drawRows(part, first);
        }
    }

    static void drawRows(PageBlock& part, const std::vector<Finding>& findings) {
        Table table{"",
                    {{"Registro", ColumnKind::Number, 12},
                     {"Clave", ColumnKind::Text, 18},
                     {"Hallazgo", ColumnKind::Text, 45},
                     {"Propuesta", ColumnKind::Text, 25}},
                    {}};
        for (const Finding& one : findings) {
            const std::vector<Line> key{
                {shownText(one.key)},
                {std::string(tableName(one.table)) + ", " + severityText(one.severity), Voice::Quiet}};
            table.rows.push_back(
                {Cell(one.record == 0 ? "–" : grouped(one.record)), Cell(key), Cell(shownText(one.text)),
                 Cell({one.proposal.empty() ? Line{"–", Voice::Quiet} : Line{shownText(one.proposal)}})});
        }
        part.table(table);
    }

    static std::string severityText(Severity severity) {
        return severity == Severity::Grave ? "grave" : severity == Severity::Warning ? "aviso" : "nota";
    }

    const AuditReport& found_;
    const AuditTotals& totals_;
    std::uint64_t all_;
    Page page_;
};

} // namespace

std::string auditPage(const AuditReport& report, const AuditTotals& totals) {
    return Drawing(report, totals).draw();
}

} // namespace ambrel::directory
