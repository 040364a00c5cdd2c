// A sound table with a forged journal beside its files, used after a restart of the machine.
#include <algorithm>

#include "Trial.h"
#include "dbase/dbf/table_header.h"
#include "dbase/journal/journal.h"
#include "dbase/system/error.h"

namespace {

using dbase::JournalEntry;

constexpr const char* thisStart = "este arranque";
constexpr const char* otherStart = "otro arranque";
constexpr std::size_t recordLength = 107; // of the sound table

/// Takes numbers and bytes from the input; zeros after its end.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : data_(data), end_(data + size) {}

    [[nodiscard]] bool isEmpty() const { return data_ == end_; }
    std::uint32_t number(int bytes) {
        std::uint32_t value = 0;
        for (int i = 0; i < bytes && data_ != end_; ++i) {
            value |= std::uint32_t{*data_++} << 8 * i;
        }
        return value;
    }
    trial::Bytes bytes(std::size_t count) {
        const auto taken = std::min(count, static_cast<std::size_t>(end_ - data_));
        data_ += taken;
        return {data_ - taken, data_};
    }

private:
    const std::uint8_t *data_, *end_;
};

trial::Bytes forgedImages(Input& input, std::uint32_t rows, bool isWhole) {
    if (!isWhole) {
        return input.bytes(input.number(1));
    }
    trial::Bytes bytes = input.bytes(4);
    bytes.resize(rows % 8 * recordLength, ' ');
    return bytes;
}

/// An entry whose rows, numbers and images need not match.
JournalEntry forgedEntry(Input& input) {
    JournalEntry entry{.counter = input.number(1), .runs = {}};
    for (std::uint32_t runs = input.number(1) % 4; runs > 0; --runs) {
        const std::uint32_t shape = input.number(1);
        dbase::RecordRun run;
        run.first = input.number(shape & 1 ? 4 : 1);
        run.rows = input.number(shape & 2 ? 4 : 1);
        if (shape & 4) {
            run.before = forgedImages(input, run.rows, shape & 8);
        }
        run.after = forgedImages(input, run.rows, shape & 16);
        entry.runs.push_back(std::move(run));
    }
    return entry;
}

void forge(std::optional<trial::Bytes>& journal, const trial::TableBytes& table, Input& input) {
    dbase::HeaderCounts counts;
    const dbase::Schema schema = dbase::decodeHeader(table.records, counts, "T.DBF");
    dbase::Journal forged(trial::placeOf(journal), schema);
    forged.begin();
    while (!input.isEmpty()) {
        const JournalEntry entry = forgedEntry(input);
        forged.add(entry, input.number(1) & 1);
    }
}

} // namespace

/// The first byte says whether the bytes after it are the journal, or the contents of its entries.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    static const trial::TableBytes table = trial::soundTable(5);
    dbase::setBootIdentity(thisStart);
    std::optional<trial::Bytes> journal;
    Input input(data + 1, size - 1);
    if (data[0] & 1) {
        journal = input.bytes(size);
    } else {
        forge(journal, table, input);
    }
    dbase::setBootIdentity(data[0] & 2 ? thisStart : otherStart);
    trial::useTable(table, !(data[0] & 4), std::move(journal));
    return 0;
}
