// Several reads of one operation under one lock.
#pragma once

#include "AmbrelExport.h"

namespace dbase {

/// While one lives, every table that this thread reads keeps its shared lock from one read to the next, so
/// that only the first read pays for the lock and for the looks that follow it. After 20 ms at most the locks
/// are let go, writers that wait go first, and the next read begins anew; a change, or waiting for a lock,
/// lets go of them at once. For reads that follow one another, never around a message or an event loop: there
/// nothing reads, and nothing lets go. They nest; the outermost one counts.
class AMBREL_EXPORT ReadScope {
public:
    ReadScope();
    ~ReadScope();
    ReadScope(const ReadScope&) = delete;
    ReadScope& operator=(const ReadScope&) = delete;

    /// Lets go of every lock that this thread keeps. The scopes go on: the next read takes its own again.
    static void letGo();
};

} // namespace dbase
