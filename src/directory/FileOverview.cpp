// Counts what is in an official file.
#include "directory/FileOverview.h"

#include <algorithm>

namespace ambrel::directory {
namespace {

/// Where a layout has the date of the last change.
std::size_t dateColumn(const Layout& layout) {
    switch (layout.kind) {
    case FileKind::Stretches:
        return 62;
    case FileKind::Streets:
        return layout.repeatsName ? 39 : 14;
    case FileKind::PseudoStreets:
        return layout.repeatsName ? 64 : 14;
    case FileKind::Units:
        return 16;
    case FileKind::Sections:
        break;
    }
    return 0;
}

class Counting {
public:
    explicit Counting(FileOverview& overview)
        : overview_(overview), layout_(*overview.layout), dateColumn_(dateColumn(layout_)) {}

    Refusal operator()(const FixedLine& line) {
        PlaceCode place = 0;
        if (const Refusal refusal = readPlaceOf(line, place)) {
            return refusal;
        }
        ++overview_.provinces[place / 1000];
        if (dateColumn_ != 0 && line.hasDigits(dateColumn_, dateColumn_ + 7)) {
            const std::string_view date = line.raw(dateColumn_, dateColumn_ + 7);
            if (date > latest_) {
                latest_ = date;
            }
        }
        return nullptr;
    }
    void finish() {
        if (!latest_.empty()) {
            overview_.latestChange =
                latest_.substr(0, 4) + '-' + latest_.substr(4, 2) + '-' + latest_.substr(6);
        }
    }

private:
    Refusal readPlaceOf(const FixedLine& line, PlaceCode& place) {
        switch (layout_.kind) {
        case FileKind::Stretches:
            return readStretch(line, place);
        case FileKind::Streets:
            return readInto<StreetLine>(place, line, layout_.repeatsName);
        case FileKind::PseudoStreets:
            return readInto<PseudoLine>(place, line, layout_.repeatsName);
        case FileKind::Units:
            return readInto<UnitLine>(place, line);
        case FileKind::Sections:
            return readInto<SectionLine>(place, line);
        }
        return nullptr;
    }
    template<class Record, class... Layouts>
    static Refusal readInto(PlaceCode& place, const FixedLine& line, Layouts... layouts) {
        Record record;
        const Refusal refusal = read(line, layouts..., record);
        place = record.place;
        return refusal;
    }
    Refusal readStretch(const FixedLine& line, PlaceCode& place) {
        StretchLine stretch;
        const Refusal refusal = read(line, stretch);
        place = stretch.place;
        if (refusal == nullptr) {
            ++overview_.byNumbering[static_cast<std::size_t>(stretch.numbering)];
            overview_.ofPseudoStreets += stretch.pseudo != 0 ? 1 : 0;
            overview_.withForeignCode += stretch.postalCode / 1000 != stretch.place / 1000 ? 1 : 0;
        }
        return refusal;
    }

    FileOverview& overview_;
    Layout layout_;
    std::size_t dateColumn_;
    std::string latest_; // AAAAMMDD
};

} // namespace

FileOverview overviewOf(const OfficialFile& file, const ReadingProgress& progress) {
    FileOverview overview;
    overview.layout = findLayout(file);
    if (!overview.layout) {
        return overview;
    }
    Counting counting(overview);
    overview.counts = readLines(
        file, [&](const FixedLine& line, std::uint64_t) { return counting(line); }, progress);
    counting.finish();
    return overview;
}

} // namespace ambrel::directory
