// POSIX access lists as the system stores them: a version, then entries of a tag, permissions and an id, in
// the order of the tags.
#include "dbase/system/access_list.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "dbase/system/bytes.h"

namespace dbase {

namespace {

enum Tag : std::uint16_t { // NOLINT(performance-enum-size)
    theOwner = 0x01,
    aUser = 0x02,
    theGroup = 0x04,
    aGroup = 0x08,
    mask = 0x10,
    others = 0x20,
};
constexpr unsigned writing = 2;
constexpr std::uint32_t version = 2, noId = UINT32_MAX;
constexpr std::size_t headBytes = 4, entryBytes = 8;

struct Entry {
    std::uint16_t tag;
    unsigned permissions;
    std::uint32_t id;
};
using Entries = std::vector<Entry>;

const Entry* find(const Entries& entries, std::uint16_t tag, std::uint32_t id = noId) {
    const auto found =
        std::ranges::find_if(entries, [&](const Entry& entry) { return entry.tag == tag && entry.id == id; });
    return found == entries.end() ? nullptr : &*found;
}

unsigned permissionsOf(const Entries& entries, std::uint16_t tag) {
    const Entry* const entry = find(entries, tag);
    return entry == nullptr ? 0 : entry->permissions;
}

bool isMasked(std::uint16_t tag) { return tag == aUser || tag == theGroup || tag == aGroup; }

// With the mask worked into the entries, so that nobody has to think of it again.
Entries entriesOf(const FileStatus& file) {
    Entries entries;
    const std::string& list = file.accessList;
    if (list.size() < headBytes || load32(list.data()) != version) {
        return {{theOwner, file.mode >> 6 & 7, noId},
                {theGroup, file.mode >> 3 & 7, noId},
                {others, file.mode & 7, noId}};
    }
    for (std::size_t at = headBytes; at + entryBytes <= list.size(); at += entryBytes) {
        entries.push_back(
            {load16(list.data() + at), load16(list.data() + at + 2) & 7U, load32(list.data() + at + 4)});
    }
    if (const Entry* const limit = find(entries, mask)) {
        const unsigned most = limit->permissions;
        for (Entry& entry : entries) {
            entry.permissions &= isMasked(entry.tag) ? most : 7;
        }
    }
    for (Entry& entry : entries) {
        if (entry.tag != aUser && entry.tag != aGroup) {
            entry.id = noId;
        }
    }
    return entries;
}

std::string encode(Entries entries) {
    unsigned most = 0;
    for (const Entry& entry : entries) {
        most |= isMasked(entry.tag) ? entry.permissions : 0;
    }
    std::erase_if(entries, [](const Entry& entry) { return entry.tag == mask; });
    entries.push_back({mask, most, noId});
    std::ranges::stable_sort(entries, {}, &Entry::tag);
    std::string list(headBytes + entries.size() * entryBytes, '\0');
    store32(list.data(), version);
    char* at = list.data() + headBytes;
    for (const Entry& entry : entries) {
        store16(at, entry.tag);
        store16(at + 2, static_cast<std::uint16_t>(entry.permissions));
        store32(at + 4, entry.id);
        at += entryBytes;
    }
    return list;
}

// A companion is never a program.
std::string withoutExecution(std::string list) {
    for (std::size_t at = headBytes; at + entryBytes <= list.size(); at += entryBytes) {
        store16(list.data() + at + 2, load16(list.data() + at + 2) & 6);
    }
    return list;
}

// Whether members of a group may write the file because of it.
bool groupMayWrite(const FileStatus& file, const Entries& entries, std::uint32_t group) {
    const Entry* const named = find(entries, aGroup, group);
    if (group != file.group && named == nullptr) {
        return (permissionsOf(entries, others) & writing) != 0;
    }
    return (group == file.group && (permissionsOf(entries, theGroup) & writing) != 0) ||
           (named != nullptr && (named->permissions & writing) != 0);
}

} // namespace

bool mayWrite(const FileStatus& file, std::uint32_t user, std::span<const std::uint32_t> groups) {
    if (user == 0) {
        return true;
    }
    const Entries entries = entriesOf(file);
    if (user == file.owner) {
        return (permissionsOf(entries, theOwner) & writing) != 0;
    }
    if (const Entry* const named = find(entries, aUser, user)) {
        return (named->permissions & writing) != 0;
    }
    bool isMember = false;
    for (const std::uint32_t group : groups) {
        if (group == file.group || find(entries, aGroup, group) != nullptr) {
            isMember = true;
            if (groupMayWrite(file, entries, group)) {
                return true;
            }
        }
    }
    return !isMember && (permissionsOf(entries, others) & writing) != 0;
}

bool isNoWiderThan(const FileStatus& companion, const FileStatus& table) {
    const Entries theirs = entriesOf(table);
    for (const Entry& entry : entriesOf(companion)) {
        if ((entry.permissions & writing) == 0) {
            continue;
        }
        const bool isWithin = entry.tag == theOwner || entry.tag == mask ? true
                              : entry.tag == aUser                       ? mayWrite(table, entry.id, {})
                              : entry.tag == theGroup ? groupMayWrite(table, theirs, companion.group)
                              : entry.tag == aGroup   ? groupMayWrite(table, theirs, entry.id)
                                                      : (permissionsOf(theirs, others) & writing) != 0;
        if (!isWithin) {
            return false;
        }
    }
    return true;
}

Access accessOfCompanion(const FileStatus& table, std::uint32_t owner, std::uint32_t group) {
    if (owner == table.owner && group == table.group) {
        return {table.mode & 0666, withoutExecution(table.accessList)};
    }
    Entries entries = entriesOf(table);
    const unsigned ofOthers = permissionsOf(entries, others) & 6;
    const unsigned ofGroup = permissionsOf(entries, theGroup) & 6,
                   ofOwner = permissionsOf(entries, theOwner) & 6;
    // Strangers who share the companion's group must not get what the table's group has.
    const unsigned ofItsGroup = group == table.group ? ofGroup : ofGroup & ofOthers;
    const std::uint32_t mode = 6U << 6 | ofItsGroup << 3 | ofOthers;
    std::erase_if(entries, [&](const Entry& entry) {
        return entry.tag == aUser && (entry.id == owner || entry.id == table.owner);
    });
    for (Entry& entry : entries) {
        entry.permissions = entry.tag == theOwner   ? 6
                            : entry.tag == theGroup ? ofItsGroup
                                                    : entry.permissions & 6;
    }
    if (owner != table.owner && table.owner != 0) {
        entries.push_back({aUser, ofOwner, table.owner});
    }
    if (group != table.group) {
        entries.push_back({aGroup, ofGroup, table.group});
    }
    const bool isList = std::ranges::any_of(
        entries, [](const Entry& entry) { return entry.tag == aUser || entry.tag == aGroup; });
    return {mode, isList ? encode(std::move(entries)) : std::string()};
}

} // namespace dbase
