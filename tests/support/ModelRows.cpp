// The table MODELO, its model, and random rows and keys.
#include "support/ModelRows.h"

#include "support/Tables.h"

namespace ambrel::test {
namespace {

constexpr std::size_t codeWidth = 2, nameWidth = 98;

std::string padded(std::string text, std::size_t width) {
    text.resize(width, ' ');
    return text;
}

std::string codeOf(const ModelRow& row) { return padded(row.code, codeWidth); }
std::string nameOf(const ModelRow& row) { return padded(row.name, nameWidth); }
std::string wideOf(const ModelRow& row) { return codeOf(row) + nameOf(row); }
/// A blank number counts as 0.
std::string numberOf(const ModelRow& row) { return std::to_string(500000 + row.number.value_or(0)); }
/// A blank day comes last.
std::string dayOf(const ModelRow& row) { return row.day.empty() ? "99999999" : row.day; }

bool isKindA(const ModelRow& row) { return row.kind == "A"; }
bool isLive(const ModelRow& row) { return !row.isDeleted; }

} // namespace

dbase::TableDefinition modelDefinition(const ModelShape& shape) {
    dbase::TableDefinition definition =
        defineTable("MODELO", {"CODE C2", "NAME C98", "NUM N6", "DAY D", "KIND C1"},
                    {"CODE", "NAME", "WIDE=CODE+NAME", "NUM", "DAY"});
    const auto add = [&](dbase::TagDefinition tag) { definition.tags.push_back(std::move(tag)); };
    add({.name = "NAMEDES", .expression = "NAME", .descending = true});
    add({.name = "NUMDES", .expression = "NUM", .descending = true});
    add({.name = "ONCE", .expression = "CODE", .unique = true});
    if (shape.hasConditions) {
        add({.name = "HALF", .expression = "NAME", .condition = "KIND=\"A\""});
        add({.name = "LIVE", .expression = "CODE+NAME", .condition = ".NOT. DELETED()"});
        add({.name = "ONLYLIVE", .expression = "CODE", .condition = ".NOT. DELETED()", .unique = true});
    }
    return definition;
}

std::vector<ModelTag> modelTags(const ModelShape& shape) {
    std::vector<ModelTag> tags{{.name = "", .key = [](const ModelRow&) { return std::string(); }},
                               {.name = "CODE", .key = codeOf},
                               {.name = "NAME", .key = nameOf},
                               {.name = "WIDE", .key = wideOf},
                               {.name = "NUM", .key = numberOf},
                               {.name = "DAY", .key = dayOf},
                               {.name = "NAMEDES", .key = nameOf, .isDescending = true},
                               {.name = "NUMDES", .key = numberOf, .isDescending = true},
                               {.name = "ONCE", .key = codeOf, .isUnique = true}};
    if (shape.hasConditions) {
        tags.push_back({.name = "HALF", .key = nameOf, .condition = isKindA});
        tags.push_back({.name = "LIVE", .key = wideOf, .condition = isLive});
        tags.push_back({.name = "ONLYLIVE", .key = codeOf, .isUnique = true, .condition = isLive});
    }
    return tags;
}

std::vector<std::string> textsOf(const ModelRow& row) {
    return {row.code, row.name, row.number ? std::to_string(*row.number) : "", row.day, row.kind};
}

void setFields(dbase::Dataset& table, const ModelRow& row) {
    const std::vector<std::string> texts = textsOf(row);
    const std::vector<dbase::Field*> fields = table.fields();
    for (std::size_t i = 0; i < texts.size(); ++i) {
        fields[i]->setText(texts[i]);
    }
}

const std::vector<NamedFilter>& modelFilters() {
    static const std::vector<NamedFilter> all{
        {"", {}},
        {"NUM>=0", [](const ModelRow& row) { return row.number.value_or(0) >= 0; }},
        {"KIND='A' OR KIND='C'", [](const ModelRow& row) { return row.kind == "A" || row.kind == "C"; }},
        {"NOT KIND='B' AND NUM<100",
         [](const ModelRow& row) { return row.kind != "B" && row.number.value_or(0) < 100; }},
        {"NUM=201", [](const ModelRow& row) { return row.number == 201; }}}; // hides everything
    return all;
}

ModelRow Chance::row(const ModelShape& shape) {
    ModelRow row;
    const unsigned code = below(shape.codes);
    row.code = {static_cast<char>('A' + code / 26), static_cast<char>('A' + code % 26)};
    const std::size_t size = oneIn(20) ? nameWidth : 1 + below(6);
    while (row.name.size() < size) {
        const unsigned letter = below(shape.nameLetters);
        row.name += letter == 0 ? '\xD1' : static_cast<char>('A' + letter); // a Ñ, whose byte is negative
    }
    if (!oneIn(10)) {
        row.number = static_cast<int>(below(401)) - 200;
    }
    if (!oneIn(10)) {
        row.day = std::to_string(20200101 + below(4) * 10000 + below(12) * 100 + below(28));
    }
    row.kind = std::string(1, static_cast<char>('A' + below(3)));
    return row;
}

std::pair<dbase::Key, std::string> Chance::key(const ModelTag& tag, const ModelRow& row) {
    const std::string& name = tag.name;
    if (name == "NUM" || name == "NUMDES") {
        return {{{"NUM", row.number.value_or(0)}}, numberOf(row)};
    }
    if (name == "DAY") {
        return {{{"DAY", row.day}}, dayOf(row)};
    }
    if (name == "NAME" || name == "NAMEDES" || name == "HALF") {
        return {{{"NAME", row.name}, {"OTHER", 5}}, nameOf(row)}; // a field outside the tag is ignored
    }
    if ((name == "WIDE" || name == "LIVE") && oneIn(2)) {
        return {{{"CODE", row.code}, {"NAME", row.name}}, wideOf(row)};
    }
    return {{{"CODE", row.code}}, codeOf(row)};
}

} // namespace ambrel::test
