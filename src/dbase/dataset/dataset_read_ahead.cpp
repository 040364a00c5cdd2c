// Reading ahead: the rows after the current one are read together with it.
#include "dbase/dataset/dataset_read_ahead.h"

#include "dbase/dataset/row_order.h"
#include "dbase/system/clock.h"
#include "dbase/system/error.h"

namespace dbase {

bool Dataset::takeAhead() {
    ReadAhead& ahead = *ahead_;
    if (ahead.next == ahead.rows.size()) {
        return false;
    }
    open_->giveWay();
    if (ahead.previous != record_ || open_->changeCounter() != ahead.counter ||
        open_->records().recordCount() != ahead.recordCount ||
        coarseNow() - ahead.taken > ReadAhead::shelfLife) {
        return false;
    }
    const ReadAhead::Row& row = ahead.rows[ahead.next++];
    if (row.leaf != ahead.leaf) {
        ahead.leaf = row.leaf;
        *spot_->cursor = ahead.later[row.leaf - 1];
    }
    const char* bytes = ahead.bytes.data() + row.offset;
    const std::size_t length = row_.size();
    spot_->cursor->moveInLeaf(row.slot, row.record, {bytes + length, order_->tag()->keyLength});
    std::copy_n(bytes, length, row_.data());
    record_ = ahead.previous = row.record;
    return true;
}

/// Reads the visible rows that follow in the same leaf, and in the next ones. Called inside Table::read().
void Dataset::fillAhead(const Spot& from, std::size_t leaves) {
    ReadAhead& ahead = *ahead_;
    ahead.clear();
    ahead.leaves = leaves;
    ahead.previous = from.record;
    ahead.counter = open_->changeCounter();
    ahead.recordCount = open_->records().recordCount();
    ahead.taken = coarseNow();
    if (ahead.counter == 0 || ahead.counter % 2 != 0) {
        return; // nothing would prove the rows current
    }
    try {
        findAhead(*from.cursor);
        copyAhead();
    } catch (const Error&) {
        ahead.rows.clear(); // it is reported by the step that reaches the damage
    }
}

/// Finds the entries whose rows are to be read, and copies their keys.
void Dataset::findAhead(TreeCursor cursor) {
    ReadAhead& ahead = *ahead_;
    const std::size_t rowLength = row_.size(), keyLength = order_->tag()->keyLength;
    ahead.bytes.resize(ReadAhead::mostRows * (rowLength + keyLength));
    std::uint32_t slot = cursor.path().back().slot + 1;
    while (true) {
        const TreeNode leaf = cursor.leaf();
        for (; slot < leaf.count(); ++slot) {
            const std::string_view key = leaf.key(slot);
            if (ahead.rows.size() == ReadAhead::mostRows || !order_->isInRange(key)) {
                return;
            }
            const RecordNumber number = leaf.pointer(slot);
            if (number <= ahead.recordCount) {
                if (ahead.rows.size() < ReadAhead::fetched) {
                    open_->records().prefetch(number);
                }
                const std::size_t offset = ahead.rows.size() * (rowLength + keyLength);
                std::copy(key.begin(), key.end(), ahead.bytes.data() + offset + rowLength);
                ahead.rows.push_back({number, slot, static_cast<std::uint32_t>(ahead.later.size()), offset});
            }
        }
        if (ahead.later.size() + 1 >= ahead.leaves || !cursor.nextLeaf()) {
            return;
        }
        ahead.later.push_back(cursor);
        slot = 0;
    }
}

/// Copies those of the rows that are visible. Records lie anywhere: the next ones are fetched from memory
/// meanwhile.
void Dataset::copyAhead() {
    std::vector<ReadAhead::Row>& rows = ahead_->rows;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (i + ReadAhead::fetched < rows.size()) {
            open_->records().prefetch(rows[i + ReadAhead::fetched].record);
        }
        const RecordView record = open_->records().record(rows[i].record);
        if (order_->isVisible(record)) {
            std::copy(record.bytes.begin(), record.bytes.end(), ahead_->bytes.data() + rows[i].offset);
            rows[kept++] = rows[i];
        }
    }
    rows.resize(kept);
}

} // namespace dbase
