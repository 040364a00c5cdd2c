// Collects what a load does, and writes its page.
#include "directory/DirectoryReport.h"

#include "directory/DirectoryPage.h"
#include "directory/LeadingZeros.h"
#include "loading/ansi_text.h"
#include "report/WholeFile.h"

namespace ambrel::directory {

namespace {

std::string keyText(std::uint32_t key) { return key == 0 ? "" : digits(key, 8); }

std::string rangeText(const char* side, std::uint16_t first, std::uint16_t last) {
    return first == 0 && last == 0
               ? std::string()
               : std::string(", ") + side + ' ' + std::to_string(first) + " a " + std::to_string(last);
}

std::string rowText(std::string_view type, std::string_view name, std::string_view code, const Bounds& bounds,
                    bool hasBounds) {
    if (name.empty()) {
        return {};
    }
    std::string text = loading::utf8FromAnsi(type);
    text += (text.empty() ? "" : " ") + loading::utf8FromAnsi(name);
    if (hasBounds) {
        const std::string numbers =
            rangeText("impares", bounds[0], bounds[1]) + rangeText("pares", bounds[2], bounds[3]);
        text += numbers.empty() ? ", sin números" : numbers;
    }
    return text + (code.empty() ? "" : ", ") + std::string(code);
}

/// "CL MAYOR, impares 1 a 9, pares 2 a 8, 28013"; empty if there is no such row.
std::string rowBefore(const DirectoryChange& change) {
    return rowText(change.typeBefore, change.nameBefore, change.codeBefore, change.boundsBefore,
                   change.key != 0);
}

std::string rowAfter(const DirectoryChange& change) {
    return rowText(change.type, change.name, change.code, change.bounds, change.key != 0);
}

} // namespace

void DirectoryReport::requireWritable(const std::string& file) { report::requireWritable(file); }

void DirectoryReport::keep(ChangeList list, const DirectoryChange& change) {
    std::vector<ReportedChange>& kept = changes_.at(static_cast<std::size_t>(list));
    if (kept.size() < mostShown) {
        kept.push_back({keyText(change.key), loading::utf8FromAnsi(change.municipality), rowBefore(change),
                        rowAfter(change)});
    }
}

void DirectoryReport::add(const DirectoryChange& change) {
    if (change.key == 0) {
        return keep(ChangeList::Municipalities, change);
    }
    switch (change.kind) {
    case ChangeKind::Comes:
        return keep(ChangeList::New, change);
    case ChangeKind::Goes:
        return keep(ChangeList::Gone, change);
    case ChangeKind::Changes:
        break;
    }
    if (change.isRenamed) {
        keep(ChangeList::Renamed, change);
    }
    if (change.hasOtherCode) {
        keep(ChangeList::OtherCode, change);
    }
    if (change.hasOtherRange) {
        keep(ChangeList::OtherRange, change);
    }
}

void DirectoryReport::add(const DirectoryConflict& conflict) {
    const auto kind = static_cast<std::size_t>(conflict.kind);
    ++conflictCounts_.at(kind);
    if (conflicts_.at(kind).size() < mostShown) {
        conflicts_.at(kind).push_back({keyText(conflict.key), loading::utf8FromAnsi(conflict.municipality),
                                       loading::utf8FromAnsi(conflict.name),
                                       loading::utf8FromAnsi(conflict.ours),
                                       loading::utf8FromAnsi(conflict.official)});
    }
}

void DirectoryReport::write(const std::string& file, const LoadSummary& summary,
                            const EditionNotes& notes) const {
    report::writeWholeFile(file, directoryPage(*this, summary, notes));
}

} // namespace ambrel::directory
