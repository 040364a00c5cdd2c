// A sound table with a corrupted index, or some corrupted records: used and checked.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "Trial.h"
#include "dbase/table/check.h"

namespace {

/// One leaf per tag, two levels, three levels.
const trial::TableBytes& soundOne(unsigned which) {
    static const std::array tables{trial::soundTable(3), trial::soundTable(12), trial::soundTable(50)};
    return tables.at(which % tables.size());
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
        trial::require(mkdtemp(path_.data()) != nullptr);
    }
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }

private:
    std::string path_;
};

/// The full check reads files on the disk.
void check(const trial::TableBytes& bytes) {
    static const Folder folder;
    const auto write = [](const char* name, const trial::Bytes& content) {
        std::ofstream(folder.path() + name, std::ios::binary)
            .write(content.data(), static_cast<std::streamsize>(content.size()));
    };
    write("/T.DBF", bytes.records);
    write("/T.MDX", bytes.index);
    static_cast<void>(dbase::checkTable(folder.path() + "/T.DBF"));
}

} // namespace

/// The first byte chooses the table, whether it is writable, and whether to run the full check.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::uint8_t choice = data[0];
    trial::TableBytes bytes = soundOne(choice & 3U);
    const std::uint8_t* const end = data + size;
    for (++data; end - data > 3;) {
        patch(choice & 16 ? bytes.records : bytes.index, data, end);
    }
    if (choice & 8) {
        check(bytes);
    } else {
        trial::useTable(bytes, choice & 4);
    }
    return 0;
}
