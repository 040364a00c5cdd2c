// Any bytes as a table with its index: opened, walked by every tag, sought in, changed.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "dbase/error.h"
#include "dbase/table.h"
#include "dbase/tree_cursor.h"

namespace {

using namespace dbase;

/// Bytes in memory; nobody else has them open.
class BytesFile final : public File {
public:
    BytesFile(std::vector<char> bytes, bool writable) : bytes_(std::move(bytes)), writable_(writable) {}

    const std::string& path() const override { return path_; }
    bool isWritable() const override { return writable_; }
    std::uint64_t size() const override { return bytes_.size(); }
    void read(std::uint64_t offset, std::span<char> bytes) const override {
        if (offset + bytes.size() > bytes_.size())
            throw Error(ErrorCode::Io, path_, "fin");
        std::copy_n(bytes_.data() + offset, bytes.size(), bytes.data());
    }
    void write(std::uint64_t offset, std::span<const char> bytes) override {
        if (!writable_)
            std::abort();
        if (offset + bytes.size() > most)
            throw Error(ErrorCode::DiskFull, path_, "lleno");
        bytes_.resize(std::max<std::size_t>(bytes_.size(), offset + bytes.size()));
        std::copy(bytes.begin(), bytes.end(), bytes_.data() + offset);
    }
    void resize(std::uint64_t size) override {
        if (size > most)
            throw Error(ErrorCode::DiskFull, path_, "lleno");
        bytes_.resize(size);
    }
    void sync() override {}
    bool tryLock(LockRange, LockKind) override { return true; }
    void unlock(LockRange) noexcept override {}

private:
    static constexpr std::size_t most = std::size_t{1} << 24;
    std::string path_ = "T";
    std::vector<char> bytes_;
    bool writable_;
};

void walk(Table& table) {
    for (const std::string& name : table.tagNames()) {
        const Tag& tag = *table.findTag(name);
        table.read([&] {
            TreeCursor cursor(*table.index(), tag);
            for (bool on = cursor.first(); on; on = cursor.next()) {
                if (cursor.record() != 0 && cursor.record() <= table.records().recordCount())
                    (void)table.records().record(cursor.record());
            }
            for (bool on = cursor.last(); on; on = cursor.prior()) {
            }
            return cursor.seek(std::string(tag.keyLength, 'M'));
        });
    }
}

void change(Table& table) {
    const std::vector<char> blank(table.schema().recordLength, ' ');
    for (int i = 0; i < 3 && !table.isReadOnly(); ++i) {
        const RecordNumber number = table.append(blank);
        std::vector<char> first;
        table.read([&] {
            const RecordView record = table.records().record(1);
            first.assign(record.bytes.begin(), record.bytes.end());
            return true;
        });
        table.overwrite(1, first, blank);
        table.erase(number, blank);
    }
}

void tryOut(const std::vector<char>& records, const std::vector<char>& index, bool writable) {
    try {
        Table table(std::make_unique<BytesFile>(records, writable),
                    index.empty() ? nullptr : std::make_unique<BytesFile>(index, writable));
        walk(table);
        change(table);
        walk(table);
    } catch (const Error&) {
        // A refusal is an answer.
    }
}

} // namespace

/// The first two bytes say how long the .DBF is; the rest is the .MDX.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2)
        return 0;
    const char* begin = reinterpret_cast<const char*>(data) + 2;
    const std::size_t length = std::min<std::size_t>(data[0] | std::size_t{data[1]} << 8, size - 2);
    const std::vector<char> records(begin, begin + length), index(begin + length, begin + (size - 2));
    tryOut(records, index, false);
    tryOut(records, index, true);
    return 0;
}
