// Reads and writes records by number, and maintains the count in the header.
#include "dbase/dbf/table_file.h"

#include <algorithm>

#include "dbase/dbf/dates.h"
#include "dbase/dbf/table_header.h"
#include "dbase/system/bytes.h"
#include "dbase/system/error.h"

namespace dbase {

TableFile::TableFile(std::unique_ptr<File> file) : file_(std::move(file)) {
    knownSize_ = file_->size();
    if (knownSize_ >= maxFileSize) {
        throw Error(ErrorCode::TooLarge, path(),
                    "el fichero tiene 2 GiB o más; no es una tabla que se pueda usar");
    }
    if (knownSize_ < dbf::fixedSize) {
        throw Error(ErrorCode::BadTable, path(),
                    "el fichero está cortado: tiene " + std::to_string(knownSize_) +
                        " bytes y la cabecera necesita 32");
    }
    std::vector<char> header(dbf::fixedSize);
    file_->read(0, header);
    const std::size_t length = announcedHeaderLength(header, path());
    header.resize(static_cast<std::size_t>(std::min<std::uint64_t>(length, knownSize_)));
    file_->read(0, header);
    HeaderCounts counts;
    schema_ = decodeHeader(header, counts, path());
    buffer_.resize(schema_.recordLength);
}

bool TableFile::reaches(std::uint64_t end) const {
    if (end <= knownSize_) {
        return true;
    }
    knownSize_ = std::min(file_->size(), maxFileSize); // a view ends there, however far the file has grown
    return end <= knownSize_;
}

std::uint32_t TableFile::announcedCount() const {
    if (const char* view = file_->view()) {
        return load32(view + dbf::records);
    }
    char bytes[4];
    file_->read(dbf::records, bytes);
    return load32(bytes);
}

RecordNumber TableFile::recordCount() const {
    if (pending_ != nullptr && pending_->lastAdded() != 0) {
        return pending_->lastAdded();
    }
    const std::uint32_t announced = announcedCount();
    if (announced == 0 || reaches(offsetOf(announced) + schema_.recordLength)) {
        return announced;
    }
    return static_cast<RecordNumber>(
        (knownSize_ - std::min<std::uint64_t>(knownSize_, schema_.headerLength)) / schema_.recordLength);
}

bool TableFile::isRecordAt(RecordNumber number) const {
    const std::uint64_t offset = offsetOf(number);
    if (!reaches(offset + schema_.recordLength)) {
        return false;
    }
    char mark = 0;
    if (const char* view = file_->view()) {
        mark = view[offset];
    } else {
        file_->read(offset, std::span(&mark, 1));
    }
    return mark == liveMark || mark == deletedMark;
}

bool TableFile::isMiscounted() const {
    const RecordNumber count = recordCount();
    return count != announcedCount() || isRecordAt(count + 1);
}

bool TableFile::recount() {
    RecordNumber count = recordCount();
    while (isRecordAt(count + 1)) {
        ++count;
    }
    if (count == announcedCount()) {
        return false;
    }
    setCount(count);
    return true;
}

void TableFile::confirmReach(std::uint64_t end) const {
    knownSize_ = 0;
    if (!reaches(end)) {
        throw Error(ErrorCode::Io, path(), "otro programa ha cortado el fichero mientras se leía");
    }
}

RecordView TableFile::record(RecordNumber number) const {
    if (pending_ != nullptr) {
        if (const std::span<const char> bytes = pending_->find(number); !bytes.empty()) {
            return {&schema_, bytes, number};
        }
    }
    const std::uint64_t offset = offsetOf(number);
    if (number == 0 || !reaches(offset + schema_.recordLength)) {
        throw Error(ErrorCode::BadTable, path(),
                    "el registro " + std::to_string(number) +
                        " queda fuera del fichero; ejecute \"ambcp comprobar\"");
    }
    if (const char* view = file_->view()) {
        const std::span<const char> bytes(view + offset, schema_.recordLength);
        if (bytes.front() == '\0' || bytes.back() == '\0') { // a file truncated within a page reads like this
            confirmReach(offset + schema_.recordLength);
        }
        return {&schema_, bytes, number};
    }
    file_->read(offset, buffer_);
    return {&schema_, buffer_, number};
}

void TableFile::prefetch(RecordNumber number) const {
    const char* view = file_->view();
    if (view != nullptr && number != 0 && offsetOf(number) + schema_.recordLength <= knownSize_) {
        const char* const begin = view + offsetOf(number);
        const char* const last = begin + schema_.recordLength - 1; // perhaps in a line of its own
        for (const char* at = begin; at < last; at += 64) {
            __builtin_prefetch(at);
        }
        __builtin_prefetch(last);
    }
}

void TableFile::overwrite(RecordNumber number, std::span<const char> bytes) {
    file_->write(offsetOf(number), bytes);
}

void TableFile::writeTail(RecordNumber number, std::span<const char> bytes) {
    std::vector<char> record(bytes.begin(), bytes.end());
    record.push_back(endMark);
    writeTailPiece(offsetOf(number), record);
}

void TableFile::writeTailPiece(std::uint64_t offset, std::span<const char> bytes) {
    if (offset + bytes.size() >= maxFileSize) {
        throw Error(ErrorCode::TooLarge, path(), "la tabla llegaría a 2 GiB; no caben más registros");
    }
    file_->write(offset, bytes);
}

void TableFile::setCount(std::uint32_t count) {
    char bytes[dbf::headerLength - dbf::updated];
    encodeHeaderDate(bytes);
    store32(bytes + (dbf::records - dbf::updated), count);
    file_->rewrite(dbf::updated, bytes);
}

void TableFile::cutTail(std::uint32_t count) {
    const std::uint64_t end = offsetOf(count + 1);
    file_->write(end, std::span<const char>(&endMark, 1));
    file_->resize(end + 1);
    knownSize_ = end + 1;
}

void TableFile::cutTailIfAny(std::uint32_t count) {
    knownSize_ = file_->size();
    if (knownSize_ > offsetOf(count + 1) + 1) {
        cutTail(count);
    }
}

void TableFile::settleEnd(std::uint32_t count) {
    const std::uint64_t end = offsetOf(count + 1);
    knownSize_ = file_->size();
    char mark = 0;
    if (knownSize_ == end + 1) {
        file_->read(end, std::span(&mark, 1));
    }
    if (mark != endMark) {
        cutTail(count);
    }
}

void TableFile::markColumns(const std::vector<bool>& marked) {
    for (std::size_t i = 0; i < marked.size(); ++i) {
        const char flag = marked[i] ? 1 : 0;
        file_->write(dbf::fixedSize + i * dbf::descriptorSize + dbf::columnTagFlag,
                     std::span<const char>(&flag, 1));
    }
}

void TableFile::setHasIndex(bool has) {
    const char flag = has ? 1 : 0;
    file_->write(dbf::indexFlag, std::span<const char>(&flag, 1));
    schema_.hasProductionIndex = has;
}

} // namespace dbase
