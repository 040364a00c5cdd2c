// Encodes and decodes intentions, line by line.
#include "dbase/table/exchange_intention.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <random>

#include "dbase/journal/journal_trust.h"
#include "dbase/system/checksum.h"
#include "dbase/system/file_pieces.h"
#include "dbase/system/names.h"
#include "dbase/system/paths.h"

namespace dbase {

namespace {

constexpr std::string_view title = "AMBREL-INTENCION 1";
constexpr std::string_view none = "-";
constexpr std::uint64_t largestIntention = std::uint64_t{64} << 10;

std::string hexadecimal(std::uint64_t number) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text(16, '0');
    for (auto digit = text.rbegin(); digit != text.rend(); ++digit, number >>= 4) {
        *digit = digits[number & 15];
    }
    return text;
}

std::string textOf(const Fingerprint& print) {
    return std::to_string(print.size) + ' ' + hexadecimal(print.sum);
}

/// Takes the lines of an intention one after another. After one that is not as expected, all are refused.
class Lines {
public:
    explicit Lines(std::string_view text) : rest_(text) {}

    [[nodiscard]] bool areRight() const { return areRight_; }
    [[nodiscard]] bool atEnd() const { return rest_.empty(); }
    void expect(std::string_view line) { areRight_ = areRight_ && next() == line; }
    [[nodiscard]] std::string_view value(std::string_view key) {
        const std::string_view line = next();
        areRight_ =
            areRight_ && line.starts_with(key) && line.size() > key.size() + 1 && line[key.size()] == ' ';
        return areRight_ ? line.substr(key.size() + 1) : std::string_view();
    }
    [[nodiscard]] std::uint64_t number(std::string_view text, int base) {
        std::uint64_t result = 0;
        const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), result, base);
        areRight_ = areRight_ && problem == std::errc() && end == text.data() + text.size();
        return result;
    }
    [[nodiscard]] Fingerprint fingerprint(std::string_view text) {
        const std::size_t blank = std::min(text.find(' '), text.size());
        const std::uint64_t size = number(text.substr(0, blank), 10);
        return {size, number(text.substr(std::min(blank + 1, text.size())), 16)};
    }
    /// Of a file in the intention's folder, never outside it.
    [[nodiscard]] std::string name(std::string_view key) {
        const std::string_view text = value(key);
        areRight_ = areRight_ && text.find('/') == std::string_view::npos &&
                    text.find('\0') == std::string_view::npos && text != "." && text != "..";
        return std::string(text);
    }
    [[nodiscard]] bool isYes(std::string_view key) {
        const std::string_view text = value(key);
        areRight_ = areRight_ && (text == "si" || text == "no");
        return text == "si";
    }

private:
    std::string_view next() {
        const std::size_t end = rest_.find('\n');
        areRight_ = areRight_ && end != std::string_view::npos;
        const std::string_view line = areRight_ ? rest_.substr(0, end) : std::string_view();
        rest_.remove_prefix(areRight_ ? end + 1 : rest_.size());
        return line;
    }

    std::string_view rest_;
    bool areRight_ = true;
};

IntendedTable readTable(Lines& lines) {
    IntendedTable table;
    table.table = lines.name("tabla");
    table.index = lines.name("indice");
    if (const std::string_view before = lines.value("antes"); before != none) {
        table.recordsBefore = lines.fingerprint(before);
    }
    table.recordsAfter = lines.fingerprint(lines.value("despues"));
    table.hadIndex = lines.isYes("indice-antes");
    if (const std::string_view after = lines.value("indice-despues"); after != none) {
        table.indexAfter = lines.number(after, 10);
    }
    if (const std::string_view rest = lines.value("resto"); rest != none) {
        table.rest = lines.fingerprint(rest);
    }
    return table;
}

} // namespace

Fingerprint fingerprintOf(const File& file) {
    Fingerprint print{file.size(), 0};
    forEachPiece(file, print.size,
                 [&](std::uint64_t at, std::span<const char> piece) { print.sum += sumOfBlocks(at, piece); });
    return print;
}

// The same block elsewhere counts otherwise.
std::uint64_t sumOfBlocks(std::uint64_t offset, std::span<const char> bytes) {
    constexpr std::size_t size = Fingerprint::blockBytes;
    std::uint64_t sum = 0;
    for (; !bytes.empty(); offset += size) {
        const std::span<const char> block = bytes.first(std::min(size, bytes.size()));
        InterleavedChecksum its(offset + block.size());
        its.add(block);
        sum += its.value();
        bytes = bytes.subspan(block.size());
    }
    return sum;
}

bool Intention::names(const std::string& tableFile) const {
    const std::string name = tableFile.substr(tableFile.rfind('/') + 1);
    return std::ranges::any_of(tables, [&](const IntendedTable& each) { return sameName(each.table, name); });
}

std::uint64_t newExchangeNumber() {
    std::random_device random;
    return std::uint64_t{random()} << 32 | (random() & 0xFFFFFFF0U) | 2; // so that it has a successor
}

std::string intentionFileIn(const std::string& folder) {
    return (folder == "/" ? folder : folder + '/') + "INTENCION.AMI";
}

std::string encodeIntention(const Intention& intention) {
    std::string text = std::string(title) + "\nnumero " + hexadecimal(intention.number) + '\n';
    for (const IntendedTable& table : intention.tables) {
        text += "tabla " + table.table + "\nindice " + table.index + "\nantes " +
                (table.recordsBefore ? textOf(*table.recordsBefore) : std::string(none)) + "\ndespues " +
                textOf(table.recordsAfter) + "\nindice-antes " + (table.hadIndex ? "si" : "no") +
                "\nindice-despues " +
                (table.indexAfter ? std::to_string(*table.indexAfter) : std::string(none)) + "\nresto " +
                (table.rest ? textOf(*table.rest) : std::string(none)) + '\n';
    }
    return text + "suma " + hexadecimal(checksum(text)) + '\n';
}

std::optional<Intention> decodeIntention(std::string_view text) {
    const std::size_t end = text.rfind("suma ");
    if (end == std::string_view::npos ||
        text.substr(end) != "suma " + hexadecimal(checksum(text.substr(0, end))) + '\n') {
        return std::nullopt;
    }
    Lines lines(text.substr(0, end));
    Intention intention;
    lines.expect(title);
    intention.number = lines.number(lines.value("numero"), 16);
    while (lines.areRight() && !lines.atEnd()) {
        intention.tables.push_back(readTable(lines));
    }
    return lines.areRight() ? std::optional(std::move(intention)) : std::nullopt;
}

std::optional<Intention> readIntention(const File& file) {
    const std::uint64_t size = file.size();
    if (size == 0 || size > largestIntention) {
        return std::nullopt;
    }
    std::string text(static_cast<std::size_t>(size), '\0');
    file.read(0, text);
    return decodeIntention(text);
}

bool isTrusted(const File& intention, const Intention& content, const Folders& folders) {
    const FileStatus status = intention.status();
    return std::ranges::all_of(content.tables, [&](const IntendedTable& each) {
        const auto table = folders.statusOf(folderOf(intention.path()) + '/' + each.table);
        return !table || objectionTo(status, *table).empty();
    });
}

} // namespace dbase
