// Files of a network folder as a workstation sees them: cached, refreshed when a lock is taken on them, and
// sent when one is released.
#pragma once

#include <functional>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "MemoryFile.h"
#include "MemoryJournal.h"
#include "StoredTable.h"
#include "dbase/table/table.h"

namespace dbase::test {

class RemoteFile;

/// A workstation, and the moment at which it is switched off.
struct RemoteStation {
    static constexpr std::size_t never = 0;

    bool tells = true;              // whether its files say that they lie on another machine
    std::size_t lastStep = never;   // the step at which it is switched off, counted over its files from 1
    std::mt19937 chance;            // chooses which of the unsent bytes have arrived then
    std::vector<RemoteFile*> files; // the files that it has open
    std::size_t steps = 0;          // writes, syncs and lock releases so far
    bool isOff = false;

    [[nodiscard]] bool hasUnsent() const;
    /// Each unsent page arrives or does not, independently; the locks are released.
    void switchOff();
    /// Counts a step; false when the workstation is off.
    bool isOnAfterStep();
    /// Errors: Error(Io) when it is off.
    static void requireOn(bool isOn, const std::string& path);
};

/// One opening of a content by a workstation, with the workstation's cache of it.
class RemoteFile final : public File {
public:
    RemoteFile(std::shared_ptr<MemoryContent> content, std::string path,
               std::shared_ptr<RemoteStation> station);
    ~RemoteFile() override;

    const std::string& path() const override { return server_->path(); }
    bool isWritable() const override { return true; }
    bool isRemote() const override { return station_->tells; }
    std::uint64_t size() const override { return remembered_.size(); }
    FileStatus status() const override { return server_->status(); }
    void read(std::uint64_t offset, std::span<char> bytes) const override;
    void write(std::uint64_t offset, std::span<const char> bytes) override;
    void resize(std::uint64_t size) override;
    void sync() override;
    bool tryLock(LockRange range, LockKind kind) override;
    void unlock(LockRange range) noexcept override;
    bool isLockedByOthers(LockRange range) const override { return server_->isLockedByOthers(range); }

private:
    friend RemoteStation;
    struct Write {
        std::uint64_t offset;
        std::vector<char> bytes;
    };
    void send();
    void breakUp();

    std::shared_ptr<MemoryContent> content_;
    std::shared_ptr<RemoteStation> station_;
    std::unique_ptr<MemoryFile> server_;
    std::vector<char> remembered_;
    std::vector<Write> unsent_;
};

class RemoteJournal final : public JournalPlace {
public:
    RemoteJournal(std::shared_ptr<MemoryName> name, std::shared_ptr<RemoteStation> station)
        : name_(std::move(name)), station_(std::move(station)) {}

    std::unique_ptr<File> openExisting() override;
    std::unique_ptr<File> create() override;
    void remove() override { name_->content.reset(); }
    std::string setAside() override {
        name_->aside = std::exchange(name_->content, nullptr);
        return "MEMORIA.AMJ.apartado";
    }

private:
    std::shared_ptr<MemoryName> name_;
    std::shared_ptr<RemoteStation> station_;
};

/// A table of a network folder, opened by a workstation.
[[nodiscard]] std::unique_ptr<Table> openRemote(const MemoryTable& stored,
                                                const std::shared_ptr<RemoteStation>& station);

} // namespace dbase::test
