// Compares the files under the names of an open table with those that are open. Not by the number of names of
// the open file: backups made of hard links keep it, and so does NFS.
#include "dbase/table/table_names.h"

#include <atomic>

#include "dbase/system/clock.h"
#include "dbase/system/paths.h"

namespace dbase {

namespace {

constexpr std::chrono::seconds interval{1};
std::atomic<std::chrono::nanoseconds (*)()> clockOfNames{coarseNow};
std::chrono::nanoseconds now() { return clockOfNames.load(std::memory_order_relaxed)(); }

} // namespace

void setNamesClock(std::chrono::nanoseconds (*clock)()) {
    clockOfNames = clock != nullptr ? clock : coarseNow;
}

TableNames::TableNames(const Folders& folders, const File& records, const File* index)
    : folders_(folders), records_(nameOf(records)),
      index_(index != nullptr ? std::optional(nameOf(*index)) : std::nullopt),
      folder_(!index_ || folderOf(index_->path) == folderOf(records_.path) ? folderOf(records_.path)
                                                                           : std::string()),
      asked_(now()) {}

TableNames::Name TableNames::nameOf(const File& file) {
    return {file.path(), file.status(), file.isRemote()};
}

bool TableNames::leadsHere(const Name& name) const {
    return folders_.leadsTo(name.path, name.file, name.isRemote);
}

std::optional<NamesState> TableNames::folderState() const {
    return folder_.empty() || records_.isRemote || (index_ && index_->isRemote)
               ? std::nullopt
               : folders_.namesState(folder_);
}

// Two names cost more than a folder. They are looked at all the same once a second, as a file system mounted
// over one of them changes no folder.
bool TableNames::leadHere() {
    const std::optional<NamesState> state = folderState();
    if (!areLost_ && state && state == askedIn_ && now() - asked_ < interval) {
        return true;
    }
    asked_ = now();
    askedIn_ = state;
    areLost_ = areLost_ || !leadsHere(records_) || (index_ && !leadsHere(*index_));
    return !areLost_;
}

bool TableNames::ledHereLately() { return now() - asked_ < interval ? !areLost_ : leadHere(); }

} // namespace dbase
