// How durable a change is: whether it waits for the disk.
#pragma once

namespace dbase {

/// What a change survives as soon as it returns. Chosen for each change.
enum class Durability {
    Process, // the death of any process
    Disk,    // a crash of the machine too: the journal is synced before the records are touched
};

} // namespace dbase
