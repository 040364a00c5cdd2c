// Adds the pieces of a page to its tree.
#include "report/PageBlock.h"

#include <algorithm>
#include <cmath>

#include "report/Element.h"
#include "report/SpanishNumbers.h"

namespace report {

namespace {

/// "12.3%" for a style sheet. What is more than nothing is seen.
std::string width(double share) {
    const auto tenths = static_cast<unsigned>(std::lround(std::clamp(share, 0.0, 1.0) * 1000));
    const unsigned seen = share > 0 ? std::max(tenths, 3U) : 0;
    return "width:" + std::to_string(seen / 10) + '.' + std::to_string(seen % 10) + '%';
}

/// For the eye alone: its figure stands beside it.
void addBar(pugi::xml_node place, double share, Tone tone) {
    pugi::xml_node track = addElement(place, "div", "track");
    track.append_attribute("aria-hidden").set_value("true");
    pugi::xml_node bar = addElement(track, "div", tone == Tone::Settled ? "bar settled" : "bar open");
    bar.append_attribute("style").set_value(width(share).c_str());
}

double shareOf(std::uint64_t part, std::uint64_t whole) {
    return whole == 0 ? 0 : static_cast<double>(part) / static_cast<double>(whole);
}

const char* styleOf(Voice voice) {
    return voice == Voice::Strong ? "strong" : voice == Voice::Quiet ? "quiet" : "plain";
}

const char* styleOf(ColumnKind kind) {
    return kind == ColumnKind::Number ? "number" : kind == ColumnKind::Share ? "share" : nullptr;
}

void addCell(pugi::xml_node row, const Column& column, const Cell& cell) {
    pugi::xml_node place = addElement(row, "td", cell.lines.empty() ? "none" : styleOf(column.kind));
    // Where there is no room for columns, the title stands before each value.
    place.append_attribute("data-title").set_value(column.title.c_str());
    if (cell.barShare) {
        addBar(place, *cell.barShare, cell.tone);
    }
    for (const Line& line : cell.lines) {
        addElement(place, cell.barShare ? "span" : "div", styleOf(line.voice), line.text);
    }
}

void addColumns(pugi::xml_node table, const std::vector<Column>& columns) {
    const pugi::xml_node group = addElement(table, "colgroup");
    for (const Column& column : columns) {
        pugi::xml_node one = addElement(group, "col");
        if (column.percent > 0) {
            one.append_attribute("style").set_value(
                ("width:" + std::to_string(column.percent) + '%').c_str());
        }
    }
    const pugi::xml_node titles = addElement(addElement(table, "thead"), "tr");
    for (const Column& column : columns) {
        pugi::xml_node title = addElement(titles, "th", styleOf(column.kind), column.title);
        title.append_attribute("scope").set_value("col");
    }
}

} // namespace

Cell Cell::share(std::uint64_t part, std::uint64_t whole, Tone tone) {
    Cell cell(percentage(part, whole));
    cell.barShare = shareOf(part, whole);
    cell.tone = tone;
    return cell;
}

void PageBlock::paragraph(std::string_view text) { addElement(place_, "p", nullptr, text); }

void PageBlock::notice(std::string_view title, std::string_view text) {
    const pugi::xml_node box = addElement(place_, "p", "notice");
    addElement(box, "strong", nullptr, title);
    addText(box, " ");
    addText(box, text);
}

void PageBlock::notices(std::string_view title, const std::vector<std::string>& texts) {
    const pugi::xml_node box = addElement(place_, "div", "notice");
    addElement(box, "strong", nullptr, title);
    const pugi::xml_node list = addElement(box, "ul");
    for (const std::string& text : texts) {
        addElement(list, "li", nullptr, text);
    }
}

// A <ul>, not a <dl>: checkers of HTML disagree on groups inside that.
void PageBlock::facts(const std::vector<Fact>& facts) {
    const pugi::xml_node list = addElement(place_, "ul", "facts");
    for (const Fact& fact : facts) {
        const pugi::xml_node one = addElement(list, "li");
        addElement(one, "div", "term", fact.name);
        addElement(one, "div", "value", fact.value);
    }
}

void PageBlock::keyFigures(const std::vector<KeyFigure>& figures) {
    const pugi::xml_node list = addElement(place_, "ul", "figures");
    for (const KeyFigure& figure : figures) {
        const pugi::xml_node one = addElement(list, "li");
        addElement(one, "div", "term", figure.label);
        addElement(one, "div", "value", figure.value);
        if (!figure.note.empty()) {
            addElement(one, "div", "quiet", figure.note);
        }
    }
}

void PageBlock::balance(std::uint64_t settled, std::uint64_t whole) {
    pugi::xml_node track = addElement(place_, "div", "balance");
    track.append_attribute("aria-hidden").set_value("true");
    const double share = shareOf(settled, whole);
    addElement(track, "div", "bar settled").append_attribute("style").set_value(width(share).c_str());
    addElement(track, "div", "bar open")
        .append_attribute("style")
        .set_value(width(whole == 0 ? 0 : 1 - share).c_str());
}

void PageBlock::subheading(std::string_view text) { addElement(place_, "h3", nullptr, text); }

void PageBlock::bars(const std::vector<Bar>& bars) {
    const pugi::xml_node list = addElement(place_, "ul", "bars");
    for (const Bar& bar : bars) {
        const pugi::xml_node one = addElement(list, "li");
        const pugi::xml_node label = addElement(one, "div", "label");
        addElement(label, "strong", nullptr, bar.label);
        if (!bar.name.empty()) {
            addText(label, " ");
            addElement(label, "code", nullptr, bar.name);
        }
        addBar(one, shareOf(bar.count, bar.scale), bar.tone);
        const pugi::xml_node figures = addElement(one, "div", "count");
        addElement(figures, "strong", nullptr, grouped(bar.count));
        addText(figures, " ");
        addElement(figures, "span", "quiet", percentage(bar.count, bar.whole));
        if (!bar.note.empty()) {
            addElement(one, "p", "note", bar.note);
        }
    }
}

void PageBlock::table(const Table& table) {
    // Several texts side by side have no room on a telephone; one with a few figures has.
    constexpr std::size_t mostInARow = 4;
    const bool needsRoom = std::ranges::count(table.columns, ColumnKind::Text, &Column::kind) > 1 ||
                           table.columns.size() > mostInARow;
    const pugi::xml_node place = addElement(place_, "table", needsRoom ? "cards" : nullptr);
    if (!table.caption.empty()) {
        addElement(place, "caption", nullptr, table.caption);
    }
    addColumns(place, table.columns);
    const pugi::xml_node body = addElement(place, "tbody");
    for (const std::vector<Cell>& cells : table.rows) {
        const pugi::xml_node row = addElement(body, "tr");
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            addCell(row, table.columns[i], cells.at(i));
        }
    }
}

PageBlock PageBlock::folded(std::string_view heading, std::string_view note) {
    const pugi::xml_node part = addElement(place_, "details");
    const pugi::xml_node summary = addElement(part, "summary");
    addElement(summary, "strong", nullptr, heading);
    addText(summary, " ");
    addElement(summary, "span", "quiet", note);
    return PageBlock(part);
}

} // namespace report
