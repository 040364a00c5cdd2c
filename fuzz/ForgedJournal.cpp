// Forges journals.
#include "ForgedJournal.h"

#include <algorithm>

#include "dbase/dbf/table_header.h"
#include "dbase/journal/journal.h"
#include "dbase/mdx/index_layout.h"

namespace trial {

namespace {

using dbase::JournalEntry;

Bytes forgedImages(Input& input, std::size_t rows, std::size_t recordLength, bool isWhole) {
    if (!isWhole) {
        return input.bytes(input.number(1));
    }
    Bytes bytes = input.bytes(4);
    bytes.resize(rows % 8 * recordLength, ' ');
    return bytes;
}

JournalEntry forgedEntry(Input& input, std::size_t recordLength) {
    JournalEntry entry{.counter = input.number(1), .runs = {}};
    for (std::uint32_t runs = input.number(1) % 4; runs > 0; --runs) {
        const std::uint32_t shape = input.number(1);
        dbase::RecordRun run;
        run.first = input.number(shape & 1 ? 4 : 1);
        run.rows = input.number(shape & 2 ? 4 : 1);
        if (shape & 4) {
            run.before = forgedImages(input, run.rows, recordLength, shape & 8);
        }
        run.after = forgedImages(input, run.rows, recordLength, shape & 16);
        entry.runs.push_back(std::move(run));
    }
    return entry;
}

} // namespace

std::uint32_t Input::number(int bytes) {
    std::uint32_t value = 0;
    for (int i = 0; i < bytes && data_ != end_; ++i) {
        value |= std::uint32_t{*data_++} << 8 * i;
    }
    return value;
}

Bytes Input::bytes(std::size_t count) {
    const auto taken = std::min(count, static_cast<std::size_t>(end_ - data_));
    data_ += taken;
    return {data_ - taken, data_};
}

void forge(std::optional<Bytes>& journal, TableBytes& table, Input& input) {
    dbase::HeaderCounts counts;
    const dbase::Schema schema = dbase::decodeHeader(table.records, counts, "T.DBF");
    dbase::Journal forged(placeOf(journal), schema);
    forged.begin({});
    constexpr std::size_t session = 24;
    std::copy_n(journal->begin() + session, 8,
                table.index.begin() + dbase::mdx::stamp + dbase::mdx::stampSession);
    while (!input.isEmpty()) {
        const JournalEntry entry = forgedEntry(input, schema.recordLength);
        forged.add(entry, input.number(1) & 1);
    }
}

} // namespace trial
