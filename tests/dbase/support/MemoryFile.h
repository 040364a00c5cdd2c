// A file that lives in memory, for tests of the engine.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "dbase/system/file.h"

namespace dbase::test {

class MemoryFile;

/// The state of a file apart from its openings: any number of MemoryFiles may share it, one after another or
/// at once.
struct MemoryContent {
    struct Lock {
        const MemoryFile* owner;
        LockRange range;
        LockKind kind;
    };
    std::vector<char> bytes;
    std::vector<Lock> locks;
    std::uint64_t inode = nextInode(); // a copy of the content is another file

private:
    static std::uint64_t nextInode();
};

/// One opening of a content. Has no view, so that the engine goes through read().
class MemoryFile final : public File {
public:
    explicit MemoryFile(std::shared_ptr<MemoryContent> content, std::string path = "MEMORIA.DBF",
                        bool writable = true);
    ~MemoryFile() override;

    const std::string& path() const override { return path_; }
    bool isWritable() const override { return writable_; }
    std::uint64_t size() const override { return content_->bytes.size(); }
    FileStatus status() const override;
    void read(std::uint64_t offset, std::span<char> bytes) const override;
    void write(std::uint64_t offset, std::span<const char> bytes) override;
    void resize(std::uint64_t size) override;
    void sync() override {}
    bool tryLock(LockRange range, LockKind kind) override;
    void unlock(LockRange range) noexcept override;
    bool isLockedByOthers(LockRange range) const override;

private:
    std::shared_ptr<MemoryContent> content_;
    std::string path_;
    bool writable_;
};

} // namespace dbase::test
