// A sound table with a forged journal beside its files, used after a restart of the machine.
#include "ForgedJournal.h"
#include "dbase/journal/journal.h"

/// The first byte says whether the bytes after it are the journal, or the contents of its entries.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    static const trial::TableBytes sound = trial::soundTable(5);
    trial::TableBytes table = sound;
    dbase::setBootIdentity(trial::thisStart);
    std::optional<trial::Bytes> journal;
    trial::Input input(data + 1, size - 1);
    if (data[0] & 1) {
        journal = input.bytes(size);
    } else {
        trial::forge(journal, table, input);
    }
    dbase::setBootIdentity(data[0] & 2 ? trial::thisStart : trial::otherStart);
    trial::useTable(table, !(data[0] & 4), std::move(journal));
    return 0;
}
