// Folders in memory that log their changes.
#include "RecordingFolders.h"

#include <algorithm>

#include "dbase/system/error.h"

namespace dbase::test {

namespace {

using Kind = FolderEvent::Kind;

class LoggedFile final : public File {
public:
    LoggedFile(std::unique_ptr<File> file, FileStatus status, std::shared_ptr<RecordingFolders::Recorder> log)
        : file_(std::move(file)), status_(std::move(status)), number_(status_.inode), log_(std::move(log)) {}

    const std::string& path() const override { return file_->path(); }
    bool isWritable() const override { return file_->isWritable(); }
    bool isRemote() const override { return log_->missing.has_value(); }
    std::uint64_t size() const override { return file_->size(); }
    FileStatus status() const override { return status_; }
    void read(std::uint64_t offset, std::span<char> bytes) const override { file_->read(offset, bytes); }
    void write(std::uint64_t offset, std::span<const char> bytes) override {
        log_->before();
        file_->write(offset, bytes);
        log_->events.push_back(
            {.kind = Kind::Write, .file = number_, .offset = offset, .bytes = {bytes.begin(), bytes.end()}});
    }
    void resize(std::uint64_t size) override {
        log_->before();
        file_->resize(size);
        log_->events.push_back({.kind = Kind::Resize, .file = number_, .offset = size});
    }
    void sync() override {
        log_->before();
        log_->events.push_back({.kind = Kind::Sync, .file = number_});
    }
    bool tryLock(LockRange range, LockKind kind) override { return file_->tryLock(range, kind); }
    void unlock(LockRange range) noexcept override { file_->unlock(range); }
    bool isLockedByOthers(LockRange range) const override { return file_->isLockedByOthers(range); }

private:
    std::unique_ptr<File> file_;
    FileStatus status_;
    FileNumber number_;
    std::shared_ptr<RecordingFolders::Recorder> log_;
};

bool changesNames(const FolderEvent& event) {
    return event.kind == Kind::Make || event.kind == Kind::Rename || event.kind == Kind::Remove;
}

} // namespace

// --- Image

void FolderImage::apply(const FolderEvent& event) {
    switch (event.kind) {
    case Kind::Make:
        names[event.name] = event.file;
        contents[event.file] = {};
        break;
    case Kind::Write: {
        Bytes& content = contents.at(event.file);
        const auto at = static_cast<std::size_t>(event.offset);
        content.resize(std::max(content.size(), at + event.bytes.size()));
        std::ranges::copy(event.bytes, content.begin() + static_cast<std::ptrdiff_t>(at));
        break;
    }
    case Kind::Resize:
        contents.at(event.file).resize(static_cast<std::size_t>(event.offset));
        break;
    case Kind::Rename:
        names[event.newName] = names.at(event.name);
        names.erase(event.name);
        break;
    case Kind::Remove:
        names.erase(event.name);
        break;
    case Kind::Sync:
    case Kind::SyncFolder:
        break;
    }
}

void FolderImage::writeInto(const std::string& folder) const {
    for (const auto& [path, number] : names) {
        writeFile(folder + path.substr(path.rfind('/')), contents.at(number));
    }
}

// --- Folders

RecordingFolders::RecordingFolders(const FolderImage& image) {
    for (const auto& [path, number] : image.names) {
        auto content = std::make_shared<MemoryContent>();
        content->bytes = image.contents.at(number);
        names_[path] = {number, std::move(content)};
        next_ = std::max(next_, number + 1);
    }
}

std::uint64_t RecordingFolders::newDevice() {
    static std::uint64_t last = 0;
    return ++last;
}

std::vector<std::string> RecordingFolders::namesIn(const std::string& folder) const {
    std::vector<std::string> names;
    for (const auto& [path, entry] : names_) {
        if (path.substr(0, path.rfind('/')) == folder) {
            names.push_back(path.substr(path.rfind('/') + 1));
        }
    }
    return names;
}

std::unique_ptr<File> RecordingFolders::open(const std::string& path, OpenMode mode) {
    onOpening(path);
    if (!exists(path)) {
        if (mode != OpenMode::Create) {
            throw Error(ErrorCode::NotFound, path, "no existe");
        }
        log_->before();
        names_[path] = {next_, std::make_shared<MemoryContent>()};
        changed({.kind = Kind::Make, .file = next_, .name = path});
        ++next_;
    }
    const Entry& entry = names_.at(path);
    auto file = std::make_unique<LoggedFile>(
        std::make_unique<MemoryFile>(entry.content, path, mode != OpenMode::ReadOnly), *statusOf(path), log_);
    if (mode == OpenMode::Create && file->size() > 0) {
        file->resize(0);
    }
    return file;
}

void RecordingFolders::rename(const std::string& from, const std::string& to) {
    log_->before();
    const auto renamed = names_.find(from);
    if (renamed == names_.end()) {
        throw Error(ErrorCode::Io, to, "no existe");
    }
    names_.insert_or_assign(to, renamed->second);
    names_.erase(from);
    changed({.kind = Kind::Rename, .name = from, .newName = to});
}

void RecordingFolders::remove(const std::string& path) {
    if (exists(path)) {
        log_->before();
        names_.erase(path);
        changed({.kind = Kind::Remove, .name = path});
    }
}

// --- Companions; permissions play no part here

std::optional<FileStatus> RecordingFolders::statusOf(const std::string& path) const {
    const auto found = names_.find(path);
    return found == names_.end() ? std::nullopt : std::optional(FileStatus{device_, found->second.number});
}

std::unique_ptr<File> RecordingFolders::openCompanion(const std::string& path) {
    return exists(path) && log_->missing != path ? open(path, OpenMode::ReadWrite) : nullptr;
}

std::unique_ptr<File> RecordingFolders::createCompanion(const std::string& path, const std::string&) {
    if (log_->missing == path) {
        log_->missing.emplace();
    }
    return exists(path) ? nullptr : open(path, OpenMode::Create);
}

std::unique_ptr<File> RecordingFolders::createTwin(const std::string& path, const std::string&) {
    if (exists(path)) {
        throw Error(ErrorCode::Io, path, "ya existe");
    }
    return open(path, OpenMode::Create);
}

bool RecordingFolders::leadsTo(const std::string& path, const FileStatus& file, bool) const {
    const std::optional<FileStatus> named = statusOf(path);
    return named && named->isSameFile(file);
}

bool RecordingFolders::isStillThere(const File& file) const {
    const std::optional<FileStatus> named = statusOf(file.path());
    return named && named->isSameFile(file.status());
}

void RecordingFolders::syncFolderOf(const std::string& path) {
    log_->before();
    for (FolderEvent& event : log_->events) {
        event.reachedDisk = event.reachedDisk || changesNames(event);
    }
    changed({.kind = Kind::SyncFolder, .name = path});
}

FolderImage RecordingFolders::image() const {
    FolderImage image;
    for (const auto& [path, entry] : names_) {
        image.names[path] = entry.number;
        image.contents[entry.number] = entry.content->bytes;
    }
    return image;
}

} // namespace dbase::test
