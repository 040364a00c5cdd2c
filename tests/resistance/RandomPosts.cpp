// A writer that changes a street table at random.
#include "RandomPosts.h"

#include <stdexcept>
#include <utility>

#include "dbase/table/bulk_loader.h"
#include "dbase/table/write_scope.h"

namespace resistance {

RandomPosts::RandomPosts(std::string tableFile, const WriterWork& work, const std::vector<Holding>& rows,
                         PostLog& log)
    : tableFile_(std::move(tableFile)), work_(work), log_(log), random_(work.seed + 1),
      nextSerial_(work.firstSerial) {
    open();
    for (const Holding& holding : rows) {
        hold(holding);
    }
}

void RandomPosts::hold(const Holding& holding) {
    constexpr std::size_t page = 4096;
    const dbase::Schema& schema = table_->schema();
    const std::size_t begin = schema.headerLength + std::size_t{holding.number - 1} * schema.recordLength;
    if (!work_.onlyAcrossPages || begin / page != (begin + schema.recordLength - 1) / page) {
        rows_.push_back(holding);
    }
}

void RandomPosts::open() {
    table_ = dbase::Table::open(tableFile_);
    if (work_.throughDataset) {
        streets_.open();
    }
}

void RandomPosts::close() {
    streets_.close();
    table_.reset();
}

void RandomPosts::run() {
    while (!log_.mustStop() && !log_.isFull()) {
        switch (const PostKind kind = choose()) {
        case PostKind::Append:
            append();
            break;
        case PostKind::Overwrite:
        case PostKind::Erase:
            change(kind == PostKind::Erase);
            break;
        case PostKind::Rebuild:
            rebuild();
            break;
        case PostKind::Load:
        case PostKind::Replace:
            load(kind);
            break;
        case PostKind::Together:
            storeTogether();
        }
    }
}

std::uint32_t RandomPosts::below(std::size_t limit) {
    return std::uniform_int_distribution<std::uint32_t>(0, static_cast<std::uint32_t>(limit - 1))(random_);
}

PostKind RandomPosts::choose() {
    const auto kind = static_cast<PostKind>(
        std::discrete_distribution<int>(work_.weights.begin(), work_.weights.end())(random_));
    const bool needsRow = kind == PostKind::Overwrite || kind == PostKind::Erase;
    return needsRow && rows_.empty() ? PostKind::Append : kind;
}

void RandomPosts::append() {
    const StreetVersion row{.serial = nextSerial_++};
    log_.announce({.kind = PostKind::Append, .row = row});
    dbase::RecordNumber number = 0;
    if (work_.throughDataset) {
        streets_.append();
        setFields(streets_, row);
        streets_.post(work_.durability);
        number = streets_.recordNumber();
    } else {
        number = table_->append(streetRecord(table_->schema(), row), work_.durability);
    }
    log_.acknowledge(number);
    hold({number, row});
}

void RandomPosts::change(bool erase) {
    const std::size_t chosen = below(rows_.size());
    const Holding target = rows_[chosen];
    StreetVersion row = target.row;
    if (erase) {
        row.erased = true;
    } else {
        ++row.version;
    }
    log_.announce(
        {.kind = erase ? PostKind::Erase : PostKind::Overwrite, .row = row, .number = target.number});
    store(target, row);
    log_.acknowledge(target.number);
    rows_[chosen].row = row;
    if (erase) {
        rows_[chosen] = rows_.back();
        rows_.pop_back();
    }
}

void RandomPosts::store(const Holding& target, const StreetVersion& row) {
    if (!work_.throughDataset) {
        const Bytes shown = streetRecord(table_->schema(), target.row);
        if (row.erased) {
            table_->erase(target.number, shown, work_.durability);
        } else {
            table_->overwrite(target.number, shown, streetRecord(table_->schema(), row), work_.durability);
        }
        return;
    }
    if (!streets_.goTo(dbase::Bookmark(target.number)) || currentRow(streets_) != target.row) {
        throw std::runtime_error("not there: " + codeOf(target.row.serial));
    }
    if (row.erased) {
        streets_.erase(work_.durability);
        return;
    }
    streets_.edit();
    setFields(streets_, row);
    streets_.post(work_.durability);
}

void RandomPosts::rebuild() {
    log_.announce({.kind = PostKind::Rebuild, .row = {}});
    table_->rebuildTags();
    log_.acknowledge(0);
}

void RandomPosts::load(PostKind kind) {
    const std::uint32_t count = 1 + below(work_.mostRows);
    const Post post{.kind = kind, .row = {.serial = nextSerial_}, .number = 1, .rows = count};
    nextSerial_ += count;
    const dbase::RecordNumber first = kind == PostKind::Load ? table_->records().recordCount() + 1 : 1;
    if (kind == PostKind::Replace) {
        close(); // a replacement needs the table closed everywhere
    }
    log_.announce(post);
    {
        dbase::BulkLoader loader(tableFile_, kind == PostKind::Load ? dbase::BulkLoader::Mode::Append
                                                                    : dbase::BulkLoader::Mode::Replace);
        for (std::uint32_t i = 0; i < count; ++i) {
            loader.add(streetRecord(loader.schema(), {.serial = post.row.serial + i}));
        }
        loader.finish();
    }
    log_.acknowledge(first);
    if (kind == PostKind::Replace) {
        rows_.clear();
        open();
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        hold({first + i, {.serial = post.row.serial + i}});
    }
}

void RandomPosts::storeTogether() {
    const Post post{
        .kind = PostKind::Together, .row = {.serial = nextSerial_}, .rows = 1 + below(work_.mostRows)};
    nextSerial_ += post.rows;
    log_.announce(post);
    dbase::RecordNumber first = 0;
    {
        dbase::WriteScope scope(*table_, dbase::WriteScope::Writing::Together);
        for (std::uint32_t i = 0; i < post.rows; ++i) {
            const dbase::RecordNumber number = table_->append(
                streetRecord(table_->schema(), {.serial = post.row.serial + i}), work_.durability);
            first = i == 0 ? number : first;
        }
        scope.commit();
    }
    log_.acknowledge(first);
    for (std::uint32_t i = 0; i < post.rows; ++i) {
        hold({first + i, {.serial = post.row.serial + i}});
    }
}

} // namespace resistance
