// A file, and a journal's place, that fail when told to.
#pragma once

#include <functional>
#include <limits>
#include <memory>

#include "dbase/journal/journal_place.h"
#include "dbase/system/error.h"
#include "dbase/system/file.h"

namespace dbase::test {

/// When and how the files that share it fail. Operations are counted over all of them, from 1.
struct Faults {
    static constexpr std::size_t never = 0;

    std::size_t failingWrite = never; // writes and changes of size
    std::size_t failingRead = never;
    std::size_t failingSync = never;
    std::size_t failingJournalStep = never; // opening, creating and removing a journal
    ErrorCode code = ErrorCode::Io;         // of the failing operation
    bool keepsFailing = false;              // everything of the same kind after the failing one fails too
    bool tearsWrite = false;                // the first half of the failing write is written
    std::uint64_t largestSize =
        std::numeric_limits<std::uint64_t>::max(); // of each file: larger ones meet a full disk
    std::function<void()> insteadOfFailing;        // such as the death of the process

    std::size_t writes = 0, reads = 0, syncs = 0, journalSteps = 0; // so far

    /// Whether the operation with this number fails, `failing` being the one that should.
    [[nodiscard]] bool strike(std::size_t number, std::size_t failing) const;
};

class FaultyFile final : public File {
public:
    FaultyFile(std::unique_ptr<File> file, std::shared_ptr<Faults> faults)
        : file_(std::move(file)), faults_(std::move(faults)) {}

    const std::string& path() const override { return file_->path(); }
    bool isWritable() const override { return file_->isWritable(); }
    std::uint64_t size() const override { return file_->size(); }
    FileStatus status() const override { return file_->status(); }
    void read(std::uint64_t offset, std::span<char> bytes) const override;
    void write(std::uint64_t offset, std::span<const char> bytes) override;
    void resize(std::uint64_t size) override;
    void sync() override;
    bool tryLock(LockRange range, LockKind kind) override { return file_->tryLock(range, kind); }
    void unlock(LockRange range) noexcept override { file_->unlock(range); }
    bool isLockedByOthers(LockRange range) const override { return file_->isLockedByOthers(range); }

private:
    [[noreturn]] void fail(ErrorCode code) const;

    std::unique_ptr<File> file_;
    std::shared_ptr<Faults> faults_;
};

/// Its files share the faults.
class FaultyJournal final : public JournalPlace {
public:
    FaultyJournal(std::unique_ptr<JournalPlace> place, std::shared_ptr<Faults> faults)
        : place_(std::move(place)), faults_(std::move(faults)) {}

    std::unique_ptr<File> openExisting() override;
    std::unique_ptr<File> create() override;
    void remove() override;
    std::string setAside() override;

private:
    void step() const;

    std::unique_ptr<JournalPlace> place_;
    std::shared_ptr<Faults> faults_;
};

} // namespace dbase::test
