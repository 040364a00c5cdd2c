// Converts texts of the command line into search keys.
#include "tools/search_key.h"

#include <algorithm>

#include "dbase/dbf/codec.h"
#include "dbase/mdx/index_file.h"
#include "dbase/system/quoted.h"
#include "dbase/table/table.h"
#include "loading/failure.h"
#include "loading/row_conversion.h"
#include "tools/table_folder.h"

namespace ambcp {

namespace {

const dbase::Tag& activeTag(dbase::Dataset& table) {
    const dbase::Tag* tag = table.openTable().findTag(table.tag());
    if (tag == nullptr || !tag->isUnderstood()) {
        throw loading::Failure("en el tag " + table.tag() + " no se puede buscar" +
                               (tag == nullptr ? std::string() : ": " + tag->problem));
    }
    return *tag;
}

/// The column that a key begins with although it is more than a sum of columns, such as UPPER(NOMBRE).
const dbase::Column& leadingColumn(const dbase::Schema& schema, const dbase::Tag& tag) {
    for (std::size_t i = 0; i < schema.columns.size(); ++i) {
        std::vector<bool> given(schema.columns.size());
        given[i] = true;
        if (tag.key->coveredWidth(given) > 0) {
            return schema.columns[i];
        }
    }
    throw loading::Failure("la clave del tag " + tag.definition.name + ", " + tag.definition.expression +
                           ", no empieza por una columna");
}

} // namespace

void SearchKey::add(dbase::Dataset& table, const std::string& field, const std::string& text) {
    const dbase::Schema& schema = table.schema();
    const std::optional<std::size_t> position = schema.find(field);
    if (!position) {
        throw loading::Failure("la tabla " + table.tableName() + " no tiene ninguna columna " +
                               dbase::inQuotes(field));
    }
    const dbase::Column& column = schema.columns[*position];
    if (has(column.name)) {
        throw loading::Failure("la columna " + column.name + " se da dos veces");
    }
    std::string raw(column.width, ' ');
    const loading::CellEncoder encoder(dbase::CodePage::ofDriver(schema.languageDriver),
                                       loading::Integers::AnyThatFits);
    if (const auto problem = encoder.encode(text, column, raw)) {
        throw loading::Failure("columna " + column.name + ": " + *problem);
    }
    pairs_.push_back({column.name, std::string(dbase::decodeText(raw))});
}

dbase::Key SearchKey::key() const {
    dbase::Key key;
    for (const Pair& pair : pairs_) {
        key.push_back({pair.field, pair.value});
    }
    return key;
}

bool SearchKey::has(const std::string& field) const {
    return std::ranges::any_of(pairs_, [&](const Pair& pair) { return pair.field == field; });
}

SearchKey keyFromText(dbase::Dataset& table, const std::string& text) {
    const dbase::Schema& schema = table.schema();
    const dbase::Tag& tag = activeTag(table);
    SearchKey key;
    if (tag.key->segments().size() <= 1) {
        const bool isColumn = tag.key->isPlainColumn();
        const dbase::Column& column =
            isColumn ? schema.columns[tag.key->segments().front().column] : leadingColumn(schema, tag);
        key.add(table, column.name, text);
        return key;
    }
    const dbase::CodePage& page = dbase::CodePage::ofDriver(schema.languageDriver);
    const std::string bytes = inTablePage(table, text, "la clave");
    std::string_view left = bytes;
    for (const dbase::KeySegment& segment : tag.key->segments()) {
        if (left.empty()) {
            break;
        }
        const std::string_view part = left.substr(0, segment.width);
        key.add(table, schema.columns[segment.column].name, page.toUtf8(part));
        left.remove_prefix(part.size());
    }
    if (!left.empty()) {
        throw loading::Failure("la clave " + dbase::inQuotes(text) + " es más larga que las del tag " +
                               tag.definition.name);
    }
    return key;
}

std::vector<std::string> missingBeforeLast(dbase::Dataset& table, const SearchKey& key) {
    std::vector<std::string> missing, pending;
    for (const dbase::KeySegment& segment : activeTag(table).key->segments()) {
        const std::string& name = table.schema().columns[segment.column].name;
        if (!key.has(name)) {
            pending.push_back(name);
            continue;
        }
        missing.insert(missing.end(), pending.begin(), pending.end());
        pending.clear();
    }
    return missing;
}

std::vector<std::string> fieldsOutsideTag(dbase::Dataset& table, const SearchKey& key) {
    const dbase::Schema& schema = table.schema();
    const std::vector<dbase::KeySegment>& segments = activeTag(table).key->segments();
    std::vector<std::string> outside;
    if (segments.empty()) {
        return outside;
    }
    for (const dbase::KeyPart& part : key.key()) {
        const bool belongs = std::ranges::any_of(segments, [&](const dbase::KeySegment& segment) {
            return schema.columns[segment.column].name == part.field;
        });
        if (!belongs) {
            outside.emplace_back(part.field);
        }
    }
    return outside;
}

} // namespace ambcp
