// Files of a network folder as a workstation sees them.
#include "RemoteFile.h"

#include <algorithm>
#include <span>
#include <utility>

#include "dbase/lock/locks.h"
#include "dbase/system/error.h"

namespace dbase::test {

namespace {
constexpr std::uint64_t pieceBytes = 512; // that arrive together, like the pages of a real client
} // namespace

void RemoteStation::switchOff() {
    isOff = true;
    for (RemoteFile* file : files) {
        file->breakUp();
        std::ranges::shuffle(file->unsent_, chance);
        file->unsent_.resize(std::uniform_int_distribution<std::size_t>(0, file->unsent_.size())(chance));
        file->send();
        file->server_->unlock(everyLock);
    }
}

bool RemoteStation::hasUnsent() const {
    return std::ranges::any_of(files, [](const RemoteFile* file) { return !file->unsent_.empty(); });
}

bool RemoteStation::isOnAfterStep() {
    if (!isOff && ++steps == lastStep) {
        switchOff();
    }
    return !isOff;
}

void RemoteStation::requireOn(bool isOn, const std::string& path) {
    if (!isOn) {
        throw Error(ErrorCode::Io, path, "el puesto se ha apagado");
    }
}

RemoteFile::RemoteFile(std::shared_ptr<MemoryContent> content, std::string path,
                       std::shared_ptr<RemoteStation> station)
    : content_(std::move(content)), station_(std::move(station)),
      server_(std::make_unique<MemoryFile>(content_, std::move(path))), remembered_(content_->bytes) {
    station_->files.push_back(this);
}

RemoteFile::~RemoteFile() {
    std::erase(station_->files, this);
    if (!station_->isOff) {
        send();
    }
}

void RemoteFile::send() {
    for (const Write& write : unsent_) {
        server_->write(write.offset, write.bytes);
    }
    unsent_.clear();
}

void RemoteFile::breakUp() {
    for (const Write& write : std::exchange(unsent_, {})) {
        const std::uint64_t end = write.offset + write.bytes.size();
        for (std::uint64_t at = write.offset; at < end;) {
            const std::uint64_t next = std::min(end, (at / pieceBytes + 1) * pieceBytes);
            const auto piece = std::span(write.bytes).subspan(at - write.offset, next - at);
            unsent_.push_back({at, {piece.begin(), piece.end()}});
            at = next;
        }
    }
}

void RemoteFile::read(std::uint64_t offset, std::span<char> bytes) const {
    if (offset + bytes.size() > remembered_.size()) {
        throw Error(ErrorCode::Io, path(), "el fichero termina antes de lo esperado");
    }
    std::copy_n(remembered_.begin() + static_cast<std::ptrdiff_t>(offset), bytes.size(), bytes.begin());
}

void RemoteFile::write(std::uint64_t offset, std::span<const char> bytes) {
    if (!station_->isOff) { // the last one may arrive too
        remembered_.resize(std::max<std::size_t>(remembered_.size(), offset + bytes.size()));
        std::ranges::copy(bytes, remembered_.begin() + static_cast<std::ptrdiff_t>(offset));
        unsent_.push_back({offset, {bytes.begin(), bytes.end()}});
    }
    station_->requireOn(station_->isOnAfterStep(), path());
}

// A change of size goes to the server at once, after all earlier writes.
void RemoteFile::resize(std::uint64_t size) {
    station_->requireOn(station_->isOnAfterStep(), path());
    send();
    server_->resize(size);
    remembered_.resize(size);
}

void RemoteFile::sync() {
    station_->requireOn(station_->isOnAfterStep(), path());
    send();
}

bool RemoteFile::tryLock(LockRange range, LockKind kind) {
    station_->requireOn(!station_->isOff, path());
    send();
    if (!server_->tryLock(range, kind)) {
        return false;
    }
    remembered_ = content_->bytes;
    return true;
}

void RemoteFile::unlock(LockRange range) noexcept {
    if (station_->isOnAfterStep()) {
        send();
        server_->unlock(range);
    }
}

std::unique_ptr<File> RemoteJournal::openExisting() {
    return name_->content ? std::make_unique<RemoteFile>(name_->content, "MEMORIA.AMJ", station_) : nullptr;
}

std::unique_ptr<File> RemoteJournal::create() {
    name_->content = std::make_shared<MemoryContent>();
    return openExisting();
}

std::unique_ptr<Table> openRemote(const MemoryTable& stored, const std::shared_ptr<RemoteStation>& station) {
    auto records = std::make_unique<RemoteFile>(stored.records, "MEMORIA.DBF", station);
    holdLock(*records, presenceLock, LockKind::Shared); // as every opener of a table by its name does
    auto index = stored.index->bytes.empty()
                     ? nullptr
                     : std::make_unique<RemoteFile>(stored.index, "MEMORIA.MDX", station);
    return std::make_unique<Table>(std::move(records), std::move(index), std::string(),
                                   std::make_unique<RemoteJournal>(stored.journal, station));
}

} // namespace dbase::test
