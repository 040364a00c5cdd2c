// Reads the rows of a file of addresses.
#include "address/AddressRows.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "dbase/system/counted.h"
#include "loading/ansi_text.h"

namespace ambrel {

namespace {

/// Enough rows of each province in a shuffled file to be worth turning to it, little enough for the memory.
constexpr std::size_t mostRows = std::size_t{1} << 14;
constexpr std::size_t mostBytes = std::size_t{1} << 22;

std::string ansi(std::string_view utf8) { return loading::ansiFromUtf8(utf8).value_or(std::string(utf8)); }

/// Whether the quotes of a text are open at its end, as a forgiving reader takes them.
class OpenQuotes {
public:
    explicit OpenQuotes(char separator) : separator_(separator) {}

    void read(std::string_view text) {
        for (const char c : text) {
            switch (state_) {
            case State::Start:
                state_ = c == '"' ? State::Quoted : c == separator_ ? State::Start : State::Plain;
                break;
            case State::Plain:
                state_ = c == separator_ ? State::Start : State::Plain;
                break;
            case State::Quoted:
                state_ = c == '"' ? State::AfterQuote : State::Quoted;
                break;
            case State::AfterQuote:
                state_ = c == '"' ? State::Quoted : c == separator_ ? State::Start : State::Plain;
                break;
            }
        }
    }
    [[nodiscard]] bool isOpen() const { return state_ == State::Quoted; }

private:
    enum class State { Start, Plain, Quoted, AfterQuote };
    char separator_;
    State state_ = State::Start;
};

/// Where the n-th piece of a file begins.
std::uint64_t beginOfPart(const AddressFileInput& input, const AddressFilePart& part, unsigned number) {
    if (number == 1) {
        return 0;
    }
    if (number > part.of) {
        return std::numeric_limits<std::uint64_t>::max();
    }
    if (!input.size) {
        throw loading::Failure(input.name + ": no se puede partir, porque no se sabe cuánto ocupa");
    }
    return static_cast<std::uint64_t>(static_cast<long double>(*input.size) * (number - 1) / part.of);
}

} // namespace

AddressRows::OpenedText AddressRows::openText(const AddressFileInput& input,
                                              const AddressFileOptions& options) {
    OpenedText text{{}, input.bytes};
    const std::string sample = loading::peek(text.source);
    text.format = loading::recogniseFormat(sample, input.name, options.encoding, options.separator);
    if (text.format.encoding == loading::TextEncoding::Utf16) {
        text.source = loading::decoded(std::move(text.source), text.format.encoding, input.name);
    }
    return text;
}

AddressRows::AddressRows(const AddressFileInput& input, const AddressFileOptions& options)
    : AddressRows(openText(input, options), input, options) {}

AddressRows::AddressRows(OpenedText text, const AddressFileInput& input, const AddressFileOptions& options)
    : format_(text.format), csv_(std::move(text.source), input.name, format_.separator),
      begin_(beginOfPart(input, options.part, options.part.number)),
      end_(beginOfPart(input, options.part, options.part.number + 1)), size_(input.size) {
    csv_.keepEmptyLines();
    bool isHeading = false;
    while (!isHeading && csv_.next()) {
        heading_ += csv_.raw();
        isHeading = !csv_.fields().empty();
    }
    if (!isHeading) {
        throw loading::Failure(input.name +
                               ": no hay ninguna fila; la primera da los nombres de las columnas");
    }
    position_ = heading_.size();
    for (const loading::CsvField& field : csv_.fields()) {
        names_.push_back(textOf(field.text));
    }
}

std::string AddressRows::textOf(std::string_view raw) const {
    return format_.encoding == loading::TextEncoding::Windows1252 ? loading::utf8FromAnsi(raw)
                                                                  : std::string(raw);
}

/// Reads a record, and notes whether it has its values. False at the end.
bool AddressRows::readRow() {
    try {
        isReadable_ = true;
        if (!csv_.next()) {
            return false;
        }
        isReadable_ = !hidesRows();
    } catch (const loading::CsvError&) {
        isReadable_ = false;
    }
    return true;
}

/// Whether a record of several lines has the wrong number of values, and one of its lines alone the right
/// one: then its quotes are closed by those of another row.
bool AddressRows::hidesRows() const {
    const std::string_view raw = csv_.raw();
    const std::size_t lineEnd = raw.find('\n');
    if (csv_.fields().size() == names_.size() || csv_.fields().empty() || lineEnd + 1 >= raw.size()) {
        return false;
    }
    loading::CsvReader lines(loading::textSource(raw.substr(lineEnd + 1)), csv_.name(), format_.separator);
    while (true) {
        try {
            if (!lines.next()) {
                return false;
            }
            if (lines.fields().size() == names_.size()) {
                return true;
            }
        } catch (const loading::CsvError&) {
            static_cast<void>(lines.takeLine());
        }
    }
}

std::optional<std::vector<std::string>> AddressRows::nextTexts() {
    do {
        if (!readRow()) {
            return std::nullopt;
        }
        if (!isReadable_) {
            static_cast<void>(csv_.takeLine());
            return std::vector{textOf(csv_.raw())};
        }
    } while (csv_.fields().empty());
    std::vector<std::string> texts;
    for (const loading::CsvField& field : csv_.fields()) {
        texts.push_back(textOf(field.text));
    }
    return texts;
}

AddressBlock AddressRows::nextBlock() {
    AddressBlock block;
    std::size_t passed = 0;
    while (block.rows.size() < mostRows && block.text.size() < mostBytes && passed < mostRows) {
        const bool isOfPart = position_ >= begin_;
        if (position_ >= end_ || !readRow()) {
            isAtEnd_ = true;
            break;
        }
        AddressBlock before; // the part: read for its places alone
        AddressBlock& target = isOfPart ? block : before;
        if (isReadable_) {
            add(target);
        } else {
            addBroken(target);
        }
        passed += isOfPart ? 0 : 1;
    }
    return block;
}

std::optional<std::uint64_t> AddressRows::size() const {
    return size_ ? std::optional(std::min(end_, std::max(*size_, begin_)) - begin_) : std::nullopt;
}

AddressRow& AddressRows::addRaw(AddressBlock& block, AddressRow::Kind kind) {
    AddressRow& row = block.rows.emplace_back();
    row.kind = kind;
    row.rawBegin = block.text.size();
    block.text += csv_.raw();
    row.rawEnd = block.text.size();
    // Of UTF-16 the exact size is not known here; nor does it matter, as long as it is always the same.
    row.bytes = csv_.raw().size() * (format_.encoding == loading::TextEncoding::Utf16 ? 2 : 1);
    row.line = csv_.line();
    number_ += kind == AddressRow::Kind::Passed ? 0 : 1;
    row.number = number_;
    position_ += row.bytes;
    return row;
}

void AddressRows::add(AddressBlock& block) {
    if (csv_.fields().empty()) {
        addRaw(block, AddressRow::Kind::Passed);
        return;
    }
    fill(addRaw(block, AddressRow::Kind::Address));
}

/// Reads the values of the record, or says why that is not possible.
void AddressRows::fill(AddressRow& row) const {
    const auto breakRow = [&](const std::string& reason) {
        row.kind = AddressRow::Kind::Broken;
        row.given = {};
        row.judged.reason = ansi(reason);
    };
    const std::size_t count = csv_.fields().size();
    if (count != names_.size()) {
        breakRow("la fila tiene " + dbase::counted(count, "valor", "valores") + " y la cabecera " +
                 std::to_string(names_.size()));
        return;
    }
    const std::array<std::string*, addressColumnCount> texts{
        &row.given.line, &row.given.type,       &row.given.street,       &row.given.number,
        &row.given.rest, &row.given.postalCode, &row.given.municipality, &row.given.province};
    for (std::size_t i = 0; i < addressColumnCount; ++i) {
        if (!places_[i]) {
            continue;
        }
        const std::string_view value = csv_.fields()[*places_[i]].text;
        if (format_.encoding == loading::TextEncoding::Windows1252) {
            *texts[i] = value;
        } else if (auto converted = loading::ansiFromUtf8(value)) {
            *texts[i] = *std::move(converted);
        } else {
            breakRow("la columna " + names_[*places_[i]] + " no está en UTF-8");
            return;
        }
    }
}

/// What is wrong with a line is found in it alone, so that pieces of a file give the same reasons.
void AddressRows::addBroken(AddressBlock& block) {
    OpenQuotes quotes(format_.separator);
    bool isWhole = csv_.takeLine();
    std::string reason = isWhole ? "" : "la línea es demasiado larga";
    while (!isWhole) {
        quotes.read(csv_.raw());
        addRaw(block, AddressRow::Kind::Passed);
        isWhole = csv_.takeLine();
    }
    AddressRow& row = addRaw(block, AddressRow::Kind::Broken);
    std::string_view line = csv_.raw();
    line = line.substr(0, line.find_last_not_of("\r\n") + 1);
    quotes.read(line);
    row.isOpen = quotes.isOpen();
    if (reason.empty()) {
        const std::string text = textOf(line);
        loading::CsvReader alone(loading::textSource(text), csv_.name(), format_.separator);
        try {
            static_cast<void>(alone.next());
        } catch (const loading::CsvError& error) {
            reason = "carácter " + std::to_string(error.column()) + ": " + error.text();
        }
    }
    row.judged.reason = ansi(reason);
}

} // namespace ambrel
