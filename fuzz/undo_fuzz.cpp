// Any bytes as an undo file, and as one whose check sums are right; what is read of it is written again.
#include <cstdio>

#include "Trial.h"
#include "dbase/system/error.h"
#include "loading/failure.h"
#include "loading/undo_reader.h"

namespace {

/// Puts the right check sum (FNV-1a, 64 bits) after each line.
std::string withChecksums(std::string_view text) {
    std::string lines;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        std::uint64_t sum = 0xCBF29CE484222325;
        for (const char sign : line) {
            sum = (sum ^ static_cast<unsigned char>(sign)) * 0x100000001B3;
        }
        char digits[20];
        std::snprintf(digits, sizeof digits, "\t%016llX\n", static_cast<unsigned long long>(sum));
        lines.append(line).append(digits);
    }
    return lines;
}

bool areSame(const loading::UndoEntry& one, const loading::UndoEntry& other) {
    return one.kind == other.kind && one.table == other.table && one.number == other.number &&
           one.before == other.before && one.after == other.after;
}

void writeAgain(const loading::UndoTable& table, const loading::UndoEntry& entry) {
    std::string line = loading::undoLine(table, entry);
    trial::require(line.ends_with('\n'));
    line.pop_back();
    const auto again = loading::readUndoEntry(loading::undoValues(line), table);
    trial::require(again && areSame(*again, entry));
}

} // namespace

/// The first byte says whether the check sums are those of the bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
    static const trial::NamedBytes named;
    named.put(data[0] % 2 == 0 ? std::string(text) : withChecksums(text));
    try {
        const loading::UndoReader reader(named.path());
        trial::require(reader.isEnded() || reader.missingEntries() == 0);
        for (std::size_t i = 0; i < reader.size(); ++i) {
            const loading::UndoEntry entry = reader.entry(i);
            if (entry.before != entry.after) { // what changed nothing is never written
                writeAgain(reader.tables().at(entry.table), entry);
            }
        }
    } catch (const loading::Failure&) {
        // a refusal is a valid answer
    } catch (const dbase::Error&) {
        // so is this
    }
    return 0;
}
