// Any bytes as an answer of the street-directory service, as received and as read back from a file.
#include <stdexcept>

#include "Trial.h"
#include "data/TableDefinitions.h"
#include "import/Document.h"
#include "import/ResponseReaders.h"

namespace {

void read(const ambrel::DirectoryDocument& answer) {
    for (const auto& list : {ambrel::readProvinces(answer), ambrel::readMunicipalities(answer)}) {
        for (const std::string& name : list.names) {
            trial::require(name.size() <= 250);
        }
    }
    const ambrel::StreetList list = ambrel::readStreets(answer);
    trial::require(list.streets.empty() ||
                   (list.count && list.streets.size() <= static_cast<std::size_t>(*list.count)));
    for (const ambrel::ImportedStreet& street : list.streets) {
        trial::require(street.type.size() <= ambrel::streetNameWidth &&
                       street.name.size() <= ambrel::streetNameWidth);
    }
}

} // namespace

/// The first byte chooses between text and file, and whether the answer is filed.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    static const trial::NamedBytes file, filed;
    const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
    ambrel::DirectoryDocument answer;
    try {
        if (data[0] & 1) {
            file.put(text);
            answer.loadFile(file.path());
        } else {
            answer.load(text);
        }
        if (data[0] & 2) {
            answer.save(filed.path());
        }
    } catch (const std::runtime_error&) {
        trial::require(!answer.hasNodes());
    }
    read(answer);
    return 0;
}
