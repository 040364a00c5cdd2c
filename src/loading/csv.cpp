// Parses and writes CSV.
#include "loading/csv.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include <unistd.h>

#include "dbase/system/system_reason.h"

namespace loading {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

std::array<bool, 256> endsOfPlain(char separator) {
    std::array<bool, 256> ends{};
    for (const char c : {separator, '\n', '\r', '"'}) {
        ends[static_cast<unsigned char>(c)] = true;
    }
    return ends;
}

std::uint64_t characters(std::string_view utf8) {
    return static_cast<std::uint64_t>(std::count_if(
        utf8.begin(), utf8.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

} // namespace

CsvError::CsvError(const std::string& name, std::uint64_t line, std::uint64_t column, const std::string& text)
    : Failure(name + ": línea " + std::to_string(line) + ", carácter " + std::to_string(column) + ": " +
              text),
      line_(line), column_(column), text_(text) {}

CsvReader::CsvReader(TextSource source, std::string name, char separator, std::size_t bufferSize)
    : source_(std::move(source)), name_(std::move(name)), separator_(separator),
      endsPlain_(endsOfPlain(separator)), buffer_(bufferSize) {}

void CsvReader::fail(const std::string& text) const {
    const std::size_t lineBegin = begin_ + lineStart_;
    const std::string_view before(buffer_.data() + lineBegin, at_ - lineBegin);
    throw CsvError(name_, line_, characters(before) + 1, text);
}

bool CsvReader::hasMore() { return at_ < end_ || refill(); }

/// Reads more bytes after those of the record, which moves to the front of the buffer.
bool CsvReader::refill() {
    if (isExhausted_) {
        return false;
    }
    if (rawBegin_ > 0) {
        std::memmove(buffer_.data(), buffer_.data() + rawBegin_, end_ - rawBegin_);
        begin_ -= rawBegin_;
        at_ -= rawBegin_;
        end_ -= rawBegin_;
        rawBegin_ = 0;
    }
    if (end_ == buffer_.size()) {
        if (buffer_.size() >= maxRecordSize) {
            throw CsvError(name_, recordLine_, 1,
                           "la fila que empieza aquí no termina; ¿faltan unas comillas de cierre?");
        }
        buffer_.resize(std::min(buffer_.size() * 2, maxRecordSize));
    }
    const std::size_t got = source_(std::span(buffer_).subspan(end_));
    end_ += got;
    isExhausted_ = got == 0;
    return got > 0;
}

void CsvReader::skipByteOrderMark() {
    while (end_ - at_ < byteOrderMark.size() && refill()) {
    }
    if (std::string_view(buffer_.data() + at_, end_ - at_).starts_with(byteOrderMark)) {
        at_ += byteOrderMark.size();
    }
}

bool CsvReader::next() {
    rawBegin_ = at_;
    if (end_ == 0) {
        skipByteOrderMark();
    }
    while (true) {
        begin_ = at_;
        lineStart_ = 0;
        recordLine_ = line_;
        recordSize_ = 0;
        extents_.clear();
        fields_.clear();
        if (!hasMore()) {
            return false;
        }
        readRecord();
        recordSize_ = at_ - begin_;
        if (!isEmptyLine()) {
            publish();
            return true;
        }
        if (keepsEmptyLines_) {
            return true;
        }
        rawBegin_ = at_;
    }
}

bool CsvReader::isEmptyLine() const {
    return extents_.size() == 1 && extents_[0].begin == 0 && extents_[0].end == 0;
}

bool CsvReader::takeLine() {
    if (isInsideLine_) {
        rawBegin_ = begin_ = at_;
    }
    fields_.clear();
    std::size_t searched = 0;
    const char* newline = nullptr;
    bool isTooLong = false;
    do {
        const char* const from = buffer_.data() + begin_ + searched;
        newline = static_cast<const char*>(std::memchr(from, '\n', end_ - begin_ - searched));
        searched = end_ - begin_;
        isTooLong = newline == nullptr && end_ - rawBegin_ >= maxRecordSize;
    } while (newline == nullptr && !isTooLong && refill());
    recordSize_ =
        newline == nullptr ? searched : static_cast<std::size_t>(newline + 1 - buffer_.data()) - begin_;
    at_ = begin_ + recordSize_;
    lineStart_ = 0;
    line_ = recordLine_ + 1;
    isInsideLine_ = isTooLong;
    return !isTooLong;
}

void CsvReader::readRecord() {
    do {
        if (hasMore() && buffer_[at_] == '"') {
            readQuoted();
        } else {
            readPlain();
        }
    } while (!endsRecord());
}

void CsvReader::add(const Extent& extent) {
    if (extents_.size() == maxFields) {
        throw CsvError(name_, recordLine_, 1,
                       "la fila que empieza aquí tiene más de " + std::to_string(maxFields) + " valores");
    }
    extents_.push_back(extent);
}

void CsvReader::readPlain() {
    const std::size_t start = at_ - begin_;
    while (hasMore()) {
        const char* const bytes = buffer_.data();
        while (at_ < end_ && !endsPlain_[static_cast<unsigned char>(bytes[at_])]) {
            ++at_;
        }
        if (at_ < end_) {
            break;
        }
    }
    add({start, at_ - begin_, line_, false});
}

void CsvReader::readQuoted() {
    const std::uint64_t openLine = line_;
    const std::uint64_t openColumn =
        characters({buffer_.data() + begin_ + lineStart_, at_ - begin_ - lineStart_}) + 1;
    ++at_;
    const std::size_t start = at_ - begin_;
    bool hasDoubledQuotes = false;
    while (true) {
        if (!hasMore()) {
            throw CsvError(name_, openLine, openColumn, "estas comillas no se cierran");
        }
        const char c = buffer_[at_++];
        if (c == '\n') {
            ++line_;
            lineStart_ = at_ - begin_;
        } else if (c == '"') {
            if (!hasMore() || buffer_[at_] != '"') {
                break;
            }
            hasDoubledQuotes = true;
            ++at_;
        }
    }
    add({start, at_ - 1 - begin_, openLine, hasDoubledQuotes});
}

/// Consumes what follows a value; true if it ends the record.
bool CsvReader::endsRecord() {
    if (!hasMore()) {
        return true;
    }
    if (buffer_[at_] == separator_) {
        ++at_;
        return false;
    }
    switch (buffer_[at_]) {
    case '\r':
        ++at_;
        if (!hasMore() || buffer_[at_] != '\n') {
            --at_;
            fail("retorno de carro sin salto de línea");
        }
        break;
    case '\n':
        break;
    case '"':
        fail("comillas dentro de un valor sin comillas");
    default:
        fail("texto detrás de las comillas de cierre");
    }
    ++at_;
    ++line_;
    return true;
}

void CsvReader::publish() {
    unquoted_.clear();
    unquoted_.reserve(recordSize_); // so that its texts do not move
    for (const Extent& extent : extents_) {
        std::string_view text(buffer_.data() + begin_ + extent.begin, extent.end - extent.begin);
        if (extent.hasDoubledQuotes) {
            text = withoutDoubledQuotes(text);
        }
        fields_.push_back({text, extent.line});
    }
}

std::string_view CsvReader::withoutDoubledQuotes(std::string_view text) {
    const std::size_t start = unquoted_.size();
    for (std::size_t i = 0; i < text.size(); ++i) {
        unquoted_ += text[i];
        i += text[i] == '"' ? 1 : 0;
    }
    return std::string_view(unquoted_).substr(start);
}

std::optional<char> separatorNamed(std::string_view name) {
    if (name == "tab" || name == "\t") {
        return '\t';
    }
    const char c = name.size() == 1 ? name.front() : ' ';
    const bool isWord = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    return c > ' ' && c < 0x7F && c != '"' && !isWord ? std::optional(c) : std::nullopt;
}

CsvWriter::CsvWriter(int descriptor) : descriptor_(descriptor) {}

void CsvWriter::field(std::string_view text) {
    if (!isFirst_) {
        pending_ += ',';
    }
    isFirst_ = false;
    if (text.find_first_of(",\n\r\"") == std::string_view::npos) {
        pending_ += text;
        return;
    }
    pending_ += '"';
    for (const char c : text) {
        pending_.append(c == '"' ? 2 : 1, c);
    }
    pending_ += '"';
}

void CsvWriter::endRecord() {
    constexpr std::size_t enough = std::size_t{1} << 16;
    if (pending_.size() == recordStart_) {
        pending_ += "\"\""; // one blank value: an empty line would not be a record
    }
    pending_ += '\n';
    isFirst_ = true;
    recordStart_ = pending_.size();
    if (pending_.size() >= enough) {
        flush();
    }
}

void CsvWriter::flush() {
    std::string_view left = pending_;
    while (!left.empty()) {
        const ssize_t put = ::write(descriptor_, left.data(), left.size());
        if (put >= 0) {
            left.remove_prefix(static_cast<std::size_t>(put));
        } else if (errno == EPIPE) {
            throw OutputClosed();
        } else if (errno != EINTR) {
            throw Failure(std::string("no se puede escribir la salida: ") + dbase::systemReason(errno));
        }
    }
    pending_.clear();
    recordStart_ = 0;
}

} // namespace loading
