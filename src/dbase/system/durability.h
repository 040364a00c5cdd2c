// Whether a change waits for the disk.
#pragma once

namespace dbase {

/// When a change is on the disk. Each change says it for itself.
enum class Durability {
    Process, // survives the death of any process at once
    Disk,    // the machine's too: the journal is synced before the records are touched
};

} // namespace dbase
