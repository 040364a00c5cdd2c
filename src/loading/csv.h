// CSV according to RFC 4180, in UTF-8, also with a separator other than the comma: reading record by record
// from a stream, writing to a file descriptor.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "loading/failure.h"
#include "loading/text_source.h"

namespace loading {

/// A text that is not valid CSV. Line and column (in characters) count from 1.
class CsvError : public Failure {
public:
    CsvError(const std::string& name, std::uint64_t line, std::uint64_t column, const std::string& text);

    [[nodiscard]] std::uint64_t line() const noexcept { return line_; }
    [[nodiscard]] std::uint64_t column() const noexcept { return column_; }
    /// What is wrong, without the place.
    [[nodiscard]] const std::string& text() const noexcept { return text_; }

private:
    std::uint64_t line_, column_;
    std::string text_;
};

/// One value of a record, without its quotes.
struct CsvField {
    std::string_view text;
    std::uint64_t line; // where it begins, from 1
};

/// Reads record by record through one buffer. Lines end in LF or CR LF; a byte order mark at the start is
/// skipped, and so are empty lines unless they are kept. Errors: CsvError, and anything the source throws.
class CsvReader {
public:
    static constexpr std::size_t defaultBufferSize = std::size_t{1} << 20;
    /// A longer record can only come from a quote that is never closed.
    static constexpr std::size_t maxRecordSize = std::size_t{1} << 24;
    /// More columns than any table has.
    static constexpr std::size_t maxFields = 4096;

    /// `name`: what errors call the text. `separator`: between values, as returned by separatorNamed().
    CsvReader(TextSource source, std::string name, char separator = ',',
              std::size_t bufferSize = defaultBufferSize);
    CsvReader(const CsvReader&) = delete;
    CsvReader& operator=(const CsvReader&) = delete;

    /// From now on an empty line is a record without values.
    void keepEmptyLines() { keepsEmptyLines_ = true; }

    /// Reads the next record; false if there are no more.
    [[nodiscard]] bool next();
    /// After an error, or a record that must be wrong: takes the line in which that record begins instead, as
    /// raw text without values, and goes on after it. False if only a piece of a very long line was taken,
    /// and has to be called again for the next one.
    [[nodiscard]] bool takeLine();
    /// The record read last; its texts are valid until the next one is read.
    [[nodiscard]] std::span<const CsvField> fields() const { return fields_; }
    /// Its bytes as they were read: quotes, line end and a mark in front of it included; valid as long.
    [[nodiscard]] std::string_view raw() const {
        return {buffer_.data() + rawBegin_, begin_ - rawBegin_ + recordSize_};
    }
    /// Line where the record read last begins.
    [[nodiscard]] std::uint64_t line() const { return recordLine_; }
    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] char separator() const { return separator_; }

private:
    struct Extent { // relative to the start of the record, because the buffer may move
        std::size_t begin, end;
        std::uint64_t line;
        bool hasDoubledQuotes;
    };

    void add(const Extent& extent);
    void skipByteOrderMark();
    [[nodiscard]] bool hasMore();
    [[nodiscard]] bool refill();
    [[nodiscard]] bool isEmptyLine() const;
    void readRecord();
    void readPlain();
    void readQuoted();
    [[nodiscard]] bool endsRecord();
    void publish();
    [[nodiscard]] std::string_view withoutDoubledQuotes(std::string_view text);
    [[noreturn]] void fail(const std::string& text) const;

    TextSource source_;
    std::string name_;
    char separator_;
    std::array<bool, 256> endsPlain_; // bytes that end an unquoted value, or must not be in one
    std::vector<char> buffer_;
    std::size_t rawBegin_ = 0;   // of the record with what was skipped in front of it, in the buffer
    std::size_t begin_ = 0;      // of the record
    std::size_t recordSize_ = 0; // with its line end, once it has been read
    std::size_t at_ = 0;         // next byte to examine
    std::size_t end_ = 0;        // of the bytes read
    bool isExhausted_ = false, keepsEmptyLines_ = false;
    bool isInsideLine_ = false; // a piece of a long line was taken, and the next one follows
    std::uint64_t line_ = 1, recordLine_ = 1;
    std::size_t lineStart_ = 0; // of the current line, relative to the record
    std::vector<Extent> extents_;
    std::string unquoted_; // the texts whose doubled quotes were taken away
    std::vector<CsvField> fields_;
};

/// A separator of values: any sign other than a quote, or a tab, also written "tab". Null for anything else.
[[nodiscard]] std::optional<char> separatorNamed(std::string_view name);

/// Thrown when the reader of our output has gone away.
struct OutputClosed {};

/// Writes records, collected into large pieces. Errors: OutputClosed, Failure.
class CsvWriter {
public:
    explicit CsvWriter(int descriptor);
    CsvWriter(const CsvWriter&) = delete;
    CsvWriter& operator=(const CsvWriter&) = delete;

    /// Quotes the text if necessary.
    void field(std::string_view text);
    void endRecord();
    /// Writes what is pending; anything not flushed is lost.
    void flush();

private:
    int descriptor_;
    std::string pending_;
    std::size_t recordStart_ = 0;
    bool isFirst_ = true;
};

} // namespace loading
