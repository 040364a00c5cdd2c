// Changes that a thread of their own carries out.
#pragma once

#include <thread>
#include <vector>

#include "directory/BlockRelay.h"
#include "directory/TableChanges.h"

namespace ambrel::directory {

/// Passes changes on to others, which are carried out in their order while more are thought out. Until
/// finish() or the end of this object nobody else may use those.
class ChangesApart final : public TableChanges {
public:
    explicit ChangesApart(TableChanges& target);
    /// Without finish(), drops what has not been carried out yet.
    ~ChangesApart() override;

    // Errors: what an earlier change has thrown.
    void add(DirectoryTable table, std::span<const char> row) override;
    void change(DirectoryTable table, dbase::RecordNumber number, std::span<const char> before,
                std::span<const char> after) override;
    void erase(DirectoryTable table, dbase::RecordNumber number, std::span<const char> row) override;
    /// Waits until all is carried out. Errors: what that has thrown.
    void finish();

private:
    enum class Kind { Addition, Change, Erasure };
    struct Change {
        Kind kind;
        DirectoryTable table;
        dbase::RecordNumber number;
        std::size_t size; // of its record, or both, in the bytes of the block
    };
    struct Block {
        std::vector<Change> changes;
        std::vector<char> bytes;
    };
    void pass(const Change& change, std::span<const char> before, std::span<const char> after);
    void carryOut(const Block& block);

    /// Rather many: changes come in bursts.
    static constexpr std::size_t blockCount = 64;

    TableChanges& target_;
    BlockRelay<Block, blockCount> relay_;
    Block* block_ = nullptr; // the one that is being filled
    std::jthread thread_;    // last: begins when everything else is there
};

} // namespace ambrel::directory
