// Draws the report on the load of an edition, section by section.
#include "directory/DirectoryPage.h"

#include <algorithm>
#include <iterator>
#include <map>

#include "directory/EditionWarnings.h"
#include "directory/LeadingZeros.h"
#include "loading/ansi_text.h"
#include "report/Page.h"
#include "report/ShownText.h"
#include "report/SpanishNumbers.h"

namespace ambrel::directory {

namespace {

using namespace report;

struct ListText {
    const char *title, *meaning;
};

/// In the order of ChangeList.
constexpr std::array<ListText, DirectoryReport::changeLists> listTexts{{
    {"Con otro nombre", "La calle es la misma, y su clave también: la oficina le ha cambiado el nombre o el "
                        "tipo."},
    {"Con otro código postal", "Quien tenga guardada una dirección de éstas tiene el código anterior: "
                               "valide los ficheros de clientes."},
    {"Con otros números", "La oficina ha visto números nuevos, o ha dejado de ver alguno."},
    {"Se van", "Vías y tramos que la oficina ya no tiene."},
    {"Vienen", "Vías y tramos nuevos."},
    {"Municipios y localidades", "Filas de MUNICIPI que vienen, se van o cambian."},
}};

/// In the order of ConflictKind.
constexpr std::array<ListText, DirectoryReport::conflictKinds> conflictTexts{{
    {"Cambiadas por alguien", "Filas de una edición anterior que alguien ha cambiado desde entonces, y que "
                              "la oficina también ha cambiado."},
    {"Borradas por alguien", "Filas de una edición anterior que alguien ha borrado, y que la oficina ha "
                             "cambiado."},
    {"Vías propias",
     "Vías añadidas o cambiadas a mano, o de otra importación, con otro código o menos números "
     "que los de la oficina. La fila de la oficina no se añade o, si ya estaba, se queda sin "
     "los números de la suya."},
    {"Municipios propios", "Filas de MUNICIPI que no vienen de una edición, o que alguien ha cambiado, y no "
                           "dicen lo mismo que la oficina."},
}};

std::string openingText(RangeOpening opening) {
    return opening == RangeOpening::None   ? "como vienen"
           : opening == RangeOpening::Ends ? "extremos abiertos"
                                           : "extremos y huecos abiertos";
}

/// With a capital letter and a full stop; each line shown by itself.
std::string sentence(const std::string& text) {
    constexpr std::string_view opening = "¿";
    std::string result;
    std::string_view rest = text;
    while (!rest.empty()) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        result += (result.empty() ? "" : "\n") + shownText(line, 2000);
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    }
    const std::size_t first = result.starts_with(opening) ? opening.size() : 0;
    if (first < result.size() && result[first] >= 'a' && result[first] <= 'z') {
        result[first] = static_cast<char>(result[first] - 'a' + 'A');
    }
    return result + '.';
}

std::uint64_t moved(const MunicipalitySummary& one) { return one.comes + one.goes + one.changes; }

class Drawing {
public:
    Drawing(const DirectoryReport& report, const LoadSummary& summary, const EditionNotes& notes)
        : report_(report), run_(report.run()), summary_(summary), notes_(notes),
          page_("Callejero oficial en " + shownText(run_.tables, 80), "Ambrel Códigos Postales",
                run_.isTrial ? "Simulación de una carga del callejero" : "Carga del callejero oficial") {
        for (const auto& [place, one] : summary.byMunicipality) {
            MunicipalitySummary& province = provinces_[place / 1000];
            province.comes += one.comes;
            province.goes += one.goes;
            province.changes += one.changes;
            province.conflicts += one.conflicts;
        }
    }

    std::string draw() {
        drawHead();
        drawProvinces();
        drawMunicipalities();
        drawChanges();
        drawConflicts();
        drawNotes();
        drawFoot();
        return page_.html();
    }

private:
    [[nodiscard]] std::string provinceName(unsigned number) const {
        const std::string code = digits(number, 2);
        const std::string name = run_.provinceName ? run_.provinceName(code) : std::string();
        return name.empty() ? "Provincia " + code : shownText(loading::utf8FromAnsi(name));
    }

    [[nodiscard]] std::string wantedProvinces() const {
        std::string text;
        for (const unsigned number : run_.provinces) {
            text += (text.empty() ? "" : ", ") + provinceName(number);
        }
        return text.empty() ? "todas" : text;
    }

    void drawHead() {
        std::string files;
        for (const std::string& file : run_.files) {
            files += (files.empty() ? "" : ", ") + shownText(file);
        }
        PageBlock head = page_.head();
        head.facts(
            {{"Tablas", shownText(run_.tables)},
             {"Edición", run_.edition.empty() ? "desconocida" : run_.edition},
             {"Edición anterior", summary_.previousEdition.empty() ? "ninguna" : summary_.previousEdition},
             {"Fecha", dateAndTime(run_.begun)},
             {"Ficheros", files},
             {"Provincias", wantedProvinces()},
             {"Rangos", openingText(run_.opening)},
             {"Fuente", "Instituto Nacional de Estadística"}});
        if (run_.isTrial) {
            head.notice("Simulación.", "No se ha cambiado nada: esto es lo que pasaría.");
        }
        drawWarnings(head);
        const ChangeCounts& streets = summary_.streets;
        head.keyFigures(
            {{grouped(streets.comes), "Vienen", "filas nuevas de POSTAL"},
             {grouped(streets.goes), "Se van"},
             {grouped(streets.changes), "Cambian",
              grouped(summary_.otherCode) + " de código, " + grouped(summary_.renamed) + " de nombre, " +
                  grouped(summary_.otherRange) + " de números"},
             {grouped(summary_.conflicts), "Conflictos", "queda lo que había"},
             {grouped(summary_.streetRows), "Filas de la edición", "vías y tramos"},
             {grouped(summary_.kept), "No tomadas", "o no enteras, por filas que son suyas"},
             {grouped(summary_.openedRows), "Con algún extremo abierto",
              percentage(summary_.openedRows, summary_.streetRows) + " de la edición"},
             {grouped(changedMunicipalities()), "Filas de MUNICIPI",
              grouped(summary_.municipalities.comes) + " vienen, " + grouped(summary_.municipalities.goes) +
                  " se van, " + grouped(summary_.municipalities.changes) + " cambian"}});
        if (provinces_.empty() && changedMunicipalities() == 0) {
            head.notice("Sin cambios.", "Las tablas ya dicen lo que dice esta edición.");
        }
    }

    void drawWarnings(PageBlock& head) {
        std::vector<std::string> sentences = run_.warnings;
        std::ranges::copy(warningsOf(notes_, summary_), std::back_inserter(sentences));
        for (std::string& one : sentences) {
            one = sentence(one);
        }
        if (!sentences.empty()) {
            head.notices(sentences.size() == 1 ? "Aviso." : "Avisos.", sentences);
        }
    }

    void drawProvinces() {
        if (provinces_.empty()) {
            return;
        }
        std::uint64_t all = 0, most = 1;
        for (const auto& [number, one] : provinces_) {
            all += moved(one);
            most = std::max(most, moved(one));
        }
        Table table{"",
                    {{"Provincia", ColumnKind::Text, 22},
                     {"Vienen", ColumnKind::Number, 12},
                     {"Se van", ColumnKind::Number, 12},
                     {"Cambian", ColumnKind::Number, 12},
                     {"Del total", ColumnKind::Share, 28},
                     {"Conflictos", ColumnKind::Number, 14}},
                    {}};
        for (const auto& [number, one] : provinces_) {
            Cell share = Cell::share(moved(one), all);
            share.barShare = static_cast<double>(moved(one)) / static_cast<double>(most);
            table.rows.push_back({Cell(provinceName(number)), Cell(grouped(one.comes)),
                                  Cell(grouped(one.goes)), Cell(grouped(one.changes)), share,
                                  Cell(grouped(one.conflicts))});
        }
        page_
            .section("Por provincia",
                     "La del municipio de cada vía, que puede no ser la de su código postal. Las "
                     "barras son tan largas como lo que viene, se va o cambia.")
            .table(table);
    }

    /// Those with the most first; the CSV of the trial has all of them.
    void drawMunicipalities() {
        if (provinces_.empty()) {
            return;
        }
        PageBlock section = page_.section(
            "Por municipio",
            "De cada provincia, los " + grouped(DirectoryReport::mostShown) +
                " municipios en los que más pasa. Se abren con un clic; en papel salen abiertos. "
                "Con --simular la orden los escribe todos, en CSV.");
        for (const auto& [number, province] : provinces_) {
            const auto first = summary_.byMunicipality.lower_bound(number * 1000),
                       last = summary_.byMunicipality.lower_bound((number + 1) * 1000);
            std::vector<const std::pair<const PlaceCode, MunicipalitySummary>*> some;
            for (auto one = first; one != last; ++one) {
                some.push_back(&*one);
            }
            std::ranges::stable_sort(some, [](const auto* one, const auto* other) {
                return moved(one->second) + one->second.conflicts >
                       moved(other->second) + other->second.conflicts;
            });
            const std::size_t all = some.size();
            some.resize(std::min(all, DirectoryReport::mostShown));
            PageBlock part =
                section.folded(provinceName(number), all > some.size() ? "los " + grouped(some.size()) +
                                                                             " primeros de " + grouped(all)
                                                                       : grouped(all));
            drawMunicipalityRows(part, some);
        }
    }

    static void
    drawMunicipalityRows(PageBlock& part,
                         const std::vector<const std::pair<const PlaceCode, MunicipalitySummary>*>& some) {
        Table table{"",
                    {{"Código", ColumnKind::Text, 12},
                     {"Municipio", ColumnKind::Text, 40},
                     {"Vienen", ColumnKind::Number, 12},
                     {"Se van", ColumnKind::Number, 12},
                     {"Cambian", ColumnKind::Number, 12},
                     {"Conflictos", ColumnKind::Number, 12}},
                    {}};
        for (const auto* const one : some) {
            const auto& [place, counts] = *one;
            table.rows.push_back({Cell(digits(place, 5)), Cell(shownText(loading::utf8FromAnsi(counts.name))),
                                  Cell(grouped(counts.comes)), Cell(grouped(counts.goes)),
                                  Cell(grouped(counts.changes)), Cell(grouped(counts.conflicts))});
        }
        part.table(table);
    }

    [[nodiscard]] std::uint64_t changedMunicipalities() const {
        const ChangeCounts& counts = summary_.municipalities;
        return counts.comes + counts.goes + counts.changes;
    }

    [[nodiscard]] std::uint64_t count(ChangeList list) const {
        switch (list) {
        case ChangeList::Renamed:
            return summary_.renamed;
        case ChangeList::OtherCode:
            return summary_.otherCode;
        case ChangeList::OtherRange:
            return summary_.otherRange;
        case ChangeList::Gone:
            return summary_.streets.goes;
        case ChangeList::New:
            return summary_.streets.comes;
        case ChangeList::Municipalities:
            break;
        }
        return changedMunicipalities();
    }

    static std::string shownOf(std::uint64_t shown, std::uint64_t all) {
        return all > shown ? "las " + grouped(shown) + " primeras de " + grouped(all) : grouped(all);
    }

    static Cell textOrNothing(const std::string& text) {
        return Cell({text.empty() ? Line{"–", Voice::Quiet} : Line{shownText(text)}});
    }

    void drawChanges() {
        if (provinces_.empty() && changedMunicipalities() == 0) {
            return;
        }
        PageBlock section = page_.section(
            "Qué cambia", "De cada clase, las primeras " + grouped(DirectoryReport::mostShown) +
                              " filas. Las claves de las que cambian siguen siendo las mismas.");
        for (std::size_t i = 0; i < DirectoryReport::changeLists; ++i) {
            const auto list = static_cast<ChangeList>(i);
            const std::vector<ReportedChange>& rows = report_.first(list);
            if (rows.empty()) {
                continue;
            }
            PageBlock part =
                section.folded(listTexts.at(i).title,
                               shownOf(rows.size(), std::max<std::uint64_t>(count(list), rows.size())));
            part.paragraph(listTexts.at(i).meaning);
            Table table{"",
                        {{"Clave", ColumnKind::Text, 24},
                         {"Antes", ColumnKind::Text, 38},
                         {"Ahora", ColumnKind::Text, 38}},
                        {}};
            for (const ReportedChange& one : rows) {
                table.rows.push_back({Cell({{one.key.empty() ? "MUNICIPI" : one.key},
                                            {shownText(one.municipality), Voice::Quiet}}),
                                      textOrNothing(one.before), textOrNothing(one.after)});
            }
            part.table(table);
        }
    }

    void drawConflicts() {
        if (summary_.conflicts == 0) {
            return;
        }
        PageBlock section = page_.section(
            "Conflictos", "Lo que es de usted no se toca: de cada uno queda lo que había, y aquí está lo que "
                          "dice la oficina. De cada clase, los " +
                              grouped(DirectoryReport::mostShown) + " primeros; con --conflictos, todos.");
        for (std::size_t i = 0; i < DirectoryReport::conflictKinds; ++i) {
            const auto kind = static_cast<ConflictKind>(i);
            const std::vector<ReportedConflict>& rows = report_.first(kind);
            if (rows.empty()) {
                continue;
            }
            PageBlock part =
                section.folded(conflictTexts.at(i).title, shownOf(rows.size(), report_.count(kind)));
            part.paragraph(conflictTexts.at(i).meaning);
            Table table{"",
                        {{"Clave", ColumnKind::Text, 20},
                         {"Vía", ColumnKind::Text, 24},
                         {"Queda", ColumnKind::Text, 28},
                         {"La oficina", ColumnKind::Text, 28}},
                        {}};
            for (const ReportedConflict& one : rows) {
                table.rows.push_back(
                    {textOrNothing(one.key),
                     Cell({{shownText(one.name)}, {shownText(one.municipality), Voice::Quiet}}),
                     textOrNothing(one.ours), textOrNothing(one.official)});
            }
            part.table(table);
        }
    }

    void drawNotes() {
        PageBlock section = page_.section(
            "Qué se ha entendido", "Cómo se han leído los ficheros, y lo que no se ha tomado de ellos.");
        Table table{"", {{"Qué", ColumnKind::Text, 80}, {"Cuántos", ColumnKind::Number, 20}}, {}};
        const auto row = [&](const char* what, std::uint64_t count) {
            if (count > 0) {
                table.rows.push_back({Cell(what), Cell(grouped(count))});
            }
        };
        row("Filas con algún extremo abierto más allá de los números vistos", summary_.openedRows);
        row("Filas con un nombre abreviado, que no cabía", summary_.shortenedNames);
        row("Tramos de seudovías, que no se cargan si no se da su fichero", notes_.ofPseudoStreets);
        row("Tramos de municipios que ningún fichero nombra, y no se cargan", notes_.withoutMunicipality);
        row("Vías que no están en el fichero de vías, con el nombre corto de sus tramos",
            notes_.streetsWithoutName);
        section.table(table);
        drawUnknownTypes(section);
        drawBadLines(section);
    }

    void drawUnknownTypes(PageBlock& section) {
        if (summary_.unknownTypes.empty()) {
            return;
        }
        std::vector<Bar> bars;
        for (const auto& [type, count] : summary_.unknownTypes) {
            bars.push_back({shownText(loading::utf8FromAnsi(type)), "", "", count, summary_.streetRows, count,
                            Tone::Open});
        }
        std::ranges::stable_sort(bars,
                                 [](const Bar& one, const Bar& other) { return one.count > other.count; });
        for (Bar& bar : bars) {
            bar.scale = bars.front().count;
        }
        section.subheading("Tipos de vía que no se conocen");
        section.paragraph("Quedan en blanco. Los porcentajes son de las filas de la edición.");
        section.bars(bars);
    }

    void drawBadLines(PageBlock& section) {
        if (notes_.badLines.empty()) {
            return;
        }
        section.subheading("Líneas que no se entienden");
        for (std::string_view text : notes_.badLines) {
            Table table{"", {{"Línea", ColumnKind::Text, 100}}, {}};
            while (!text.empty()) {
                const std::string_view line = text.substr(0, text.find('\n'));
                table.rows.push_back({Cell(shownText(line))});
                text.remove_prefix(std::min(line.size() + 1, text.size()));
            }
            section.table(table);
        }
    }

    void drawFoot() {
        PageBlock foot = page_.foot();
        foot.paragraph(
            "Fuente: Instituto Nacional de Estadística (www.ine.es), callejero del censo electoral" +
            (run_.edition.empty() ? std::string() : ", edición de " + run_.edition) +
            ", con licencia Creative Commons Atribución 4.0 (CC BY 4.0). Ambrel Códigos Postales lo ha "
            "transformado: une tramos, abre sus extremos y abrevia nombres. La oficina no responde de "
            "ello.");
        foot.paragraph(
            "Este informe es un solo fichero, que se abre sin red: se puede guardar, imprimir y enviar.");
    }

    const DirectoryReport& report_;
    const DirectoryRun& run_;
    const LoadSummary& summary_;
    const EditionNotes& notes_;
    std::map<unsigned, MunicipalitySummary> provinces_; // by number
    Page page_;
};

} // namespace

std::string directoryPage(const DirectoryReport& report, const LoadSummary& summary,
                          const EditionNotes& notes) {
    return Drawing(report, summary, notes).draw();
}

} // namespace ambrel::directory
