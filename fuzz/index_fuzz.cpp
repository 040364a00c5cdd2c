// A sound table with a corrupted index, corrupted records or a forged journal: used, checked, reindexed,
// recovered.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "ForgedJournal.h"
#include "dbase/journal/journal.h"
#include "dbase/system/error.h"
#include "dbase/table/check.h"

namespace {

using trial::require;

/// What the first byte of an input says.
struct Choice {
    explicit Choice(std::uint8_t byte)
        : table(byte & 3U), isWritable(byte & 4), checks(byte & 8), patchesRecords(byte & 16),
          reindexes(byte & 32), hasJournal(byte & 64), wasRestarted(byte & 128) {}

    unsigned table;
    bool isWritable, checks, patchesRecords, reindexes;
    bool hasJournal;   // the next byte is the length of its description, which follows
    bool wasRestarted; // the machine, since the journal was written
};

/// One leaf per tag, two levels, three levels; tags of every kind.
const trial::TableBytes& soundOne(unsigned which) {
    static const std::array tables{trial::soundTable(3), trial::soundTable(12), trial::soundTable(50),
                                   trial::tableOfAllTags(12)};
    return tables.at(which);
}

/// Reads patches one after the other: the place in two bytes, the number of bytes in one, the bytes.
void patch(trial::Bytes& bytes, const std::uint8_t*& data, const std::uint8_t* end) {
    const std::size_t place = data[0] | std::size_t{data[1]} << 8;
    const std::size_t count = std::min<std::size_t>(
        {data[2], static_cast<std::size_t>(end - data) - 3, place < bytes.size() ? bytes.size() - place : 0});
    std::copy_n(data + 3, count, bytes.begin() + static_cast<std::ptrdiff_t>(std::min(place, bytes.size())));
    data += 3 + count;
}

/// A folder on the disk, removed at the end of the program.
class Folder {
public:
    Folder() : path_((std::filesystem::temp_directory_path() / "index_fuzz.XXXXXX").string()) {
        require(mkdtemp(path_.data()) != nullptr);
    }
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    void put(const char* name, const trial::Bytes& content) const {
        std::ofstream(path_ + '/' + name, std::ios::binary)
            .write(content.data(), static_cast<std::streamsize>(content.size()));
    }
    void remove(const char* name) const { std::filesystem::remove(path_ + '/' + name); }
    [[nodiscard]] std::string table() const { return path_ + "/T.DBF"; }

private:
    std::string path_;
};

/// What `ambcp comprobar` and `ambcp reindexar` do, with files on the disk.
void runCommands(const trial::TableBytes& bytes, const std::optional<trial::Bytes>& journal,
                 const Choice& choice) {
    static const Folder folder;
    folder.put("T.DBF", bytes.records);
    folder.put("T.MDX", bytes.index);
    if (journal) {
        folder.put("T.AMJ", *journal);
    } else {
        folder.remove("T.AMJ");
    }
    if (choice.checks) {
        static_cast<void>(dbase::checkTable(folder.table()));
    }
    if (!choice.reindexes) {
        return;
    }
    try {
        dbase::reindexTable(folder.table());
    } catch (const dbase::Error&) {
        return; // a refusal is a valid answer
    }
    const dbase::CheckResult after = dbase::checkTable(folder.table());
    require(choice.patchesRecords || choice.hasJournal || after.findings.empty());
}

} // namespace

/// The first byte is a Choice; then comes the journal's description, if any, then the patches.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const Choice choice(data[0]);
    trial::TableBytes bytes = soundOne(choice.table);
    const std::uint8_t* const end = data + size;
    std::optional<trial::Bytes> journal;
    dbase::setBootIdentity(trial::thisStart);
    ++data;
    if (choice.hasJournal && data < end) {
        const std::size_t length = std::min<std::size_t>(data[0], static_cast<std::size_t>(end - data) - 1);
        trial::Input input(data + 1, length);
        trial::forge(journal, bytes, input);
        data += 1 + length;
    }
    while (end - data > 3) {
        patch(choice.patchesRecords ? bytes.records : bytes.index, data, end);
    }
    if (choice.wasRestarted) {
        dbase::setBootIdentity(trial::otherStart);
    }
    if (choice.checks || choice.reindexes) {
        runCommands(bytes, journal, choice);
    } else {
        trial::useTable(bytes, choice.isWritable, std::move(journal));
    }
    return 0;
}
