// A file with changes that are kept in memory.
#pragma once

#include <array>
#include <deque>
#include <functional>
#include <vector>

#include "dbase/system/file.h"

namespace dbase {

/// Reads as another file in which everything has been done that was done to this one; the other one stays as
/// it is. A file that nobody else has: its locks exclude nobody. Once the changes take up too much memory, or
/// the file shrinks, it goes on in a copy.
class OverlayFile final : public File {
public:
    static constexpr std::size_t blockBytes = 512;
    using Block = std::array<char, blockBytes>;
    using BlockNumber = std::uint32_t; // from 0, of its place in the file

    /// `makeCopy`: an empty file, asked for at most once. `mostBlocks`: that may be kept in memory.
    OverlayFile(std::unique_ptr<File> base, std::function<std::unique_ptr<File>()> makeCopy,
                std::size_t mostBlocks);

    /// Nothing is kept in memory any more.
    [[nodiscard]] bool isCopied() const { return copy_ != nullptr; }
    void moveToCopy();
    /// The file as it is without the changes.
    [[nodiscard]] const File& below() const { return *base_; }
    /// Visits the changed blocks in their order in the file. Bytes beyond its end are 0.
    using Visit = std::function<void(BlockNumber, std::span<const char, blockBytes>)>;
    void forEachChanged(const Visit& visit) const;

    [[nodiscard]] const std::string& path() const override { return base_->path(); }
    [[nodiscard]] bool isWritable() const override { return true; }
    [[nodiscard]] std::uint64_t size() const override { return copy_ ? copy_->size() : size_; }
    [[nodiscard]] FileStatus status() const override { return base_->status(); }
    void read(std::uint64_t offset, std::span<char> bytes) const override;
    void write(std::uint64_t offset, std::span<const char> bytes) override;
    void resize(std::uint64_t size) override;
    void sync() override;
    void beginSync() override;
    [[nodiscard]] const char* view() const override { return copy_ ? copy_->view() : nullptr; }
    [[nodiscard]] bool viewIsTorn() const override { return copy_ && copy_->viewIsTorn(); }
    [[nodiscard]] bool tryLock(LockRange, LockKind) override { return true; }
    void unlock(LockRange) noexcept override {}
    [[nodiscard]] bool isLockedByOthers(LockRange) const override { return false; }

private:
    [[nodiscard]] const Block* changed(std::uint64_t offset) const;
    [[nodiscard]] Block& toChange(std::uint64_t offset);
    void readBelow(std::uint64_t offset, std::span<char> bytes) const;

    std::unique_ptr<File> base_, copy_;
    std::function<std::unique_ptr<File>()> makeCopy_;
    std::size_t mostBlocks_;
    std::uint64_t baseSize_, size_;
    std::deque<Block> blocks_;
    std::vector<std::uint32_t> places_; // of each block of the file among those, from 1; 0: not changed
};

} // namespace dbase
