// The journal as bytes: its header, its entries and their checksums.
#include "dbase/journal/journal.h"

#include <algorithm>
#include <cstring>
#include <random>

#include "dbase/journal/largest_journal.h"
#include "dbase/lock/locks.h"
#include "dbase/system/bytes.h"
#include "dbase/system/checksum.h"
#include "dbase/system/error.h"

namespace dbase {

namespace {

// Header block.
constexpr std::size_t headerBytes = 512;
constexpr char magic[9] = "AMBJRNL1";
constexpr std::size_t recordLengthOffset = 8, headerLengthOffset = 12, generationOffset = 16;
constexpr std::size_t sessionOffset = 24; // 0, as what follows the boot's identity, in earlier versions
constexpr std::size_t startOffset = 32, startSize = 64;
constexpr std::size_t tableInodeOffset = 96, ownInodeOffset = 104, recordsOffset = 112;
constexpr std::size_t headerSumOffset = headerBytes - 8;

// Entry.
constexpr std::uint32_t entryMagic = 0x454A4D41; // "AMJE"
constexpr std::size_t entryHead = 48;
constexpr std::size_t lengthOffset = 4, entryGeneration = 8, sequenceOffset = 16, counterOffset = 24;
constexpr std::size_t runsOffset = 32, keptOffset = 36, sumOffset = 40;
constexpr std::size_t runHead = 12; // first, rows, whether there are images before

// Allocated on the disk at once, so that a sync has no growth to record; holds some thousand changes.
constexpr std::uint64_t capacity = std::uint64_t{256} << 10;

std::uint64_t newNumber() {
    std::random_device random;
    return (std::uint64_t{random()} << 32 | random()) | 1;
}

std::size_t sizeOf(const JournalEntry& entry) {
    std::size_t size = entryHead;
    for (const RecordRun& run : entry.runs) {
        size += runHead + run.before.size() + run.after.size();
    }
    return size;
}

} // namespace

Journal::Journal(std::unique_ptr<JournalPlace> place, const Schema& schema)
    : place_(std::move(place)), recordLength_(schema.recordLength), headerLength_(schema.headerLength) {}

// --- The file and its header

bool Journal::open() {
    if (!file_) {
        file_ = place_->openExisting();
    }
    return file_ != nullptr;
}

void Journal::close() {
    file_.reset();
    knownSize_ = 0;
    generation_ = 0;
    session_ = 0;
    isJoined_ = false;
}

bool Journal::exists() { return open(); }

bool Journal::reaches(std::uint64_t end) const {
    if (end > knownSize_) {
        knownSize_ = file_->size();
    }
    return end <= knownSize_;
}

bool Journal::look(std::uint64_t offset, std::span<char> bytes) const {
    if (file_->viewIsTorn()) { // another process has truncated the file
        file_->renewView();
        knownSize_ = 0;
    }
    if (!reaches(offset + bytes.size())) {
        return false;
    }
    if (const char* view = file_->view()) {
        std::memcpy(bytes.data(), view + offset, bytes.size()); // without a system call
    } else {
        file_->read(offset, bytes);
    }
    return true;
}

bool Journal::isOfAnotherStart() { return open() && (!readHeader() || startIdentity_ != bootIdentity()); }

bool Journal::readHeader() {
    if (file_->isRemote() && file_->tryLock(exchangeLock, LockKind::Shared)) {
        file_->unlock(exchangeLock);
    }
    char header[headerBytes];
    if (!look(0, header) || std::memcmp(header, magic, 8) != 0 ||
        load64(header + headerSumOffset) != checksum(std::span(header).first(headerSumOffset)) ||
        load32(header + recordLengthOffset) != recordLength_ ||
        load32(header + headerLengthOffset) != headerLength_) {
        return false;
    }
    const std::string_view start(header + startOffset, startSize);
    startIdentity_ = start.substr(0, start.find('\0'));
    session_ = load64(header + sessionOffset);
    origin_ = {load64(header + tableInodeOffset), load32(header + recordsOffset)};
    ownInode_ = load64(header + ownInodeOffset);
    if (load64(header + generationOffset) != generation_) {
        generation_ = load64(header + generationOffset);
        tail_ = headerBytes;
        sequence_ = 0;
        lastKept_ = 0;
    }
    return true;
}

void Journal::writeHeader(const JournalOrigin& origin, std::uint64_t session) {
    const std::uint64_t ownInode = origin.inode == 0 ? 0 : file_->status().inode;
    char header[headerBytes] = {};
    std::memcpy(header, magic, 8);
    store32(header + recordLengthOffset, recordLength_);
    store32(header + headerLengthOffset, headerLength_);
    const std::uint64_t generation = newNumber();
    store64(header + generationOffset, generation);
    const std::string start = bootIdentity().substr(0, startSize - 1);
    std::copy(start.begin(), start.end(), header + startOffset);
    store64(header + sessionOffset, session);
    store64(header + tableInodeOffset, origin.inode);
    store64(header + ownInodeOffset, ownInode);
    store32(header + recordsOffset, origin.records);
    store64(header + headerSumOffset, checksum(std::span(header).first(headerSumOffset)));
    file_->write(0, header);
    file_->sync();
    startIdentity_ = start;
    session_ = session;
    origin_ = origin;
    ownInode_ = ownInode;
    generation_ = generation;
    tail_ = headerBytes;
    sequence_ = 0;
    lastKept_ = 0;
}

bool Journal::join() {
    written_ = 0;
    if (!isJoined_) {
        close(); // the last writer may have removed the one seen before
    }
    if (open() && !file_->isWritable()) {
        throw Error(ErrorCode::AccessDenied, file_->path(), "no hay permiso para escribir en el diario");
    }
    isJoined_ = file_ != nullptr && readHeader();
    return isJoined_;
}

void Journal::begin(const JournalOrigin& origin) {
    close(); // somebody may have removed the one joined before: what has no name is never redone
    if (!open()) {
        file_ = place_->create();
    }
    writeHeader(origin, newNumber());
    isJoined_ = true;
    isSuspect_ = false;
}

void Journal::restart(const JournalOrigin& origin) {
    writeHeader(origin, session_);
    isSuspect_ = false;
}

void Journal::remove() {
    place_->remove();
    close();
}

std::string Journal::setAside() {
    std::string path = place_->setAside();
    close();
    return path;
}

// --- To whom it belongs

// The session decides, unless the journal stayed where it was and the table beside it did not: then the table
// was put back. What was copied together moved together. Records that were on the disk do not get lost. A
// journal without entries changes nothing.
bool Journal::isOfOtherFiles(const JournalOrigin& now, std::optional<std::uint64_t> session) {
    if (!open() || !readHeader() || session_ == 0 || readAt(headerBytes, 0).empty()) {
        return false;
    }
    if ((session && *session != session_) || now.records < origin_.records) {
        return true;
    }
    const bool hasTableMoved = now.inode != origin_.inode, hasMoved = file_->status().inode != ownInode_;
    return origin_.inode != 0 && hasTableMoved != hasMoved;
}

std::optional<RecordNumber> Journal::recordsAtBegin() {
    return open() && readHeader() && session_ != 0 ? std::optional(origin_.records) : std::nullopt;
}

// --- Entries

std::vector<char> Journal::encode(const JournalEntry& entry, bool isKept) const {
    std::vector<char> bytes(entryHead);
    bytes.reserve(sizeOf(entry));
    for (const RecordRun& run : entry.runs) {
        char head[runHead];
        store32(head, run.first);
        store32(head + 4, run.rows);
        store32(head + 8, run.before.empty() ? 0 : 1);
        bytes.insert(bytes.end(), head, head + runHead);
        bytes.insert(bytes.end(), run.before.begin(), run.before.end());
        bytes.insert(bytes.end(), run.after.begin(), run.after.end());
    }
    store32(bytes.data(), entryMagic);
    store32(bytes.data() + lengthOffset, static_cast<std::uint32_t>(bytes.size()));
    store64(bytes.data() + entryGeneration, generation_);
    store64(bytes.data() + sequenceOffset, sequence_);
    store64(bytes.data() + counterOffset, entry.counter);
    store32(bytes.data() + runsOffset, static_cast<std::uint32_t>(entry.runs.size()));
    store32(bytes.data() + keptOffset, isKept ? 1 : 0);
    store64(bytes.data() + sumOffset, checksum(bytes)); // computed with zeros in its own place
    return bytes;
}

std::vector<char> Journal::readAt(std::uint64_t offset, std::uint64_t sequence) const {
    char head[entryHead];
    if (!look(offset, head)) {
        return {};
    }
    const std::uint32_t length = load32(head + lengthOffset);
    if (load32(head) != entryMagic || load64(head + entryGeneration) != generation_ ||
        load64(head + sequenceOffset) != sequence || length < entryHead || offset + length > largestJournal ||
        !reaches(offset + length)) {
        return {};
    }
    std::vector<char> bytes(length);
    if (!look(offset, bytes)) {
        return {};
    }
    const std::uint64_t sum = load64(bytes.data() + sumOffset);
    store64(bytes.data() + sumOffset, 0);
    return sum == checksum(bytes) ? bytes : std::vector<char>();
}

// The checksum proves that encode() produced the bytes, so their structure needs no further checks; only a
// forged entry can contradict itself, and ends the reading.
JournalEntry Journal::decode(std::span<const char> bytes) const {
    JournalEntry entry;
    entry.counter = load64(bytes.data() + counterOffset);
    std::uint32_t runs = load32(bytes.data() + runsOffset);
    for (bytes = bytes.subspan(entryHead); runs > 0 && bytes.size() >= runHead; --runs) {
        RecordRun run;
        run.first = load32(bytes.data());
        run.rows = load32(bytes.data() + 4);
        const bool hasBefore = load32(bytes.data() + 8) != 0;
        bytes = bytes.subspan(runHead);
        const std::uint64_t images = std::uint64_t{run.rows} * recordLength_;
        const bool areNumbers = run.first != 0 && run.rows - 1 <= UINT32_MAX - run.first;
        if (images == 0 || !areNumbers || images * (hasBefore ? 2 : 1) > bytes.size()) {
            break;
        }
        const auto take = [&] {
            const std::span<const char> taken = bytes.first(static_cast<std::size_t>(images));
            bytes = bytes.subspan(taken.size());
            return std::vector<char>(taken.begin(), taken.end());
        };
        if (hasBefore) {
            run.before = take();
        }
        run.after = take();
        entry.runs.push_back(std::move(run));
    }
    return entry;
}

// Other programs may have added entries after ours, or restarted the journal.
void Journal::catchUp() {
    if (!readHeader()) {
        throw Error(ErrorCode::Io, file_->path(),
                    "el diario de la tabla ha cambiado; ciérrela y vuelva a abrirla");
    }
    while (true) {
        const std::vector<char> bytes = readAt(tail_, sequence_);
        if (bytes.empty() || load32(bytes.data() + keptOffset) == 0) {
            return;
        }
        lastKept_ = tail_;
        tail_ += bytes.size();
        ++sequence_;
    }
}

bool Journal::mustRestartFor(const JournalEntry& entry, bool isKept) {
    catchUp();
    if (isSuspect_) {
        return true;
    }
    if (!isKept) {
        return sequence_ > 0;
    }
    return sequence_ > 0 ? tail_ + sizeOf(entry) > capacity : !readAt(tail_, 0).empty();
}

bool Journal::hasLooseEntry() {
    catchUp();
    return !readAt(tail_, sequence_).empty();
}

void Journal::add(const JournalEntry& entry, bool isKept) {
    catchUp();
    const std::vector<char> bytes = encode(entry, isKept);
    if (isKept && !reaches(capacity)) {
        file_->write(knownSize_, std::vector<char>(static_cast<std::size_t>(capacity - knownSize_)));
    }
    written_ = tail_;
    file_->write(tail_, bytes);
    if (isKept) {
        try {
            file_->sync();
        } catch (...) {
            isSuspect_ = true;
            throw;
        }
        lastKept_ = tail_;
        tail_ += bytes.size();
        ++sequence_;
    } else if (file_->isRemote()) { // if this machine crashes, the others redo it
        file_->sync();
    }
}

void Journal::withdraw() noexcept {
    if (written_ == 0) {
        return;
    }
    try {
        if (lastKept_ == written_) {
            tail_ = written_;
            --sequence_;
            lastKept_ = 0;
            const char nothing[entryHead] = {}; // without its head it is not an entry
            file_->write(written_, nothing);
        } else { // an empty one still shows that there were loose entries
            file_->write(written_, encode({}, false));
        }
    } catch (...) {
        // The entry stays: if the machine crashes now, the change is redone instead of dropped.
    }
    written_ = 0;
}

std::vector<JournalEntry> Journal::keptEntries() {
    std::vector<JournalEntry> entries;
    if (!open() || !readHeader()) {
        return entries;
    }
    std::uint64_t offset = headerBytes;
    for (std::uint64_t sequence = 0;; ++sequence) {
        const std::vector<char> bytes = readAt(offset, sequence);
        if (bytes.empty() || load32(bytes.data() + keptOffset) == 0) {
            return entries;
        }
        entries.push_back(decode(bytes));
        offset += bytes.size();
    }
}

std::optional<JournalEntry> Journal::lastEntry() {
    if (!open() || !readHeader()) {
        return std::nullopt;
    }
    catchUp();
    std::vector<char> bytes = readAt(tail_, sequence_);
    if (bytes.empty() && lastKept_ != 0) {
        bytes = readAt(lastKept_, sequence_ - 1);
    }
    return bytes.empty() ? std::nullopt : std::optional(decode(bytes));
}

} // namespace dbase
