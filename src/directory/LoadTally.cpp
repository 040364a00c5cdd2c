// Counts changes and conflicts by municipality.
#include "directory/LoadTally.h"

namespace ambrel::directory {
namespace {

template<typename Counts>
void count(ChangeKind kind, Counts& counts) {
    switch (kind) {
    case ChangeKind::Comes:
        ++counts.comes;
        return;
    case ChangeKind::Goes:
        ++counts.goes;
        return;
    case ChangeKind::Changes:
        ++counts.changes;
    }
}

} // namespace

MunicipalitySummary& LoadTally::municipality(PlaceCode place, std::string_view name) {
    MunicipalitySummary& result = summary_.byMunicipality[place];
    if (result.name.empty()) {
        result.name = name;
    }
    return result;
}

void LoadTally::change(const DirectoryChange& change) {
    if (change.key == 0) {
        count(change.kind, summary_.municipalities);
    } else {
        count(change.kind, summary_.streets);
        count(change.kind, municipality(change.place, change.municipality));
        summary_.renamed += change.isRenamed ? 1 : 0;
        summary_.otherCode += change.hasOtherCode ? 1 : 0;
        summary_.otherRange += change.hasOtherRange ? 1 : 0;
    }
    if (observer_.change) {
        observer_.change(change);
    }
}

void LoadTally::conflict(const DirectoryConflict& conflict) {
    ++summary_.conflicts;
    ++municipality(conflict.place, conflict.municipality).conflicts;
    if (observer_.conflict) {
        observer_.conflict(conflict);
    }
}

} // namespace ambrel::directory
