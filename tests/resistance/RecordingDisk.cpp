// A disk that logs every change, and what a power failure leaves of it.
#include "RecordingDisk.h"

#include <algorithm>

#include "dbase/lock/locks.h"
#include "dbase/table/empty_table.h"

namespace dbase::test {

namespace {

class RecordingFile final : public File {
public:
    RecordingFile(std::unique_ptr<File> file, DiskFile which, std::shared_ptr<DiskLog> log)
        : file_(std::move(file)), which_(which), log_(std::move(log)) {}

    const std::string& path() const override { return file_->path(); }
    bool isWritable() const override { return file_->isWritable(); }
    std::uint64_t size() const override { return file_->size(); }
    FileStatus status() const override { return file_->status(); }
    void read(std::uint64_t offset, std::span<char> bytes) const override { file_->read(offset, bytes); }
    void write(std::uint64_t offset, std::span<const char> bytes) override {
        file_->write(offset, bytes);
        log_->push_back({DiskEvent::Kind::Write, which_, offset, {bytes.begin(), bytes.end()}});
    }
    void resize(std::uint64_t size) override {
        file_->resize(size);
        log_->push_back({DiskEvent::Kind::Resize, which_, size});
    }
    void sync() override {
        file_->sync();
        log_->push_back({DiskEvent::Kind::Sync, which_});
    }
    bool tryLock(LockRange range, LockKind kind) override { return file_->tryLock(range, kind); }
    void unlock(LockRange range) noexcept override { file_->unlock(range); }
    bool isLockedByOthers(LockRange range) const override { return file_->isLockedByOthers(range); }

private:
    std::unique_ptr<File> file_;
    DiskFile which_;
    std::shared_ptr<DiskLog> log_;
};

class RecordingJournal final : public JournalPlace {
public:
    RecordingJournal(std::shared_ptr<MemoryName> name, std::shared_ptr<DiskLog> log)
        : place_(std::move(name)), log_(std::move(log)) {}

    std::unique_ptr<File> openExisting() override { return recorded(place_.openExisting()); }
    std::unique_ptr<File> create() override {
        log_->push_back({DiskEvent::Kind::Create, DiskFile::Journal});
        return recorded(place_.create());
    }
    void remove() override {
        place_.remove();
        log_->push_back({DiskEvent::Kind::Remove, DiskFile::Journal});
    }
    std::string setAside() override {
        std::string path = place_.setAside();
        log_->push_back({DiskEvent::Kind::Remove, DiskFile::Journal});
        return path;
    }

private:
    [[nodiscard]] std::unique_ptr<File> recorded(std::unique_ptr<File> file) const {
        return file ? std::make_unique<RecordingFile>(std::move(file), DiskFile::Journal, log_) : nullptr;
    }

    MemoryJournal place_;
    std::shared_ptr<DiskLog> log_;
};

void change(Bytes& content, const DiskEvent& event) {
    if (event.kind == DiskEvent::Kind::Write) {
        put(content, event.offset, event.bytes);
    } else if (event.kind == DiskEvent::Kind::Resize) {
        content.resize(static_cast<std::size_t>(event.offset));
    }
}

} // namespace

// --- Image

DiskImage DiskImage::of(const MemoryTable& stored) {
    return {stored.records->bytes, stored.index->bytes,
            stored.journal->content ? std::optional(stored.journal->content->bytes) : std::nullopt};
}

MemoryTable DiskImage::asTable() const {
    MemoryTable stored(records, index);
    if (journal) {
        stored.journal->content = std::make_shared<MemoryContent>();
        stored.journal->content->bytes = *journal;
    }
    return stored;
}

Bytes& DiskImage::contentOf(DiskFile file) {
    if (file == DiskFile::Journal) {
        return journal.value();
    }
    return file == DiskFile::Records ? records : index;
}

void DiskImage::apply(const DiskEvent& event) {
    switch (event.kind) {
    case DiskEvent::Kind::Create:
        journal.emplace();
        break;
    case DiskEvent::Kind::Remove:
        journal.reset();
        break;
    case DiskEvent::Kind::Write:
    case DiskEvent::Kind::Resize:
        change(contentOf(event.file), event);
        break;
    case DiskEvent::Kind::Sync:
    case DiskEvent::Kind::Acknowledge:
        break;
    }
}

void DiskImage::applyTorn(const DiskEvent& write, const std::vector<bool>& arrives) {
    std::span<const char> rest = write.bytes;
    std::uint64_t offset = write.offset;
    for (const bool does : arrives) {
        const auto share = rest.first(std::min<std::size_t>(rest.size(), sectorBytes - offset % sectorBytes));
        if (does) {
            put(contentOf(write.file), offset, share);
        }
        offset += share.size();
        rest = rest.subspan(share.size());
    }
}

std::size_t sectorsOf(const DiskEvent& write) {
    if (write.bytes.empty()) {
        return 0;
    }
    return static_cast<std::size_t>((write.offset + write.bytes.size() - 1) / sectorBytes -
                                    write.offset / sectorBytes + 1);
}

std::unique_ptr<Table> openRecorded(const MemoryTable& stored, const std::shared_ptr<DiskLog>& log) {
    const auto opened = [&](const std::shared_ptr<MemoryContent>& content, const char* path, DiskFile which) {
        return std::make_unique<RecordingFile>(std::make_unique<MemoryFile>(content, path), which, log);
    };
    auto records = opened(stored.records, "MEMORIA.DBF", DiskFile::Records);
    holdLock(*records, presenceLock, LockKind::Shared);
    return std::make_unique<Table>(std::move(records), opened(stored.index, "MEMORIA.MDX", DiskFile::Index),
                                   std::string(), std::make_unique<RecordingJournal>(stored.journal, log));
}

void appendRecorded(const MemoryTable& stored, std::span<const char> record,
                    const std::shared_ptr<DiskLog>& log) {
    TableFile records(std::make_unique<RecordingFile>(
        std::make_unique<MemoryFile>(stored.records, "MEMORIA.DBF"), DiskFile::Records, log));
    const RecordNumber number = records.announcedCount() + 1;
    records.writeTail(number, record);
    records.setCount(number);
}

void createRecorded(const MemoryTable& stored, const TableDefinition& definition,
                    const std::shared_ptr<DiskLog>& log) {
    RecordingFile records(std::make_unique<MemoryFile>(stored.records, "MEMORIA.DBF"), DiskFile::Records,
                          log);
    RecordingFile index(std::make_unique<MemoryFile>(stored.index, "MEMORIA.MDX"), DiskFile::Index, log);
    Schema schema;
    schema.columns = definition.columns;
    writeEmptyTable(records, &index, schema, definition.name, definition.tags);
}

// --- Cache

CachingDisk::CachingDisk(DiskImage image)
    : records_(std::move(image.records)), index_(std::move(image.index)) {
    if (image.journal) {
        journal_.emplace(std::move(*image.journal));
    }
}

CachedFile& CachingDisk::of(DiskFile file) {
    if (file == DiskFile::Journal) {
        return journal_.value();
    }
    return file == DiskFile::Records ? records_ : index_;
}

void CachingDisk::apply(const DiskEvent& event) {
    switch (event.kind) {
    case DiskEvent::Kind::Create:
        journal_.emplace();
        isJournalRemoved_ = false;
        break;
    case DiskEvent::Kind::Remove:
        isJournalRemoved_ = true;
        break;
    case DiskEvent::Kind::Acknowledge:
        break;
    case DiskEvent::Kind::Sync:
        of(event.file).sync();
        break;
    case DiskEvent::Kind::Write:
        of(event.file).write(event.offset, event.bytes);
        break;
    case DiskEvent::Kind::Resize:
        of(event.file).resize(event.offset);
        break;
    }
}

DiskImage CachingDisk::survivor(std::mt19937& random) const {
    DiskImage image{records_.survivor(random), index_.survivor(random), std::nullopt};
    if (journal_ && (!isJournalRemoved_ || random() % 2 == 0)) {
        image.journal = journal_->survivor(random);
    }
    return image;
}

} // namespace dbase::test
