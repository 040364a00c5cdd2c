// What the fuzz targets share.
#include "Trial.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <span>

#include <sys/mman.h>
#include <unistd.h>

#include "dbase/dbf/codec.h"
#include "dbase/mdx/tree_cursor.h"
#include "dbase/system/error.h"
#include "dbase/system/notices.h"
#include "dbase/table/empty_table.h"
#include "dbase/table/table.h"

/// A journal that is set aside is reported, which would be most of what a run writes, and of its time.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    dbase::setNoticeHandler([](const std::string&) {});
    return 0;
}

namespace trial {
namespace {

using namespace dbase;

/// Bytes in memory, not open anywhere else.
class BytesFile final : public File {
public:
    BytesFile(Bytes& bytes, bool writable) : bytes_(bytes), writable_(writable) {}

    const std::string& path() const override { return path_; }
    bool isWritable() const override { return writable_; }
    std::uint64_t size() const override { return bytes_.size(); }
    void read(std::uint64_t offset, std::span<char> bytes) const override {
        if (offset > bytes_.size() || bytes.size() > bytes_.size() - offset) {
            throw Error(ErrorCode::Io, path_, "fin");
        }
        std::copy_n(bytes_.data() + offset, bytes.size(), bytes.data());
    }
    void write(std::uint64_t offset, std::span<const char> bytes) override {
        require(writable_ && offset < maxFileSize);
        if (offset > most || bytes.size() > most - offset) {
            throw Error(ErrorCode::DiskFull, path_, "lleno");
        }
        bytes_.resize(std::max<std::size_t>(bytes_.size(), offset + bytes.size()));
        std::copy(bytes.begin(), bytes.end(), bytes_.data() + offset);
    }
    void resize(std::uint64_t size) override {
        require(writable_);
        if (size > most) {
            throw Error(ErrorCode::DiskFull, path_, "lleno");
        }
        bytes_.resize(size);
    }
    void sync() override {}
    bool tryLock(LockRange, LockKind) override { return true; }
    bool isLockedByOthers(LockRange) const override { return false; }
    void unlock(LockRange) noexcept override {}

private:
    static constexpr std::size_t most = std::size_t{1} << 24;
    std::string path_ = "T";
    Bytes& bytes_;
    bool writable_;
};

void walk(Table& table) {
    for (const std::string& name : table.tagNames()) {
        const Tag& tag = *table.findTag(name);
        table.read([&] {
            TreeCursor cursor(*table.index(), tag);
            for (bool on = cursor.first(); on; on = cursor.next()) {
                if (cursor.record() != 0 && cursor.record() <= table.records().recordCount()) {
                    (void)table.records().record(cursor.record());
                }
            }
            for (bool on = cursor.last(); on; on = cursor.prior()) {
            }
            return cursor.seek(std::string(tag.keyLength, 'M')) && cursor.next();
        });
    }
}

void change(Table& table) {
    const Bytes blank(table.schema().recordLength, ' ');
    for (int i = 0; i < 3 && !table.isReadOnly(); ++i) {
        const RecordNumber number = table.append(blank);
        Bytes first;
        table.read([&] {
            const RecordView record = table.records().record(1);
            first.assign(record.bytes.begin(), record.bytes.end());
            return true;
        });
        table.overwrite(1, first, blank);
        table.erase(number, blank);
    }
}

class BytesPlace final : public JournalPlace {
public:
    explicit BytesPlace(std::optional<Bytes>& journal) : journal_(journal) {}

    std::unique_ptr<File> openExisting() override {
        return journal_ ? std::make_unique<BytesFile>(*journal_, true) : nullptr;
    }
    std::unique_ptr<File> create() override { return std::make_unique<BytesFile>(journal_.emplace(), true); }
    void remove() override { journal_.reset(); }
    std::string setAside() override {
        journal_.reset();
        return {};
    }

private:
    std::optional<Bytes>& journal_;
};

std::unique_ptr<Table> open(TableBytes& bytes, bool writable, std::unique_ptr<JournalPlace> journal = {}) {
    auto index = bytes.index.empty() ? nullptr : std::make_unique<BytesFile>(bytes.index, writable);
    return std::make_unique<Table>(std::make_unique<BytesFile>(bytes.records, writable), std::move(index),
                                   std::string(), std::move(journal));
}

} // namespace

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

NamedBytes::NamedBytes()
    : descriptor_(memfd_create("fuzz", MFD_CLOEXEC)), path_("/proc/self/fd/" + std::to_string(descriptor_)) {
    require(descriptor_ >= 0);
}

NamedBytes::~NamedBytes() { close(descriptor_); }

void NamedBytes::put(std::string_view bytes) const {
    require(ftruncate(descriptor_, 0) == 0);
    require(pwrite(descriptor_, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()));
}

namespace {

/// Adds rows one by one; `fill` writes the columns of each.
TableBytes made(const Schema& schema, const std::vector<TagDefinition>& tags, unsigned rows,
                void (*fill)(std::span<char> record, unsigned number)) {
    TableBytes bytes;
    BytesFile records(bytes.records, true), index(bytes.index, true);
    writeEmptyTable(records, &index, schema, "T", tags);
    const auto table = open(bytes, true);
    for (unsigned row = 0; row < rows; ++row) {
        Bytes record(table->schema().recordLength, ' ');
        fill(record, row * 37 % 1000);
        table->append(record);
    }
    return bytes;
}

} // namespace

TableBytes soundTable(unsigned rows) {
    Schema schema;
    schema.columns = {{"NOMBRE", ColumnType::Character, 100, 0, 0}, {"NUM", ColumnType::Numeric, 6, 0, 0}};
    schema.languageDriver = static_cast<std::uint8_t>(LanguageDriver::AnsiUs);
    return made(schema,
                {{.name = "NOMBRE", .expression = "NOMBRE"},
                 {.name = "NUM", .expression = "NUM", .descending = true}},
                rows, [](std::span<char> record, unsigned number) {
                    encodeText(record.subspan(1, 100), "CALLE " + std::to_string(number));
                    require(encodeInteger(record.subspan(101, 6), number));
                });
}

TableBytes tableOfAllTags(unsigned rows) {
    Schema schema;
    schema.columns = {{"NOMBRE", ColumnType::Character, 20, 0, 0},
                      {"NUM", ColumnType::Numeric, 6, 0, 0},
                      {"DIA", ColumnType::Date, 8, 0, 0},
                      {"SI", ColumnType::Logical, 1, 0, 0}};
    schema.languageDriver = 0x59; // collates
    const std::string longCondition = "NOMBRE>'" + std::string(150, 'A') + "'";
    return made(schema,
                {{.name = "NOMBRE", .expression = "UPPER(NOMBRE)+STR(NUM,6)"},
                 {.name = "LARGA", .expression = "NOMBRE", .condition = longCondition},
                 {.name = "ALGUNAS", .expression = "NUM", .condition = "SI"},
                 {.name = "UNICA", .expression = "SUBSTR(NOMBRE,1,7)", .unique = true},
                 {.name = "DIA", .expression = "DIA", .descending = true}},
                rows, [](std::span<char> record, unsigned number) {
                    encodeText(record.subspan(1, 20), "CALLE " + std::to_string(number));
                    require(encodeInteger(record.subspan(21, 6), number));
                    encodeText(record.subspan(27, 8), "200101" + std::to_string(10 + number % 20));
                    record[35] = number % 2 == 0 ? 'T' : 'F';
                });
}

Bytes emptyTable(const TableDefinition& definition) {
    Bytes bytes;
    BytesFile records(bytes, true);
    writeEmptyTable(records, nullptr, {.columns = definition.columns}, definition.name, {});
    return bytes;
}

std::unique_ptr<JournalPlace> placeOf(std::optional<Bytes>& journal) {
    return std::make_unique<BytesPlace>(journal);
}

void useTable(const TableBytes& bytes, bool writable, std::optional<Bytes> journal) {
    TableBytes own = bytes;
    try {
        const auto table = open(own, writable, journal ? placeOf(journal) : nullptr);
        walk(*table);
        change(*table);
        walk(*table);
    } catch (const Error&) {
        // a refusal is a valid answer
    }
}

} // namespace trial
