// The writing side of an .MDX: blocks are changed in memory, written together, and restored if that fails.

#include <algorithm>
#include <cstring>

#include "dbase/dbf/dates.h"
#include "dbase/mdx/index_file.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/system/bytes.h"
#include "dbase/system/error.h"

namespace dbase {

namespace {
constexpr PageNumber fileHeaderPage = 0;
} // namespace

std::span<char> IndexFile::changeBlock(PageNumber page) {
    if (const auto found = changes_.find(page); found != changes_.end()) {
        return found->second.bytes;
    }
    Change change;
    if (page == fileHeaderPage) {
        change.bytes.resize(pageBytes);
        readBytes(0, change.bytes);
    } else {
        std::vector<char> buffer;
        const char* bytes = block(page, buffer);
        change.bytes.assign(bytes, bytes + blockSize_);
    }
    change.original = change.bytes;
    return changes_.emplace(page, std::move(change)).first->second.bytes;
}

void IndexFile::setTreeRoot(const Tag& tag, const TreeRoot& root) {
    const std::span<char> header = changeBlock(tag.headerPage);
    changes_.at(tag.headerPage).isHeader = true;
    store32(header.data() + mdx::root, root.root);
    store32(header.data() + mdx::firstLeaf, root.firstLeaf);
    store32(header.data() + mdx::lastLeaf, root.lastLeaf);
    header[mdx::holdsKeys] = root.holdsKeys ? 1 : 0;
    header[mdx::changes] = static_cast<char>(header[mdx::changes] + 1);
}

PageNumber IndexFile::allocate(const Tag& tag) {
    const std::span<char> tagHeader = changeBlock(tag.headerPage);
    changes_.at(tag.headerPage).isHeader = true;
    store32(tagHeader.data() + mdx::tagPages, load32(tagHeader.data() + mdx::tagPages) + blockPages());

    const std::span<char> head = changeBlock(fileHeaderPage);
    const PageNumber first = load32(head.data() + mdx::freeList);
    if (first == 0) {
        return grow(head);
    }
    if (!mayBeFree(first)) { // abandons a list that cannot be trusted
        store32(head.data() + mdx::freeList, 0);
        return grow(head);
    }
    const std::span<char> taken = changeBlock(first);
    store32(head.data() + mdx::freeList, load32(taken.data() + mdx::freeNext));
    std::fill(taken.begin(), taken.end(), '\0');
    return first;
}

bool IndexFile::mayBeFree(PageNumber page) const {
    std::vector<char> buffer;
    return page >= mdx::firstBlock && (page - mdx::firstBlock) % blockPages() == 0 &&
           reaches(std::uint64_t{page} * pageBytes + blockSize_) &&
           load32(block(page, buffer) + mdx::keyCount) == 0 &&
           std::none_of(tags_.begin(), tags_.end(),
                        [&](const Tag& tag) { return tag.headerPage == page || treeRoot(tag).root == page; });
}

PageNumber IndexFile::grow(std::span<char> head) {
    if (grownSize_ == 0) {
        // Whole blocks from the first one on, even if another program left a ragged end.
        const std::uint64_t begin = std::uint64_t{mdx::firstBlock} * pageBytes;
        const std::uint64_t size = std::max<std::uint64_t>(file_->size(), begin);
        grownSize_ = begin + (size - begin + blockSize_ - 1) / blockSize_ * blockSize_;
    }
    if (grownSize_ + blockSize_ >= maxFileSize) {
        throw Error(ErrorCode::TooLarge, path(), "el índice llegaría a 2 GiB; ejecute \"ambcp reindexar\"");
    }
    const auto page = static_cast<PageNumber>(grownSize_ / pageBytes);
    grownSize_ += blockSize_;
    Change& change = changes_[page];
    change.bytes.assign(blockSize_, '\0');
    change.isNew = true;
    store32(head.data() + mdx::pageCount, static_cast<std::uint32_t>(grownSize_ / pageBytes));
    return page;
}

void IndexFile::release(PageNumber page) {
    const std::span<char> head = changeBlock(fileHeaderPage);
    const std::span<char> bytes = changeBlock(page);
    std::fill(bytes.begin(), bytes.end(), '\0');
    store32(bytes.data() + mdx::freeNext, load32(head.data() + mdx::freeList));
    store32(head.data() + mdx::freeList, page);
}

void IndexFile::dropChanges() {
    changes_.clear();
    grownSize_ = 0;
}

// An entry that comes last among many equal keys, or in the tree, changes only the end of its block.
std::span<const char> IndexFile::Change::changed() const {
    constexpr std::size_t word = sizeof(std::uint64_t); // blocks have a whole number of them
    const auto isEqual = [&](std::size_t at) {
        return std::memcmp(bytes.data() + at, original.data() + at, word) == 0;
    };
    std::size_t begin = 0, end = bytes.size();
    while (begin < end && isEqual(begin)) {
        begin += word;
    }
    while (begin < end && isEqual(end - word)) {
        end -= word;
    }
    return std::span(bytes).subspan(begin, end - begin);
}

void IndexFile::writeChangesOrRestore(bool& restored) {
    restored = true;
    refreshHead();
    const std::vector<std::pair<PageNumber, const Change*>> order = writingOrder();
    const std::uint64_t oldSize = grownSize_ == 0 ? 0 : file_->size();
    std::size_t done = 0;
    try {
        for (; done < order.size(); ++done) {
            const std::uint64_t offset = std::uint64_t{order[done].first} * pageBytes;
            if (order[done].second->isNew) {
                file_->write(offset, order[done].second->bytes);
            } else { // under the in-update mark
                const std::span<const char> changed = order[done].second->changed();
                const std::ptrdiff_t within = changed.data() - order[done].second->bytes.data();
                file_->rewrite(offset + static_cast<std::uint64_t>(within), changed);
            }
        }
    } catch (...) {
        try {
            for (std::size_t i = 0; i <= done; ++i) {
                if (!order[i].second->isNew) {
                    file_->write(std::uint64_t{order[i].first} * pageBytes, order[i].second->original);
                }
            }
            if (grownSize_ != 0) {
                file_->resize(oldSize);
                knownSize_ = oldSize;
            }
        } catch (...) {
            restored = false; // the in-update mark stays, and the next user rebuilds the tags
        }
        dropChanges();
        throw;
    }
    dropChanges();
}

// Updates the date of the change, and copies the current stamp, which is written separately.
void IndexFile::refreshHead() {
    if (const auto head = changes_.find(fileHeaderPage); head != changes_.end()) {
        head->second.isHeader = true;
        encodeHeaderDate(head->second.bytes.data() + mdx::updated);
        for (std::vector<char>* copy : {&head->second.bytes, &head->second.original}) {
            readBytes(mdx::stamp, std::span(*copy).subspan(mdx::stamp, mdx::stampSize));
        }
    }
}

// The order of writeChangesOrRestore(); of the headers, the file's (page 0) comes last.
std::vector<std::pair<PageNumber, const IndexFile::Change*>> IndexFile::writingOrder() const {
    std::vector<std::pair<PageNumber, const Change*>> order;
    order.reserve(changes_.size());
    for (const auto& [page, change] : changes_) {
        order.emplace_back(page, &change);
    }
    const auto rank = [](const Change* change) { return change->isNew ? 0 : change->isHeader ? 2 : 1; };
    std::stable_sort(order.begin(), order.end(), [&](const auto& a, const auto& b) {
        return rank(a.second) != rank(b.second) ? rank(a.second) < rank(b.second)
                                                : (rank(a.second) == 2 && a.first > b.first);
    });
    return order;
}

} // namespace dbase
