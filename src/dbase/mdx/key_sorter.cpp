// Sorts the keys of a whole table; if they do not fit in memory, in runs that are then merged.
#include "dbase/mdx/key_sorter.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <thread>

#include "dbase/system/bytes.h"
#include "dbase/system/error.h"
#include "dbase/system/file_size_limit.h"
#include "dbase/system/large_memory.h"
#include "dbase/system/system_reason.h"

namespace dbase {

namespace {
constexpr std::size_t fetchedAhead = 16;  // items, for which memory is asked while others are at work
constexpr std::size_t manyItems = 50'000; // worth a thread
constexpr std::size_t sampled = 1000;
} // namespace

// A sorted run in a temporary file, which the system removes.
struct KeySorter::Run {
    explicit Run(std::size_t itemSize) : file(std::tmpfile()), current(itemSize) {
        if (file == nullptr) {
            throw Error(ErrorCode::Io, {},
                        std::string("no se puede crear un fichero temporal: ") + systemReason(errno));
        }
        FileSizeSignal::lookForLimit();
        std::setvbuf(file, nullptr, _IOFBF, std::size_t{1} << 18);
    }
    ~Run() {
        const FileSizeSignal signal;
        std::fclose(file);
    }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    void put(const char* item) {
        const FileSizeSignal signal;
        if (std::fwrite(item, current.size(), 1, file) != 1) {
            throw Error(ErrorCode::DiskFull, {},
                        "no hay espacio para los ficheros temporales de la ordenación");
        }
    }
    void rewind() {
        const FileSizeSignal signal;
        if (std::fflush(file) != 0 || std::fseek(file, 0, SEEK_SET) != 0) {
            throw Error(ErrorCode::DiskFull, {},
                        "no hay espacio para los ficheros temporales de la ordenación");
        }
    }
    bool advance() {
        if (std::fread(current.data(), current.size(), 1, file) == 1) {
            return true;
        }
        if (std::ferror(file) != 0) { // mistaking an error for the end would lose keys
            throw Error(ErrorCode::Io, {}, "no se pueden releer los ficheros temporales de la ordenación");
        }
        return false;
    }

    std::FILE* file;
    std::vector<char> current;
};

KeySorter::KeySorter(KeyOrder order, std::size_t keyLength, std::size_t expected, std::size_t memory)
    : order_(order), keyLength_(keyLength), itemSize_(keyLength + 4),
      memory_(std::max(memory, itemSize_ * 4)),
      byPrefix_(order.type() == KeyType::Character && !order.isCollated() && !order.isDescending()) {
    items_.reserve(std::min(memory_, expected * itemSize_));
    preferLargePages(items_.data(), items_.capacity());
}

KeySorter::~KeySorter() = default;

void KeySorter::add(std::string_view key, RecordNumber record) {
    if (items_.size() + itemSize_ > memory_) {
        spill();
    }
    const std::size_t at = items_.size();
    items_.resize(at + itemSize_);
    std::memcpy(items_.data() + at, key.data(), keyLength_);
    store32(items_.data() + at + keyLength_, record);
}

bool KeySorter::comesBefore(const char* a, const char* b) const {
    const int order = order_.compare({a, keyLength_}, {b, keyLength_});
    return order != 0 ? order < 0 : load32(a + keyLength_) < load32(b + keyLength_);
}

std::vector<KeySorter::Handle> KeySorter::sorted() const {
    std::vector<Handle> handles;
    const std::size_t count = items_.size() / itemSize_;
    handles.reserve(count);
    preferLargePages(handles.data(), count * sizeof(Handle));
    for (std::size_t i = 0; i < count; ++i) {
        handles.push_back({0, static_cast<std::uint32_t>(i)});
    }
    if (byPrefix_ && handles.size() >= manyItems && std::thread::hardware_concurrency() > 1) {
        sortInTwoParts(handles);
    } else if (byPrefix_) {
        sortByBytes(handles, 0);
    } else {
        sortByComparing(handles);
    }
    return handles;
}

void KeySorter::sortByComparing(std::span<Handle> handles) const {
    std::ranges::sort(handles, [this](const Handle& a, const Handle& b) {
        return comesBefore(item(a.item), item(b.item));
    });
}

// Keys that begin alike, such as those of one province, would be fetched from memory for each comparison. So
// eight bytes of every key are fetched at once, sorted, and then the next eight of those that are equal.
void KeySorter::sortByBytes(std::span<Handle> handles, std::size_t from) const {
    constexpr std::size_t few = 8;
    if (handles.size() <= few) {
        sortByComparing(handles);
        return;
    }
    fetchBytes(handles, from);
    sortFetched(handles, from);
}

std::size_t KeySorter::bytesFrom(std::size_t from) const {
    return std::min<std::size_t>(keyLength_ - from, sizeof(Handle::bytes));
}

void KeySorter::fetchBytes(std::span<Handle> handles, std::size_t from) const {
    const std::size_t size = bytesFrom(from);
    for (std::size_t i = 0; i < handles.size(); ++i) {
        if (i + fetchedAhead < handles.size()) {
            __builtin_prefetch(item(handles[i + fetchedAhead].item) + from);
        }
        const char* at = item(handles[i].item) + from;
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, at, size);
        handles[i].bytes = size == 0 ? load32(at) : __builtin_bswap64(bytes); // the record after the key
    }
}

void KeySorter::sortFetched(std::span<Handle> handles, std::size_t from) const {
    const std::size_t size = bytesFrom(from);
    std::ranges::sort(handles, {}, &Handle::bytes);
    for (std::size_t begin = 0, end = 0; begin < handles.size(); begin = end) {
        while (end < handles.size() && handles[end].bytes == handles[begin].bytes) {
            ++end;
        }
        if (end - begin > 1 && size > 0) {
            sortByBytes(handles.subspan(begin, end - begin), from + size);
        }
    }
}

// Those before the middle of a sample on one core, the others on another one.
void KeySorter::sortInTwoParts(std::span<Handle> handles) const {
    fetchBytes(handles, 0);
    std::vector<std::uint64_t> sample;
    for (std::size_t i = 0; i < handles.size(); i += handles.size() / sampled) {
        sample.push_back(handles[i].bytes);
    }
    const auto middle = sample.begin() + static_cast<std::ptrdiff_t>(sample.size() / 2);
    std::ranges::nth_element(sample, middle);
    const auto second = std::partition(handles.begin(), handles.end(),
                                       [at = *middle](const Handle& handle) { return handle.bytes < at; });
    const std::span<Handle> rest(second, handles.end());
    std::jthread other;
    try {
        other = std::jthread([&] { sortFetched(rest, 0); });
    } catch (const std::system_error&) { // the system gives no more threads
        sortFetched(rest, 0);
    }
    sortFetched({handles.begin(), second}, 0);
}

void KeySorter::spill() {
    auto run = std::make_unique<Run>(itemSize_);
    for (const Handle& handle : sorted()) {
        run->put(item(handle.item));
    }
    run->rewind();
    runs_.push_back(std::move(run));
    items_.clear();
}

void KeySorter::deliver(const Receiver& receiver) {
    if (!runs_.empty()) {
        merge(receiver);
        return;
    }
    const std::vector<Handle> handles = sorted();
    for (std::size_t i = 0; i < handles.size(); ++i) {
        if (i + fetchedAhead < handles.size()) {
            __builtin_prefetch(item(handles[i + fetchedAhead].item));
        }
        const char* at = item(handles[i].item);
        receiver({at, keyLength_}, load32(at + keyLength_));
    }
}

void KeySorter::merge(const Receiver& receiver) {
    if (!items_.empty()) {
        spill();
    }
    items_.shrink_to_fit();
    std::vector<Run*> heap;
    for (const auto& run : runs_) {
        if (run->advance()) {
            heap.push_back(run.get());
        }
    }
    const auto later = [this](const Run* a, const Run* b) {
        return comesBefore(b->current.data(), a->current.data());
    };
    std::make_heap(heap.begin(), heap.end(), later);
    while (!heap.empty()) {
        std::pop_heap(heap.begin(), heap.end(), later);
        Run* run = heap.back();
        receiver({run->current.data(), keyLength_}, load32(run->current.data() + keyLength_));
        if (run->advance()) {
            std::push_heap(heap.begin(), heap.end(), later);
        } else {
            heap.pop_back();
        }
    }
}

} // namespace dbase
