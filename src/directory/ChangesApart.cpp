// Copies rows into blocks, and plays those to the tables.
#include "directory/ChangesApart.h"

#include <stdexcept>

namespace ambrel::directory {
namespace {

constexpr std::size_t blockBytes = std::size_t{1} << 17; // little enough for a processor's cache

} // namespace

ChangesApart::ChangesApart(TableChanges& target)
    : target_(target),
      thread_(relay_.start([this] { relay_.useAll([this](const Block& block) { carryOut(block); }); })) {}

ChangesApart::~ChangesApart() {
    relay_.fail(std::make_exception_ptr(std::runtime_error("stopped"))); // seen by that thread alone
}

void ChangesApart::add(DirectoryTable table, std::span<const char> row) {
    pass({Kind::Addition, table, 0, row.size()}, row, {});
}

void ChangesApart::change(DirectoryTable table, dbase::RecordNumber number, std::span<const char> before,
                          std::span<const char> after) {
    pass({Kind::Change, table, number, before.size()}, before, after);
}

void ChangesApart::erase(DirectoryTable table, dbase::RecordNumber number, std::span<const char> row) {
    pass({Kind::Erasure, table, number, row.size()}, row, {});
}

void ChangesApart::pass(const Change& change, std::span<const char> before, std::span<const char> after) {
    if (block_ == nullptr) {
        block_ = &relay_.toFill();
        block_->changes.clear();
        block_->bytes.clear();
    }
    block_->changes.push_back(change);
    block_->bytes.insert(block_->bytes.end(), before.begin(), before.end());
    block_->bytes.insert(block_->bytes.end(), after.begin(), after.end());
    if (block_->bytes.size() >= blockBytes) {
        block_ = nullptr;
        relay_.passOn();
    }
}

void ChangesApart::carryOut(const Block& block) {
    std::span<const char> bytes = block.bytes;
    const auto take = [&](std::size_t size) {
        const std::span<const char> row = bytes.first(size);
        bytes = bytes.subspan(size);
        return row;
    };
    for (const Change& change : block.changes) {
        const std::span<const char> row = take(change.size);
        switch (change.kind) {
        case Kind::Addition:
            target_.add(change.table, row);
            break;
        case Kind::Change:
            target_.change(change.table, change.number, row, take(change.size));
            break;
        case Kind::Erasure:
            target_.erase(change.table, change.number, row);
            break;
        }
    }
}

void ChangesApart::finish() {
    if (block_ != nullptr) {
        block_ = nullptr;
        relay_.passOn();
    }
    relay_.end();
    thread_.join();
    relay_.requireSuccess();
}

} // namespace ambrel::directory
