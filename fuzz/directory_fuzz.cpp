// Any bytes as a file of the official street directory: recognised, cut into lines, and read as every kind;
// also as a ZIP.
#include "Trial.h"
#include "directory/FileOverview.h"

namespace {

using namespace ambrel::directory;

void readAs(const OfficialFile& file, const LineUse& use) {
    const ReadCounts counts = readLines(file, use);
    trial::require(counts.badCount <= counts.lines && counts.bad.size() <= ReadCounts::mostKept);
    trial::require(badLinesText(file, counts).empty() == (counts.badCount == 0));
}

Refusal readStretch(const FixedLine& line, std::uint64_t) {
    StretchLine stretch;
    const Refusal refusal = read(line, stretch);
    if (refusal == nullptr) {
        trial::require(stretch.place >= 1000 && stretch.place < 53000 && stretch.postalCode < 53000);
        trial::require((stretch.street == 0) != (stretch.pseudo == 0));
        trial::require(stretch.first <= stretch.last && stretch.last <= 9999);
        trial::require((stretch.numbering == Numbering::None) == (stretch.first == 0));
    }
    return refusal;
}

void readAsEveryKind(const OfficialFile& file) {
    const FileOverview overview = overviewOf(file);
    trial::require(overview.layout || overview.provinces.empty());
    readAs(file, readStretch);
    for (const bool repeatsName : {false, true}) {
        readAs(file, [&](const FixedLine& line, std::uint64_t) {
            StreetLine street;
            const Refusal refusal = read(line, repeatsName, street);
            trial::require(refusal != nullptr || (!street.name.empty() && street.name.size() <= 50));
            return refusal;
        });
        readAs(file, [&](const FixedLine& line, std::uint64_t) {
            PseudoLine pseudo;
            const Refusal refusal = read(line, repeatsName, pseudo);
            trial::require(refusal != nullptr || (!pseudo.name.empty() && pseudo.name.size() <= 50));
            return refusal;
        });
    }
    readAs(file, [](const FixedLine& line, std::uint64_t) {
        UnitLine unit;
        return read(line, unit);
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    readAsEveryKind({.name = "F", .baseName = "F", .edition = {}, .size = size, .open = [text] {
                         return loading::textSource(text);
                     }});
    static const trial::NamedBytes named;
    named.put(text);
    try {
        for (const OfficialFile& file : officialFiles(named.path())) {
            readAsEveryKind(file);
        }
    } catch (const loading::Failure&) {
        // a refusal is a valid answer
    }
    return 0;
}
