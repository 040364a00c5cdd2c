// The pieces of a page: key figures, bars, tables, sections that fold.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

namespace report {

/// What something means to the reader. Never shown by colour alone: bars also differ in their pattern.
enum class Tone { Settled, Open };

/// Such as «Fichero» «clientes.csv».
struct Fact {
    std::string name, value;
};

/// A number that stands out, such as «1.234» «direcciones».
struct KeyFigure {
    std::string value, label;
    std::string note = {};
};

struct Bar {
    std::string label;
    std::string name; // as files have it, such as "CORREGIDA"; may be empty
    std::string note; // a sentence below; may be empty
    std::uint64_t count;
    std::uint64_t whole; // of which the percentage is
    std::uint64_t scale; // as long as the whole bar
    Tone tone;
};

enum class Voice { Plain, Strong, Quiet };

struct Line {
    std::string text;
    Voice voice = Voice::Plain;
};

/// A cell of a table: lines one below the other; with a share, a bar as well.
struct Cell {
    Cell(std::string text) : lines{{std::move(text)}} {}
    Cell(std::vector<Line> several) : lines(std::move(several)) {}
    /// «12,3 %» and a bar of that length.
    [[nodiscard]] static Cell share(std::uint64_t part, std::uint64_t whole, Tone tone = Tone::Settled);

    std::vector<Line> lines;
    std::optional<double> barShare = {}; // 0 to 1
    Tone tone = Tone::Settled;           // of the bar
};

enum class ColumnKind { Text, Number, Share };

struct Column {
    std::string title;
    ColumnKind kind = ColumnKind::Text;
    unsigned percent = 0; // of the table's width; 0: as its content needs
};

struct Table {
    std::string caption; // may be empty
    std::vector<Column> columns;
    std::vector<std::vector<Cell>> rows; // as many cells each as there are columns
};

/// A place in a page to which pieces are added, one below the other.
class PageBlock {
public:
    explicit PageBlock(pugi::xml_node place) : place_(place) {}

    void paragraph(std::string_view text);
    /// A paragraph that nobody should miss.
    void notice(std::string_view title, std::string_view text);
    /// Several of them as a list; one may have several lines.
    void notices(std::string_view title, const std::vector<std::string>& texts);
    void facts(const std::vector<Fact>& facts);
    void keyFigures(const std::vector<KeyFigure>& figures);
    /// One bar of the whole width: the settled share solid, the rest hatched.
    void balance(std::uint64_t settled, std::uint64_t whole);
    void subheading(std::string_view text);
    void bars(const std::vector<Bar>& bars);
    void table(const Table& table);
    /// A part that is folded on the screen until it is opened, and open on paper. `note`: beside its heading.
    [[nodiscard]] PageBlock folded(std::string_view heading, std::string_view note);

private:
    pugi::xml_node place_;
};

} // namespace report
