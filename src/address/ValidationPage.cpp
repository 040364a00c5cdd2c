// Draws the report on many addresses, section by section.
#include "address/ValidationPage.h"

#include <algorithm>

#include "address/VerdictTexts.h"
#include "dbase/dbf/codepage.h"
#include "report/Page.h"
#include "report/ShownText.h"
#include "report/SpanishNumbers.h"

namespace ambrel {

namespace {

using namespace report;

constexpr std::size_t mostCorrections = 40;

std::string countedAddresses(std::uint64_t number) {
    return grouped(number) + (number == 1 ? " dirección" : " direcciones");
}

/// All names of parts begin with a letter of ASCII.
std::string capitalized(std::string text) {
    if (!text.empty() && text.front() >= 'a' && text.front() <= 'z') {
        text.front() = static_cast<char>(text.front() - 'a' + 'A');
    }
    return text;
}

class Drawing {
public:
    Drawing(const ValidationRun& run, const ValidationFindings& found)
        : run_(run), found_(found), settled_(found.settled()), open_(found.rows - settled_),
          page_("Validación de " + shownText(run.input, 80), "Ambrel Códigos Postales",
                "Validación de direcciones") {}

    std::string draw() {
        drawHead();
        if (found_.rows > 0) {
            drawVerdicts();
            drawProvinces();
            drawCorrections();
            drawFailures();
        }
        drawFoot();
        return page_.html();
    }

private:
    /// "MADRID", or something that says which one it is.
    [[nodiscard]] std::string provinceName(const std::string& province) const {
        if (province.empty()) {
            return "Sin provincia conocida";
        }
        const std::string name = run_.provinceName ? run_.provinceName(province) : std::string();
        return name.empty() ? "Provincia " + shownText(province)
                            : shownText(dbase::CodePage::windows1252().toUtf8(name));
    }

    /// "28009 MADRID (MADRID)".
    [[nodiscard]] std::string withProvince(const std::string& place, const std::string& province) const {
        return province.empty() ? place
                                : place + (place.empty() ? "" : " ") + '(' + provinceName(province) + ')';
    }

    void drawHead() {
        PageBlock head = page_.head();
        head.facts({{"Fichero", shownText(run_.input)},
                    {"Tablas", shownText(run_.tables)},
                    {"Fecha", dateAndTime(run_.begun)},
                    {"Confianza exigida", twoDecimals(run_.threshold)}});
        if (found_.wasInterrupted) {
            head.notice("Informe parcial.",
                        "La validación se interrumpió: sólo cuenta lo que se había leído hasta entonces, " +
                            countedAddresses(found_.rows) + ".");
        }
        if (found_.rows == 0) {
            head.notice("No hay direcciones.", "No se ha leído ninguna fila.");
            return;
        }
        const std::uint64_t changed = found_.count(Verdict::Corrected) + found_.count(Verdict::Completed);
        head.keyFigures({{grouped(found_.rows), "Direcciones leídas"},
                         {percentage(settled_, found_.rows), "Resueltas",
                          countedAddresses(settled_) + ", sin que nadie las mire"},
                         {grouped(changed), "De ellas, cambiadas", "corregidas o completadas con seguridad"},
                         {grouped(open_), "Por revisar", percentage(open_, found_.rows) + " de las leídas"}});
        head.balance(settled_, found_.rows);
    }

    void drawVerdicts() {
        PageBlock section =
            page_.section("Veredictos", "Cada dirección recibe uno, el primero que le corresponde. Los "
                                        "porcentajes son del total; las barras, de su grupo.");
        drawGroup(section, "Resueltas", Tone::Settled);
        drawGroup(section, "Por revisar", Tone::Open);
        std::string absent;
        for (const Verdict verdict : verdicts(false)) {
            (absent += absent.empty() ? "" : ", ") += verdictTitle(verdict);
        }
        if (!absent.empty()) {
            section.paragraph("Sin ningún caso: " + absent + ".");
        }
    }

    void drawGroup(PageBlock& section, const char* title, Tone tone) {
        std::vector<Bar> bars;
        for (const Verdict verdict : verdicts(true)) {
            if (isSettled(verdict) == (tone == Tone::Settled)) {
                const std::string_view advice = verdictAdvice(verdict);
                bars.push_back(
                    {std::string(verdictTitle(verdict)), std::string(verdictName(verdict)),
                     std::string(verdictMeaning(verdict)) + (advice.empty() ? "" : " ") + std::string(advice),
                     found_.count(verdict), found_.rows, tone == Tone::Settled ? settled_ : open_, tone});
            }
        }
        if (!bars.empty()) {
            section.subheading(title);
            section.bars(bars);
        }
    }

    /// Those that some address has, or none: the most frequent first, else in their order.
    [[nodiscard]] std::vector<Verdict> verdicts(bool areFound) const {
        std::vector<Verdict> some;
        for (std::size_t i = 0; i < verdictCount; ++i) {
            if ((found_.verdicts.at(i) > 0) == areFound) {
                some.push_back(static_cast<Verdict>(i));
            }
        }
        std::ranges::stable_sort(
            some, [&](Verdict one, Verdict other) { return found_.count(one) > found_.count(other); });
        return some;
    }

    void drawProvinces() {
        struct Province {
            std::string name;
            ProvinceCount count;
        };
        std::vector<Province> provinces;
        for (const auto& [code, count] : found_.provinces) {
            provinces.push_back({provinceName(code), count});
        }
        const auto open = [](const Province& one) { return one.count.rows - one.count.settled; };
        std::ranges::stable_sort(provinces, [&](const Province& one, const Province& other) {
            return open(one) != open(other) ? open(one) > open(other) : one.count.rows > other.count.rows;
        });
        Table table{"",
                    {{"Provincia", ColumnKind::Text, 30},
                     {"Direcciones", ColumnKind::Number, 14},
                     {"Resueltas", ColumnKind::Share, 42},
                     {"Por revisar", ColumnKind::Number, 14}},
                    {}};
        for (const Province& one : provinces) {
            table.rows.push_back({Cell(one.name), Cell(grouped(one.count.rows)),
                                  Cell::share(one.count.settled, one.count.rows), Cell(grouped(open(one)))});
        }
        page_.section("Por provincia", "Primero las que más direcciones tienen por revisar.").table(table);
    }

    void drawCorrections() {
        const std::vector<FrequentTexts::Counted> most = found_.corrections.most(mostCorrections);
        if (most.empty() && found_.additions.empty()) {
            return;
        }
        PageBlock section =
            page_.section("Correcciones más frecuentes",
                          "Lo que se ha cambiado o añadido en las direcciones resueltas. Un cambio que se "
                          "repite mucho merece una mirada en el fichero de origen.");
        if (!most.empty()) {
            Table table{"",
                        {{"Parte", ColumnKind::Text, 16},
                         {"Venía", ColumnKind::Text, 36},
                         {"Ahora", ColumnKind::Text, 36},
                         {"Veces", ColumnKind::Number, 12}},
                        {}};
            for (const FrequentTexts::Counted& one : most) {
                const Correction correction = correctionOf(one.text);
                table.rows.push_back({Cell({{capitalized(correction.part), Voice::Quiet}}),
                                      Cell(correction.from), Cell({{correction.to, Voice::Strong}}),
                                      Cell(grouped(one.times))});
            }
            section.table(table);
        }
        if (found_.corrections.mostMissed() > 0) {
            section.paragraph("Hay demasiadas correcciones distintas para contarlas todas: las veces son "
                              "aproximadas, y pueden ser hasta " +
                              grouped(found_.corrections.mostMissed()) + " más.");
        }
        drawAdditions(section);
    }

    void drawAdditions(PageBlock& section) {
        if (found_.additions.empty()) {
            return;
        }
        section.subheading("Lo que se ha añadido");
        std::vector<Bar> bars;
        for (const auto& [part, times] : found_.additions) {
            bars.push_back({capitalized(shownText(dbase::CodePage::windows1252().toUtf8(partName(part)))), "",
                            "", times, found_.rows, found_.rows, Tone::Settled});
        }
        std::ranges::stable_sort(bars,
                                 [](const Bar& one, const Bar& other) { return one.count > other.count; });
        section.bars(bars);
    }

    void drawFailures() {
        if (open_ == 0) {
            return;
        }
        PageBlock section = page_.section(
            "Por revisar", "De cada clase, las primeras " + grouped(ValidationFindings::mostFailures) +
                               " en el orden del fichero. Se abren con un clic; en papel salen abiertas.");
        for (const Verdict verdict : verdicts(true)) {
            const auto& failures = found_.failures.at(static_cast<std::size_t>(verdict));
            if (failures.empty()) {
                continue;
            }
            const std::uint64_t all = found_.count(verdict);
            PageBlock part = section.folded(verdictTitle(verdict), all > failures.size()
                                                                       ? "las " + grouped(failures.size()) +
                                                                             " primeras de " + grouped(all)
                                                                       : grouped(all));
            part.paragraph(std::string(verdictMeaning(verdict)) + ' ' + std::string(verdictAdvice(verdict)));
            drawRows(part, failures);
        }
    }

    void drawRows(PageBlock& part, const std::vector<FailedAddress>& failures) {
        Table table{"",
                    {{"Fila", ColumnKind::Number, 10},
                     {"Venía", ColumnKind::Text, 30},
                     {"Se entiende", ColumnKind::Text, 30},
                     {"Alternativas", ColumnKind::Text, 30}},
                    {}};
        for (const FailedAddress& one : failures) {
            std::vector<Line> place{{grouped(one.number)}}, understood, alternatives;
            if (one.line > 0) {
                place.push_back({"línea " + grouped(one.line), Voice::Quiet});
            }
            for (const std::string& text : {one.street, withProvince(one.place, one.province)}) {
                if (!text.empty()) {
                    understood.push_back({text});
                }
            }
            for (const std::string& text : one.remarks) {
                understood.push_back({text, Voice::Quiet});
            }
            for (const FailedAddress::Alternative& alternative : one.alternatives) {
                const std::string where = withProvince(alternative.place, alternative.province);
                if (alternative.street.empty()) { // a municipality
                    alternatives.push_back({where});
                } else {
                    alternatives.push_back({alternative.street});
                    alternatives.push_back({where, Voice::Quiet});
                }
            }
            const Line given = one.given.empty() ? Line{"–", Voice::Quiet} : Line{one.given};
            table.rows.push_back({Cell(place), Cell({given}), Cell(understood), Cell(alternatives)});
        }
        part.table(table);
    }

    void drawFoot() {
        PageBlock foot = page_.foot();
        foot.paragraph("Los totales cuentan todas las filas leídas. Este informe es un solo fichero, que se "
                       "abre sin red: se puede guardar, imprimir y enviar. Lleva direcciones: trátelo como "
                       "los datos de los que sale.");
        foot.paragraph(
            "La orden ambcp validar, con --solo-fallos, escribe en un fichero todas las filas por revisar.");
    }

    const ValidationRun& run_;
    const ValidationFindings& found_;
    std::uint64_t settled_, open_;
    Page page_;
};

} // namespace

std::string validationPage(const ValidationRun& run, const ValidationFindings& findings) {
    return Drawing(run, findings).draw();
}

} // namespace ambrel
