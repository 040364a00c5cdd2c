// Values separated by tabs; what would break a line is escaped, so that a line is always one entry.
#include "loading/undo_lines.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "dbase/dbf/codec.h"
#include "dbase/dbf/codepage.h"
#include "dbase/system/quoted.h"
#include "dbase/system/trim.h"

namespace loading {

namespace {

constexpr std::string_view version = "2", versionBefore = "1"; // which has no tables of whole rows
constexpr std::string_view tableWord = "TABLA", wholeRowsWord = "FILAS";
constexpr std::string_view endWord = "FIN";
constexpr std::array<std::string_view, 4> kindWords = {"CAMBIO", "ALTA", "BAJA", "NULO"};
constexpr std::size_t headValues = 3; // of an entry: kind, table, record
constexpr std::string_view hexDigits = "0123456789ABCDEF";

using Values = std::span<const std::string_view>;

std::uint64_t checksum(std::string_view text) { // FNV-1a, 64 bits
    std::uint64_t sum = 0xCBF29CE484222325;
    for (const char c : text) {
        sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    }
    return sum;
}

std::string checksumText(std::string_view text) {
    std::string digits(16, '0');
    std::uint64_t sum = checksum(text);
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, sum >>= 4) {
        *digit = hexDigits[sum & 0xF];
    }
    return digits;
}

std::string finished(std::string line) {
    const std::string sum = checksumText(line);
    return std::move(line) + '\t' + sum + '\n';
}

void appendHex(std::string& line, char c) {
    const auto byte = static_cast<unsigned char>(c);
    line += "\\x";
    line += hexDigits[byte >> 4];
    line += hexDigits[byte & 0xF];
}

/// Appends UTF-8 text, escaped; bytes that are none of it too.
void appendEscaped(std::string& line, std::string_view text, char alsoEscaped = '\\') {
    while (!text.empty()) {
        const std::string_view character = dbase::firstCharacter(text);
        const char c = text.front();
        if (c == '\\') {
            line += "\\\\";
        } else if (character.empty() || dbase::isBlankOrControl(c) != dbase::isBlank(c) || c == 0x7F ||
                   c == alsoEscaped) {
            appendHex(line, c);
        } else {
            line += character;
        }
        text.remove_prefix(std::max<std::size_t>(character.size(), 1));
    }
}

std::optional<unsigned> hexValue(char c) {
    const std::size_t digit = hexDigits.find(c);
    return digit == std::string_view::npos ? std::nullopt : std::optional(static_cast<unsigned>(digit));
}

bool isPlain(std::string_view bytes) {
    return std::ranges::all_of(bytes, [](char c) { return c >= ' ' && c < 0x7F && c != '\\'; });
}

void appendCell(std::string& line, std::string_view raw, const dbase::CodePage& page) {
    const std::string_view bytes = dbase::withoutTrailingBlanks(raw);
    if (isPlain(bytes)) {
        line += bytes;
    } else {
        appendEscaped(line, page.toUtf8(bytes));
    }
}

std::string_view rawOf(const dbase::Column& column, std::span<const char> record) {
    return {record.data() + column.offset, column.width};
}

/// Writes a value into its column; false if it does not fit.
bool putCell(std::string_view value, const dbase::Column& column, const dbase::CodePage& page,
             std::vector<char>& record) {
    const std::span<char> raw = std::span(record).subspan(column.offset, column.width);
    std::optional<std::string> bytes = isPlain(value) ? std::optional(std::string(value)) : undoText(value);
    if (bytes && !isPlain(value)) {
        bytes = page.fromUtf8(*bytes);
    }
    if (!bytes || bytes->size() > raw.size()) {
        return false;
    }
    dbase::encodeText(raw, *bytes);
    return true;
}

template<typename Number>
std::optional<Number> numberIn(std::string_view text) {
    Number number{};
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    return fault == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    while (true) {
        const std::size_t end = text.find(separator);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            return parts;
        }
        text.remove_prefix(end + 1);
    }
}

/// "NOMBRE C 30 0"
std::optional<dbase::Column> readColumn(std::string_view value) {
    const std::vector<std::string_view> parts = split(value, ' ');
    if (parts.size() != 4 || parts[1].size() != 1) {
        return std::nullopt;
    }
    const auto name = undoText(parts[0]);
    const auto width = numberIn<std::uint16_t>(parts[2]);
    const auto decimals = numberIn<std::uint8_t>(parts[3]);
    if (!name || name->empty() || !width || *width == 0 || !decimals) {
        return std::nullopt;
    }
    return dbase::Column{.name = *name,
                         .type = static_cast<dbase::ColumnType>(parts[1].front()),
                         .width = *width,
                         .decimals = *decimals,
                         .offset = 0};
}

/// The columns that a change altered, after those of the record before: "CODPOSTAL=28014".
bool putChanges(Values values, const UndoTable& table, const dbase::CodePage& page,
                std::vector<char>& record) {
    return std::ranges::all_of(values, [&](std::string_view value) {
        const std::size_t sign = value.find('=');
        const auto name = sign == std::string_view::npos ? std::nullopt : undoText(value.substr(0, sign));
        const auto position = name ? table.schema.find(*name) : std::nullopt;
        return position && putCell(value.substr(sign + 1), table.schema.columns[*position], page, record);
    });
}

} // namespace

std::optional<std::string> undoText(std::string_view value) {
    std::string text;
    while (!value.empty()) {
        const char c = value.front();
        value.remove_prefix(1);
        if (c != '\\') {
            text += c;
        } else if (value.starts_with('\\')) {
            text += c;
            value.remove_prefix(1);
        } else {
            const auto high = value.size() > 2 && value[0] == 'x' ? hexValue(value[1]) : std::nullopt;
            const auto low = high ? hexValue(value[2]) : std::nullopt;
            if (!low) {
                return std::nullopt;
            }
            text += static_cast<char>(*high << 4 | *low);
            value.remove_prefix(3);
        }
    }
    return text;
}

bool agree(const dbase::Column& column, std::span<const char> one, std::span<const char> other) {
    return rawOf(column, one) == rawOf(column, other);
}

bool agree(std::span<const char> one, std::span<const char> other) {
    return std::ranges::equal(one.subspan(1), other.subspan(1));
}

std::string undoHeading(std::string_view date, std::string_view order) {
    std::string line(undoSignature);
    line += version;
    line += '\t';
    line += date;
    line += '\t';
    appendEscaped(line, order);
    return finished(std::move(line));
}

std::string undoEnd(std::uint64_t entries) {
    return finished(std::string(endWord) + '\t' + std::to_string(entries));
}

std::string undoLine(const UndoTable& table, std::size_t position) {
    std::string line(table.isOfWholeRows ? wholeRowsWord : tableWord);
    line += '\t' + std::to_string(position + 1) + '\t';
    appendEscaped(line, table.path);
    line += '\t' + std::to_string(table.schema.languageDriver) + '\t';
    for (const std::size_t column : table.key) {
        line += (line.back() == '\t' ? "" : " ");
        appendEscaped(line, table.schema.columns[column].name, ' ');
    }
    if (table.isOfWholeRows) {
        line += '\t' + (table.companionOf ? std::to_string(*table.companionOf + 1) : std::string());
    }
    for (const dbase::Column& column : table.schema.columns) {
        line += '\t';
        appendEscaped(line, column.name, ' ');
        line += ' ';
        line += static_cast<char>(column.type);
        line += ' ' + std::to_string(column.width) + ' ' + std::to_string(column.decimals);
    }
    return finished(std::move(line));
}

std::string undoLine(const UndoTable& table, const UndoEntry& entry) {
    const dbase::CodePage& page = dbase::CodePage::ofDriver(table.schema.languageDriver);
    std::string line(kindWords.at(static_cast<std::size_t>(entry.kind)));
    line += '\t' + std::to_string(entry.table + 1) + '\t' + std::to_string(entry.number);
    const std::span<const char> whole = entry.kind == UndoKind::Addition ? entry.after : entry.before;
    if (entry.kind != UndoKind::Unmade) {
        for (const dbase::Column& column : table.schema.columns) {
            line += '\t';
            appendCell(line, rawOf(column, whole), page);
        }
    }
    if (entry.kind == UndoKind::Change) {
        for (const dbase::Column& column : table.schema.columns) {
            if (!agree(column, entry.before, entry.after)) {
                line += '\t';
                appendEscaped(line, column.name, '=');
                line += '=';
                appendCell(line, rawOf(column, entry.after), page);
            }
        }
    }
    return finished(std::move(line));
}

std::vector<std::string_view> undoValues(std::string_view line) {
    const std::size_t end = line.rfind('\t');
    if (end == std::string_view::npos || line.substr(end + 1) != checksumText(line.substr(0, end))) {
        return {};
    }
    return split(line.substr(0, end), '\t');
}

bool isUndoHeading(Values values) {
    if (values.size() != 3 || !values[0].starts_with(undoSignature)) {
        return false;
    }
    const std::string_view its = values[0].substr(undoSignature.size());
    return its == version || its == versionBefore;
}

std::optional<std::uint64_t> readUndoEnd(Values values) {
    return values.size() == 2 && values[0] == endWord ? numberIn<std::uint64_t>(values[1]) : std::nullopt;
}

bool makeCompanion(UndoTable& table, std::span<const UndoTable> earlier, std::size_t companionOf) {
    if (companionOf >= earlier.size() || !earlier[companionOf].isOfWholeRows) {
        return false;
    }
    const UndoTable& other = earlier[companionOf];
    for (const std::size_t column : other.key) {
        const auto position = table.schema.find(other.schema.columns[column].name);
        if (!position) {
            return false;
        }
        table.tie.push_back(*position);
    }
    table.companionOf = companionOf;
    return true;
}

std::optional<UndoTable> readUndoTable(Values values, std::span<const UndoTable> earlier) {
    const bool isOfWholeRows = !values.empty() && values[0] == wholeRowsWord;
    const std::size_t fixed = isOfWholeRows ? 6 : 5;
    if (values.size() <= fixed || (values[0] != tableWord && !isOfWholeRows)) {
        return std::nullopt;
    }
    UndoTable table;
    table.isOfWholeRows = isOfWholeRows;
    const auto path = undoText(values[2]);
    const auto driver = numberIn<std::uint8_t>(values[3]);
    std::size_t length = 1; // of the deletion mark
    for (const std::string_view value : values.subspan(fixed)) {
        auto column = readColumn(value);
        if (!column || length + column->width > UINT16_MAX) {
            return std::nullopt;
        }
        column->offset = static_cast<std::uint16_t>(length);
        length += column->width;
        table.schema.columns.push_back(*std::move(column));
    }
    if (!path || !driver) {
        return std::nullopt;
    }
    table.path = *path;
    table.schema.languageDriver = *driver;
    table.schema.recordLength = static_cast<std::uint16_t>(length);
    for (const std::string_view name : split(values[4], ' ')) {
        const auto text = undoText(name);
        const auto position = text ? table.schema.find(*text) : std::nullopt;
        if (position) {
            table.key.push_back(*position);
        } else if (!values[4].empty()) {
            return std::nullopt;
        }
    }
    if (isOfWholeRows && !values[5].empty()) {
        const auto companionOf = numberIn<std::size_t>(values[5]);
        if (!companionOf || !makeCompanion(table, earlier, *companionOf - 1)) {
            return std::nullopt;
        }
    }
    return table;
}

std::optional<UndoEntry> readUndoHead(Values values) {
    const auto word = values.size() < headValues ? kindWords.end() : std::ranges::find(kindWords, values[0]);
    if (word == kindWords.end()) {
        return std::nullopt;
    }
    const auto table = numberIn<std::size_t>(values[1]);
    const auto number = numberIn<dbase::RecordNumber>(values[2]);
    if (!table || *table == 0 || !number) {
        return std::nullopt;
    }
    return UndoEntry{
        .kind = static_cast<UndoKind>(word - kindWords.begin()), .table = *table - 1, .number = *number};
}

std::optional<UndoEntry> readUndoEntry(Values values, const UndoTable& table) {
    std::optional<UndoEntry> entry = readUndoHead(values);
    const std::vector<dbase::Column>& columns = table.schema.columns;
    if (!entry || entry->kind == UndoKind::Unmade || values.size() < headValues + columns.size()) {
        return std::nullopt;
    }
    const dbase::CodePage& page = dbase::CodePage::ofDriver(table.schema.languageDriver);
    std::vector<char> record(table.schema.recordLength, dbase::liveMark);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (!putCell(values[headValues + i], columns[i], page, record)) {
            return std::nullopt;
        }
    }
    const Values changes = values.subspan(headValues + columns.size());
    if (changes.empty() == (entry->kind == UndoKind::Change)) {
        return std::nullopt;
    }
    if (entry->kind != UndoKind::Addition) {
        entry->before = record;
    }
    if (entry->kind != UndoKind::Deletion) {
        if (!putChanges(changes, table, page, record)) {
            return std::nullopt;
        }
        entry->after = std::move(record);
    }
    return entry;
}

} // namespace loading
